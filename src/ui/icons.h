// icons.h: the pictures on the buttons of the game, drawn as lines of one weight. Knows no buttons. Units:
// logical pixels.
#pragma once

#include <cstdint>

#include "ui/context.h"

namespace ui {

enum class ActionIcon : int { Hint, Shuffle, Undo, ZoomIn, ZoomOut, Fit, Pause, Play, Replay, Card };

// Centred on (cx, cy) in a square of side `size`. Nothing for a size that is not positive or a value that
// names no icon.
void drawActionIcon(cairo_t* cr, ActionIcon icon, double cx, double cy, double size, std::uint32_t color,
                    double alpha);

}  // namespace ui
