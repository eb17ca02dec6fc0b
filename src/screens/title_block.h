// title_block.h: the game's name on the splash screen and in the menu: a glowing word above a word on tiles,
// and the tagline below. Knows no screen. Units: logical pixels, seconds.
#pragma once

#include "ui/context.h"

namespace screens {

struct TitleBlock {
  double wordSize;  // font size of the glowing word
  double tileW;     // width of a tile of the second word

  // At most the given sizes, reduced to fit a window of width w.
  static TitleBlock fitting(double w, double wordSize, double tileW);
  // From the top of the glowing word to the bottom of the tiles.
  double height() const;
};

// Draws both words, horizontally centred in the window. The tiles start to fall at `startTime`.
void drawTitleBlock(const ui::Ctx& ctx, const TitleBlock& title, double top, double startTime);

// Draws the tagline, horizontally centred in the window; and its rectangle.
void drawTagline(const ui::Ctx& ctx, double top, double size);
ui::Rect taglineRect(const ui::Ctx& ctx, double top, double size);

}  // namespace screens
