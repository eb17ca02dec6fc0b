// The cost of making the picture of a solved board, compared with one frame, which it delays, and with its
// floor: writing a finished picture of the same board. The two take turns within each iteration, so that a
// busy machine slows them alike.

#include <benchmark/benchmark.h>
#include <cairo.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>

#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "ui/fonts.h"
#include "ui/handles.h"
#include "ui/scenes.h"

namespace {

constexpr int kLevel = 91;
constexpr double kFrameTime = 1.0 / 60;

template <typename Act>
double secondsOf(const Act& act) {
  const auto begun = std::chrono::steady_clock::now();
  act();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

void capture(benchmark::State& state) {
  const auto size = static_cast<int>(state.range(0));
  const mj::GameState game = mj::createGame(mj::levelToConfig(kLevel).slots, kLevel);
  const mj::TableTheme& theme = *mj::tableThemeForLevel(kLevel);
  const std::string path = std::filesystem::temp_directory_path() / "veskara-capture-bench.png";
  if (!ui::captureBoardPng(game, theme, size, path)) {
    state.SkipWithError("no picture");
    return;
  }
  const ui::CairoSurface ready(cairo_image_surface_create_from_png(path.c_str()));

  double writing = 0;
  double whole = 0;
  while (state.KeepRunning()) {
    writing += secondsOf([&] { cairo_surface_write_to_png(ready.get(), path.c_str()); });
    const double seconds = secondsOf([&] { ui::captureBoardPng(game, theme, size, path); });
    whole += seconds;
    state.SetIterationTime(seconds);
  }
  std::remove(path.c_str());
  const auto captures = static_cast<double>(state.iterations());
  state.counters["a_writing_ms"] = 1000 * writing / captures;
  state.counters["b_capture_ms"] = 1000 * whole / captures;
  state.counters["b/a"] = whole / writing;
  state.counters["frames"] = whole / captures / kFrameTime;
}
BENCHMARK(capture)->Arg(640)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  ui::registerBundledFonts();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
