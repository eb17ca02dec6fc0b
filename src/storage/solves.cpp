#include <unistd.h>

#include <algorithm>
#include <cstddef>
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

js::Value solvesDoc(const std::vector<SolveEntry>& solves) {
  js::Value doc;
  doc.kind = js::Value::Array;
  for (const SolveEntry& entry : solves) doc.a.push_back(entryDoc(entry));
  return doc;
}

// Skips entries without an id.
std::vector<SolveEntry> solvesOf(const js::Value& doc) {
  std::vector<SolveEntry> solves;
  solves.reserve(doc.size());
  for (const js::Value& element : doc.a) {
    SolveEntry entry = entryOf(element);
    if (!entry.id.empty()) solves.push_back(std::move(entry));
  }
  return solves;
}

// Better means more stars, then less time, then fewer aids.
bool isBetter(const SolveEntry& entry, const SolveEntry& old) {
  return std::tie(old.stars, entry.elapsedMs, entry.aids) < std::tie(entry.stars, old.elapsedMs, old.aids);
}

// Whether the name is a bare file name: it cannot lead out of its directory.
bool isPlainName(const std::string& name) {
  constexpr std::string_view kNotInNames("/\0", 2);
  return !name.empty() && name != "." && name != ".." && name.find_first_of(kNotInNames) == std::string::npos;
}

// Writes the list, then deletes the pictures of `dropped` that no stored solve needs. If writing fails, what
// the file still lists is kept. A picture that cannot be deleted stays and does no harm. unlink() does not
// delete directories.
void write(const FileChange& file, const std::vector<SolveEntry>& solves,
           const std::vector<SolveEntry>& dropped) {
  const bool written = file.writeFile(solvesDoc(solves));
  const std::vector<SolveEntry> stored = written ? solves : solvesOf(file.stored());
  for (const SolveEntry& entry : dropped) {
    const bool isNeeded = std::any_of(stored.begin(), stored.end(),
                                      [&](const SolveEntry& other) { return other.shot == entry.shot; });
    if (const std::string path = shotPath(entry); !isNeeded && !path.empty()) unlink(path.c_str());
  }
}

// Removes the first solve that matches.
template <class Predicate>
void removeSolve(const Predicate& isMeant) {
  const FileChange file(kSolvesFile);
  std::vector<SolveEntry> solves = solvesOf(file.old());
  std::vector<SolveEntry> dropped;
  if (const auto found = std::find_if(solves.begin(), solves.end(), isMeant); found != solves.end()) {
    dropped.push_back(*found);
    solves.erase(found);
  }
  write(file, solves, dropped);
}

}  // namespace

std::vector<SolveEntry> listSolves() { return solvesOf(readDocument(kSolvesFile)); }

void recordSolve(const SolveEntry& entry) {
  const FileChange file(kSolvesFile);
  std::vector<SolveEntry> solves = solvesOf(file.old());
  std::vector<SolveEntry> dropped = {entry};  // its picture is kept if the entry is in the list
  const auto old = std::find_if(solves.begin(), solves.end(),
                                [&](const SolveEntry& solve) { return solve.level == entry.level; });
  if (old == solves.end()) {
    solves.insert(solves.begin(), entry);
  } else if (isBetter(entry, *old)) {
    dropped.push_back(*old);
    *old = entry;
    std::rotate(solves.begin(), old, old + 1);
  }
  if (solves.size() > kMostSolves) solves.resize(kMostSolves);
  write(file, solves, dropped);
}

void deleteSolve(const std::string& id) {
  removeSolve([&](const SolveEntry& solve) { return solve.id == id; });
}

void deleteSolve(const SolveEntry& entry) {
  removeSolve([&](const SolveEntry& solve) { return solve == entry; });
}

void clearAllSolves() {
  const FileChange file(kSolvesFile);
  write(file, {}, solvesOf(file.old()));
}

std::string newSolveId() {
  static std::mt19937 random(std::random_device{}());
  return std::to_string(nowMs()) + "_" + std::to_string(random() % 100000);
}

std::string shotPath(const SolveEntry& entry) {
  return isPlainName(entry.shot) ? solvesDir() + "/" + entry.shot : "";
}

}  // namespace store
