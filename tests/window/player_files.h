// player_files.h: the player's files as another program sees them: which exist, what they contain, and which
// of them are written.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "rules/engine.h"
#include "window/desktop.h"

namespace window {

// The scalars of a JSON document by path, in JSON notation: ".bests.1.stars" is "3". An empty object or array
// counts as a scalar. The path of the top value is empty.
using Members = std::map<std::string, std::string>;
inline const Members kEmptyObject = {{"", "{}"}};
inline const Members kEmptyArray = {{"", "[]"}};

// Reads the file with Python's JSON parser. If that fails, the only member is the error message, with an
// empty path.
Members membersOf(const std::string& file);

// The text in JSON notation. It must need no escapes.
std::string quoted(const std::string& text);

// Removes a whole number from the members and returns it. If it is missing, fails the test and returns 0.
std::int64_t takeNumber(Members& members, const std::string& path);

// The settings.json of a player who has changed nothing, with the window at this place.
Members firstSettings(Point place);
// The save.json of this game, without its two times.
Members savedMembers(const mj::GameState& game, int level, std::uint32_t deal);

struct PlayerFiles {
  std::map<std::string, Members> documents;  // by name, such as "save.json"
  std::set<std::string> others;              // by path, such as "solves/a.png"

  bool operator==(const PlayerFiles&) const = default;
};
PlayerFiles readPlayerFiles(const std::string& dataDir);
// For failure messages: each scalar that only one of the two contains.
std::string differences(const PlayerFiles& seen, const PlayerFiles& expected);

// Watches the player's files from its construction on.
class FileWatch {
 public:
  // Both `dataDir` and its subdirectory "solves" must exist. Throws std::runtime_error if they cannot be
  // watched.
  explicit FileWatch(const std::string& dataDir);
  FileWatch(const FileWatch&) = delete;
  FileWatch& operator=(const FileWatch&) = delete;
  ~FileWatch();

  // The names of files created, written, renamed or deleted since the last call, once per event.
  std::vector<std::string> touched();
  // The names of the files renamed into place since the last call: a document once each time it is written.
  // Both functions empty the same queue of events.
  std::vector<std::string> replaced();

 private:
  std::vector<std::string> namesOf(std::uint32_t events) const;

  int queue;
};

}  // namespace window
