#include "screens/gallery_layout.h"

#include <algorithm>
#include <cmath>

namespace screens {
namespace {

constexpr double kMargin = 12;
constexpr double kGap = 10;
constexpr double kHintStripH = 64;
constexpr double kMinListH = 60;

constexpr double kColumnW = 230;  // a card is about as wide
constexpr int kMinColumns = 2;
constexpr int kMaxColumns = 5;

constexpr double kMoreHeight = 74;  // of a card than width: room for its texts
constexpr double kTextsH = 48;
constexpr double kPictureInset = 4;

}  // namespace

GalleryGrid galleryGrid(double w, double h, double top) {
  GalleryGrid grid{};
  grid.list = {0, top, w, std::max(h - top - kHintStripH, kMinListH)};
  const double width = w - 2 * kMargin;
  grid.columns = std::clamp(static_cast<int>(std::floor(width / kColumnW)), kMinColumns, kMaxColumns);
  grid.cardW = (width - kGap * (grid.columns - 1)) / grid.columns;
  grid.cardH = grid.cardW + kMoreHeight;
  return grid;
}

ui::Rect GalleryGrid::card(int index, double scroll) const {
  const int row = index / columns;
  const int column = index % columns;
  return {kMargin + column * (cardW + kGap), list.y + row * (cardH + kGap) - scroll, cardW, cardH};
}

double GalleryGrid::contentHeight(int cards) const {
  const int rows = (cards + columns - 1) / columns;
  return std::max(rows * (cardH + kGap) - kGap, 0.0);
}

double galleryHintY(double h) { return h - kHintStripH / 2; }

CardLayout cardLayout(double cardW, double cardH) {
  return {.left = 12,
          .right = cardW - 8,
          .firstTop = 6,
          .secondTop = 26,
          .starsX = 34,
          .starsY = 34,
          .picture = {kPictureInset, kTextsH, cardW - 2 * kPictureInset, cardH - kTextsH - kPictureInset}};
}

}  // namespace screens
