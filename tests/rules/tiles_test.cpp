#include "rules/tiles.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

bool match(const std::string& a, const std::string& b) { return mj::matchKey(a) == mj::matchKey(b); }

std::map<std::string, int> facesOfSet() {
  std::map<std::string, int> count;
  for (const auto& [a, b] : mj::allPairs()) {
    ++count[a];
    ++count[b];
  }
  return count;
}

bool isBonus(const std::string& face) { return face.find("flower") == 0 || face.find("season") == 0; }

TEST(TileSet, Has72PairsThatMatch) {
  const auto pairs = mj::allPairs();
  EXPECT_EQ(pairs.size(), 72U);
  for (const auto& [a, b] : pairs) EXPECT_TRUE(match(a, b)) << a << ' ' << b;
}

TEST(TileSet, HasEachOrdinaryFaceFourTimesAndEachBonusFaceOnce) {
  const auto count = facesOfSet();
  EXPECT_EQ(count.size(), 34U + 8U);
  for (const auto& [face, times] : count) EXPECT_EQ(times, isBonus(face) ? 1 : 4) << face;
}

TEST(TileSet, KeepsTheOrderFromWhichDealsAreDrawn) {
  using Pair = mj::FacePair;
  const auto pairs = mj::allPairs();
  EXPECT_EQ(pairs[0], Pair("dot1", "dot1"));
  EXPECT_EQ(pairs[1], Pair("dot1", "dot1"));
  EXPECT_EQ(pairs[2], Pair("dot2", "dot2"));
  EXPECT_EQ(pairs[18], Pair("bam1", "bam1"));
  EXPECT_EQ(pairs[53], Pair("wan9", "wan9"));
  const char* const honours[] = {"windE", "windS", "windW", "windN", "dragRed", "dragGreen", "dragWhite"};
  for (std::size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(pairs[54 + 2 * i], Pair(honours[i], honours[i]));
    EXPECT_EQ(pairs[55 + 2 * i], Pair(honours[i], honours[i]));
  }
  EXPECT_EQ(pairs[68], Pair("flower1", "flower2"));
  EXPECT_EQ(pairs[69], Pair("flower3", "flower4"));
  EXPECT_EQ(pairs[70], Pair("season1", "season2"));
  EXPECT_EQ(pairs[71], Pair("season3", "season4"));
}

TEST(Matching, TakesAnyFlowerForAnyOtherAndAnySeasonForAnyOther) {
  EXPECT_TRUE(match("flower1", "flower4"));
  EXPECT_TRUE(match("season2", "season3"));
  EXPECT_FALSE(match("flower1", "season1"));
}

TEST(Matching, TakesOrdinaryFacesForTheirLikeOnly) {
  EXPECT_TRUE(match("wan3", "wan3"));
  EXPECT_FALSE(match("dot1", "bam1"));
  EXPECT_FALSE(match("dot1", "dot2"));
  EXPECT_FALSE(match("windE", "windS"));
}

TEST(Matching, KeysAreTheGroupOrTheNameItself) {
  EXPECT_EQ(mj::matchKey("flower3"), "flowerGroup");
  EXPECT_EQ(mj::matchKey("flower"), "flowerGroup");
  EXPECT_EQ(mj::matchKey("season4"), "seasonGroup");
  EXPECT_EQ(mj::matchKey("dragRed"), "dragRed");
  EXPECT_EQ(mj::matchKey("joker"), "joker");
  EXPECT_EQ(mj::matchKey(""), "");
}

TEST(FaceInfo, OfEveryOrdinaryNumberCarriesItsSuitAndRank) {
  const char* const numerals[] = {"一", "二", "三", "四", "五", "六", "七", "八", "九"};
  for (int n = 1; n <= 9; ++n) {
    EXPECT_EQ(mj::faceInfo("dot" + std::to_string(n)), (mj::FaceInfo{0, n, ""}));
    EXPECT_EQ(mj::faceInfo("bam" + std::to_string(n)), (mj::FaceInfo{1, n, ""}));
    EXPECT_EQ(mj::faceInfo("wan" + std::to_string(n)), (mj::FaceInfo{2, n, numerals[n - 1]}));
  }
}

TEST(FaceInfo, OfHonoursCarriesTheirGlyph) {
  EXPECT_EQ(mj::faceInfo("windE"), (mj::FaceInfo{3, 0, "東"}));
  EXPECT_EQ(mj::faceInfo("windS"), (mj::FaceInfo{3, 1, "南"}));
  EXPECT_EQ(mj::faceInfo("windW"), (mj::FaceInfo{3, 2, "西"}));
  EXPECT_EQ(mj::faceInfo("windN"), (mj::FaceInfo{3, 3, "北"}));
  EXPECT_EQ(mj::faceInfo("dragRed"), (mj::FaceInfo{4, 0, "中"}));
  EXPECT_EQ(mj::faceInfo("dragGreen"), (mj::FaceInfo{4, 1, "發"}));
  EXPECT_EQ(mj::faceInfo("dragWhite"), (mj::FaceInfo{4, 2, ""}));
}

TEST(FaceInfo, OfBonusTilesRanksFromZero) {
  EXPECT_EQ(mj::faceInfo("flower1"), (mj::FaceInfo{5, 0, ""}));
  EXPECT_EQ(mj::faceInfo("flower4"), (mj::FaceInfo{5, 3, ""}));
  EXPECT_EQ(mj::faceInfo("season3"), (mj::FaceInfo{6, 2, ""}));
}

TEST(FaceInfo, OfUnknownHonoursHasRankZeroAndNoGlyph) {
  EXPECT_EQ(mj::faceInfo("windX"), (mj::FaceInfo{3, 0, ""}));
  EXPECT_EQ(mj::faceInfo("wind"), (mj::FaceInfo{3, 0, ""}));
  EXPECT_EQ(mj::faceInfo("windEE"), (mj::FaceInfo{3, 0, ""}));
  EXPECT_EQ(mj::faceInfo("dragBlue"), (mj::FaceInfo{4, 0, ""}));
}

TEST(FaceInfo, OfCharactersOutsideOneToNineHasNoGlyph) {
  EXPECT_EQ(mj::faceInfo("wan0"), (mj::FaceInfo{2, 0, ""}));
  EXPECT_EQ(mj::faceInfo("wan12"), (mj::FaceInfo{2, 12, ""}));
  EXPECT_EQ(mj::faceInfo("wan"), (mj::FaceInfo{2, 0, ""}));
}

TEST(FaceInfo, OfABareSuitHasNoRank) {
  EXPECT_EQ(mj::faceInfo("dot"), (mj::FaceInfo{0, 0, ""}));
  EXPECT_EQ(mj::faceInfo("bam"), (mj::FaceInfo{1, 0, ""}));
  EXPECT_EQ(mj::faceInfo("flower"), (mj::FaceInfo{5, -1, ""}));
  EXPECT_EQ(mj::faceInfo("season"), (mj::FaceInfo{6, -1, ""}));
}

TEST(FaceInfo, OfAnUnknownNameIsAOneOfDots) {
  EXPECT_EQ(mj::faceInfo("joker"), (mj::FaceInfo{0, 1, ""}));
  EXPECT_EQ(mj::faceInfo(""), (mj::FaceInfo{0, 1, ""}));
  EXPECT_EQ(mj::faceInfo("do"), (mj::FaceInfo{0, 1, ""}));
  EXPECT_EQ(mj::faceInfo("Dot3"), (mj::FaceInfo{0, 1, ""}));
}

TEST(FaceInfo, ReadsLeadingDigitsOnly) {
  EXPECT_EQ(mj::faceInfo("dot7x").rank, 7);
  EXPECT_EQ(mj::faceInfo("dotx7").rank, 0);
  EXPECT_EQ(mj::faceInfo("dot-3").rank, 0);
  EXPECT_EQ(mj::faceInfo("dot007").rank, 7);
}

TEST(FaceInfo, SurvivesNumbersBeyondAnyInteger) {
  EXPECT_GT(mj::faceInfo("dot99999999999999999999").rank, 9);
  EXPECT_EQ(mj::faceInfo("wan99999999999999999999").glyph, "");
  EXPECT_GT(mj::faceInfo("season99999999999999999999").rank, 3);
}

TEST(FaceInfo, PrintsOneMarkUnderAllCharacters) { EXPECT_STREQ(mj::kWanMark, "萬"); }

}  // namespace
