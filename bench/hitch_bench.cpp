// Measures every frame of a sitting: the menu, a large level's fly-in, forty pairs, zooming in and out, the
// win and what follows. Prints the processor time of each part's frames, and compares the longest with a
// frame at rest: a player notices the one late frame, not the mean.

#include <SDL.h>
#include <SDL_keycode.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "app/app.h"
#include "screens/playing.h"
#include "screens/screens.h"
#include "stage.h"
#include "support/temp_dir.h"
#include "ui/fonts.h"

namespace {

constexpr int kLevel = 91;
constexpr int kPairs = 40;
constexpr double kFrameTime = 1.0 / 60;

ui::Screen* shown = nullptr;

std::unique_ptr<ui::Screen> makeAndShow(const ui::GameState& descriptor) {
  std::unique_ptr<ui::Screen> screen = screens::make(descriptor);
  shown = screen.get();  // cppcheck-suppress danglingLifetime ; the stack keeps the screen
  return screen;
}

// Plays the game and measures each frame.
class Sitting {
 public:
  Sitting(int w, int h) : stage(w, h) { game.setFactory(makeAndShow); }

  void go(const ui::GameState& descriptor) { game.resetTo(descriptor); }
  void key(int code) { stage.ctx.in.keys = stage.ctx.in.freshKeys = {code}; }
  double time() const { return stage.ctx.time; }
  ui::ScreenKind kind() const { return game.descriptors().back().kind; }
  screens::Playing& playing() const { return dynamic_cast<screens::Playing&>(*shown); }

  void frame() {
    times.push_back(stage.frame([&] { game.update(stage.ctx); }));
    stage.ctx.in = {};
    stage.ctx.time += kFrameTime;
    stage.ctx.dt = kFrameTime;
  }
  void frames(double seconds) {
    for (const double end = time() + seconds; time() < end;) frame();
  }

  // Prints the times of the frames since the last report, in milliseconds. If `rest` is true, this report and
  // the following ones are compared with its median.
  void report(const char* part, bool rest) {
    std::sort(times.begin(), times.end());
    const auto at = [&](double share) {
      return 1000 * times[static_cast<std::size_t>(share * static_cast<double>(times.size() - 1))];
    };
    if (rest) resting = at(0.5);
    std::printf("%-28s %6zu %8.2f %8.2f %8.2f %10.2f\n", part, times.size(), at(0.5), at(0.99), at(1),
                at(1) / resting);
    times.clear();
  }
  void forget() { times.clear(); }

 private:
  bench::Stage stage;
  ui::Game& game = ui::Game::instance();
  std::vector<double> times;
  double resting = 1;
};

void takePairs(Sitting& sitting, int pairs) {
  for (int i = 0; i < pairs && !mj::isSolved(sitting.playing().table()); ++i) {
    const auto [a, b] = mj::findHint(sitting.playing().table());
    if (a < 0) {
      sitting.key(SDLK_m);
      sitting.frame();
      continue;
    }
    for (const int tile : {a, b}) {
      sitting.playing().tapTile(tile, sitting.time());
      sitting.frames(0.1);
    }
    sitting.frames(0.35);
  }
}

void sit(int w, int h) {
  std::printf("\n%d x %d %35s %8s %8s %8s %10s\n", w, h, "frames", "median", "p99", "worst", "worst/rest");
  Sitting sitting(w, h);
  sitting.go({.kind = ui::ScreenKind::Menu});
  sitting.frames(1);
  sitting.forget();  // leaves out the start of the program
  sitting.frames(2);
  sitting.report("menu", true);

  sitting.go({.kind = ui::ScreenKind::Playing, .level = kLevel, .deal = kLevel});
  sitting.frame();
  sitting.frame();
  sitting.frames(9);
  // The fly-in is compared with the menu at rest, all that follows with the table at rest.
  sitting.report("fly-in", false);
  sitting.frames(2);
  sitting.report("playing, at rest", true);
  std::fflush(stdout);
  takePairs(sitting, kPairs);
  sitting.frames(2);
  sitting.report("forty pairs", false);
  for (int i = 0; i < 8; ++i) {
    sitting.key(SDLK_PLUS);
    sitting.frames(0.2);
  }
  for (int i = 0; i < 8; ++i) {
    sitting.key(SDLK_MINUS);
    sitting.frames(0.2);
  }
  sitting.report("zoom to 3 and back", false);
  while (sitting.kind() == ui::ScreenKind::Playing && !mj::isSolved(sitting.playing().table()))
    takePairs(sitting, 1);
  while (sitting.kind() == ui::ScreenKind::Playing) sitting.frame();
  sitting.report("to the win", false);
  sitting.frames(3);
  sitting.report("solved, with its picture", false);
  sitting.frames(2);
  sitting.report("solved", true);
}

}  // namespace

// Usage: hitch_bench [WIDTH HEIGHT]
int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): cannot measure without a directory
  const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
  const bool hasSize = arguments.size() == 3;
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  SDL_SetHint(SDL_HINT_VIDEODRIVER, "dummy");
  if (SDL_Init(SDL_INIT_VIDEO) != 0) return 1;
  ui::registerBundledFonts();
  sit(hasSize ? std::atoi(arguments[1]) : 1100, hasSize ? std::atoi(arguments[2]) : 760);
  SDL_Quit();
  return 0;
}
