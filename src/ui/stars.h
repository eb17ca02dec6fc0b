// stars.h: the stars that a solved game earns, 0 to 3. Does not know how they are earned. Units: logical
// pixels, seconds.
#pragma once

#include <array>
#include <cstdint>

#include "ui/context.h"

namespace ui {

// A star with five points, the first upwards, in a circle of radius r; filled or as an outline. Draws nothing
// if r is not positive.
void drawStar(cairo_t* cr, double cx, double cy, double r, bool filled, std::uint32_t color, double alpha);

// Seconds after which the first, second and third star of the award pop up.
inline constexpr std::array<double, 3> kStarTimes = {0.36, 0.62, 0.88};

// Draws the award, three stars about (cx, cy) in a box of 176 x 68 times `scale`, `t` seconds after it
// appeared. The middle star is larger. The earned stars pop up one after another, the middle one first, and
// then pulse softly. Draws nothing if `scale` is not positive.
void starRow(const Ctx& ctx, double cx, double cy, int stars, double scale, double t);

// Three small stars of radius r in a row about (x, y). The earned ones are filled.
void starsInline(cairo_t* cr, double x, double y, int stars, double r);

}  // namespace ui
