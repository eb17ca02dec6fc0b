#include "rules/deal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

#include "rules/boards.h"
#include "rules/levels.h"
#include "rules/pinned_deals.h"
#include "rules/tiles.h"

namespace {

using mj::GameState;
using test::layoutAt;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;

const std::vector<mj::Slot>& layoutOf(int level) { return mj::levelToConfig(level).slots; }

std::map<std::string, int> countOf(const std::vector<mj::FacePair>& pairs) {
  std::map<std::string, int> count;
  for (const auto& [a, b] : pairs) {
    ++count[a];
    ++count[b];
  }
  return count;
}

// The game after the first `pairs` pairs of its deal's order are removed.
GameState playedFor(int level, std::uint32_t seed, std::size_t pairs) {
  GameState game = test::gameOf(level, seed);
  auto order = mj::createDeal(game.slots, seed).order;
  order.resize(pairs);
  test::play(game, order);
  return game;
}

// A level's deal with random holes, as from a damaged record. Each tile stays with the given chance; one tile
// more or less makes their number odd or even as wanted.
GameState riddled(int level, std::uint32_t seed, unsigned percentKept, bool odd) {
  GameState game = test::gameOf(level, seed);
  const std::vector<std::string> faces = game.faces;
  std::mt19937 random(seed);
  for (std::string& face : game.faces) {
    if (random() % 100 >= percentKept) face.clear();
  }
  const std::size_t one = random() % faces.size();
  if ((test::tilesOnTable(game) % 2 != 0) != odd) game.faces[one] = game.faces[one].empty() ? faces[one] : "";
  game.removed = static_cast<int>(faces.size()) - test::tilesOnTable(game);
  return game;
}

std::set<std::size_t> emptySlots(const std::vector<std::string>& faces) {
  std::set<std::size_t> slots;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    if (faces[i].empty()) slots.insert(i);
  }
  return slots;
}

// Whether removing the pairs in order, whatever their faces, is allowed and clears the table.
bool clearsTheTable(GameState game, const std::vector<mj::SlotPair>& order) {
  for (std::string& face : game.faces) {
    if (!face.empty()) face = "dot1";
  }
  return test::play(game, order) == order.size() && test::tilesOnTable(game) == 0;
}

mj::Deal reshuffle(const GameState& game) { return mj::reshufflePresent(game.slots, game.faces, game.rng); }

TEST(Generator, AdvancesItsStateByAFixedStep) {
  std::uint32_t state = 0;
  mj::nextFraction(state);
  EXPECT_EQ(state, 0x6D2B79F5U);
  mj::nextFraction(state);
  EXPECT_EQ(state, 0xDA56F3EAU);
}

TEST(Generator, DrawsKnownFractions) {
  std::uint32_t state = 0;
  EXPECT_EQ(mj::nextFraction(state), 1144304738 * 0x1p-32);
  state = 12345;
  EXPECT_EQ(mj::nextFraction(state), 0.9797282677609473);
  EXPECT_EQ(mj::nextFraction(state), 0.3067522644996643);
  EXPECT_EQ(mj::nextFraction(state), 0.484205421525985);
}

TEST(ShuffleInPlace, SwapsFromTheBack) {
  std::vector<int> numbers = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
  std::uint32_t state = 1;
  mj::shuffleInPlace(numbers, state);
  EXPECT_THAT(numbers, ElementsAre(7, 8, 3, 2, 1, 5, 9, 4, 0, 6));
  EXPECT_EQ(state, 3599190430U);
}

TEST(ShuffleInPlace, LeavesOneElementOrNoneAloneWithoutADraw) {
  std::vector<int> one = {5};
  std::vector<int> none;
  std::uint32_t state = 77;
  mj::shuffleInPlace(one, state);
  mj::shuffleInPlace(none, state);
  EXPECT_THAT(one, ElementsAre(5));
  EXPECT_THAT(none, IsEmpty());
  EXPECT_EQ(state, 77U);
}

TEST(Deal, IsTheSameForTheSameLayoutAndSeed) {
  const mj::Deal once = mj::createDeal(layoutOf(33), 123456789);
  const mj::Deal again = mj::createDeal(layoutOf(33), 123456789);
  EXPECT_EQ(once.faces, again.faces);
  EXPECT_EQ(once.rng, again.rng);
  EXPECT_EQ(once.order, again.order);
}

TEST(Deal, DiffersFromSeedToSeed) {
  std::set<std::vector<std::string>> deals;
  for (std::uint32_t seed = 0; seed < 300; ++seed) deals.insert(mj::createDeal(layoutOf(1), seed).faces);
  EXPECT_EQ(deals.size(), 300U);
}

TEST(Deal, GivesAHeapOf36TheFirst18OfTheShuffledPairs) {
  for (std::uint32_t seed = 0; seed < 50; ++seed) {
    auto pairs = mj::allPairs();
    std::uint32_t state = seed;
    mj::shuffleInPlace(pairs, state);
    pairs.resize(18);
    EXPECT_EQ(test::facesOnTable(test::gameOf(1, seed)), countOf(pairs)) << "seed " << seed;
  }
}

TEST(Deal, LaysTheFirstPairWhereTheFirstTwoTilesAreTaken) {
  auto pairs = mj::allPairs();
  std::uint32_t state = 8;
  mj::shuffleInPlace(pairs, state);
  const mj::Deal deal = mj::createDeal(layoutOf(44), 8);
  for (std::size_t k = 0; k < deal.order.size(); ++k) {
    const auto [a, b] = deal.order[k];
    EXPECT_EQ(deal.faces[static_cast<std::size_t>(a)], pairs[k].first);
    EXPECT_EQ(deal.faces[static_cast<std::size_t>(b)], pairs[k].second);
  }
}

TEST(Deal, GivesNoFacesToALayoutThatCannotBeTakenAway) {
  const mj::Deal stacked = mj::createDeal(layoutAt({{0, 0, 0}, {0, 0, 1}}), 1);
  EXPECT_THAT(stacked.faces, ElementsAre("", ""));
  EXPECT_THAT(stacked.order, IsEmpty());
  const mj::Deal single = mj::createDeal(layoutAt({{0, 0, 0}}), 1);
  EXPECT_THAT(single.faces, ElementsAre(""));
}

TEST(Deal, OfNoSlotsIsEmpty) {
  const mj::Deal deal = mj::createDeal({}, 1);
  EXPECT_THAT(deal.faces, IsEmpty());
  EXPECT_THAT(deal.order, IsEmpty());
}

TEST(Deal, OfMoreThan144SlotsLaysTheWholeSetAndLeavesTheRestEmpty) {
  const mj::Deal deal = mj::createDeal(mj::buildShapedHeap(mj::HeapShape::Rect, 160, 0.5), 1);
  EXPECT_EQ(deal.order.size(), 80U);
  EXPECT_EQ(emptySlots(deal.faces).size(), 16U);
  GameState game;
  game.faces = deal.faces;
  EXPECT_EQ(test::facesOnTable(game), countOf(mj::allPairs()));
}

TEST(Deal, OfTheSteepestHeapsCanBeWon) {
  for (const mj::HeapShape shape : mj::kShapes) {
    for (std::uint32_t seed = 0; seed < 20; ++seed) {
      GameState game = mj::createGame(mj::buildShapedHeap(shape, 144, 0.1), seed);
      EXPECT_EQ(test::play(game, mj::createDeal(game.slots, seed).order), game.slots.size() / 2);
      EXPECT_TRUE(mj::isSolved(game));
    }
  }
}

TEST(PinnedDeal, OfEachLevelComesOutFaceForFace) {
  for (int level = 1; level <= 100; ++level) {
    const test::PinnedDeal& pinned = test::kPinnedDeals[static_cast<std::size_t>(level - 1)];
    const mj::Deal deal = mj::createDeal(layoutOf(level), static_cast<std::uint32_t>(level));
    EXPECT_EQ(test::digestOf(deal.faces), pinned.faces) << "level " << level;
    EXPECT_EQ(deal.rng, pinned.rng) << "level " << level;
  }
}

TEST(PinnedDeal, OfEachLevelLiesOnTheSameLayout) {
  for (int level = 1; level <= 100; ++level) {
    std::vector<std::string> places;
    for (const mj::Slot& slot : layoutOf(level)) {
      places.push_back(std::to_string(slot.x) + ',' + std::to_string(slot.y) + ',' + std::to_string(slot.z));
    }
    EXPECT_EQ(test::digestOf(places), test::kPinnedDeals[static_cast<std::size_t>(level - 1)].layout)
        << level;
  }
}

TEST(PinnedDeal, OfEachLevelIsShuffledFaceForFace) {
  for (int level = 1; level <= 100; ++level) {
    const test::PinnedDeal& pinned = test::kPinnedDeals[static_cast<std::size_t>(level - 1)];
    GameState game = playedFor(level, static_cast<std::uint32_t>(level), layoutOf(level).size() / 6);
    mj::shuffleBoard(game);
    mj::shuffleBoard(game);
    EXPECT_EQ(test::digestOf(game.faces), pinned.shuffled) << "level " << level;
    EXPECT_EQ(game.rng, pinned.shuffledRng) << "level " << level;
  }
}

class AllDeals : public testing::TestWithParam<int> {};

TEST_P(AllDeals, AreCompleteAndCanBeWonInTheOrderFound) {
  const auto set = countOf(mj::allPairs());
  for (int level = 10 * GetParam() + 1; level <= 10 * GetParam() + 10; ++level) {
    for (std::uint32_t number = 1; number <= VESKARA_TEST_DEALS; ++number) {
      const std::uint32_t seed = number % 2 != 0 ? number : number * 0x9E3779B9U;
      GameState game = test::gameOf(level, seed);
      for (const auto& [face, times] : test::facesOnTable(game)) ASSERT_LE(times, set.at(face)) << face;
      ASSERT_EQ(test::tilesOnTable(game), static_cast<int>(game.slots.size())) << level << " seed " << seed;
      ASSERT_EQ(test::play(game, mj::createDeal(game.slots, seed).order), game.slots.size() / 2)
          << "level " << level << " seed " << seed;
      ASSERT_TRUE(mj::isSolved(game));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Stage, AllDeals, testing::Range(0, 10),
                         [](const auto& param) { return std::to_string(param.param); });

TEST(Reshuffle, KeepsTheFacesAndTheSlotsTheyLieOn) {
  for (int level = 1; level <= 100; ++level) {
    const GameState game = playedFor(level, 11, layoutOf(level).size() / 5);
    GameState after = game;
    after.faces = reshuffle(game).faces;
    EXPECT_EQ(test::tilesOnTable(after), test::tilesOnTable(game));
    EXPECT_EQ(test::facesOnTable(after), test::facesOnTable(game));
    EXPECT_EQ(emptySlots(after.faces), emptySlots(game.faces));
  }
}

TEST(Reshuffle, GivesTheSameFromTheSameStateAndAnotherFromItsOwn) {
  const GameState game = playedFor(52, 3, 10);
  const mj::Deal once = reshuffle(game);
  EXPECT_EQ(reshuffle(game).faces, once.faces);
  EXPECT_EQ(reshuffle(game).rng, once.rng);
  EXPECT_NE(once.rng, game.rng);
  EXPECT_NE(mj::reshufflePresent(game.slots, once.faces, once.rng).faces, once.faces);
}

TEST(Reshuffle, CanBeWonInTheOrderFoundAtEveryStageOfAGame) {
  for (int level = 1; level <= 100; ++level) {
    const std::size_t pairs = layoutOf(level).size() / 2;
    for (std::size_t taken = 0; taken <= pairs; taken += 5) {
      GameState game = playedFor(level, 21, taken);
      const mj::Deal deal = reshuffle(game);
      game.faces = deal.faces;
      EXPECT_EQ(test::play(game, deal.order), pairs - taken) << "level " << level << ", taken " << taken;
      EXPECT_TRUE(mj::isSolved(game));
    }
  }
}

TEST(Reshuffle, MayPairTheFlowersOtherwiseThanTheDealDid) {
  const GameState game = test::looseTiles({"flower1", "flower3", "flower2", "flower4"});
  const mj::Deal deal = reshuffle(game);
  GameState after = game;
  after.faces = deal.faces;
  EXPECT_EQ(test::play(after, deal.order), 2U);
  std::set<mj::FacePair> taken;
  for (const mj::HistoryEntry& entry : after.history) taken.insert({entry.faceA, entry.faceB});
  EXPECT_THAT(taken, testing::UnorderedElementsAre(mj::FacePair("flower1", "flower3"),
                                                   mj::FacePair("flower2", "flower4")));
}

TEST(Reshuffle, OfAnEmptyTableChangesNothing) {
  const mj::Deal deal = mj::reshufflePresent(layoutAt({{0, 0, 0}, {4, 0, 0}}), {"", ""}, 9);
  EXPECT_THAT(deal.faces, Each(""));
  EXPECT_EQ(deal.rng, 9U);
}

TEST(Reshuffle, OfTwoTilesStackedGivesFacesAndStateBack) {
  const mj::Deal deal = mj::reshufflePresent(layoutAt({{0, 0, 0}, {1, 1, 1}}), {"dot1", "dot1"}, 5);
  EXPECT_THAT(deal.faces, ElementsAre("dot1", "dot1"));
  EXPECT_EQ(deal.rng, 5U);
  EXPECT_THAT(deal.order, IsEmpty());
}

TEST(Reshuffle, OfOneTileGivesFacesAndStateBack) {
  const mj::Deal deal = mj::reshufflePresent(layoutAt({{0, 0, 0}, {4, 0, 0}}), {"", "dot1"}, 5);
  EXPECT_THAT(deal.faces, ElementsAre("", "dot1"));
  EXPECT_EQ(deal.rng, 5U);
}

// Searching every subset of an odd number of free tiles would never finish.
TEST(Reshuffle, OfAnOddNumberOfTilesComesBackAtOnceAsItWas) {
  for (int level = 1; level <= 100; ++level) {
    for (const unsigned kept : {10U, 50U, 90U, 100U}) {
      const GameState game = riddled(level, 100, kept, true);
      const mj::Deal deal = reshuffle(game);
      EXPECT_EQ(deal.faces, game.faces);
      EXPECT_EQ(deal.rng, game.rng);
    }
  }
}

TEST(Reshuffle, OfABoardFullOfHolesLosesNoFaceEvenWithoutPartners) {
  int stuck = 0;
  for (int level = 1; level <= 100; ++level) {
    for (const unsigned kept : {5U, 10U, 20U, 30U, 50U, 70U, 90U, 98U}) {
      const GameState game = riddled(level, static_cast<std::uint32_t>(level), kept, false);
      const mj::Deal deal = reshuffle(game);
      GameState after = game;
      after.faces = deal.faces;
      ASSERT_EQ(test::facesOnTable(after), test::facesOnTable(game)) << "level " << level << " kept " << kept;
      ASSERT_EQ(emptySlots(after.faces), emptySlots(game.faces));
      const bool cleared = clearsTheTable(game, deal.order);
      ASSERT_TRUE(cleared || deal.order.empty());
      stuck += cleared ? 0 : 1;
    }
  }
  EXPECT_LT(stuck, 8) << "of 800 boards; holes leave more tiles free, not fewer";
}

TEST(Reshuffle, DealsFacesWithoutPartnersAsPairsOfTheirOwn) {
  const GameState game = test::looseTiles({"dot1", "bam2", "dot1", "dot1"});
  const mj::Deal deal = reshuffle(game);
  EXPECT_EQ(deal.order.size(), 2U);
  EXPECT_THAT(deal.faces, testing::UnorderedElementsAre("dot1", "dot1", "dot1", "bam2"));
  EXPECT_NE(deal.rng, game.rng);
}

// Most orders use up the loose tiles before the stack is gone. The search must backtrack from there.
TEST(Reshuffle, FindsTheOrderThatSparesAPartnerForEachTileOfAStack) {
  std::vector<std::array<int, 3>> places = {{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}};
  for (int i = 0; i < 60; ++i) places.push_back({8 + 4 * i, 0, 0});
  GameState game;
  game.slots = layoutAt(places);
  game.faces.assign(places.size(), "dot1");
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    game.rng = seed;
    EXPECT_TRUE(clearsTheTable(game, reshuffle(game).order)) << "seed " << seed;
  }
}

// A stack with six loose tiles. In a third of the searches a known dead position comes up again and must not
// be searched again.
TEST(PinnedReshuffle, OfATightBoardComesOutFaceForFace) {
  GameState game;
  game.slots = layoutAt({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}});
  for (int i = 0; i < 6; ++i) game.slots.push_back({4 + i, 8 + 4 * i, 0, 0});
  game.faces = {"dot1", "dot1", "dot2", "dot2", "dot3", "dot3", "dot4", "dot4", "dot5", "dot5"};
  std::vector<std::string> results;
  for (game.rng = 0; game.rng < 200; ++game.rng) {
    const mj::Deal deal = reshuffle(game);
    results.insert(results.end(), deal.faces.begin(), deal.faces.end());
    results.push_back(std::to_string(deal.rng));
  }
  EXPECT_EQ(test::digestOf(results), 0xBCA1B28E347B067BU);
}

TEST(Reshuffle, ComesBackAtOnceWhereAStackHasTooFewPartners) {
  GameState game;
  game.slots = layoutAt({{0, 0, 0}, {1, 1, 1}, {2, 2, 2}, {3, 3, 3}, {8, 0, 0}, {12, 0, 0}});
  game.faces.assign(6, "dot1");
  EXPECT_THAT(reshuffle(game).order, IsEmpty());
  EXPECT_EQ(reshuffle(game).faces, game.faces);
}

}  // namespace
