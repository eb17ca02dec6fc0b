// The cost of getting cairo's drawing into the window: (a) a picture of the whole window, cleared, uploaded
// and copied in every frame; the game's canvas, which works in bands, (b) empty, (c) with header and action
// bar, (d) with a veil over everything. They take turns within each iteration.

#include <SDL.h>
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <cstdlib>
#include <cstring>

#include "app/frame.h"
#include "stage.h"
#include "ui/handles.h"

namespace {

// The processor time of `work`, in seconds.
template <typename Work>
double secondsOf(const Work& work) {
  const double begun = bench::processorTime();
  work();
  return bench::processorTime() - begun;
}

void fill(cairo_t* cr, double y, double h) {
  cairo_set_source_rgba(cr, 0, 0, 0, 0.5);
  cairo_rectangle(cr, 0, y, 1e6, h);
  cairo_fill(cr);
}

void canvasFrame(benchmark::State& state) {
  const auto w = static_cast<int>(state.range(0));
  const auto h = static_cast<int>(state.range(1));
  bench::Stage stage(w, h);
  const ui::CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  const ui::SdlTexture texture(
      SDL_CreateTexture(stage.renderer.get(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, w, h));
  SDL_SetTextureBlendMode(texture.get(), SDL_BLENDMODE_BLEND);
  const auto whole = [&] {
    const int stride = cairo_image_surface_get_stride(surface.get());
    unsigned char* pixels = cairo_image_surface_get_data(surface.get());
    std::memset(pixels, 0, static_cast<std::size_t>(stride) * static_cast<std::size_t>(h));
    SDL_UpdateTexture(texture.get(), nullptr, pixels, stride);
    SDL_RenderCopy(stage.renderer.get(), texture.get(), nullptr, nullptr);
    SDL_RenderFlush(stage.renderer.get());
  };
  const auto banded = [&](const auto& draw) {
    draw(stage.canvas.begin(1).get());
    stage.canvas.flush();
    stage.canvas.upload();
    SDL_RenderFlush(stage.renderer.get());
  };
  const auto nothing = [](cairo_t*) {};
  const auto edges = [h](cairo_t* cr) {
    fill(cr, 20, 40);
    fill(cr, h - 80, 50);
  };
  const auto veil = [h](cairo_t* cr) { fill(cr, 0, h); };
  double a = 0;
  double b = 0;
  double c = 0;
  double d = 0;
  while (state.KeepRunning()) {
    a += secondsOf(whole);
    banded(nothing);  // clears the veil of the previous turn
    const double seconds = secondsOf([&] { banded(nothing); });
    b += seconds;
    banded(edges);
    c += secondsOf([&] { banded(edges); });
    d += secondsOf([&] { banded(veil); });
    state.SetIterationTime(seconds);
  }
  const auto frames = static_cast<double>(state.iterations());
  state.counters["a_whole_ms"] = 1000 * a / frames;
  state.counters["b/a"] = b / a;
  state.counters["c/a"] = c / a;
  state.counters["d/a"] = d / a;
}
BENCHMARK(canvasFrame)
    ->Args({1100, 760})
    ->Args({3840, 2160})
    ->Iterations(60)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  SDL_Quit();
  return 0;
}
