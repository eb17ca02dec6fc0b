// unseen_program.h: runs the whole program except its main function on SDL's dummy drivers and its software
// renderer. The test sets the clock, the mouse and the modifier keys. Knows no particular screen. Units:
// logical pixels, seconds.
#pragma once

#include <SDL.h>

#include <optional>
#include <vector>

#include "app/frame_loop.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace test {

struct WindowSize {
  int w = 640;
  int h = 480;
};

// Make one at a time. It uses the settings and files of the process.
class UnseenProgram {
 public:
  UnseenProgram();
  UnseenProgram(const UnseenProgram&) = delete;
  UnseenProgram& operator=(const UnseenProgram&) = delete;
  // Ends as the program does. The open screen lives until the process ends, as it does in the program.
  ~UnseenProgram();

  // Runs one frame, `dt` after the previous one. Returns false if the program would end now.
  bool pass(double dt);
  // Ends and starts again: reads the settings from their file and shows the splash screen.
  void restart();

  static ui::ScreenKind screen();
  // Tells whether the last pass received a click that was meant for its screen: pressed and released on it
  // after its first frame, and not the second of a double click that began on another screen.
  bool heardMeantClick() const { return meantClick; }
  // The same for a press of Enter or Space.
  bool heardMeantPress() const { return meantPress; }

  // Input for the next frame.
  void moveMouse(int x, int y);
  void button(Uint8 which, bool down);
  void wheel(int steps);
  void key(SDL_Keycode code, Uint16 modifiers = KMOD_NONE);
  void windowEvent(SDL_WindowEventID what);
  void closeWindow();

  // Takes effect at once.
  void holdModifiers(Uint16 modifiers);
  // As a window manager does, which may ignore the smallest size.
  void resize(WindowSize logical);
  // In device pixels per logical pixel.
  void setScale(double pixels);
  // As under X11: a minimised window keeps its size.
  void setMinimised(bool minimised);

  WindowSize size() const;

 private:
  void start();
  void end();
  void resizePixels();
  void judgeClicks();
  void judgePresses();

  ui::SdlWindow window;
  ui::SdlRenderer renderer;
  std::optional<ui::FrameLoop> loop;
  WindowSize logicalSize;

  std::vector<bool> leftButton;  // its presses (true) and releases since the last pass
  int framesOfScreen = 0;
  double shownAt = 0;
  bool pressedHere = false;
  bool foreignRun = false;  // the last click was not meant for this screen
  double lastRelease = -10;
  bool meantClick = false;

  bool pressed = false;  // Enter or Space since the last pass
  bool foreignPress = false;
  double lastPress = -10;
  bool meantPress = false;
};

// The number of the program's textures that are not destroyed yet, and the bytes of their pixels.
struct LiveTextures {
  int count = 0;
  long bytes = 0;
};
LiveTextures liveTextures();

}  // namespace test
