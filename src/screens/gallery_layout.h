// gallery_layout.h: where the gallery's cards lie in the window, and what a card shows on itself, for any
// size of the window. Units: logical pixels.
#pragma once

#include "screens/card.h"

namespace screens {

// The list begins at `top` and leaves a strip for the hint at the window's lower edge.
CardGrid galleryGrid(double w, double h, double top);
// The middle of that strip.
double galleryHintY(double h);

// Two lines of text above the picture. Places count from the card's top left corner.
struct SolveCardLayout {
  double left;       // of the level
  double right;      // end of the time and of the date
  double firstTop;   // of the level and the time
  double secondTop;  // of the date
  double starsX;     // middle of the stars
  double starsY;
  ui::Rect picture;  // what there is for the picture
};
SolveCardLayout solveCardLayout(double cardW, double cardH);

}  // namespace screens
