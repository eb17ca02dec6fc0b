#include "ui/felt.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/handles.h"

namespace ui {
namespace {

constexpr double kLeastOrnateSide = 80;  // the frame's sides must be longer

void fillWith(cairo_t* cr, double w, double h, cairo_pattern_t* pattern) {
  cairo_set_source(cr, pattern);
  cairo_rectangle(cr, 0, 0, w, h);
  cairo_fill(cr);
}

// The light of a lamp a little above the middle of the table.
void paintLight(cairo_t* cr, double w, double h, const mj::TableTheme& theme) {
  const double x = w / 2;
  const double y = 0.3 * h;
  const CairoPattern light(cairo_pattern_create_radial(x, y, 0, x, y, 0.75 * std::max(w, h)));
  addStop(light.get(), 0, theme.glow, 0.35);
  addStop(light.get(), 1, theme.glow, 0);
  fillWith(cr, w, h, light.get());
}

void paintVignette(cairo_t* cr, double w, double h, const mj::TableTheme& theme) {
  const double x = w / 2;
  const double y = h / 2;
  const CairoPattern vignette(cairo_pattern_create_radial(x, y, 0, x, y, 0.78 * std::max(w, h)));
  addStop(vignette.get(), 0.55, theme.vignette, 0);
  addStop(vignette.get(), 1, theme.vignette, 0.8);
  fillWith(cr, w, h, vignette.get());
}

// One turn of a Greek key from the corner (x, y). sx and sy, 1 or -1, mirror it into the four corners.
void cornerKey(cairo_t* cr, double x, double y, double size, double sx, double sy, std::uint32_t color) {
  constexpr std::array<std::array<double, 2>, 6> kPoints = {
      {{0, 1}, {0, 0}, {1, 0}, {1, 0.62}, {0.4, 0.62}, {0.4, 0.34}}};
  cairo_save(cr);
  cairo_translate(cr, x, y);
  cairo_scale(cr, sx, sy);
  cairo_new_path(cr);
  for (const auto& [px, py] : kPoints) cairo_line_to(cr, px * size, py * size);
  setColor(cr, color, 0.7);
  cairo_set_line_width(cr, 2.4);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_stroke(cr);
  cairo_restore(cr);
}

void paintOrnament(cairo_t* cr, double w, double h, std::uint32_t color) {
  const double m = feltFrameMargin(w, h);
  const double iw = w - 2 * m;
  const double ih = h - 2 * m;
  if (iw <= kLeastOrnateSide || ih <= kLeastOrnateSide) return;
  strokeRoundedRect(cr, {m, m, iw, ih}, 18, 2, color, 0.5);
  strokeRoundedRect(cr, {m + 6, m + 6, iw - 12, ih - 12}, 14, 1, color, 0.28);
  const double size = feltCornerSize(w, h);
  cornerKey(cr, m + 9, m + 9, size, 1, 1, color);
  cornerKey(cr, m + iw - 9, m + 9, size, -1, 1, color);
  cornerKey(cr, m + 9, m + ih - 9, size, 1, -1, color);
  cornerKey(cr, m + iw - 9, m + ih - 9, size, -1, -1, color);
}

void paintFelt(cairo_t* cr, double w, double h, const mj::TableTheme& theme, bool ornate) {
  drawCloth(cr, w, h, theme);
  paintLight(cr, w, h, theme);
  paintVignette(cr, w, h, theme);
  if (ornate) paintOrnament(cr, w, h, theme.ornament);
}

struct FeltJob {
  double w;
  double h;
  const mj::TableTheme& theme;
  bool ornate;
};

void paintFeltJob(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const FeltJob*>(user);
  paintFelt(cr, job.w, job.h, job.theme, job.ornate);
}

std::string feltKey(const FeltJob& job, const std::string& size) {
  std::string key = "felt|";
  key += job.theme.name;
  if (job.ornate) key += "|orn";
  return key + "|" + size;
}

// Keeps this picture and the one shown before it, which may come back, and drops the one before that. Each is
// as large as the window.
void keepOneBeside(const std::string& key) {
  static auto& last = *new std::array<std::string, 2>;
  if (key == last[0]) return;
  if (key != last[1]) gpuDropTextures(last[1], kKeepNone);
  last = {key, last[0]};
}

SDL_Texture* feltTexture(FeltJob& job) {
  const int w = gpuPixels(job.w);
  const int h = gpuPixels(job.h);
  const std::string size = std::to_string(w) + "x" + std::to_string(h);
  // While the window is resized, each frame asks for a picture of a new size. Drop the old sizes at once.
  gpuDropTextures("felt|", "|" + size);
  const std::string key = feltKey(job, size);
  keepOneBeside(key);
  return gpuTexture(key, w, h, paintFeltJob, &job);
}

}  // namespace

double feltFrameMargin(double w, double h) {
  const double v = std::min(w, h) * 0.035;
  return v <= 12 ? 12 : std::round(std::min(v, 28.0));
}

double feltCornerSize(double w, double h) {
  const double v = std::min(w, h) * 0.05;
  return v <= 16 ? 16 : std::round(std::min(v, 34.0));
}

void drawCloth(cairo_t* cr, double w, double h, const mj::TableTheme& theme) {
  const CairoPattern cloth(cairo_pattern_create_linear(0, 0, 0, h));
  addStop(cloth.get(), 0, theme.top, 1);
  addStop(cloth.get(), 0.5, theme.middle, 1);
  addStop(cloth.get(), 1, theme.bottom, 1);
  fillWith(cr, w, h, cloth.get());
}

void drawFelt(const Ctx& ctx, const mj::TableTheme* theme, bool ornate) {
  const mj::TableTheme* cloth = theme != nullptr ? theme : mj::tableThemeForStage(0);
  FeltJob job = {ctx.w, ctx.h, *cloth, ornate && theme != nullptr};
  if (SDL_Texture* texture = feltTexture(job)) {
    gpuBlit(texture, 0, 0, ctx.w, ctx.h, 1);
  } else {
    paintFelt(ctx.cr, ctx.w, ctx.h, job.theme, job.ornate);
  }
}

}  // namespace ui
