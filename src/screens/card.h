// card.h: cards, as used by the screens that list things: the plate, the highlight under the pointer and the
// grid of cards. Units: logical pixels.
#pragma once

#include "ui/context.h"

namespace screens {

inline constexpr double kCardRadius = 10;

void drawCardPlate(cairo_t* cr, const ui::Rect& card);
// Highlights the card while the pointer is over it and makes the pointer a hand.
void lightCard(ui::Ctx& ctx, const ui::Rect& card);

// A grid of cards that scrolls if it does not fit. It has 2 to 5 columns, depending on the window's width.
struct CardGrid {
  ui::Rect view;  // the visible part of the grid
  int columns;
  double gap;  // between cards
  double cardW;
  double cardH;

  // The rectangle of the i-th card at this scroll position.
  ui::Rect card(int i, double scroll) const;
  double contentHeight(int cards) const;
};
// Cards at least about `leastCardW` wide. The caller sets their height.
CardGrid cardGrid(const ui::Rect& view, double leastCardW, double gap);

}  // namespace screens
