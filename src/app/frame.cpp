#include "app/frame.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "ui/gpu.h"

namespace ui {

void FrameCanvas::resize(int w, int h) {
  const bool whole = surface && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS && texture;
  if (whole && w == width && h == height) return;
  width = w;
  height = h;
  surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  texture.reset(SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, w, h));
  if (texture) SDL_SetTextureBlendMode(texture.get(), gpuBlendMode());
  // cairo makes its surfaces clear; what a new texture holds nobody knows.
  bands.assign(static_cast<std::size_t>((h + kBandRows - 1) / kBandRows), Band::Cleared);
}

void FrameCanvas::drop() {
  surface.reset();
  texture.reset();
}

CairoContext FrameCanvas::begin(double scale) {
  if (!std::exchange(shown, false)) std::fill(bands.begin(), bands.end(), Band::Inked);
  clear();
  CairoContext cr(cairo_create(surface.get()));
  cairo_scale(cr.get(), scale, scale);
  return cr;
}

void FrameCanvas::flush() { cairo_surface_flush(surface.get()); }

void FrameCanvas::upload() {
  // Either is missing only when memory is short: the textures of this frame still appear.
  if (!texture || row(0) == nullptr) return;
  shown = true;
  for (std::size_t band = 0; band < bands.size(); ++band) {
    const Rows rows = rowsOf(band);
    const bool inked = hasInk(rows);
    if (inked || bands[band] == Band::Cleared) send(rows);
    bands[band] = inked ? Band::Inked : Band::Empty;
    if (!inked) continue;
    const SDL_Rect place = {0, rows.first, width, rows.count};
    SDL_RenderCopy(renderer, texture.get(), &place, &place);
  }
}

void FrameCanvas::clear() {
  if (row(0) == nullptr) return;
  for (std::size_t band = 0; band < bands.size(); ++band) {
    if (bands[band] != Band::Inked) continue;
    const Rows rows = rowsOf(band);
    for (int y = rows.first; y < rows.first + rows.count; ++y)
      std::memset(row(y), 0, sizeof(std::uint32_t) * static_cast<std::size_t>(width));
    bands[band] = Band::Cleared;
  }
  cairo_surface_mark_dirty(surface.get());
}

// Null without a surface.
unsigned char* FrameCanvas::row(int y) const {
  unsigned char* pixels = cairo_image_surface_get_data(surface.get());
  return pixels == nullptr ? nullptr
                           : pixels + std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface.get());
}

FrameCanvas::Rows FrameCanvas::rowsOf(std::size_t band) const {
  const int first = static_cast<int>(band) * kBandRows;
  return {first, std::min(kBandRows, height - first)};
}

bool FrameCanvas::hasInk(const Rows& rows) const {
  for (int y = rows.first; y < rows.first + rows.count; ++y) {
    const auto* pixels = reinterpret_cast<const std::uint32_t*>(row(y));
    std::uint32_t ink = 0;
    for (int x = 0; x < width; ++x) ink |= pixels[x];
    if (ink != 0) return true;
  }
  return false;
}

void FrameCanvas::send(const Rows& rows) {
  const SDL_Rect place = {0, rows.first, width, rows.count};
  const int stride = cairo_image_surface_get_stride(surface.get());
  if (gpuIsPremultiplied()) {
    SDL_UpdateTexture(texture.get(), &place, row(rows.first), stride);
    return;
  }
  straight.resize(static_cast<std::size_t>(stride / 4) * static_cast<std::size_t>(rows.count));
  std::memcpy(straight.data(), row(rows.first), straight.size() * 4);
  unpremultiply(straight);
  SDL_UpdateTexture(texture.get(), &place, straight.data(), stride);
}

}  // namespace ui
