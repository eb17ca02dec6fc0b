#include "rules/engine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <random>
#include <tuple>

#include "rules/boards.h"
#include "rules/levels.h"
#include "rules/tiles.h"

namespace {

using mj::GameState;
using mj::SlotPair;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

// The tile `id` and all tiles below it that carry it, as flags by slot id.
std::vector<char> pileUnder(const std::vector<mj::Slot>& slots, int id) {
  std::vector<char> inPile(slots.size(), 0);
  inPile[static_cast<std::size_t>(id)] = 1;
  // Lower layers come first in a heap. Going backwards meets every tile after those above it.
  for (auto slot = slots.rbegin(); slot != slots.rend(); ++slot) {
    for (const mj::Slot& above : slots) {
      if (inPile[static_cast<std::size_t>(above.id)] == 0 || above.z != slot->z + 1) continue;
      if (std::abs(above.x - slot->x) > 1 || std::abs(above.y - slot->y) > 1) continue;
      inPile[static_cast<std::size_t>(slot->id)] = 1;
    }
  }
  return inPile;
}

double fromCentre(const std::vector<mj::Slot>& slots, int id) {
  const mj::Bounds bounds = mj::boundsOf(slots);
  const mj::Slot& slot = slots[static_cast<std::size_t>(id)];
  return std::hypot(slot.x + 1 - bounds.minX - bounds.w, slot.y + 1 - bounds.minY - bounds.h);
}

int innermostTop(const std::vector<mj::Slot>& slots) {
  const int highest = mj::boundsOf(slots).levels - 1;
  const auto top =
      std::find_if(slots.begin(), slots.end(), [=](const mj::Slot& slot) { return slot.z == highest; });
  return top->id;  // within a layer the inner slots come first
}

// The free tiles outside the pile, higher layers first, and within a layer the outermost first.
std::vector<int> freeOutside(const GameState& game, const std::vector<char>& pile) {
  std::vector<int> ids;
  for (const int id : mj::freeIds(game)) {
    if (pile[static_cast<std::size_t>(id)] == 0) ids.push_back(id);
  }
  const auto rank = [&game](int id) {
    return std::tuple(-game.slots[static_cast<std::size_t>(id)].z, -fromCentre(game.slots, id), id);
  };
  std::sort(ids.begin(), ids.end(), [&rank](int a, int b) { return rank(a) < rank(b); });
  return ids;
}

// A game in which the player removed everything around one pile. The pile is left with a single free tile.
GameState rimTaken(int level) {
  GameState game = test::gameOfOneFace(level);
  const std::vector<char> pile = pileUnder(game.slots, innermostTop(game.slots));
  while (true) {
    const std::vector<int> ids = freeOutside(game, pile);
    if (ids.size() < 2 || !mj::canMatch(game, ids[0], ids[1])) return game;
    mj::applyMatch(game, ids[0], ids[1]);
  }
}

TEST(CreateGame, LaysEveryTileAndStartsAllCountersAtZero) {
  const auto& slots = mj::levelToConfig(12).slots;
  const GameState game = mj::createGame(slots, 7);
  EXPECT_EQ(game.slots, slots);
  EXPECT_EQ(test::tilesOnTable(game), 48);
  EXPECT_EQ(game.selected, -1);
  EXPECT_EQ(game.removed, 0);
  EXPECT_EQ(game.hints, 0);
  EXPECT_EQ(game.shuffles, 0);
  EXPECT_THAT(game.history, IsEmpty());
}

TEST(CreateGame, KeepsTheFacesAndTheGeneratorOfItsDeal) {
  const auto& slots = mj::levelToConfig(3).slots;
  const mj::Deal deal = mj::createDeal(slots, 99);
  const GameState game = mj::createGame(slots, 99);
  EXPECT_EQ(game.faces, deal.faces);
  EXPECT_EQ(game.rng, deal.rng);
}

TEST(CreateGame, GivesTheSameGameForTheSameSeed) {
  EXPECT_EQ(test::gameOf(57, 4711), test::gameOf(57, 4711));
}

TEST(Presence, FlagsTheTilesOnTheTable) {
  EXPECT_THAT(mj::presence(test::rowOf({"dot1", "", "dot2"})), ElementsAre(1, 0, 1));
  EXPECT_THAT(mj::presence(GameState()), IsEmpty());
}

TEST(IsFree, KnowsEndsOfARowFromItsMiddle) {
  const GameState row = test::rowOf({"dot1", "dot2", "dot3"});
  EXPECT_TRUE(mj::isFree(row, 0));
  EXPECT_FALSE(mj::isFree(row, 1));
  EXPECT_TRUE(mj::isFree(row, 2));
}

TEST(IsFree, IsFalseForTilesTakenAndIdsOutside) {
  const GameState row = test::rowOf({"dot1", "", "dot3"});
  EXPECT_FALSE(mj::isFree(row, 1));
  EXPECT_FALSE(mj::isFree(row, -1));
  EXPECT_FALSE(mj::isFree(row, 3));
  EXPECT_FALSE(mj::isFree(GameState(), 0));
}

TEST(CanMatch, NeverTakesATileWithItself) {
  const GameState game = test::looseTiles({"dot1", "dot1"});
  EXPECT_TRUE(mj::canMatch(game, 0, 1));
  EXPECT_FALSE(mj::canMatch(game, 0, 0));
}

TEST(CanMatch, TakesTwoFlowersButNoFlowerWithASeason) {
  const GameState game = test::looseTiles({"flower1", "flower3", "season1", "season4"});
  EXPECT_TRUE(mj::canMatch(game, 0, 1));
  EXPECT_TRUE(mj::canMatch(game, 2, 3));
  EXPECT_FALSE(mj::canMatch(game, 0, 2));
}

TEST(CanMatch, WantsEqualFacesAndBothFree) {
  const GameState row = test::rowOf({"dot1", "dot1", "dot2", "dot1"});
  EXPECT_TRUE(mj::canMatch(row, 0, 3));
  EXPECT_TRUE(mj::canMatch(row, 3, 0));
  EXPECT_FALSE(mj::canMatch(row, 0, 1)) << "the second tile is blocked on both sides";
  EXPECT_FALSE(mj::canMatch(test::looseTiles({"dot1", "bam1"}), 0, 1));
}

TEST(CanMatch, IsFalseForTilesTakenAndIdsOutside) {
  const GameState game = test::looseTiles({"dot1", "", "", "dot1"});
  EXPECT_FALSE(mj::canMatch(game, 1, 2));
  EXPECT_FALSE(mj::canMatch(game, 0, 1));
  EXPECT_FALSE(mj::canMatch(game, 0, 4));
  EXPECT_FALSE(mj::canMatch(game, -1, 0));
}

TEST(FreeIds, ListTheFreeTilesOnTheTableInSlotOrder) {
  EXPECT_THAT(mj::freeIds(test::rowOf({"dot1", "", "dot2", "dot3", "dot4", "dot5"})), ElementsAre(0, 2, 5));
  EXPECT_THAT(mj::freeIds(GameState()), IsEmpty());
}

TEST(FreeIds, AgreeWithIsFreeOnEveryTile) {
  const GameState game = test::gameOf(91, 1);
  std::vector<int> expected;
  for (int id = 0; id < 144; ++id) {
    if (mj::isFree(game, id)) expected.push_back(id);
  }
  EXPECT_EQ(mj::freeIds(game), expected);
}

TEST(AvailablePairs, ListAllThreePairsOfThreeFreeTilesOfOneFace) {
  const GameState game = test::looseTiles({"dot1", "bam4", "dot1", "dot1"});
  EXPECT_THAT(mj::availablePairs(game), ElementsAre(Pair(0, 2), Pair(0, 3), Pair(2, 3)));
  EXPECT_EQ(mj::findHint(game), SlotPair(0, 2));
}

TEST(AvailablePairs, AreOrderedByTheFirstTileThenTheSecond) {
  const GameState game = test::looseTiles({"season2", "wan1", "season1", "wan1"});
  EXPECT_THAT(mj::availablePairs(game), ElementsAre(Pair(0, 2), Pair(1, 3)));
}

TEST(AvailablePairs, LeaveOutTilesThatAreNotFree) {
  EXPECT_THAT(mj::availablePairs(test::rowOf({"dot1", "dot1", "dot2"})), IsEmpty());
}

TEST(AvailablePairs, AreExactlyThePairsThatCanBeTaken) {
  const GameState game = test::gameOf(38, 5);
  std::vector<SlotPair> expected;
  for (int a = 0; a < 72; ++a) {
    for (int b = a + 1; b < 72; ++b) {
      if (mj::canMatch(game, a, b)) expected.emplace_back(a, b);
    }
  }
  EXPECT_EQ(mj::availablePairs(game), expected);
  EXPECT_EQ(mj::findHint(game), expected.front());
}

TEST(Hint, IsNoneOnABoardWithoutMoves) {
  const GameState game = test::looseTiles({"dot1", "bam1"});
  EXPECT_THAT(mj::availablePairs(game), IsEmpty());
  EXPECT_EQ(mj::findHint(game), SlotPair(-1, -1));
}

TEST(Hint, IsNoneOnASolvedBoard) {
  const GameState game = test::looseTiles({"", ""});
  EXPECT_TRUE(mj::isSolved(game));
  EXPECT_THAT(mj::availablePairs(game), IsEmpty());
  EXPECT_EQ(mj::findHint(game), SlotPair(-1, -1));
}

TEST(Solved, IsTheGameWhoseTilesAreAllTaken) {
  GameState game = test::looseTiles({"dot1", "dot1"});
  EXPECT_FALSE(mj::isSolved(game));
  mj::applyMatch(game, 0, 1);
  EXPECT_TRUE(mj::isSolved(game));
  mj::undo(game);
  EXPECT_FALSE(mj::isSolved(game));
}

TEST(Solved, IsNotARecordWithoutALayout) { EXPECT_FALSE(mj::isSolved(GameState())); }

TEST(ApplyMatch, TakesThePairAndRemembersItInTheOrderGiven) {
  GameState game = test::looseTiles({"flower1", "dot5", "flower2"});
  game.selected = 1;
  mj::applyMatch(game, 2, 0);
  EXPECT_THAT(game.faces, ElementsAre("", "dot5", ""));
  EXPECT_THAT(game.history, ElementsAre(mj::HistoryEntry{2, 0, "flower2", "flower1"}));
  EXPECT_EQ(game.removed, 2);
  EXPECT_EQ(game.selected, -1);
}

TEST(ApplyMatch, LeavesCountersAndGeneratorAlone) {
  GameState game = test::gameOf(1, 1);
  const std::uint32_t rng = game.rng;
  game.hints = 3;
  const auto [a, b] = mj::findHint(game);
  mj::applyMatch(game, a, b);
  EXPECT_EQ(game.rng, rng);
  EXPECT_EQ(game.hints, 3);
  EXPECT_EQ(game.shuffles, 0);
}

TEST(ApplyMatchDeathTest, AbortsOnIdsOutsideTheLayout) {
  GameState game = test::looseTiles({"dot1", "dot1"});
  EXPECT_DEATH(mj::applyMatch(game, 0, 2), "");
  EXPECT_DEATH(mj::applyMatch(game, -1, 0), "");
}

TEST(UndoDeathTest, AbortsOnHistoryOutsideTheLayout) {
  GameState game = test::looseTiles({"dot1", "dot1"});
  game.history.push_back({0, 2, "dot1", "dot1"});
  EXPECT_DEATH(mj::undo(game), "");
}

TEST(Undo, PutsBackThePairTakenLastOnly) {
  GameState game = test::looseTiles({"dot1", "dot1", "dot2", "dot2"});
  mj::applyMatch(game, 0, 1);
  mj::applyMatch(game, 2, 3);
  game.selected = 0;
  mj::undo(game);
  EXPECT_THAT(game.faces, ElementsAre("", "", "dot2", "dot2"));
  EXPECT_EQ(game.removed, 2);
  EXPECT_EQ(game.selected, -1);
  EXPECT_EQ(game.history.size(), 1U);
}

TEST(Undo, WithoutHistoryChangesNothing) {
  GameState game = test::gameOf(5, 5);
  game.selected = 3;
  const GameState before = game;
  mj::undo(game);
  EXPECT_EQ(game, before);
}

TEST(Undo, LeavesHintsShufflesAndGeneratorAlone) {
  GameState game = test::gameOf(5, 5);
  const auto [a, b] = mj::findHint(game);
  mj::applyMatch(game, a, b);
  mj::shuffleBoard(game);
  game.hints = 2;
  const std::uint32_t rng = game.rng;
  mj::undo(game);
  EXPECT_EQ(game.hints, 2);
  EXPECT_EQ(game.shuffles, 1);
  EXPECT_EQ(game.rng, rng);
}

TEST(Undo, KeepsShuffledFacesOfOtherTiles) {
  GameState game = test::gameOf(42, 42);
  const auto [a, b] = mj::findHint(game);
  const std::string faceA = game.faces[static_cast<std::size_t>(a)];
  const std::string faceB = game.faces[static_cast<std::size_t>(b)];
  mj::applyMatch(game, a, b);
  mj::shuffleBoard(game);
  auto expected = game.faces;
  expected[static_cast<std::size_t>(a)] = faceA;
  expected[static_cast<std::size_t>(b)] = faceB;
  mj::undo(game);
  EXPECT_EQ(game.faces, expected);
}

TEST(Undo, TakesAWholeGameBackToItsStart) {
  const GameState start = test::gameOf(66, 6);
  GameState game = start;
  EXPECT_EQ(test::play(game, mj::createDeal(start.slots, 6).order), 54U);
  EXPECT_TRUE(mj::isSolved(game));
  while (!game.history.empty()) mj::undo(game);
  EXPECT_EQ(game, start);
}

TEST(Shuffle, LaysTheFacesAnewUnselectsAndIsCounted) {
  GameState game = test::gameOf(20, 3);
  const GameState before = game;
  game.selected = 5;
  mj::shuffleBoard(game);
  EXPECT_NE(game.faces, before.faces);
  EXPECT_NE(game.rng, before.rng);
  EXPECT_EQ(game.selected, -1);
  EXPECT_EQ(game.shuffles, 1);
  EXPECT_EQ(game.removed, 0);
}

TEST(Shuffle, KeepsHistoryAndTheFacesOnTheTable) {
  GameState game = test::gameOf(30, 8);
  const auto [a, b] = mj::findHint(game);
  mj::applyMatch(game, a, b);
  const auto history = game.history;
  const auto faces = test::facesOnTable(game);
  mj::shuffleBoard(game);
  EXPECT_EQ(game.history, history);
  EXPECT_EQ(test::facesOnTable(game), faces);
}

TEST(Shuffle, GivesTheSameBoardFromACopyOfTheGame) {
  GameState game = test::gameOf(77, 7);
  GameState copy = game;
  mj::shuffleBoard(game);
  mj::shuffleBoard(copy);
  EXPECT_EQ(game, copy);
}

TEST(Shuffle, OfASolvedBoardOnlyCounts) {
  GameState game = test::looseTiles({"", ""});
  GameState expected = game;
  expected.shuffles = 1;
  mj::shuffleBoard(game);
  EXPECT_EQ(game, expected);
}

class RimTaken : public testing::TestWithParam<int> {};

TEST_P(RimTaken, LeavesAPileWithOneFreeTileThatNoShuffleCanChange) {
  GameState game = rimTaken(GetParam());
  EXPECT_EQ(mj::freeIds(game).size(), 1U);
  EXPECT_EQ(test::tilesOnTable(game), 14) << "nine plus four plus one";
  EXPECT_THAT(mj::availablePairs(game), IsEmpty());
  GameState expected = game;
  expected.shuffles = 1;
  mj::shuffleBoard(game);
  EXPECT_EQ(game, expected);
}

TEST_P(RimTaken, IsMendedByUndo) {
  GameState game = rimTaken(GetParam());
  mj::undo(game);
  mj::shuffleBoard(game);
  EXPECT_NE(mj::findHint(game), SlotPair(-1, -1));
}

INSTANTIATE_TEST_SUITE_P(Level, RimTaken, testing::Values(11, 20, 29, 100),
                         [](const auto& param) { return std::to_string(param.param); });

// Random games on the levels of one stage, a tenth of all.
class RandomGames : public testing::TestWithParam<int> {
 protected:
  static constexpr int kGames = 5 * VESKARA_TEST_DEALS;

  void begin(int number) {
    random_.seed(static_cast<std::uint32_t>(1000 * number + GetParam()));
    const int level = 10 * GetParam() + 1 + number % 10;
    game_ = test::gameOf(level, static_cast<std::uint32_t>(random_()));
    keysAtStart_ = test::keysOnTable(game_);
  }

  bool chance(std::uint32_t percent) { return random_() % 100 < percent; }

  void step() {
    const auto pairs = mj::availablePairs(game_);
    if (chance(8)) {
      mj::undo(game_);
    } else if (pairs.empty() || chance(4)) {
      mj::shuffleBoard(game_);
    } else {
      const auto [a, b] = pairs[random_() % pairs.size()];
      ASSERT_TRUE(mj::canMatch(game_, a, b));
      mj::applyMatch(game_, a, b);
    }
  }

  void expectNothingLost() const {
    ASSERT_EQ(game_.removed, 2 * static_cast<int>(game_.history.size()));
    ASSERT_EQ(test::tilesOnTable(game_) + game_.removed, static_cast<int>(game_.slots.size()));
    auto keys = test::keysOnTable(game_);
    for (const auto& [key, times] : keys) ASSERT_EQ(times % 2, 0) << key;
    for (const mj::HistoryEntry& entry : game_.history) {
      ASSERT_EQ(mj::matchKey(entry.faceA), mj::matchKey(entry.faceB));
      keys[mj::matchKey(entry.faceA)] += 2;
    }
    ASSERT_EQ(keys, keysAtStart_);
  }

  // Each undo restores exactly the two tiles of its entry, until the table is full again.
  void expectHistoryReplaysBackwards() {
    while (!game_.history.empty()) {
      auto expected = game_.faces;
      const mj::HistoryEntry last = game_.history.back();
      ASSERT_TRUE(expected[static_cast<std::size_t>(last.a)].empty());
      ASSERT_TRUE(expected[static_cast<std::size_t>(last.b)].empty());
      expected[static_cast<std::size_t>(last.a)] = last.faceA;
      expected[static_cast<std::size_t>(last.b)] = last.faceB;
      mj::undo(game_);
      ASSERT_EQ(game_.faces, expected);
      ASSERT_TRUE(mj::canMatch(game_, last.a, last.b));
    }
    ASSERT_EQ(game_.removed, 0);
    ASSERT_EQ(test::keysOnTable(game_), keysAtStart_);
  }

  std::mt19937 random_;
  GameState game_;
  std::map<std::string, int> keysAtStart_;
};

TEST_P(RandomGames, LoseNothingAndReplayBackwardsToTheStart) {
  for (int number = 0; number < kGames; ++number) {
    begin(number);
    for (int steps = 0; steps < 120 && !mj::isSolved(game_); ++steps) {
      step();
      expectNothingLost();
      if (HasFatalFailure()) FAIL() << "game " << number << ", step " << steps;
    }
    expectHistoryReplaysBackwards();
    if (HasFatalFailure()) FAIL() << "game " << number;
  }
}

INSTANTIATE_TEST_SUITE_P(Stage, RandomGames, testing::Range(0, 10),
                         [](const auto& param) { return std::to_string(param.param); });

}  // namespace
