// events.h: turns the SDL events of one frame into the input that screens read, and tracks changes of the
// window. The caller passes in the time. Units: logical pixels, seconds.
#pragma once

#include <SDL.h>

#include <utility>

#include "storage/storage.h"
#include "ui/context.h"

namespace ui {

// The key code for a key press on the current layout. If the layout has no Latin letters, its letter keys act
// as on a Latin keyboard. Also recognises + and - on layouts where SDL does not report them.
int keyCode(const SDL_Keysym& key);

class EventReader {
 public:
  // Changes to the window's geometry and full-screen state are written into `windowSettings`.
  explicit EventReader(store::Settings& windowSettings) : settings(windowSettings) {}

  // Clears the input of the previous frame.
  void beginFrame(Ctx& ctx);
  // Handles one event. `windowFlags` are the window's current flags.
  void handle(const SDL_Event& event, Uint32 windowFlags, double now, Ctx& ctx);
  // Reads the mouse position, buttons and modifier keys. Call after the frame's last event. The position is
  // in the window's points; a logical pixel is `growth` points long.
  void readMouse(int x, int y, double growth, Uint32 buttons, SDL_Keymod modifiers, Ctx& ctx);

  // Whether the player asked to quit: closed the window or pressed Ctrl+Q.
  bool quitRequested() const { return quit; }
  // Whether full screen was toggled since the last call.
  bool takeFullscreenToggle() { return std::exchange(fullscreenToggled, false); }
  // Whether the renderer has lost its textures since the last call.
  bool takePicturesLost() { return std::exchange(picturesLost, false); }
  // Call when the window enters or leaves full screen. For half a second "restored" events then do not mean
  // that the player un-maximised the window. The same holds after the window was minimised.
  void windowReturns(double now);
  bool isReturning(double now) const { return now < returnEnd; }
  // Whether the window's geometry in the settings has changed since geometrySaved().
  bool geometryDirty() const { return geometryChanged; }
  void geometrySaved() { geometryChanged = false; }

 private:
  void keyDown(const SDL_KeyboardEvent& event, Ctx& ctx);
  void leftReleased(double now, Ctx& ctx);
  void windowChanged(const SDL_WindowEvent& event, Uint32 windowFlags, double now);
  void restored(double now);

  store::Settings& settings;
  bool quit = false;
  bool fullscreenToggled = false;
  bool picturesLost = false;
  bool geometryChanged = false;
  bool minimised = false;
  double returnEnd = -1;
  double lastLeftRelease = -10;
  int prevMouseX = 0;  // in points
  int prevMouseY = 0;
};

}  // namespace ui
