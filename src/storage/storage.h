// storage.h: the records that outlive a run, and the files they are kept in. Knows nothing of the window or
// the screens. Reading never fails: what is missing, damaged or of a wrong kind reads as its default. Writing
// replaces a whole file. When it fails, one line on standard error says so and the game goes on: the old file
// stays, unless it was but the last step that failed, the renaming; then the new one is read under its
// temporary name. A file that cannot even be read is set aside by the next write, under a name of its own,
// which one line says too. Main thread only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/engine.h"

namespace store {

// Where the player's files are kept: below XDG_DATA_HOME, else below HOME. Looked up once.
std::string dataDir();
// Where the pictures of solved boards are kept.
std::string solvesDir();
// Makes both.
void ensureDataDirs();

// Stored in windowX and windowY while no position of the window is known.
inline constexpr int kNoPosition = -1000000;

// The window is never smaller, in SDL's window coordinates.
inline constexpr int kMinWindowW = 640;
inline constexpr int kMinWindowH = 480;

// The player's preferences, kept in settings.json. The defaults are those of a first start.
struct Settings {
  std::string language;  // code of the interface language; empty follows the system
  bool soundOn = true;
  double musicVolume = 0.25;  // 0 to 1
  double sfxVolume = 1.0;     // 0 to 1
  bool fullscreen = false;
  bool maximized = false;
  int windowW = 1100;  // of the window while it is neither maximised nor full screen, in logical pixels
  int windowH = 760;
  int windowX = kNoPosition;
  int windowY = kNoPosition;

  bool operator==(const Settings&) const = default;
};

// Volumes are brought between 0 and 1 (nan gives the default), the window to at least 640 x 480.
Settings loadSettings();
void saveSettings(const Settings& settings);

// Levels count from 1 to this.
inline constexpr int kLastLevel = 100;

// How far the player has come, kept in progress.json with the best results.
struct Progress {
  int currentLevel = 1;  // the highest level that may be played, 1 to kLastLevel
  int totalSolves = 0;   // games solved, repetitions too; not negative

  bool operator==(const Progress&) const = default;
};

// The best of each kind that was reached on a level; they need not come from one solve. All zero: none.
// A damaged file may yield any number here, negative ones too.
struct LevelBest {
  int stars = 0;
  int aids = 0;                // the fewest; means nothing without stars
  std::int64_t elapsedMs = 0;  // the shortest, milliseconds; below 1: none

  bool operator==(const LevelBest&) const = default;
};

// Brought into the ranges above.
Progress loadProgress();
// Stores the two numbers as they are given, beside the best results, which stay.
void saveProgress(const Progress& progress);
// Counts one more solve, at most INT_MAX; solving the highest level, or one beyond it, opens one more. Gives
// what is now to be stored, also if writing it failed.
Progress advanceLevel(int level);
// Forgets progress and best results; gives those of a first start, also if writing them failed.
Progress resetProgress();
LevelBest bestFor(int level);
// Betters each part of the level's best on its own: more stars, fewer aids, less time. The first solve's aids
// and the first time are taken whatever they are. Gives what is now to be stored, also if writing it failed.
LevelBest recordBest(int level, const LevelBest& result);

// Progress and the best of every level, the first one's at the front, from one reading of their file.
struct Career {
  Progress progress;
  std::array<LevelBest, kLastLevel> bests;
};
Career loadCareer();

// A game that was left, kept in save.json: everything that continuing it needs.
struct SavedGame {
  bool valid = false;  // there is one; otherwise nothing else here has a meaning
  int level = 0;       // 1 to kLastLevel
  std::uint32_t seed = 0;
  mj::GameState game;
  std::int64_t elapsedMs = 0;  // milliseconds of play
  std::int64_t savedAt = 0;    // milliseconds since the Unix epoch; set by saving

  bool operator==(const SavedGame&) const = default;
};

// Replaces the game that was saved before. Of the game's slots only their level is kept, and neither `valid`
// nor `savedAt` is looked at.
void saveGame(const SavedGame& saved);
// Invalid when there is none, or when it does not fit the level's layout. What is damaged inside a fitting
// one is repaired: ids and counters lie in their ranges, a face that cannot be read is a tile gone, seeds and
// times beyond their range become the nearest number in it. That faces are known, form pairs and agree with
// the history is for the caller to see.
SavedGame loadGame();
// Afterwards there is none, unless the file cannot be written.
void clearGame();

// A solved board of the gallery, kept in solves.json: one for each level, the newest first, at most 200.
// A damaged file may yield any number here, negative ones too.
struct SolveEntry {
  std::string id;  // as newSolveId gave it; never empty in a listed entry
  int level = 0;
  int tiles = 0;
  std::uint32_t seed = 0;
  std::int64_t elapsedMs = 0;  // milliseconds
  std::int64_t solvedAt = 0;   // milliseconds since the Unix epoch
  std::string shot;            // file name of its picture in solvesDir(); empty without one
  int stars = 0;
  int aids = 0;

  bool operator==(const SolveEntry&) const = default;
};

std::vector<SolveEntry> listSolves();
// Adds a solve if it is the level's first or betters the one that is there: by stars, then time, then aids.
// The picture of the worse one is deleted, and the new one's if it could not be recorded. An entry beyond the
// 200th is forgotten, its picture stays.
void recordSolve(const SolveEntry& entry);
// Removes the first solve with this id, or the first that is this one in every field, and its picture, if no
// other solve has the same. An unknown one removes nothing.
void deleteSolve(const std::string& id);
void deleteSolve(const SolveEntry& entry);
// Removes all of them and their pictures.
void clearAllSolves();
// The time in milliseconds, "_" and a random number below 100000: two solves never share one in practice.
std::string newSolveId();
// Where the entry's picture lies. Empty when it has none, or when `shot` is no bare file name ("..", a path,
// a zero byte inside): a damaged file leads to nothing outside solvesDir(), for deleting neither.
std::string shotPath(const SolveEntry& entry);

// Stars of a solved deal, 1 to 3, from its aids (hints plus shuffles); a negative number counts as none.
int computeStars(int aids);

}  // namespace store
