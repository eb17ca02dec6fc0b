// felt.h: the cloth behind every screen, with its light, dark rim and golden frame. With a renderer it is
// painted once for a window size and theme, then copied; the last two pictures are kept. Knows nothing of
// what lies on the table. Units: logical pixels.
#pragma once

#include "rules/table_themes.h"
#include "ui/context.h"

namespace ui {

// Fills the whole window. Without a theme the cloth is the green of the first stage and has no frame, even if
// `ornate`. A window too small for the frame (up to 104 pixels wide or high) has none either.
void drawFelt(const Ctx& ctx, const mj::TableTheme* theme, bool ornate);

// Fills (0, 0, w, h) with the bare cloth, without light, rim and frame.
void drawCloth(cairo_t* cr, double w, double h, const mj::TableTheme& theme);

// Distance of the golden frame from the window's edge, 12 to 28.
double feltFrameMargin(double w, double h);
// Size of the Greek keys in the frame's corners, 16 to 34.
double feltCornerSize(double w, double h);

}  // namespace ui
