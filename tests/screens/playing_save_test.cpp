// The game on the table outlives its screen: it is saved while it is played and when it is left, and gone on
// with when somebody comes back.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <optional>

#include "rules/levels.h"
#include "screens/sitting.h"
#include "screens/stack.h"
#include "storage/storage.h"

namespace {

using test::Files;
using test::kFirstLevel;
using test::Shows;
using test::Sitting;
using test::Stack;

constexpr ui::GameState kOtherLevel = {.kind = ui::ScreenKind::Playing, .level = 2, .deal = 2};

std::int64_t milliseconds(double seconds) { return std::llround(std::floor(1000 * seconds)); }

class ComingBack : public testing::Test {
 protected:
  ComingBack() { sitting->waitForIntro(); }

  // Leaves the table and sits down to it again, before the first frame.
  void comeBack(const ui::GameState& descriptor = kFirstLevel) {
    sitting.reset();
    sitting.emplace(descriptor, Files::Kept);
  }

  std::optional<Sitting> sitting{std::in_place};
};

TEST_F(ComingBack, FindsTheGameAsItWas) {
  sitting->harness.key(SDLK_h);
  sitting->take(sitting->order[0]);
  sitting->harness.key(SDLK_m);
  sitting->click(mj::freeIds(sitting->game()).front());
  const mj::GameState left = sitting->game();
  comeBack();
  EXPECT_EQ(sitting->game(), left);
  ASSERT_EQ(left.hints, 1);
  ASSERT_EQ(left.shuffles, 1);
  ASSERT_NE(left.selected, -1);
}

TEST_F(ComingBack, GoesOnWithTheTimeAtOnceAndWithoutTheIntro) {
  sitting->harness.run(2, 0.0625);
  const double left = sitting->screen.playTime();
  comeBack();
  EXPECT_FALSE(sitting->screen.effects().introActive);
  const double firstFrame = support::ScreenHarness::kFrameTime;
  EXPECT_EQ(milliseconds(sitting->screen.playTime() - firstFrame), milliseconds(left));
  sitting->harness.frame(0.0625);
  EXPECT_EQ(milliseconds(sitting->screen.playTime() - firstFrame - 0.0625), milliseconds(left));
}

TEST_F(ComingBack, UndoGoesBackToTheFirstMove) {
  const mj::GameState dealt = sitting->game();
  sitting->take(sitting->order[0]);
  sitting->take(sitting->order[1]);
  comeBack();
  sitting->harness.key(SDLK_u);
  sitting->harness.key(SDLK_u);
  EXPECT_EQ(sitting->game(), dealt);
}

TEST_F(ComingBack, ShufflesAsItWouldHaveBeen) {
  sitting->take(sitting->order[0]);
  sitting->harness.key(SDLK_m);
  mj::GameState expected = sitting->game();
  comeBack();
  sitting->harness.key(SDLK_m);
  mj::shuffleBoard(expected);
  EXPECT_EQ(sitting->game(), expected);
}

TEST_F(ComingBack, FindsAChosenPairThatHadNotGoneYet) {
  sitting->clickBoth(sitting->order[0]);
  comeBack();
  EXPECT_EQ(sitting->game().removed, 0);
  sitting->take({sitting->order[0].second == sitting->game().selected ? sitting->order[0].first
                                                                      : sitting->order[0].second,
                 sitting->order[0].first});
}

TEST_F(ComingBack, ToAnotherLevelFindsItsDealAndGivesTheOldGameUp) {
  sitting->take(sitting->order[0]);
  comeBack(kOtherLevel);
  EXPECT_EQ(sitting->game(), mj::createGame(mj::levelToConfig(2).slots, 2));
  EXPECT_TRUE(sitting->screen.effects().introActive);
  sitting.reset();
  EXPECT_EQ(store::loadGame().level, 2);
}

TEST_F(ComingBack, ToAnotherDealOfTheLevelFindsThatDeal) {
  sitting->take(sitting->order[0]);
  comeBack({.kind = ui::ScreenKind::Playing, .level = 1, .deal = 2});
  EXPECT_EQ(sitting->game(), mj::createGame(mj::levelToConfig(1).slots, 2));
}

TEST(Autosave, ComesFiveSecondsAfterTheLast) {
  Sitting sitting;  // has run for one frame
  sitting.harness.run(5 - support::ScreenHarness::kFrameTime);
  EXPECT_FALSE(store::loadGame().valid);
  sitting.harness.frame();
  EXPECT_TRUE(store::loadGame().valid);
  store::clearGame();
  sitting.harness.run(5);
  EXPECT_FALSE(store::loadGame().valid);
  sitting.harness.frame();
  EXPECT_TRUE(store::loadGame().valid);
}

TEST(Autosave, HoldsTheWholeGame) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.take(sitting.order[0]);
  sitting.harness.run(6, 0.0625);
  const store::SavedGame saved = store::loadGame();
  ASSERT_TRUE(saved.valid);
  EXPECT_EQ(saved.level, 1);
  EXPECT_EQ(saved.seed, 1U);
  EXPECT_EQ(saved.game, sitting.game());
  EXPECT_GT(saved.elapsedMs, 0);
  EXPECT_LE(saved.elapsedMs, milliseconds(sitting.screen.playTime()));
}

TEST(Autosave, GoesOnInAPause) {
  Sitting sitting;
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.run(6, 0.0625);
  EXPECT_TRUE(store::loadGame().valid);
}

TEST(WonGame, IsSavedNoMore) {
  std::optional<Sitting> sitting(std::in_place);
  sitting->waitForIntro();
  sitting->win();
  store::clearGame();
  sitting->harness.run(6, 0.0625);
  EXPECT_FALSE(store::loadGame().valid);
  sitting.reset();
  EXPECT_FALSE(store::loadGame().valid);
}

TEST(WonGame, IsForgottenWhenTheSolvedScreenTakesOver) {
  std::optional<Sitting> sitting(std::in_place);
  sitting->waitForIntro();
  sitting->playUntilLeft(1);
  const store::SavedGame almost = {
      .level = 1, .seed = 1, .game = sitting->game(), .elapsedMs = 1000, .savedAt = 0};
  store::saveGame(almost);
  sitting->take(sitting->order.back());
  sitting->harness.frame(0.615);
  EXPECT_TRUE(store::loadGame().valid);
  sitting->harness.frame(0.002);
  EXPECT_FALSE(store::loadGame().valid);
  EXPECT_EQ(support::readAll(store::dataDir() + "/save.json"), "{}");
  sitting.reset();
  EXPECT_FALSE(store::loadGame().valid);
}

TEST(EscapeKey, KeepsTheGameForTheNextTime) {
  Stack stack(kFirstLevel);
  ui::Game::instance().push(kOtherLevel);
  stack.harness.frame();
  stack.harness.frame();
  stack.harness.key(SDLK_m);
  stack.harness.key(SDLK_ESCAPE);
  ASSERT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  const store::SavedGame saved = store::loadGame();
  EXPECT_EQ(saved.level, 2);
  EXPECT_EQ(saved.game.shuffles, 1);
}

}  // namespace
