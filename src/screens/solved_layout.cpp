#include "screens/solved_layout.h"

#include <algorithm>

#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/widgets.h"

namespace screens {
namespace {

using ui::Rect;

constexpr double kWideAspect = 1.15;
constexpr double kWideWindow = 900;
constexpr double kFrameGap = 6;                     // between the golden frame and the content
constexpr double kGap = 8;                          // between buttons, and at the sides of the info
constexpr double kFooterH = ui::kFooterHeight + 6;  // includes the space above it
constexpr double kButtonH = 40;

constexpr double kInfoShare = 1.0 / 3;  // of the width, for the info beside the board
constexpr double kInfoH = 248;
constexpr double kMaxButtonsGap = 28;
constexpr double kMaxColumnW = 300;  // of a column of buttons

constexpr double kFlatShare = 0.38;  // of the height, for the info above the board
constexpr double kMaxFlatH = 230;
constexpr double kMaxRowW = 780;  // of a row of buttons

constexpr double kWidePanel = 200;
constexpr double kAwardW = 176;  // at a scale of 1
constexpr double kAwardH = 68;
constexpr double kStarsGap = 16;
constexpr double kHeadlineH = 1.4;  // relative to its font size
constexpr double kHeadlineGap = 8;
constexpr double kLineH = 25;
constexpr double kMaxFlatW = 720;  // with a larger one the two halves would look unrelated

Rect middleOf(const Rect& around, double w, double h) {
  return {around.x + (around.w - w) / 2, around.y + (around.h - h) / 2, w, h};
}

void layBeside(SolvedLayout& layout, const Rect& inner, double corner) {
  const double w = inner.w * kInfoShare;
  const double buttonsH = 3 * kButtonH + 2 * kGap;
  const double gap = std::min(inner.h - kInfoH - buttonsH, kMaxButtonsGap);
  const Rect column = middleOf({inner.x, inner.y, w, inner.h}, w, kInfoH + gap + buttonsH);
  layout.info = {column.x, column.y, column.w, kInfoH};
  const double buttonsW = std::min(column.w - 2 * kGap, kMaxColumnW);
  layout.buttons = {column.x + (column.w - buttonsW) / 2, column.y + kInfoH + gap, buttonsW, buttonsH};
  // The board also keeps clear of the frame's corners.
  layout.board = ui::insetRect({inner.x + w, inner.y, inner.w - w, inner.h}, corner);
}

void layAbove(SolvedLayout& layout, const Rect& inner, double corner, double infoH) {
  const double buttonsW = std::min(inner.w - 2 * corner, kMaxRowW);
  layout.info = {inner.x, inner.y, inner.w, infoH};
  layout.buttons = {inner.x + (inner.w - buttonsW) / 2, inner.y + inner.h - kButtonH, buttonsW, kButtonH};
  layout.board = {inner.x, inner.y + infoH, inner.w, layout.buttons.y - kGap - inner.y - infoH};
}

}  // namespace

SolvedLayout solvedLayout(double w, double h) {
  const double margin = ui::feltFrameMargin(w, h) + kFrameGap;
  const double innerH = h - 2 * margin;
  const Rect inner = {margin, margin, w - 2 * margin, innerH - kFooterH};
  SolvedLayout layout;
  layout.wide = w > kWideAspect * h && w > kWideWindow;
  layout.footerBottom = margin + innerH;
  const double corner = ui::feltCornerSize(w, h);
  if (layout.wide) {
    layBeside(layout, inner, corner);
  } else {
    layAbove(layout, inner, corner, std::min(kFlatShare * innerH, kMaxFlatH));
  }
  layout.starScale = layout.info.w >= kWidePanel ? 1.15 : 0.85;
  return layout;
}

InfoLayout infoLayout(const Rect& panel, double starScale) {
  InfoLayout layout;
  layout.headlineSize = panel.w >= kWidePanel ? 32 : 24;
  const double starsH = kAwardH * starScale;
  const double headlineH = kHeadlineH * layout.headlineSize;
  const double linesH = kLineH * static_cast<double>(layout.lines.size());
  const double topH = starsH + kStarsGap + headlineH;
  const double allH = topH + kHeadlineGap + linesH;
  const bool flat = allH > panel.h;
  const Rect block =
      flat ? middleOf(panel, std::min(panel.w, kMaxFlatW), topH) : middleOf(panel, panel.w, allH);
  const double columnW = flat ? block.w / 2 : block.w;
  layout.stars = middleOf({block.x, block.y, columnW, starsH}, kAwardW * starScale, starsH);
  const double textW = columnW - 2 * kGap;
  layout.headline = {block.x + kGap, block.y + starsH + kStarsGap, textW, headlineH};
  const double linesX = block.x + block.w - columnW + kGap;
  double y = flat ? block.y + (topH - linesH) / 2 : block.y + topH + kHeadlineGap;
  for (Rect& line : layout.lines) {
    line = {linesX, y, textW, kLineH};
    y += kLineH;
  }
  return layout;
}

std::array<Rect, 3> solvedButtons(const Rect& rect, bool wide) {
  const double w = wide ? rect.w : (rect.w - 2 * kGap) / 3;
  const double h = wide ? (rect.h - 2 * kGap) / 3 : rect.h;
  std::array<Rect, 3> buttons;
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    const auto place = static_cast<double>(i);
    buttons[i] = wide ? Rect{rect.x, rect.y + place * (h + kGap), w, h}
                      : Rect{rect.x + place * (w + kGap), rect.y, w, h};
  }
  return buttons;
}

}  // namespace screens
