#include <algorithm>
#include <cstddef>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "storage/documents.h"
#include "storage/storage.h"

namespace store {
namespace {

constexpr const char* kProgressFile = "progress.json";

// Keyed by the level number in decimal.
using Bests = std::map<std::string, js::Value>;

Bests bestsOf(const js::Value& doc) { return doc["bests"].o; }

Progress progressOf(const js::Value& doc) {
  return {.currentLevel = std::clamp(doc["currentLevel"].asInt(1), 1, kLastLevel),
          .totalSolves = std::max(doc["totalSolves"].asInt(0), 0)};
}

void write(const FileChange& file, const Progress& progress, Bests bests) {
  file.writeFile(objectOf({{"currentLevel", valueOf(progress.currentLevel)},
                           {"totalSolves", valueOf(progress.totalSolves)},
                           {"bests", objectOf(std::move(bests))}}));
}

LevelBest bestOf(const js::Value& doc, int level) {
  const js::Value& best = doc["bests"][std::to_string(level)];
  return {.stars = best["stars"].asInt(0),
          .aids = best["aids"].asInt(0),
          .elapsedMs = truncated<std::int64_t>(best["elapsedMs"])};
}

LevelBest merged(const LevelBest& old, const LevelBest& result) {
  // Without stars there was no solve, so its aids do not count. Below one millisecond there is no time to
  // compare.
  return {.stars = std::max(old.stars, result.stars),
          .aids = old.stars <= 0 ? result.aids : std::min(old.aids, result.aids),
          .elapsedMs = old.elapsedMs < 1 ? result.elapsedMs : std::min(old.elapsedMs, result.elapsedMs)};
}

}  // namespace

Progress loadProgress() { return progressOf(readDocument(kProgressFile)); }

void saveProgress(const Progress& progress) {
  const FileChange file(kProgressFile);
  write(file, progress, bestsOf(file.old()));
}

Progress advanceLevel(int level) {
  const FileChange file(kProgressFile);
  Progress progress = progressOf(file.old());
  if (level >= progress.currentLevel) progress.currentLevel = std::min(progress.currentLevel + 1, kLastLevel);
  if (progress.totalSolves < std::numeric_limits<int>::max()) ++progress.totalSolves;
  write(file, progress, bestsOf(file.old()));
  return progress;
}

Progress resetProgress() {
  const Progress start;
  write(FileChange(kProgressFile), start, {});
  return start;
}

LevelBest bestFor(int level) { return bestOf(readDocument(kProgressFile), level); }

Career loadCareer() {
  const js::Value doc = readDocument(kProgressFile);
  Career career = {.progress = progressOf(doc), .bests = {}};
  for (int level = 1; level <= kLastLevel; ++level) {
    career.bests[static_cast<std::size_t>(level - 1)] = bestOf(doc, level);
  }
  return career;
}

LevelBest recordBest(int level, const LevelBest& result) {
  const FileChange file(kProgressFile);
  const LevelBest best = merged(bestOf(file.old(), level), result);
  Bests bests = bestsOf(file.old());
  bests[std::to_string(level)] = objectOf(
      {{"stars", valueOf(best.stars)}, {"aids", valueOf(best.aids)}, {"elapsedMs", valueOf(best.elapsedMs)}});
  write(file, progressOf(file.old()), std::move(bests));
  return best;
}

int computeStars(int aids) {
  if (aids <= 0) return 3;
  return aids <= 2 ? 2 : 1;
}

}  // namespace store
