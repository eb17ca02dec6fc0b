// focus.h: the keyboard's focus: which control of a screen the keyboard works, and the golden ring around it.
// In every frame the controls report their rectangles in drawing order; nothing else is known of them. A
// frame's keys apply to the controls of the frame before, the ones that the player sees. Knows no screen.
// Units: logical pixels.
//
// Tab and Shift+Tab move through the controls in order, an arrow key to the nearest one in its direction.
// Enter works the focused control, or the screen's main action if there is no ring. Space works the focused
// control, Delete discards it. Moving the mouse clears the focus.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "ui/context.h"

namespace ui {

// A frame's keys for a board, which has its own cursor.
struct BoardKeys {
  bool focused = false;   // the board has the focus and shows its cursor
  int entered = 0;        // 1 if Tab moved here in this frame, -1 if Shift+Tab did
  std::vector<int> keys;  // arrows, Tab and Enter in order of arrival; both Enters are SDLK_RETURN
};

class Focus {
 public:
  // --- for the caller that runs the frames ---

  // Runs one frame: takes its keys, has `update` run the screen with this focus, and draws the ring. If
  // `spaceWorks` is false, Space works no control.
  void frame(Ctx& ctx, bool spaceWorks, const std::function<void()>& update);
  // Forgets everything, because another screen is shown.
  void forget();
  // The area of the ring drawn in the last frame, if there was one.
  const std::optional<Rect>& ring() const { return drawnRing; }

  // --- for the controls ---

  // Each of these three reports a control. This one returns whether Enter or Space works it in this frame.
  bool offer(const Rect& rect);
  // Returns by how many steps Left and Right move it, positive to the right.
  int offerSlider(const Rect& rect);
  // Returns the board's keys, empty unless it has the focus. A key that a board takes gives it the focus if
  // nothing else has it.
  BoardKeys offerBoard(const Rect& rect);
  // Whether a board has the focus.
  bool isOnBoard() const { return isShown() && place->kind == Kind::Board; }
  // Whether Delete was pressed on this control.
  bool isDiscarded(const Rect& rect) const;
  // Makes this control the main action, which Enter works if there is no ring. Call it before the control
  // reports itself.
  void nameMain(const Rect& rect) { main = rect; }
  // Something covers all controls reported so far: forgets them. When it is gone, the focus returns to where
  // it was.
  void cover();
  // Moves from a board to the control before it, -1, or after it, 1.
  void leaveBoard(int step) { stepBy(step); }

  // --- for lists ---

  // Until endView(), controls are visible only inside this rectangle.
  void beginView(const Rect& rect) { view = rect; }
  void endView() { view = kEverywhere; }
  // How far the contents of this view must move up to show the whole control that has just got the focus;
  // negative is down.
  double hiddenPart(const Rect& inView) const;
  // Tells the focus that the contents moved up by `up`.
  void follow(const Rect& inView, double up);
  // Up and Down presses of this frame that found no control, added up: down is positive.
  int unanswered() const { return lost; }

 private:
  enum class Kind { Plain, Slider, Board };
  struct Control {
    Rect rect;
    Rect view;
    Kind kind;
  };
  struct Direction {
    int x;
    int y;
  };
  static constexpr double kFar = 1e6;
  static constexpr Rect kEverywhere = {-kFar, -kFar, 2 * kFar, 2 * kFar};

  void begin(const Input& in, bool spaceWorks);
  void end(cairo_t* cr);
  void take(int key, bool fresh, const Input& in, bool spaceWorks);
  void tab(int step);
  void stepBy(int step);
  void arrow(Direction direction);
  void enter();
  void moveTo(std::size_t index);
  bool givesToBoard(int key, bool fresh);
  void add(const Rect& rect, Kind kind) { drawn.push_back({rect, view, kind}); }
  std::optional<std::size_t> indexOfDrawn() const;
  std::optional<std::size_t> start() const;
  std::optional<std::size_t> nearest(Direction direction) const;
  bool isShown() const { return place && shown; }

  std::vector<Control> controls;  // of the last frame
  std::vector<Control> drawn;     // of this frame, so far
  Rect view = kEverywhere;
  // The control with the focus. If it is gone, no ring is drawn, but the keys continue from its place.
  std::optional<Control> place;
  std::size_t order = 0;         // its index in `controls`
  bool shown = false;            // it is one of `controls`
  std::optional<Control> below;  // `place` while something covers its control
  bool covered = false;
  bool wasCovered = false;
  std::optional<Rect> main;
  std::optional<Rect> lastMain;

  std::optional<Rect> drawnRing;

  // What the keys of this frame do.
  std::optional<Rect> worked;
  std::optional<Rect> discarded;
  bool mainWorked = false;
  bool moved = false;
  int slid = 0;
  int lost = 0;
  BoardKeys board;
};

// Whether the player works the control in this rectangle, by a click or by the keyboard. Either takes the
// frame's click.
bool isWorked(Ctx& ctx, const Rect& rect);
// The same, by the keyboard only.
bool isWorkedByKey(Ctx& ctx, const Rect& rect);
// Whether the player discards the control in this rectangle, by a right click or by Delete.
bool isDiscarded(const Ctx& ctx, const Rect& rect);

// Draws the board's cursor: golden corners around a tile. `cr` must not be clipped to the tile.
void drawTileCursor(cairo_t* cr, const Rect& tile);

// Call the frame's focus. Without one, they do nothing.
void nameMain(const Ctx& ctx, const Rect& rect);
void coverControls(const Ctx& ctx);

}  // namespace ui
