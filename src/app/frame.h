// frame.h: the cairo surface that a screen draws into, and its upload to the window. The surface has the size
// of the renderer's output and is kept until that size changes. Most of it is empty in most frames. So it is
// cleared, uploaded and copied in bands, and only bands with content have a texture. Units: device pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/handles.h"

namespace ui {

class FrameCanvas {
 public:
  // The renderer must outlive the canvas.
  explicit FrameCanvas(SDL_Renderer* target) : renderer(target) {}

  // Recreates the surface if the size changed. If creating it or a texture fails, the frame is shown without
  // it, and the next frame tries again.
  void resize(int w, int h);
  // Drops surface and textures. For a renderer that has lost its textures.
  void drop();
  // Clears the surface to transparent and returns a context whose unit is `scale` device pixels. Destroy the
  // context before flush().
  CairoContext begin(double scale);
  // Finishes cairo's drawing.
  void flush();
  // Draws the flushed surface over what the renderer holds.
  void upload();

  // Rows per band.
  static constexpr int kBandRows = 32;

 private:
  struct Band {
    SdlTexture texture;  // only while the band has content
    bool inked = false;
  };
  struct Rows {
    int first;
    int count;
  };

  unsigned char* row(int y) const;
  bool hasInk(const Rows& rows) const;
  Rows rowsOf(std::size_t band) const;
  void clear();
  void show(Band& band, const Rows& rows);

  SDL_Renderer* renderer;
  CairoSurface surface;
  std::vector<Band> bands;
  std::vector<std::uint32_t> straight;  // buffer for renderers without premultiplied alpha
  bool shown = true;                    // the last drawing was uploaded, so `inked` is up to date
  int width = 0;
  int height = 0;
};

}  // namespace ui
