// screen_harness.h: runs screens frame by frame without a window. The test moves the clock and gives the
// input; drawing goes to a picture in memory. Knows no particular screen. Units: logical pixels, equal to the
// picture's pixels; seconds.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "rules/engine.h"
#include "support/gpu_window.h"
#include "ui/board.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace support {

// The smallest window size, and that of a first start.
inline constexpr int kSmallW = 640;
inline constexpr int kSmallH = 480;
inline constexpr int kUsualW = 1100;
inline constexpr int kUsualH = 760;

enum class Drawing {
  Cairo,     // cairo draws everything: exact blending
  Textures,  // texture cache on SDL's software renderer: much faster for long games
};

class ScreenHarness {
 public:
  // `update` runs one frame of the screen or stack of screens under test, which must outlive the harness.
  explicit ScreenHarness(std::function<void(ui::Ctx&)> update, int w = kSmallW, int h = kSmallH,
                         Drawing drawing = Drawing::Cairo);

  // Runs one frame, `dt` after the previous one. The screen's time step is limited as in the frame loop.
  void frame(double dt = kFrameTime);
  // Runs frames until exactly `seconds` have passed.
  void run(double seconds, double dt = kFrameTime);
  void resize(int w, int h);

  // Each runs one frame. The mouse stays where it was last.
  void moveTo(double x, double y);
  void press(double x, double y);
  void release(double x, double y);
  void rightClick(double x, double y);
  void wheel(double x, double y, double steps);
  void key(int code);
  // A press and a release within one frame.
  void click(double x, double y);
  // A press, a move in ten frames, a release.
  void drag(double x0, double y0, double x1, double y1);

  // The input of the next frame, for anything the functions above do not offer.
  ui::Input& next() { return ctx.in; }

  double time() const { return ctx.time; }
  bool quit() const { return ctx.quit; }
  bool hand() const { return ctx.hand; }
  bool clickTaken() const { return ctx.clickTaken; }
  // The window's contents after the last frame, opaque.
  ui::CairoSurface picture() const;
  // A pixel of that picture, 0xRRGGBB.
  std::uint32_t colorAt(int x, int y) const;

  static constexpr double kFrameTime = 1.0 / 64;

 private:
  void prepareFrame(double dt);

  std::function<void(ui::Ctx&)> updateFrame;
  std::optional<GpuWindow> window;
  ui::CairoSurface surface;
  ui::Ctx ctx;  // its input is collected between frames
  double prevMouseX = 0;
  double prevMouseY = 0;
};

struct Point {
  double x = 0;
  double y = 0;
};

// A point where a click hits the tile. Nothing if other tiles cover it or it lies outside the board.
std::optional<Point> visiblePoint(const mj::GameState& game, const ui::Rect& board, const ui::BoardOpts& opts,
                                  int tile);

}  // namespace support
