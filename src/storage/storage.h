// storage.h: the records that outlive a run, and the files they are kept in. Knows nothing of the window or
// the screens. Reading never fails: what is missing, damaged or of a wrong kind reads as its default. Writing
// replaces a whole file; when it fails, one line on standard error says so and the game goes on. Main thread
// only.
#pragma once

#include <string>

namespace store {

// Where the player's files are kept: below XDG_DATA_HOME, else below HOME. Looked up once.
std::string dataDir();
// Where the pictures of solved boards are kept.
std::string solvesDir();
// Makes both.
void ensureDataDirs();

// Stored in windowX and windowY while no position of the window is known.
inline constexpr int kNoPosition = -1000000;

// The window is never smaller, in SDL's window coordinates.
inline constexpr int kMinWindowW = 640;
inline constexpr int kMinWindowH = 480;

// The player's preferences, kept in settings.json. The defaults are those of a first start.
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

// Volumes are brought between 0 and 1 (nan gives the default), the window to at least 640 x 480.
Settings loadSettings();
void saveSettings(const Settings& settings);

// Stars of a solved deal, 1 to 3, from its aids (hints plus shuffles); a negative number counts as none.
int computeStars(int aids);

}  // namespace store
