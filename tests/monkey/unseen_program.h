// unseen_program.h: all of the program but its main function, run where nobody sees or hears it: on SDL's
// dummy drivers and its software renderer, under a clock, a mouse and modifier keys of the test's own. Knows
// no particular screen. Units: logical pixels, seconds.
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

// One at a time. Settings and files are those of the process.
class UnseenProgram {
 public:
  UnseenProgram();
  UnseenProgram(const UnseenProgram&) = delete;
  UnseenProgram& operator=(const UnseenProgram&) = delete;
  // Ends it as the program ends, but for the screen that is open: that lives to the end of the process, here
  // and there.
  ~UnseenProgram();

  // One frame, so long after the one before. False when the program would end now.
  bool pass(double dt);
  // Ends it and starts it anew, settings read from their file and the splash screen first.
  void restart();

  static ui::ScreenKind screen();
  // Whether the last pass heard of a click that was meant for its screen: pressed and released on it after
  // its first frame, and not as fast after one on another screen as the second of a double click.
  bool heardMeantClick() const { return meantClick; }
  // The same of a press of Enter or Space.
  bool heardMeantPress() const { return meantPress; }

  // What the next frame hears of.
  void moveMouse(int x, int y);
  void button(Uint8 which, bool down);
  void wheel(int steps);
  void key(SDL_Keycode code, Uint16 modifiers = KMOD_NONE);
  void windowEvent(SDL_WindowEventID what);
  void closeWindow();

  // At once.
  void holdModifiers(Uint16 modifiers);
  // As a window manager does it, which need not ask what the smallest size is.
  void resize(WindowSize logical);
  // Device pixels per logical one.
  void setScale(double pixels);
  // As under X11, where a minimised window keeps its size.
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

  std::vector<bool> leftButton;  // what it has done since the last pass: down or up
  int framesOfScreen = 0;
  double shownAt = 0;
  bool pressedHere = false;
  bool foreignRun = false;  // the last click was not meant for this screen
  double lastRelease = -10;
  bool meantClick = false;

  bool pressed = false;  // Enter or Space, since the last pass
  bool foreignPress = false;
  double lastPress = -10;
  bool meantPress = false;
};

// Textures that the program has made and not destroyed yet, and the bytes of their pixels.
struct LiveTextures {
  int count = 0;
  long bytes = 0;
};
LiveTextures liveTextures();

}  // namespace test
