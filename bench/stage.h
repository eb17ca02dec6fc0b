// stage.h: frames without a screen to see them, as the program makes them, and the texture copies of a frame
// in a bare loop. Units: logical pixels, which are device pixels here; seconds.
#pragma once

#include <SDL.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/frame.h"
#include "ui/gpu.h"
#include "ui/handles.h"

namespace bench {

// A window that nobody sees, with SDL's software renderer.
struct Stage {
  Stage(int w, int h)
      : window(SDL_CreateWindow("", 0, 0, w, h, 0)),
        renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE)),
        canvas(renderer.get()) {
    if (!renderer) std::abort();
    ui::gpuInit(renderer.get());
    canvas.resize(w, h);
    ctx.w = w;
    ctx.h = h;
  }
  ~Stage() { ui::gpuShutdown(); }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // A frame as the program makes it, around `draw`. Returns seconds.
  template <typename Draw>
  double frame(const Draw& draw) {
    const auto begun = std::chrono::steady_clock::now();
    ui::CairoContext cr = canvas.begin(1);
    ctx.cr = cr.get();
    ui::gpuBeginFrame();
    SDL_SetRenderDrawColor(renderer.get(), 0, 0, 0, SDL_ALPHA_OPAQUE);
    SDL_RenderClear(renderer.get());
    draw();
    cr.reset();
    canvas.upload();
    SDL_RenderPresent(renderer.get());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
  }

  ui::SdlWindow window;
  ui::SdlRenderer renderer;
  ui::FrameCanvas canvas;
  ui::Ctx ctx;
};

struct Copy {
  SDL_Texture* texture;
  ui::Rect rect;
  double alpha;
};

// The texture under a key that the screen has used already.
inline SDL_Texture* readyTexture(const std::string& key, int w, int h) {
  return ui::gpuTexture(
      key, w, h, [](cairo_t*, void*) { std::abort(); }, nullptr);
}

inline void blitAll(const std::vector<Copy>& copies) {
  for (const Copy& copy : copies) {
    ui::gpuBlit(copy.texture, copy.rect.x, copy.rect.y, copy.rect.w, copy.rect.h, copy.alpha);
  }
}

}  // namespace bench
