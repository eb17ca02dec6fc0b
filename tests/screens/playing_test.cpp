// Moves, timers, keys and the end of a game. playing_view_test.cpp tests what is shown.

#include "screens/playing.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "rules/levels.h"
#include "screens/sitting.h"

namespace {

using test::Sitting;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Playing, DealsTheDescriptorsLevelAndDeal) {
  const Sitting sitting({.kind = ui::ScreenKind::Playing, .level = 12, .deal = 4000000000});
  EXPECT_EQ(sitting.game(), mj::createGame(mj::levelToConfig(12).slots, 4000000000));
}

TEST(Playing, ClickSelectsAFreeTile) {
  Sitting sitting;
  sitting.waitForIntro();
  const int tile = mj::freeIds(sitting.game()).front();
  sitting.click(tile);
  EXPECT_EQ(sitting.game().selected, tile);
  EXPECT_TRUE(sitting.harness.clickTaken());
}

TEST(Playing, ClickOnTheSelectedTileUnselectsIt) {
  Sitting sitting;
  sitting.waitForIntro();
  const int tile = mj::freeIds(sitting.game()).front();
  sitting.click(tile);
  sitting.click(tile);
  EXPECT_EQ(sitting.game().selected, -1);
}

TEST(Playing, ClickBesideTheTilesChangesNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.click(mj::freeIds(sitting.game()).front());
  const mj::GameState before = sitting.game();
  sitting.harness.click(sitting.screen.boardRect().x + 1, sitting.screen.boardRect().y + 1);
  EXPECT_EQ(sitting.game(), before);
}

TEST(Playing, PressAloneIsNoTap) {
  Sitting sitting;
  sitting.waitForIntro();
  const support::Point p = sitting.at(test::topTile(sitting.game()));
  sitting.harness.press(p.x, p.y);
  EXPECT_EQ(sitting.game().selected, -1);
  sitting.harness.release(p.x, p.y);
  EXPECT_EQ(sitting.game().selected, test::topTile(sitting.game()));
}

TEST(Playing, BlockedTileChangesNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.click(mj::freeIds(sitting.game()).front());
  const mj::GameState before = sitting.game();
  sitting.click(test::blockedTile(sitting));
  EXPECT_EQ(sitting.game(), before);
  EXPECT_EQ(sitting.shown().mismatchA, -1);
}

TEST(Playing, TapOutsideTheLayoutChangesNothing) {
  Sitting sitting;
  const mj::GameState before = sitting.game();
  for (const int tile : {-1, 36, 1000000}) sitting.screen.tapTile(tile, 0);
  EXPECT_EQ(sitting.game(), before);
}

TEST(MatchingPair, StaysForAMomentAndThenGoes) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.clickBoth({a, b});
  EXPECT_EQ(sitting.game().selected, b);
  sitting.harness.frame(0.319);
  EXPECT_TRUE(sitting.lies(a) && sitting.lies(b));
  sitting.harness.frame(0.002);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
  EXPECT_EQ(sitting.game().removed, 2);
  EXPECT_EQ(sitting.game().selected, -1);
}

TEST(MatchingPair, IsShownAsPickedUntilItGoes) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.clickBoth({a, b});
  EXPECT_EQ(sitting.shown().pickA, a);
  EXPECT_EQ(sitting.shown().pickB, b);
  sitting.harness.frame(0.321);
  EXPECT_EQ(sitting.shown().pickA, -1);
  EXPECT_EQ(sitting.shown().pickB, -1);
}

TEST(MatchingPair, LeavesTimeForMoreInput) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.clickBoth({a, b});
  sitting.click(b);
  EXPECT_EQ(sitting.game().selected, -1);
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game().hints, 1);
  sitting.harness.frame(0.321);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
}

TEST(MatchingPair, GoesAtOnceWhenAnotherTileIsTapped) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  const int other = test::unequalPair(sitting.game()).second;
  ASSERT_FALSE(mj::canMatch(sitting.game(), b, other));
  sitting.clickBoth({a, b});
  sitting.click(other);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
  EXPECT_EQ(sitting.screen.effects().bursts.size(), 2U);
  EXPECT_EQ(sitting.game().history.size(), 1U);
  EXPECT_EQ(sitting.game().selected, other) << "it is the first of a new pair";
  EXPECT_EQ(sitting.shown().pickA, -1);
  EXPECT_EQ(sitting.shown().mismatchA, -1);
  sitting.harness.frame(0.5);
  EXPECT_EQ(sitting.game().selected, other);
  EXPECT_EQ(sitting.game().removed, 2);
}

TEST(MatchingPair, GoesAtOnceWhenATileIsTappedThatItBlocked) {
  Sitting sitting;
  sitting.waitForIntro();
  std::size_t moves = 0;
  const auto isBlocked = [&](const mj::SlotPair& pair) { return !mj::isFree(sitting.game(), pair.first); };
  for (; !isBlocked(sitting.order.at(moves + 1)); ++moves) sitting.take(sitting.order[moves]);
  const int freed = sitting.order[moves + 1].first;
  const double now = sitting.harness.time();
  sitting.screen.tapTile(sitting.order[moves].first, now);
  sitting.screen.tapTile(sitting.order[moves].second, now);
  sitting.screen.tapTile(freed, now);
  EXPECT_EQ(sitting.game().history.size(), moves + 1);
  EXPECT_EQ(sitting.game().selected, freed);
}

// Seconds between two taps of a fast player.
constexpr double kFastTap = 0.06;

TEST(FastHands, TakeTwoPairsOfFourLikeTiles) {
  const support::DataHome data;
  // Only four like tiles are left.
  mj::GameState game = mj::createGame(mj::levelToConfig(1).slots, 1);
  const std::vector<int> ids = mj::freeIds(game);
  ASSERT_GE(ids.size(), 4U);
  for (std::string& face : game.faces) face.clear();
  for (std::size_t i = 0; i < 4; ++i) game.faces[static_cast<std::size_t>(ids[i])] = "dot1";
  game.removed = static_cast<int>(game.faces.size()) - 4;
  store::saveGame({.level = 1, .seed = 1, .game = game, .elapsedMs = 1000});
  Sitting sitting(test::kFirstLevel, test::Files::Kept);
  ASSERT_EQ(sitting.game(), game);
  for (std::size_t i = 0; i < 4; ++i) {
    sitting.click(ids[i]);
    sitting.harness.frame(kFastTap - support::ScreenHarness::kFrameTime);
  }
  EXPECT_EQ(sitting.game().removed, game.removed + 2);
  sitting.harness.frame(0.321);
  EXPECT_TRUE(mj::isSolved(sitting.game()));
}

TEST(FastHands, TakeAWholeLevelWithoutWaiting) {
  for (const int level : {1, 12}) {
    Sitting sitting({.kind = ui::ScreenKind::Playing, .level = level, .deal = 5});
    sitting.waitForIntro();
    for (const auto& [a, b] : sitting.order) {
      for (const int tile : {a, b}) {
        sitting.harness.frame(kFastTap - support::ScreenHarness::kFrameTime);
        sitting.screen.tapTile(tile, sitting.harness.time());
      }
      EXPECT_EQ(sitting.game().selected, b);
    }
    EXPECT_EQ(sitting.game().history.size() + 1, sitting.order.size());
    sitting.harness.frame(0.321);
    EXPECT_TRUE(mj::isSolved(sitting.game()));
    EXPECT_EQ(sitting.game().history.size(), sitting.order.size());
  }
}

TEST(FastHands, FindTheRightTileAfterARefusal) {
  Sitting sitting;
  sitting.waitForIntro();
  for (const auto& [a, b] : sitting.order) {
    const std::vector<int> ids = mj::freeIds(sitting.game());
    const auto wrong = std::find_if(ids.begin(), ids.end(), [&, first = a](int id) {
      return id != first && !mj::canMatch(sitting.game(), first, id);
    });
    for (const int tile : {a, wrong == ids.end() ? a : *wrong, a, b}) {
      sitting.screen.tapTile(tile, sitting.harness.time());
      sitting.harness.frame(kFastTap);
    }
    sitting.harness.frame(0.321);
    ASSERT_FALSE(sitting.lies(a) || sitting.lies(b));
  }
}

TEST(MatchingPair, BurstsWithBothFacesWhereItLay) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  const mj::GameState before = sitting.game();
  sitting.clickBoth({a, b});
  EXPECT_THAT(sitting.screen.effects().bursts, IsEmpty());
  sitting.harness.frame(0.321);
  const std::vector<ui::BoardFx::Burst>& bursts = sitting.screen.effects().bursts;
  ASSERT_EQ(bursts.size(), 2U);
  const ui::BoardGeom geom =
      ui::boardGeometry(before.slots, sitting.screen.boardRect(), ui::FitMode::Contain);
  int tile = a;
  for (const ui::BoardFx::Burst& burst : bursts) {
    EXPECT_EQ(burst.face, before.faces[static_cast<std::size_t>(tile)]);
    EXPECT_EQ(burst.start, sitting.harness.time());
    EXPECT_TRUE(geom.place(before.slots[static_cast<std::size_t>(tile)]).contains(burst.cx, burst.cy));
    tile = b;
  }
  sitting.harness.frame(1.8);
  EXPECT_THAT(bursts, IsEmpty());
}

// Whatever happens between choosing a pair and its removal, no tiles are lost or duplicated.
void expectWhole(const mj::GameState& game, int tiles) {
  const auto lying = std::count_if(game.faces.begin(), game.faces.end(),
                                   [](const std::string& face) { return !face.empty(); });
  EXPECT_EQ(lying + game.removed, tiles);
  EXPECT_EQ(game.removed, 2 * static_cast<int>(game.history.size()));
}

TEST(MatchingPair, StaysWhenAShuffleMakesItUnequal) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.clickBoth({a, b});
  sitting.harness.key(SDLK_m);
  ASSERT_FALSE(mj::canMatch(sitting.game(), a, b));
  sitting.harness.frame(0.321);
  EXPECT_EQ(sitting.game().removed, 0);
  EXPECT_EQ(sitting.shown().pickA, -1);
  expectWhole(sitting.game(), 36);
  sitting.take(mj::findHint(sitting.game()));
}

TEST(MatchingPair, StaysWhenAnUndoBlocksIt) {
  // One tile of the second pair is blocked by the first pair.
  Sitting sitting;
  sitting.waitForIntro();
  std::size_t moves = 0;
  mj::SlotPair buried;
  for (;; ++moves) {
    ASSERT_LT(moves + 1, sitting.order.size());
    buried = sitting.order[moves + 1];
    if (!mj::isFree(sitting.game(), buried.first) || !mj::isFree(sitting.game(), buried.second)) break;
    sitting.take(sitting.order[moves]);
  }
  sitting.take(sitting.order[moves]);
  sitting.clickBoth(buried);
  sitting.harness.key(SDLK_u);
  ASSERT_FALSE(mj::canMatch(sitting.game(), buried.first, buried.second));
  sitting.harness.frame(0.321);
  EXPECT_TRUE(sitting.lies(buried.first) && sitting.lies(buried.second));
  EXPECT_EQ(sitting.game().history.size(), moves);
  expectWhole(sitting.game(), 36);
}

TEST(MatchingPair, GoesAfterAnUndoThatLeavesItFree) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.take(sitting.order[0]);
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.clickBoth({a, b});
  sitting.harness.key(SDLK_u);
  ASSERT_TRUE(mj::canMatch(sitting.game(), a, b));
  sitting.harness.frame(0.321);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
  expectWhole(sitting.game(), 36);
}

TEST(RefusedPair, FlashesAndIsThenUnselected) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = test::unequalPair(sitting.game());
  sitting.clickBoth({a, b});
  EXPECT_EQ(sitting.game().selected, a);
  EXPECT_EQ(sitting.shown().mismatchA, a);
  EXPECT_EQ(sitting.shown().mismatchB, b);
  sitting.harness.frame(0.479);
  EXPECT_EQ(sitting.game().selected, a);
  EXPECT_EQ(sitting.shown().mismatchA, a);
  sitting.harness.frame(0.002);
  EXPECT_EQ(sitting.game().selected, -1);
  EXPECT_EQ(sitting.shown().mismatchA, -1);
  EXPECT_EQ(sitting.shown().mismatchB, -1);
  EXPECT_TRUE(sitting.lies(a) && sitting.lies(b));
  EXPECT_EQ(sitting.game().removed, 0);
}

TEST(RefusedPair, IsForgottenWhenATileIsTapped) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = test::unequalPair(sitting.game());
  for (const int next : {b, a}) {
    sitting.clickBoth({a, b});
    sitting.click(next);
    EXPECT_EQ(sitting.game().selected, next) << "it is the first of a new pair";
    EXPECT_EQ(sitting.shown().mismatchA, -1);
    EXPECT_EQ(sitting.shown().mismatchB, -1);
    sitting.harness.frame(0.5);
    EXPECT_EQ(sitting.game().selected, next) << "the flash is over and unselects nothing";
    sitting.click(next);
  }
}

TEST(RefusedPair, FlashesOnWhenABlockedTileIsTapped) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = test::unequalPair(sitting.game());
  sitting.clickBoth({a, b});
  sitting.click(test::blockedTile(sitting));
  EXPECT_EQ(sitting.game().selected, a);
  EXPECT_EQ(sitting.shown().mismatchA, a);
}

TEST(Hint, ShowsThePairForAMomentAndCounts) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game().hints, 1);
  EXPECT_THAT(sitting.shown().hintIds, ElementsAre(a, b));
  sitting.harness.frame(1.599);
  EXPECT_THAT(sitting.shown().hintIds, ElementsAre(a, b));
  sitting.harness.frame(0.002);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
  EXPECT_EQ(sitting.game().hints, 1);
}

TEST(Hint, ClearsTheSelection) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.click(test::topTile(sitting.game()));
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game().selected, -1);
}

TEST(Hint, AskedForAgainShowsAsLongAgain) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_h);
  sitting.harness.frame(1);
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game().hints, 2);
  sitting.harness.frame(1.5);
  EXPECT_EQ(sitting.shown().hintIds.size(), 2U);
}

TEST(Hint, GoesWhenAnyFreeTileIsTapped) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_h);
  const std::vector<int> hinted = sitting.shown().hintIds;
  const std::vector<int> ids = mj::freeIds(sitting.game());
  const int other = *std::find_if(ids.begin(), ids.end(), [&](int id) {
    return std::find(hinted.begin(), hinted.end(), id) == hinted.end();
  });
  sitting.click(other);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
  EXPECT_EQ(sitting.game().selected, other);
}

TEST(Hint, StaysWhenABlockedTileIsTapped) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_h);
  const std::vector<int> hinted = sitting.shown().hintIds;
  sitting.click(test::blockedTile(sitting));
  EXPECT_EQ(sitting.shown().hintIds, hinted);
}

TEST(Hint, ThatFindsNoPairDoesNotCount) {
  Sitting sitting(test::kSoonStuck);
  sitting.waitForIntro();
  sitting.take(test::lowestPair(sitting.game()));
  ASSERT_THAT(mj::availablePairs(sitting.game()), IsEmpty());
  const int tile = test::topTile(sitting.game());
  sitting.screen.tapTile(tile, sitting.harness.time());
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game().hints, 0);
  EXPECT_EQ(sitting.game().selected, tile);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
}

TEST(Shuffle, CountsAndClearsHintAndSelection) {
  Sitting sitting;
  sitting.waitForIntro();
  mj::GameState expected = sitting.game();
  mj::shuffleBoard(expected);
  expected.hints = 1;
  sitting.harness.key(SDLK_h);
  sitting.harness.key(SDLK_m);
  EXPECT_EQ(sitting.game(), expected);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
  sitting.click(test::topTile(sitting.game()));
  sitting.harness.key(SDLK_m);
  EXPECT_EQ(sitting.game().selected, -1);
  EXPECT_EQ(sitting.game().shuffles, 2);
}

TEST(Shuffle, HelpsWhereNoPairIsLeft) {
  Sitting sitting(test::kSoonStuck);
  sitting.waitForIntro();
  sitting.take(test::lowestPair(sitting.game()));
  ASSERT_THAT(mj::availablePairs(sitting.game()), IsEmpty());
  sitting.harness.key(SDLK_m);
  sitting.take(mj::findHint(sitting.game()));
}

TEST(Undo, PutsThePairBackAndClearsHintAndSelection) {
  Sitting sitting;
  sitting.waitForIntro();
  const mj::GameState before = sitting.game();
  sitting.take(mj::findHint(sitting.game()));
  sitting.harness.key(SDLK_h);
  sitting.harness.key(SDLK_u);
  mj::GameState expected = before;
  expected.hints = 1;
  EXPECT_EQ(sitting.game(), expected);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
}

TEST(Undo, WithoutHistoryChangesNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_h);
  sitting.click(test::topTile(sitting.game()));
  sitting.harness.key(SDLK_h);
  const mj::GameState before = sitting.game();
  sitting.harness.key(SDLK_u);
  EXPECT_EQ(sitting.game(), before);
  EXPECT_EQ(sitting.shown().hintIds.size(), 2U) << "a hint goes only when something is undone";
}

TEST(Undo, GoesBackToTheFirstMove) {
  Sitting sitting;
  sitting.waitForIntro();
  const mj::GameState before = sitting.game();
  sitting.playUntilLeft(10);
  for (int i = 0; i < 8; ++i) sitting.harness.key(SDLK_u);
  EXPECT_EQ(sitting.game(), before);
}

// Holds a key down long enough to repeat.
void hold(Sitting& sitting, int code) {
  sitting.harness.key(code);
  for (int i = 0; i < 30; ++i) {
    sitting.harness.next().keys = {code};
    sitting.harness.frame(1.0 / 30);
  }
}

TEST(HeldKey, AsksForOneHint) {
  Sitting sitting;
  sitting.waitForIntro();
  hold(sitting, SDLK_h);
  EXPECT_EQ(sitting.game().hints, 1);
}

TEST(HeldKey, AsksForOneShuffle) {
  Sitting sitting;
  sitting.waitForIntro();
  hold(sitting, SDLK_m);
  EXPECT_EQ(sitting.game().shuffles, 1);
}

TEST(HeldKey, GoesOnUndoingAndZooming) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.playUntilLeft(10);
  hold(sitting, SDLK_u);
  EXPECT_EQ(sitting.game().removed, 0);
  hold(sitting, SDLK_PLUS);
  EXPECT_EQ(sitting.shown().zoom, 3);
  hold(sitting, SDLK_MINUS);
  EXPECT_EQ(sitting.shown().zoom, 1);
}

TEST(Keys, OfOneFrameAllCountOnce) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.next().keys = {SDLK_h, SDLK_m, SDLK_m};
  sitting.harness.next().freshKeys = {SDLK_h, SDLK_m, SDLK_m};
  sitting.harness.frame();
  EXPECT_EQ(sitting.game().hints, 1);
  EXPECT_EQ(sitting.game().shuffles, 1);
}

TEST(Pause, IsTurnedOnAndOffBySpace) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_SPACE);
  EXPECT_TRUE(sitting.screen.isPaused());
  sitting.harness.key(SDLK_SPACE);
  EXPECT_FALSE(sitting.screen.isPaused());
}

TEST(Pause, StopsTheClock) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_SPACE);
  const double time = sitting.screen.playTime();
  sitting.harness.run(3, 0.1);
  EXPECT_EQ(sitting.screen.playTime(), time);
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.run(1, 0.1);
  EXPECT_GT(sitting.screen.playTime(), time + 0.9);
}

TEST(Pause, MakesKeysButSpaceDoNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.take(mj::findHint(sitting.game()));
  sitting.harness.key(SDLK_PLUS);
  const mj::GameState before = sitting.game();
  sitting.harness.key(SDLK_SPACE);
  for (const int code : {SDLK_h, SDLK_m, SDLK_u, SDLK_PLUS, SDLK_EQUALS, SDLK_MINUS, SDLK_0}) {
    sitting.harness.key(code);
  }
  EXPECT_EQ(sitting.game(), before);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
  EXPECT_EQ(sitting.shown().zoom, 1.6);
}

TEST(Pause, InTheSameFrameStopsTheOtherKeys) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.next().keys = {SDLK_h, SDLK_SPACE};
  sitting.harness.next().freshKeys = {SDLK_h, SDLK_SPACE};
  sitting.harness.frame();
  EXPECT_EQ(sitting.game().hints, 0);
}

TEST(Pause, MakesTheMouseDoNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_PLUS);
  sitting.harness.frame();
  const support::Point p = sitting.at(test::topTile(sitting.game()));
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.click(p.x, p.y);
  sitting.harness.wheel(p.x, p.y, 2);
  sitting.harness.drag(p.x, p.y, p.x + 50, p.y);
  EXPECT_EQ(sitting.game().selected, -1);
  EXPECT_EQ(sitting.shown().zoom, 1.6);
  EXPECT_EQ(sitting.shown().panX, 0);
}

TEST(Pause, EndsADrag) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_PLUS);
  sitting.harness.press(300, 240);
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.moveTo(340, 240);
  EXPECT_EQ(sitting.shown().panX, 0);
}

TEST(PlayClock, StandsWhileTheTilesFlyIn) {
  Sitting sitting;
  const double left = sitting.screen.effects().introEnd - sitting.harness.time();
  sitting.harness.run(left - 0.001, 0.1);
  EXPECT_EQ(sitting.screen.playTime(), 0);
  sitting.harness.frame(0.03125);
  EXPECT_EQ(sitting.screen.playTime(), 0.03125);
  sitting.harness.frame(0.0625);
  EXPECT_EQ(sitting.screen.playTime(), 0.09375);
}

TEST(PlayClock, StandsOnceTheGameIsWon) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.win();
  const double time = sitting.screen.playTime();
  sitting.harness.run(0.5, 0.05);
  EXPECT_EQ(sitting.screen.playTime(), time);
}

TEST(Intro, LastsAsLongAsTheTilesFly) {
  Sitting sitting;
  ui::BoardFx plan;
  plan.beginIntro(sitting.game(), sitting.harness.time());
  EXPECT_EQ(sitting.screen.effects().introStart, plan.introStart);
  EXPECT_EQ(sitting.screen.effects().introEnd, plan.introEnd);
  EXPECT_EQ(sitting.screen.effects().delays, plan.delays);
}

TEST(Intro, BeginsOnlyOnce) {
  Sitting sitting;
  const double start = sitting.screen.effects().introStart;
  sitting.waitForIntro();
  sitting.harness.run(1, 0.1);
  EXPECT_EQ(sitting.screen.effects().introStart, start);
}

TEST(Intro, TakesTapsWhereTheTilesWillRest) {
  Sitting sitting;
  sitting.take(mj::findHint(sitting.game()));
  ASSERT_LT(sitting.harness.time(), sitting.screen.effects().introEnd);
  EXPECT_EQ(sitting.game().removed, 2);
  EXPECT_EQ(sitting.screen.playTime(), 0);
}

TEST(Intro, GivesNoHintAndNoShuffle) {
  Sitting sitting;
  const mj::GameState dealt = sitting.game();
  const screens::PlayingLayout layout = screens::playingLayout(640, 480);
  const auto ask = [&] {
    for (const int code : {SDLK_h, SDLK_m}) sitting.harness.key(code);
    for (const unsigned i : {0U, 1U}) {
      const ui::Rect& button = layout.buttons[i];
      sitting.harness.click(button.x + button.w / 2, button.y + button.h / 2);
    }
  };
  ask();
  ASSERT_LT(sitting.harness.time(), sitting.screen.effects().introEnd);
  EXPECT_EQ(sitting.game(), dealt);
  EXPECT_THAT(sitting.shown().hintIds, IsEmpty());
  sitting.waitForIntro();
  ask();
  EXPECT_EQ(sitting.game().hints, 2);
  EXPECT_EQ(sitting.game().shuffles, 2);
}

TEST(WonGame, TakesNoMoreKeys) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.win();
  const mj::GameState before = sitting.game();
  ASSERT_TRUE(mj::isSolved(before));
  for (const int code : {SDLK_h, SDLK_m, SDLK_u, SDLK_PLUS, SDLK_EQUALS}) sitting.harness.key(code);
  EXPECT_EQ(sitting.game(), before);
  EXPECT_EQ(sitting.shown().zoom, 1);
}

TEST(WonGame, TakesNoMoreTaps) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.win();
  const mj::GameState before = sitting.game();
  sitting.screen.tapTile(0, sitting.harness.time());
  EXPECT_EQ(sitting.game(), before);
}

}  // namespace
