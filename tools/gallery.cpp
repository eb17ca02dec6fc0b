// Paints the Playing screen in every state, in several window sizes and languages, for somebody to look at.
// Run: cmake --build build/release --target gallery && build/release/tools/gallery DIRECTORY [STATE...]

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/playing.h"
#include "support/temp_dir.h"
#include "ui/fonts.h"
#include "ui/handles.h"

namespace {

struct Window {
  int w;
  int h;
  int scale;
};
constexpr Window kWindows[] = {{640, 480, 1},   {779, 600, 1},   {1100, 760, 1},
                               {1920, 1080, 1}, {3840, 2160, 1}, {1100, 760, 2}};
constexpr const char* kLanguages[] = {"en", "de", "ru", "ja", "ar"};

// Somebody at the table. Frames pass unseen until one is painted.
class Sitting {
 public:
  Sitting(const Window& shownIn, int level, std::uint32_t deal)
      : window(shownIn),
        surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, window.w * window.scale,
                                           window.h * window.scale)),
        screen({.kind = ui::ScreenKind::Playing, .level = level, .deal = deal}) {
    frame(0, false);
    // Past the fly-in and the flash after it.
    frame(20, false);
    frame(1, false);
  }

  void wait(double seconds) { frame(seconds, false); }
  void key(int code) {
    ctx.in.keys = {code};
    frame(0, false);
  }
  void tap(int tile) { screen.tapTile(tile, ctx.time); }
  void take(mj::SlotPair pair) {
    tap(pair.first);
    tap(pair.second);
    wait(0.33);
    // The burst is over.
    wait(1.8);
  }
  const mj::GameState& game() const { return screen.table(); }

  void paint(const std::string& path) {
    frame(0.1, true);
    cairo_surface_write_to_png(surface.get(), path.c_str());
  }

 private:
  void frame(double dt, bool seen) {
    const ui::CairoContext cr(cairo_create(surface.get()));
    cairo_scale(cr.get(), window.scale, window.scale);
    if (!seen) {
      cairo_rectangle(cr.get(), 0, 0, 0, 0);
      cairo_clip(cr.get());
    }
    ctx.cr = cr.get();
    ctx.w = window.w;
    ctx.h = window.h;
    ctx.time += dt;
    ctx.dt = std::min(dt, 0.1);
    ctx.clickTaken = false;
    screen.update(ctx);
    ctx.in.keys.clear();
  }

  Window window;
  ui::CairoSurface surface;
  screens::Playing screen;
  ui::Ctx ctx;
};

void takePairs(Sitting& sitting, int pairs) {
  for (int i = 0; i < pairs; ++i) sitting.take(mj::findHint(sitting.game()));
}

struct State {
  const char* name;
  int level;
  std::uint32_t deal;
  std::function<void(Sitting&)> reach;
};

const State kStates[] = {
    {"fresh", 1, 1, [](Sitting&) {}},
    {"midgame", 61, 61,
     [](Sitting& sitting) {
       sitting.key(SDLK_h);
       sitting.wait(2);
       takePairs(sitting, 20);
       sitting.key(SDLK_m);
     }},
    {"selected", 95, 95, [](Sitting& sitting) { sitting.tap(mj::freeIds(sitting.game()).back()); }},
    {"refused", 33, 33,
     [](Sitting& sitting) {
       const std::vector<int> ids = mj::freeIds(sitting.game());
       sitting.tap(ids.front());
       sitting.tap(*std::find_if(ids.begin(), ids.end(), [&](int id) {
         return id != ids.front() && !mj::canMatch(sitting.game(), ids.front(), id);
       }));
     }},
    {"hint", 15, 15, [](Sitting& sitting) { sitting.key(SDLK_h); }},
    {"zoomed", 42, 42,
     [](Sitting& sitting) {
       sitting.key(SDLK_PLUS);
       sitting.key(SDLK_PLUS);
     }},
    // Once the lowest pair of this deal is taken no pair is left.
    {"nomoves", 1, 9,
     [](Sitting& sitting) {
       const auto pairs = mj::availablePairs(sitting.game());
       const auto height = [&](const mj::SlotPair& pair) {
         return sitting.game().slots[static_cast<std::size_t>(pair.first)].z +
                sitting.game().slots[static_cast<std::size_t>(pair.second)].z;
       };
       sitting.take(*std::min_element(pairs.begin(), pairs.end(),
                                      [&](const auto& a, const auto& b) { return height(a) < height(b); }));
     }},
    {"paused", 77, 77, [](Sitting& sitting) { sitting.key(SDLK_SPACE); }},
    {"won", 1, 1,
     [](Sitting& sitting) {
       while (mj::findHint(sitting.game()).first >= 0 && sitting.game().removed < 34) {
         sitting.take(mj::findHint(sitting.game()));
         if (mj::findHint(sitting.game()).first < 0) sitting.key(SDLK_m);
       }
       const auto [a, b] = mj::findHint(sitting.game());
       sitting.tap(a);
       sitting.tap(b);
       sitting.wait(0.33);
       sitting.wait(0.2);
     }},
};

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: gallery DIRECTORY [STATE...]\n", stderr);
    return 1;
  }
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  ui::registerBundledFonts();
  const std::string directory = argv[1];
  std::filesystem::create_directories(directory);
  const std::set<std::string> wanted(argv + 2, argv + argc);
  for (const State& state : kStates) {
    if (!wanted.empty() && !wanted.contains(state.name)) continue;
    for (const char* language : kLanguages) {
      i18n::setLanguage(language);
      for (const Window& window : kWindows) {
        std::filesystem::remove_all(files.path("veskara"));
        Sitting sitting(window, state.level, state.deal);
        state.reach(sitting);
        sitting.paint(directory + "/" + state.name + "_" + language + "_" + std::to_string(window.w) + "x" +
                      std::to_string(window.h) + "@" + std::to_string(window.scale) + ".png");
      }
    }
  }
  return 0;
}
