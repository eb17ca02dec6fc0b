// title_block.h: the game's name as the splash screen and the menu show it: the glowing word above the word
// on tiles, and the tagline below. Knows no screen. Units: logical pixels, seconds.
#pragma once

#include "ui/context.h"

namespace screens {

struct TitleBlock {
  double wordSize;  // of the glowing word's letters
  double tileW;     // of the other word's tiles

  // At most of these sizes, and no wider than a window of this width takes.
  static TitleBlock fitting(double w, double wordSize, double tileW);
  // From the top of the glowing word to the foot of the tiles.
  double height() const;
};

// Draws both words in the middle of the window's width. The tiles begin to drop at `startTime`.
void drawTitleBlock(const ui::Ctx& ctx, const TitleBlock& title, double top, double startTime);

// Draws the tagline in the middle of the window's width, and where that is.
void drawTagline(const ui::Ctx& ctx, double top, double size);
ui::Rect taglineRect(const ui::Ctx& ctx, double top, double size);

}  // namespace screens
