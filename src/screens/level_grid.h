// level_grid.h: where the ten cards of a page lie on the level select, and what lies where on a card. Units:
// logical pixels.
#pragma once

#include "app/context.h"

namespace screens {

// Cards in rows, as many in each as the window is wide, 2 to 5. What does not fit is scrolled.
struct LevelGrid {
  ui::Rect view;  // the cards are seen in here
  int columns;
  int rows;
  double cardW;
  double cardH;
  double miniature;  // side of the square that a card has for its layout
  double contentHeight;

  // The i-th card, 0 to 9, once its page is scrolled down so far.
  ui::Rect card(int i, double scroll) const;
};
LevelGrid levelGrid(double w, double h);

// The level's name over its stars at the left, what it is made of at the right, its layout below.
struct CardLayout {
  ui::Rect label;
  ui::Rect tiles;
  ui::Rect layers;
  double starsX;  // of the middle one's centre
  double starsY;
  ui::Rect miniature;
};
inline constexpr double kCardStarRadius = 8;
CardLayout cardLayout(const ui::Rect& card, double miniature);

}  // namespace screens
