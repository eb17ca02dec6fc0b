// The screen plays by itself if VESKARA_AUTOPLAY is set.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <set>
#include <vector>

#include "rules/levels.h"
#include "screens/environment.h"
#include "screens/sitting.h"

namespace {

using test::Environment;
using test::Sitting;

constexpr const char* kVariable = "VESKARA_AUTOPLAY";

// Expects the first tap when the intro is over and the second one `seconds` later.
void expectMoveEvery(double seconds, const char* text) {
  SCOPED_TRACE(text);
  const Environment environment(kVariable, text);
  Sitting sitting;
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.harness.frame(20);
  EXPECT_EQ(sitting.game().selected, a);
  sitting.harness.frame(seconds - 0.001);
  EXPECT_EQ(sitting.shown().pickB, -1);
  sitting.harness.frame(0.002);
  EXPECT_EQ(sitting.shown().pickA, a);
  EXPECT_EQ(sitting.shown().pickB, b);
}

bool movesByItself() {
  Sitting sitting;
  const mj::GameState before = sitting.game();
  sitting.harness.frame(20);
  sitting.harness.run(5, 0.1);
  return sitting.game() != before;
}

TEST(Autoplay, MovesInTheGivenTime) {
  expectMoveEvery(0.5, "0.5");
  expectMoveEvery(2, "2");
  expectMoveEvery(0.02, "0.02");
}

TEST(Autoplay, MovesEveryThirdOfASecondWhenTheTimeIsNone) {
  for (const char* text : {"0", "0.01", "-1", "nan", "yes", " ", "0,5", "-inf", "1e-9", "1e999"}) {
    expectMoveEvery(0.35, text);
  }
}

TEST(Autoplay, IsOffWhenTheVariableIsEmptyOrUnset) {
  unsetenv(kVariable);
  EXPECT_FALSE(movesByItself());
  const Environment environment(kVariable, "");
  EXPECT_FALSE(movesByItself());
}

TEST(Autoplay, WaitsForTheIntro) {
  const Environment environment(kVariable, "0.1");
  Sitting sitting;
  sitting.harness.run(sitting.screen.effects().introEnd - sitting.harness.time() - 0.001, 0.1);
  EXPECT_EQ(sitting.game().selected, -1);
}

TEST(Autoplay, WaitsWhileThePlayerPauses) {
  const Environment environment(kVariable, "0.1");
  Sitting sitting;
  sitting.harness.key(SDLK_SPACE);
  sitting.harness.frame(20);
  sitting.harness.run(2, 0.1);
  EXPECT_EQ(sitting.game().selected, -1);
}

TEST(Autoplay, WaitsForTheChosenPairToGo) {
  const Environment environment(kVariable, "0.02");
  Sitting sitting;
  const auto [a, b] = mj::findHint(sitting.game());
  sitting.harness.frame(20);
  sitting.harness.frame(0.03);
  ASSERT_EQ(sitting.game().selected, b);
  sitting.harness.run(0.31, 0.03);
  EXPECT_EQ(sitting.game().selected, b);
  EXPECT_TRUE(sitting.lies(a) && sitting.lies(b));
  sitting.harness.frame(0.02);
  EXPECT_FALSE(sitting.lies(a) || sitting.lies(b));
}

TEST(Autoplay, WaitsForARefusedPair) {
  const Environment environment(kVariable, "0.1");
  Sitting sitting;
  sitting.harness.frame(20);
  const int first = sitting.game().selected;
  const auto unequal = test::unequalPair(sitting.game());
  sitting.click(unequal.first == first ? unequal.second : unequal.first);
  ASSERT_EQ(sitting.shown().mismatchA, first);
  sitting.harness.run(0.47, 0.05);
  EXPECT_EQ(sitting.game().selected, first);
  EXPECT_EQ(sitting.shown().pickA, -1);
  EXPECT_EQ(sitting.shown().mismatchA, first);
}

TEST(Autoplay, ShufflesAStuckBoard) {
  const Environment environment(kVariable, "0.1");
  Sitting sitting(test::kSoonStuck);
  sitting.take(test::lowestPair(sitting.game()));
  ASSERT_THAT(mj::availablePairs(sitting.game()), testing::IsEmpty());
  sitting.harness.frame(20);
  EXPECT_EQ(sitting.game().shuffles, 1);
  EXPECT_EQ(sitting.game().hints, 0) << "its own look for a pair is no hint taken";
  for (int i = 0; i < 1000 && !mj::isSolved(sitting.game()); ++i) sitting.harness.frame(0.1);
  EXPECT_TRUE(mj::isSolved(sitting.game()));
}

// The tile and all tiles under it, layer by layer.
std::set<int> pileUnder(const std::vector<mj::Slot>& slots, int top) {
  std::set<int> pile = {top};
  for (int z = slots[static_cast<std::size_t>(top)].z; z > 0; --z) {
    for (const mj::Slot& slot : slots) {
      const bool bears = std::any_of(pile.begin(), pile.end(), [&](int id) {
        const mj::Slot& above = slots[static_cast<std::size_t>(id)];
        return above.z == z && std::abs(above.x - slot.x) <= 1 && std::abs(above.y - slot.y) <= 1;
      });
      if (slot.z == z - 1 && bears) pile.insert(slot.id);
    }
  }
  return pile;
}

// An available pair with no tile in the pile.
std::optional<mj::SlotPair> pairBeside(const std::set<int>& pile, const mj::GameState& game) {
  for (const auto& [a, b] : mj::availablePairs(game)) {
    if (!pile.contains(a) && !pile.contains(b)) return mj::SlotPair{a, b};
  }
  return std::nullopt;
}

TEST(Autoplay, GoesOnWithABoardThatCannotBeDismantled) {
  // A player has removed the tiles around the pile, with shuffles, and left a pile with only one free tile.
  constexpr ui::GameState kDescriptor = {.kind = ui::ScreenKind::Playing, .level = 11, .deal = 6};
  mj::GameState expected = mj::createGame(mj::levelToConfig(11).slots, 6);
  const std::set<int> pile = pileUnder(expected.slots, 45);
  while (expected.removed < 34) {
    ASSERT_LT(expected.shuffles, 20);
    if (const auto pair = pairBeside(pile, expected)) {
      mj::applyMatch(expected, pair->first, pair->second);
    } else {
      mj::shuffleBoard(expected);
    }
  }
  ASSERT_EQ(mj::freeIds(expected).size(), 1U);
  const support::DataHome data;
  store::saveGame({.level = 11, .seed = 6, .game = expected, .elapsedMs = 1000});

  const Environment environment(kVariable, "0.05");
  Sitting sitting(kDescriptor, test::Files::Kept);
  ASSERT_EQ(sitting.game(), expected);
  for (int i = 0; i < 10; ++i) sitting.harness.frame(0.1);
  expected.shuffles += 10;
  EXPECT_EQ(sitting.game(), expected);
  sitting.harness.key(SDLK_h);
  EXPECT_EQ(sitting.game(), expected);
  sitting.harness.key(SDLK_u);
  EXPECT_EQ(sitting.game().removed, 32);
}

TEST(Autoplay, StopsWhenTheGameIsWon) {
  const Environment environment(kVariable, "0.02");
  Sitting sitting;
  sitting.harness.frame(20);
  while (!mj::isSolved(sitting.game())) sitting.harness.frame(0.1);
  const mj::GameState before = sitting.game();
  sitting.harness.run(0.5, 0.05);
  EXPECT_EQ(sitting.game(), before);
}

}  // namespace
