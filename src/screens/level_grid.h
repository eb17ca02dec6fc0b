// level_grid.h: where the ten cards of a page lie on the level select, and what lies where on a card. Units:
// logical pixels.
#pragma once

#include "screens/card.h"

namespace screens {

CardGrid levelGrid(double w, double h);

// The level's name over its stars at the left, what it is made of at the right, its layout below.
struct LevelCardLayout {
  ui::Rect label;
  ui::Rect tiles;
  ui::Rect layers;
  double starsX;  // of the middle one's centre
  double starsY;
  ui::Rect miniature;
};
inline constexpr double kCardStarRadius = 8;
LevelCardLayout levelCardLayout(const ui::Rect& card);

}  // namespace screens
