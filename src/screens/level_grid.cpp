#include "screens/level_grid.h"

#include <algorithm>
#include <cmath>

#include "screens/list_screen.h"

namespace screens {
namespace {

using ui::Rect;

constexpr double kMargin = 12;
constexpr double kBottomRoom = 46;
constexpr double kMinViewH = 60;

constexpr double kGap = 12;  // between cards
constexpr double kLeastCardW = 240;
constexpr int kMinColumns = 2;
constexpr int kMaxColumns = 5;

constexpr double kPadding = 18;  // at a card's sides
constexpr double kMaxMiniature = 190;
constexpr double kBesidesMiniature = 108;  // of a card's height

constexpr double kTextGap = 8;
constexpr double kLineH = 24;
constexpr double kFirstLineY = 26;  // middles of the two lines, from the card's top
constexpr double kSecondLineY = 52;
constexpr double kTextsH = 66;
constexpr double kLabelShare = 0.55;  // of the first line's width; the rest is the number of tiles'
constexpr double kStarsHalfW = 3.5 * kCardStarRadius;

Rect line(double x, double middle, double w) { return {x, middle - kLineH / 2, w, kLineH}; }

}  // namespace

LevelGrid levelGrid(double w, double h) {
  const double room = w - 2 * kMargin;
  LevelGrid grid{};
  grid.view = {0, kPagedListTop, w, std::max(h - kPagedListTop - kBottomRoom, kMinViewH)};
  grid.columns = std::clamp(static_cast<int>(std::floor(room / kLeastCardW)), kMinColumns, kMaxColumns);
  grid.rows = (grid.columns + kLevelsPerPage - 1) / grid.columns;
  grid.cardW = (room - kGap * (grid.columns - 1)) / grid.columns;
  grid.miniature = std::min(grid.cardW - 2 * kPadding, kMaxMiniature);
  grid.cardH = grid.miniature + kBesidesMiniature;
  grid.contentHeight = grid.rows * (grid.cardH + kGap) - kGap;
  return grid;
}

Rect LevelGrid::card(int i, double scroll) const {
  const int column = i % columns;
  const int row = i / columns;
  return {kMargin + column * (cardW + kGap), view.y + row * (cardH + kGap) - scroll, cardW, cardH};
}

CardLayout cardLayout(const Rect& card, double miniature) {
  const double left = card.x + kPadding;
  const double right = card.x + card.w - kPadding;
  const double labelW = kLabelShare * (right - left);
  const double tilesX = left + labelW + kTextGap;
  const double layersX = left + 2 * kStarsHalfW + kTextGap;
  const double below = card.y + kTextsH;
  const double spare = card.h - kTextsH - miniature;
  CardLayout layout{};
  layout.label = line(left, card.y + kFirstLineY, labelW);
  layout.tiles = line(tilesX, card.y + kFirstLineY, right - tilesX);
  layout.layers = line(layersX, card.y + kSecondLineY, right - layersX);
  layout.starsX = left + kStarsHalfW;
  layout.starsY = card.y + kSecondLineY;
  layout.miniature = {card.x + (card.w - miniature) / 2, below + spare / 2, miniature, miniature};
  return layout;
}

}  // namespace screens
