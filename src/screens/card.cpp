#include "screens/card.h"

#include <algorithm>
#include <cmath>

#include "screens/list_screen.h"
#include "ui/draw.h"
#include "ui/palette.h"

namespace screens {
namespace {

constexpr double kLightAlpha = 0.06;
constexpr int kMinColumns = 2;
constexpr int kMaxColumns = 5;

}  // namespace

void drawCardPlate(cairo_t* cr, const ui::Rect& card) {
  ui::fillRoundedRect(cr, card, kCardRadius, ui::palette::kPanel, 1);
  ui::strokeRoundedRect(cr, ui::insetRect(card, 0.5), kCardRadius, 1, ui::palette::kPanelEdge, 1);
}

void lightCard(ui::Ctx& ctx, const ui::Rect& card) {
  if (!ctx.hover(card)) return;
  ui::fillRoundedRect(ctx.cr, card, kCardRadius, ui::palette::kGold, kLightAlpha);
  ctx.hand = true;
}

CardGrid cardGrid(const ui::Rect& view, double leastCardW, double gap) {
  const double room = view.w - 2 * kListMargin;
  const int columns = std::clamp(static_cast<int>(std::floor(room / leastCardW)), kMinColumns, kMaxColumns);
  return {.view = view,
          .columns = columns,
          .gap = gap,
          .cardW = (room - gap * (columns - 1)) / columns,
          .cardH = 0};
}

ui::Rect CardGrid::card(int i, double scroll) const {
  const int row = i / columns;
  const int column = i % columns;
  return {view.x + kListMargin + column * (cardW + gap), view.y + row * (cardH + gap) - scroll, cardW, cardH};
}

double CardGrid::contentHeight(int cards) const {
  const int rows = (cards + columns - 1) / columns;
  return std::max(rows * (cardH + gap) - gap, 0.0);
}

}  // namespace screens
