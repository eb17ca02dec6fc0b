#include "states.h"

#include <cstdint>
#include <stdexcept>

#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/storage.h"

namespace test {
namespace {

constexpr std::int64_t kLong = 1000000000;  // milliseconds; each state takes one less

// --- settings ---

store::Settings settingsOf(int n) {
  store::Settings settings;
  settings.language = std::string(static_cast<std::size_t>(n % 50), 'x');
  settings.musicVolume = 1.0 / n;
  settings.windowX = n;
  return settings;
}

void saveSettings(int n) { store::saveSettings(settingsOf(n)); }

int loadSettings() {
  const store::Settings settings = store::loadSettings();
  return settings.windowX > 0 && settings == settingsOf(settings.windowX) ? settings.windowX : 0;
}

// --- progress and the best results share one file; saving one must keep the other ---

constexpr int kBestLevel = 7;
constexpr store::Progress kProgress = {12, 345};
constexpr store::LevelBest kBest = {2, 1, 60000};

void saveProgress(int n) {
  if (n == 1) store::recordBest(kBestLevel, kBest);
  store::saveProgress({1 + n % 100, n});
}

int loadProgress() {
  const store::Progress progress = store::loadProgress();
  const int n = progress.totalSolves;
  return progress == store::Progress{1 + n % 100, n} && store::bestFor(kBestLevel) == kBest ? n : 0;
}

void saveBest(int n) {
  if (n == 1) store::saveProgress(kProgress);
  store::recordBest(kBestLevel, {3, 0, kLong - n});
}

int loadBest() {
  const store::LevelBest best = store::bestFor(kBestLevel);
  return best.stars == 3 && store::loadProgress() == kProgress ? static_cast<int>(kLong - best.elapsedMs) : 0;
}

// --- the saved game, alternately small and large ---

store::SavedGame gameOf(int n) {
  static const mj::GameState kSmall = mj::createGame(mj::levelToConfig(1).slots, 1);
  static const mj::GameState kLarge = mj::createGame(mj::levelToConfig(100).slots, 1);
  store::SavedGame saved;
  saved.valid = true;
  saved.level = n % 2 == 0 ? 1 : 100;
  saved.seed = static_cast<std::uint32_t>(n);
  saved.game = n % 2 == 0 ? kSmall : kLarge;
  saved.game.rng = saved.seed;
  saved.elapsedMs = kLong + n;
  return saved;
}

void saveGame(int n) { store::saveGame(gameOf(n)); }

int loadGame() {
  store::SavedGame saved = store::loadGame();
  saved.savedAt = 0;
  const int n = static_cast<int>(saved.seed);
  return saved.valid && saved == gameOf(n) ? n : 0;
}

// --- solves: the level's own is replaced, those of other levels stay ---

constexpr int kOthers = 5;

store::SolveEntry solveOf(int level, int n) {
  store::SolveEntry entry;
  entry.id = std::to_string(level) + "_" + std::to_string(n);
  entry.level = level;
  entry.seed = static_cast<std::uint32_t>(n);
  entry.elapsedMs = kLong - n;
  entry.stars = 3;
  return entry;
}

void saveSolve(int n) {
  for (int level = kOthers; n == 1 && level > 0; --level) store::recordSolve(solveOf(level, level));
  store::recordSolve(solveOf(kBestLevel, n));
}

int loadSolves() {
  std::vector<store::SolveEntry> expected(1);
  for (int level = 1; level <= kOthers; ++level) expected.push_back(solveOf(level, level));
  const std::vector<store::SolveEntry> solves = store::listSolves();
  const int n = solves.empty() ? 0 : static_cast<int>(solves.front().seed);
  expected.front() = solveOf(kBestLevel, n);
  return solves == expected ? n : 0;
}

}  // namespace

const std::vector<Kind>& kinds() {
  static const std::vector<Kind> kKinds = {
      {"settings", "settings.json", saveSettings, loadSettings},
      {"progress", "progress.json", saveProgress, loadProgress},
      {"bests", "progress.json", saveBest, loadBest},
      {"game", "save.json", saveGame, loadGame},
      {"solves", "solves.json", saveSolve, loadSolves},
  };
  return kKinds;
}

const Kind& kindNamed(const std::string& name) {
  for (const Kind& kind : kinds()) {
    if (kind.name == name) return kind;
  }
  throw std::invalid_argument(name);
}

}  // namespace test
