// The demo: its timing, what ends it, and that it does not touch the player's files.

#include "screens/attract.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "rules/levels.h"
#include "screens/rects.h"
#include "screens/screens.h"
#include "screens/stack.h"
#include "support/data_home.h"
#include "support/heard.h"
#include "support/picture.h"
#include "support/screen_harness.h"

namespace {

using audio::Sfx;
using support::heard;
using test::overlap;
using test::Shows;
using test::Stack;
using testing::ElementsAre;
using testing::IsEmpty;
using ui::ScreenKind;

// After the first pair of this deal is taken there is no pair left, and a shuffle helps.
constexpr std::uint32_t kSoonStuck = 9;

struct Demo {
  explicit Demo(std::uint32_t deal = 1, int w = 640, int h = 480,
                support::Drawing drawing = support::Drawing::Textures)
      : screen(1, deal), harness([this](ui::Ctx& ctx) { screen.update(ctx); }, w, h, drawing) {
    heard().clear();
    harness.frame();
  }

  const mj::GameState& game() const { return screen.table(); }
  std::pair<int, int> picked() const { return {screen.boardOptions().pickA, screen.boardOptions().pickB}; }
  // Runs to the end of each phase of a step.
  void takePair() {
    for (const double wait : {0.801, 0.9, 1.0, 0.45}) harness.frame(wait);
  }
  // Stops in the frame that takes the last pair.
  void playToTheEnd() {
    while (game().removed + 2 < static_cast<int>(game().slots.size())) takePair();
    for (const double wait : {0.801, 0.9, 1.0}) harness.frame(wait);
  }

  screens::Attract screen;
  support::ScreenHarness harness;
};

TEST(Attract, DealsTheLevelAndDealItIsGiven) {
  const screens::Attract demo(7, 4000000000);
  EXPECT_EQ(demo.table(), mj::createGame(mj::levelToConfig(7).slots, 4000000000));
  EXPECT_EQ(demo.currentLevel(), 7);
}

TEST(Attract, ShowsThePairOneTileAfterTheOther) {
  Demo demo;
  const auto [a, b] = mj::findHint(demo.game());
  demo.harness.frame(0.799);
  EXPECT_EQ(demo.picked(), std::pair(-1, -1));
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.picked(), std::pair(a, -1));
  demo.harness.frame(0.898);
  EXPECT_EQ(demo.picked(), std::pair(a, -1));
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.picked(), std::pair(a, b));
}

TEST(Attract, TakesThePairAndClearsTheHighlight) {
  Demo demo;
  const auto [a, b] = mj::findHint(demo.game());
  demo.harness.frame(0.801);
  demo.harness.frame(0.9);
  demo.harness.frame(0.998);
  EXPECT_EQ(demo.game().removed, 0);
  demo.harness.frame(0.002);
  EXPECT_THAT(demo.game().history, ElementsAre(testing::FieldsAre(a, b, testing::_, testing::_)));
  EXPECT_EQ(demo.picked(), std::pair(-1, -1));
}

TEST(Attract, TakenPairBurstsWithItsFacesWhereItLay) {
  Demo demo;
  const mj::GameState before = demo.game();
  for (const double wait : {0.801, 0.9, 1.0}) demo.harness.frame(wait);
  const auto& bursts = demo.screen.effects().bursts;
  ASSERT_EQ(bursts.size(), 2U);
  const ui::BoardGeom geom =
      ui::boardGeometry(before.slots, screens::attractLayout(640, 480).board, ui::FitMode::Contain);
  const auto [a, b] = mj::findHint(before);
  ui::BoardFx expected;
  for (const int tile : {a, b}) {
    expected.addBurst(before, geom, tile, before.faces[static_cast<std::size_t>(tile)], demo.harness.time());
  }
  for (std::size_t i = 0; i < 2; ++i) {
    EXPECT_EQ(bursts[i].face, expected.bursts[i].face);
    EXPECT_EQ(bursts[i].cx, expected.bursts[i].cx);
    EXPECT_EQ(bursts[i].cy, expected.bursts[i].cy);
    EXPECT_EQ(bursts[i].start, expected.bursts[i].start);
  }
}

TEST(Attract, NextPairFollowsAfterAPause) {
  Demo demo;
  for (const double wait : {0.801, 0.9, 1.0}) demo.harness.frame(wait);
  // This frame ends the step and begins the next one.
  demo.harness.frame(0.45);
  demo.harness.frame(0.799);
  EXPECT_EQ(demo.picked().first, -1);
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.picked().first, mj::findHint(demo.game()).first);
}

TEST(Attract, IsHeardWhenTilesAreShownAndTaken) {
  Demo demo;
  demo.harness.frame(0.799);
  EXPECT_THAT(heard(), IsEmpty());
  demo.harness.frame(0.002);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Place));
  demo.harness.frame(0.9);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Place, Sfx::Place));
  demo.harness.frame(1.0);
  demo.harness.frame(0.45);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Place, Sfx::Place, Sfx::Remove));
}

TEST(Attract, StuckDealIsShuffledAndGoesOn) {
  Demo demo(kSoonStuck);
  demo.takePair();
  ASSERT_EQ(mj::findHint(demo.game()).first, -1);
  heard().clear();
  demo.harness.frame(0.799);
  EXPECT_EQ(demo.game().shuffles, 0);
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.game().shuffles, 1);
  EXPECT_EQ(demo.game().removed, 2);
  EXPECT_EQ(demo.picked().first, -1);
  EXPECT_THAT(heard(), IsEmpty());

  const int next = mj::findHint(demo.game()).first;
  ASSERT_GE(next, 0);
  demo.harness.frame(0.799);
  EXPECT_EQ(demo.picked().first, -1);
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.picked().first, next);
}

TEST(Attract, LastPairIsCelebratedOnce) {
  Demo demo;
  demo.playToTheEnd();
  ASSERT_TRUE(mj::isSolved(demo.game()));
  EXPECT_EQ(heard().back(), Sfx::Success);
  demo.harness.run(1.69, 0.1);
  EXPECT_THAT(heard(), testing::Contains(Sfx::Success).Times(1));
  EXPECT_EQ(heard().back(), Sfx::Success);
}

TEST(Attract, NewDealFollowsTheCelebration) {
  Demo demo;
  demo.playToTheEnd();
  demo.harness.frame(1.699);
  EXPECT_TRUE(mj::isSolved(demo.game()));
  demo.harness.frame(0.002);
  const int level = demo.screen.currentLevel();
  EXPECT_TRUE(1 <= level && level <= 25) << level;
  EXPECT_EQ(demo.game().removed, 0);
  EXPECT_EQ(demo.game().slots.size(), mj::levelToConfig(level).slots.size());

  heard().clear();
  demo.harness.frame(0.799);
  EXPECT_THAT(heard(), IsEmpty());
  demo.harness.frame(0.002);
  EXPECT_EQ(demo.picked(), std::pair(mj::findHint(demo.game()).first, -1));
}

std::string levelsOf(int demos) {
  std::string levels;
  for (int i = 0; i < demos; ++i) {
    const auto screen = screens::makeAttract();
    levels += std::to_string(dynamic_cast<const screens::Attract&>(*screen).currentLevel()) + " ";
  }
  return levels;
}

TEST(Attract, BeginsWithARandomDealOfTheFirst25Levels) {
  std::vector<mj::GameState> games;
  for (int i = 0; i < 100; ++i) {
    const auto screen = screens::makeAttract();
    const auto& demo = dynamic_cast<const screens::Attract&>(*screen);
    ASSERT_TRUE(1 <= demo.currentLevel() && demo.currentLevel() <= 25) << demo.currentLevel();
    ASSERT_EQ(demo.table().slots.size(), mj::levelToConfig(demo.currentLevel()).slots.size());
    ASSERT_THAT(games, testing::Not(testing::Contains(demo.table())));
    games.push_back(demo.table());
  }
}

TEST(Attract, BeginsDifferentlyInEveryRun) {
  constexpr int kDemos = 12;
  // Starts each process from scratch: a forked one would continue this one's random numbers.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::array<std::string, 2> runs;
  for (std::string& run : runs) {
    const auto keep = testing::Truly([&run](const std::string& said) { return !(run = said).empty(); });
    EXPECT_EXIT((std::cerr << levelsOf(kDemos), std::_Exit(0)), testing::ExitedWithCode(0), keep);
  }
  EXPECT_NE(runs[0], runs[1]);
}

// --- what ends it ---

struct Watched : Stack {
  Watched() : Stack({.kind = ScreenKind::Playing, .level = 1, .deal = 1}) {
    ui::Game::instance().push({.kind = ScreenKind::Attract});
    harness.frame();
    harness.frame();
  }
  static bool runs() { return top().kind == ScreenKind::Attract; }
};

TEST(Attract, EndsAtOnceWithAnyInput) {
  using Hand = std::function<void(support::ScreenHarness&)>;
  for (const Hand& hand : std::initializer_list<Hand>{
           [](auto& harness) { harness.press(300, 200); }, [](auto& harness) { harness.click(300, 200); },
           [](auto& harness) { harness.rightClick(300, 200); },
           [](auto& harness) { harness.key(SDLK_ESCAPE); }, [](auto& harness) { harness.key(SDLK_LSHIFT); },
           [](auto& harness) { harness.key(SDLK_F11); }, [](auto& harness) { harness.wheel(300, 200, 1); },
           [](auto& harness) { harness.wheel(300, 200, -1); }}) {
    Watched demo;
    ASSERT_TRUE(Watched::runs());
    hand(demo.harness);
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
    EXPECT_EQ(Stack::depth(), 1U);
  }
}

TEST(Attract, GoesOnWhenTheMouseOnlyMoves) {
  Watched demo;
  demo.harness.moveTo(10, 10);
  demo.harness.moveTo(600, 400);
  demo.harness.frame();
  EXPECT_TRUE(Watched::runs());
}

TEST(Attract, EndsAfterTwoMinutes) {
  Watched demo;
  demo.harness.frame(119.999);
  EXPECT_TRUE(Watched::runs());
  demo.harness.frame(0.002);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
}

TEST(Attract, LeavesThePlayersFilesAlone) {
  const support::DataHome data;
  {
    Demo demo;
    demo.playToTheEnd();
    demo.harness.run(10, 0.5);
    demo.harness.key(SDLK_ESCAPE);
  }
  EXPECT_FALSE(data.has(""));
}

// --- look ---

class AttractLayouts : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  std::vector<ui::Rect> parts() const {
    return {layout.board, layout.title, layout.tilesLeft, layout.invitation};
  }

  const double w = GetParam().first;
  const double h = GetParam().second;
  const screens::AttractLayout layout = screens::attractLayout(w, h);
};

TEST_P(AttractLayouts, NothingOverlaps) {
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(overlap(parts()[i], parts()[j])) << i << ", " << j;
  }
}

TEST_P(AttractLayouts, EverythingLiesInTheWindow) {
  for (const ui::Rect& part : parts()) {
    EXPECT_GE(part.x, 12);
    EXPECT_GE(part.y, 12);
    EXPECT_LE(part.x + part.w, w - 12);
    EXPECT_LT(part.y + part.h, h - 10);
  }
}

TEST_P(AttractLayouts, BoardAndTitleLieInTheMiddle) {
  EXPECT_EQ(layout.board.x + layout.board.w / 2, w / 2);
  EXPECT_EQ(layout.title.x + layout.title.w / 2, w / 2);
  EXPECT_EQ((layout.tilesLeft.x + layout.invitation.x + layout.invitation.w) / 2, w / 2);
}

TEST_P(AttractLayouts, CaptionsTakeNoMoreThanTheyNeed) {
  if (w > h) {
    EXPECT_EQ(layout.board.y + layout.board.h, h - 48);
  } else {
    EXPECT_EQ(layout.invitation.y, h - 62);
  }
}

INSTANTIATE_TEST_SUITE_P(Window, AttractLayouts,
                         testing::Values(std::pair(640, 480), std::pair(779, 600), std::pair(1100, 760),
                                         std::pair(1920, 1080), std::pair(3840, 2160), std::pair(640, 640),
                                         std::pair(640, 1000), std::pair(1080, 1920)),
                         [](const auto& param) {
                           return std::to_string(param.param.first) + "x" +
                                  std::to_string(param.param.second);
                         });

// The part of the harness's picture inside the rectangle.
ui::CairoSurface cut(const support::ScreenHarness& harness, const ui::Rect& rect) {
  const ui::CairoSurface whole = harness.picture();
  return support::makePicture(static_cast<int>(rect.w), static_cast<int>(rect.h), [&](cairo_t* cr) {
    cairo_set_source_surface(cr, whole.get(), -rect.x, -rect.y);
    cairo_paint(cr);
  });
}

TEST(AttractView, TitleBreathesAndNothingElse) {
  const screens::AttractLayout layout = screens::attractLayout(640, 480);
  Demo demo;
  // A quarter and three quarters of the pulse's period, both before the first tile is picked.
  demo.harness.frame(0.5);
  const ui::CairoSurface title = cut(demo.harness, layout.title);
  const ui::CairoSurface board = cut(demo.harness, layout.board);
  const ui::CairoSurface invitation = cut(demo.harness, layout.invitation);
  demo.harness.frame(0.25);
  EXPECT_FALSE(support::samePicture(title.get(), cut(demo.harness, layout.title).get(), 20));
  EXPECT_TRUE(support::samePicture(board.get(), cut(demo.harness, layout.board).get()));
  EXPECT_TRUE(support::samePicture(invitation.get(), cut(demo.harness, layout.invitation).get()));
}

TEST(AttractView, TilesLeftAreCounted) {
  const ui::Rect place = screens::attractLayout(640, 480).tilesLeft;
  Demo demo;
  const ui::CairoSurface before = cut(demo.harness, place);
  demo.harness.frame(0.801);
  EXPECT_TRUE(support::samePicture(before.get(), cut(demo.harness, place).get()));
  demo.harness.frame(0.9);
  demo.harness.frame(1.0);
  EXPECT_FALSE(support::samePicture(before.get(), cut(demo.harness, place).get(), 60));
}

TEST(AttractView, ShownTilesLookSelected) {
  Demo demo(1, 640, 480, support::Drawing::Cairo);
  const int tile = mj::findHint(demo.game()).first;
  demo.harness.frame(0.801);
  const ui::Rect board = screens::attractLayout(640, 480).board;
  mj::GameState selected = demo.game();
  selected.selected = tile;
  support::ScreenHarness bare([&](ui::Ctx& ctx) { ui::drawBoard(ctx, selected, board, {}, nullptr); });
  bare.frame(demo.harness.time());
  const auto p = support::visiblePoint(selected, board, {}, tile);
  ASSERT_TRUE(p);
  EXPECT_EQ(demo.harness.colorAt(static_cast<int>(p->x), static_cast<int>(p->y)),
            bare.colorAt(static_cast<int>(p->x), static_cast<int>(p->y)));
}

}  // namespace
