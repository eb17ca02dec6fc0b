// storage.h: the records that outlive a run, as the game keeps them in memory.
// Knows nothing of the window, the screens or the clock.
#pragma once

#include <string>

namespace store {

// Stored in windowX and windowY while no position of the window is known.
inline constexpr int kNoPosition = -1000000;

// The player's preferences. The defaults are those of a first start.
struct Settings {
  std::string language;  // code of the interface language; empty follows the system
  bool soundOn = true;
  double musicVolume = 0.25;  // 0 to 1
  double sfxVolume = 1.0;     // 0 to 1
  bool fullscreen = false;
  bool maximized = false;
  int windowW = 1100;  // of the window while it is neither maximised nor full screen, in logical pixels
  int windowH = 760;
  int windowX = kNoPosition;
  int windowY = kNoPosition;
};

// Stars of a solved deal, 1 to 3, from its aids (hints plus shuffles); a negative number counts as none.
int computeStars(int aids);

}  // namespace store
