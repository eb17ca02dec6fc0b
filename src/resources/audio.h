// audio.h: the sounds: short effects that are fired and forgotten, one piece of music that loops, two volumes
// and a switch. Knows nothing of the settings or of what the sounds mean. Everything may be called at any
// time, while the program ends too: without a usable device the game is silent, and nothing else. Main thread
// only. Volumes are 0 to 1; others are brought into that range, and a nan is silence.
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

// Opens the device and decodes all sounds; true when sound can be played, and at once so when it already
// could. A failure costs one line on standard error: no device, no sound; a damaged effect is never heard;
// damaged or empty music is not played. An empty effect is silent without a word. After a failure it may be
// called again.
bool init();
// Stops and frees everything; init may be called again.
void shutdown();

// Plays the effect once, beside those that are playing; dropped when 24 are. Tile is varied a little from one
// time to the next, and never sounds the same twice in a row.
void play(Sfx effect);

// Plays the music without end. What is playing goes on. Without a device or with sound switched off it is
// kept in mind: a later call or setEnabled(true) then starts it.
void startMusic();

// Kept across init and shutdown. Effects take their volume when they begin; one that is still playing also
// when it begins once more.
void setMusicVolume(double volume);
void setSfxVolume(double volume);

// The master switch, on at first. Off stops the music and forgets that it was wanted; effects that are
// playing run out.
void setEnabled(bool on);

}  // namespace audio
