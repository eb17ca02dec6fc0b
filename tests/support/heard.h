// heard.h: records requested sounds for tests. A test program that includes heard.cpp uses it instead of
// src/resources/audio.cpp: it opens no device, plays nothing and records what was requested.
#pragma once

#include <vector>

#include "resources/audio.h"

namespace support {

// The state set through audio.h. The defaults are those of a new program.
struct SoundState {
  bool ready = false;  // between init and shutdown
  bool enabled = true;
  double musicVolume = 0.25;  // as given, without clamping
  double sfxVolume = 1.0;
  int musicStarts = 0;  // calls of startMusic
};

// The requested effects, oldest first, regardless of switch and volume.
std::vector<audio::Sfx>& heard();

// There is one list and one state per process. If several tests share a process, each begins with
// heard().clear() and soundState() = {}.
SoundState& soundState();

}  // namespace support
