// The game outlives its screen: it is saved during play and on leaving, and resumed when the player comes
// back.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

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

  // Leaves the table and opens one again. The new screen has run only its first frame.
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
  Sitting sitting;  // has run one frame
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

// The first level with only its last pair left, on top of another screen.
struct LastPair : Stack {
  LastPair() : Stack(kOtherLevel) {
    ui::Game::instance().push(kFirstLevel);
    harness.frame();
    mj::GameState game = mj::createGame(mj::levelToConfig(1).slots, 1);
    const std::vector<mj::SlotPair> order = mj::createDeal(game.slots, 1).order;
    for (std::size_t i = 0; i + 1 < order.size(); ++i) mj::applyMatch(game, order[i].first, order[i].second);
    game.hints = 1;
    store::saveGame({.level = 1, .seed = 1, .game = game, .elapsedMs = 60000});
    harness.frame();
    for (const int tile : {order.back().first, order.back().second}) {
      const auto p = support::visiblePoint(game, screens::playingLayout(640, 480).board, {}, tile);
      harness.click(p.value().x, p.value().y);
    }
  }
  void win() { harness.frame(0.321); }
  void clickOn(const ui::Rect& rect) { harness.click(rect.x + rect.w / 2, rect.y + rect.h / 2); }

  static bool isWrittenDown() {
    const store::LevelBest best = store::bestFor(1);
    return store::loadProgress() == store::Progress{.currentLevel = 2, .totalSolves = 1} && best.stars == 2 &&
           best.aids == 1 && best.elapsedMs > 60000 && !store::loadGame().valid;
  }
};

TEST(WonGame, LeadsOnToTheSolvedScreenByEscape) {
  LastPair table;
  table.win();
  table.harness.key(SDLK_ESCAPE);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Solved, 1, 1));
  EXPECT_EQ(Stack::depth(), 2U);
  table.harness.frame();
  EXPECT_TRUE(LastPair::isWrittenDown());
}

TEST(WonGame, LeadsOnToTheSolvedScreenByTheBackButton) {
  LastPair table;
  table.win();
  table.clickOn(screens::playingLayout(640, 480).back);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Solved, 1, 1));
  table.harness.frame();
  EXPECT_TRUE(LastPair::isWrittenDown());
}

TEST(WonGame, CannotBePausedAndLeft) {
  LastPair table;
  table.win();
  table.harness.key(SDLK_SPACE);
  table.clickOn(screens::pausePanel(640, 480).second);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  table.harness.frame(0.617);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Solved, 1, 1));
}

TEST(WonGame, EndsAPauseThatBeganBeforeThePairWasGone) {
  LastPair table;
  table.harness.key(SDLK_SPACE);
  table.win();
  table.clickOn(screens::pausePanel(640, 480).second);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  table.harness.frame(0.617);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Solved, 1, 1));
}

// When the program ends, the live screen is destroyed as it is. This test destroys it the same way.
TEST(WonGame, IsWrittenDownWhenTheProgramEndsInTheFade) {
  const support::DataHome data;
  std::optional<Sitting> sitting(std::in_place, kFirstLevel, Files::Kept);
  sitting->waitForIntro();
  sitting->harness.key(SDLK_h);
  sitting->win();
  const std::int64_t time = milliseconds(sitting->screen.playTime());
  EXPECT_EQ(store::loadProgress(), store::Progress());
  sitting.reset();
  EXPECT_EQ(store::loadProgress(), (store::Progress{.currentLevel = 2, .totalSolves = 1}));
  EXPECT_EQ(store::bestFor(1), (store::LevelBest{.stars = 2, .aids = 1, .elapsedMs = time}));
  EXPECT_FALSE(store::loadGame().valid);
}

TEST(WonGame, IsWrittenDownWhenTheProgramEndsBeforeTheSolvedScreensFirstFrame) {
  LastPair table;
  table.win();
  table.harness.frame(0.617);
  ASSERT_THAT(Stack::top(), Shows(ui::ScreenKind::Solved, 1, 1));
  EXPECT_TRUE(LastPair::isWrittenDown());
}

TEST(WonGame, IsWrittenDownOnce) {
  LastPair table;
  table.win();
  table.harness.frame(0.617);
  table.harness.run(1);
  EXPECT_TRUE(LastPair::isWrittenDown());
  EXPECT_EQ(store::listSolves().size(), 1U);
}

TEST(WonGame, StaysSavedUntilTheWinIsWrittenDown) {
  LastPair table;
  table.win();
  table.harness.frame(0.615);
  EXPECT_TRUE(store::loadGame().valid);
  table.harness.frame(0.002);
  table.harness.frame();
  EXPECT_EQ(table.data.text("save.json"), "{}");
}

TEST(WonGame, LeftInTheFadeLeavesNoRecordInTheGallery) {
  LastPair table;
  table.win();
  table.harness.key(SDLK_ESCAPE);
  table.harness.frame();
  table.harness.frame(0.38);
  table.harness.key(SDLK_ESCAPE);
  EXPECT_THAT(Stack::top(), Shows(ui::ScreenKind::Menu, 0, 0));
  EXPECT_THAT(store::listSolves(), testing::IsEmpty());
  EXPECT_TRUE(LastPair::isWrittenDown());
}

TEST(EscapeKey, KeepsTheGameForTheNextTime) {
  Stack stack(kFirstLevel);
  ui::Game::instance().push(kOtherLevel);
  stack.harness.frame();
  stack.harness.frame();
  stack.harness.frame(20);
  stack.harness.key(SDLK_m);
  stack.harness.key(SDLK_ESCAPE);
  ASSERT_THAT(Stack::top(), Shows(ui::ScreenKind::Playing, 1, 1));
  const store::SavedGame saved = store::loadGame();
  EXPECT_EQ(saved.level, 2);
  EXPECT_EQ(saved.game.shuffles, 1);
}

}  // namespace
