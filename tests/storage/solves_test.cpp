// Tests the gallery's solves and their pictures.

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "storage/limits.h"
#include "storage/storage.h"
#include "support/data_home.h"

namespace {

using store::SolveEntry;
using support::DataHome;
using test::kInt64Max;
using test::kInt64Min;
using test::kIntMin;
using test::kUintMax;
using Solves = std::vector<SolveEntry>;

constexpr const char* kSolvesFile = "solves.json";

// A solve with its own picture.
SolveEntry solveOf(int level, const std::string& id) {
  SolveEntry entry;
  entry.id = id;
  entry.level = level;
  entry.tiles = 36;
  entry.seed = 4000000000;
  entry.elapsedMs = 60000;
  entry.solvedAt = 1718000000123;
  entry.shot = id + ".png";
  entry.stars = 2;
  entry.aids = 1;
  return entry;
}

template <class Change>
SolveEntry changed(SolveEntry entry, const Change& change) {
  change(entry);
  return entry;
}

void takePicture(const DataHome& home, const SolveEntry& entry) {
  home.write("solves/" + entry.shot, "picture");
}

bool hasPicture(const DataHome& home, const SolveEntry& entry) { return home.has("solves/" + entry.shot); }

// Records the solve as the screen does: picture first.
SolveEntry record(const DataHome& home, const SolveEntry& entry) {
  takePicture(home, entry);
  store::recordSolve(entry);
  return entry;
}

Solves listed(const std::string& text) {
  const DataHome home;
  home.write(kSolvesFile, text);
  return store::listSolves();
}

SolveEntry onlyIdAndLevel(const std::string& id, int level) {
  SolveEntry entry;
  entry.id = id;
  entry.level = level;
  return entry;
}

// The file's text with one solve for each level from 1 to `count`, the last level first.
std::string fileOf(int count) {
  std::string text = "[";
  for (int level = count; level >= 1; --level) {
    const std::string n = std::to_string(level);
    text += R"({"id":"i)" + n + R"(","level":)" + n + R"(,"shot":")" + n + R"(.png"})";
    text += level > 1 ? "," : "]";
  }
  return text;
}

TEST(ListSolves, IsEmptyWithoutAFile) {
  const DataHome home;
  EXPECT_TRUE(store::listSolves().empty());
  EXPECT_FALSE(home.has(kSolvesFile));
}

TEST(ListSolves, IsEmptyForWhatIsNoArray) {
  for (const char* text : {"", "{}", R"({"id":"x"})", "7", "\"x\"", "null", R"([{"id":"x"})"})
    EXPECT_TRUE(listed(text).empty()) << text;
}

TEST(ListSolves, DropsWhatHasNoId) {
  EXPECT_EQ(listed(R"([{"id":7,"level":1},{"level":2},{"id":"","level":3},5,null,[],{"id":"x","level":4}])"),
            Solves{onlyIdAndLevel("x", 4)});
}

TEST(ListSolves, TakesMembersOfAWrongKindForZeroOrEmpty) {
  EXPECT_EQ(
      listed(R"([{"id":"x","level":"1","tiles":null,"seed":"2","elapsedMs":true,"solvedAt":[3],"shot":4,)"
             R"("stars":{},"aids":"5"}])"),
      Solves{onlyIdAndLevel("x", 0)});
}

TEST(ListSolves, CutsTheFractionOfSeedsAndTimes) {
  const Solves solves = listed(R"([{"id":"x","seed":7.9,"elapsedMs":1234.9,"solvedAt":-1.9}])");
  ASSERT_EQ(solves.size(), 1U);
  EXPECT_EQ(solves[0].seed, 7U);
  EXPECT_EQ(solves[0].elapsedMs, 1234);
  EXPECT_EQ(solves[0].solvedAt, -1);
}

struct Example {
  const char* number;
  int signed32;
  std::uint32_t unsigned32;
  std::int64_t signed64;
};

constexpr Example kFarNumbers[] = {
    {"-5", -5, 0, -5},
    {"4294967296", kIntMin, kUintMax, 4294967296},
    {"1e300", kIntMin, kUintMax, kInt64Max},
    {"-1e300", kIntMin, 0, kInt64Min},
    {"inf", kIntMin, kUintMax, kInt64Max},
    {"-inf", kIntMin, 0, kInt64Min},
    {"nan", kIntMin, 0, 0},
    {"-nan", kIntMin, 0, 0},
};

TEST(ListSolves, GivesADefinedNumberForEveryOther) {
  for (const auto& [number, signed32, unsigned32, signed64] : kFarNumbers) {
    std::string text = R"([{"id":"x")";
    for (const char* key : {"level", "tiles", "seed", "elapsedMs", "solvedAt", "stars", "aids"})
      text += std::string(",\"") + key + "\":" + number;
    SolveEntry expected;
    expected.id = "x";
    expected.level = expected.tiles = expected.stars = expected.aids = signed32;
    expected.seed = unsigned32;
    expected.elapsedMs = expected.solvedAt = signed64;
    EXPECT_EQ(listed(text + "}]"), Solves{expected}) << number;
  }
}

TEST(ListSolves, IsEmptyForEveryTruncation) {
  const DataHome home;
  store::recordSolve(solveOf(1, "a"));
  store::recordSolve(solveOf(2, "b"));
  const std::string whole = home.text(kSolvesFile);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    home.write(kSolvesFile, whole.substr(0, length));
    EXPECT_TRUE(store::listSolves().empty()) << length;
  }
}

TEST(ListSolves, GivesWholeEntriesWhateverByteIsWrong) {
  const DataHome home;
  store::recordSolve(solveOf(1, "a"));
  store::recordSolve(solveOf(2, "b"));
  const std::string good = home.text(kSolvesFile);
  constexpr std::string_view kBytes("0179-.\"{}[],:en\\/\t\0\xff", 20);
  std::mt19937 random(1);
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string bad = good;
    bad[i] = kBytes[random() % kBytes.size()];
    home.write(kSolvesFile, bad);
    for (const SolveEntry& entry : store::listSolves()) EXPECT_FALSE(entry.id.empty()) << bad;
  }
}

TEST(ListSolves, ReadsAWholeTemporaryWhenTheFileIsMissing) {
  const DataHome home;
  home.write(std::string(kSolvesFile) + ".tmp", R"([{"id":"x","level":4}])");
  EXPECT_EQ(store::listSolves(), Solves{onlyIdAndLevel("x", 4)});
  store::deleteSolve("x");
  EXPECT_EQ(home.text(kSolvesFile), "[]");
}

TEST(RecordSolve, IsReadBackInEveryField) {
  const DataHome home;
  store::recordSolve(solveOf(1, "a"));
  EXPECT_EQ(store::listSolves(), Solves{solveOf(1, "a")});
}

TEST(RecordSolve, WritesNineMembers) {
  const DataHome home;
  store::recordSolve(solveOf(1, "1718000000123_4821"));
  EXPECT_EQ(home.text(kSolvesFile),
            R"([{"aids":1,"elapsedMs":60000,"id":"1718000000123_4821","level":1,"seed":4000000000,)"
            R"("shot":"1718000000123_4821.png","solvedAt":1718000000123,"stars":2,"tiles":36}])");
}

TEST(RecordSolve, PutsTheNewestFirst) {
  const DataHome home;
  for (int level : {1, 3, 2}) store::recordSolve(solveOf(level, std::to_string(level)));
  EXPECT_EQ(store::listSolves(), (Solves{solveOf(2, "2"), solveOf(3, "3"), solveOf(1, "1")}));
}

TEST(RecordSolve, WithMoreStarsReplacesTheLevelsSolveAndItsPicture) {
  const DataHome home;
  const SolveEntry old = record(home, solveOf(1, "old"));
  const SolveEntry other = record(home, solveOf(2, "other"));
  const SolveEntry better = record(home, changed(solveOf(1, "new"), [](SolveEntry& e) {
                                     e.stars = 3;
                                     e.elapsedMs = 90000;
                                     e.aids = 9;
                                   }));
  EXPECT_EQ(store::listSolves(), (Solves{better, other}));
  EXPECT_FALSE(hasPicture(home, old));
  EXPECT_TRUE(hasPicture(home, other));
  EXPECT_TRUE(hasPicture(home, better));
}

TEST(RecordSolve, WithEqualStarsAndLessTimeReplaces) {
  const DataHome home;
  record(home, solveOf(1, "old"));
  const SolveEntry better = record(home, changed(solveOf(1, "new"), [](SolveEntry& e) {
                                     e.elapsedMs = 59999;
                                     e.aids = 9;
                                   }));
  EXPECT_EQ(store::listSolves(), Solves{better});
}

TEST(RecordSolve, WithEqualStarsAndTimeAndFewerAidsReplaces) {
  const DataHome home;
  const SolveEntry old = record(home, solveOf(1, "old"));
  const SolveEntry better = record(home, changed(solveOf(1, "new"), [](SolveEntry& e) { e.aids = 0; }));
  EXPECT_EQ(store::listSolves(), Solves{better});
  EXPECT_FALSE(hasPicture(home, old));
}

void expectDiscarded(const SolveEntry& entry) {
  const DataHome home;
  const SolveEntry old = record(home, solveOf(1, "old"));
  const SolveEntry other = record(home, solveOf(2, "other"));
  record(home, entry);
  EXPECT_EQ(store::listSolves(), (Solves{other, old}));
  EXPECT_TRUE(hasPicture(home, old));
  EXPECT_FALSE(hasPicture(home, entry));
}

TEST(RecordSolve, ThatIsNoBetterIsDiscardedWithItsPicture) {
  expectDiscarded(solveOf(1, "same"));
  expectDiscarded(changed(solveOf(1, "aids"), [](SolveEntry& e) { e.aids = 2; }));
  expectDiscarded(changed(solveOf(1, "time"), [](SolveEntry& e) {
    e.elapsedMs = 60001;
    e.aids = 0;
  }));
  expectDiscarded(changed(solveOf(1, "stars"), [](SolveEntry& e) {
    e.stars = 1;
    e.elapsedMs = 1;
    e.aids = 0;
  }));
}

TEST(RecordSolve, KeepsAPictureThatTheBetterOneSharesWithTheOld) {
  const DataHome home;
  record(home, solveOf(1, "old"));
  const SolveEntry better = record(home, changed(solveOf(1, "new"), [](SolveEntry& e) {
                                     e.stars = 3;
                                     e.shot = "old.png";
                                   }));
  EXPECT_EQ(store::listSolves(), Solves{better});
  EXPECT_TRUE(hasPicture(home, better));
}

// Regression: on a full disk the old list stayed but its picture was deleted.
TEST(RecordSolve, KeepsThePicturesWhenTheListCannotBeWritten) {
  const DataHome home;
  const SolveEntry old = record(home, solveOf(1, "old"));
  home.write("solves.json.tmp/somebodys", "");  // blocks the temporary name
  record(home, changed(solveOf(1, "better"), [](SolveEntry& e) { e.stars = 3; }));
  store::deleteSolve("old");
  store::clearAllSolves();
  EXPECT_EQ(store::listSolves(), Solves{old});
  EXPECT_TRUE(hasPicture(home, old));
}

TEST(RecordSolve, DeletesAPictureThatItCannotRecord) {
  const DataHome home;
  home.write("solves.json.tmp/somebodys", "");
  const SolveEntry entry = record(home, solveOf(1, "a"));
  EXPECT_TRUE(store::listSolves().empty());
  EXPECT_FALSE(hasPicture(home, entry));
}

TEST(RecordSolve, ForgetsTheOldestOfMoreThanTwoHundredButKeepsItsPicture) {
  const DataHome home;
  home.write(kSolvesFile, fileOf(200));
  home.write("solves/1.png", "picture");
  store::recordSolve(solveOf(201, "i201"));
  const Solves solves = store::listSolves();
  ASSERT_EQ(solves.size(), 200U);
  EXPECT_EQ(solves.front(), solveOf(201, "i201"));
  EXPECT_EQ(solves.back().id, "i2");
  EXPECT_TRUE(home.has("solves/1.png"));
}

TEST(RecordSolve, KeepsTwoHundred) {
  const DataHome home;
  home.write(kSolvesFile, fileOf(199));
  store::recordSolve(solveOf(200, "i200"));
  EXPECT_EQ(store::listSolves().size(), 200U);
  EXPECT_EQ(store::listSolves().back().id, "i1");
}

TEST(RecordSolve, ShortensATooLongFileEvenIfItIsNoBetter) {
  const DataHome home;
  home.write(kSolvesFile, fileOf(205));
  store::recordSolve(changed(solveOf(100, "worse"), [](SolveEntry& e) { e.stars = -1; }));
  EXPECT_EQ(store::listSolves().size(), 200U);
}

TEST(RecordSolve, ReplacesAFileThatMakesNoSense) {
  const DataHome home;
  home.write(kSolvesFile, "{\"x\":1}");
  store::recordSolve(solveOf(1, "a"));
  EXPECT_EQ(store::listSolves(), Solves{solveOf(1, "a")});
}

TEST(DeleteSolve, RemovesTheSolveAndItsPicture) {
  const DataHome home;
  const SolveEntry first = record(home, solveOf(1, "a"));
  const SolveEntry second = record(home, solveOf(2, "b"));
  store::deleteSolve("a");
  EXPECT_EQ(store::listSolves(), Solves{second});
  EXPECT_FALSE(hasPicture(home, first));
  EXPECT_TRUE(hasPicture(home, second));
}

TEST(DeleteSolve, OfAnUnknownIdWritesTheSameAgain) {
  const DataHome home;
  record(home, solveOf(1, "a"));
  const std::string text = home.text(kSolvesFile);
  home.write(kSolvesFile, text + " ");
  store::deleteSolve("b");
  EXPECT_EQ(home.text(kSolvesFile), text);
  EXPECT_TRUE(hasPicture(home, solveOf(1, "a")));
}

TEST(DeleteSolve, WithoutAPictureRemovesTheSolve) {
  const DataHome home;
  store::recordSolve(changed(solveOf(1, "a"), [](SolveEntry& e) { e.shot = ""; }));
  store::deleteSolve("a");
  EXPECT_EQ(home.text(kSolvesFile), "[]");
}

// A damaged file may hold two solves with one id; the player chose the second.
TEST(DeleteSolve, RemovesTheOneThatIsMeantOfTwoWithOneId) {
  const DataHome home;
  const SolveEntry first = solveOf(1, "a");
  const SolveEntry second = changed(solveOf(2, "a"), [](SolveEntry& e) { e.shot = "second.png"; });
  for (const SolveEntry& entry : {second, first}) record(home, entry);
  store::deleteSolve(second);
  EXPECT_EQ(store::listSolves(), Solves{first});
  EXPECT_TRUE(hasPicture(home, first));
  EXPECT_FALSE(hasPicture(home, second));
}

TEST(DeleteSolve, KeepsAPictureThatAnotherSolveHasToo) {
  const DataHome home;
  const SolveEntry first = solveOf(1, "a");
  const SolveEntry second = changed(solveOf(2, "b"), [](SolveEntry& e) { e.shot = "a.png"; });
  for (const SolveEntry& entry : {second, first}) record(home, entry);
  store::deleteSolve("b");
  EXPECT_TRUE(hasPicture(home, first));
  store::deleteSolve("a");
  EXPECT_FALSE(hasPicture(home, first));
}

TEST(DeleteSolve, OfOneThatHasChangedMeanwhileRemovesNothing) {
  const DataHome home;
  const SolveEntry entry = record(home, solveOf(1, "a"));
  store::deleteSolve(changed(entry, [](SolveEntry& e) { e.stars = 3; }));
  EXPECT_EQ(store::listSolves(), Solves{entry});
  EXPECT_TRUE(hasPicture(home, entry));
}

TEST(ClearAllSolves, RemovesEverySolveAndPicture) {
  const DataHome home;
  const SolveEntry first = record(home, solveOf(1, "a"));
  const SolveEntry second = record(home, solveOf(2, "b"));
  home.write("solves/foreign.png", "not listed");
  store::clearAllSolves();
  EXPECT_EQ(home.text(kSolvesFile), "[]");
  EXPECT_FALSE(hasPicture(home, first));
  EXPECT_FALSE(hasPicture(home, second));
  EXPECT_TRUE(home.has("solves/foreign.png"));
}

TEST(NewSolveId, IsTheTimeAndANumberBelowAHundredThousand) {
  const auto now = [] {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
  };
  for (int i = 0; i < 1000; ++i) {
    const auto before = now();
    const std::string id = store::newSolveId();
    const std::string time = id.substr(0, id.find('_'));
    const std::string number = id.substr(time.size() + 1);
    EXPECT_EQ(id, std::to_string(std::stoll(time)) + "_" + std::to_string(std::stoul(number)));
    EXPECT_GE(std::stoll(time), before);
    EXPECT_LE(std::stoll(time), now());
    EXPECT_LT(std::stoul(number), 100000U);
  }
}

TEST(NewSolveId, DiffersWithinAMillisecond) {
  std::set<std::string> numbers;
  for (int i = 0; i < 100; ++i) {
    const std::string id = store::newSolveId();
    numbers.insert(id.substr(id.find('_')));
  }
  EXPECT_GT(numbers.size(), 90U);
}

TEST(ShotPath, LiesInTheSolvesDirectory) {
  const DataHome home;
  EXPECT_EQ(store::shotPath(solveOf(1, "a")), home.path("solves/a.png"));
  EXPECT_EQ(store::shotPath(solveOf(1, "..a")), home.path("solves/..a.png"));
}

SolveEntry withShot(const std::string& shot) {
  return changed(solveOf(1, "a"), [&](SolveEntry& e) { e.shot = shot; });
}

const std::vector<std::string>& namesThatLeadElsewhere() {
  using namespace std::string_literals;
  static const std::vector<std::string> names = {
      "",   ".", "..", "/", "../victim", "dir/victim", "dir/", "./victim", "/etc/hostname", "victim\0.png"s,
      "\0"s};
  return names;
}

TEST(ShotPath, IsEmptyForWhatIsNoBareFileName) {
  for (const std::string& name : namesThatLeadElsewhere())
    EXPECT_EQ(store::shotPath(withShot(name)), "") << name;
}

// A file from elsewhere must not make the game delete other files.
TEST(DeleteSolve, NeverDeletesOutsideTheSolvesDirectory) {
  for (const std::string& name : namesThatLeadElsewhere()) {
    const DataHome home;
    for (const char* victim : {"victim", "solves/victim", "solves/dir/victim"}) home.write(victim, "kept");
    store::recordSolve(withShot(name));
    store::deleteSolve("a");
    for (const char* victim : {"victim", "solves/victim", "solves/dir/victim"})
      EXPECT_TRUE(home.has(victim)) << name;
    EXPECT_TRUE(store::listSolves().empty()) << name;
  }
}

TEST(DeleteSolve, DeletesNoDirectory) {
  const DataHome home;
  home.write("solves/dir/picture.png", "kept");
  std::filesystem::create_directory(home.path("solves/empty"));
  for (const char* name : {"dir", "empty"}) {
    store::recordSolve(withShot(name));
    store::deleteSolve("a");
    EXPECT_TRUE(store::listSolves().empty());
  }
  EXPECT_TRUE(home.has("solves/dir/picture.png"));
  EXPECT_TRUE(home.has("solves/empty"));
}

TEST(ClearAllSolves, NeverDeletesOutsideTheSolvesDirectory) {
  const DataHome home;
  home.write("victim", "kept");
  home.write("solves/dir/picture.png", "kept");
  home.write(kSolvesFile,
             R"([{"id":"a","shot":"../victim"},{"id":"b","shot":"dir"},{"id":"c","shot":".."}])");
  store::clearAllSolves();
  EXPECT_TRUE(home.has("victim"));
  EXPECT_TRUE(home.has("solves/dir/picture.png"));
}

}  // namespace
