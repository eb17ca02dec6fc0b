// Kills the program at random moments, again and again. After each kill the player loses at most five seconds
// of play. After a kill around the time of a win, either the game or the win is kept. Ten kills of each kind,
// or as many as VESKARA_TEST_KILLS says.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iterator>
#include <ostream>
#include <random>
#include <string>
#include <thread>

#include "window/data_files.h"
#include "window/desktop.h"
#include "window/menu.h"
#include "window/witness.h"

namespace {

using js::Value;
using window::Child;
using window::DataFiles;
using window::Desktop;
using window::Environment;
using window::Game;
using window::Testimony;
using window::testimonyIn;
using window::waitFor;

using Milliseconds = std::chrono::milliseconds;

constexpr int kPlayers = 2;  // in separate tests, so that they can run in parallel
// Seconds on the game's clock.
constexpr double kBetweenSaves = 5;
constexpr double kFrame = 0.25;    // the frame in which a save falls due, plus the witness's inaccuracy
constexpr double kWinFade = 0.65;  // a won game is no longer saved
constexpr double kPair = 0.32;     // least time to take a pair
constexpr double kWon = 0.6;       // a pair taken automatically is gone by then, even with slow frames

int killsPerPlayer() {
  const char* const wanted = std::getenv("VESKARA_TEST_KILLS");
  return (wanted == nullptr ? 10 : std::atoi(wanted)) / kPlayers;
}

int pairsLeft(const Value& game) {
  const auto& faces = game["faces"].a;
  return static_cast<int>(
             std::count_if(faces.begin(), faces.end(), [](const Value& face) { return !face.s.empty(); })) /
         2;
}

bool isSameDeal(const Value& a, const Value& b) {
  return a["level"].n == b["level"].n && a["seed"].n == b["seed"].n;
}

// Whether playing on can lead from one game to the other.
bool leadsTo(const Value& early, const Value& late) {
  const auto& before = early["history"].a;
  const auto& after = late["history"].a;
  const auto isSamePair = [](const Value& a, const Value& b) { return a.dump() == b.dump(); };
  return isSameDeal(early, late) && before.size() <= after.size() &&
         std::equal(before.begin(), before.end(), after.begin(), isSamePair) &&
         early["elapsedMs"].n <= late["elapsedMs"].n;
}

// One life of the program: from its start to the kill.
struct KilledLife {
  DataFiles before;
  DataFiles after;
  bool played;  // reached the table
  double lost;  // seconds of play since the last save

  bool solved() const { return after.totalSolves() > before.totalSolves(); }
};

// The moments at which to kill while a win is recorded: writing the progress, writing the best result,
// clearing the saved game.
const std::string kWritesOfAWin[] = {"1*progress.json", "2*progress.json", "1*save.json"};

class KilledPlayer {
 public:
  explicit KilledPlayer(unsigned seed) : random(seed) {}

  KilledLife liveOnce() {
    const DataFiles before = begin();
    const bool inStartUp = upTo(4) == 0;
    const double lost = inStartUp ? startAndDie() : playAndDie(12);
    return {before, DataFiles(desktop.dataPath()), !inStartUp, lost};
  }

  // With autoplay, the last pair goes as soon as the table is shown.
  KilledLife winOnce() {
    support::writeFile(desktop.dataPath("save.json"), window::savedGame(1));
    const DataFiles before = begin();
    const auto moment = static_cast<std::size_t>(upTo(5));
    if (moment < std::size(kWritesOfAWin)) {
      winAndDieAt(kWritesOfAWin[moment]);
    } else {
      // Covers a third of a second to the win, over half a second to the Solved screen, and some time around
      // that.
      playAndDie(1.2);
    }
    return {before, DataFiles(desktop.dataPath()), true, 0};
  }

 private:
  DataFiles begin() const {
    std::filesystem::remove(witnessPath());
    return DataFiles(desktop.dataPath());
  }

  int upTo(int most) { return std::uniform_int_distribution<int>(0, most)(random); }
  std::string witnessPath() const { return scratch.path("witness"); }

  Environment changes() const {
    return window::changed(window::preloading(desktop, VESKARA_WITNESS),
                           {{"VESKARA_AUTOPLAY", "0.02"}, {window::kWitnessVariable, witnessPath()}});
  }

  double startAndDie() {
    Child child(window::gameCommand({}), window::changed(desktop.environment(), changes()));
    std::this_thread::sleep_for(Milliseconds(upTo(1000)));
    die(child);
    return 0;
  }

  void winAndDieAt(const std::string& write) {
    Game game(desktop, {}, window::changed(changes(), {{window::kRaiseVariable, write + ":9"}}));
    EXPECT_TRUE(window::continueFromMenu(game));
    expectKilled(game.process());
  }

  // Kills the program at a random time within `most` seconds of play. Returns the seconds since its last
  // save or, without one, since it reached the table.
  double playAndDie(double most) {
    Game game(desktop, {}, changes());
    EXPECT_TRUE(window::continueFromMenu(game));
    const double begun = testimonyIn(witnessPath()).played;
    // Measured on the game's clock, so that a slow machine plays just as much.
    const double moment = begun + most * upTo(1000) / 1000;
    EXPECT_TRUE(waitFor([&] { return testimonyIn(witnessPath()).played >= moment; }));
    std::this_thread::sleep_for(Milliseconds(upTo(50)));
    die(game.process());
    const Testimony testimony = testimonyIn(witnessPath());
    return testimony.played - (testimony.saves > 0 ? testimony.playedAtSave : begun);
  }

  static void die(Child& child) {
    child.send(SIGKILL);
    expectKilled(child);
  }

  static void expectKilled(Child& child) {
    EXPECT_EQ(child.waitForEnd(), -SIGKILL) << child.errors();
    EXPECT_EQ(child.errors(), "");
  }

  Desktop desktop;
  support::TempDir scratch;
  std::mt19937 random;
};

void expectRecordsKept(const KilledLife& life) {
  EXPECT_GE(life.after.level(), life.before.level());
  EXPECT_GE(life.after.totalSolves(), life.before.totalSolves());
  for (const auto& [level, best] : life.before.progress["bests"].o) {
    EXPECT_GE(life.after.progress["bests"][level]["stars"].n, best["stars"].n) << "level " << level;
  }
  const auto isKept = [&](const Value& solve) {
    const auto& solves = life.after.solves.a;
    return std::any_of(solves.begin(), solves.end(),
                       [&](const Value& kept) { return kept["level"].n == solve["level"].n; });
  };
  for (const Value& solve : life.before.solves.a) EXPECT_TRUE(isKept(solve)) << solve.dump();
}

void expectGameKept(const KilledLife& life) {
  if (life.solved()) return;
  if (life.before.hasGame()) {
    EXPECT_TRUE(life.after.hasGame());
    EXPECT_TRUE(leadsTo(life.before.game(), life.after.game()));
  }
  const bool mayBeWon = life.after.hasGame() && pairsLeft(life.after.game()) * kPair < kBetweenSaves + kFrame;
  EXPECT_LE(life.lost, kBetweenSaves + kFrame + (mayBeWon ? kWinFade : 0));
}

void expectWinOrGame(const KilledLife& life) {
  EXPECT_LE(life.after.totalSolves(), life.before.totalSolves() + 1);
  if (life.after.hasGame()) {
    EXPECT_TRUE(leadsTo(life.before.game(), life.after.game()));
  } else {
    EXPECT_TRUE(life.solved()) << "the game is gone, and the win too";
    EXPECT_EQ(life.after.progress["bests"]["1"]["stars"].n, 3);
  }
}

class Killed : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Player, Killed, testing::Range(1, kPlayers + 1));

TEST_P(Killed, AtRandomMomentsLosesNoMoreThanFiveSecondsOfPlay) {
  const unsigned seed = std::random_device()();
  KilledPlayer player(seed);
  double mostLost = 0;
  int sittings = 0;
  int solves = 0;
  for (int i = 0; i < killsPerPlayer() && !HasFailure(); ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", kill " + std::to_string(i));
    const KilledLife life = player.liveOnce();
    expectRecordsKept(life);
    expectGameKept(life);
    sittings += life.played ? 1 : 0;
    solves += life.solved() ? 1 : 0;
    if (!life.solved()) mostLost = std::max(mostLost, life.lost);
  }
  std::printf("seed %u: %d kills, %d of them in play; %d games solved; %.2f seconds of play lost at most\n",
              seed, killsPerPlayer(), sittings, solves, mostLost);
}

TEST_P(Killed, AboutTheTimeOfAWinLeavesTheWinOrTheGame) {
  const unsigned seed = std::random_device()();
  KilledPlayer player(seed);
  int wins = 0;
  int games = 0;
  for (int i = 0; i < killsPerPlayer() && !HasFailure(); ++i) {
    SCOPED_TRACE("seed " + std::to_string(seed) + ", kill " + std::to_string(i));
    const KilledLife life = player.winOnce();
    expectRecordsKept(life);
    expectWinOrGame(life);
    wins += life.solved() ? 1 : 0;
    games += life.after.hasGame() ? 1 : 0;
  }
  std::printf("seed %u: %d kills about a win: %d left the win, %d the game\n", seed, killsPerPlayer(), wins,
              games);
}

// A way to end the program in the fade after the last pair.
struct Ending {
  const char* name;
  std::function<void(Game&)> act;
};
void PrintTo(const Ending& ending, std::ostream* out) { *out << ending.name; }
const Ending kEndings[] = {
    {"Close", [](Game& game) { game.close(); }},
    {"ControlQ", [](Game& game) { game.type(window::Key::LeftControl, window::Key::Q); }},
    {"Signal", [](Game& game) { game.process().send(SIGTERM); }},
};

class Ended : public testing::TestWithParam<Ending> {};
INSTANTIATE_TEST_SUITE_P(By, Ended, testing::ValuesIn(kEndings),
                         [](const auto& ending) { return ending.param.name; });

TEST_P(Ended, InTheFadeAfterTheLastPairKeepsTheWin) {
  Desktop desktop;
  const support::TempDir scratch;
  support::writeFile(desktop.dataPath("save.json"), window::savedGame(1));
  Game game(
      desktop, {},
      window::changed(window::preloading(desktop, VESKARA_WITNESS),
                      {{"VESKARA_AUTOPLAY", "0.02"}, {window::kWitnessVariable, scratch.path("seen")}}));
  EXPECT_TRUE(window::continueFromMenu(game));
  const double begun = testimonyIn(scratch.path("seen")).played;
  EXPECT_TRUE(waitFor([&] { return testimonyIn(scratch.path("seen")).played > begun + kWon; }));
  GetParam().act(game);
  EXPECT_EQ(game.process().waitForEnd(), 0) << game.process().errors();
  const DataFiles files(desktop.dataPath());
  EXPECT_EQ(files.totalSolves(), 1);
  EXPECT_EQ(files.level(), 2);
  EXPECT_EQ(files.progress["bests"]["1"]["stars"].n, 3);
  EXPECT_FALSE(files.hasGame());
}

}  // namespace
