// studio.h: shows a screen in a window of any size and takes the picture that SDL and cairo compose for the
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
// Returns a name such as 1100x760, or 1100x760@2 if the scale is not 1.
std::string nameOf(const Window& window);

// The renderer behind all pictures, that of a hidden window. Make one at a time.
class Studio {
 public:
  Studio();
  Studio(const Studio&) = delete;
  Studio& operator=(const Studio&) = delete;
  ~Studio();

  // Returns false if SDL has no window; standard error says why.
  bool isOpen() const { return renderer != nullptr; }
  SDL_Renderer* target() const { return renderer.get(); }

 private:
  ui::SdlWindow window;
  ui::SdlRenderer renderer;
};

// A user at a screen. Only the functions below move the clock. Frames are not painted, which is fast, until a
// picture is taken.
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
  // The time until which the last frame's picture stays, as the screen says.
  double stillUntil() const { return ctx.stillUntil; }

  // Paints one frame, so much later. Opaque, in device pixels; null if the renderer fails.
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
