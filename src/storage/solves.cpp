#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "storage/documents.h"
#include "storage/storage.h"

namespace store {
namespace {

constexpr const char* kSolvesFile = "solves.json";
constexpr std::size_t kMostSolves = 200;

js::Value entryDoc(const SolveEntry& entry) {
  return objectOf({{"id", valueOf(entry.id)},
                   {"level", valueOf(entry.level)},
                   {"tiles", valueOf(entry.tiles)},
                   {"seed", valueOf(entry.seed)},
                   {"elapsedMs", valueOf(entry.elapsedMs)},
                   {"solvedAt", valueOf(entry.solvedAt)},
                   {"shot", valueOf(entry.shot)},
                   {"stars", valueOf(entry.stars)},
                   {"aids", valueOf(entry.aids)}});
}

SolveEntry entryOf(const js::Value& doc) {
  return {.id = doc["id"].s,
          .level = doc["level"].asInt(0),
          .tiles = doc["tiles"].asInt(0),
          .seed = truncated<std::uint32_t>(doc["seed"]),
          .elapsedMs = truncated<std::int64_t>(doc["elapsedMs"]),
          .solvedAt = truncated<std::int64_t>(doc["solvedAt"]),
          .shot = doc["shot"].s,
          .stars = doc["stars"].asInt(0),
          .aids = doc["aids"].asInt(0)};
}

bool writeSolves(const std::vector<SolveEntry>& solves) {
  js::Value doc;
  doc.kind = js::Value::Array;
  for (const SolveEntry& entry : solves) doc.a.push_back(entryDoc(entry));
  return writeFile(kSolvesFile, doc);
}

// Those with an id.
std::vector<SolveEntry> solvesOf(const js::Value& doc) {
  std::vector<SolveEntry> solves;
  solves.reserve(doc.size());
  for (const js::Value& element : doc.a) {
    SolveEntry entry = entryOf(element);
    if (!entry.id.empty()) solves.push_back(std::move(entry));
  }
  return solves;
}

// A picture that cannot be deleted stays, and harms nobody.
void removeShot(const SolveEntry& entry) {
  if (const std::string path = shotPath(entry); !path.empty()) std::remove(path.c_str());
}

// By more stars, then by less time, then by fewer aids.
bool isBetter(const SolveEntry& entry, const SolveEntry& old) {
  return std::tie(old.stars, entry.elapsedMs, entry.aids) < std::tie(entry.stars, old.elapsedMs, old.aids);
}

// Whether the name stands for something in the directory itself: neither above nor below it.
bool isPlainName(const std::string& name) {
  constexpr std::string_view kNotInNames("/\0", 2);
  return !name.empty() && name != "." && name != ".." && name.find_first_of(kNotInNames) == std::string::npos;
}

}  // namespace

std::vector<SolveEntry> listSolves() { return solvesOf(readFile(kSolvesFile)); }

// A picture goes only when the file no longer needs it.
void recordSolve(const SolveEntry& entry) {
  const auto doc = readFileToChange(kSolvesFile);
  if (!doc) return;
  std::vector<SolveEntry> solves = solvesOf(*doc);
  SolveEntry dropped;
  const auto old = std::find_if(solves.begin(), solves.end(),
                                [&](const SolveEntry& solve) { return solve.level == entry.level; });
  if (old == solves.end()) {
    solves.insert(solves.begin(), entry);
  } else if (isBetter(entry, *old)) {
    if (old->shot != entry.shot) dropped = *old;
    *old = entry;
    std::rotate(solves.begin(), old, old + 1);
  } else {
    dropped = entry;
  }
  if (solves.size() > kMostSolves) solves.resize(kMostSolves);
  if (writeSolves(solves)) removeShot(dropped);
}

void deleteSolve(const std::string& id) {
  const auto doc = readFileToChange(kSolvesFile);
  if (!doc) return;
  std::vector<SolveEntry> solves = solvesOf(*doc);
  const auto found =
      std::find_if(solves.begin(), solves.end(), [&](const SolveEntry& solve) { return solve.id == id; });
  SolveEntry dropped;
  if (found != solves.end()) {
    dropped = *found;
    solves.erase(found);
  }
  if (writeSolves(solves)) removeShot(dropped);
}

void clearAllSolves() {
  const std::vector<SolveEntry> solves = listSolves();
  if (!writeSolves({})) return;
  for (const SolveEntry& solve : solves) removeShot(solve);
}

std::string newSolveId() {
  static std::mt19937 random(std::random_device{}());
  return std::to_string(nowMs()) + "_" + std::to_string(random() % 100000);
}

std::string shotPath(const SolveEntry& entry) {
  return isPlainName(entry.shot) ? solvesDir() + "/" + entry.shot : "";
}

}  // namespace store
