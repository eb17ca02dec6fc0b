#include "app/stats.h"

#include <gtest/gtest.h>

namespace {

TEST(FrameStats, LineGivesFramesMeanTimesCopiesSizeAndProfile) {
  ui::FrameStats stats(10);
  stats.add(0.004, 0.010);
  stats.add(0.002, 0.015);
  EXPECT_EQ(stats.report(11, 145, 1100, 760, " board 1.2 felt 0.1"),
            "[stats]   2 fps   CPU   3.0 ms   GPU  12.5 ms   145 Kopien  1100x760  board 1.2 felt 0.1\n");
}

TEST(FrameStats, LineWithoutProfileEndsAfterTheSize) {
  ui::FrameStats stats(0);
  stats.add(0, 0);
  EXPECT_EQ(stats.report(1, 0, 640, 480, ""),
            "[stats]   1 fps   CPU   0.0 ms   GPU   0.0 ms   0 Kopien  640x480 \n");
}

TEST(FrameStats, LongProfileIsNotCut) {
  ui::FrameStats stats(0);
  stats.add(0, 0);
  const std::string profile(1000, 'p');
  EXPECT_TRUE(stats.report(1, 0, 640, 480, profile).ends_with(profile + "\n"));
}

TEST(FrameStats, FramesAreCountedNotDividedByTheTimeThatPassed) {
  ui::FrameStats stats(0);
  for (int i = 0; i < 1200; ++i) stats.add(1.5, 0);
  EXPECT_TRUE(stats.report(4, 0, 640, 480, "").starts_with("[stats] 1200 fps   CPU 1500.0 ms"));
}

TEST(FrameStats, IsDueAfterASecond) {
  const ui::FrameStats stats(10);
  EXPECT_FALSE(stats.due(10.99));
  EXPECT_TRUE(stats.due(11));
  EXPECT_TRUE(stats.due(15));
}

TEST(FrameStats, ReportBeginsTheNextInterval) {
  ui::FrameStats stats(10);
  stats.add(0.5, 0.5);
  stats.report(11.25, 0, 640, 480, "");
  EXPECT_FALSE(stats.due(12.125));
  EXPECT_TRUE(stats.due(12.25));
  stats.add(0.001, 0.002);
  EXPECT_TRUE(
      stats.report(12.25, 0, 640, 480, "").starts_with("[stats]   1 fps   CPU   1.0 ms   GPU   2.0 ms"));
}

}  // namespace
