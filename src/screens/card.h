// card.h: what the screens have in common that show many things on cards: the plate, its light under the
// pointer, and the rows in which cards lie. Units: logical pixels.
#pragma once

#include "ui/context.h"

namespace screens {

inline constexpr double kCardRadius = 10;

void drawCardPlate(cairo_t* cr, const ui::Rect& card);
// Lights the card up while the pointer is over it, which is a hand then.
void lightCard(ui::Ctx& ctx, const ui::Rect& card);

// Cards in rows, as many in each as the window is wide, 2 to 5. What does not fit is scrolled.
struct CardGrid {
  ui::Rect view;  // the cards are seen in here
  int columns;
  double gap;  // between cards
  double cardW;
  double cardH;

  // The i-th card, once the list is scrolled down so far.
  ui::Rect card(int i, double scroll) const;
  double contentHeight(int cards) const;
};
// Cards about `leastCardW` wide or wider, as high as the caller then makes them.
CardGrid cardGrid(const ui::Rect& view, double leastCardW, double gap);

}  // namespace screens
