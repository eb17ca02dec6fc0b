// desktop.h: a display of the test's own with a window manager on it, and the game in a window there, driven
// as a player drives it: by mouse and keys. Several may exist at once, also in parallel test programs.
// Units: pixels; x right, y down.
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
// The game opens a smaller window there than its settings say: less to paint and to compare for whatever is
// not about sizes.
inline constexpr Size kSmallScreen = {800, 600};
// What the first start's settings say.
inline constexpr Size kFirstWindow = {1100, 760};
inline constexpr Size kSmallestWindow = {640, 480};

inline constexpr const char* kTitle = "Quenlock's Mahjong";

// The layout that a display begins with.
inline constexpr const char* kLatinKeyboard = "us";

// Keys by their place on the keyboard, named by what they carry on a Latin layout; the numbers are X's.
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

// An X display of that size with a window manager, and a keyboard of that layout, named as setxkbmap names
// it, with its variant in brackets. The window manager does to every window, as it shows it, what `imposed`
// says in the words of an openbox rule. Throws std::runtime_error when they do not come up.
class Desktop {
 public:
  explicit Desktop(const std::string& keyboard = kLatinKeyboard, Size screen = kSmallScreen,
                   const std::string& imposed = "");
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop();

  // For a program that is to run on it; its files go to a directory of this desktop's own.
  Environment environment() const;
  // Where the game keeps the player's files, this one or all.
  std::string dataPath(const std::string& file = "") const;

  // While it lives no other program gets an answer from the display: whoever asks it waits.
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
  std::string name;  // as DISPLAY names it
  Child windowManager;
  std::unique_ptr<Connection> connection;
};

// What has to change in the desktop's environment for a program into which this library is loaded first.
Environment preloading(const Desktop& desktop, const std::string& library);

// The game under test in its window. Places are those of the window's inside.
class Game {
 public:
  // Starts it and waits for its window, with `changes` made to the desktop's environment. Throws
  // std::runtime_error, with what the program wrote, when no window comes.
  explicit Game(Desktop& shownOn, const std::vector<std::string>& arguments = {},
                const Environment& changes = {});
  // The same for another command that starts it, or for another program that writes a line once its window
  // has this title.
  Game(const std::vector<std::string>& command, Desktop& shownOn, const Environment& changes,
       std::string windowTitle = kTitle);

  Child& process() { return child; }

  Size size() const;
  Point position() const;  // of the inside, on the screen
  bool isMaximised() const;
  bool isFullscreen() const;
  // Whether it asks the window manager to be shown past the compositor.
  bool bypassesCompositor() const;
  // What the window shows now; null when it cannot be read, as while it changes its size.
  ui::CairoSurface picture() const;

  Point mouse() const;
  void moveMouse(Point to) const;
  void pressButton() const;  // the left one
  void releaseButton() const;
  void click(Point at) const;
  // The second press comes so long after the first release by the display's clock, however slow the test is.
  void doubleClick(Point at, std::chrono::milliseconds gap) const;
  void rightClick(Point at) const;
  // One step, away from the user when positive.
  void turnWheel(int direction) const;
  void type(Key key) const;
  void type(Key modifier, Key key) const;
  // The key that carries this character on the desktop's keyboard, with Shift if it takes that; a letter that
  // none carries by its place on a Latin keyboard. Throws std::runtime_error when there is none.
  void typeCharacter(char character) const;
  void typeCharacter(char character, Key modifier) const;

  // Moves the mouse from one place to the other with the right button and this key held.
  void dragRight(Key held, Point from, Point to) const;

  // Drags the window's lower right corner by so much with the mouse, as the window manager offers it.
  void dragCorner(int dx, int dy) const;
  // Asks the window manager for another place, and does not wait.
  void moveTo(Point place) const;
  // The buttons of the title bar: each asks the window manager, or the program itself, and does not wait.
  void setMaximised(bool maximised) const;
  void minimise() const;
  // Brings a minimised window back, and does not wait.
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

// The command that starts the program under test, and its arguments.
std::vector<std::string> gameCommand(const std::vector<std::string>& arguments);

}  // namespace window
