// widget_scenes.h: widgets in tests: sheets of them in several states, and what one answers to a click. All
// stand on the felt of board_scenes.h. Units: logical pixels.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <vector>

#include "ui/board_scenes.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace test {

// Draws one widget in its rectangle. What it does to the frame's context concerns it alone.
using PaintWidget = std::function<void(ui::Ctx&, const ui::Rect&)>;

struct Sheet {
  double w = 0;  // of each widget
  double h = 0;
  int columns = 1;
};
// A widget beside the other, with room between them; each in a frame of its own at time 0, its pointer away.
ui::CairoSurface paintSheet(const Sheet& sheet, const std::vector<PaintWidget>& widgets);

// One widget of a frame without a pointer, in a picture with this margin on every side.
ui::CairoSurface paintWidget(double w, double h, const PaintWidget& widget);
constexpr int kMargin = 16;

// The pointer in the middle of the rectangle.
void hover(ui::Ctx& ctx, const ui::Rect& rect);
// The same with the button held.
void hold(ui::Ctx& ctx, const ui::Rect& rect);

// What can be clicked, drawn in its rectangle.
using Control = std::function<bool(ui::Ctx&, const ui::Rect&)>;

// Whether it answers to one frame with a click at this place.
bool isClickedAt(const Control& control, const ui::Rect& rect, double x, double y);

// `color` at `alpha` on top of an opaque pixel.
std::uint32_t over(std::uint32_t pixel, std::uint32_t color, double alpha);
constexpr std::uint32_t opaque(std::uint32_t color) { return 0xFF000000U | color; }

// The colour at a place of the picture, up to rounding.
testing::AssertionResult hasColor(cairo_surface_t* picture, int x, int y, std::uint32_t color);

}  // namespace test
