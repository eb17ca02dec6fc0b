// witness.h: what the game reports about itself before it is killed: its play time by its own clock, its last
// save, its frames and the input it received. witness.cpp, preloaded into the game, writes this to a file
// that outlives the game. Units: seconds.
#pragma once

#include <fstream>
#include <string>

namespace window {

// kWitnessVariable names the environment variable with the file's path. kRaiseVariable names the one with
// signals to raise just before a file is renamed into place: the end of the file's name and the signals, each
// after a colon, such as ".png:15:2". With a number and a star in front, only that occurrence counts:
// "2*progress.json:9" is the second one.
inline constexpr const char* kWitnessVariable = "VESKARA_TEST_WITNESS";
inline constexpr const char* kRaiseVariable = "VESKARA_TEST_RAISE";
// Names the variable with the function that fails: SDL_CreateWindow or SDL_CreateRenderer.
inline constexpr const char* kRefuseVariable = "VESKARA_TEST_REFUSE";

struct Testimony {
  double played = 0;  // play time; a frame counts a tenth of a second at most, as in the game
  double playedAtSave = 0;
  int saves = 0;             // how often save.json was renamed into place
  bool screenSaver = false;  // whether it is allowed
  int passes = 0;            // of the main loop
  int frames = 0;            // presented
  int releases = 0;          // of the left button
  double releasedAt = 0;     // time of the last release; sinceRelease is the time between the last two
  double sinceRelease = 0;
  int releasePass = 0;  // the pass that handles the last release
  int pressPass = 0;    // the same for the last press of Enter or Space
};

// The current contents of the file; a default Testimony if it is missing.
inline Testimony testimonyIn(const std::string& path) {
  Testimony testimony;
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&testimony), sizeof testimony);
  return testimony;
}

}  // namespace window
