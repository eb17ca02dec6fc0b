// The cost of a frame of the Playing screen, compared with its floors: (a) an empty frame, (b) the same
// texture copies and texts in a bare loop. The three take turns within each iteration, so that a busy machine
// slows them alike.

#include <SDL.h>
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "recorded_copies.h"
#include "resources/i18n.h"
#include "screens/playing.h"
#include "screens/playing_layout.h"
#include "stage.h"
#include "support/temp_dir.h"
#include "ui/draw.h"
#include "ui/fonts.h"
#include "ui/gpu.h"
#include "ui/palette.h"

namespace {

using bench::Stage;

constexpr int kLevel = 91;

struct Text {
  ui::Rect rect;
  std::string text;
  ui::TextStyle style;
};

// The texts of the header and the action bar. Any time will do, as all are equally wide.
std::vector<Text> textsOf(const screens::Playing& screen, const ui::Ctx& ctx) {
  const screens::PlayingLayout layout = screens::playingLayout(ctx.w, ctx.h);
  const ui::TextStyle number = {.size = 15, .color = ui::palette::kLightText};
  const ui::TextStyle label = {.size = 14, .bold = true, .color = ui::palette::kLightText};
  return {
      {layout.label,
       i18n::tr("playing.levelLabel", {{"n", std::to_string(kLevel)}}),
       {.size = 17, .bold = true, .color = ui::palette::kLightText}},
      {layout.counters[0], std::to_string(screen.table().slots.size()), number},
      {layout.counters[1], "0", number},
      {layout.counters[2], "0", number},
      {layout.time, "00:00", number},
      {layout.buttons[0], i18n::tr("playing.hint"), label},
      {layout.buttons[1], i18n::tr("playing.shuffle"), label},
      {layout.buttons[2], i18n::tr("playing.undo"), label},
  };
}

void playingFrame(benchmark::State& state) {
  Stage stage(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
  screens::Playing screen({.kind = ui::ScreenKind::Playing, .level = kLevel, .deal = kLevel});
  const auto play = [&] { screen.update(stage.ctx); };
  // Runs through the fly-in until the screen is at rest.
  for (stage.ctx.time = 1; stage.ctx.time < 20; stage.ctx.time += 0.5) stage.frame(play);
  std::vector<bench::Copy> copies;
  stage.frame([&] {
    const bench::Recording recording(copies);
    screen.update(stage.ctx);
  });
  if (copies.size() != static_cast<std::size_t>(ui::gpuDrawCalls())) {
    state.SkipWithError("the bare loop does not make the screen's copies");
    return;
  }
  const std::vector<Text> texts = textsOf(screen, stage.ctx);

  double empty = 0;
  double bare = 0;
  double playing = 0;
  while (state.KeepRunning()) {
    empty += stage.frame([] {});
    bare += stage.frame([&] {
      bench::copyAll(stage.renderer.get(), copies);
      for (const Text& text : texts) ui::drawTextIn(stage.ctx.cr, text.rect, text.text, text.style);
    });
    const double seconds = stage.frame(play);
    playing += seconds;
    state.SetIterationTime(seconds);
    stage.ctx.time += 1.0 / 60;
  }
  const auto frames = static_cast<double>(state.iterations());
  state.counters["a_empty_ms"] = 1000 * empty / frames;
  state.counters["b_copies_and_texts_ms"] = 1000 * bare / frames;
  state.counters["c_playing_ms"] = 1000 * playing / frames;
  state.counters["c/b"] = playing / bare;
  state.counters["copies"] = static_cast<double>(copies.size());
}
BENCHMARK(playingFrame)
    ->Args({1100, 760})
    ->Args({1920, 1080})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): cannot measure without a directory
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
  ui::registerBundledFonts();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  SDL_Quit();
  return 0;
}
