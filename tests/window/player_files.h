// player_files.h: the player's files as another program sees them: which there are, what they hold, and which
// of them somebody writes.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "rules/engine.h"
#include "window/desktop.h"

namespace window {

// The scalars of a JSON document by their paths, each as JSON writes it: ".bests.1.stars" is "3". An empty
// object or array counts as one; at the top its path is empty.
using Members = std::map<std::string, std::string>;
inline const Members kEmptyObject = {{"", "{}"}};
inline const Members kEmptyArray = {{"", "[]"}};

// Read by a reader that is not the game's. What cannot be read has the reader's complaint as its only member.
Members membersOf(const std::string& file);

// A text as JSON writes it, if nothing in it has to be escaped.
std::string quoted(const std::string& text);

// Takes a whole number out of them. Without one the test fails, and it counts as 0.
std::int64_t takeNumber(Members& members, const std::string& path);

// What settings.json holds before the player has changed anything, while the window is at this place.
Members firstSettings(Point place);
// What save.json holds of this game, but for its two times.
Members savedMembers(const mj::GameState& game, int level, std::uint32_t deal);

struct PlayerFiles {
  std::map<std::string, Members> documents;  // by name, such as "save.json"
  std::set<std::string> others;              // by their paths, such as "solves/a.png"

  bool operator==(const PlayerFiles&) const = default;
};
PlayerFiles readPlayerFiles(const std::string& dataDir);
// For a failed test: each scalar that one of them alone holds.
std::string differences(const PlayerFiles& seen, const PlayerFiles& expected);

// Listens for what happens to the player's files, from its own beginning on.
class FileWatch {
 public:
  // Both the directory and its "solves" must be there. Throws std::runtime_error where nobody can listen.
  explicit FileWatch(const std::string& dataDir);
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;
  ~FileWatch();

  // The names of what was made, written, renamed to or deleted since it was asked last, once for each time.
  std::vector<std::string> touched();
  // Of these the ones that were put in place whole: a document once for each time it is written.
  std::vector<std::string> replaced();

 private:
  std::vector<std::string> namesOf(std::uint32_t events) const;

  int queue;
};

}  // namespace window
