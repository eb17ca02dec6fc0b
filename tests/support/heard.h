// heard.h: ears for tests of what makes sounds. heard.cpp takes the place of src/resources/audio.cpp in the
// test program that has it among its sources: no device is opened, nothing is played, and what was asked for
// is kept.
#pragma once

#include <vector>

#include "resources/audio.h"

namespace support {

// What audio.h's functions were told; at first what a new program has.
struct SoundState {
  bool ready = false;  // between init and shutdown
  bool enabled = true;
  double musicVolume = 0.25;  // as it was given, out of range too
  double sfxVolume = 1.0;
  int musicStarts = 0;  // calls of startMusic
};

// The effects played, oldest first, whatever the switch and the volume: those are the mixer's business.
std::vector<audio::Sfx>& heard();

// One of each in the process. A test whose program runs several in one process begins with clearing both:
// heard().clear(), soundState() = {}.
SoundState& soundState();

}  // namespace support
