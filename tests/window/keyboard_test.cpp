// Plays whole levels in a real window by keyboard alone, from the splash screen to the next level's table.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "rules/deal.h"
#include "rules/levels.h"
#include "screens/playing_layout.h"
#include "screens/tile_cursor.h"
#include "storage/storage.h"
#include "support/arrow_way.h"
#include "support/picture.h"
#include "ui/palette.h"
#include "window/data_files.h"
#include "window/menu.h"
#include "window/session.h"

namespace {

using screens::Arrow;
using window::Key;
using window::waitFor;

std::uint32_t dealOf(int level) { return static_cast<std::uint32_t>(level); }

std::string progressTo(int level) {
  return window::writtenFile("progress.json",
                             [=] { store::saveProgress({.currentLevel = level, .totalSolves = level - 1}); });
}

class KeysAlone : public testing::TestWithParam<int> {
 protected:
  KeysAlone() {
    support::writeFile(desktop.dataPath("progress.json"), progressTo(level));
    game = std::make_unique<window::Game>(desktop);
  }

  // Whether the window shows this deal, now or after a while. A quarter of its tiles is enough: small tiles
  // are hard to compare.
  bool shows(const window::Table& shown) const {
    const double enough = 0.25 * static_cast<double>(shown.game.slots.size());
    return waitFor([&] {
      const ui::CairoSurface picture = game->picture();
      return picture && shown.tilesShownIn(picture.get()) > enough;
    });
  }
  // Looks for the golden corners around the tile.
  bool showsCursorOn(int tile) const {
    return waitFor([&] {
      const ui::CairoSurface picture = game->picture();
      return picture && hasCorners(picture.get(), tile);
    });
  }
  bool hasCorners(cairo_surface_t* picture, int tile) const {
    const window::Size size = window::sizeOf(picture);
    const ui::BoardGeom geom = ui::boardGeometry(
        table.game.slots, screens::playingLayout(size.w, size.h).board, ui::FitMode::Contain);
    const ui::Rect rect = geom.place(table.game.slots[static_cast<std::size_t>(tile)]);
    int golden = 0;
    for (const double x : {rect.x - 2, rect.x + rect.w + 1}) {
      for (const double y : {rect.y + 1, rect.y + rect.h - 2}) {
        const std::uint32_t color =
            support::pixelAt(picture, static_cast<int>(x), static_cast<int>(y)) & 0xFFFFFF;
        if (support::channelDifference(color, ui::palette::kGold) <= 40) ++golden;
      }
    }
    return golden == 4;
  }
  // Moves the cursor and waits for each step: SDL takes key presses within two milliseconds for a held key.
  // False if the cursor does not follow.
  bool goTo(int tile) {
    static const std::map<Arrow, Key> kKeys = {
        {Arrow::Left, Key::Left}, {Arrow::Right, Key::Right}, {Arrow::Up, Key::Up}, {Arrow::Down, Key::Down}};
    for (const Arrow arrow : support::wayTo(table.game, cursor, tile)) {
      game->type(kKeys.at(arrow));
      cursor = screens::tileTowards(table.game, cursor, arrow);
      if (!showsCursorOn(cursor)) return false;
    }
    return cursor == tile;
  }
  bool take(const mj::SlotPair& pair) {
    for (const int tile : {pair.first, pair.second}) {
      if (!goTo(tile)) return false;
      game->type(Key::Return);
    }
    mj::applyMatch(table.game, pair.first, pair.second);
    cursor = screens::tileNear(table.game, pair.second);
    return cursor < 0 || showsCursorOn(cursor);
  }

  const int level = GetParam();
  window::Desktop desktop;
  std::unique_ptr<window::Game> game;
  window::Table table{level, dealOf(level)};
  int cursor = -1;
};

INSTANTIATE_TEST_SUITE_P(Level, KeysAlone, testing::Values(1, 20, 50, 91));

TEST_P(KeysAlone, PlayALevelFromTheSplashScreenToTheNext) {
  game->type(Key::Return);
  ASSERT_TRUE(waitFor([&] { return window::isMenuShownIn(game->picture().get()); }));
  // A quick second press would count as meant for the splash screen.
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  game->type(Key::Return);
  ASSERT_TRUE(shows(table));

  game->type(Key::Down);
  cursor = screens::firstTile(table.game);
  ASSERT_TRUE(showsCursorOn(cursor));
  for (const mj::SlotPair& pair : mj::createDeal(table.game.slots, dealOf(level)).order) {
    ASSERT_TRUE(take(pair)) << "after " << table.game.removed << " tiles";
  }

  ASSERT_TRUE(waitFor([&] {
    const window::DataFiles files(desktop.dataPath());
    return files.level() == level + 1 && files.solves.kind == js::Value::Array;
  }));
  game->type(Key::Return);
  EXPECT_TRUE(shows(window::Table(level + 1, dealOf(level + 1))));
}

}  // namespace
