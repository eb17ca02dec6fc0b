#include "screens/playing_layout.h"

#include <algorithm>

#include "ui/felt.h"

namespace screens {
namespace {

using ui::Rect;

constexpr double kNarrowWindow = 780;
constexpr double kFrameGap = 6;  // between the golden frame and the content
constexpr double kGap = 8;       // between buttons

constexpr double kPlateW = 44;  // the back and pause buttons
constexpr double kPlateH = 40;
constexpr double kLabelX = 52;
constexpr double kMinLabelW = 120;
constexpr double kMaxLabelW = 200;
constexpr double kCounterW = 62;
constexpr double kTimeW = 72;
constexpr double kTimeH = 28;

constexpr double kMaxActionW = 150;
constexpr double kGroupGap = 12;  // least gap between the labelled buttons and the icons

Rect middleOf(const Rect& bar, double x, double w, double h) { return {x, bar.y + (bar.h - h) / 2, w, h}; }

// The label gets the header's room between the back button and the time, within sensible bounds.
void layHeader(PlayingLayout& layout) {
  const Rect& header = layout.header;
  const double right = header.x + header.w;
  layout.back = middleOf(header, header.x, kPlateW, kPlateH);
  layout.pause = middleOf(header, right - kPlateW, kPlateW, kPlateH);
  layout.time = middleOf(header, layout.pause.x - kGap - kTimeW, kTimeW, kTimeH);
  const double labelX = header.x + kLabelX;
  const double counters = static_cast<double>(layout.counters.size()) * kCounterW;
  const double labelW = std::clamp(layout.time.x - labelX - counters, kMinLabelW, kMaxLabelW);
  layout.label = middleOf(header, labelX, labelW, header.h);
  double x = labelX + labelW;
  for (Rect& counter : layout.counters) {
    counter = middleOf(header, x, kCounterW, header.h);
    x += kCounterW;
  }
}

// The icon buttons are squares. The labelled buttons share the rest, up to a maximum width.
void layActions(PlayingLayout& layout, double buttonH) {
  constexpr int kLabelled = 3;
  const Rect& bar = layout.actions;
  const double icons = 3 * buttonH + 2 * kGap;
  const double room = bar.w - icons - kGroupGap - (kLabelled - 1) * kGap;
  const double labelledW = std::min(room / kLabelled, kMaxActionW);
  double x = bar.x;
  for (int i = 0; i < static_cast<int>(layout.buttons.size()); ++i) {
    if (i == kLabelled) x = bar.x + bar.w - icons;
    const double w = i < kLabelled ? labelledW : buttonH;
    layout.buttons[static_cast<std::size_t>(i)] = middleOf(bar, x, w, buttonH);
    x += w + kGap;
  }
}

Rect centred(const Rect& around, double w, double h) {
  return {around.x + (around.w - w) / 2, around.y + (around.h - h) / 2, w, h};
}

}  // namespace

PlayingLayout playingLayout(double w, double h) {
  const bool narrow = w < kNarrowWindow;
  const double headerH = narrow ? 46 : 54;
  const double actionsH = narrow ? 54 : 64;
  const double margin = ui::feltFrameMargin(w, h) + kFrameGap;
  const double corner = ui::feltCornerSize(w, h) + kFrameGap;
  const double barX = margin + corner;
  const double barW = w - 2 * barX;
  const double actionsY = h - margin - actionsH;
  PlayingLayout layout;
  layout.header = {barX, margin, barW, headerH};
  layout.board = {margin, margin + headerH, w - 2 * margin, actionsY - margin - headerH};
  layout.actions = {barX, actionsY, barW, actionsH};
  layHeader(layout);
  layActions(layout, narrow ? 40 : 44);
  return layout;
}

PanelLayout noMovesPanel(double w, const Rect& board, int answers) {
  constexpr double kInset = 20;
  constexpr double kButtonH = 40;
  const Rect panel = centred(board, std::min(w - 40, 340.0), 120);
  const double half = (panel.w - 2 * kInset - kGap) / 2;
  const double top = panel.y + panel.h - kInset - kButtonH;
  const double right = panel.x + panel.w - kInset - half;
  return {.panel = panel,
          .titleTop = panel.y + 22,
          .first = {panel.x + kInset, top, half, kButtonH},
          .second = {answers == 1 ? panel.x + (panel.w - half) / 2 : right, top, half, kButtonH}};
}

PanelLayout pausePanel(double w, double h) {
  constexpr double kInset = 24;
  constexpr double kButtonH = 44;
  const Rect panel = centred({0, 0, w, h}, std::min(w - 40, 300.0), 200);
  const Rect second = {panel.x + kInset, panel.y + panel.h - kInset - kButtonH, panel.w - 2 * kInset,
                       kButtonH};
  return {.panel = panel,
          .titleTop = panel.y + 24,
          .first = {second.x, second.y - 12 - kButtonH, second.w, kButtonH},
          .second = second};
}

}  // namespace screens
