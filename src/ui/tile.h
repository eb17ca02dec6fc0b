// tile.h: one Mahjong tile: a rounded block whose lighter face sits at the top left; its darker body shows as
// thickness along the right and bottom edges. Knows faces by name, but no boards or games. Units: logical
// pixels, seconds, opacities 0 to 1.
#pragma once

#include <SDL.h>

#include <string>

#include "ui/context.h"

namespace ui {

// Height of a tile in tile widths.
inline constexpr double kTileAspect = 1.34;

struct TileVisual {
  bool selected = false;  // golden, under a pulsing red glow
  bool hint = false;      // green outline and pulsing green halo
  bool dim = false;       // not free: veiled
  bool mismatch = false;  // one of a refused pair: fast red flicker
  double alpha = 1;
  double time = 0;  // drives the pulses
};

// Opacities of the overlays. Each pulse has its own rate, so that two kinds on one board look different.
inline constexpr double kDimAlpha = 0.45;
inline constexpr double kSelectFillAlpha = 0.46;
inline constexpr double kMismatchFillAlpha = 0.4;
double hintGrowth(double time);     // the halo's size relative to the tile, 1 to 1.07
double hintAlpha(double time);      // 0.45 to 1, about 0.77 times a second
double selectAlpha(double time);    // 0.5 to 1, about 1.16 times a second
double mismatchAlpha(double time);  // 0.15 to 1, about 9.5 flashes a second

// Colours of the overlays, 0xRRGGBB.
inline constexpr unsigned kHintColor = 0x5ED6B5;
inline constexpr unsigned kDimColor = 0x061C14;
inline constexpr unsigned kSelectColor = 0xFF2D20;
inline constexpr unsigned kMismatchColor = 0xFF3B30;

// The thickness visible at the right and bottom edges, and the corner radius, of a tile of width w.
double tileBevel(double w);
double tileRadius(double w);
// The part of the tile that carries the picture.
Rect tileFaceRect(const Rect& tile);
// `rect` enlarged by `factor` about its centre.
Rect scaledRect(const Rect& rect, double factor);

// The block without a picture: body and face with their outlines.
void drawTileBlock(cairo_t* cr, const Rect& rect, unsigned body, unsigned face, double alpha);
// The picture alone. An unknown face shows a one of dots.
void drawTileFace(cairo_t* cr, const Rect& faceRect, const std::string& face);
// An unselected tile without overlays. An empty face name gives a blank tile, here and below.
void drawStaticTile(cairo_t* cr, const Rect& rect, const std::string& face, double alpha);
// Body, face, frame and picture. Uses only `selected` and `alpha` of `visual`.
void drawTileBase(cairo_t* cr, const Rect& rect, const std::string& face, const TileVisual& visual);
// drawTileBase and all overlays.
void drawTile(cairo_t* cr, const Rect& rect, const std::string& face, const TileVisual& visual);
// The red glow of a selected or refused tile: a tint and a thick frame just inside the edge.
void drawTileGlow(cairo_t* cr, const Rect& rect, unsigned color, double fillAlpha, double strokeAlpha);
// Height of the fan in tile widths.
inline constexpr double kTileFanH = 1.32 * kTileAspect;
// Five tiles fanned out. The middle one stands on (cx, cy); the tilted ones reach a little higher. Painted
// once for a size, then copied. Returns the height it occupies. If the width is not positive, draws nothing
// and returns 0.
double drawTileFan(cairo_t* cr, double cx, double cy, double tileW);

// The cached picture of drawTileBase for a tile of w x h. Null without a renderer or if it cannot be made. In
// a frame that needs many new pictures, one of another size may stand in (gpuTextureOrStandIn).
SDL_Texture* tileTexture(const std::string& face, double w, double h, bool selected);

}  // namespace ui
