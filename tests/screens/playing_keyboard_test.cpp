// Playing by keyboard: the cursor on the tiles, the buttons around the board, the panels.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "screens/playing_layout.h"
#include "screens/rects.h"
#include "screens/sitting.h"
#include "screens/tile_cursor.h"
#include "support/arrow_way.h"
#include "support/heard.h"
#include "support/picture.h"

namespace {

using audio::Sfx;
using support::heard;
using test::Sitting;
using testing::ElementsAre;

struct KeySitting : Sitting {
  explicit KeySitting(const ui::GameState& descriptor = test::kFirstLevel, int w = 640, int h = 480)
      : Sitting(descriptor, support::Drawing::Textures, w, h) {
    waitForIntro();
    heard().clear();
  }

  void key(int code) { harness.key(code); }
  void key(int code, int times) {
    for (int i = 0; i < times; ++i) key(code);
  }
  void backTab() {
    harness.next().shift = true;
    key(SDLK_TAB);
  }
  std::optional<int> cursor() const { return screen.cursorTile(); }
  int cursorAfter(int code) {
    key(code);
    return cursor().value_or(-1);
  }
  // Moves the cursor to the tile with arrow keys only.
  void goTo(int tile) {
    if (!cursor()) key(SDLK_UP);
    for (const screens::Arrow arrow : support::wayTo(game(), *cursor(), tile)) key(keyOf(arrow));
    EXPECT_EQ(cursor(), tile);
  }
  static int keyOf(screens::Arrow wanted) {
    for (const auto& [code, arrow] : kArrowKeys)
      if (arrow == wanted) return code;
    return 0;
  }
  bool isRinged(const ui::Rect& control) const {
    return focus.ring() && test::inside(control, *focus.ring());
  }

  static constexpr std::pair<int, screens::Arrow> kArrowKeys[] = {{SDLK_LEFT, screens::Arrow::Left},
                                                                  {SDLK_RIGHT, screens::Arrow::Right},
                                                                  {SDLK_UP, screens::Arrow::Up},
                                                                  {SDLK_DOWN, screens::Arrow::Down}};
};

TEST(PlayingKeyboard, FirstKeyShowsTheCursorNearTheMiddle) {
  for (const int code : {SDLK_LEFT, SDLK_DOWN, SDLK_TAB, SDLK_RETURN, SDLK_KP_ENTER}) {
    KeySitting sitting;
    EXPECT_FALSE(sitting.cursor());
    EXPECT_EQ(sitting.cursorAfter(code), screens::firstTile(sitting.game()));
    EXPECT_LT(sitting.game().selected, 0);
  }
}

TEST(PlayingKeyboard, CursorBeginsAtTheSelectedTile) {
  KeySitting sitting;
  const int tile = mj::freeIds(sitting.game()).back();
  sitting.click(tile);
  EXPECT_EQ(sitting.cursorAfter(SDLK_UP), tile);
}

TEST(PlayingKeyboard, MouseTakesTheCursorAway) {
  KeySitting sitting;
  const int first = sitting.cursorAfter(SDLK_RIGHT);
  EXPECT_NE(sitting.cursorAfter(SDLK_RIGHT), first);
  sitting.harness.moveTo(5, 5);
  EXPECT_FALSE(sitting.cursor());
  EXPECT_EQ(sitting.cursorAfter(SDLK_RIGHT), first) << "it begins anew";
}

TEST(PlayingKeyboard, ArrowsMoveTheCursorFromTileToTile) {
  KeySitting sitting;
  sitting.key(SDLK_UP);
  for (int round = 0; round < 5; ++round) {
    for (const auto& [code, arrow] : KeySitting::kArrowKeys) {
      const int next = screens::tileTowards(sitting.game(), *sitting.cursor(), arrow);
      EXPECT_EQ(sitting.cursorAfter(code), next);
    }
  }
}

TEST(PlayingKeyboard, EnterTapsTheTileAndSounds) {
  KeySitting sitting;
  const auto [a, b] = sitting.order.front();
  sitting.goTo(a);
  sitting.key(SDLK_RETURN);
  EXPECT_EQ(sitting.game().selected, a);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Place));
  sitting.key(SDLK_KP_ENTER);
  EXPECT_LT(sitting.game().selected, 0);
  sitting.key(SDLK_RETURN);
  sitting.goTo(b);
  sitting.key(SDLK_RETURN);
  sitting.harness.frame(0.4);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
}

TEST(PlayingKeyboard, HeldEnterTapsOnce) {
  KeySitting sitting;
  sitting.key(SDLK_UP);
  sitting.key(SDLK_RETURN);
  const int selected = sitting.game().selected;
  ASSERT_GE(selected, 0);
  for (int i = 0; i < 5; ++i) {
    sitting.harness.next().keys = {SDLK_RETURN};
    sitting.harness.frame();
  }
  EXPECT_EQ(sitting.game().selected, selected);
}

TEST(PlayingKeyboard, AfterAPairTheCursorIsOnTheNearestFreeTile) {
  KeySitting sitting;
  const auto [a, b] = sitting.order.front();
  sitting.goTo(a);
  sitting.key(SDLK_RETURN);
  sitting.goTo(b);
  sitting.key(SDLK_RETURN);
  EXPECT_EQ(sitting.cursor(), b) << "while the pair is seen";
  sitting.harness.frame(0.4);
  sitting.harness.frame();
  EXPECT_EQ(sitting.cursor(), screens::tileNear(sitting.game(), b));
}

TEST(PlayingKeyboard, CursorIsOnAFreeTileWhateverUndoPutsOnIt) {
  KeySitting sitting;
  sitting.take(sitting.order.front());
  sitting.harness.frame(2);
  const int selected = test::topTile(sitting.game());
  sitting.goTo(selected);
  sitting.key(SDLK_u);
  sitting.harness.frame();
  ASSERT_TRUE(sitting.cursor());
  EXPECT_TRUE(mj::isFree(sitting.game(), *sitting.cursor()));
}

TEST(PlayingKeyboard, TabGoesFromPartnerToPartner) {
  KeySitting sitting;
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.goTo(a);
  sitting.key(SDLK_RETURN);
  std::set<int> partners;
  for (const int tile : mj::freeIds(sitting.game()))
    if (mj::canMatch(sitting.game(), a, tile)) partners.insert(tile);
  std::set<int> seen;
  for (std::size_t i = 0; i < partners.size(); ++i) seen.insert(sitting.cursorAfter(SDLK_TAB));
  EXPECT_EQ(seen, partners);
  EXPECT_TRUE(seen.contains(b));
}

TEST(PlayingKeyboard, TabWithNothingShownYetLeadsToAPartner) {
  KeySitting sitting;
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.click(a);
  sitting.harness.frame();
  EXPECT_TRUE(mj::canMatch(sitting.game(), a, sitting.cursorAfter(SDLK_TAB)));
}

// From the tiles, row by row, to the buttons below, then to those above and back. Undo is left out: it is
// disabled without a move.
TEST(PlayingKeyboard, TabComesByEveryTileAndEveryButtonOnce) {
  for (const auto& [w, h] : {std::pair{640, 480}, std::pair{1100, 760}}) {
    KeySitting sitting(test::kFirstLevel, w, h);
    const screens::PlayingLayout layout = screens::playingLayout(w, h);
    const std::vector<int> tiles = screens::tilesInReadingOrder(sitting.game());
    sitting.goTo(tiles.front());
    for (std::size_t i = 1; i < tiles.size(); ++i) EXPECT_EQ(sitting.cursorAfter(SDLK_TAB), tiles[i]);
    for (const int button : {0, 1, 3, 4, 5}) {
      sitting.key(SDLK_TAB);
      EXPECT_TRUE(sitting.isRinged(layout.buttons[static_cast<std::size_t>(button)])) << button;
      EXPECT_FALSE(sitting.cursor());
      EXPECT_TRUE(test::inside(*sitting.focus.ring(), {0, 0, 1.0 * w, 1.0 * h}));
    }
    sitting.key(SDLK_TAB);
    EXPECT_TRUE(sitting.isRinged(layout.back));
    sitting.key(SDLK_TAB);
    EXPECT_TRUE(sitting.isRinged(layout.pause));
    EXPECT_EQ(sitting.cursorAfter(SDLK_TAB), tiles.front());
    EXPECT_FALSE(sitting.focus.ring());
    sitting.backTab();
    EXPECT_TRUE(sitting.isRinged(layout.pause));
    sitting.key(SDLK_TAB);
    for (std::size_t i = 1; i < tiles.size(); ++i) sitting.key(SDLK_TAB);
    sitting.key(SDLK_TAB);
    EXPECT_TRUE(sitting.isRinged(layout.buttons[0]));
    sitting.backTab();
    EXPECT_EQ(sitting.cursor(), tiles.back());
  }
}

TEST(PlayingKeyboard, ButtonsAreWorkedAndArrowsLeadBackToTheCursor) {
  KeySitting sitting;
  const std::vector<int> tiles = screens::tilesInReadingOrder(sitting.game());
  sitting.goTo(tiles.back());
  sitting.key(SDLK_TAB);
  sitting.key(SDLK_RETURN);
  EXPECT_EQ(sitting.game().hints, 1);
  sitting.key(SDLK_RIGHT);
  sitting.key(SDLK_RIGHT);
  sitting.key(SDLK_RETURN);
  EXPECT_DOUBLE_EQ(sitting.shown().zoom, 1.6) << "undo is faint, the next is zoom";
  sitting.key(SDLK_UP);
  EXPECT_EQ(sitting.cursor(), tiles.back());
}

TEST(PlayingKeyboard, ZoomedBoardFollowsTheCursor) {
  KeySitting sitting;
  sitting.key(SDLK_PLUS, 4);
  ASSERT_EQ(sitting.shown().zoom, 3);
  sitting.key(SDLK_UP);
  for (const int tile : screens::tilesInReadingOrder(sitting.game())) {
    sitting.goTo(tile);
    const ui::Rect& board = sitting.screen.boardRect();
    const ui::BoardOpts opts = sitting.shown();
    const ui::BoardGeom geom = ui::boardGeometry(sitting.game().slots, board, opts.fit);
    const ui::Rect seen =
        ui::BoardView(board, opts).toScreen(geom.place(sitting.game().slots[static_cast<std::size_t>(tile)]));
    EXPECT_TRUE(test::inside(seen, board, 1e-9)) << tile;
  }
}

TEST(PlayingKeyboard, CursorIsSeenBesideSelectionAndHintWithoutTheirColours) {
  KeySitting sitting;
  const int tile = sitting.cursorAfter(SDLK_UP);
  const ui::BoardGeom geom =
      ui::boardGeometry(sitting.game().slots, sitting.screen.boardRect(), ui::FitMode::Contain);
  const ui::Rect rect = geom.place(sitting.game().slots[static_cast<std::size_t>(tile)]);
  const auto brightness = [&](double x, double y) {
    const std::uint32_t color = sitting.harness.colorAt(static_cast<int>(x), static_cast<int>(y));
    return static_cast<double>((color >> 16) + (color >> 8 & 0xFF) + (color & 0xFF)) / 3;
  };
  for (const double x : {rect.x - 2, rect.x + rect.w + 1}) {
    for (const double y : {rect.y - 2, rect.y + rect.h + 1}) {
      EXPECT_GT(brightness(x, y), 140) << "a light corner";
      double darkest = 255;
      for (int i = 2; i <= 6; ++i) darkest = std::min(darkest, brightness(x + (x < rect.x ? -i : i), y));
      EXPECT_LT(darkest, 90) << "with a dark edge";
    }
  }
}

TEST(PlayingKeyboard, PauseHasTheKeyboardAndEnterResumes) {
  KeySitting sitting;
  const screens::PanelLayout panel = screens::pausePanel(640, 480);
  const int tile = sitting.cursorAfter(SDLK_UP);
  sitting.key(SDLK_SPACE);
  sitting.harness.frame();
  EXPECT_FALSE(sitting.cursor());
  sitting.key(SDLK_DOWN);
  EXPECT_TRUE(sitting.isRinged(panel.first));
  sitting.key(SDLK_DOWN);
  EXPECT_TRUE(sitting.isRinged(panel.second));
  sitting.key(SDLK_TAB);
  EXPECT_TRUE(sitting.isRinged(panel.first));
  sitting.key(SDLK_RETURN);
  sitting.harness.frame();
  EXPECT_FALSE(sitting.screen.isPaused());
  EXPECT_EQ(sitting.cursor(), tile) << "where it was";
  sitting.key(SDLK_SPACE);
  sitting.harness.frame();
  sitting.key(SDLK_RETURN);
  EXPECT_FALSE(sitting.screen.isPaused()) << "without a ring, too";
  EXPECT_LT(sitting.game().selected, 0);
}

TEST(PlayingKeyboard, SpacePausesWhateverIsRinged) {
  KeySitting sitting;
  sitting.goTo(screens::tilesInReadingOrder(sitting.game()).back());
  sitting.key(SDLK_TAB);
  sitting.key(SDLK_SPACE);
  EXPECT_TRUE(sitting.screen.isPaused());
  EXPECT_EQ(sitting.game().hints, 0);
}

TEST(PlayingKeyboard, PanelWithoutMovesHasTheKeyboard) {
  KeySitting sitting(test::kSoonStuck);
  sitting.take(test::lowestPair(sitting.game()));
  sitting.harness.moveTo(3, 3);
  sitting.harness.frame(2);
  sitting.harness.frame();
  const screens::PanelLayout panel = screens::noMovesPanel(640, sitting.screen.boardRect(), 2);
  sitting.key(SDLK_RETURN);
  EXPECT_EQ(sitting.game().history.size(), 1U) << "Enter alone does nothing";
  sitting.key(SDLK_DOWN);
  EXPECT_TRUE(sitting.isRinged(panel.first));
  sitting.key(SDLK_RIGHT);
  EXPECT_TRUE(sitting.isRinged(panel.second));
  sitting.key(SDLK_TAB);
  EXPECT_TRUE(sitting.isRinged(panel.first));
  sitting.key(SDLK_RETURN);
  EXPECT_TRUE(sitting.game().history.empty());
}

TEST(PlayingKeyboard, WholeGameIsPlayed) {
  KeySitting sitting;
  while (!mj::isSolved(sitting.game())) {
    const auto [a, b] = sitting.order[sitting.game().history.size()];
    sitting.goTo(a);
    sitting.key(SDLK_RETURN);
    sitting.goTo(b);
    sitting.key(SDLK_RETURN);
    sitting.harness.frame(0.4);
    sitting.harness.frame();
    ASSERT_FALSE(sitting.lies(a) || sitting.lies(b));
  }
}

TEST(PlayingKeyboard, KeysOfOneFrameCountOneAfterTheOther) {
  KeySitting sitting;
  sitting.key(SDLK_UP);
  for (int pair = 0; pair < 6; ++pair) {
    const auto [a, b] = sitting.order[sitting.game().history.size()];
    std::vector<int> keys;
    int from = *sitting.cursor();
    for (const int tile : {a, b}) {
      for (const screens::Arrow arrow : support::wayTo(sitting.game(), from, tile))
        keys.push_back(KeySitting::keyOf(arrow));
      keys.push_back(SDLK_RETURN);
      from = tile;
    }
    sitting.harness.next().keys = sitting.harness.next().freshKeys = keys;
    sitting.harness.frame();
    EXPECT_EQ(sitting.cursor(), b);
    sitting.harness.frame(0.4);
    sitting.harness.frame();
    ASSERT_FALSE(sitting.lies(a) || sitting.lies(b)) << pair;
  }
}

}  // namespace
