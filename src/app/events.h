// events.h: turns SDL's events of one frame into the input that screens read, and notes what concerns the
// window. The clock is handed in. Units: logical pixels, seconds.
#pragma once

#include <SDL.h>

#include <utility>

#include "storage/storage.h"
#include "ui/context.h"

namespace ui {

// The key code that a key press stands for on the layout in use. Where that carries no Latin letter at all,
// the letters' keys act as on a Latin keyboard. + and - are found where SDL does not tell that they are.
int keyCode(const SDL_Keysym& key);

class EventReader {
 public:
  // Writes the window's geometry and the full-screen switch into the settings.
  explicit EventReader(store::Settings& windowSettings) : settings(windowSettings) {}

  // Forgets the input of the frame before.
  void beginFrame(Ctx& ctx);
  // Takes one event. `windowFlags` are those of the window at this moment.
  void handle(const SDL_Event& event, Uint32 windowFlags, double now, Ctx& ctx);
  // Takes the mouse's position in the window's points, of which a logical pixel is `growth` long, its buttons
  // and the modifier keys, after the frame's last event.
  void readMouse(int x, int y, double growth, Uint32 buttons, SDL_Keymod modifiers, Ctx& ctx);

  // The program shall end: the window was closed, or Ctrl+Q.
  bool quitRequested() const { return quit; }
  // Whether the full-screen switch was turned since the last call.
  bool takeFullscreenToggle() { return std::exchange(fullscreenToggled, false); }
  // Whether the renderer has lost pictures since the last call.
  bool takePicturesLost() { return std::exchange(picturesLost, false); }
  // The window comes back from the full screen, or goes there. Until it stands there again, as after it was
  // minimised, too, "restored" does not mean that the player made a maximised window smaller.
  void windowReturns(double now);
  bool isReturning(double now) const { return now < returnEnd; }
  // Whether the window's geometry in the settings has changed, until it is told to be saved.
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
