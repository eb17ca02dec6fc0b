// Where the keyboard cursor moves on a board.
#include "screens/tile_cursor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "rules/engine.h"
#include "rules/layouts.h"

namespace {

using screens::Arrow;
using testing::ElementsAre;

constexpr Arrow kArrows[] = {Arrow::Left, Arrow::Right, Arrow::Up, Arrow::Down};

// Tiles far enough apart to all be free, with the given faces or all with the same one.
mj::GameState tilesAt(const std::vector<std::array<int, 3>>& places,
                      const std::vector<std::string>& faces = {}) {
  mj::GameState game;
  for (std::size_t i = 0; i < places.size(); ++i) {
    game.slots.push_back({static_cast<int>(i), places[i][0], places[i][1], places[i][2]});
    game.faces.push_back(faces.empty() ? "dot1" : faces[i]);
  }
  return game;
}

// --- random positions of games ---

// Random positions: games of all shapes and sizes, played with random moves, some shuffles and undos.
// `lookAt` passes that many positions to `look`.
class Positions {
 public:
  explicit Positions(std::uint32_t seed) : random(seed) {}

  template <class Look>
  void lookAt(int positions, const Look& look) {
    int seen = 0;
    for (int round = 0; seen < positions; ++round) {
      const mj::HeapShape shape = mj::kShapes[static_cast<std::size_t>(round) % mj::kShapes.size()];
      const double spread = 0.3 + 0.1 * static_cast<double>(random() % 8);
      mj::GameState game =
          mj::createGame(mj::buildShapedHeap(shape, 36 + 12 * static_cast<int>(random() % 10), spread),
                         static_cast<std::uint32_t>(random()));
      for (; !mj::isSolved(game) && seen < positions; step(game)) {
        if (random() % 4 != 0) continue;
        look(game);
        ++seen;
      }
    }
  }

 private:
  void step(mj::GameState& game) {
    const std::vector<mj::SlotPair> pairs = mj::availablePairs(game);
    if (pairs.empty() || random() % 40 == 0) mj::shuffleBoard(game);
    if (pairs.empty()) return;
    if (random() % 20 == 0) return mj::undo(game);
    const auto [a, b] = pairs[random() % pairs.size()];
    mj::applyMatch(game, a, b);
  }

  std::mt19937 random;
};

constexpr int kPositions = 1000;

std::set<int> reachableFrom(const mj::GameState& game, int tile) {
  std::set<int> seen = {tile};
  std::vector<int> left = {tile};
  while (!left.empty()) {
    const int from = left.back();
    left.pop_back();
    for (const Arrow arrow : kArrows) {
      const int next = screens::tileTowards(game, from, arrow);
      if (seen.insert(next).second) left.push_back(next);
    }
  }
  return seen;
}

TEST(TileCursor, ArrowsReachEveryFreeTileFromEveryOther) {
  Positions(1).lookAt(kPositions, [](const mj::GameState& game) {
    const std::vector<int> ids = mj::freeIds(game);
    const std::set<int> all(ids.begin(), ids.end());
    for (const int tile : ids) ASSERT_EQ(reachableFrom(game, tile), all) << "from " << tile;
  });
}

TEST(TileCursor, ArrowLeadsThatWayOrNowhere) {
  const auto leftOf = [](const mj::GameState& game, int a, int b) {
    const mj::Slot& slotA = game.slots[static_cast<std::size_t>(a)];
    const mj::Slot& slotB = game.slots[static_cast<std::size_t>(b)];
    return 0.5 * slotA.x - 0.12 * slotA.z < 0.5 * slotB.x - 0.12 * slotB.z;
  };
  Positions(2).lookAt(kPositions / 10, [&](const mj::GameState& game) {
    for (const int tile : mj::freeIds(game)) {
      const int right = screens::tileTowards(game, tile, Arrow::Right);
      const int left = screens::tileTowards(game, tile, Arrow::Left);
      EXPECT_TRUE(right == tile || leftOf(game, tile, right));
      EXPECT_TRUE(left == tile || leftOf(game, left, tile));
      EXPECT_TRUE(mj::isFree(game, right) && mj::isFree(game, left));
    }
  });
}

TEST(TileCursor, TabVisitsAllFreeTilesOnceInReadingOrder) {
  Positions(3).lookAt(kPositions, [](const mj::GameState& game) {
    const std::vector<int> order = screens::tilesInReadingOrder(game);
    std::vector<int> sorted = order;
    std::sort(sorted.begin(), sorted.end());
    ASSERT_EQ(sorted, mj::freeIds(game));
    std::vector<int> walked = {order.front()};
    for (int next = order.front(); (next = screens::tileAfter(game, next, 1)) >= 0;) walked.push_back(next);
    ASSERT_EQ(walked, order);
    for (std::size_t i = 1; i < order.size(); ++i)
      ASSERT_EQ(screens::tileAfter(game, order[i], -1), order[i - 1]);
    ASSERT_EQ(screens::tileAfter(game, order.front(), -1), -1);
  });
}

TEST(TileCursor, TabVisitsAllPartnersOfATile) {
  Positions(4).lookAt(kPositions, [](const mj::GameState& game) {
    for (const int tile : mj::freeIds(game)) {
      std::set<int> partners;
      for (const int other : mj::freeIds(game))
        if (mj::canMatch(game, tile, other)) partners.insert(other);
      for (const int step : {1, -1}) {
        std::set<int> visited;
        int at = tile;
        for (std::size_t i = 0; i < partners.size(); ++i)
          visited.insert(at = screens::partnerAfter(game, at, tile, step));
        ASSERT_EQ(visited, partners);
        if (partners.empty()) {
          ASSERT_EQ(screens::partnerAfter(game, at, tile, step), tile);
        }
      }
    }
  });
}

// --- single boards ---

TEST(TileCursor, ArrowsGoOverGaps) {
  const mj::GameState game = tilesAt({{0, 0, 0}, {20, 0, 0}, {0, 12, 0}});
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Right), 1);
  EXPECT_EQ(screens::tileTowards(game, 1, Arrow::Left), 0);
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Down), 2);
  EXPECT_EQ(screens::tileTowards(game, 2, Arrow::Up), 0);
}

TEST(TileCursor, ArrowGoesToTheNearestOfThoseAhead) {
  const mj::GameState game = tilesAt({{0, 0, 0}, {12, 0, 0}, {6, 2, 0}, {4, 8, 0}});
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Right), 2);
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Down), 3);
}

TEST(TileCursor, ArrowWithNothingAheadStays) {
  const mj::GameState game = tilesAt({{0, 0, 0}, {8, 0, 0}});
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Left), 0);
  EXPECT_EQ(screens::tileTowards(game, 0, Arrow::Up), 0);
  EXPECT_EQ(screens::tileTowards(game, 1, Arrow::Right), 1);
}

TEST(TileCursor, BeginsAtTheSelectedTileElseNearTheMiddle) {
  mj::GameState game = tilesAt({{0, 0, 0}, {10, 6, 0}, {20, 12, 0}});
  EXPECT_EQ(screens::firstTile(game), 1);
  game.selected = 2;
  EXPECT_EQ(screens::firstTile(game), 2);
  game.selected = -1;
  game.faces[1].clear();
  EXPECT_NE(screens::firstTile(game), 1);
}

TEST(TileCursor, StaysWhereItIsOnTheNearestFreeTile) {
  mj::GameState game = tilesAt({{0, 0, 0}, {8, 0, 0}, {12, 0, 0}});
  EXPECT_EQ(screens::tileNear(game, 1), 1);
  game.faces[1].clear();
  EXPECT_EQ(screens::tileNear(game, 1), 2);
  game.faces[2].clear();
  EXPECT_EQ(screens::tileNear(game, 1), 0);
  game.faces[0].clear();
  EXPECT_EQ(screens::tileNear(game, 1), -1);
}

TEST(TileCursor, ReadsRowByRow) {
  // The last two tiles are half a tile lower than the rest of their row, on the layer above.
  const mj::GameState game = tilesAt({{20, 8, 0}, {0, 8, 0}, {10, 0, 0}, {0, 0, 0}, {5, 1, 1}, {25, 1, 1}});
  EXPECT_THAT(screens::tilesInReadingOrder(game), ElementsAre(3, 4, 2, 5, 1, 0));
}

TEST(TileCursor, PartnersFollowInReadingOrderFromTheCursor) {
  const mj::GameState game = tilesAt({{0, 0, 0}, {4, 0, 0}, {8, 0, 0}, {0, 4, 0}, {4, 4, 0}},
                                     {"dot1", "dot2", "dot1", "dot1", "dot2"});
  EXPECT_EQ(screens::partnerAfter(game, 0, 0, 1), 2);
  EXPECT_EQ(screens::partnerAfter(game, 2, 0, 1), 3);
  EXPECT_EQ(screens::partnerAfter(game, 3, 0, 1), 2) << "from the first again";
  EXPECT_EQ(screens::partnerAfter(game, 0, 0, -1), 3);
  EXPECT_EQ(screens::partnerAfter(game, 4, 1, 1), 4) << "the only one";
}

}  // namespace
