// data_home.h: an empty directory for the player's files, so that a test begins like a first start. Knows
// nothing of the files' contents.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "storage/storage.h"
#include "support/temp_dir.h"

namespace support {

// The game's data directory until the end of the process; each new DataHome empties it. The game looks the
// directory up only once. So all tests of a process share it, and the first DataHome must be created before
// the game asks.
class DataHome {
 public:
  DataHome() { std::filesystem::remove_all(path()); }

  // The path of one of the game's files, such as "save.json" or "solves/a.png".
  std::string path(const std::string& file = "") const { return root().path(below(file)); }
  bool has(const std::string& file) const { return std::filesystem::exists(path(file)); }
  // Its contents; empty if it does not exist.
  std::string text(const std::string& file) const { return readAll(path(file)); }
  // What the game prints if it cannot write the file.
  std::string failureOf(const std::string& file) const {
    return "[store] konnte " + path(file) + " nicht schreiben\n";
  }
  void write(const std::string& file, const std::string& bytes) const { root().makeFile(below(file), bytes); }

 private:
  static std::string below(const std::string& file) { return file.empty() ? "veskara" : "veskara/" + file; }

  static const TempDir& root() {
    static const TempDir dir;
    static const bool inUse = [] {
      setenv("XDG_DATA_HOME", dir.path().c_str(), 1);
      return store::dataDir() == dir.path(below(""));
    }();
    if (!inUse) throw std::logic_error("the game looked for its files before the test's directory was made");
    return dir;
  }
};

}  // namespace support
