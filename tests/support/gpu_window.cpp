#include "support/gpu_window.h"

#include <gtest/gtest.h>

#include "support/picture.h"
#include "ui/gpu.h"

namespace support {

GpuWindow::GpuWindow(int w, int h)
    : surface_(SDL_CreateRGBSurfaceWithFormat(0, w, h, 32, SDL_PIXELFORMAT_ARGB8888)),
      renderer_(surface_ ? SDL_CreateSoftwareRenderer(surface_.get()) : nullptr) {
  EXPECT_NE(renderer_, nullptr) << SDL_GetError();
  ui::gpuInit(renderer_.get());
  ui::gpuBeginFrame();
  ui::gpuSetScale(1);
  clear(0);
}

GpuWindow::~GpuWindow() {
  ui::gpuShutdown();
  ui::gpuSetScale(1);
}

void GpuWindow::clear(std::uint32_t color) const {
  const auto channel = [color](int shift) { return static_cast<Uint8>((color >> shift) & 0xFFU); };
  EXPECT_EQ(SDL_SetRenderDrawColor(renderer(), channel(16), channel(8), channel(0), 255), 0)
      << SDL_GetError();
  EXPECT_EQ(SDL_RenderClear(renderer()), 0) << SDL_GetError();
}

ui::CairoSurface GpuWindow::picture() const {
  ui::CairoSurface picture = makePicture(surface_->w, surface_->h);
  EXPECT_EQ(SDL_RenderReadPixels(renderer(), nullptr, SDL_PIXELFORMAT_ARGB8888,
                                 cairo_image_surface_get_data(picture.get()),
                                 cairo_image_surface_get_stride(picture.get())),
            0)
      << SDL_GetError();
  cairo_surface_mark_dirty(picture.get());
  return picture;
}

}  // namespace support
