#include "screens/gallery_layout.h"

#include "screens/list_screen.h"

namespace screens {
namespace {

constexpr double kGap = 10;
constexpr double kHintStripH = 64;
constexpr double kColumnW = 230;  // least width of a card

constexpr double kMoreHeight = 74;  // how much higher than wide a card is: room for its texts
constexpr double kTextsH = 48;
constexpr double kPictureInset = 4;

}  // namespace

CardGrid galleryGrid(double w, double h, double top) {
  CardGrid grid = cardGrid(pagedListView(w, h, top, kHintStripH), kColumnW, kGap);
  grid.cardH = grid.cardW + kMoreHeight;
  return grid;
}

double galleryHintY(double h) { return h - kHintStripH / 2; }

SolveCardLayout solveCardLayout(double cardW, double cardH) {
  return {.left = 12,
          .right = cardW - 8,
          .firstTop = 6,
          .secondTop = 26,
          .starsX = 34,
          .starsY = 34,
          .picture = {kPictureInset, kTextsH, cardW - 2 * kPictureInset, cardH - kTextsH - kPictureInset}};
}

}  // namespace screens
