// gpu_window.h: a window for the texture cache without a display: SDL's software renderer on an image in
// memory. Units: device pixels.
#pragma once

#include <cstdint>

#include "ui/handles.h"

namespace support {

// The texture cache uses it while it exists, at scale 1 unless a test sets another. Only one at a time. The
// software renderer cannot blend premultiplied pixels, so the cache uploads straight alpha.
class GpuWindow {
 public:
  GpuWindow(int w, int h);
  GpuWindow(const GpuWindow&) = delete;
  GpuWindow& operator=(const GpuWindow&) = delete;
  ~GpuWindow();

  SDL_Renderer* renderer() const { return renderer_.get(); }

  // Fills the window with one opaque colour, 0xRRGGBB.
  void clear(std::uint32_t color) const;

  // The window's current contents, opaque.
  ui::CairoSurface picture() const;

 private:
  ui::SdlSurface surface_;
  ui::SdlRenderer renderer_;
};

}  // namespace support
