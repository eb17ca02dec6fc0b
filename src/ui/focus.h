// focus.h: which control of a screen the keyboard works, and the golden ring about it. In every frame the
// controls tell where they lie, in the order of drawing; nothing else is known of them. The keys of a frame
// go through the controls of the frame before, which are those that the player sees. Knows no screen. Units:
// logical pixels.
//
// Tab and Shift+Tab go through the controls in their order, an arrow to the nearest one in its direction.
// Enter works the control that has the focus, and without a ring the screen's main action; Space works the
// former, Delete discards it. A movement of the mouse takes the focus away.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "ui/context.h"

namespace ui {

// What a board, which has a cursor of its own, is told of a frame's keys.
struct BoardKeys {
  bool focused = false;   // the board has the focus, and its cursor is shown
  int entered = 0;        // by Tab, 1, or by Shift+Tab, -1, in this frame
  std::vector<int> keys;  // arrows, Tab and Enter, in order of arrival; both Enters come as SDLK_RETURN
};

class Focus {
 public:
  // --- for whoever runs the frames ---

  // One frame: takes its keys, has `update` run the screen with this focus, and draws the ring. Space works
  // nothing where it means something else.
  void frame(Ctx& ctx, bool spaceWorks, const std::function<void()>& update);
  // Another screen is shown.
  void forget();
  // What the last frame's ring takes up, if there was one.
  const std::optional<Rect>& ring() const { return drawnRing; }

  // --- for the controls ---

  // Each makes a control known. Whether Enter or Space works it in this frame.
  bool offer(const Rect& rect);
  // By how many steps Left and Right move it, to the right positive.
  int offerSlider(const Rect& rect);
  // Without a ring anywhere the keys are the board's.
  BoardKeys offerBoard(const Rect& rect);
  // Whether a board has the focus.
  bool isOnBoard() const { return isShown() && place->kind == Kind::Board; }
  // Whether Delete was pressed on it.
  bool isDiscarded(const Rect& rect) const;
  // The control there, which is yet to be offered, is what Enter works without a ring.
  void nameMain(const Rect& rect) { main = rect; }
  // Something lies over all controls so far: they are none. When it is gone the focus is back where it was.
  void cover();
  // From a board to the control before it, -1, or after it, 1.
  void leaveBoard(int step) { stepBy(step); }

  // --- for lists ---

  // What is offered from now on is seen only in this rectangle, until endView().
  void beginView(const Rect& rect) { view = rect; }
  void endView() { view = kEverywhere; }
  // By how much what lies in this view must move up so that the control that has just got the focus is whole.
  double hiddenPart(const Rect& inView) const;
  // It has moved up by so much.
  void follow(const Rect& inView, double up);
  // Arrows of this frame that found no control: down positive.
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

  std::vector<Control> controls;  // of the frame before
  std::vector<Control> drawn;     // of this frame, so far
  Rect view = kEverywhere;
  // The control with the focus. Where it is gone, no ring is drawn, but the keys go on from there.
  std::optional<Control> place;
  std::size_t order = 0;         // its number among the controls
  bool shown = false;            // it is one of them
  std::optional<Control> below;  // the same of what is covered
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

// Whether the player works the control in this rectangle: by a click on it, which is taken, or by the
// keyboard.
bool isWorked(Ctx& ctx, const Rect& rect);
// The same by the keyboard alone.
bool isWorkedByKey(Ctx& ctx, const Rect& rect);
// Whether the player discards what lies there: by a right click, or by Delete.
bool isDiscarded(const Ctx& ctx, const Rect& rect);

// The board's own ring: golden corners about a tile. `cr` must not be clipped to the tile.
void drawTileCursor(cairo_t* cr, const Rect& tile);

// Without a focus in the frame these do nothing.
void nameMain(const Ctx& ctx, const Rect& rect);
void coverControls(const Ctx& ctx);

}  // namespace ui
