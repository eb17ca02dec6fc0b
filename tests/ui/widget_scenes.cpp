#include "ui/widget_scenes.h"

#include <cmath>
#include <sstream>

#include "support/picture.h"
#include "support/screen_harness.h"

namespace test {
namespace {

constexpr double kAway = -1000;

void paintApart(const ui::Ctx& frame, const ui::Rect& rect, const PaintWidget& widget) {
  ui::Ctx ctx = frame;
  ctx.in.mx = kAway;
  ctx.in.my = kAway;
  widget(ctx, rect);
}

}  // namespace

ui::CairoSurface paintSheet(const Sheet& sheet, const std::vector<PaintWidget>& widgets) {
  const double stepX = sheet.w + kMargin;
  const double stepY = sheet.h + kMargin;
  const int count = static_cast<int>(widgets.size());
  const int rows = (count + sheet.columns - 1) / sheet.columns;
  const Frame frame{.w = static_cast<int>(kMargin + sheet.columns * stepX),
                    .h = static_cast<int>(kMargin + rows * stepY)};
  return paintScene(Path::Cairo, frame, [&](const ui::Ctx& ctx) {
    for (int i = 0; i < count; ++i) {
      const int row = i / sheet.columns;
      const int column = i % sheet.columns;
      const double x = kMargin + column * stepX;
      const double y = kMargin + row * stepY;
      paintApart(ctx, {x, y, sheet.w, sheet.h}, widgets[static_cast<std::size_t>(i)]);
    }
  });
}

ui::CairoSurface paintWidget(double w, double h, const PaintWidget& widget) {
  return paintSheet({.w = w, .h = h}, {widget});
}

void hover(ui::Ctx& ctx, const ui::Rect& rect) {
  ctx.in.mx = rect.x + rect.w / 2;
  ctx.in.my = rect.y + rect.h / 2;
}

void hold(ui::Ctx& ctx, const ui::Rect& rect) {
  hover(ctx, rect);
  ctx.in.down = true;
}

bool isClickedAt(const Control& control, const ui::Rect& rect, double x, double y) {
  bool clicked = false;
  support::ScreenHarness harness([&](ui::Ctx& ctx) { clicked = control(ctx, rect); });
  harness.click(x, y);
  return clicked;
}

std::uint32_t over(std::uint32_t pixel, std::uint32_t color, double alpha) {
  std::uint32_t result = 0xFF000000U;
  for (int shift = 0; shift < 24; shift += 8) {
    const double below = (pixel >> shift) & 0xFFU;
    const double above = (color >> shift) & 0xFFU;
    result |= static_cast<std::uint32_t>(std::lround(below + (above - below) * alpha)) << shift;
  }
  return result;
}

testing::AssertionResult hasColor(cairo_surface_t* picture, int x, int y, std::uint32_t color) {
  const std::uint32_t pixel = support::pixelAt(picture, x, y);
  if (support::channelDifference(pixel, opaque(color)) <= 2) return testing::AssertionSuccess();
  std::ostringstream colors;
  colors << std::hex << pixel << " instead of " << opaque(color);
  return testing::AssertionFailure() << "at (" << x << ", " << y << ") there is " << colors.str();
}

}  // namespace test
