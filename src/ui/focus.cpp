#include "ui/focus.h"

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <utility>

#include "ui/draw.h"
#include "ui/palette.h"

namespace ui {
namespace {

constexpr double kSame = 0.5;  // rectangles that differ by less count as equal
constexpr double kTouch = 1;   // neighbours may overlap by this much

// The ring, outwards from its control: a dark line, gold, a dark line. The dark lines set it off from golden
// controls.
constexpr double kRingGap = 1;
constexpr double kRingLine = 3;
constexpr double kRingEdge = 1;
constexpr double kRingReach = kRingGap + kRingLine + kRingEdge;
constexpr double kRingRadius = 12;
constexpr double kRingEdgeAlpha = 0.75;

// The corners of the board's cursor.
constexpr double kCornerGap = 2;
constexpr double kCornerEdge = 1.5;
constexpr double kCornerArm = 0.32;   // in cursor widths
constexpr double kCornerLine = 0.09;  // in cursor widths, within the two bounds below
constexpr double kLeastLine = 4;
constexpr double kMostLine = 8;

bool isSame(const Rect& a, const Rect& b) {
  return std::abs(a.x - b.x) < kSame && std::abs(a.y - b.y) < kSame && std::abs(a.w - b.w) < kSame &&
         std::abs(a.h - b.h) < kSame;
}

// The intersection. Its width or height is 0 if there is none.
Rect common(const Rect& a, const Rect& b) {
  const double x = std::max(a.x, b.x);
  const double y = std::max(a.y, b.y);
  return {x, y, std::max(std::min(a.x + a.w, b.x + b.w) - x, 0.0),
          std::max(std::min(a.y + a.h, b.y + b.h) - y, 0.0)};
}

bool isNothing(const Rect& rect) { return rect.w <= 0 || rect.h <= 0; }

bool isEnter(int key) { return key == SDLK_RETURN || key == SDLK_KP_ENTER; }

// Where one rectangle lies, seen from another in one direction.
struct Way {
  double along;   // gap in that direction, negative if it does not lie there
  double across;  // gap across that direction
  double aside;   // distance of the middles across that direction
};

Way horizontalWay(const Rect& from, const Rect& to, int sign) {
  return {sign > 0 ? to.x - (from.x + from.w) : from.x - (to.x + to.w),
          std::max({0.0, to.y - (from.y + from.h), from.y - (to.y + to.h)}),
          std::abs(to.y + to.h / 2 - from.y - from.h / 2)};
}

Way wayTo(const Rect& from, const Rect& to, int x, int y) {
  if (x != 0) return horizontalWay(from, to, x);
  return horizontalWay({from.y, from.x, from.h, from.w}, {to.y, to.x, to.h, to.w}, y);
}

// Smaller is nearer. What lies straight ahead is nearer than what lies aside.
std::pair<double, double> lengthOf(const Way& way) { return {way.along + 2 * way.across, way.aside}; }

void drawRing(cairo_t* cr, const Rect& control) {
  const auto ring = [&](double reach, double width, std::uint32_t color, double alpha) {
    const double radius = std::min(kRingRadius, std::min(control.w, control.h) / 2) + reach;
    strokeRoundedRect(cr, insetRect(control, -reach), radius, width, color, alpha);
  };
  constexpr double kMiddle = kRingGap + kRingLine / 2;
  ring(kMiddle, kRingLine + 2 * kRingEdge, palette::kBlack, kRingEdgeAlpha);
  ring(kMiddle, kRingLine, palette::kGold, 1);
}

}  // namespace

void Focus::frame(Ctx& ctx, bool spaceWorks, const std::function<void()>& update) {
  begin(ctx.in, spaceWorks);
  ctx.focus = this;
  update();
  ctx.focus = nullptr;
  end(ctx.cr);
}

void Focus::forget() { *this = {}; }

// --- keys ---

void Focus::begin(const Input& in, bool spaceWorks) {
  worked.reset();
  discarded.reset();
  main.reset();
  mainWorked = false;
  moved = false;
  slid = 0;
  lost = 0;
  board = {};
  if (in.dx != 0 || in.dy != 0) {
    place.reset();
    below.reset();
  }
  for (const int key : in.keys) take(key, in.hasFreshKey(key), in, spaceWorks);
}

void Focus::take(int key, bool fresh, const Input& in, bool spaceWorks) {
  if (givesToBoard(key, fresh)) return;
  switch (key) {
    case SDLK_TAB:
      return tab(in.shift ? -1 : 1);
    case SDLK_LEFT:
      return arrow({-1, 0});
    case SDLK_RIGHT:
      return arrow({1, 0});
    case SDLK_UP:
      return arrow({0, -1});
    case SDLK_DOWN:
      return arrow({0, 1});
    case SDLK_SPACE:
      if (fresh && spaceWorks && isShown()) enter();
      return;
    case SDLK_DELETE:
      if (fresh && isShown()) discarded = place->rect;
      return;
    default:
      // A held key works only once, however often it repeats.
      if (fresh && isEnter(key)) enter();
  }
}

bool Focus::givesToBoard(int key, bool fresh) {
  constexpr int kKeys[] = {SDLK_TAB, SDLK_LEFT, SDLK_RIGHT, SDLK_UP, SDLK_DOWN};
  const bool leads = std::find(std::begin(kKeys), std::end(kKeys), key) != std::end(kKeys);
  if (!leads && !(fresh && isEnter(key))) return false;
  if (!place) {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [](const Control& control) { return control.kind == Kind::Board; });
    if (found != controls.end()) moveTo(static_cast<std::size_t>(found - controls.begin()));
  }
  if (!isOnBoard()) return false;
  board.keys.push_back(leads ? key : SDLK_RETURN);
  return true;
}

void Focus::enter() {
  if (isShown()) {
    worked = place->rect;
  } else {
    mainWorked = true;
  }
}

void Focus::tab(int step) {
  if (place) return stepBy(step);
  if (!controls.empty()) moveTo(step > 0 ? 0 : controls.size() - 1);
}

// If the control is gone, the one that now has its index comes after it.
void Focus::stepBy(int step) {
  if (controls.empty()) return;
  const auto count = static_cast<int>(controls.size());
  const int from = static_cast<int>(order) - (step > 0 && !isShown() ? 1 : 0);
  moveTo(static_cast<std::size_t>((from + step + count) % count));
  if (place->kind == Kind::Board) board.entered = step;
}

void Focus::arrow(Direction direction) {
  if (!place) {
    if (const auto first = start()) moveTo(*first);
    return;
  }
  if (direction.x != 0 && place->kind == Kind::Slider && isShown()) {
    slid += direction.x;
    return;
  }
  if (const auto next = nearest(direction)) {
    moveTo(*next);
  } else {
    lost += direction.y;
  }
}

void Focus::moveTo(std::size_t index) {
  place = controls[index];
  order = index;
  shown = true;
  moved = true;
}

std::optional<std::size_t> Focus::indexOfDrawn() const {
  const auto found = std::find_if(drawn.begin(), drawn.end(),
                                  [&](const Control& control) { return isSame(control.rect, place->rect); });
  if (found != drawn.end()) return static_cast<std::size_t>(found - drawn.begin());
  // All controls may have moved at once, as after a resize. Then the index still holds.
  if (shown && drawn.size() == controls.size()) return order;
  return std::nullopt;
}

// Where an arrow key starts without a focus: at the main action, else at the first control.
std::optional<std::size_t> Focus::start() const {
  for (std::size_t i = 0; i < controls.size() && lastMain; ++i)
    if (isSame(controls[i].rect, *lastMain)) return i;
  if (controls.empty()) return std::nullopt;
  return 0;
}

// Prefers controls in a cone ahead, and among those the ones in the same list. Up and Down also find controls
// beside the cone, because rows lie one below the other.
std::optional<std::size_t> Focus::nearest(Direction direction) const {
  struct Found {
    std::size_t index;  // cppcheck-suppress unusedStructMember
    std::pair<int, std::pair<double, double>> length;
  };
  std::optional<Found> best;
  for (std::size_t i = 0; i < controls.size(); ++i) {
    const Control& control = controls[i];
    const bool together = isSame(control.view, place->view);
    const Rect from = together ? place->rect : common(place->rect, place->view);
    const Rect to = together ? control.rect : common(control.rect, control.view);
    if (isNothing(to)) continue;
    const Way way = wayTo(from, to, direction.x, direction.y);
    const bool ahead = way.along >= -kTouch;
    const bool inCone = way.across <= std::max(way.along, 0.0);
    if (!ahead || (!inCone && direction.y == 0)) continue;
    const std::pair length(inCone ? (together ? 0 : 1) : 2, lengthOf(way));
    if (!best || length < best->length) best = {i, length};
  }
  if (!best) return std::nullopt;
  return best->index;
}

void Focus::end(cairo_t* cr) {
  if (covered && !wasCovered) {
    below = std::exchange(place, std::nullopt);
  } else if (!covered && wasCovered) {
    place = std::exchange(below, std::nullopt);
  }
  wasCovered = std::exchange(covered, false);
  const auto found = place ? indexOfDrawn() : std::nullopt;
  shown = found.has_value();
  if (found) {
    order = *found;
    place = drawn[order];
  }
  controls = std::exchange(drawn, {});
  lastMain = main;
  endView();
  drawnRing.reset();
  if (!isShown() || place->kind == Kind::Board) return;
  const Rect seen = common(place->rect, place->view);
  if (isNothing(seen)) return;
  drawRing(cr, seen);
  drawnRing = insetRect(seen, -kRingReach);
}

// --- controls ---

bool Focus::offer(const Rect& rect) {
  add(rect, Kind::Plain);
  return (worked && isSame(*worked, rect)) || (mainWorked && main && isSame(*main, rect));
}

int Focus::offerSlider(const Rect& rect) {
  add(rect, Kind::Slider);
  return place && isSame(place->rect, rect) ? slid : 0;
}

BoardKeys Focus::offerBoard(const Rect& rect) {
  add(rect, Kind::Board);
  // The cover is gone. The board draws its cursor now, so the focus returns before the frame's end.
  if (wasCovered && below && isSame(below->rect, rect)) {
    place = std::exchange(below, std::nullopt);
    shown = true;
    wasCovered = false;
  }
  if (!place || !isSame(place->rect, rect)) return {};
  BoardKeys keys = board;
  keys.focused = true;
  return keys;
}

bool Focus::isDiscarded(const Rect& rect) const { return discarded && isSame(*discarded, rect); }

void Focus::cover() {
  drawn.clear();
  covered = true;
}

// --- lists ---

double Focus::hiddenPart(const Rect& inView) const {
  if (!moved || !place || !isSame(place->view, inView)) return 0;
  const double top = place->rect.y - kRingReach;
  const double bottom = place->rect.y + place->rect.h + kRingReach;
  const double up = std::max(bottom - (inView.y + inView.h), 0.0);
  return std::min(up, top - inView.y);
}

void Focus::follow(const Rect& inView, double up) {
  if (!place || !isSame(place->view, inView)) return;
  for (std::optional<Rect>* rect : {&worked, &discarded})
    if (*rect && isSame(**rect, place->rect)) (*rect)->y -= up;
  place->rect.y -= up;
}

// --- by mouse or keyboard ---

bool isWorkedByKey(Ctx& ctx, const Rect& rect) {
  if (ctx.focus == nullptr || !ctx.focus->offer(rect) || ctx.clickTaken) return false;
  ctx.clickTaken = true;
  return true;
}

bool isWorked(Ctx& ctx, const Rect& rect) { return isWorkedByKey(ctx, rect) || ctx.takeClick(rect); }

bool isDiscarded(const Ctx& ctx, const Rect& rect) {
  return ctx.takeRightClick(rect) || (ctx.focus != nullptr && ctx.focus->isDiscarded(rect));
}

void drawTileCursor(cairo_t* cr, const Rect& tile) {
  const Rect frame = insetRect(tile, -kCornerGap);
  const double arm = kCornerArm * frame.w;
  const double line = std::clamp(kCornerLine * frame.w, kLeastLine, kMostLine);
  cairo_save(cr);
  cairo_new_path(cr);
  for (const double sx : {1.0, -1.0}) {
    for (const double sy : {1.0, -1.0}) {
      const double x = sx > 0 ? frame.x : frame.x + frame.w;
      const double y = sy > 0 ? frame.y : frame.y + frame.h;
      cairo_move_to(cr, x + sx * arm, y);
      cairo_line_to(cr, x, y);
      cairo_line_to(cr, x, y + sy * arm);
    }
  }
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  setColor(cr, palette::kBlack, kRingEdgeAlpha);
  cairo_set_line_width(cr, line + 2 * kCornerEdge);
  cairo_stroke_preserve(cr);
  setColor(cr, palette::kGold, 1);
  cairo_set_line_width(cr, line);
  cairo_stroke(cr);
  cairo_restore(cr);
}

void nameMain(const Ctx& ctx, const Rect& rect) {
  if (ctx.focus != nullptr) ctx.focus->nameMain(rect);
}

void coverControls(const Ctx& ctx) {
  if (ctx.focus != nullptr) ctx.focus->cover();
}

}  // namespace ui
