// data_files.h: the player's files as the game has left them. Knows what makes them whole, not what they
// mean.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "storage/json.h"

namespace window {

// The documents in the game's directory, null where there is none. One that was cut off between the removal
// of the old file and the renaming of the new one counts under its temporary name.
struct DataFiles {
  explicit DataFiles(const std::string& directory);

  js::Value settings;
  js::Value progress;
  js::Value save;
  js::Value solves;

  // The game that can be continued; null without one.
  const js::Value& game() const { return save["current_mahjong"]; }
  bool hasGame() const { return game().kind == js::Value::Object; }
  int level() const { return progress["currentLevel"].asInt(1); }
  int totalSolves() const { return progress["totalSolves"].asInt(0); }
};

// Whether all that the directory holds is what it should be: documents, pictures, and nothing half written.
testing::AssertionResult areWhole(const std::string& directory);

// The text of a file as the game writes it.
std::string writtenFile(const std::string& name, const std::function<void()>& write);
// save.json of the first deal of level 1, a minute old, of which so many pairs are still to be taken.
std::string savedGame(int pairsLeft);
// solves.json of a player who has solved the levels up to this one, with pictures named "1_1.png", "2_1.png"
// and so on; progress.json of one who has solved the first.
std::string solvedLevels(int last);
std::string progressAfterLevel1();

}  // namespace window
