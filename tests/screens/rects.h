// rects.h: how rectangles of a layout lie to each other, up to rounding.
#pragma once

#include "app/context.h"

namespace test {

constexpr double kRounding = 1e-9;

inline bool overlap(const ui::Rect& a, const ui::Rect& b) {
  return a.x + a.w > b.x + kRounding && b.x + b.w > a.x + kRounding && a.y + a.h > b.y + kRounding &&
         b.y + b.h > a.y + kRounding;
}

inline bool inside(const ui::Rect& inner, const ui::Rect& outer) {
  return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w + kRounding &&
         inner.y + inner.h <= outer.y + outer.h + kRounding;
}

}  // namespace test
