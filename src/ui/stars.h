// stars.h: the stars that a solved game earns, 0 to 3 of them. Knows no rule by which they are earned. Units:
// logical pixels, seconds.
#pragma once

#include <array>
#include <cstdint>

#include "ui/context.h"

namespace ui {

// A star of five points, the first upwards, in a circle of radius r; filled or as an outline.
void drawStar(cairo_t* cr, double cx, double cy, double r, bool filled, std::uint32_t color, double alpha);

// Seconds after which the award's first, second and third star pop up.
inline constexpr std::array<double, 3> kStarTimes = {0.36, 0.62, 0.88};

// The award: three stars about (cx, cy), 176 x 68 times `scale`, the middle one larger. `t` seconds after the
// award appeared the earned ones have popped up so far, the middle one first; then they pulse softly.
void starRow(const Ctx& ctx, double cx, double cy, int stars, double scale, double t);

// Three small stars of radius r in a line about (x, y), as many of them filled as are earned.
void starsInline(cairo_t* cr, double x, double y, int stars, double r);

}  // namespace ui
