#include "app/frame.h"

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
}

void FrameCanvas::drop() {
  surface.reset();
  texture.reset();
}

CairoContext FrameCanvas::begin(double scale) {
  CairoContext cr(cairo_create(surface.get()));
  cairo_save(cr.get());
  cairo_set_operator(cr.get(), CAIRO_OPERATOR_CLEAR);
  cairo_paint(cr.get());
  cairo_restore(cr.get());
  cairo_scale(cr.get(), scale, scale);
  return cr;
}

void FrameCanvas::flush() { cairo_surface_flush(surface.get()); }

void FrameCanvas::upload() {
  const unsigned char* pixels = cairo_image_surface_get_data(surface.get());
  // Either is missing only when memory is short: the textures of this frame still appear.
  if (!texture || pixels == nullptr) return;
  SDL_UpdateTexture(texture.get(), nullptr, pixels, cairo_image_surface_get_stride(surface.get()));
  SDL_RenderCopy(renderer, texture.get(), nullptr, nullptr);
}

}  // namespace ui
