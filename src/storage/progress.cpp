#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <utility>

#include "storage/documents.h"
#include "storage/storage.h"

namespace store {
namespace {

constexpr const char* kProgressFile = "progress.json";

// By level number in decimal.
using Bests = std::map<std::string, js::Value>;

js::Value progressDoc() { return readFile(kProgressFile); }

Bests bestsOf(const js::Value& doc) { return doc["bests"].o; }

Progress progressOf(const js::Value& doc) {
  return {.currentLevel = std::clamp(doc["currentLevel"].asInt(1), 1, kLastLevel),
          .totalSolves = std::max(doc["totalSolves"].asInt(0), 0)};
}

void writeProgressDoc(const Progress& progress, Bests bests) {
  writeFile(kProgressFile, objectOf({{"currentLevel", valueOf(progress.currentLevel)},
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
  // Without a star there was no solve, without a millisecond no time that could be the better one.
  return {.stars = std::max(old.stars, result.stars),
          .aids = old.stars <= 0 ? result.aids : std::min(old.aids, result.aids),
          .elapsedMs = old.elapsedMs < 1 ? result.elapsedMs : std::min(old.elapsedMs, result.elapsedMs)};
}

}  // namespace

Progress loadProgress() { return progressOf(progressDoc()); }

void saveProgress(const Progress& progress) {
  if (const auto doc = readFileToChange(kProgressFile)) writeProgressDoc(progress, bestsOf(*doc));
}

Progress advanceLevel(int level) {
  const auto doc = readFileToChange(kProgressFile);
  Progress progress = doc ? progressOf(*doc) : Progress();
  if (level >= progress.currentLevel) progress.currentLevel = std::min(progress.currentLevel + 1, kLastLevel);
  if (progress.totalSolves < std::numeric_limits<int>::max()) ++progress.totalSolves;
  if (doc) writeProgressDoc(progress, bestsOf(*doc));
  return progress;
}

Progress resetProgress() {
  const Progress start;
  writeProgressDoc(start, {});
  return start;
}

LevelBest bestFor(int level) { return bestOf(progressDoc(), level); }

LevelBest recordBest(int level, const LevelBest& result) {
  const auto doc = readFileToChange(kProgressFile);
  if (!doc) return result;
  const LevelBest best = merged(bestOf(*doc, level), result);
  Bests bests = bestsOf(*doc);
  bests[std::to_string(level)] = objectOf(
      {{"stars", valueOf(best.stars)}, {"aids", valueOf(best.aids)}, {"elapsedMs", valueOf(best.elapsedMs)}});
  writeProgressDoc(progressOf(*doc), std::move(bests));
  return best;
}

}  // namespace store
