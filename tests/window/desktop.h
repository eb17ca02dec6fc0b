// desktop.h: an X display with a window manager, and the game in a window on it, driven by mouse and keys
// like a player would. Several desktops may exist at once, also in parallel test programs. Units: pixels; x
// right, y down.
#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "ui/handles.h"
#include "window/child.h"

namespace window {

struct Point {
  int x = 0;
  int y = 0;

  bool operator==(const Point&) const = default;
};

struct Size {
  int w = 0;
  int h = 0;

  bool operator==(const Size&) const = default;
};

Size sizeOf(cairo_surface_t* picture);

inline constexpr Size kScreen = {1280, 1024};
// On this screen the game opens a smaller window than its settings ask for. That saves time in tests that are
// not about sizes.
inline constexpr Size kSmallScreen = {800, 600};
// The window size in the settings of a first start.
inline constexpr Size kFirstWindow = {1100, 760};
inline constexpr Size kSmallestWindow = {640, 480};

inline constexpr const char* kTitle = "Quenlock's Mahjong";

// The keyboard layout of a new display.
inline constexpr const char* kLatinKeyboard = "us";

// Keys by position, named after what they produce on a Latin layout. The numbers are X keycodes.
enum class Key : unsigned {
  Escape = 9,
  Zero = 19,
  Minus = 20,
  Equals = 21,
  Tab = 23,
  Q = 24,
  U = 30,
  Return = 36,
  LeftControl = 37,
  H = 43,
  LeftShift = 50,
  M = 58,
  LeftAlt = 64,
  Space = 65,
  F11 = 95,
  Up = 111,
  Left = 113,
  Right = 114,
  Down = 116,
};

// An X display of this size with a window manager and a keyboard layout. The layout has setxkbmap's name,
// with a variant in brackets. `imposed` is the body of an openbox rule that the window manager applies to
// every new window. The constructor throws std::runtime_error if something does not start.
class Desktop {
 public:
  explicit Desktop(const std::string& keyboard = kLatinKeyboard, Size screen = kSmallScreen,
                   const std::string& imposed = "");
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop();

  // The environment for a program on this display. Its files go to this desktop's own directory.
  Environment environment() const;
  // The directory of the player's files, or one file in it.
  std::string dataPath(const std::string& file = "") const;

  // While this object lives, the display answers no other program: requests to it block.
  class Frozen {
   public:
    explicit Frozen(Desktop& desktop);
    Frozen(const Frozen&) = delete;
    Frozen& operator=(const Frozen&) = delete;
    ~Frozen();

   private:
    Desktop& frozen;
  };

 private:
  friend class Game;
  struct Connection;

  void waitForWindowManager();
  void switchKeyboard(const std::string& layout) const;
  struct Stroke {
    Key key;
    bool shift;
  };
  Stroke strokeOf(char character) const;

  support::TempDir home;
  Child server;
  std::string name;  // as in DISPLAY
  Child windowManager;
  std::unique_ptr<Connection> connection;
};

// The changes to the desktop's environment that preload this library into a program.
Environment preloading(const Desktop& desktop, const std::string& library);

// The game under test in its window. Positions are relative to the inside of the window.
class Game {
 public:
  // Starts the game with `changes` to the desktop's environment and waits for its window. Throws
  // std::runtime_error with the program's output if no window comes.
  explicit Game(Desktop& shownOn, const std::vector<std::string>& arguments = {},
                const Environment& changes = {});
  // The same for another command that starts the game, or for another program. That must write a line when
  // its window, with this title, is open.
  Game(const std::vector<std::string>& command, Desktop& shownOn, const Environment& changes,
       std::string windowTitle = kTitle);

  Child& process() { return child; }

  Size size() const;
  Point position() const;  // of the inside, on the screen
  bool isMaximised() const;
  bool isFullscreen() const;
  // Whether the window asks to bypass the compositor.
  bool bypassesCompositor() const;
  // The window's current contents. Null if they cannot be read, for example while the window is resized.
  ui::CairoSurface picture() const;

  Point mouse() const;
  void moveMouse(Point to) const;
  void pressButton() const;  // the left one
  void releaseButton() const;
  void click(Point at) const;
  // `gap` is the time from the first release to the second press on the display's clock, however slow the
  // test is.
  void doubleClick(Point at, std::chrono::milliseconds gap) const;
  void rightClick(Point at) const;
  // One step; positive is away from the user.
  void turnWheel(int direction) const;
  void type(Key key) const;
  void type(Key modifier, Key key) const;
  // Types this character on the desktop's keyboard, with Shift if needed. If a layout lacks the letters that
  // the game uses, presses their keys of the Latin layout. Throws std::runtime_error if there is no key.
  void typeCharacter(char character) const;
  void typeCharacter(char character, Key modifier) const;

  // Drags with the right mouse button while holding this key.
  void dragRight(Key held, Point from, Point to) const;

  // Drags the window's lower right corner by this much, using the window manager's mouse binding.
  void dragCorner(int dx, int dy) const;
  // Asks the window manager to move the window. Does not wait.
  void moveTo(Point place) const;
  // The buttons of the title bar. Each sends the request to the window manager or to the program and does not
  // wait.
  void setMaximised(bool maximised) const;
  void minimise() const;
  // Restores a minimised window. Does not wait.
  void restore() const;
  void close() const;

 private:
  bool hasState(const char* state) const;
  bool findWindow();

  Desktop& desktop;
  std::string title;
  Child child;
  unsigned long window = 0;
};

// The command line that starts the program under test with these arguments.
std::vector<std::string> gameCommand(const std::vector<std::string>& arguments);

}  // namespace window
