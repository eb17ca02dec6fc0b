#include "rules/levels.h"

#include <gtest/gtest.h>

#include <climits>

#include "rules/boards.h"

namespace {

struct Example {
  int level;
  int stage;
  int tiles;
  mj::HeapShape shape;
  double spread;
};

constexpr Example kExamples[] = {
    {1, 0, 36, mj::HeapShape::Rect, 0.58},        {2, 0, 36, mj::HeapShape::Diamond, 0.62},
    {5, 0, 36, mj::HeapShape::Triangle, 0.58},    {11, 1, 48, mj::HeapShape::Disc, 0.558},
    {21, 2, 60, mj::HeapShape::Triangle, 0.536},  {50, 4, 84, mj::HeapShape::Ring, 0.542},
    {90, 8, 132, mj::HeapShape::WideRect, 0.454}, {91, 9, 144, mj::HeapShape::Rect, 0.382},
    {100, 9, 144, mj::HeapShape::Rect, 0.432},
};

TEST(Levels, BelowOneAreLevelOne) {
  EXPECT_EQ(&mj::levelToConfig(0), &mj::levelToConfig(1));
  EXPECT_EQ(&mj::levelToConfig(-7), &mj::levelToConfig(1));
  EXPECT_EQ(&mj::levelToConfig(INT_MIN), &mj::levelToConfig(1));
  EXPECT_EQ(mj::levelToConfig(0).level, 1);
}

TEST(Levels, HaveTheStageTilesShapeAndSpreadOfTheirNumber) {
  for (const auto& [level, stage, tiles, shape, spread] : kExamples) {
    const mj::LevelConfig& config = mj::levelToConfig(level);
    EXPECT_EQ(config.level, level);
    EXPECT_EQ(config.stage, stage) << "level " << level;
    EXPECT_EQ(config.tiles, tiles) << "level " << level;
    EXPECT_EQ(config.shape, shape) << "level " << level;
    EXPECT_EQ(config.slots, mj::buildShapedHeap(shape, tiles, spread)) << "level " << level;
  }
}

TEST(Levels, OfTheFirstStageHave36TilesAndOfTheLast144) {
  for (int level = 1; level <= 10; ++level) EXPECT_EQ(mj::levelToConfig(level).tiles, 36);
  for (int level = 91; level <= 100; ++level) EXPECT_EQ(mj::levelToConfig(level).tiles, 144);
}

TEST(Levels, StandSolidWithAsManyTilesAsTheirStageWants) {
  for (int level = 1; level <= 100; ++level) {
    const mj::LevelConfig& config = mj::levelToConfig(level);
    SCOPED_TRACE(level);
    test::expectSolidHeap(config.slots);
    EXPECT_EQ(config.stage, (level - 1) / 10);
    EXPECT_EQ(config.tiles, mj::kStageTargets[static_cast<std::size_t>(config.stage)]);
    EXPECT_EQ(config.tiles, static_cast<int>(config.slots.size()));
    EXPECT_EQ(config.layers, mj::boundsOf(config.slots).levels);
  }
}

TEST(Levels, RunThroughTheShapesOneByOneAndEachStageOneStepFurther) {
  for (int level = 1; level <= 100; ++level) {
    const int step = level - 1 + (level - 1) / 10;
    EXPECT_EQ(mj::levelToConfig(level).shape, mj::kShapes[static_cast<std::size_t>(step % 9)]);
  }
}

TEST(Levels, Above100GoOnInTheLastStage) {
  const mj::LevelConfig& config = mj::levelToConfig(101);
  EXPECT_EQ(config.level, 101);
  EXPECT_EQ(config.stage, 9);
  EXPECT_EQ(config.tiles, 144);
  EXPECT_EQ(config.shape, mj::HeapShape::Diamond);
  EXPECT_EQ(mj::levelToConfig(INT_MAX).stage, 9);
}

TEST(Levels, StayWhereTheyAreWhileOthersAreBuilt) {
  const mj::LevelConfig* const first = &mj::levelToConfig(61);
  const mj::Slot* const slots = first->slots.data();
  for (int level = 200; level < 260; ++level) mj::levelToConfig(level);
  EXPECT_EQ(&mj::levelToConfig(61), first);
  EXPECT_EQ(mj::levelToConfig(61).slots.data(), slots);
}

}  // namespace
