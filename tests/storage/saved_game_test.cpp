// Tests what is kept of an unfinished game, and what loading makes of a damaged file.

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "rules/levels.h"
#include "storage/json.h"
#include "storage/limits.h"
#include "storage/storage.h"
#include "support/data_home.h"

namespace {

using store::SavedGame;
using support::DataHome;
using test::kInt64Max;
using test::kInt64Min;
using test::kUintMax;

constexpr const char* kGameFile = "save.json";
constexpr const char* kMember = "current_mahjong";

std::int64_t now() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

// A game of level 2 with a value in every field.
SavedGame gameInPlay() {
  SavedGame saved;
  saved.level = 2;
  saved.seed = 4000000000;
  saved.game = mj::createGame(mj::levelToConfig(2).slots, saved.seed);
  for (int i = 0; i < 3; ++i) {
    const mj::SlotPair pair = mj::findHint(saved.game);
    mj::applyMatch(saved.game, pair.first, pair.second);
  }
  mj::shuffleBoard(saved.game);
  saved.game.hints = 3;
  saved.game.selected = mj::freeIds(saved.game).front();
  saved.elapsedMs = 123456;
  return saved;
}

// The saved game as loadGame should return it; the time of saving is taken from the file.
SavedGame asLoaded(SavedGame saved) {
  saved.valid = true;
  saved.savedAt = store::loadGame().savedAt;
  return saved;
}

// The game in play as a document, for tests to damage.
js::Value goodDoc(const DataHome& home) {
  store::saveGame(gameInPlay());
  return js::parse(home.text(kGameFile));
}

// What is loaded if this member of a good file is replaced by `text`.
SavedGame loadedWith(const std::string& key, const std::string& text) {
  const DataHome home;
  js::Value doc = goodDoc(home);
  doc.o[kMember].o[key] = js::parse(text);
  home.write(kGameFile, doc.dump());
  return store::loadGame();
}

// Expects ids, counters and sizes in the ranges that the rules need.
void expectWhole(const SavedGame& saved) {
  if (!saved.valid) return;
  ASSERT_GE(saved.level, 1);
  ASSERT_LE(saved.level, 100);
  const int slots = mj::levelToConfig(saved.level).tiles;
  EXPECT_EQ(saved.game.slots, mj::levelToConfig(saved.level).slots);
  ASSERT_EQ(static_cast<int>(saved.game.faces.size()), slots);
  EXPECT_EQ(saved.game.removed, std::count(saved.game.faces.begin(), saved.game.faces.end(), ""));
  EXPECT_GE(saved.game.selected, -1);
  EXPECT_LT(saved.game.selected, slots);
  EXPECT_GE(saved.game.hints, 0);
  EXPECT_GE(saved.game.shuffles, 0);
  for (const mj::HistoryEntry& pair : saved.game.history) {
    EXPECT_GE(std::min(pair.a, pair.b), 0);
    EXPECT_LT(std::max(pair.a, pair.b), slots);
    EXPECT_FALSE(pair.faceA.empty() || pair.faceB.empty());
  }
}

TEST(SaveGame, IsReadBackInEveryField) {
  const DataHome home;
  const std::int64_t before = now();
  store::saveGame(gameInPlay());
  const SavedGame loaded = store::loadGame();
  EXPECT_EQ(loaded, asLoaded(gameInPlay()));
  EXPECT_EQ(loaded.game.removed, 6);
  EXPECT_GE(loaded.savedAt, before);
  EXPECT_LE(loaded.savedAt, now());
}

TEST(SaveGame, OfALoadedGameWritesTheSameAgain) {
  const DataHome home;
  store::saveGame(gameInPlay());
  const SavedGame first = store::loadGame();
  store::saveGame(first);
  EXPECT_EQ(store::loadGame(), asLoaded(first));
}

TEST(SaveGame, KeepsExtremeNumbers) {
  const DataHome home;
  SavedGame saved = gameInPlay();
  saved.seed = kUintMax;
  saved.game.rng = kUintMax;
  saved.game.hints = saved.game.shuffles = std::numeric_limits<int>::max();
  saved.elapsedMs = kInt64Max;
  store::saveGame(saved);
  EXPECT_EQ(store::loadGame(), asLoaded(saved));
}

TEST(SaveGame, WritesTenMembers) {
  const DataHome home;
  SavedGame saved;
  saved.valid = true;
  saved.level = 12;
  saved.seed = 4294967295;
  saved.game.faces = {"dot1", "", "windE"};
  saved.game.selected = 2;
  saved.game.removed = 1;
  saved.game.rng = 2147483648;
  saved.game.hints = 3;
  saved.game.shuffles = 4;
  saved.game.history = {{1, 0, "wan9", "wan8"}, {7, 5, "flower1", "flower4"}};
  saved.elapsedMs = 65000;
  saved.savedAt = 1;
  store::saveGame(saved);
  const std::string savedAt = js::parse(home.text(kGameFile))[kMember]["savedAt"].dump();
  EXPECT_EQ(
      home.text(kGameFile),
      R"({"current_mahjong":{"elapsedMs":65000,"faces":["dot1","","windE"],"hintsUsed":3,)"
      R"("history":[{"a":1,"b":0,"fa":"wan9","fb":"wan8"},{"a":7,"b":5,"fa":"flower1","fb":"flower4"}],)"
      R"("level":12,"rngState":2147483648,"savedAt":)" +
          savedAt + R"(,"seed":4294967295,"selectedId":2,"shufflesUsed":4}})");
}

TEST(SaveGame, ReplacesTheGameBefore) {
  const DataHome home;
  store::saveGame(gameInPlay());
  SavedGame other = gameInPlay();
  other.level = 1;
  other.game = mj::createGame(mj::levelToConfig(1).slots, 5);
  store::saveGame(other);
  EXPECT_EQ(store::loadGame(), asLoaded(other));
}

TEST(SaveGame, ReplacesAFileThatIsNoObject) {
  const DataHome home;
  home.write(kGameFile, "[1,2]");
  store::saveGame(gameInPlay());
  EXPECT_EQ(store::loadGame(), asLoaded(gameInPlay()));
}

TEST(SavedGameFile, KeepsWhatElseItHolds) {
  const DataHome home;
  home.write(kGameFile, R"({"another":{"x":[1,"y"]}})");
  store::saveGame(gameInPlay());
  EXPECT_EQ(js::parse(home.text(kGameFile))["another"].dump(), R"({"x":[1,"y"]})");
  store::clearGame();
  EXPECT_EQ(home.text(kGameFile), R"({"another":{"x":[1,"y"]}})");
}

TEST(ClearGame, LeavesAnEmptyObject) {
  const DataHome home;
  store::saveGame(gameInPlay());
  store::clearGame();
  EXPECT_EQ(home.text(kGameFile), "{}");
  EXPECT_FALSE(store::loadGame().valid);
}

TEST(ClearGame, MakesNoFile) {
  const DataHome home;
  store::clearGame();
  EXPECT_FALSE(home.has(kGameFile));
}

TEST(ClearGame, LeavesAFileThatIsNoObjectAlone) {
  const DataHome home;
  home.write(kGameFile, "[1, 2]");
  store::clearGame();
  EXPECT_EQ(home.text(kGameFile), "[1, 2]");
}

TEST(LoadGame, GivesNoneWithoutAFile) {
  const DataHome home;
  EXPECT_EQ(store::loadGame(), SavedGame());
}

TEST(LoadGame, GivesNoneWhereThereIsNoObject) {
  const DataHome home;
  for (const char* text : {"[]", "7", "{}", R"({"current_mahjong":[]})", R"({"current_mahjong":null})"}) {
    home.write(kGameFile, text);
    EXPECT_FALSE(store::loadGame().valid) << text;
  }
}

TEST(LoadGame, GivesNoneForALevelThatDoesNotExist) {
  for (const char* level : {"0", "-2", "0.4", "1e300", "nan", "inf", "-inf", "\"2\"", "null"})
    EXPECT_FALSE(loadedWith("level", level).valid) << level;
}

TEST(LoadGame, KnowsAHundredLevels) {
  const DataHome home;
  SavedGame saved;
  saved.game = mj::createGame(mj::levelToConfig(100).slots, 5);
  saved.level = 101;
  store::saveGame(saved);
  EXPECT_FALSE(store::loadGame().valid);
  saved.level = 100;
  store::saveGame(saved);
  EXPECT_EQ(store::loadGame(), asLoaded(saved));
}

TEST(LoadGame, RoundsTheLevel) {
  const SavedGame loaded = loadedWith("level", "3.4");
  EXPECT_TRUE(loaded.valid);
  EXPECT_EQ(loaded.level, 3);
  EXPECT_EQ(loaded.game.slots, mj::levelToConfig(3).slots);
}

TEST(LoadGame, GivesNoneThatDoesNotFitTheLayout) {
  js::Value faces;
  faces.kind = js::Value::Array;
  faces.a.resize(35);
  EXPECT_FALSE(loadedWith("faces", faces.dump()).valid);
  faces.a.resize(36);
  EXPECT_TRUE(loadedWith("faces", faces.dump()).valid);
  faces.a.resize(37);
  EXPECT_FALSE(loadedWith("faces", faces.dump()).valid);
  EXPECT_FALSE(loadedWith("level", "11").valid);
  EXPECT_FALSE(loadedWith("faces", "\"dot1\"").valid);
}

TEST(LoadGame, GivesNoneForAnObjectWithAsManyMembersAsTheLayoutHasSlots) {
  js::Value faces;
  faces.kind = js::Value::Object;
  for (int i = 0; i < mj::levelToConfig(2).tiles; ++i) faces.o[std::to_string(i)] = js::parse("\"dot1\"");
  EXPECT_FALSE(loadedWith("faces", faces.dump()).valid);
}

TEST(LoadGame, TakesAFaceThatIsNoStringForATileGone) {
  const DataHome home;
  js::Value doc = goodDoc(home);
  std::vector<js::Value>& faces = doc.o[kMember].o["faces"].a;
  const std::size_t present = static_cast<std::size_t>(gameInPlay().game.selected);
  faces[present] = js::parse("5");
  home.write(kGameFile, doc.dump());
  const SavedGame loaded = store::loadGame();
  EXPECT_TRUE(loaded.valid);
  EXPECT_EQ(loaded.game.faces[present], "");
  EXPECT_EQ(loaded.game.removed, 7);
}

TEST(LoadGame, SelectsNothingThatIsNoSlot) {
  EXPECT_EQ(mj::levelToConfig(2).tiles, 36);
  EXPECT_EQ(loadedWith("selectedId", "35").game.selected, 35);
  EXPECT_EQ(loadedWith("selectedId", "0").game.selected, 0);
  for (const char* id : {"36", "-1", "-2", "4294967296", "1e300", "inf", "nan", "\"3\"", "null"})
    EXPECT_EQ(loadedWith("selectedId", id).game.selected, -1) << id;
}

TEST(LoadGame, CutsTheFractionOfSeedsAndTimes) {
  EXPECT_EQ(loadedWith("seed", "7.9").seed, 7U);
  EXPECT_EQ(loadedWith("rngState", "7.9").game.rng, 7U);
  EXPECT_EQ(loadedWith("elapsedMs", "1234.9").elapsedMs, 1234);
  EXPECT_EQ(loadedWith("savedAt", "-1234.9").savedAt, -1234);
}

struct NearestFit {
  const char* number;
  std::uint32_t unsigned32;
  std::int64_t signed64;
};

constexpr NearestFit kNearestFits[] = {
    {"-5", 0, -5},
    {"-0.9", 0, 0},
    {"4294967295", kUintMax, 4294967295},
    {"4294967295.5", kUintMax, 4294967295},
    {"4294967296", kUintMax, 4294967296},
    {"9223372036854775808", kUintMax, kInt64Max},
    {"1e300", kUintMax, kInt64Max},
    {"-1e300", 0, kInt64Min},
    {"inf", kUintMax, kInt64Max},
    {"-inf", 0, kInt64Min},
    {"nan", 0, 0},
    {"-nan", 0, 0},
    {"\"7\"", 0, 0},
    {"null", 0, 0},
};

TEST(LoadGame, GivesTheNearestSeedAndTimeThatFit) {
  for (const auto& [number, unsigned32, signed64] : kNearestFits) {
    EXPECT_EQ(loadedWith("seed", number).seed, unsigned32) << number;
    EXPECT_EQ(loadedWith("rngState", number).game.rng, unsigned32) << number;
    EXPECT_EQ(loadedWith("elapsedMs", number).elapsedMs, signed64) << number;
    EXPECT_EQ(loadedWith("savedAt", number).savedAt, signed64) << number;
  }
}

TEST(LoadGame, CountsNothingBelowZero) {
  for (const char* number : {"-5", "4294967296", "1e300", "inf", "-inf", "nan", "\"4\"", "[4]"}) {
    EXPECT_EQ(loadedWith("hintsUsed", number).game.hints, 0) << number;
    EXPECT_EQ(loadedWith("shufflesUsed", number).game.shuffles, 0) << number;
  }
}

TEST(LoadGame, DropsHistoryThatCannotBeUndoneAndKeepsTheRest) {
  const std::string text =
      R"([{"a":0,"b":35,"fa":"dot1","fb":"dot2"},)"
      R"({"a":1,"b":2,"fa":"","fb":"dot1"},{"a":1,"b":2,"fa":"dot1","fb":""},)"
      R"({"a":1,"b":2,"fa":3,"fb":"dot1"},{"a":1,"b":2,"fa":"dot1"},)"
      R"({"a":36,"b":2,"fa":"dot1","fb":"dot1"},{"a":1,"b":36,"fa":"dot1","fb":"dot1"},)"
      R"({"a":-1,"b":2,"fa":"dot1","fb":"dot1"},{"a":1,"b":-1,"fa":"dot1","fb":"dot1"},)"
      R"({"a":nan,"b":2,"fa":"dot1","fb":"dot1"},{"a":1,"b":1e300,"fa":"dot1","fb":"dot1"},)"
      R"({"a":"1","b":2,"fa":"dot1","fb":"dot1"},{"b":2,"fa":"dot1","fb":"dot1"},7,null,[],{},)"
      R"({"a":3,"b":4,"fa":"wan1","fb":"wan1"}])";
  const std::vector<mj::HistoryEntry> kept = {{0, 35, "dot1", "dot2"}, {3, 4, "wan1", "wan1"}};
  EXPECT_EQ(loadedWith("history", text).game.history, kept);
}

TEST(LoadGame, HasNoHistoryWhereItIsNoArray) {
  for (const char* text : {"7", "{}", "\"x\"", "null"}) {
    const SavedGame loaded = loadedWith("history", text);
    EXPECT_TRUE(loaded.valid);
    EXPECT_TRUE(loaded.game.history.empty()) << text;
  }
}

TEST(LoadGame, GivesNoneForEveryTruncation) {
  const DataHome home;
  store::saveGame(gameInPlay());
  const std::string whole = home.text(kGameFile);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    home.write(kGameFile, whole.substr(0, length));
    EXPECT_FALSE(store::loadGame().valid) << length;
  }
}

TEST(LoadGame, IsWholeWhateverByteIsWrong) {
  const DataHome home;
  store::saveGame(gameInPlay());
  const std::string good = home.text(kGameFile);
  constexpr std::string_view kBytes("0179-.\"{}[],:en\\\t\0\xff", 19);
  std::mt19937 random(1);
  for (std::size_t i = 0; i < good.size(); ++i) {
    std::string bad = good;
    bad[i] = kBytes[random() % kBytes.size()];
    home.write(kGameFile, bad);
    SCOPED_TRACE(bad);
    expectWhole(store::loadGame());
  }
}

TEST(LoadGame, IsWholeWithAnyMemberOfAnyKind) {
  const DataHome home;
  const js::Value good = goodDoc(home);
  for (const auto& [key, member] : good[kMember].o) {
    for (const char* text : {"null", "true", "7", "-1e300", "nan", "\"x\"", "[]", "[1,[2]]", "{}"}) {
      SCOPED_TRACE(key + " " + text);
      expectWhole(loadedWith(key, text));
    }
  }
}

TEST(LoadGame, IsWholeWithoutAnyOneMember) {
  const DataHome home;
  const js::Value good = goodDoc(home);
  for (const auto& [key, member] : good[kMember].o) {
    js::Value doc = good;
    doc.o[kMember].o.erase(key);
    home.write(kGameFile, doc.dump());
    const SavedGame loaded = store::loadGame();
    EXPECT_EQ(loaded.valid, key != "level" && key != "faces") << key;
    expectWhole(loaded);
  }
}

// Regression: nothing was saved any more and the program did not start, because it waited for somebody to
// write into the pipe.
TEST(SaveGame, ReplacesAPipeUnderEitherName) {
  for (const std::string end : {"", ".tmp"}) {
    const DataHome home;
    store::saveGame(gameInPlay());
    std::filesystem::remove(home.path(kGameFile));
    ASSERT_EQ(mkfifo((home.path(kGameFile) + end).c_str(), 0600), 0);
    EXPECT_FALSE(store::loadGame().valid) << end;
    store::saveGame(gameInPlay());
    EXPECT_EQ(store::loadGame(), asLoaded(gameInPlay())) << end;
    EXPECT_TRUE(std::filesystem::is_regular_file(home.path(kGameFile))) << end;
  }
}

TEST(LoadGame, ReadsAWholeTemporaryWhenTheFileIsMissing) {
  const DataHome home;
  store::saveGame(gameInPlay());
  std::filesystem::rename(home.path(kGameFile), home.path(kGameFile) + ".tmp");
  EXPECT_EQ(store::loadGame(), asLoaded(gameInPlay()));
  store::clearGame();
  EXPECT_EQ(home.text(kGameFile), "{}");
  EXPECT_FALSE(store::loadGame().valid);
}

}  // namespace
