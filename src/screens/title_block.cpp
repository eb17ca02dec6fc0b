#include "screens/title_block.h"

#include <algorithm>
#include <cmath>

#include "resources/i18n.h"
#include "ui/draw.h"
#include "ui/palette.h"
#include "ui/tile.h"
#include "ui/title.h"

namespace screens {
namespace {

constexpr double kWordLine = 1.25;  // height of the glowing word, relative to its font size
constexpr double kGap = 6;

constexpr const char* kWord = "Quenlock's";

double tilesTop(const TitleBlock& title) { return kWordLine * title.wordSize + kGap; }

// The top of the glowing word's box, moved up if needed so that it ends above the tiles. Some fonts have
// higher lines than DejaVu, and which font "sans" is depends on the machine. The language does not matter,
// since the word is Latin.
double wordTop(const ui::Ctx& ctx, const TitleBlock& title, double top) {
  double w = 0;
  double h = 0;
  ui::measureText(ctx.cr, kWord, {.size = title.wordSize, .bold = true}, w, h);
  return top + std::min(0.0, kWordLine * title.wordSize - h);
}

}  // namespace

TitleBlock TitleBlock::fitting(double w, double wordSize, double tileW) {
  // The tiles take 7.84 tile widths. The word takes 6.15 font sizes in DejaVu and 0.7 more with its glow;
  // other fonts may be wider.
  return {.wordSize = std::min(std::floor((w - 40) / 7.6), wordSize),
          .tileW = std::min(std::floor((w - 60) / 7.9), tileW)};
}

double TitleBlock::height() const { return tilesTop(*this) + std::round(ui::kTileAspect * tileW); }

void drawTitleBlock(const ui::Ctx& ctx, const TitleBlock& title, double top, double startTime) {
  ui::drawGlowTitle(ctx, ctx.w / 2, wordTop(ctx, title, top), kWord, title.wordSize);
  ui::drawTileTitle(ctx, ctx.w / 2, top + tilesTop(title), "MAHJONG", title.tileW, startTime);
}

ui::Rect taglineRect(const ui::Ctx& ctx, double top, double size) {
  double w = 0;
  double h = 0;
  ui::measureText(ctx.cr, i18n::tr("app.tagline"), {.size = size}, w, h);
  return {(ctx.w - w) / 2, top, w, h};
}

void drawTagline(const ui::Ctx& ctx, double top, double size) {
  ui::drawText(ctx.cr, ctx.w / 2, top, i18n::tr("app.tagline"),
               {.size = size, .color = ui::palette::kMutedText, .alpha = 0.6, .align = ui::Align::Center});
}

}  // namespace screens
