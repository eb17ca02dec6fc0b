#include "ui/stars.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "ui/draw.h"
#include "ui/palette.h"

namespace ui {
namespace {

using std::numbers::pi;

constexpr double kInnerRadius = 0.42;  // radius of the notches, in star radii
constexpr double kMissingAlpha = 0.4;  // of a star that was not earned

struct Award {
  double x;  // centre, from the middle of the row
  double r;
  double delay;  // seconds until it pops up
  int place;     // stars needed to earn it
};
constexpr Award kAwards[] = {
    {-68, 20, kStarTimes[1], 2}, {0, 34, kStarTimes[0], 1}, {68, 20, kStarTimes[2], 3}};
constexpr double kPopTime = 0.45;
constexpr double kPulseRate = 1.6;  // radians a second
constexpr double kPulse = 0.08;
constexpr double kHaloRadius = 1.25;  // in star radii
constexpr double kHaloAlpha = 0.16;

void missingStar(cairo_t* cr, double cx, double cy, double r) {
  drawStar(cr, cx, cy, r, false, palette::kMutedText, kMissingAlpha);
}

void earnedStar(cairo_t* cr, double cx, double cy, double r, double delay, double t) {
  const double grown = std::clamp((t - delay) / kPopTime, 0.0, 1.0);
  const double size = r * grown * (1 + kPulse * std::sin((delay + t) * kPulseRate));
  fillCircle(cr, cx, cy, kHaloRadius * size, palette::kStarGold, kHaloAlpha * grown);
  drawStar(cr, cx, cy, size, true, palette::kStarGold, grown);
}

}  // namespace

void drawStar(cairo_t* cr, double cx, double cy, double r, bool filled, std::uint32_t color, double alpha) {
  if (!(r > 0)) return;
  cairo_new_sub_path(cr);
  for (int k = 0; k < 10; ++k) {
    const double angle = k * pi / 5 - pi / 2;
    const double length = k % 2 == 0 ? r : kInnerRadius * r;
    cairo_line_to(cr, cx + length * std::cos(angle), cy + length * std::sin(angle));
  }
  cairo_close_path(cr);
  setColor(cr, color, alpha);
  if (filled) {
    cairo_fill(cr);
  } else {
    cairo_set_line_width(cr, std::max(1.0, 0.12 * r));
    cairo_stroke(cr);
  }
}

void starRow(const Ctx& ctx, double cx, double cy, int stars, double scale, double t) {
  if (!(scale > 0)) return;
  for (const Award& award : kAwards) {
    const double x = cx + award.x * scale;
    const double r = award.r * scale;
    if (stars >= award.place) {
      earnedStar(ctx.cr, x, cy, r, award.delay, t);
    } else {
      missingStar(ctx.cr, x, cy, r);
    }
  }
}

void starsInline(cairo_t* cr, double x, double y, int stars, double r) {
  for (int i = 1; i <= 3; ++i) {
    const double cx = x + (i - 2) * 2.5 * r;
    if (i <= stars) {
      drawStar(cr, cx, y, r, true, palette::kStarGold, 1);
    } else {
      missingStar(cr, cx, y, r);
    }
  }
}

}  // namespace ui
