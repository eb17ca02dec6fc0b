#include "support/heard.h"

namespace support {

// Neither is ever destroyed: the program under test may still play and shut down at exit.
std::vector<audio::Sfx>& heard() {
  static auto& effects = *new std::vector<audio::Sfx>;
  return effects;
}

SoundState& soundState() {
  static auto& state = *new SoundState;
  return state;
}

}  // namespace support

namespace audio {

bool init() { return support::soundState().ready = true; }

void shutdown() { support::soundState().ready = false; }

void play(Sfx effect) { support::heard().push_back(effect); }

void startMusic() { ++support::soundState().musicStarts; }

void setMusicVolume(double volume) { support::soundState().musicVolume = volume; }

void setSfxVolume(double volume) { support::soundState().sfxVolume = volume; }

void setEnabled(bool on) { support::soundState().enabled = on; }

}  // namespace audio
