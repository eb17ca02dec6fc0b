// widget_scenes.h: widgets in tests: sheets that show them in several states, and their answers to a click.
// All are drawn on the felt of board_scenes.h. Units: logical pixels.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "ui/board_scenes.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace test {

// Draws one widget in its rectangle. Changes to the frame's context affect only this widget.
using PaintWidget = std::function<void(ui::Ctx&, const ui::Rect&)>;

struct Sheet {
  double w = 0;  // of each widget
  double h = 0;
  int columns = 1;
};
// The widgets side by side with room between them. Each is drawn in its own frame at time 0, with the pointer
// away.
ui::CairoSurface paintSheet(const Sheet& sheet, const std::vector<PaintWidget>& widgets);

// One widget in a frame without a pointer, with kMargin on every side of the picture.
ui::CairoSurface paintWidget(double w, double h, const PaintWidget& widget);
constexpr int kMargin = 16;

// Puts the pointer in the middle of the rectangle.
void hover(ui::Ctx& ctx, const ui::Rect& rect);
// The same, with the button held.
void hold(ui::Ctx& ctx, const ui::Rect& rect);

// Draws a control in its rectangle and returns whether it was clicked.
using Control = std::function<bool(ui::Ctx&, const ui::Rect&)>;

// Whether the control answers to one frame with a click at this place.
bool isClickedAt(const Control& control, const ui::Rect& rect, double x, double y);

// `color` with opacity `alpha` on top of an opaque pixel.
std::uint32_t over(std::uint32_t pixel, std::uint32_t color, double alpha);
constexpr std::uint32_t opaque(std::uint32_t color) { return 0xFF000000U | color; }

// Whether the picture has this colour at this place, up to rounding errors.
testing::AssertionResult hasColor(cairo_surface_t* picture, int x, int y, std::uint32_t color);

}  // namespace test
