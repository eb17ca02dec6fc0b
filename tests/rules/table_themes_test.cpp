#include "rules/table_themes.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <set>

namespace {

TEST(TableTheme, OfAStageOutsideTheTableIsTheNearestOne) {
  EXPECT_STREQ(mj::tableThemeForStage(-3)->name, "jade");
  EXPECT_STREQ(mj::tableThemeForStage(12)->name, "imperialGold");
  EXPECT_STREQ(mj::tableThemeForStage(INT_MIN)->name, "jade");
  EXPECT_STREQ(mj::tableThemeForStage(INT_MAX)->name, "imperialGold");
}

TEST(TableTheme, NamesTheStagesInOrder) {
  const char* const names[] = {"jade",       "imperialRed", "midnightBlue", "violet", "lacquerBlack",
                               "sandalwood", "emerald",     "burgundy",     "petrol", "imperialGold"};
  for (int stage = 0; stage < 10; ++stage) EXPECT_STREQ(mj::tableThemeForStage(stage)->name, names[stage]);
}

TEST(TableTheme, OfLevelsOneToTenIsJade) {
  for (int level = 1; level <= 10; ++level) EXPECT_STREQ(mj::tableThemeForLevel(level)->name, "jade");
}

TEST(TableTheme, OfLevels91To100IsImperialGold) {
  for (int level = 91; level <= 100; ++level) {
    EXPECT_STREQ(mj::tableThemeForLevel(level)->name, "imperialGold");
  }
}

TEST(TableTheme, ChangesWithEveryTenthLevel) {
  for (int level = 1; level <= 100; ++level) {
    EXPECT_EQ(mj::tableThemeForLevel(level), mj::tableThemeForStage((level - 1) / 10)) << level;
  }
}

TEST(TableTheme, OfLevelsOutsideTheTableIsTheNearestOne) {
  EXPECT_STREQ(mj::tableThemeForLevel(0)->name, "jade");
  EXPECT_STREQ(mj::tableThemeForLevel(INT_MIN)->name, "jade");
  EXPECT_STREQ(mj::tableThemeForLevel(101)->name, "imperialGold");
  EXPECT_STREQ(mj::tableThemeForLevel(INT_MAX)->name, "imperialGold");
}

TEST(TableTheme, KeepsItsColoursInTheirPlaces) {
  const mj::TableTheme& jade = *mj::tableThemeForStage(0);
  EXPECT_EQ(jade.middle, 0x0E3A2BU);
  EXPECT_EQ(jade.top, 0x1A6347U);
  EXPECT_EQ(jade.bottom, 0x072017U);
  EXPECT_EQ(jade.glow, 0x2C8A63U);
  EXPECT_EQ(jade.vignette, 0x04140EU);
  EXPECT_EQ(jade.ornament, 0xE8B84BU);
}

TEST(TableTheme, TellsEachStageFromTheOthersByItsCloth) {
  std::set<std::uint32_t> glows;
  for (int stage = 0; stage < 10; ++stage) glows.insert(mj::tableThemeForStage(stage)->glow);
  EXPECT_EQ(glows.size(), 10U);
}

}  // namespace
