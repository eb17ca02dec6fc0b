// Which parts of a saved game can be resumed.

#include "screens/resume.h"

#include <gtest/gtest.h>

#include <limits>

#include "rules/deal.h"
#include "rules/levels.h"
#include "support/data_home.h"

namespace {

using screens::resumableGame;

constexpr int kLevel = 3;
constexpr std::uint32_t kDeal = 4000000000;

// A game after this many pairs were taken in the deal's order.
store::SavedGame savedAfter(std::size_t pairs) {
  const std::vector<mj::Slot>& slots = mj::levelToConfig(kLevel).slots;
  store::SavedGame saved;
  saved.level = kLevel;
  saved.seed = kDeal;
  saved.game = mj::createGame(slots, kDeal);
  const auto order = mj::createDeal(slots, kDeal).order;
  for (std::size_t i = 0; i < pairs; ++i) mj::applyMatch(saved.game, order[i].first, order[i].second);
  return saved;
}

class ResumableGame : public testing::Test {
 protected:
  // Saves the game and reads it back.
  static std::optional<store::SavedGame> resumed(const store::SavedGame& saved) {
    store::saveGame(saved);
    return resumableGame(kLevel, kDeal);
  }

  support::DataHome data;
  store::SavedGame saved = savedAfter(5);
};

TEST_F(ResumableGame, IsTheSavedOne) {
  saved.game.hints = 2;
  saved.game.selected = mj::freeIds(saved.game).back();
  saved.elapsedMs = 123456;
  const auto back = resumed(saved);
  ASSERT_TRUE(back);
  EXPECT_EQ(back->game, saved.game);
  EXPECT_EQ(back->elapsedMs, 123456);
}

TEST_F(ResumableGame, IsShuffledAsItWouldHaveBeen) {
  mj::shuffleBoard(saved.game);
  auto back = resumed(saved);
  ASSERT_TRUE(back);
  mj::shuffleBoard(saved.game);
  mj::shuffleBoard(back->game);
  EXPECT_EQ(back->game, saved.game);
}

TEST_F(ResumableGame, IsMissingWithoutFile) { EXPECT_FALSE(resumableGame(kLevel, kDeal)); }

TEST_F(ResumableGame, IsOneOfTheLevelAndDealAskedFor) {
  store::saveGame(saved);
  EXPECT_FALSE(resumableGame(kLevel + 1, kDeal));
  EXPECT_FALSE(resumableGame(kLevel, kDeal + 1));
  EXPECT_TRUE(resumableGame(kLevel, kDeal));
}

TEST_F(ResumableGame, IsNoneThatIsWon) { EXPECT_FALSE(resumed(savedAfter(18))); }

TEST_F(ResumableGame, KeepsNoSelectedTileThatIsBlockedOrGone) {
  saved.game.selected = saved.game.history.front().a;
  EXPECT_EQ(resumed(saved)->game.selected, -1);
  for (saved.game.selected = 0; mj::isFree(saved.game, saved.game.selected) ||
                                saved.game.faces[static_cast<std::size_t>(saved.game.selected)].empty();) {
    ++saved.game.selected;
  }
  EXPECT_EQ(resumed(saved)->game.selected, -1);
}

TEST_F(ResumableGame, UndoNeverPutsATileOnATile) {
  // Puts the tiles of the oldest entry back on the table.
  const mj::HistoryEntry& oldest = saved.game.history.front();
  saved.game.faces[static_cast<std::size_t>(oldest.a)] = oldest.faceA;
  saved.game.faces[static_cast<std::size_t>(oldest.b)] = oldest.faceB;
  auto back = resumed(saved);
  ASSERT_TRUE(back);
  EXPECT_EQ(back->game.history.size(), 4U);
  while (!back->game.history.empty()) mj::undo(back->game);
  EXPECT_EQ(back->game.removed, 0);
  EXPECT_EQ(back->game.faces, savedAfter(0).game.faces);
}

TEST_F(ResumableGame, DropsAnEntryOfWhichOneTileLiesOnTheTable) {
  const mj::HistoryEntry newest = saved.game.history.back();
  saved.game.faces[static_cast<std::size_t>(newest.b)] = newest.faceB;
  EXPECT_EQ(resumed(saved)->game.history.size(), 4U);
}

TEST_F(ResumableGame, KeepsTheNewerOfTwoEntriesForOneSlot) {
  std::vector<mj::HistoryEntry>& history = saved.game.history;
  mj::HistoryEntry twice = history[3];
  twice.faceA = "dot1";
  history.insert(history.begin(), twice);
  history.insert(history.begin() + 3, {history[1].a, history[1].a, "dot2", "dot2"});
  EXPECT_EQ(resumed(saved)->game.history, savedAfter(5).game.history);
}

TEST_F(ResumableGame, CanBePlayedOnWhateverItsTimeAndCounters) {
  saved.elapsedMs = std::numeric_limits<std::int64_t>::max();
  saved.game.hints = std::numeric_limits<int>::max();
  saved.game.shuffles = std::numeric_limits<int>::max();
  auto back = resumed(saved);
  EXPECT_EQ(back->elapsedMs, 1'000'000'000'000);
  EXPECT_EQ(back->game.hints, 999'999);
  EXPECT_EQ(back->game.shuffles, 999'999);
  saved.elapsedMs = -1;
  EXPECT_EQ(resumed(saved)->elapsedMs, 0);
}

}  // namespace
