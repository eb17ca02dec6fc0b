// frame.h: the picture that a frame's screen draws into, and its way to the window: one cairo surface of the
// size of the renderer's output, kept until that size changes. Most of it is empty in most frames: it is
// cleared, uploaded and copied in bands, only where there is or was anything, and only what shows anything
// has a texture. Units: device pixels.
#pragma once

#include <cstdint>
#include <vector>

#include "ui/handles.h"

namespace ui {

class FrameCanvas {
 public:
  // The renderer must outlive the canvas.
  explicit FrameCanvas(SDL_Renderer* target) : renderer(target) {}

  // Makes the surface anew if the size is another. Should that fail, or a texture later, the frame is drawn
  // without it, and the next frame tries again.
  void resize(int w, int h);
  // Forgets all, for a renderer that has lost its textures.
  void drop();
  // Clears the surface to transparent. The context draws on it in units of `scale` device pixels; it must be
  // gone before flush().
  CairoContext begin(double scale);
  // Ends the drawing with cairo.
  void flush();
  // Lays the flushed surface over what the renderer holds.
  void upload();

  // Rows that are looked at, uploaded and copied together.
  static constexpr int kBandRows = 32;

 private:
  struct Band {
    SdlTexture texture;  // while there is ink to show
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
  std::vector<std::uint32_t> straight;  // pixels on their way to a renderer that knows no premultiplied ones
  bool shown = true;                    // what was drawn last has been uploaded, and its bands are known
  int width = 0;
  int height = 0;
};

}  // namespace ui
