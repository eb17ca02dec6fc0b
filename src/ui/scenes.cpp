#include "ui/scenes.h"

#include <cairo.h>

#include <cmath>
#include <cstdio>
#include <utility>

#include "ui/board.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/gpu.h"
#include "ui/handles.h"

namespace ui {
namespace {

constexpr double kBackdropAlpha = 0.4;
constexpr const char* kBackdropKey = "backdrop";

// The backdrop's transform: zoom about the window's centre, then shift.
struct Drift {
  double zoom;
  double dx;
  double dy;
};

// Even at its smallest zoom, the picture reaches 0.055 window sizes beyond each edge, more than the 0.045 it
// moves. So tiles cut off at the picture's edges stay out of sight. A board that ends inside the picture,
// because its tiles are whole pixels wide, may still show its edge.
Drift driftAt(double time, double w, double h) {
  return {.zoom = 1.14 + 0.03 * std::sin(0.09 * time),
          .dx = 0.045 * w * std::sin(0.11 * time),
          .dy = 0.045 * h * std::sin(1 + 0.15 * time)};
}

struct BackdropJob {
  Ctx& ctx;
  const mj::GameState& game;
};

void paintBackdrop(void* user) {
  const auto& job = *static_cast<const BackdropJob*>(user);
  drawBoard(job.ctx, job.game, {0, 0, job.ctx.w, job.ctx.h}, {.fit = FitMode::Cover}, nullptr);
}

void drawBackdrop(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const BackdropJob*>(user);
  Ctx ctx;
  ctx.cr = cr;
  drawBoard(ctx, job.game, {0, 0, job.ctx.w, job.ctx.h}, {.fit = FitMode::Cover, .software = true}, nullptr);
}

SDL_Texture* backdropTexture(BackdropJob job) {
  const int w = gpuPixels(job.ctx.w);
  const int h = gpuPixels(job.ctx.h);
  // A renderer with straight alpha could not blend its own render target correctly.
  if (!gpuIsPremultiplied()) return gpuTexture(kBackdropKey, w, h, drawBackdrop, &job);
  return gpuRenderTarget(kBackdropKey, w, h, paintBackdrop, &job, false);
}

void drawFadedBoard(Ctx& ctx, const mj::GameState& game, const Drift& drift) {
  const BoardOpts opts{
      .fit = FitMode::Cover, .zoom = drift.zoom, .panX = drift.dx, .panY = drift.dy, .software = true};
  cairo_push_group(ctx.cr);
  drawBoard(ctx, game, {0, 0, ctx.w, ctx.h}, opts, nullptr);
  cairo_pop_group_to_source(ctx.cr);
  cairo_paint_with_alpha(ctx.cr, kBackdropAlpha);
}

}  // namespace

void drawMenuBackdrop(Ctx& ctx, const mj::GameState& game) {
  if (game.slots.empty()) return;
  const Drift drift = driftAt(ctx.time, ctx.w, ctx.h);
  if (gpuRenderer() == nullptr) return drawFadedBoard(ctx, game, drift);
  const double w = drift.zoom * ctx.w;
  const double h = drift.zoom * ctx.h;
  gpuBlit(backdropTexture({ctx, game}), (ctx.w - w) / 2 + drift.dx, (ctx.h - h) / 2 + drift.dy, w, h,
          kBackdropAlpha);
}

void forgetMenuBackdrop() { gpuDropTextures(kBackdropKey, kKeepNone); }

CairoSurface captureBoard(const mj::GameState& game, const mj::TableTheme& theme, int size) {
  if (size < 1) return nullptr;
  CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, size, size));
  if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  const CairoContext cr(cairo_create(picture.get()));
  drawCapture(cr.get(), game, theme, size);
  return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(picture) : nullptr;
}

bool writePng(cairo_surface_t* picture, const std::string& path) {
  if (picture == nullptr) return false;
  const std::string unfinished = path + ".tmp";
  const bool written = cairo_surface_write_to_png(picture, unfinished.c_str()) == CAIRO_STATUS_SUCCESS &&
                       std::rename(unfinished.c_str(), path.c_str()) == 0;
  // Leave no incomplete file behind.
  if (!written) std::remove(unfinished.c_str());
  return written;
}

void drawCapture(cairo_t* cr, const mj::GameState& game, const mj::TableTheme& theme, double size) {
  Ctx ctx;
  ctx.cr = cr;
  ctx.w = size;
  ctx.h = size;
  const double margin = size * 0.06;
  drawCloth(cr, size, size, theme);
  drawBoard(ctx, game, {margin, margin, size - 2 * margin, size - 2 * margin}, {.software = true}, nullptr);
  strokeRoundedRect(cr, {4, 4, size - 8, size - 8}, 12, 2, theme.ornament, 0.45);
}

bool captureBoardPng(const mj::GameState& game, const mj::TableTheme& theme, int size,
                     const std::string& path) {
  return writePng(captureBoard(game, theme, size).get(), path);
}

}  // namespace ui
