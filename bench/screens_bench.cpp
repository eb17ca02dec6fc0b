// The cost of a frame of the other screens at rest, and of the gallery while it scrolls, compared with the
// floor: an empty frame with the same texture copies in a bare loop. Also the cost of the first frame of the
// screens with many pictures, compared with painting the felt and making those pictures. What is compared
// takes turns within each iteration, so that a busy machine slows both alike.

#include <SDL.h>
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "recorded_copies.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/gallery_layout.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/miniature.h"
#include "screens/screens.h"
#include "stage.h"
#include "storage/storage.h"
#include "support/temp_dir.h"
#include "ui/felt.h"
#include "ui/fonts.h"
#include "ui/gpu.h"
#include "ui/scenes.h"

namespace {

using bench::Stage;
using MakeScreen = std::unique_ptr<ui::Screen> (*)();

constexpr int kW = 1100;
constexpr int kH = 760;
constexpr double kFrameTime = 1.0 / 60;
constexpr int kSolves = 200;
constexpr int kPictureSide = 640;

// --- the player's files ---

void writeProgress(int page) {
  store::saveProgress({.currentLevel = 10 * page + 6, .totalSolves = 0});
  for (int i = 1; i <= 5; ++i) store::recordBest(10 * page + i, {.stars = 2, .aids = 1, .elapsedMs = 60000});
}

// Twenty records for each page of the gallery.
void writeSolves() {
  for (int i = 0; i < kSolves; ++i) {
    store::SolveEntry entry;
    entry.id = "solve" + std::to_string(i);
    entry.level = i / 2 + 1;
    entry.seed = static_cast<std::uint32_t>(i + 1);
    entry.shot = entry.id + ".png";
    entry.stars = 2;
    const mj::GameState board = mj::createGame(mj::levelToConfig(entry.level).slots, entry.seed);
    ui::captureBoardPng(board, *mj::tableThemeForLevel(entry.level), kPictureSide, store::shotPath(entry));
    store::recordSolve(entry);
  }
}

// --- frames ---

// Total times of what takes turns, in seconds.
struct Turns {
  double floor = 0;
  double screen = 0;

  void report(benchmark::State& state) const {
    const auto frames = static_cast<double>(state.iterations());
    state.counters["a_floor_ms"] = 1000 * floor / frames;
    state.counters["b_screen_ms"] = 1000 * screen / frames;
    state.counters["b/a"] = screen / floor;
  }
};

using Input = std::function<ui::Input(int frame)>;

// Warms the screen up, then measures its frames. After each one, repeats its copies in a bare loop as the
// floor.
void framesOf(benchmark::State& state, MakeScreen make, const Input& input) {
  constexpr int kUntilWarm = 200;
  Stage stage(kW, kH);
  const std::unique_ptr<ui::Screen> screen = make();
  std::vector<bench::Copy> copies;
  int number = 0;
  const auto show = [&] {
    stage.ctx.time += kFrameTime;
    stage.ctx.in = input(number++);
    return stage.frame([&] {
      const bench::Recording recording(copies);
      screen->update(stage.ctx);
    });
  };
  while (number < kUntilWarm) show();

  Turns turns;
  while (state.KeepRunning()) {
    const double seconds = show();
    state.SetIterationTime(seconds);
    turns.screen += seconds;
    if (ui::gpuPaints() != 0 || copies.size() != static_cast<std::size_t>(ui::gpuDrawCalls())) {
      return state.SkipWithError("the bare loop does not make the screen's copies");
    }
    turns.floor += stage.frame([&] { bench::copyAll(stage.renderer.get(), copies); });
  }
  turns.report(state);
  state.counters["copies"] = static_cast<double>(copies.size());
}

ui::Input nothing(int /*frame*/) { return {}; }

// The wheel turns twenty steps down, then twenty up, with the pointer over the cards.
ui::Input wheel(int frame) {
  ui::Input input;
  input.mx = kW / 2.0;
  input.my = kH / 2.0;
  input.wheel = frame / 20 % 2 == 0 ? -1 : 1;
  return input;
}

void frame(benchmark::State& state, MakeScreen make) { framesOf(state, make, nothing); }

void levelSelectFrame(benchmark::State& state) {
  writeProgress(static_cast<int>(state.range(0)));
  framesOf(state, screens::makeLevelSelect, nothing);
}

void galleryScrolled(benchmark::State& state) {
  writeProgress(0);
  framesOf(state, screens::makeGallery, wheel);
}

BENCHMARK_CAPTURE(frame, menu, screens::makeMenu)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(levelSelectFrame)->DenseRange(0, 9)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(galleryScrolled)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frame, gallery, screens::makeGallery)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frame, settings, screens::makeSettings)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frame, about, screens::makeAbout)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(frame, licences, screens::makeLicenses)->UseManualTime()->Unit(benchmark::kMillisecond);

// --- first frames ---

// Measures the first frame of a new screen, including its construction, with an empty texture cache.
// Alternates with a frame that draws `floor`.
template <typename Floor>
void firstFrame(benchmark::State& state, MakeScreen make, const Floor& floor) {
  Turns turns;
  const auto once = [](const auto& draw) {
    Stage stage(kW, kH);
    return stage.frame([&] { draw(stage.ctx); });
  };
  const auto show = [&](ui::Ctx& ctx) { make()->update(ctx); };
  once(floor);
  once(show);
  while (state.KeepRunning()) {
    turns.floor += once(floor);
    const double seconds = once(show);
    turns.screen += seconds;
    state.SetIterationTime(seconds);
  }
  turns.report(state);
}

ui::CairoSurface paper(double side) {
  const int pixels = ui::gpuPixels(side);
  return ui::CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels));
}

void levelSelectFirstFrame(benchmark::State& state) {
  const int page = static_cast<int>(state.range(0));
  writeProgress(page);
  const double side = screens::levelCardLayout(screens::levelGrid(kW, kH).card(0, 0)).miniature.w;
  firstFrame(state, screens::makeLevelSelect, [&](ui::Ctx& ctx) {
    ui::drawFelt(ctx, mj::tableThemeForStage(page), false);
    for (int i = 1; i <= screens::kLevelsPerPage; ++i) {
      const ui::CairoSurface miniature = paper(side);
      const ui::CairoContext cr(cairo_create(miniature.get()));
      screens::paintMini(cr.get(), {0, 0, side, side}, mj::levelToConfig(10 * page + i).slots);
    }
  });
}

// The picture files of as many of the first records as there are cards in view.
std::vector<std::string> picturesInView() {
  const screens::CardGrid grid = screens::galleryGrid(kW, kH, screens::kPagedListTop);
  std::vector<store::SolveEntry> entries = store::listSolves();
  std::sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) { return a.level < b.level; });
  std::vector<std::string> paths;
  for (int i = 0; grid.card(i, 0).y < grid.view.y + grid.view.h; ++i)
    paths.push_back(store::shotPath(entries[static_cast<std::size_t>(i)]));
  return paths;
}

void galleryFirstFrame(benchmark::State& state) {
  writeProgress(0);
  const std::vector<std::string> paths = picturesInView();
  firstFrame(state, screens::makeGallery, [&](ui::Ctx& ctx) {
    ui::drawFelt(ctx, mj::tableThemeForStage(0), false);
    for (const std::string& path : paths) {
      const ui::CairoSurface picture(cairo_image_surface_create_from_png(path.c_str()));
      if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) std::abort();
    }
  });
}

BENCHMARK(levelSelectFirstFrame)->DenseRange(0, 9)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(galleryFirstFrame)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): cannot measure without a directory
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
  store::ensureDataDirs();
  ui::registerBundledFonts();
  writeSolves();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  SDL_Quit();
  return 0;
}
