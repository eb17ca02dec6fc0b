// miniature.h: a layout so small that only its outline and its heights are told. Knows no faces and no game.
// Units: logical pixels.
#pragma once

#include <cairo.h>

#include <vector>

#include "rules/layouts.h"
#include "ui/context.h"

namespace screens {

// Paints the layout in the middle of the rectangle and nothing beyond it: one blank tile a slot, the brighter
// the higher it lies.
void paintMini(cairo_t* cr, const ui::Rect& rect, const std::vector<mj::Slot>& slots);

}  // namespace screens
