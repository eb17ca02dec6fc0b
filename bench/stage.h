// stage.h: runs frames without a visible window, the way the program does. Units: device pixels, which equal
// the window's points here; seconds.
#pragma once

#include <SDL.h>

#include <cstdlib>
#include <ctime>

#include "app/frame.h"
#include "app/geometry.h"
#include "ui/gpu.h"
#include "ui/handles.h"

namespace bench {

// Processor time of this thread, in seconds. Other programs do not affect it.
inline double processorTime() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// An invisible window with SDL's software renderer.
struct Stage {
  Stage(int w, int h)
      : window(SDL_CreateWindow("", 0, 0, w, h, 0)),
        renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE)),
        canvas(renderer.get()),
        scale(ui::windowGrowth(w, h)) {
    if (!renderer) std::abort();
    ui::gpuInit(renderer.get());
    ui::gpuSetScale(scale);
    canvas.resize(w, h);
    ctx.w = w / scale;
    ctx.h = h / scale;
  }
  ~Stage() { ui::gpuShutdown(); }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

  // Runs a frame like the program's around `draw`. Returns the processor time it took, in seconds.
  template <typename Draw>
  double frame(const Draw& draw) {
    const double begun = processorTime();
    ui::CairoContext cr = canvas.begin(scale);
    ctx.cr = cr.get();
    ui::gpuBeginFrame();
    SDL_SetRenderDrawColor(renderer.get(), 0, 0, 0, SDL_ALPHA_OPAQUE);
    SDL_RenderClear(renderer.get());
    draw();
    cr.reset();
    canvas.flush();
    canvas.upload();
    SDL_RenderPresent(renderer.get());
    return processorTime() - begun;
  }

  ui::SdlWindow window;
  ui::SdlRenderer renderer;
  ui::FrameCanvas canvas;
  double scale;  // device pixels per logical pixel
  ui::Ctx ctx;
};

}  // namespace bench
