// level_grid.h: the layout of the ten cards of a page on the level select screen, and of the contents of a
// card. Units: logical pixels.
#pragma once

#include "screens/card.h"

namespace screens {

CardGrid levelGrid(double w, double h);

// The level's name and its stars are at the left, its numbers of tiles and layers at the right, its miniature
// below.
struct LevelCardLayout {
  ui::Rect label;
  ui::Rect tiles;
  ui::Rect layers;
  double starsX;  // centre of the middle star
  double starsY;
  ui::Rect miniature;
};
inline constexpr double kCardStarRadius = 8;
LevelCardLayout levelCardLayout(const ui::Rect& card);

}  // namespace screens
