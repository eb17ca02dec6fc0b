#include "storage/storage.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

TEST(ComputeStars, GivesThreeWithoutAids) {
  EXPECT_EQ(store::computeStars(0), 3);
  EXPECT_EQ(store::computeStars(-1), 3);
  EXPECT_EQ(store::computeStars(std::numeric_limits<int>::min()), 3);
}

TEST(ComputeStars, GivesTwoForOneOrTwoAids) {
  EXPECT_EQ(store::computeStars(1), 2);
  EXPECT_EQ(store::computeStars(2), 2);
}

TEST(ComputeStars, GivesOneForAnyMore) {
  EXPECT_EQ(store::computeStars(3), 1);
  EXPECT_EQ(store::computeStars(std::numeric_limits<int>::max()), 1);
}

TEST(Settings, FirstStartHasSoundAndAMiddlingWindowThatIsPlacedByTheDesktop) {
  const store::Settings settings;
  EXPECT_EQ(settings.language, "");
  EXPECT_TRUE(settings.soundOn);
  EXPECT_EQ(settings.musicVolume, 0.25);
  EXPECT_EQ(settings.sfxVolume, 1.0);
  EXPECT_FALSE(settings.fullscreen);
  EXPECT_FALSE(settings.maximized);
  EXPECT_EQ(settings.windowW, 1100);
  EXPECT_EQ(settings.windowH, 760);
  EXPECT_EQ(settings.windowX, -1000000);
  EXPECT_EQ(settings.windowY, -1000000);
}

}  // namespace
