// The panels over the board and the buttons around it.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <vector>

#include "screens/sitting.h"
#include "screens/stack.h"
#include "storage/storage.h"
#include "support/picture.h"
#include "ui/gpu.h"

namespace {

using support::kSmallH;
using support::kSmallW;
using support::ScreenHarness;
using test::Shows;
using test::Sitting;
using test::Stack;
using testing::IsEmpty;

constexpr ui::GameState kSecondLevel = {.kind = ui::ScreenKind::Playing, .level = 2, .deal = 2};

const screens::PlayingLayout kLayout = screens::playingLayout(kSmallW, kSmallH);
const screens::PanelLayout kStuck = screens::noMovesPanel(kSmallW, kLayout.board, 2);
const screens::PanelLayout kPause = screens::pausePanel(kSmallW, kSmallH);

support::Point centreOf(const ui::Rect& rect) { return {rect.x + rect.w / 2, rect.y + rect.h / 2}; }

void clickOn(ScreenHarness& harness, const ui::Rect& rect) {
  const support::Point p = centreOf(rect);
  harness.click(p.x, p.y);
}

// A table whose tiles have flown in.
struct PanelTable : Sitting {
  explicit PanelTable(const ui::GameState& descriptor = test::kFirstLevel) : Sitting(descriptor) {
    waitForIntro();
  }
  void clickOn(const ui::Rect& rect) { ::clickOn(harness, rect); }
};

struct StuckTable : PanelTable {
  StuckTable() : PanelTable(test::kSoonStuck) {
    take(test::lowestPair(game()));
    EXPECT_THAT(mj::availablePairs(game()), IsEmpty());
  }
};

TEST(NoMoves, ShuffleHelpsAndThePanelGoes) {
  StuckTable table;
  table.clickOn(kStuck.second);
  EXPECT_EQ(table.game().shuffles, 1);
  ASSERT_FALSE(mj::availablePairs(table.game()).empty());
  table.clickOn(kStuck.second);
  EXPECT_EQ(table.game().shuffles, 1);
}

// The colour just inside the rectangle's left edge.
std::uint32_t colorIn(const PanelTable& table, const ui::Rect& rect) {
  return table.harness.colorAt(static_cast<int>(rect.x) + 8, static_cast<int>(rect.y + rect.h / 2));
}
std::uint32_t colorAbove(const PanelTable& table, const ui::Rect& rect) {
  return table.harness.colorAt(static_cast<int>(rect.x) + 24, static_cast<int>(rect.y) - 4);
}

TEST(Panels, HaveButtonsThatStandOut) {
  constexpr int kSeen = 16;
  StuckTable stuck;
  stuck.harness.moveTo(0, 0);
  EXPECT_GE(support::channelDifference(colorIn(stuck, kStuck.second), colorAbove(stuck, kStuck.second)),
            kSeen);
  PanelTable paused;
  paused.harness.key(SDLK_SPACE);
  paused.harness.frame();
  for (const ui::Rect& button : {kPause.first, kPause.second}) {
    EXPECT_GE(support::channelDifference(colorIn(paused, button), colorAbove(paused, button)), kSeen);
  }
}

TEST(NoMoves, UndoTakesTheLastPairBackAndThePanelGoes) {
  StuckTable table;
  table.clickOn(kStuck.first);
  EXPECT_EQ(table.game().removed, 0);
  EXPECT_EQ(table.game().shuffles, 0);
  EXPECT_FALSE(mj::availablePairs(table.game()).empty());
}

TEST(NoMoves, OffersShuffleAloneWhereNothingCanBeUndone) {
  const support::DataHome data;
  mj::GameState game = StuckTable().game();
  game.history.clear();
  store::saveGame({.level = 1, .seed = test::kSoonStuck.deal, .game = game, .elapsedMs = 1000, .savedAt = 0});
  Sitting sitting(test::kSoonStuck, test::Files::Kept);
  ASSERT_EQ(sitting.game(), game);
  clickOn(sitting.harness, kStuck.first);
  const ui::Rect alone = screens::noMovesPanel(kSmallW, kLayout.board, 1).second;
  ASSERT_FALSE(alone.contains(kStuck.first.x + 2, kStuck.first.y + 20));
  sitting.harness.click(kStuck.first.x + 2, kStuck.first.y + 20);
  EXPECT_EQ(sitting.game(), game);
  clickOn(sitting.harness, alone);
  EXPECT_EQ(sitting.game().shuffles, 1);
}

TEST(NoMoves, IsNotSaidWhileAPairIsLeft) {
  PanelTable table;
  table.take(mj::findHint(table.game()));
  table.clickOn(kStuck.first);
  table.clickOn(kStuck.second);
  EXPECT_EQ(table.game().removed, 2);
  EXPECT_EQ(table.game().shuffles, 0);
}

TEST(NoMoves, IsSaidWhenTheIntroIsOver) {
  Sitting sitting(test::kSoonStuck);
  sitting.take(test::lowestPair(sitting.game()));
  ASSERT_LT(sitting.harness.time(), sitting.screen.effects().introEnd);
  clickOn(sitting.harness, kStuck.second);
  EXPECT_EQ(sitting.game().shuffles, 0);
  sitting.waitForIntro();
  clickOn(sitting.harness, kStuck.second);
  EXPECT_EQ(sitting.game().shuffles, 1);
}

TEST(NoMoves, IsNotSaidInAPause) {
  StuckTable table;
  table.harness.key(SDLK_SPACE);
  table.harness.click(kStuck.second.x + 2, kStuck.second.y + 2);
  EXPECT_EQ(table.game().shuffles, 0);
}

TEST(NoMoves, IsNotSaidAfterTheWin) {
  PanelTable table;
  table.win();
  table.clickOn(kStuck.first);
  table.clickOn(kStuck.second);
  EXPECT_TRUE(mj::isSolved(table.game()));
  EXPECT_EQ(table.game().shuffles, 0);
}

TEST(NoMoves, LetsNoClickOnItsAreaReachATile) {
  StuckTable table;
  const mj::GameState before = table.game();
  int tiles = 0;
  for (double y = kStuck.panel.y; y < kStuck.panel.y + kStuck.panel.h; y += 8) {
    for (double x = kStuck.panel.x; x < kStuck.panel.x + kStuck.panel.w; x += 8) {
      if (kStuck.first.contains(x, y) || kStuck.second.contains(x, y)) continue;
      tiles += ui::hitTestTile(before, kLayout.board, {}, x, y) >= 0 ? 1 : 0;
      table.harness.click(x, y);
    }
  }
  EXPECT_GT(tiles, 50) << "the panel hides tiles";
  EXPECT_EQ(table.game(), before);
}

TEST(NoMoves, LeavesTheTilesBesideItsPanelToThePlayer) {
  StuckTable table;
  table.screen.setZoom(3);
  table.harness.frame();
  for (double y = kLayout.board.y + 5; y < kStuck.panel.y && table.game().selected < 0; y += 10) {
    for (double x = kLayout.board.x + 5; x < kSmallW - 40 && table.game().selected < 0; x += 10)
      table.harness.click(x, y);
  }
  EXPECT_GE(table.game().selected, 0);
}

TEST(NoMoves, TurnsTheWheelAwayFromItsArea) {
  StuckTable table;
  table.harness.wheel(kStuck.panel.x + 1, kStuck.panel.y + 1, 1);
  EXPECT_EQ(table.shown().zoom, 1);
  table.harness.wheel(kStuck.panel.x + 1, kStuck.panel.y - 1, 1);
  EXPECT_EQ(table.shown().zoom, 1.25);
}

TEST(NoMoves, LetsNoDragBeginOnItsArea) {
  StuckTable table;
  table.screen.setZoom(2);
  const support::Point top = {kStuck.panel.x + 5, kStuck.panel.y + 5};
  table.harness.drag(top.x, top.y, top.x + 60, top.y);
  EXPECT_EQ(table.shown().panX, 0);
  table.harness.drag(top.x, top.y - 10, top.x + 60, top.y - 10);
  EXPECT_EQ(table.shown().panX, 60);
}

TEST(NoMoves, LetsADragFromTheBoardGoOnOverItsArea) {
  StuckTable table;
  table.screen.setZoom(2);
  table.harness.press(kStuck.panel.x + 20, kStuck.panel.y - 20);
  table.harness.moveTo(kStuck.panel.x + 30, kStuck.panel.y + 5);
  EXPECT_EQ(table.shown().panX, 10);
  EXPECT_EQ(table.shown().panY, 25);
}

const ui::Rect kUnderTheHand[] = {kLayout.pause,      kLayout.buttons[1], kLayout.buttons[2],
                                  kLayout.buttons[3], kLayout.buttons[5], kStuck.first,
                                  kStuck.second};

// Presses on the zoomed board and releases over each of the buttons.
class DragsEnd : public testing::TestWithParam<std::size_t> {};

TEST_P(DragsEnd, WorksNoButton) {
  const ui::Rect& button = kUnderTheHand[GetParam()];
  StuckTable table;
  table.screen.setZoom(2);
  table.harness.frame();
  const mj::GameState before = table.game();
  const support::Point end = centreOf(button);
  table.harness.drag(kLayout.board.x + 30, kLayout.board.y + 30, end.x, end.y);
  EXPECT_EQ(table.game(), before);
  EXPECT_FALSE(table.screen.isPaused());
  EXPECT_EQ(table.shown().zoom, 2);
  table.clickOn(button);
  EXPECT_TRUE(table.game() != before || table.screen.isPaused() || table.shown().zoom != 2)
      << "the next click works it";
}

INSTANTIATE_TEST_SUITE_P(Over, DragsEnd, testing::Range<std::size_t>(0, std::size(kUnderTheHand)));

TEST(PauseButton, PausesAndResumeGoesOn) {
  PanelTable table;
  table.clickOn(kLayout.pause);
  EXPECT_TRUE(table.screen.isPaused());
  const double time = table.screen.playTime();
  table.harness.run(2, 0.1);
  EXPECT_EQ(table.screen.playTime(), time);
  table.clickOn(kPause.first);
  EXPECT_FALSE(table.screen.isPaused());
  table.harness.frame(0.0625);
  EXPECT_EQ(table.screen.playTime(), time + 0.0625);
}

TEST(PauseOverlay, ShowsNoTile) {
  PanelTable table;
  EXPECT_GT(ui::gpuDrawCalls(), 36);
  table.harness.key(SDLK_SPACE);
  table.harness.frame();
  EXPECT_EQ(ui::gpuDrawCalls(), 1) << "the table's cloth alone";
}

TEST(PauseOverlay, LooksTheSameWhateverLiesBelow) {
  ui::CairoSurface seen[2];
  for (const unsigned i : {0U, 1U}) {
    PanelTable table({.kind = ui::ScreenKind::Playing, .level = 1, .deal = 1 + i});
    table.harness.key(SDLK_SPACE);
    table.harness.frame();
    seen[i] = table.harness.picture();
  }
  EXPECT_TRUE(support::samePicture(seen[0].get(), seen[1].get()));
}

TEST(PauseOverlay, LetsNoClickThrough) {
  PanelTable table;
  table.take(mj::findHint(table.game()));
  const mj::GameState before = table.game();
  table.harness.key(SDLK_SPACE);
  for (double y = 5; y < kSmallH; y += 20) {
    for (double x = 5; x < kSmallW; x += 20) {
      if (kPause.first.contains(x, y) || kPause.second.contains(x, y)) continue;
      table.harness.click(x, y);
    }
  }
  EXPECT_EQ(table.game(), before);
  EXPECT_TRUE(table.screen.isPaused());
  EXPECT_EQ(table.shown().zoom, 1);
}

TEST(PauseOverlay, ResumeTouchesNothingBelowIt) {
  PanelTable table;
  const support::Point p = centreOf(kPause.first);
  ASSERT_GE(ui::hitTestTile(table.game(), kLayout.board, {}, p.x, p.y), 0);
  const mj::GameState before = table.game();
  table.harness.key(SDLK_SPACE);
  table.clickOn(kPause.first);
  table.harness.frame();
  EXPECT_EQ(table.game(), before);
}

TEST(PauseOverlay, IsOpenedAndClosedBySpaceAndButtonAlike) {
  PanelTable table;
  table.clickOn(kLayout.pause);
  table.harness.key(SDLK_SPACE);
  EXPECT_FALSE(table.screen.isPaused());
  table.harness.key(SDLK_SPACE);
  table.clickOn(kPause.first);
  EXPECT_FALSE(table.screen.isPaused());
}

// The screen on the program's stack, on top of another, after the tiles have flown in.
struct OnTheStack : Stack {
  OnTheStack() : Stack(test::kFirstLevel) {
    ui::Game::instance().push(kSecondLevel);
    harness.frame();
    harness.frame();
    harness.frame(20);
    harness.frame(1);
  }
  void clickOn(const ui::Rect& rect) { ::clickOn(harness, rect); }
};

TEST(Leaving, ByTheBackButtonSavesTheGame) {
  OnTheStack stack;
  stack.clickOn(kLayout.back);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  EXPECT_EQ(store::loadGame().level, 2);
}

TEST(Leaving, ByTheBackButtonShowsTheWholeTableToTheLast) {
  PanelTable table;
  const support::Point back = centreOf(kLayout.back);
  table.harness.moveTo(back.x, back.y);
  table.harness.frame();
  const ui::CairoSurface before = table.harness.picture();
  table.harness.next().clicked = true;
  table.harness.frame(0);
  EXPECT_TRUE(support::samePicture(before.get(), table.harness.picture().get()));
}

TEST(Leaving, ByThePausesExitSavesTheGame) {
  OnTheStack stack;
  stack.clickOn(kLayout.pause);
  ASSERT_EQ(Stack::depth(), 2U);
  stack.clickOn(kPause.second);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  EXPECT_EQ(store::loadGame().level, 2);
}

TEST(Leaving, IsNotByADragThatEndsOnTheBackButton) {
  OnTheStack stack;
  stack.harness.key(SDLK_PLUS);
  const support::Point end = centreOf(kLayout.back);
  stack.harness.drag(kSmallW / 2.0, kSmallH / 2.0, end.x, end.y);
  EXPECT_EQ(Stack::depth(), 2U);
  stack.clickOn(kLayout.back);
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(Leaving, IsNotByTheBackButtonUnderThePause) {
  OnTheStack stack;
  stack.harness.key(SDLK_SPACE);
  stack.clickOn(kLayout.back);
  EXPECT_EQ(Stack::depth(), 2U);
}

// The state of a zoomed table with one pair gone, after some action.
struct Outcome {
  mj::GameState game;
  double zoom;
  std::vector<int> hinted;

  bool operator==(const Outcome&) const = default;
};

template <typename Action>
Outcome outcomeOf(const Action& action) {
  PanelTable table;
  table.take(mj::findHint(table.game()));
  table.screen.setZoom(2);
  table.harness.frame();
  action(table);
  const ui::BoardOpts shown = table.shown();
  return {table.game(), shown.zoom, shown.hintIds};
}

TEST(ActionButtons, ActAsTheKeys) {
  constexpr int kKeys[] = {SDLK_h, SDLK_m, SDLK_u, SDLK_PLUS, SDLK_MINUS, SDLK_0};
  const Outcome untouched = outcomeOf([](PanelTable&) {});
  for (std::size_t i = 0; i < 6; ++i) {
    const Outcome clicked = outcomeOf([i](PanelTable& table) { table.clickOn(kLayout.buttons[i]); });
    EXPECT_TRUE(clicked == outcomeOf([&](PanelTable& table) { table.harness.key(kKeys[i]); })) << i;
    EXPECT_FALSE(clicked == untouched) << i;
  }
}

TEST(ActionButtons, ReachNoTileAndNoBoard) {
  PanelTable table;
  table.screen.setZoom(3);
  for (const ui::Rect& button : kLayout.buttons) table.clickOn(button);
  EXPECT_EQ(table.game().selected, -1);
}

TEST(ActionButtons, AreDeadAfterTheWin) {
  PanelTable table;
  table.win();
  const mj::GameState before = table.game();
  for (const ui::Rect& button : kLayout.buttons) table.clickOn(button);
  EXPECT_EQ(table.game(), before);
  EXPECT_EQ(table.shown().zoom, 1);
  table.clickOn(kLayout.pause);
  EXPECT_FALSE(table.screen.isPaused());
}

}  // namespace
