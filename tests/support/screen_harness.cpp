#include "support/screen_harness.h"

#include <algorithm>
#include <utility>

#include "support/picture.h"
#include "ui/gpu.h"

namespace support {
namespace {

constexpr double kLongestFrame = 0.1;
constexpr int kDragFrames = 10;
// Number of probed points per direction when looking for a visible part of a tile.
constexpr int kProbes = 7;

}  // namespace

ScreenHarness::ScreenHarness(std::function<void(ui::Ctx&)> update, int w, int h, Drawing drawing)
    : updateFrame(std::move(update)) {
  if (drawing == Drawing::Textures) window.emplace(w, h);
  resize(w, h);
}

void ScreenHarness::resize(int w, int h) {
  surface = makePicture(w, h);
  ctx.w = w;
  ctx.h = h;
  if (window) window.emplace(w, h);
}

void ScreenHarness::frame(double dt) {
  prepareFrame(dt);
  const ui::CairoContext cr(cairo_create(surface.get()));
  cairo_set_operator(cr.get(), CAIRO_OPERATOR_CLEAR);
  cairo_paint(cr.get());
  cairo_set_operator(cr.get(), CAIRO_OPERATOR_OVER);
  ctx.cr = cr.get();
  updateFrame(ctx);
  ctx.cr = nullptr;
  const ui::Input done = std::exchange(ctx.in, {});
  ctx.in.mx = done.mx;
  ctx.in.my = done.my;
  ctx.in.down = done.down;
}

void ScreenHarness::prepareFrame(double dt) {
  ctx.time += dt;
  ctx.dt = std::min(dt, kLongestFrame);
  ctx.clickTaken = false;
  ctx.in.dx = ctx.in.mx - std::exchange(prevMouseX, ctx.in.mx);
  ctx.in.dy = ctx.in.my - std::exchange(prevMouseY, ctx.in.my);
  if (!window) return;
  window->clear(0);
  ui::gpuBeginFrame();
}

void ScreenHarness::run(double seconds, double dt) {
  const double end = ctx.time + seconds;
  while (ctx.time + dt < end) frame(dt);
  frame(end - ctx.time);
}

void ScreenHarness::moveTo(double x, double y) {
  ctx.in.mx = x;
  ctx.in.my = y;
  frame();
}

void ScreenHarness::press(double x, double y) {
  ctx.in.pressed = true;
  ctx.in.down = true;
  moveTo(x, y);
}

void ScreenHarness::release(double x, double y) {
  ctx.in.clicked = true;
  ctx.in.down = false;
  moveTo(x, y);
}

void ScreenHarness::rightClick(double x, double y) {
  ctx.in.rightClicked = true;
  moveTo(x, y);
}

void ScreenHarness::wheel(double x, double y, double steps) {
  ctx.in.wheel = steps;
  moveTo(x, y);
}

void ScreenHarness::key(int code) {
  ctx.in.keys = {code};
  ctx.in.freshKeys = {code};
  frame();
}

void ScreenHarness::click(double x, double y) {
  ctx.in.pressed = true;
  release(x, y);
}

void ScreenHarness::drag(double x0, double y0, double x1, double y1) {
  press(x0, y0);
  for (int i = 1; i <= kDragFrames; ++i) {
    moveTo(x0 + (x1 - x0) * i / kDragFrames, y0 + (y1 - y0) * i / kDragFrames);
  }
  release(x1, y1);
}

ui::CairoSurface ScreenHarness::picture() const {
  if (!window) {
    return makePicture(static_cast<int>(ctx.w), static_cast<int>(ctx.h), [this](cairo_t* cr) {
      cairo_paint(cr);
      cairo_set_source_surface(cr, surface.get(), 0, 0);
      cairo_paint(cr);
    });
  }
  ui::CairoSurface shown = window->picture();
  const ui::CairoContext cr(cairo_create(shown.get()));
  cairo_set_source_surface(cr.get(), surface.get(), 0, 0);
  cairo_paint(cr.get());
  return shown;
}

std::uint32_t ScreenHarness::colorAt(int x, int y) const { return pixelAt(picture().get(), x, y) & 0xFFFFFF; }

std::optional<Point> visiblePoint(const mj::GameState& game, const ui::Rect& board, const ui::BoardOpts& opts,
                                  int tile) {
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, opts.fit);
  const ui::Rect rect =
      ui::BoardView(board, opts).toScreen(geom.place(game.slots[static_cast<std::size_t>(tile)]));
  for (int row = 0; row < kProbes; ++row) {
    for (int column = 0; column < kProbes; ++column) {
      const Point p = {rect.x + rect.w * (column + 0.5) / kProbes, rect.y + rect.h * (row + 0.5) / kProbes};
      if (ui::hitTestTile(game, board, opts, p.x, p.y) == tile) return p;
    }
  }
  return std::nullopt;
}

}  // namespace support
