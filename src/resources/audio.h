// audio.h: short sound effects, one looping piece of music, two volumes and a switch. Knows nothing of the
// settings or of what the sounds mean. Every function may be called at any time, even at exit. Without a
// usable device the game is silent. Main thread only. Volumes are 0 to 1; others are clamped, and nan is
// silence.
#pragma once

#include <cstdint>

namespace audio {

enum class Sfx : std::int32_t {
  Click,
  Place,
  Tile,
  NoNo,
  Remove,
  Error,
  Hint,
  Ready,
  Success,
  WinGlare,
  Star1,
  Star2,
  Star3,
};

// Opens the device and decodes all sounds. True if sound can be played, or if it already could. Each failure
// prints a line on standard error: without a device there is no sound, a damaged effect is skipped, and
// damaged or empty music is not played. An empty effect is skipped without a message. May be called again
// after a failure.
bool init();
// Stops and frees everything; init may be called again.
void shutdown();

// Plays the effect once, mixed with those already playing. Dropped if 24 effects are playing. Tile varies a
// little and never sounds the same twice in a row.
void play(Sfx effect);

// Loops the music; does nothing if it is already playing. Without a device or with sound switched off, the
// request is remembered: a later startMusic() or setEnabled(true) starts the music.
void startMusic();

// Both volumes are kept across init and shutdown. An effect takes its volume when it starts; starting it
// again also changes the volume of its earlier plays.
void setMusicVolume(double volume);
void setSfxVolume(double volume);

// The master switch, initially on. Switching off stops the music and forgets a remembered request; effects
// already playing finish.
void setEnabled(bool on);

}  // namespace audio
