// frame.h: the picture that a frame's screen draws into, and its way to the window: one cairo surface of the
// size of the renderer's output, one streaming texture of the same size, both kept until that size changes.
// Units: device pixels.
#pragma once

#include "ui/handles.h"

namespace ui {

class FrameCanvas {
 public:
  // The renderer must outlive the canvas.
  explicit FrameCanvas(SDL_Renderer* target) : renderer(target) {}

  // Makes surface and texture anew if the size is another. Should one of them fail, the frame is drawn
  // without it, and the next frame tries again.
  void resize(int w, int h);
  // Forgets both, for a renderer that has lost its textures.
  void drop();
  // Clears the surface to transparent. The context draws on it in units of `scale` device pixels; it must be
  // gone before flush().
  CairoContext begin(double scale);
  // Ends the drawing with cairo.
  void flush();
  // Lays the flushed surface over what the renderer holds.
  void upload();

 private:
  SDL_Renderer* renderer;
  CairoSurface surface;
  SdlTexture texture;
  int width = 0;
  int height = 0;
};

}  // namespace ui
