// studio.h: shows a screen in a window of any size and takes its picture, as SDL and cairo compose it for the
// player. Knows no particular screen. Units: logical pixels, seconds.
#pragma once

#include <memory>
#include <string>

#include "ui/context.h"
#include "ui/focus.h"
#include "ui/handles.h"

namespace gallery {

// In points; `scale` is the display's: device pixels per point.
struct Window {
  int w;
  int h;
  int scale;
};
// As 1100x760, with @2 where the scale is not 1.
std::string nameOf(const Window& window);

// The renderer behind all pictures: that of a hidden window, as the game's own is. One at a time.
class Studio {
 public:
  Studio();
  Studio(const Studio&) = delete;
  Studio& operator=(const Studio&) = delete;
  ~Studio();

  // False where SDL has no window; it said why on standard error.
  bool isOpen() const { return renderer != nullptr; }
  SDL_Renderer* target() const { return renderer.get(); }

 private:
  ui::SdlWindow window;
  ui::SdlRenderer renderer;
};

// Somebody before a screen. The clock stands but for what is told here. Frames pass unseen, which is fast,
// until one is painted.
class Sitting {
 public:
  Sitting(const Studio& shownBy, const Window& shownIn, std::unique_ptr<ui::Screen> shown);

  void wait(double seconds) { frame(seconds); }
  void key(int code);
  void click(double x, double y);
  void rightClick(double x, double y);
  void scrollDown(int steps);

  ui::Screen& shown() const { return *screen; }
  double time() const { return ctx.time; }
  double w() const { return ctx.w; }
  double h() const { return ctx.h; }
  // Until when the last frame's picture stays, as the screen says.
  double stillUntil() const { return ctx.stillUntil; }

  // One frame, painted, so much later. Opaque, in device pixels; null where the renderer fails.
  ui::CairoSurface picture(double dt);

 private:
  void pointAt(double x, double y);
  void frame(double dt);
  void showFrame(double dt, cairo_t* cr);

  const Studio& studio;
  Window window;
  double scale;  // device pixels per logical pixel
  ui::CairoSurface unseen;
  std::unique_ptr<ui::Screen> screen;
  ui::Focus focus;
  ui::Ctx ctx;
};

}  // namespace gallery
