// Tests the player's progress and the best results of the levels.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "storage/limits.h"
#include "storage/storage.h"
#include "support/data_home.h"

namespace {

using store::LevelBest;
using store::Progress;
using support::DataHome;
using test::kInt64Max;
using test::kInt64Min;
using test::kIntMax;
using test::kIntMin;

constexpr const char* kProgressFile = "progress.json";

Progress progressIn(const std::string& text) {
  const DataHome home;
  home.write(kProgressFile, text);
  return store::loadProgress();
}

// The best of level 3 if its entry in the file is `text`.
LevelBest bestIn(const std::string& text) {
  const DataHome home;
  home.write(kProgressFile, R"({"bests":{"3":)" + text + "}}");
  return store::bestFor(3);
}

std::int64_t elapsedIn(const std::string& number) {
  return bestIn(R"({"elapsedMs":)" + number + "}").elapsedMs;
}

TEST(LoadProgress, IsAFirstStartWithoutAFile) {
  const DataHome home;
  EXPECT_EQ(store::loadProgress(), (Progress{1, 0}));
  EXPECT_FALSE(home.has(kProgressFile));
}

TEST(LoadProgress, KeepsTheLevelBetweenOneAndAHundred) {
  EXPECT_EQ(progressIn(R"({"currentLevel":250})").currentLevel, 100);
  EXPECT_EQ(progressIn(R"({"currentLevel":101})").currentLevel, 100);
  EXPECT_EQ(progressIn(R"({"currentLevel":100})").currentLevel, 100);
  EXPECT_EQ(progressIn(R"({"currentLevel":0})").currentLevel, 1);
  EXPECT_EQ(progressIn(R"({"currentLevel":-3})").currentLevel, 1);
}

TEST(LoadProgress, NeverCountsBelowZero) {
  EXPECT_EQ(progressIn(R"({"totalSolves":-4})").totalSolves, 0);
  EXPECT_EQ(progressIn(R"({"totalSolves":4})").totalSolves, 4);
}

TEST(LoadProgress, IsAFirstStartForNumbersThatNoIntHolds) {
  for (const char* number : {"4294967296", "-4294967296", "1e300", "-1e300", "inf", "-inf", "nan", "-nan"}) {
    const std::string text =
        std::string(R"({"currentLevel":)") + number + R"(,"totalSolves":)" + number + "}";
    EXPECT_EQ(progressIn(text), (Progress{1, 0})) << number;
  }
}

TEST(LoadProgress, IsAFirstStartForWhatIsNoObject) {
  for (const char* text : {"[]", "7", "\"x\"", "null", "true"})
    EXPECT_EQ(progressIn(text), (Progress{1, 0})) << text;
}

TEST(LoadProgress, LeavesOutMembersOfAWrongKind) {
  EXPECT_EQ(progressIn(R"({"currentLevel":"7","totalSolves":12})"), (Progress{1, 12}));
  EXPECT_EQ(progressIn(R"({"currentLevel":7,"totalSolves":[12]})"), (Progress{7, 0}));
}

TEST(LoadProgress, IsAFirstStartForEveryTruncation) {
  const DataHome home;
  store::saveProgress({7, 12});
  store::recordBest(3, {2, 1, 9000});
  const std::string whole = home.text(kProgressFile);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    home.write(kProgressFile, whole.substr(0, length));
    EXPECT_EQ(store::loadProgress(), (Progress{1, 0})) << length;
    EXPECT_EQ(store::bestFor(3), LevelBest()) << length;
  }
}

TEST(LoadProgress, ReadsAWholeTemporaryWhenTheFileIsMissing) {
  const DataHome home;
  home.write(std::string(kProgressFile) + ".tmp",
             R"({"currentLevel":7,"totalSolves":12,"bests":{"3":{"stars":2}}})");
  EXPECT_EQ(store::loadProgress(), (Progress{7, 12}));
  EXPECT_EQ(store::bestFor(3), (LevelBest{2, 0, 0}));
  EXPECT_EQ(store::advanceLevel(7), (Progress{8, 13}));
  EXPECT_EQ(store::bestFor(3), (LevelBest{2, 0, 0}));
}

TEST(SaveProgress, WritesThreeMembers) {
  const DataHome home;
  store::saveProgress({7, 12});
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{},"currentLevel":7,"totalSolves":12})");
}

TEST(SaveProgress, WritesWhatItIsGiven) {
  const DataHome home;
  store::saveProgress({250, -4});
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{},"currentLevel":250,"totalSolves":-4})");
}

TEST(SaveProgress, IsReadBack) {
  const DataHome home;
  store::saveProgress({100, kIntMax});
  EXPECT_EQ(store::loadProgress(), (Progress{100, kIntMax}));
}

TEST(SaveProgress, KeepsTheBestResultsAndNothingElse) {
  const DataHome home;
  home.write(kProgressFile, R"({"bests":{"3":{"stars":2}, "x":5},"currentLevel":1,"other":1})");
  store::saveProgress({4, 3});
  EXPECT_EQ(home.text(kProgressFile),
            R"({"bests":{"3":{"stars":2},"x":5},"currentLevel":4,"totalSolves":3})");
}

TEST(SaveProgress, ReplacesBestResultsThatAreNoObject) {
  const DataHome home;
  home.write(kProgressFile, R"({"bests":[1,2],"currentLevel":1,"totalSolves":0})");
  store::saveProgress({4, 3});
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{},"currentLevel":4,"totalSolves":3})");
}

TEST(AdvanceLevel, OpensTheSecondLevelAfterTheFirst) {
  const DataHome home;
  EXPECT_EQ(store::advanceLevel(1), (Progress{2, 1}));
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{},"currentLevel":2,"totalSolves":1})");
}

TEST(AdvanceLevel, OnlyCountsTheRepetitionOfAnEarlierLevel) {
  const DataHome home;
  store::saveProgress({5, 8});
  EXPECT_EQ(store::advanceLevel(3), (Progress{5, 9}));
  EXPECT_EQ(store::loadProgress(), (Progress{5, 9}));
}

TEST(AdvanceLevel, OpensOneLevelEvenForOneFarAhead) {
  const DataHome home;
  store::saveProgress({5, 8});
  EXPECT_EQ(store::advanceLevel(60), (Progress{6, 9}));
}

TEST(AdvanceLevel, EndsAtTheHundredth) {
  const DataHome home;
  store::saveProgress({99, 0});
  EXPECT_EQ(store::advanceLevel(99), (Progress{100, 1}));
  EXPECT_EQ(store::advanceLevel(100), (Progress{100, 2}));
  EXPECT_EQ(store::advanceLevel(kIntMax), (Progress{100, 3}));
}

TEST(AdvanceLevel, StopsCountingAtTheLargestInt) {
  const DataHome home;
  store::saveProgress({1, kIntMax - 1});
  EXPECT_EQ(store::advanceLevel(1), (Progress{2, kIntMax}));
  EXPECT_EQ(store::advanceLevel(2), (Progress{3, kIntMax}));
  EXPECT_EQ(store::loadProgress(), (Progress{3, kIntMax}));
}

TEST(AdvanceLevel, KeepsTheBestResults) {
  const DataHome home;
  store::recordBest(1, {3, 0, 5000});
  store::advanceLevel(1);
  EXPECT_EQ(store::bestFor(1), (LevelBest{3, 0, 5000}));
}

// Regression: an unreadable file stopped all saving.
TEST(AdvanceLevel, SetsAsideWhatCannotBeReadAndIsKeptItself) {
  const DataHome home;
  home.write(kProgressFile + std::string("/somebodys"), "kept");
  EXPECT_EQ(store::advanceLevel(1), (Progress{2, 1}));
  EXPECT_EQ(store::loadProgress(), (Progress{2, 1}));
  EXPECT_EQ(home.text(kProgressFile + std::string(".unread1/somebodys")), "kept");
}

TEST(LoadProgress, SetsNothingAside) {
  const DataHome home;
  home.write(kProgressFile + std::string("/somebodys"), "kept");
  EXPECT_EQ(store::loadProgress(), Progress());
  EXPECT_TRUE(home.has(kProgressFile + std::string("/somebodys")));
}

TEST(ResetProgress, ForgetsEverything) {
  const DataHome home;
  store::saveProgress({7, 12});
  store::recordBest(3, {2, 1, 9000});
  EXPECT_EQ(store::resetProgress(), (Progress{1, 0}));
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{},"currentLevel":1,"totalSolves":0})");
}

TEST(BestFor, IsAllZeroForALevelNeverSolved) {
  const DataHome home;
  store::recordBest(3, {2, 1, 9000});
  EXPECT_EQ(store::bestFor(4), LevelBest());
}

TEST(BestFor, CutsTheFractionOfATime) {
  EXPECT_EQ(elapsedIn("1234.9"), 1234);
  EXPECT_EQ(elapsedIn("-1234.9"), -1234);
  EXPECT_EQ(elapsedIn("0.9"), 0);
}

TEST(BestFor, GivesTheNearestTimeThatFits) {
  constexpr std::int64_t kMax = kInt64Max;
  constexpr std::int64_t kMin = kInt64Min;
  EXPECT_EQ(elapsedIn("4294967296"), 4294967296);
  EXPECT_EQ(elapsedIn("9223372036854774784"), 9223372036854774784);
  EXPECT_EQ(elapsedIn("9223372036854775808"), kMax);
  EXPECT_EQ(elapsedIn("1e300"), kMax);
  EXPECT_EQ(elapsedIn("inf"), kMax);
  EXPECT_EQ(elapsedIn("-9223372036854775808"), kMin);
  EXPECT_EQ(elapsedIn("-1e300"), kMin);
  EXPECT_EQ(elapsedIn("-inf"), kMin);
  EXPECT_EQ(elapsedIn("nan"), 0);
  EXPECT_EQ(elapsedIn("-nan"), 0);
}

TEST(BestFor, GivesTheSmallestIntForCountsThatNoIntHolds) {
  for (const char* number : {"4294967296", "1e300", "inf", "-inf", "nan"}) {
    EXPECT_EQ(bestIn(std::string(R"({"stars":)") + number + R"(,"aids":)" + number + "}"),
              (LevelBest{kIntMin, kIntMin, 0}))
        << number;
  }
}

TEST(BestFor, TakesMembersOfAWrongKindForZero) {
  EXPECT_EQ(bestIn(R"({"stars":"3","aids":5,"elapsedMs":"7"})"), (LevelBest{0, 5, 0}));
  EXPECT_EQ(bestIn(R"({"stars":3,"aids":null,"elapsedMs":true})"), (LevelBest{3, 0, 0}));
  EXPECT_EQ(bestIn("[3,0,5000]"), LevelBest());
}

TEST(BestFor, IsAllZeroForBestResultsThatAreNoObject) {
  const DataHome home;
  home.write(kProgressFile, R"({"bests":[{"stars":3},{"stars":3}]})");
  EXPECT_EQ(store::bestFor(1), LevelBest());
}

TEST(LoadCareer, IsTheProgressAndTheBestOfEveryLevel) {
  const DataHome home;
  store::saveProgress({7, 12});
  for (const int level : {1, 6, 100}) store::recordBest(level, {2, 1, 1000 + level});
  const store::Career career = store::loadCareer();
  EXPECT_EQ(career.progress, store::loadProgress());
  for (int level = 1; level <= store::kLastLevel; ++level) {
    EXPECT_EQ(career.bests[static_cast<std::size_t>(level - 1)], store::bestFor(level)) << level;
  }
}

TEST(RecordBest, TakesTheFirstResultAsItIs) {
  const DataHome home;
  EXPECT_EQ(store::recordBest(3, {1, 9, 700000}), (LevelBest{1, 9, 700000}));
  EXPECT_EQ(store::bestFor(3), (LevelBest{1, 9, 700000}));
}

TEST(RecordBest, BettersEachPartOnItsOwn) {
  const DataHome home;
  store::recordBest(3, {3, 1, 120000});
  EXPECT_EQ(store::recordBest(3, {2, 5, 90000}), (LevelBest{3, 1, 90000}));
  EXPECT_EQ(store::recordBest(3, {3, 0, 95000}), (LevelBest{3, 0, 90000}));
  EXPECT_EQ(store::bestFor(3), (LevelBest{3, 0, 90000}));
}

TEST(RecordBest, TakesMoreAidsWhereThereWereNoStars) {
  const DataHome home;
  store::recordBest(3, {0, 0, 0});
  EXPECT_EQ(store::recordBest(3, {1, 7, 5000}), (LevelBest{1, 7, 5000}));
}

TEST(RecordBest, TakesATimeWhereThereWasNone) {
  const DataHome home;
  store::recordBest(3, {2, 1, 0});
  EXPECT_EQ(store::recordBest(3, {2, 1, 5000}), (LevelBest{2, 1, 5000}));
}

TEST(RecordBest, WritesLevelsInTheOrderOfTheirDigits) {
  const DataHome home;
  store::saveProgress({11, 12});
  store::recordBest(2, {3, 0, 61000});
  store::recordBest(10, {1, 4, 1700000000000});
  EXPECT_EQ(home.text(kProgressFile),
            R"({"bests":{"10":{"aids":4,"elapsedMs":1700000000000,"stars":1},)"
            R"("2":{"aids":0,"elapsedMs":61000,"stars":3}},"currentLevel":11,"totalSolves":12})");
}

TEST(RecordBest, BringsTheProgressBesideItIntoItsRange) {
  const DataHome home;
  home.write(kProgressFile, R"({"currentLevel":250,"totalSolves":-4,"bests":7})");
  store::recordBest(2, {3, 0, 61000});
  EXPECT_EQ(home.text(kProgressFile), R"({"bests":{"2":{"aids":0,"elapsedMs":61000,"stars":3}},)"
                                      R"("currentLevel":100,"totalSolves":0})");
}

TEST(RecordBest, StartsAFileThatMakesNoSenseAnew) {
  const DataHome home;
  home.write(kProgressFile, "[1,2");
  store::recordBest(2, {3, 0, 61000});
  EXPECT_EQ(home.text(kProgressFile),
            R"({"bests":{"2":{"aids":0,"elapsedMs":61000,"stars":3}},"currentLevel":1,"totalSolves":0})");
}

}  // namespace
