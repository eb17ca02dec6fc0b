#include "gallery/states.h"

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/attract.h"
#include "screens/list_screen.h"
#include "screens/menu.h"
#include "screens/playing.h"
#include "screens/screens.h"
#include "screens/settings_layout.h"
#include "storage/storage.h"
#include "ui/handles.h"
#include "ui/scenes.h"

namespace gallery {
namespace {

using MakeScreen = std::function<std::unique_ptr<ui::Screen>()>;

mj::GameState dealt(int level) {
  return mj::createGame(mj::levelToConfig(level).slots, static_cast<std::uint32_t>(level));
}

// --- the Playing screen ---

// A fresh deal whose tiles are about to fly in.
MakeScreen table(int level, std::uint32_t deal) {
  return
      [=] { return screens::makePlaying({.kind = ui::ScreenKind::Playing, .level = level, .deal = deal}); };
}
MakeScreen table(int level) { return table(level, static_cast<std::uint32_t>(level)); }

screens::Playing& playing(const Sitting& sitting) { return dynamic_cast<screens::Playing&>(sitting.shown()); }
const mj::GameState& game(const Sitting& sitting) { return playing(sitting).table(); }

// Waits for the end of the fly-in and the flash after it.
void waitForIntro(Sitting& sitting) {
  sitting.wait(20);
  sitting.wait(1);
}

void tap(const Sitting& sitting, int tile) { playing(sitting).tapTile(tile, sitting.time()); }

void tapBoth(const Sitting& sitting, mj::SlotPair pair) {
  tap(sitting, pair.first);
  tap(sitting, pair.second);
}

// Waits until the burst is over.
void take(Sitting& sitting, mj::SlotPair pair) {
  tapBoth(sitting, pair);
  sitting.wait(0.33);
  sitting.wait(1.8);
}

void takeUntilLeft(Sitting& sitting, int tiles) {
  while (static_cast<int>(game(sitting).slots.size()) - game(sitting).removed > tiles) {
    if (mj::findHint(game(sitting)).first < 0) sitting.key(SDLK_m);
    take(sitting, mj::findHint(game(sitting)));
  }
}

void midgame(Sitting& sitting) {
  waitForIntro(sitting);
  sitting.key(SDLK_h);
  sitting.wait(2);
  takeUntilLeft(sitting, static_cast<int>(game(sitting).slots.size()) - 40);
  sitting.key(SDLK_m);
}

void selected(Sitting& sitting) {
  waitForIntro(sitting);
  tap(sitting, mj::freeIds(game(sitting)).back());
}

void refused(Sitting& sitting) {
  waitForIntro(sitting);
  const std::vector<int> ids = mj::freeIds(game(sitting));
  const auto other = std::find_if(ids.begin() + 1, ids.end(),
                                  [&](int id) { return !mj::canMatch(game(sitting), ids.front(), id); });
  tapBoth(sitting, {ids.front(), *other});
}

void hint(Sitting& sitting) {
  waitForIntro(sitting);
  sitting.key(SDLK_h);
}

void zoomed(Sitting& sitting) {
  waitForIntro(sitting);
  sitting.key(SDLK_PLUS);
  sitting.key(SDLK_PLUS);
}

void noMoves(Sitting& sitting) {
  waitForIntro(sitting);
  const std::vector<mj::SlotPair> pairs = mj::availablePairs(game(sitting));
  const auto height = [&](const mj::SlotPair& pair) {
    return game(sitting).slots[static_cast<std::size_t>(pair.first)].z +
           game(sitting).slots[static_cast<std::size_t>(pair.second)].z;
  };
  take(sitting, *std::min_element(pairs.begin(), pairs.end(),
                                  [&](const auto& a, const auto& b) { return height(a) < height(b); }));
}

void paused(Sitting& sitting) {
  waitForIntro(sitting);
  sitting.key(SDLK_SPACE);
}

void won(Sitting& sitting) {
  waitForIntro(sitting);
  takeUntilLeft(sitting, 2);
  tapBoth(sitting, mj::findHint(game(sitting)));
  sitting.wait(0.33);
  sitting.wait(0.2);
}

// --- the other screens ---

MakeScreen solved(int level, int hints) {
  return [=] {
    return screens::makeSolved({.kind = ui::ScreenKind::Solved,
                                .level = level,
                                .deal = static_cast<std::uint32_t>(level),
                                .timeMs = 754000,
                                .tiles = mj::levelToConfig(level).tiles,
                                .hints = hints,
                                .shuffles = hints / 2});
  };
}

std::unique_ptr<ui::Screen> menu() { return std::make_unique<screens::Menu>(dealt(61)); }

std::unique_ptr<ui::Screen> menuWithSavedGame() {
  store::saveGame({.level = 88, .seed = 88, .game = dealt(88), .elapsedMs = 65000});
  return menu();
}

// Opens the levels up to this one, with one to three stars on most of those before.
void playUpTo(int level) {
  store::saveProgress({.currentLevel = level, .totalSolves = level});
  for (int before = std::max(1, level - 12); before < level; ++before) {
    if (before % 5 == 0) continue;
    store::recordBest(before, {.stars = 1 + before % 3, .aids = 2 - before % 3, .elapsedMs = 60000});
  }
}

MakeScreen levelsUpTo(int level) {
  return [=] {
    playUpTo(level);
    return screens::makeLevelSelect();
  };
}

// All but the last record have pictures; times go from one second to two and a half hours.
std::unique_ptr<ui::Screen> solveRecords() {
  constexpr std::int64_t kFirstDay = 1767225600000;
  constexpr std::int64_t kDay = 86400000;
  constexpr std::array<int, 7> kLevels = {31, 32, 33, 34, 36, 37, 38};
  constexpr std::array<std::int64_t, 7> kSeconds = {1, 59, 187, 754, 3661, 9000, 600};
  store::saveProgress({.currentLevel = 39, .totalSolves = 7});
  store::ensureDataDirs();
  for (std::size_t i = 0; i < kLevels.size(); ++i) {
    const int level = kLevels[i];
    const bool pictured = i + 1 < kLevels.size();
    const std::string id = std::to_string(level);
    const store::SolveEntry entry = {.id = id,
                                     .level = level,
                                     .tiles = mj::levelToConfig(level).tiles,
                                     .seed = static_cast<std::uint32_t>(level),
                                     .elapsedMs = 1000 * kSeconds[i],
                                     .solvedAt = kFirstDay + 37 * kDay * static_cast<std::int64_t>(i),
                                     .shot = id + ".png",
                                     .stars = 1 + level % 3};
    if (pictured)
      ui::captureBoardPng(dealt(level), *mj::tableThemeForLevel(level), 640, store::shotPath(entry));
    store::recordSolve(entry);
  }
  return screens::makeGallery();
}

void shown(Sitting&) {}

void afterStars(Sitting& sitting) { sitting.wait(2); }

void afterDrop(Sitting& sitting) { sitting.wait(1.4); }

void askToDelete(Sitting& sitting) { sitting.rightClick(60, 160); }

void scrolledDown(Sitting& sitting) { sitting.scrollDown(100); }

void askToReset(Sitting& sitting) {
  const ui::CairoSurface page(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
  const ui::CairoContext cr(cairo_create(page.get()));
  const ui::Rect view = screens::listView(sitting.w(), sitting.h());
  const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), sitting.w());
  const double top = screens::settingsTop(layout, view) + std::min(view.h - layout.height, 0.0);
  scrolledDown(sitting);
  sitting.click(layout.reset.x + layout.reset.w / 2, top + layout.reset.y + layout.reset.h / 2);
}

// The ring after so many presses of Tab. The first one shows it.
std::function<void(Sitting&)> tabbed(int presses, const std::function<void(Sitting&)>& before = shown) {
  return [=](Sitting& sitting) {
    before(sitting);
    sitting.wait(0);
    for (int i = 0; i < presses; ++i) sitting.key(SDLK_TAB);
  };
}

// The cursor beside a selected tile and a hint's.
void cursorBesideSelection(Sitting& sitting) {
  waitForIntro(sitting);
  sitting.key(SDLK_h);
  tap(sitting, mj::freeIds(game(sitting)).back());
  for (const int key : {SDLK_DOWN, SDLK_RIGHT, SDLK_UP}) sitting.key(key);
}

void cursorZoomed(Sitting& sitting) {
  zoomed(sitting);
  for (int i = 0; i < 9; ++i) sitting.key(SDLK_RIGHT);
}

void demoPair(Sitting& sitting) {
  for (const double pause : {0.9, 0.9, 0.95, 2.0, 0.1, 0.9, 0.9}) sitting.wait(pause);
}

const std::vector<State> kStates = {
    {"splash", screens::makeSplash, afterDrop},
    {"menu", menu, shown},
    {"menu_saved", menuWithSavedGame, shown},

    {"fresh", table(1), waitForIntro},
    {"midgame", table(61), midgame},
    {"selected", table(95), selected},
    {"refused", table(33), refused},
    {"hint", table(15), hint},
    {"zoomed", table(42), zoomed},
    // After the lowest pair of this deal is taken, no pair is left.
    {"nomoves", table(1, 9), noMoves},
    {"paused", table(77), paused},
    {"won", table(1), won},

    {"solved_three", solved(24, 0), afterStars},
    {"solved_one", solved(100, 11), afterStars},
    {"levels_first", levelsUpTo(1), shown},
    {"levels_middle", levelsUpTo(37), shown},
    {"levels_last", levelsUpTo(98), shown},
    {"gallery_empty", screens::makeGallery, shown},
    {"gallery", solveRecords, shown},
    {"gallery_scrolled", solveRecords, scrolledDown},
    {"gallery_question", solveRecords, askToDelete},
    {"settings", screens::makeSettings, shown},
    {"settings_scrolled", screens::makeSettings, scrolledDown},
    {"settings_question", screens::makeSettings, askToReset},
    {"about", screens::makeAbout, shown},
    {"licences", screens::makeLicenses, shown},
    {"licences_scrolled", screens::makeLicenses, scrolledDown},
    {"menu_focus", menu, tabbed(1)},
    {"menu_doors_focus", menu, tabbed(4)},
    {"selected_focus", table(61), cursorBesideSelection},
    {"zoomed_focus", table(42), cursorZoomed},
    {"nomoves_focus", table(1, 9), tabbed(2, noMoves)},
    {"paused_focus", table(77), tabbed(1, paused)},
    {"solved_focus", solved(24, 0), tabbed(2, afterStars)},
    {"levels_focus", levelsUpTo(37), tabbed(20)},
    {"levels_chip_focus", levelsUpTo(37), tabbed(5)},
    {"gallery_focus", solveRecords, tabbed(15)},
    {"gallery_question_focus", solveRecords, tabbed(1, askToDelete)},
    {"settings_focus", screens::makeSettings, tabbed(6)},
    {"settings_slider_focus", screens::makeSettings, tabbed(25)},
    {"settings_switch_focus", screens::makeSettings, tabbed(28)},
    {"about_focus", screens::makeAbout, tabbed(3)},
    {"licences_focus", screens::makeLicenses, tabbed(1)},
    {"attract", [] { return std::make_unique<screens::Attract>(7, 7); }, demoPair},
};

}  // namespace

std::span<const State> states() { return kStates; }

}  // namespace gallery
