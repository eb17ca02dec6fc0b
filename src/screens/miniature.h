// miniature.h: paints a tiny layout that shows only its outline and heights. Knows no faces and no game.
// Units: logical pixels.
#pragma once

#include <cairo.h>

#include <vector>

#include "rules/layouts.h"
#include "ui/context.h"

namespace screens {

// Paints the layout in the middle of the rectangle and clips to it. Each slot is a blank tile; higher tiles
// are brighter.
void paintMini(cairo_t* cr, const ui::Rect& rect, const std::vector<mj::Slot>& slots);

}  // namespace screens
