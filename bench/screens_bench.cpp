// What a frame of the screens around the game costs at rest, beside its floor: an empty frame with the same
// texture copies made in a bare loop. The two take turns within each iteration, so that a busy machine slows
// them alike.

#include <SDL.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "rules/table_themes.h"
#include "screens/screens.h"
#include "stage.h"
#include "storage/storage.h"
#include "support/temp_dir.h"
#include "ui/fonts.h"
#include "ui/gpu.h"

namespace {

using bench::Copy;
using bench::Stage;

constexpr int kW = 1100;
constexpr int kH = 760;

// The plain felt of a stage, under the key with which the screen has painted it.
Copy plainFelt(int stage) {
  const std::string key = std::string("felt|") + mj::tableThemeForStage(stage)->name + "|" +
                          std::to_string(kW) + "x" + std::to_string(kH);
  return {bench::readyTexture(key, kW, kH), {0, 0, kW, kH}, 1};
}

void levelSelectFrame(benchmark::State& state) {
  const int page = static_cast<int>(state.range(0));
  store::saveProgress({.currentLevel = 10 * page + 6, .totalSolves = 0});
  for (int i = 1; i <= 5; ++i) store::recordBest(10 * page + i, {.stars = 2, .aids = 1, .elapsedMs = 60000});
  Stage stage(kW, kH);
  const std::unique_ptr<ui::Screen> screen = screens::makeLevelSelect();
  const auto show = [&] { screen->update(stage.ctx); };
  const double first = stage.frame(show);
  const std::vector<Copy> copies = {plainFelt(page)};
  if (copies.size() != static_cast<std::size_t>(ui::gpuDrawCalls())) {
    state.SkipWithError("the bare loop does not make the screen's copies");
    return;
  }

  double bare = 0;
  double shown = 0;
  while (state.KeepRunning()) {
    bare += stage.frame([&] { bench::blitAll(copies); });
    const double seconds = stage.frame(show);
    shown += seconds;
    state.SetIterationTime(seconds);
  }
  const auto frames = static_cast<double>(state.iterations());
  state.counters["a_copies_ms"] = 1000 * bare / frames;
  state.counters["b_screen_ms"] = 1000 * shown / frames;
  state.counters["b/a"] = shown / bare;
  state.counters["first_frame_ms"] = 1000 * first;
}
BENCHMARK(levelSelectFrame)->DenseRange(0, 9)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): no directory, no measurement
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
  store::ensureDataDirs();
  ui::registerBundledFonts();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  SDL_Quit();
  return 0;
}
