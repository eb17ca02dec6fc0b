// icons.h: the icons on the game's buttons, drawn in one colour. Knows no buttons. Units: logical pixels.
#pragma once

#include <cstdint>

#include "ui/context.h"

namespace ui {

enum class ActionIcon : int { Hint, Shuffle, Undo, ZoomIn, ZoomOut, Fit, Pause, Play, Replay, Card };

// Draws the icon centred on (cx, cy) in a square of side `size`. Draws nothing if the size is not positive or
// the value names no icon.
void drawActionIcon(cairo_t* cr, ActionIcon icon, double cx, double cy, double size, std::uint32_t color,
                    double alpha);

}  // namespace ui
