// data_files.h: reads the player's files as the game left them. Checks that they are whole, not what they
// mean.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "storage/json.h"

namespace window {

// The documents in the game's directory; null if missing. If the game was killed between removing the old
// file and renaming the new one, the temporary file is read.
struct DataFiles {
  explicit DataFiles(const std::string& directory);

  js::Value settings;
  js::Value progress;
  js::Value save;
  js::Value solves;

  // The saved game; null if there is none.
  const js::Value& game() const { return save["current_mahjong"]; }
  bool hasGame() const { return game().kind == js::Value::Object; }
  int level() const { return progress["currentLevel"].asInt(1); }
  int totalSolves() const { return progress["totalSolves"].asInt(0); }
};

// Whether the directory holds only what it should: documents and pictures, none of them half written.
testing::AssertionResult areWhole(const std::string& directory);

// The contents of the file `name` after the game's own code wrote it.
std::string writtenFile(const std::string& name, const std::function<void()>& write);
// A save.json: level 1, first deal, one minute played, this many pairs left.
std::string savedGame(int pairsLeft);
// A solves.json of a player who has solved the levels up to `last`, with pictures "1_1.png", "2_1.png" and so
// on. A progress.json of a player who has solved level 1.
std::string solvedLevels(int last);
std::string progressAfterLevel1();

}  // namespace window
