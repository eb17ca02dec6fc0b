// context.h: what the frame loop passes to a screen, and the base class of screens. Header only. Knows no
// SDL, and of cairo only the name of its context. Units: logical pixels, x right, y down; seconds.
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <vector>

using cairo_t = struct _cairo;  // NOLINT(bugprone-reserved-identifier): cairo's own name for it

namespace ui {

class Focus;

// Contains its left and top edges, but not its right and bottom ones.
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
  bool doubleClicked = false;  // that release came less than 0.3 s after the one before
  bool rightClicked = false;   // right button went down
  double wheel = 0;            // vertical wheel steps, positive away from the user
  double dx = 0;               // mouse movement since the previous frame
  double dy = 0;
  std::vector<int> keys;       // SDL key codes pressed, in order of arrival, repeats included
  std::vector<int> freshKeys;  // the same without repeats of a held key
  bool ctrl = false;
  bool shift = false;

  bool hasButtons() const { return down || pressed || clicked || rightClicked; }
  // Removes all presses of the key. Returns false if there was none.
  bool takeKey(int code) { return std::erase(keys, code) > 0; }
  // Clears the state of all mouse buttons.
  void dropButtons() { down = pressed = clicked = doubleClicked = rightClicked = false; }
  bool hasKey(int code) const { return std::find(keys.begin(), keys.end(), code) != keys.end(); }
  bool hasFreshKey(int code) const {
    return std::find(freshKeys.begin(), freshKeys.end(), code) != freshKeys.end();
  }
};

// As Ctx::stillUntil: the picture stays until input comes.
inline constexpr double kForever = std::numeric_limits<double>::infinity();

// One frame.
struct Ctx {
  cairo_t* cr = nullptr;  // scaled to logical pixels, starts transparent; shown above all texture copies
  double w = 0;
  double h = 0;
  double time = 0;  // since the frame loop began, without the time the window was away
  double dt = 0;    // since the last drawn frame; a stall counts as at most 0.1
  // Until when, in `time`, the picture stays the same if no input comes. Nothing is painted until then. A
  // screen sets it in every frame; if it does not, the next frame follows at once.
  double stillUntil = 0;
  Input in;
  bool quit = false;        // a screen sets it to end the program after this frame
  bool clickTaken = false;  // the click is used up: it works only the first control that asks
  bool hand = false;        // a screen sets it to show a hand cursor in this frame
  Focus* focus = nullptr;   // keyboard focus; null where the keyboard works no control

  // Takes this frame's click if it lies in `rect` and is not yet taken.
  bool takeClick(const Rect& rect) {
    if (clickTaken || !in.clicked || !hover(rect)) return false;
    clickTaken = true;
    return true;
  }
  // A right click is not consumed: every rectangle under it gets it.
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

// Describes a screen on the stack. Whatever must survive a change of screens lives here or on disk.
struct GameState {
  ScreenKind kind = ScreenKind::Splash;
  int level = 0;            // Playing and Solved
  std::uint32_t deal = 0;   // Playing and Solved: the seed of the deal
  std::int64_t timeMs = 0;  // from here on: Solved only
  int tiles = 0;
  int hints = 0;
  int shuffles = 0;
  bool recorded = false;  // the win is already stored
};

// The screen being shown. Every change of the stack destroys it; a screen is built from its descriptor.
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
