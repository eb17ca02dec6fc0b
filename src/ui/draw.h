// draw.h: the strokes every picture is made of: shapes, a soft shadow, text in the current language. Knows
// cairo and pango, and nothing of tiles, screens or textures. Units: logical pixels, x right, y down. A
// colour is 0xRRGGBB (the top byte is ignored) and always comes with its own opacity `alpha`, 0 to 1. Main
// thread only: the texts share one layout.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string_view>

#include "ui/context.h"

namespace ui {

// Where a text's x lies on its box.
enum class Align : int { Left, Center, Right };

struct TextStyle {
  const char* family = "sans";  // a missing one is replaced by fontconfig
  double size = 14;             // in pixels; nothing is drawn with a size that is not positive
  bool bold = false;
  bool italic = false;
  std::uint32_t color = 0;
  double alpha = 1;
  Align align = Align::Left;
  double maxWidth = 0;             // a wider text is shrunk to fit, to an eighth of a pixel; 0 or less: never
  double minScale = 0.6;           // but never to less than this part of `size`, even if it then sticks out
  const char* language = nullptr;  // whose fonts are preferred; null: the current one's
};

// `rect` made smaller by `inset` on every side.
Rect insetRect(const Rect& rect, double inset);

// Makes the colour the context's source.
void setColor(cairo_t* cr, std::uint32_t color, double alpha);
// Adds the colour to a gradient; `offset` 0 is its start, 1 its end.
void addStop(cairo_pattern_t* pattern, double offset, std::uint32_t color, double alpha);

void fillRect(cairo_t* cr, const Rect& rect, std::uint32_t color, double alpha);

// Adds the closed outline to the path, without drawing it. A radius of more than half the shorter side gives
// a capsule, one of 0 or less sharp corners.
void roundedRectPath(cairo_t* cr, const Rect& rect, double radius);
void fillRoundedRect(cairo_t* cr, const Rect& rect, double radius, std::uint32_t color, double alpha);
void strokeRoundedRect(cairo_t* cr, const Rect& rect, double radius, double lineWidth, std::uint32_t color,
                       double alpha);

void fillCircle(cairo_t* cr, double cx, double cy, double r, std::uint32_t color, double alpha);
void strokeCircle(cairo_t* cr, double cx, double cy, double r, double lineWidth, std::uint32_t color,
                  double alpha);

void drawLine(cairo_t* cr, double x0, double y0, double x1, double y1, double lineWidth, std::uint32_t color,
              double alpha);

// Paints the shadow of the current path, moved by (dx, dy) and spreading `blur` beyond its edge. In its
// middle it is a little fainter than `alpha` (0.33 for 0.4); it is darkest just within the edge (0.55), where
// the rings of the blur lie on it. The path is still there afterwards, to be filled.
void softShadowFromPath(cairo_t* cr, double dx, double dy, double blur, std::uint32_t color, double alpha);

// Darkens or lightens `rect` by the colour, fading out in an even curve to nothing `reachX` and `reachY`
// beyond it: a patch without an edge, for texts on a restless ground.
void drawSoftPatch(cairo_t* cr, const Rect& rect, double reachX, double reachY, std::uint32_t color,
                   double alpha);

// The size of the text's box as drawText would draw it, shrinking included, in whole pixels. An empty text is
// 0 wide and one line high.
void measureText(cairo_t* cr, std::string_view text, const TextStyle& style, double& width, double& height);

// How far below the top of its box the text's ink ends, which depends on the font.
double inkBottom(cairo_t* cr, std::string_view text, const TextStyle& style);

// Draws with the top of the text's box at y, and x on it where `style.align` says. This and all text below
// begins on the nearest whole device pixel, unless the context is turned.
void drawText(cairo_t* cr, double x, double y, std::string_view text, const TextStyle& style);

// Draws in the middle of the rectangle's height, at its left edge, in its middle or at its right edge as
// `style.align` says, shrunk to its width.
void drawTextIn(cairo_t* cr, const Rect& rect, std::string_view text, const TextStyle& style);

// Draws with the middle of the text's box at (cx, cy), whatever `style.align` says.
void drawTextCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style);

// Adds the outlines of the same letters in the same place to the path, without drawing them.
void textPathCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style);

// Draws the text broken into lines, in a column of this width whose top left corner is (x, y); the lines lie
// in it as `style.align` says, whichever way the text runs. A word wider than the column is broken.
// `maxWidth` and `minScale` do not count.
void drawWrappedText(cairo_t* cr, double x, double y, double width, std::string_view text,
                     const TextStyle& style);
// The height of these lines, in whole pixels; 0 for an empty text.
double wrappedTextHeight(cairo_t* cr, double width, std::string_view text, const TextStyle& style);

}  // namespace ui
