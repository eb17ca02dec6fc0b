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

// A second copy, so that no colour changes unnoticed.
constexpr mj::TableTheme kExpected[] = {
    {"jade", 0x0E3A2B, 0x1A6347, 0x072017, 0x2C8A63, 0x04140E, 0xE8B84B},
    {"imperialRed", 0x5E1414, 0x8A2222, 0x2A0707, 0xB0382F, 0x1A0303, 0xF0CF6A},
    {"midnightBlue", 0x122A55, 0x1E417E, 0x07142E, 0x2F5FAE, 0x03081A, 0xE8B84B},
    {"violet", 0x361A52, 0x512A7E, 0x1B0C30, 0x7A44AE, 0x0E051A, 0xE6C463},
    {"lacquerBlack", 0x1D1813, 0x312921, 0x0A0807, 0x5A4A36, 0x000000, 0xD9A441},
    {"sandalwood", 0x5A3A1E, 0x7E552E, 0x2E1D0E, 0xA8773F, 0x190F06, 0xF0D488},
    {"emerald", 0x0C4A30, 0x157A4A, 0x052418, 0x2BB06A, 0x02140C, 0xF0CF6A},
    {"burgundy", 0x4A1530, 0x7E2350, 0x240A18, 0xB03F74, 0x14040C, 0xE8B84B},
    {"petrol", 0x0E3A3F, 0x176369, 0x06201F, 0x2C8A8A, 0x03100F, 0xE6C463},
    {"imperialGold", 0x3A2E0E, 0x5E4A16, 0x1A1405, 0x9A7A2A, 0x0C0903, 0xF5D97A},
};

TEST(TableTheme, HasTheColoursOfItsStage) {
  for (int stage = 0; stage < 10; ++stage) {
    const mj::TableTheme& theme = *mj::tableThemeForStage(stage);
    const mj::TableTheme& expected = kExpected[stage];
    EXPECT_STREQ(theme.name, expected.name);
    EXPECT_EQ(theme.middle, expected.middle) << expected.name;
    EXPECT_EQ(theme.top, expected.top) << expected.name;
    EXPECT_EQ(theme.bottom, expected.bottom) << expected.name;
    EXPECT_EQ(theme.glow, expected.glow) << expected.name;
    EXPECT_EQ(theme.vignette, expected.vignette) << expected.name;
    EXPECT_EQ(theme.ornament, expected.ornament) << expected.name;
  }
}

TEST(TableTheme, TellsEachStageFromTheOthersByItsCloth) {
  std::set<std::uint32_t> glows;
  for (int stage = 0; stage < 10; ++stage) glows.insert(mj::tableThemeForStage(stage)->glow);
  EXPECT_EQ(glows.size(), 10U);
}

}  // namespace
