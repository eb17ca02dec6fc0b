// draw.h: the basics of drawing: shapes, a soft shadow, text in the current language. Knows cairo and pango,
// but no tiles, screens or textures. Units: logical pixels, x right, y down. A colour is 0xRRGGBB (the top
// byte is ignored); its opacity `alpha`, 0 to 1, is given separately. Main thread only: all texts share one
// layout.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <string_view>

#include "ui/context.h"

namespace ui {

// Which part of a text's box lies at its x.
enum class Align : int { Left, Center, Right };

struct TextStyle {
  const char* family = "sans";  // fontconfig replaces a missing one
  double size = 14;             // in pixels; nothing is drawn unless it is positive
  bool bold = false;
  bool italic = false;
  std::uint32_t color = 0;
  double alpha = 1;
  Align align = Align::Left;
  double maxWidth = 0;    // a wider text is shrunk in steps of an eighth of a pixel; 0 or less: never
  double minScale = 0.6;  // the least part of `size` it is shrunk to, even if it then sticks out
  const char* language = nullptr;  // its fonts are preferred; null: the current language
};

// `rect` shrunk by `inset` on every side.
Rect insetRect(const Rect& rect, double inset);

// Makes the colour the context's source.
void setColor(cairo_t* cr, std::uint32_t color, double alpha);
// Adds the colour to a gradient; `offset` 0 is its start, 1 its end.
void addStop(cairo_pattern_t* pattern, double offset, std::uint32_t color, double alpha);

void fillRect(cairo_t* cr, const Rect& rect, std::uint32_t color, double alpha);

// Adds the closed outline to the path without drawing it. A radius above half the shorter side gives a
// capsule, one of 0 or less sharp corners.
void roundedRectPath(cairo_t* cr, const Rect& rect, double radius);
void fillRoundedRect(cairo_t* cr, const Rect& rect, double radius, std::uint32_t color, double alpha);
void strokeRoundedRect(cairo_t* cr, const Rect& rect, double radius, double lineWidth, std::uint32_t color,
                       double alpha);

void fillCircle(cairo_t* cr, double cx, double cy, double r, std::uint32_t color, double alpha);
void strokeCircle(cairo_t* cr, double cx, double cy, double r, double lineWidth, std::uint32_t color,
                  double alpha);

void drawLine(cairo_t* cr, double x0, double y0, double x1, double y1, double lineWidth, std::uint32_t color,
              double alpha);

// Paints the shadow of the current path, moved by (dx, dy) and reaching `blur` beyond its edge. Its middle is
// a little fainter than `alpha` (0.33 for 0.4). It is darkest just inside the edge (0.55), where the rings of
// the blur add up. The path stays, ready to be filled.
void softShadowFromPath(cairo_t* cr, double dx, double dy, double blur, std::uint32_t color, double alpha);

// Tints `rect` with the colour. The tint fades out smoothly `reachX` and `reachY` beyond it: a patch without
// an edge, behind texts on a busy background.
void drawSoftPatch(cairo_t* cr, const Rect& rect, double reachX, double reachY, std::uint32_t color,
                   double alpha);

// Sets `width` and `height` to the size of the text's box in whole pixels, shrunk as drawText would shrink
// it. An empty text is 0 wide and one line high. A font size that is not positive gives 0 x 0.
void measureText(cairo_t* cr, std::string_view text, const TextStyle& style, double& width, double& height);

// How far the text's ink reaches below the top of its box, which depends on the font. 0 if there is nothing
// to draw.
double inkBottom(cairo_t* cr, std::string_view text, const TextStyle& style);

// Draws with the top of the text's box at y; `style.align` says which part of the box lies at x. This and the
// other functions that draw text start it on the nearest whole device pixel, unless the context is rotated.
void drawText(cairo_t* cr, double x, double y, std::string_view text, const TextStyle& style);

// Draws vertically centred in the rectangle, at its left edge, middle or right edge as `style.align` says.
// The text shrinks to the rectangle's width; `style.maxWidth` is ignored.
void drawTextIn(cairo_t* cr, const Rect& rect, std::string_view text, const TextStyle& style);

// Draws with the middle of the text's box at (cx, cy). Ignores `style.align`.
void drawTextCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style);

// Adds the outlines of the same letters at (cx, cy) to the path, without drawing them or moving them to a
// pixel.
void textPathCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style);

// Draws the text broken into lines, in a column of `width` whose top left corner is (x, y). `style.align`
// places the lines in it, whatever the text's direction. A word wider than the column is broken. Ignores
// `maxWidth` and `minScale`.
void drawWrappedText(cairo_t* cr, double x, double y, double width, std::string_view text,
                     const TextStyle& style);
// The height of these lines in whole pixels; 0 if there is nothing to draw.
double wrappedTextHeight(cairo_t* cr, double width, std::string_view text, const TextStyle& style);

}  // namespace ui
