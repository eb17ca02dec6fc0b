#include "screens/level_grid.h"

#include <algorithm>

#include "screens/list_screen.h"

namespace screens {
namespace {

using ui::Rect;

constexpr double kGap = 12;  // between cards
constexpr double kLeastCardW = 240;

constexpr double kPadding = 18;  // at the left and right of a card
constexpr double kMaxMiniature = 190;
constexpr double kBesidesMiniature = 108;  // height of a card without its miniature

constexpr double kTextGap = 8;
constexpr double kLineH = 24;
constexpr double kFirstLineY = 26;  // vertical centres of the two lines, from the card's top
constexpr double kSecondLineY = 52;
constexpr double kTextsH = 66;
constexpr double kLabelShare = 0.55;  // of the first line's width; the number of tiles gets the rest
constexpr double kStarsHalfW = 3.5 * kCardStarRadius;

Rect line(double x, double middle, double w) { return {x, middle - kLineH / 2, w, kLineH}; }

// The side of the square miniature on a card of this width.
double miniatureSide(double cardW) { return std::min(cardW - 2 * kPadding, kMaxMiniature); }

}  // namespace

CardGrid levelGrid(double w, double h) {
  CardGrid grid = cardGrid(pagedListView(w, h, kPagedListTop, kFooterRoom), kLeastCardW, kGap);
  grid.cardH = miniatureSide(grid.cardW) + kBesidesMiniature;
  return grid;
}

LevelCardLayout levelCardLayout(const Rect& card) {
  const double miniature = miniatureSide(card.w);
  const double left = card.x + kPadding;
  const double right = card.x + card.w - kPadding;
  const double labelW = kLabelShare * (right - left);
  const double tilesX = left + labelW + kTextGap;
  const double layersX = left + 2 * kStarsHalfW + kTextGap;
  const double below = card.y + kTextsH;
  const double spare = card.h - kTextsH - miniature;
  LevelCardLayout layout{};
  layout.label = line(left, card.y + kFirstLineY, labelW);
  layout.tiles = line(tilesX, card.y + kFirstLineY, right - tilesX);
  layout.layers = line(layersX, card.y + kSecondLineY, right - layersX);
  layout.starsX = left + kStarsHalfW;
  layout.starsY = card.y + kSecondLineY;
  layout.miniature = {card.x + (card.w - miniature) / 2, below + spare / 2, miniature, miniature};
  return layout;
}

}  // namespace screens
