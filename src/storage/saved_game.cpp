#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "rules/levels.h"
#include "storage/documents.h"
#include "storage/storage.h"

namespace store {
namespace {

constexpr const char* kGameFile = "save.json";
constexpr const char* kMember = "current_mahjong";

js::Value facesDoc(const std::vector<std::string>& faces) {
  js::Value doc;
  doc.kind = js::Value::Array;
  for (const std::string& face : faces) doc.a.push_back(valueOf(face));
  return doc;
}

js::Value historyDoc(const std::vector<mj::HistoryEntry>& history) {
  js::Value doc;
  doc.kind = js::Value::Array;
  for (const mj::HistoryEntry& pair : history) {
    doc.a.push_back(objectOf({{"a", valueOf(pair.a)},
                              {"b", valueOf(pair.b)},
                              {"fa", valueOf(pair.faceA)},
                              {"fb", valueOf(pair.faceB)}}));
  }
  return doc;
}

js::Value gameDoc(const SavedGame& saved) {
  return objectOf({{"level", valueOf(saved.level)},
                   {"seed", valueOf(saved.seed)},
                   {"faces", facesDoc(saved.game.faces)},
                   {"selectedId", valueOf(saved.game.selected)},
                   {"rngState", valueOf(saved.game.rng)},
                   {"hintsUsed", valueOf(saved.game.hints)},
                   {"shufflesUsed", valueOf(saved.game.shuffles)},
                   {"history", historyDoc(saved.game.history)},
                   {"elapsedMs", valueOf(saved.elapsedMs)},
                   {"savedAt", valueOf(nowMs())}});
}

bool isSlotId(int id, std::size_t slots) { return id >= 0 && static_cast<std::size_t>(id) < slots; }

// One face per element. An element that is not a string becomes a removed tile.
std::vector<std::string> facesOf(const js::Value& doc) {
  std::vector<std::string> faces;
  faces.reserve(doc.size());
  for (const js::Value& face : doc.a) faces.push_back(face.s);
  return faces;
}

// Drops the entries that undo could not put back.
std::vector<mj::HistoryEntry> historyOf(const js::Value& doc, std::size_t slots) {
  std::vector<mj::HistoryEntry> history;
  for (const js::Value& pair : doc.a) {
    const mj::HistoryEntry entry = {
        .a = pair["a"].asInt(-1), .b = pair["b"].asInt(-1), .faceA = pair["fa"].s, .faceB = pair["fb"].s};
    if (!isSlotId(entry.a, slots) || !isSlotId(entry.b, slots)) continue;
    if (!entry.faceA.empty() && !entry.faceB.empty()) history.push_back(entry);
  }
  return history;
}

// `doc` must have one face per slot.
mj::GameState gameOf(const js::Value& doc, const std::vector<mj::Slot>& slots) {
  mj::GameState game;
  game.slots = slots;
  game.faces = facesOf(doc["faces"]);
  game.removed = static_cast<int>(std::count(game.faces.begin(), game.faces.end(), ""));
  game.rng = truncated<std::uint32_t>(doc["rngState"]);
  game.hints = std::max(doc["hintsUsed"].asInt(0), 0);
  game.shuffles = std::max(doc["shufflesUsed"].asInt(0), 0);
  game.history = historyOf(doc["history"], slots.size());
  const int selected = doc["selectedId"].asInt(-1);
  if (isSlotId(selected, slots.size())) game.selected = selected;
  return game;
}

}  // namespace

void saveGame(const SavedGame& saved) {
  const FileChange file(kGameFile);
  // Other members are kept: a later version may have written them.
  js::Value doc = objectOf(file.old().o);
  doc.o[kMember] = gameDoc(saved);
  file.writeFile(doc);
}

SavedGame loadGame() {
  const js::Value file = readDocument(kGameFile);
  const js::Value& doc = file[kMember];
  const int level = doc["level"].asInt(0);
  if (level < 1 || level > kLastLevel) return {};
  const std::vector<mj::Slot>& slots = mj::levelToConfig(level).slots;
  const js::Value& faces = doc["faces"];
  if (faces.kind != js::Value::Array || faces.size() != slots.size()) return {};
  return {.valid = true,
          .level = level,
          .seed = truncated<std::uint32_t>(doc["seed"]),
          .game = gameOf(doc, slots),
          .elapsedMs = truncated<std::int64_t>(doc["elapsedMs"]),
          .savedAt = truncated<std::int64_t>(doc["savedAt"])};
}

void clearGame() {
  const FileChange file(kGameFile);
  if (file.old().kind != js::Value::Object) return;
  js::Value doc = file.old();
  doc.o.erase(kMember);
  file.writeFile(doc);
}

}  // namespace store
