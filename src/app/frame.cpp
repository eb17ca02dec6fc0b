#include "app/frame.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

#include "ui/gpu.h"

namespace ui {

void FrameCanvas::resize(int w, int h) {
  const bool whole = surface && cairo_surface_status(surface.get()) == CAIRO_STATUS_SUCCESS;
  if (whole && w == width && h == height) return;
  width = w;
  height = h;
  surface.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  bands.clear();
  bands.resize(static_cast<std::size_t>((h + kBandRows - 1) / kBandRows));
}

void FrameCanvas::drop() {
  surface.reset();
  bands.clear();
}

CairoContext FrameCanvas::begin(double scale) {
  if (!std::exchange(shown, false))
    for (Band& band : bands) band.inked = true;
  clear();
  CairoContext cr(cairo_create(surface.get()));
  cairo_scale(cr.get(), scale, scale);
  return cr;
}

void FrameCanvas::flush() { cairo_surface_flush(surface.get()); }

void FrameCanvas::upload() {
  // Without memory there is no surface. The frame's textures still appear.
  if (row(0) == nullptr) return;
  shown = true;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    Band& band = bands[i];
    const Rows rows = rowsOf(i);
    band.inked = hasInk(rows);
    if (band.inked) {
      show(band, rows);
    } else {
      band.texture.reset();
    }
  }
}

void FrameCanvas::clear() {
  if (row(0) == nullptr) return;
  for (std::size_t i = 0; i < bands.size(); ++i) {
    if (!std::exchange(bands[i].inked, false)) continue;
    const Rows rows = rowsOf(i);
    for (int y = rows.first; y < rows.first + rows.count; ++y)
      std::memset(row(y), 0, sizeof(std::uint32_t) * static_cast<std::size_t>(width));
  }
  cairo_surface_mark_dirty(surface.get());
}

// Null if there is no surface.
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

void FrameCanvas::show(Band& band, const Rows& rows) {
  if (!band.texture) {
    band.texture.reset(SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING,
                                         width, rows.count));
    if (band.texture) SDL_SetTextureBlendMode(band.texture.get(), gpuBlendMode());
  }
  const unsigned char* pixels = row(rows.first);
  const int stride = cairo_image_surface_get_stride(surface.get());
  if (!gpuIsPremultiplied()) {
    straight.resize(static_cast<std::size_t>(stride / 4) * static_cast<std::size_t>(rows.count));
    std::memcpy(straight.data(), pixels, straight.size() * 4);
    unpremultiply(straight);
    pixels = reinterpret_cast<const unsigned char*>(straight.data());
  }
  // Both calls fail harmlessly without a texture.
  SDL_UpdateTexture(band.texture.get(), nullptr, pixels, stride);
  const SDL_Rect place = {0, rows.first, width, rows.count};
  SDL_RenderCopy(renderer, band.texture.get(), nullptr, &place);
}

}  // namespace ui
