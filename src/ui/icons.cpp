#include "ui/icons.h"

#include <cairo.h>

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <numbers>

#include "ui/draw.h"

namespace ui {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

// The coordinates below are relative to the icon's centre, in halves of its side.

void line(cairo_t* cr, double x0, double y0, double x1, double y1) {
  cairo_move_to(cr, x0, y0);
  cairo_line_to(cr, x1, y1);
}

void bend(cairo_t* cr, double x0, double y0, double x1, double y1, double x2, double y2) {
  line(cr, x0, y0, x1, y1);
  cairo_line_to(cr, x2, y2);
}

void fillTriangle(cairo_t* cr, double x0, double y0, double x1, double y1, double x2, double y2) {
  bend(cr, x0, y0, x1, y1, x2, y2);
  cairo_close_path(cr);
  cairo_fill(cr);
}

void arc(cairo_t* cr, double x, double y, double r, double fromDegree, double toDegree) {
  cairo_new_sub_path(cr);
  cairo_arc(cr, x, y, r, fromDegree * kDegree, toDegree * kDegree);
}

// A light bulb.
void hint(cairo_t* cr) {
  arc(cr, 0, -0.25, 0.55, 0, 360);
  line(cr, -0.3, 0.45, 0.3, 0.45);
  line(cr, -0.2, 0.75, 0.2, 0.75);
  cairo_stroke(cr);
}

// Two arrows that cross.
void shuffle(cairo_t* cr) {
  for (const double side : {1.0, -1.0}) {
    cairo_move_to(cr, -1, -0.5 * side);
    cairo_curve_to(cr, -0.2, -0.5 * side, 0.2, 0.5 * side, 0.8, 0.5 * side);
    bend(cr, 0.4, 0.15 * side, 0.85, 0.5 * side, 0.4, 0.85 * side);
  }
  cairo_stroke(cr);
}

// An arrow that turns back to the left.
void undo(cairo_t* cr) {
  arc(cr, 0, 0.1, 0.65, 162, 432);
  cairo_stroke(cr);
  fillTriangle(cr, -0.65, -0.55, -0.62, 0.1, -0.05, -0.15);
}

// An arrow that turns round to the right.
void replay(cairo_t* cr) {
  arc(cr, 0, 0, 0.65, 108, 378);
  cairo_stroke(cr);
  fillTriangle(cr, 0.65, -0.55, 0.62, 0.1, 0.05, -0.15);
}

void zoomOut(cairo_t* cr) {
  arc(cr, -0.15, -0.15, 0.55, 0, 360);
  line(cr, 0.25, 0.25, 0.8, 0.8);
  line(cr, -0.45, -0.15, 0.15, -0.15);
  cairo_stroke(cr);
}

void zoomIn(cairo_t* cr) {
  zoomOut(cr);
  line(cr, -0.15, -0.45, -0.15, 0.15);
  cairo_stroke(cr);
}

// The corners of a square.
void fit(cairo_t* cr) {
  constexpr double kSide = 0.75;
  constexpr double kArm = 0.4;
  for (const double x : {-kSide, kSide}) {
    for (const double y : {-kSide, kSide}) {
      const double inner = 1 - kArm / kSide;
      bend(cr, x * inner, y, x, y, x, y * inner);
    }
  }
  cairo_stroke(cr);
}

void pause(cairo_t* cr) {
  cairo_rectangle(cr, -0.5, -0.7, 0.32, 1.4);
  cairo_rectangle(cr, 0.18, -0.7, 0.32, 1.4);
  cairo_fill(cr);
}

void play(cairo_t* cr) { fillTriangle(cr, -0.4, -0.7, 0.7, 0, -0.4, 0.7); }

// In the order of ActionIcon. Its last value, Card, has its own function.
using DrawIcon = void (*)(cairo_t*);
constexpr DrawIcon kLineIcons[] = {hint, shuffle, undo, zoomIn, zoomOut, fit, pause, play, replay};
static_assert(std::size(kLineIcons) == static_cast<std::size_t>(ActionIcon::Card));

// A card and its shadow. The shadow's offset does not grow with the card.
void drawCard(cairo_t* cr, double cx, double cy, double size, std::uint32_t color, double alpha) {
  constexpr double kShadowShift = 1.5;
  const Rect card{cx - 0.31 * size, cy - 0.42 * size, 0.62 * size, 0.84 * size};
  const Rect shadow{card.x + kShadowShift, card.y + kShadowShift, card.w, card.h};
  fillRoundedRect(cr, shadow, 0.14 * size, color, 0.45 * alpha);
  fillRoundedRect(cr, card, 0.14 * size, color, alpha);
}

}  // namespace

void drawActionIcon(cairo_t* cr, ActionIcon icon, double cx, double cy, double size, std::uint32_t color,
                    double alpha) {
  if (!(size > 0)) return;
  if (icon == ActionIcon::Card) return drawCard(cr, cx, cy, size, color, alpha);
  const auto index = static_cast<std::size_t>(icon);
  if (index >= std::size(kLineIcons)) return;
  const double half = size / 2;
  cairo_save(cr);
  cairo_translate(cr, cx, cy);
  cairo_scale(cr, half, half);
  setColor(cr, color, alpha);
  cairo_set_line_width(cr, std::max(1.6, 0.11 * size) / half);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  kLineIcons[index](cr);
  cairo_restore(cr);
}

}  // namespace ui
