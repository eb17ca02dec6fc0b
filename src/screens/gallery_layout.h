// gallery_layout.h: the layout of the gallery's cards in the window and of the contents of a card, for any
// window size. Units: logical pixels.
#pragma once

#include "screens/card.h"

namespace screens {

// The grid begins at `top` and leaves a strip for the hint at the bottom of the window.
CardGrid galleryGrid(double w, double h, double top);
// The vertical centre of that strip.
double galleryHintY(double h);

// Two lines of text above the picture. Positions are relative to the card's top left corner.
struct SolveCardLayout {
  double left;       // of the level
  double right;      // right edge of the time and of the date
  double firstTop;   // top of the level and the time
  double secondTop;  // top of the date
  double starsX;     // centre of the stars
  double starsY;
  ui::Rect picture;  // the room for the picture
};
SolveCardLayout solveCardLayout(double cardW, double cardH);

}  // namespace screens
