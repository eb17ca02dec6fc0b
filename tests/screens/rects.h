// rects.h: how the rectangles of a layout relate to each other. `slack` allows for edges that are rounded
// sums.
#pragma once

#include "ui/context.h"

namespace test {

inline constexpr double kRounding = 1e-9;

inline bool overlap(const ui::Rect& a, const ui::Rect& b, double slack = 0) {
  return a.x + a.w > b.x + slack && b.x + b.w > a.x + slack && a.y + a.h > b.y + slack &&
         b.y + b.h > a.y + slack;
}

inline bool inside(const ui::Rect& inner, const ui::Rect& outer, double slack = 0) {
  return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w + slack &&
         inner.y + inner.h <= outer.y + outer.h + slack;
}

}  // namespace test
