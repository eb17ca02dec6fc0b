// context.h: what the frame loop hands to a screen, and what a screen is. A header alone. Knows no SDL, and
// of drawing no more than the name of cairo's context. Units: logical pixels, x right, y down; seconds.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

using cairo_t = struct _cairo;  // NOLINT(bugprone-reserved-identifier): cairo's own name for it

namespace ui {

class Focus;

// Left and top edges belong to a rectangle, right and bottom ones do not.
struct Rect {
  double x = 0;
  double y = 0;
  double w = 0;
  double h = 0;

  bool contains(double px, double py) const { return x <= px && px < x + w && y <= py && py < y + h; }
};

// One frame's input.
struct Input {
  double mx = 0;
  double my = 0;
  bool down = false;           // left button held after the frame's last event
  bool pressed = false;        // left button went down
  bool clicked = false;        // left button was released
  bool doubleClicked = false;  // that release followed the one before by less than 0.3 s
  bool rightClicked = false;   // right button went down
  double wheel = 0;            // vertical wheel steps, away from the user positive
  double dx = 0;               // mouse movement since the previous frame
  double dy = 0;
  std::vector<int> keys;       // SDL key codes pressed, in order of arrival, repeats included
  std::vector<int> freshKeys;  // those of them that are no repeats of a held key
  bool ctrl = false;
  bool shift = false;

  bool hasButtons() const { return down || pressed || clicked || rightClicked; }
  // Takes a key, as often as it was pressed. False if it was not.
  bool takeKey(int code) { return std::erase(keys, code) > 0; }
  // Forgets all that the mouse's buttons did.
  void dropButtons() { down = pressed = clicked = doubleClicked = rightClicked = false; }
  bool hasKey(int code) const { return std::find(keys.begin(), keys.end(), code) != keys.end(); }
  bool hasFreshKey(int code) const {
    return std::find(freshKeys.begin(), freshKeys.end(), code) != freshKeys.end();
  }
};

// For a picture that stays until input comes.
inline constexpr double kForever = std::numeric_limits<double>::infinity();

// One frame.
struct Ctx {
  cairo_t* cr = nullptr;  // scaled to logical pixels, cleared to transparent; lies over all texture copies
  double w = 0;
  double h = 0;
  double time = 0;  // since the frame loop began
  double dt = 0;    // since the previous drawn frame; of a stall at most 0.1
  // Until when, in `time`, this picture stays as it is unless input comes: nothing is painted meanwhile. A
  // screen says so anew in each frame; who says nothing is painted again at once.
  double stillUntil = 0;
  Input in;
  bool quit = false;        // a screen sets it to end the program after this frame
  bool clickTaken = false;  // one click works one control: the first that asks in drawing order
  bool hand = false;        // a screen sets it to show the pointer as a hand in this frame
  Focus* focus = nullptr;   // which control the keyboard works; null where it works none

  // Takes this frame's click if it lies in `rect` and nobody took it before.
  bool takeClick(const Rect& rect) {
    if (clickTaken || !in.clicked || !hover(rect)) return false;
    clickTaken = true;
    return true;
  }
  // A right click is not consumed: every rectangle under it hears of it.
  bool takeRightClick(const Rect& rect) const { return in.rightClicked && hover(rect); }
  bool hover(const Rect& rect) const { return rect.contains(in.mx, in.my); }
};

enum class ScreenKind : int {
  Splash,
  Menu,
  LevelSelect,
  Playing,
  Solved,
  Gallery,
  Settings,
  About,
  Licenses,
  Attract,
};

// Describes a screen on the stack. Whatever must survive a change of screens stands here or on disk.
struct GameState {
  ScreenKind kind = ScreenKind::Splash;
  int level = 0;            // Playing and Solved
  std::uint32_t deal = 0;   // Playing and Solved: the seed of the deal
  std::int64_t timeMs = 0;  // the rest: Solved only
  int tiles = 0;
  int hints = 0;
  int shuffles = 0;
  bool recorded = false;  // the win is written down already
};

// A screen on the table. It is destroyed at every change of the stack and built anew from its descriptor.
class Screen {
 public:
  Screen() = default;
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;
  virtual ~Screen() = default;

  // Takes the frame's input and draws the frame.
  virtual void update(Ctx& ctx) = 0;
};

}  // namespace ui
