// storage.h: the records that persist between runs, and their files. Knows nothing of the window or the
// screens. Reading never fails: what is missing, damaged or of the wrong kind reads as its default. Writing
// replaces a whole file. If it fails, one line on standard error reports it, the game goes on and the old
// file stays; if only the last step, the renaming, fails, the new file is read under its temporary name. If a
// file cannot be read, the next write renames it to a free name, and one line reports that too. Main thread
// only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/engine.h"

namespace store {

// The directory of the player's files: veskara in XDG_DATA_HOME, else in .local/share of HOME. Determined
// once.
std::string dataDir();
// The directory of the pictures of solved boards.
std::string solvesDir();
// Creates both directories.
void ensureDataDirs();

// The value of windowX and windowY while the window's position is unknown.
inline constexpr int kNoPosition = -1000000;

// The window's smallest size, in SDL's window coordinates.
inline constexpr int kMinWindowW = 640;
inline constexpr int kMinWindowH = 480;

// The player's preferences, kept in settings.json. The defaults are those of a first start.
struct Settings {
  std::string language;  // code of the interface language; empty for the system's
  bool soundOn = true;
  double musicVolume = 0.25;  // 0 to 1
  double sfxVolume = 1.0;     // 0 to 1
  bool fullscreen = false;
  bool maximized = false;
  int windowW = 1100;  // of the normal window (not maximised, not full screen), in logical pixels
  int windowH = 760;
  int windowX = kNoPosition;
  int windowY = kNoPosition;

  bool operator==(const Settings&) const = default;
};

// Volumes are clamped to 0…1 (nan gives the default), the window's size to at least 640 x 480.
Settings loadSettings();
void saveSettings(const Settings& settings);

// Levels count from 1 to kLastLevel.
inline constexpr int kLastLevel = 100;

// How far the player has come. Stored in progress.json together with the best results.
struct Progress {
  int currentLevel = 1;  // the highest level that may be played, 1 to kLastLevel
  int totalSolves = 0;   // solved games, including repeated levels; not negative

  bool operator==(const Progress&) const = default;
};

// The best stars, aids and time of a level, each on its own: they need not come from one solve. All zero if
// the level was never solved. A damaged file may yield any number here, negative ones too.
struct LevelBest {
  int stars = 0;
  int aids = 0;                // the fewest; meaningless without stars
  std::int64_t elapsedMs = 0;  // the shortest, milliseconds; none if below 1

  bool operator==(const LevelBest&) const = default;
};

// Values are clamped to the ranges above.
Progress loadProgress();
// Stores the two numbers without checks. The best results stay.
void saveProgress(const Progress& progress);
// Counts one more solve, up to INT_MAX. If `level` is the current level or higher, opens the next level.
// Returns the new progress, even if writing it failed.
Progress advanceLevel(int level);
// Deletes progress and best results. Returns the progress of a first start, even if writing it failed.
Progress resetProgress();
LevelBest bestFor(int level);
// Improves each part of the level's best on its own: more stars, fewer aids, less time. The first solve's
// aids and the first time are always taken. Returns the new best, even if writing it failed.
LevelBest recordBest(int level, const LevelBest& result);

// Progress and the best of every level, level 1 first, from a single read of the file.
struct Career {
  Progress progress;
  std::array<LevelBest, kLastLevel> bests;
};
Career loadCareer();

// An unfinished game with everything needed to continue it. Stored in save.json.
struct SavedGame {
  bool valid = false;  // false: there is no saved game, and the other fields are meaningless
  int level = 0;       // 1 to kLastLevel
  std::uint32_t seed = 0;
  mj::GameState game;
  std::int64_t elapsedMs = 0;  // milliseconds of play
  std::int64_t savedAt = 0;    // milliseconds since the Unix epoch; set by saveGame

  bool operator==(const SavedGame&) const = default;
};

// Replaces the saved game. The slots are not stored, only the level; `valid` and `savedAt` are ignored.
void saveGame(const SavedGame& saved);
// Invalid if there is no saved game or it does not fit the level's layout. Damage inside a fitting one is
// repaired: ids and counters are brought into range, a face that is not a string becomes a removed tile, and
// seeds and times are clamped. The caller must check that the faces are known, form pairs and agree with the
// history.
SavedGame loadGame();
// Deletes the saved game. It stays if the file cannot be written.
void clearGame();

// A solved board of the gallery. Stored in solves.json: one per level, newest first, at most 200. A damaged
// file may yield any number here, negative ones too.
struct SolveEntry {
  std::string id;  // from newSolveId; never empty in a listed entry
  int level = 0;
  int tiles = 0;
  std::uint32_t seed = 0;
  std::int64_t elapsedMs = 0;  // milliseconds
  std::int64_t solvedAt = 0;   // milliseconds since the Unix epoch
  std::string shot;            // file name of its picture in solvesDir(); empty if there is none
  int stars = 0;
  int aids = 0;

  bool operator==(const SolveEntry&) const = default;
};

std::vector<SolveEntry> listSolves();
// Adds a solve if it is the level's first, or replaces the level's solve if it is better: by stars, then
// time, then aids. The picture of the worse one is deleted, and so is the new picture if recording fails.
// Entries beyond the 200th are dropped, but their pictures stay.
void recordSolve(const SolveEntry& entry);
// Removes the first solve with this id, or the first that equals `entry` in every field. Its picture is
// deleted too, unless another solve uses it. An unknown solve removes nothing.
void deleteSolve(const std::string& id);
void deleteSolve(const SolveEntry& entry);
// Removes all solves and their pictures.
void clearAllSolves();
// The time in milliseconds, "_" and a random number below 100000. Collisions do not happen in practice.
std::string newSolveId();
// The path of the entry's picture. Empty if there is none, or if `shot` is not a bare file name ("..", a
// path, a zero byte inside): a damaged file can neither read nor delete anything outside solvesDir().
std::string shotPath(const SolveEntry& entry);

// Stars for a solved deal, 1 to 3, from its aids (hints plus shuffles). A negative number counts as none.
int computeStars(int aids);

}  // namespace store
