// felt.h: the cloth behind every screen, with its light, its dark rim and the golden frame. Painted once for
// a window's size and theme, then copied; kept for the theme shown last and the one before it. Knows nothing
// of what lies on the table. Units: logical pixels.
#pragma once

#include "rules/table_themes.h"
#include "ui/context.h"

namespace ui {

// Fills the whole window. Without a theme the cloth is the green of the first stage, and plain even if
// `ornate`. The frame is also left out where the window has no room for it (about 104 pixels in either
// direction).
void drawFelt(const Ctx& ctx, const mj::TableTheme* theme, bool ornate);

// The bare cloth alone, without light, rim and frame, filling (0, 0, w, h).
void drawCloth(cairo_t* cr, double w, double h, const mj::TableTheme& theme);

// Distance of the golden frame from the window's edge, 12 to 28.
double feltFrameMargin(double w, double h);
// Side of the keys in the frame's corners, 16 to 34.
double feltCornerSize(double w, double h);

}  // namespace ui
