// witness.h: what a program that is about to be killed has told about itself: how long it has played by the
// clock that counts for the game, when it saved last, and what it shows and
// hears of the mouse. Written by witness.cpp,
// which is preloaded into the game, into a file that outlives it. Units: seconds.
#pragma once

#include <fstream>
#include <string>

namespace window {

// The variables that name that file, and what is to happen as a file is put in its place: the end of its name
// and, each after a colon, the signals that the program is sent before, such as ".png:15:2". A number and a
// star in front mean that one time only, such as the second in "2*progress.json:9".
inline constexpr const char* kWitnessVariable = "VESKARA_TEST_WITNESS";
inline constexpr const char* kRaiseVariable = "VESKARA_TEST_RAISE";
// The variable that names what SDL refuses: SDL_CreateWindow or SDL_CreateRenderer.
inline constexpr const char* kRefuseVariable = "VESKARA_TEST_REFUSE";

struct Testimony {
  double played = 0;  // the game's time: of a slow frame no more counts than a tenth of a second
  double playedAtSave = 0;
  int saves = 0;             // times that save.json was put in place
  bool screenSaver = false;  // it may come
  int passes = 0;            // of its loop
  int frames = 0;            // shown
  int releases = 0;          // of the left button that it has heard of
  double releasedAt = 0;     // when it heard of the last one, and how long after the one before
  double sinceRelease = 0;
  int releasePass = 0;  // the pass of the loop in which it works
  int pressPass = 0;    // the same of the last press of a key that works a control
};

// What such a file says now.
inline Testimony testimonyIn(const std::string& path) {
  Testimony testimony;
  std::ifstream(path, std::ios::binary).read(reinterpret_cast<char*>(&testimony), sizeof testimony);
  return testimony;
}

}  // namespace window
