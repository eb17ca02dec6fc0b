#include "gallery/studio.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "app/frame.h"
#include "app/geometry.h"
#include "ui/gpu.h"

namespace gallery {
namespace {

constexpr double kLongestFrame = 0.1;

// Textures live for one picture: no state uses those of another.
struct GpuSession {
  explicit GpuSession(SDL_Renderer* renderer) { ui::gpuInit(renderer); }
  GpuSession(const GpuSession&) = delete;
  GpuSession& operator=(const GpuSession&) = delete;
  ~GpuSession() { ui::gpuShutdown(); }
};

ui::CairoSurface shownBy(SDL_Renderer* renderer, int w, int h) {
  // Without an alpha channel, because a window does not show it either.
  ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, w, h));
  unsigned char* pixels = cairo_image_surface_get_data(picture.get());
  const int stride = cairo_image_surface_get_stride(picture.get());
  if (SDL_RenderReadPixels(renderer, nullptr, SDL_PIXELFORMAT_ARGB8888, pixels, stride) != 0) return nullptr;
  cairo_surface_mark_dirty(picture.get());
  return picture;
}

}  // namespace

std::string nameOf(const Window& window) {
  const std::string size = std::to_string(window.w) + "x" + std::to_string(window.h);
  return window.scale == 1 ? size : size + "@" + std::to_string(window.scale);
}

Studio::Studio() {
  SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
  if (SDL_Init(SDL_INIT_VIDEO) == 0) window.reset(SDL_CreateWindow("", 0, 0, 64, 64, SDL_WINDOW_HIDDEN));
  if (window) renderer.reset(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_TARGETTEXTURE));
  if (!renderer) std::fprintf(stderr, "no window: %s\n", SDL_GetError());
}

Studio::~Studio() {
  renderer.reset();
  window.reset();
  SDL_Quit();
}

Sitting::Sitting(const Studio& shownBy, const Window& shownIn, std::unique_ptr<ui::Screen> shown)
    : studio(shownBy),
      window(shownIn),
      scale(ui::windowGrowth(window.w, window.h) * window.scale),
      unseen(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1)),
      screen(std::move(shown)) {
  ui::gpuSetScale(scale);
  ctx.w = window.w * window.scale / scale;
  ctx.h = window.h * window.scale / scale;
  frame(0);
}

void Sitting::key(int code) {
  ctx.in.keys = {code};
  ctx.in.freshKeys = {code};
  frame(0);
}

void Sitting::click(double x, double y) {
  ctx.in.clicked = true;
  pointAt(x, y);
}

void Sitting::rightClick(double x, double y) {
  ctx.in.rightClicked = true;
  pointAt(x, y);
}

void Sitting::scrollDown(int steps) {
  ctx.in.wheel = -steps;
  pointAt(0.5 * ctx.w, 0.5 * ctx.h);
}

void Sitting::pointAt(double x, double y) {
  ctx.in.mx = x;
  ctx.in.my = y;
  frame(0);
}

ui::CairoSurface Sitting::picture(double dt) {
  const int w = window.w * window.scale;
  const int h = window.h * window.scale;
  SDL_Renderer* renderer = studio.target();
  const GpuSession session(renderer);
  const ui::SdlTexture shown(
      SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, w, h));
  if (SDL_SetRenderTarget(renderer, shown.get()) != 0) return nullptr;
  SDL_SetRenderDrawColor(renderer, 0, 0, 0, SDL_ALPHA_OPAQUE);
  SDL_RenderClear(renderer);
  ui::FrameCanvas canvas(renderer);
  canvas.resize(w, h);
  showFrame(dt, canvas.begin(scale).get());
  canvas.flush();
  canvas.upload();
  ui::CairoSurface seen = shownBy(renderer, w, h);
  SDL_SetRenderTarget(renderer, nullptr);
  return seen;
}

void Sitting::frame(double dt) { showFrame(dt, ui::CairoContext(cairo_create(unseen.get())).get()); }

void Sitting::showFrame(double dt, cairo_t* cr) {
  ui::gpuBeginFrame();
  ctx.cr = cr;
  ctx.time += dt;
  ctx.dt = std::min(dt, kLongestFrame);
  ctx.stillUntil = ctx.time;
  ctx.clickTaken = false;
  focus.frame(ctx, false, [&] { screen->update(ctx); });
  ctx.cr = nullptr;
  ctx.in = {};
}

}  // namespace gallery
