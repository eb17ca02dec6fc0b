// Two programs save into one directory at the same time, and now and then one is killed. No finished save may
// be lost, and nobody may ever read an empty record.

#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <new>
#include <ostream>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/storage.h"
#include "support/data_home.h"

// Replaces the library's function and waits without limit. These programs save without pause: on a busy
// machine one may hold the lock for longer than the game would wait.
extern "C" int flock(int fd, int operation) noexcept {
  return static_cast<int>(syscall(SYS_flock, fd, operation & ~LOCK_NB));
}

namespace {

using support::DataHome;

// A tenth under sanitizers, as with the deals.
constexpr int kKills = VESKARA_TEST_DEALS / 2;
constexpr int kWins = VESKARA_TEST_DEALS * 5;
constexpr std::chrono::seconds kLongestSave(20);

constexpr int kWriters = 2;
constexpr int kReplaced = -1;               // the other program's state replaced this one's
constexpr int kReached = 60;                // the player's current level beforehand
constexpr std::int64_t kLong = 1000000000;  // milliseconds; each state takes one less

// The number of the stored state of each writer, counted from 1; 0 if there is none yet.
using Found = std::array<int, kWriters>;

struct Kind {
  const char* name;
  void (*save)(int writer, int n);
  Found (*load)();
};
void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

// For files that hold only one state.
Found onlyOf(int writer, int n) {
  Found found;
  found.fill(kReplaced);
  found[static_cast<std::size_t>(writer)] = n;
  return found;
}

void saveSettings(int writer, int n) {
  store::Settings settings;
  settings.windowX = n;
  settings.windowY = writer;
  store::saveSettings(settings);
}

Found loadSettings() {
  const store::Settings settings = store::loadSettings();
  return settings == store::Settings() ? Found() : onlyOf(settings.windowY, settings.windowX);
}

int levelOf(int writer) { return writer + 1; }

void saveBest(int writer, int n) { store::recordBest(levelOf(writer), {3, 0, kLong - n}); }

int loadBest(int writer) {
  const store::LevelBest best = store::bestFor(levelOf(writer));
  return best.stars == 3 ? static_cast<int>(kLong - best.elapsedMs) : 0;
}

Found loadBests() { return {loadBest(0), loadBest(1)}; }

// One program solves the same level again and again, the other improves its best.
void saveProgress(int writer, int n) {
  if (writer == 0) {
    store::advanceLevel(1);
  } else {
    saveBest(writer, n);
  }
}

Found loadProgress() { return {store::loadProgress().totalSolves, loadBest(1)}; }

void saveGame(int writer, int n) {
  static const std::array<mj::GameState, kWriters> kGames = {
      mj::createGame(mj::levelToConfig(levelOf(0)).slots, 1),
      mj::createGame(mj::levelToConfig(levelOf(1)).slots, 1)};
  store::SavedGame saved;
  saved.level = levelOf(writer);
  saved.seed = static_cast<std::uint32_t>(n);
  saved.game = kGames[static_cast<std::size_t>(writer)];
  store::saveGame(saved);
}

Found loadGame() {
  const store::SavedGame saved = store::loadGame();
  return saved.valid ? onlyOf(saved.level - levelOf(0), static_cast<int>(saved.seed)) : Found();
}

void saveSolve(int writer, int n) {
  store::SolveEntry entry;
  entry.id = std::to_string(writer);
  entry.level = levelOf(writer);
  entry.elapsedMs = kLong - n;
  store::recordSolve(entry);
}

Found loadSolves() {
  Found found = {};
  for (const store::SolveEntry& entry : store::listSolves()) {
    found[static_cast<std::size_t>(entry.level - levelOf(0))] = static_cast<int>(kLong - entry.elapsedMs);
  }
  return found;
}

constexpr std::array kKinds = {
    Kind{"settings", saveSettings, loadSettings}, Kind{"bests", saveBest, loadBests},
    Kind{"progress", saveProgress, loadProgress}, Kind{"game", saveGame, loadGame},
    Kind{"solves", saveSolve, loadSolves},
};

// Progress of a writer, shared with the process that kills it.
struct Saves {
  std::atomic<int> begun = 0;
  std::atomic<int> done = 0;
};
using AllSaves = std::array<Saves, kWriters>;

AllSaves& sharedSaves() {
  void* const memory =
      mmap(nullptr, sizeof(AllSaves), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  return *new (memory) AllSaves;
}

void end(pid_t process) {
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

class TwoPrograms : public testing::TestWithParam<Kind> {
 protected:
  ~TwoPrograms() override {
    for (const pid_t process : processes) {
      if (process > 0) end(process);
    }
    munmap(&saves, sizeof saves);
  }

  Saves& savesOf(int writer) { return saves[static_cast<std::size_t>(writer)]; }

  void start(int writer) {
    pid_t& process = processes[static_cast<std::size_t>(writer)];
    process = fork();
    if (process != 0) return;
    Saves& own = savesOf(writer);
    for (int n = own.begun + 1;; ++n) {
      own.begun = n;
      GetParam().save(writer, n);
      own.done = n;
    }
  }

  // A killed writer may have finished the save it had begun.
  void killAndStart(int writer) {
    end(processes[static_cast<std::size_t>(writer)]);
    const int found = GetParam().load()[static_cast<std::size_t>(writer)];
    Saves& own = savesOf(writer);
    if (found != kReplaced) own.done = own.begun = found;
    start(writer);
  }

  // Reads until each writer has saved once more, and for the time `more` after that. Every read must find the
  // last saved state or the one being saved.
  void watch(std::chrono::microseconds more) {
    using Clock = std::chrono::steady_clock;
    const Found before = {savesOf(0).done, savesOf(1).done};
    const Clock::time_point given_up = Clock::now() + kLongestSave;
    Clock::time_point until = Clock::time_point::max();
    while (Clock::now() < until) {
      expectWhole();
      if (HasFatalFailure()) return;
      if (until != Clock::time_point::max()) continue;
      if (savesOf(0).done > before[0] && savesOf(1).done > before[1]) until = Clock::now() + more;
      ASSERT_LT(Clock::now(), given_up) << "a writer stopped saving";
    }
  }

  void expectWhole() {
    const Found done = {savesOf(0).done, savesOf(1).done};
    const Found found = GetParam().load();
    const Found begun = {savesOf(0).begun, savesOf(1).begun};
    for (const std::size_t writer : {0U, 1U}) {
      if (found[writer] == kReplaced) continue;
      ASSERT_GE(found[writer], done[writer]) << "writer " << writer;
      ASSERT_LE(found[writer], begun[writer]) << "writer " << writer;
    }
  }

  const DataHome home;
  AllSaves& saves = sharedSaves();
  std::array<pid_t, kWriters> processes = {};
};

TEST_P(TwoPrograms, ThatSaveAtOnceAndAreKilledLoseNothing) {
  const unsigned seed = std::random_device()();
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> microseconds(0, 2000);
  store::saveProgress({.currentLevel = kReached, .totalSolves = 0});
  for (const int writer : {0, 1}) start(writer);
  for (int i = 0; i < kKills; ++i) {
    watch(std::chrono::microseconds(microseconds(random)));
    if (HasFatalFailure()) FAIL() << "seed " << seed << ", kill " << i;
    killAndStart(static_cast<int>(random() % kWriters));
  }
  std::printf("seed %u: %d kills, %d and %d saves\n", seed, kKills, savesOf(0).done.load(),
              savesOf(1).done.load());
  EXPECT_EQ(store::loadProgress().currentLevel, kReached);
}

INSTANTIATE_TEST_SUITE_P(Saving, TwoPrograms, testing::ValuesIn(kKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

void winIn(std::array<pid_t, kWriters>& processes) {
  for (pid_t& process : processes) {
    process = fork();
    if (process != 0) continue;
    for (int i = 0; i < kWins; ++i) store::advanceLevel(1);
    _exit(0);
  }
}

// Regression: between the old file's removal and the renaming one program read an empty record and saved it.
TEST(TwoPlayers, AreCountedEveryWin) {
  const DataHome home;
  constexpr store::LevelBest kBest = {2, 1, 60000};
  store::saveProgress({.currentLevel = kReached, .totalSolves = 0});
  store::recordBest(kReached, kBest);
  std::array<pid_t, kWriters> processes = {};
  winIn(processes);
  for (const pid_t process : processes) {
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(store::loadProgress(), (store::Progress{kReached, kWriters * kWins}));
  EXPECT_EQ(store::bestFor(kReached), kBest);
}

}  // namespace
