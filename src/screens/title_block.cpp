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

constexpr double kWordLine = 1.25;  // of the glowing word, in letter sizes
constexpr double kGap = 6;

constexpr const char* kWord = "Quenlock's";

double tilesTop(const TitleBlock& title) { return kWordLine * title.wordSize + kGap; }

// Where the glowing word's box begins so that it ends above the tiles. Lines are higher in some fonts than in
// DejaVu; which one "sans" is depends on the machine, and for this word of Latin letters not on the language.
double wordTop(const ui::Ctx& ctx, const TitleBlock& title, double top) {
  double w = 0;
  double h = 0;
  ui::measureText(ctx.cr, kWord, {.size = title.wordSize, .bold = true}, w, h);
  return top + std::min(0.0, kWordLine * title.wordSize - h);
}

}  // namespace

TitleBlock TitleBlock::fitting(double w, double wordSize, double tileW) {
  // The tiles take 7.84 widths of one; the word takes 6.15 sizes in DejaVu, 0.7 more with its glow, and other
  // fonts may be wider.
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
