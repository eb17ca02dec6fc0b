#include "screens/menu_layout.h"

#include <algorithm>

#include "ui/felt.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kNarrowWindow = 620;
constexpr double kLowWindow = 600;
// The window size that kRoomy is made for. Its measures scale with the window, within the bounds below.
constexpr double kUsualW = 1100;
constexpr double kUsualH = 760;
constexpr double kLeastScale = 0.8;
constexpr double kMostScale = 1.6;

constexpr double kFrameGap = 10;  // between the golden frame and the content
constexpr double kFooterW = 180;  // slightly more than its longer line
constexpr double kTaglineGap = 10;
constexpr double kTaglineH = 17;

struct Measures {
  double wordSize;
  double tileW;
  double columnW;
  double continueH;
  double newGameH;
  double entryH;
  double gap;       // between plaques
  double titleGap;  // above the plaques
  double fontSize;
};
// The column is as wide as the word on tiles, but never so narrow that a label must shrink in any language.
constexpr double kLeastColumnW = 440;
constexpr Measures kRoomy = {70, 62, 478, 64, 56, 54, 14, 36, 18};
constexpr Measures kCompact = {46, 42, kLeastColumnW, 52, 46, 44, 10, 24, 16};

Measures scaled(const Measures& m, double s) {
  return {m.wordSize * s, m.tileW * s, m.columnW * s,  m.continueH * s, m.newGameH * s,
          m.entryH * s,   m.gap * s,   m.titleGap * s, m.fontSize * s};
}

double plaquesHeight(const Measures& m) { return m.continueH + m.newGameH + 2 * m.entryH + 3 * m.gap; }

void layPlaques(MenuLayout& layout, const Measures& m, double x, double top, double columnW) {
  const double half = (columnW - m.gap) / 2;
  const double entriesTop = top + m.continueH + m.newGameH + 2 * m.gap;
  layout.plaques[0] = {x, top, columnW, m.continueH};
  layout.plaques[1] = {x, top + m.continueH + m.gap, columnW, m.newGameH};
  for (int i = 0; i < 4; ++i) {
    const int column = i % 2;
    const int row = i / 2;
    layout.plaques[static_cast<std::size_t>(2 + i)] = {x + column * (half + m.gap),
                                                       entriesTop + row * (m.entryH + m.gap), half, m.entryH};
  }
}

}  // namespace

MenuLayout menuLayout(double w, double h) {
  const bool compact = w < kNarrowWindow || h < kLowWindow;
  const double scale = std::clamp(std::min(w / kUsualW, h / kUsualH), kLeastScale, kMostScale);
  const Measures m = compact ? kCompact : scaled(kRoomy, scale);
  const double margin = ui::feltFrameMargin(w, h) + kFrameGap;
  const double columnW = std::min(std::max(m.columnW, kLeastColumnW), w - 2 * margin);

  MenuLayout layout;
  layout.title = TitleBlock::fitting(w, m.wordSize, m.tileW);
  layout.fontSize = m.fontSize;
  layout.footerBottom = h - margin;
  layout.footer = {(w - kFooterW) / 2, h - margin - ui::kFooterHeight, kFooterW, ui::kFooterHeight};
  const double titleH = layout.title.height() + (compact ? 0 : kTaglineGap + kTaglineH);
  const double room = layout.footerBottom - ui::kFooterHeight - margin;
  layout.titleTop = margin + std::max(0.0, room - titleH - m.titleGap - plaquesHeight(m)) / 2;
  if (!compact) layout.taglineTop = layout.titleTop + layout.title.height() + kTaglineGap;
  layPlaques(layout, m, (w - columnW) / 2, layout.titleTop + titleH + m.titleGap, columnW);
  return layout;
}

}  // namespace screens
