// screen_harness.h: runs screens frame by frame without a window: with a clock that only the test moves, with
// the input that it gives, drawing on a picture in memory. Knows no particular screen. Units: logical pixels,
// which are the picture's pixels; seconds.
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

// The smallest window, and the one of a first start.
inline constexpr int kSmallW = 640;
inline constexpr int kSmallH = 480;
inline constexpr int kUsualW = 1100;
inline constexpr int kUsualH = 760;

enum class Drawing {
  Cairo,     // everything drawn with cairo: exact blending
  Textures,  // through the texture cache, on SDL's software renderer: much faster for long games
};

class ScreenHarness {
 public:
  // `update` runs one frame of what is tested, a screen or a stack of screens, which must outlive the
  // harness.
  explicit ScreenHarness(std::function<void(ui::Ctx&)> update, int w = kSmallW, int h = kSmallH,
                         Drawing drawing = Drawing::Cairo);

  // One frame, `dt` after the one before. What the screen is told of that time is cut as the frame loop does.
  void frame(double dt = kFrameTime);
  // Frames until exactly so much time has passed.
  void run(double seconds, double dt = kFrameTime);
  void resize(int w, int h);

  // Each takes one frame. The mouse stays where it was last.
  void moveTo(double x, double y);
  void press(double x, double y);
  void release(double x, double y);
  void rightClick(double x, double y);
  void wheel(double x, double y, double steps);
  void key(int code);
  // A press and a release within one frame.
  void click(double x, double y);
  // A press, a way in ten frames, a release.
  void drag(double x0, double y0, double x1, double y1);

  // The input of the next frame, for what the functions above do not offer.
  ui::Input& next() { return ctx.in; }

  double time() const { return ctx.time; }
  bool quit() const { return ctx.quit; }
  bool hand() const { return ctx.hand; }
  bool clickTaken() const { return ctx.clickTaken; }
  // What the window showed after the last frame, opaque.
  ui::CairoSurface picture() const;
  // A pixel of it, 0xRRGGBB.
  std::uint32_t colorAt(int x, int y) const;

  static constexpr double kFrameTime = 1.0 / 64;

 private:
  void prepareFrame(double dt);

  std::function<void(ui::Ctx&)> updateFrame;
  std::optional<GpuWindow> window;
  ui::CairoSurface surface;
  ui::Ctx ctx;  // its input is gathered between the frames
  double prevMouseX = 0;
  double prevMouseY = 0;
};

struct Point {
  double x = 0;
  double y = 0;
};

// A place at which a click meets this tile; nothing where other tiles hide it or it lies outside the board.
std::optional<Point> visiblePoint(const mj::GameState& game, const ui::Rect& board, const ui::BoardOpts& opts,
                                  int tile);

}  // namespace support
