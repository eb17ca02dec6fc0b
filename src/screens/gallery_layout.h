// gallery_layout.h: where the gallery's cards lie in the window, and what a card shows on itself, for any
// size of the window. Units: logical pixels.
#pragma once

#include "app/context.h"

namespace screens {

// Columns of cards in a list as wide as the window, which scrolls up and down.
struct GalleryGrid {
  ui::Rect list;  // what is seen of the cards
  int columns;
  double cardW;
  double cardH;

  ui::Rect card(int index, double scroll) const;
  double contentHeight(int cards) const;
};
// The list begins at `top` and leaves a strip for the hint at the window's lower edge.
GalleryGrid galleryGrid(double w, double h, double top);
// The middle of that strip.
double galleryHintY(double h);

// Two lines of text above the picture. Places count from the card's top left corner.
struct CardLayout {
  double left;       // of the level
  double right;      // end of the time and of the date
  double firstTop;   // of the level and the time
  double secondTop;  // of the date
  double starsX;     // middle of the stars
  double starsY;
  ui::Rect picture;  // what there is for the picture
};
CardLayout cardLayout(double cardW, double cardH);

}  // namespace screens
