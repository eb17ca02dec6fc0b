#include "rules/layouts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "rules/boards.h"

namespace {

using mj::HeapShape;
using mj::Slot;
using test::layoutAt;

constexpr HeapShape kAllShapes[] = {HeapShape::Rect,    HeapShape::WideRect, HeapShape::Diamond,
                                    HeapShape::Disc,    HeapShape::Cross,    HeapShape::Triangle,
                                    HeapShape::Saltire, HeapShape::Ring,     HeapShape::Octagon};

// Whether the tile at index 0 is free while all others are on the table.
bool firstIsFree(const std::vector<Slot>& slots) {
  return mj::isFreeAmong(slots, std::vector<char>(slots.size(), 1), 0);
}

// The lowest layer of a heap that nothing was cut from, as (x, y) in tiles from the centre.
std::set<std::pair<int, int>> outlineOf(HeapShape shape, int tiles) {
  std::set<std::pair<int, int>> cells;
  for (const Slot& slot : mj::buildShapedHeap(shape, tiles, 1.0)) {
    if (slot.z == 0) cells.insert({slot.x / 2, slot.y / 2});
  }
  return cells;
}

TEST(Freedom, IsLostBetweenNeighboursWhoseRowsOverlapByOneUnit) {
  EXPECT_FALSE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 1, 0}, {2, -1, 0}})));
  EXPECT_FALSE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 0, 0}, {2, 0, 0}})));
}

TEST(Freedom, NeedsOneOpenSideOnly) {
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 1, 0}})));
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {2, -1, 0}})));
}

TEST(Freedom, IsNotTakenByNeighboursInOtherRows) {
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 2, 0}, {2, 0, 0}})));
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {0, 2, 0}, {0, -2, 0}})));
}

TEST(Freedom, IsNotTakenByATileHalfAWidthAside) {
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 0, 0}, {1, 0, 0}})));
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {-2, 0, 0}, {3, 0, 0}})));
}

TEST(Freedom, IsLostUnderATileOneLayerUp) {
  for (const int dx : {-1, 0, 1}) {
    for (const int dy : {-1, 0, 1}) EXPECT_FALSE(firstIsFree(layoutAt({{0, 0, 0}, {dx, dy, 1}})));
  }
}

TEST(Freedom, IsKeptBesideATileOneLayerUp) {
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {2, 0, 1}})));
  EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {0, -2, 1}})));
}

TEST(Freedom, IsKeptUnderATileTwoLayersUp) { EXPECT_TRUE(firstIsFree(layoutAt({{0, 0, 0}, {0, 0, 2}}))); }

TEST(Freedom, IsKeptAboveOtherTiles) {
  EXPECT_TRUE(firstIsFree(layoutAt({{1, 1, 1}, {0, 0, 0}, {2, 2, 0}})));
}

TEST(Freedom, LooksOnlyAtTilesOnTheTable) {
  const auto slots = layoutAt({{0, 0, 0}, {-2, 0, 0}, {2, 0, 0}, {1, 1, 1}});
  EXPECT_TRUE(mj::isFreeAmong(slots, {1, 1, 0, 0}, 0));
  EXPECT_FALSE(mj::isFreeAmong(slots, {1, 1, 1, 0}, 0));
  EXPECT_FALSE(mj::isFreeAmong(slots, {1, 0, 0, 1}, 0));
}

TEST(Freedom, DoesNotAskWhetherTheTileItselfIsThere) {
  EXPECT_TRUE(mj::isFreeAmong(layoutAt({{0, 0, 0}, {2, 0, 0}}), {0, 1}, 0));
}

TEST(FreedomDeathTest, OfATileOutsideTheLayoutAborts) {
  const auto slots = layoutAt({{0, 0, 0}, {2, 0, 0}});
  EXPECT_DEATH(mj::isFreeAmong(slots, {1, 1}, 2), "");
  EXPECT_DEATH(mj::isFreeAmong(slots, {1, 1}, -1), "");
}

TEST(Bounds, OfOneTileAreOneByOne) {
  const mj::Bounds bounds = mj::boundsOf(layoutAt({{0, 0, 0}}));
  EXPECT_EQ(bounds.minX, 0);
  EXPECT_EQ(bounds.minY, 0);
  EXPECT_EQ(bounds.w, 1.0);
  EXPECT_EQ(bounds.h, 1.0);
  EXPECT_EQ(bounds.levels, 1);
}

TEST(Bounds, ReachAcrossAllLayers) {
  const mj::Bounds bounds = mj::boundsOf(layoutAt({{-4, 2, 0}, {3, 5, 1}, {0, 0, 2}}));
  EXPECT_EQ(bounds.minX, -4);
  EXPECT_EQ(bounds.minY, 0);
  EXPECT_EQ(bounds.w, 4.5);
  EXPECT_EQ(bounds.h, 3.5);
  EXPECT_EQ(bounds.levels, 3);
}

TEST(Bounds, OfNothingAreZero) {
  const mj::Bounds bounds = mj::boundsOf({});
  EXPECT_EQ(bounds.minX, 0);
  EXPECT_EQ(bounds.minY, 0);
  EXPECT_EQ(bounds.w, 0.0);
  EXPECT_EQ(bounds.h, 0.0);
  EXPECT_EQ(bounds.levels, 0);
}

TEST(Heap, HasAsManySlotsAsAskedFor) {
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Rect, 36, 1.0).size(), 36U);
  for (const HeapShape shape : kAllShapes) EXPECT_EQ(mj::buildShapedHeap(shape, 100, 0.5).size(), 100U);
}

TEST(Heap, HasFewerSlotsAndAnEvenNumberWhereSixAttemptsDoNotReach) {
  // Six cells and two above them. Even the last attempt asks for only 0.4 tiles, so the minimum applies.
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Rect, 100, 0.001).size(), 8U);
  // A disc of five cells carries no second layer.
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Disc, 100, 0.001).size(), 4U);
}

TEST(Heap, GrowsItsLowestLayerUntilTheTilesFit) {
  // 36 tiles need a share that only later attempts reach.
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Rect, 36, 0.2).size(), 36U);
}

TEST(Heap, OfAnOddCountHasOneLess) {
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Rect, 37, 1.0).size(), 36U);
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Disc, 1, 1.0).size(), 0U);
}

TEST(Heap, OfNoTilesIsEmpty) {
  EXPECT_TRUE(mj::buildShapedHeap(HeapShape::Rect, 0, 0.5).empty());
  EXPECT_TRUE(mj::buildShapedHeap(HeapShape::Ring, -4, 0.5).empty());
}

// The sixth attempt asks for 186 tiles on the lowest layer and gets 17 columns of 11. Six layers up, 11
// columns of 5 are left.
TEST(Heap, HasSevenLayersAtMostAndGrowsSixTimes) {
  const auto slots = mj::buildShapedHeap(HeapShape::Rect, 1000, 0.05);
  EXPECT_EQ(mj::boundsOf(slots).levels, 7);
  EXPECT_EQ(slots.size(), 187U + 160U + 135U + 112U + 91U + 72U + 55U);
}

TEST(Heap, TakesTheRectangleWhereNoRadiusUpTo39IsLargeEnough) {
  const auto rectangle = mj::buildShapedHeap(HeapShape::Rect, 3122, 1.0);
  EXPECT_EQ(mj::buildShapedHeap(HeapShape::Diamond, 3122, 1.0), rectangle);
  EXPECT_EQ(outlineOf(HeapShape::Diamond, 3121).count({0, -38}), 1U)
      << "a diamond of radius 39 holds 3121 tiles";
}

TEST(Heap, TreatsAnUnknownShapeAsACross) {
  EXPECT_EQ(mj::buildShapedHeap(static_cast<HeapShape>(42), 60, 0.5),
            mj::buildShapedHeap(HeapShape::Cross, 60, 0.5));
}

TEST(Heap, StandsSolidAndNumberedInEveryShapeAndSteepness) {
  for (const HeapShape shape : kAllShapes) {
    for (int count = 2; count <= 160; count += 7) {
      for (const double spread : {0.05, 0.32, 0.62, 1.0}) {
        test::expectSolidHeap(mj::buildShapedHeap(shape, count, spread));
      }
    }
  }
}

TEST(Heap, ListsLowerLayersFirst) {
  int below = 0;
  for (const Slot& slot : mj::buildShapedHeap(HeapShape::Octagon, 144, 0.4)) {
    EXPECT_GE(slot.z, below);
    below = slot.z;
  }
}

TEST(Outline, OfRectanglesKeepsTheirAspect) {
  EXPECT_EQ(mj::boundsOf(mj::buildShapedHeap(HeapShape::Rect, 96, 1.0)).w, 12.0);
  EXPECT_EQ(mj::boundsOf(mj::buildShapedHeap(HeapShape::Rect, 96, 1.0)).h, 8.0);
  EXPECT_EQ(mj::boundsOf(mj::buildShapedHeap(HeapShape::WideRect, 60, 1.0)).w, 12.0);
  EXPECT_EQ(mj::boundsOf(mj::buildShapedHeap(HeapShape::WideRect, 60, 1.0)).h, 5.0);
}

TEST(Outline, OfADiamondOfFiveIsAPlus) {
  EXPECT_THAT(outlineOf(HeapShape::Diamond, 4),
              testing::IsSubsetOf(
                  {std::pair(0, 0), std::pair(0, -1), std::pair(-1, 0), std::pair(1, 0), std::pair(0, 1)}));
}

TEST(Outline, OfARingLeavesItsMiddleOpen) {
  const auto ring = outlineOf(HeapShape::Ring, 48);
  EXPECT_EQ(ring.count({0, 0}), 0U);
  EXPECT_EQ(ring.count({1, 1}), 0U);
  EXPECT_EQ(ring.count({3, 0}), 1U);
}

TEST(Outline, OfATrianglePointsUp) {
  const auto triangle = outlineOf(HeapShape::Triangle, 40);
  std::map<int, int> width;
  for (const auto& [x, y] : triangle) ++width[y];
  EXPECT_LT(width[-2], width[0]);
  EXPECT_LT(width[0], width[2]);
}

TEST(Outline, OfACrossHasArmsOfAThirdOfItsRadius) {
  const auto cross = outlineOf(HeapShape::Cross, 140);  // radius 7, arms reach 3 to each side of the axes
  EXPECT_EQ(cross.count({7, 0}), 1U);
  EXPECT_EQ(cross.count({5, 3}), 1U);
  EXPECT_EQ(cross.count({3, -5}), 1U);
  EXPECT_EQ(cross.count({4, 4}), 0U);
}

TEST(Outline, OfASaltireRunsDiagonally) {
  const auto saltire =
      outlineOf(HeapShape::Saltire, 125);  // radius 7, arms reach 2 to each side of the diagonals
  EXPECT_EQ(saltire.count({6, -6}), 1U);
  EXPECT_EQ(saltire.count({5, 3}), 1U);
  EXPECT_EQ(saltire.count({5, 2}), 0U);
  EXPECT_EQ(saltire.count({7, 0}), 0U);
}

}  // namespace
