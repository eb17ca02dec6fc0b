#include "ui/tile.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <span>

#include "rules/tiles.h"
#include "ui/draw.h"
#include "ui/fonts.h"
#include "ui/gpu.h"
#include "ui/handles.h"
#include "ui/palette.h"

namespace ui {
namespace {

using std::numbers::pi;

struct TilePaint {
  unsigned body;
  unsigned face;
};
constexpr TilePaint kNormalPaint{0xB6A578, 0xF5EEDC};
constexpr TilePaint kSelectedPaint{0xE0A93A, 0xFFE49B};
constexpr unsigned kBodyEdge = 0x9C8B66;
constexpr unsigned kFaceEdge = 0xFFFAF0;
constexpr unsigned kInnerFrame = 0x78623A;
constexpr double kInnerFrameAlpha = 0.35;

// Rates of the pulses, in radians per second.
constexpr double kHintRate = 4.83321946706122;
constexpr double kSelectRate = 7.306029426953008;
constexpr double kMismatchRate = 29.919930034188507;

constexpr unsigned kBlue = 0x1E3A8A;
constexpr unsigned kRed = 0xB91C1C;
constexpr unsigned kGreen = 0x15803D;

// Centre of a pip, in fractions of the face's width and height.
struct Pip {
  double x;
  double y;
};
constexpr Pip kPips1[] = {{0.5, 0.5}};
constexpr Pip kPips2[] = {{0.5, 0.3}, {0.5, 0.7}};
constexpr Pip kPips3[] = {{0.3, 0.3}, {0.5, 0.5}, {0.7, 0.7}};
constexpr Pip kPips4[] = {{0.32, 0.32}, {0.68, 0.32}, {0.32, 0.68}, {0.68, 0.68}};
constexpr Pip kPips5[] = {{0.3, 0.3}, {0.7, 0.3}, {0.5, 0.5}, {0.3, 0.7}, {0.7, 0.7}};
constexpr Pip kPips6[] = {{0.32, 0.28}, {0.68, 0.28}, {0.32, 0.5}, {0.68, 0.5}, {0.32, 0.72}, {0.68, 0.72}};
constexpr Pip kPips7[] = {{0.32, 0.25}, {0.68, 0.25}, {0.5, 0.42}, {0.32, 0.58},
                          {0.68, 0.58}, {0.32, 0.8},  {0.68, 0.8}};
constexpr Pip kPips8[] = {{0.32, 0.22}, {0.68, 0.22}, {0.32, 0.42}, {0.68, 0.42},
                          {0.32, 0.62}, {0.68, 0.62}, {0.32, 0.82}, {0.68, 0.82}};
constexpr Pip kPips9[] = {{0.25, 0.25}, {0.5, 0.25},  {0.75, 0.25}, {0.25, 0.5}, {0.5, 0.5},
                          {0.75, 0.5},  {0.25, 0.75}, {0.5, 0.75},  {0.75, 0.75}};
constexpr std::span<const Pip> kPips[] = {kPips1, kPips2, kPips3, kPips4, kPips5,
                                          kPips6, kPips7, kPips8, kPips9};

// A rank out of range shows nine pips.
std::span<const Pip> pipsFor(int rank) {
  return 1 <= rank && rank <= 8 ? kPips[rank - 1] : std::span<const Pip>(kPips9);
}

void drawDot(cairo_t* cr, double cx, double cy, double faceW) {
  const double d = faceW * 0.18;
  const double ring = std::max(1.0, d * 0.16);
  fillCircle(cr, cx, cy, d / 2, 0x3B82F6, 1);
  strokeCircle(cr, cx, cy, d / 2 - ring / 2, ring, 0x16307A, 1);
  fillCircle(cr, cx - d * 0.17, cy - d * 0.19, d * 0.15, 0xFFFFFF, 0.75);
}

void drawStick(cairo_t* cr, double cx, double cy, double faceW, double faceH) {
  const double sw = faceW * 0.11;
  const double sh = faceH * 0.17;
  const double top = cy - sh / 2;
  fillRoundedRect(cr, {cx - sw / 2, top, sw, sh}, sw / 2, 0x177A3A, 1);
  fillRect(cr, {cx - sw / 2, top + sh * 0.46, sw, std::max(1.0, sh * 0.1)}, 0x0D5526, 1);
  fillRoundedRect(cr, {cx - sw * 0.275, top, sw * 0.55, sh * 0.18}, sw * 0.09, 0x34C759, 1);
}

void drawPips(cairo_t* cr, const Rect& face, const mj::FaceInfo& info) {
  for (const Pip& pip : pipsFor(info.rank)) {
    const double cx = face.x + pip.x * face.w;
    const double cy = face.y + pip.y * face.h;
    if (info.suit == mj::kDots) {
      drawDot(cr, cx, cy, face.w);
    } else {
      drawStick(cr, cx, cy, face.w, face.h);
    }
  }
}

// Draws a glyph. `centreY` and `size` are fractions of the face's height.
void drawGlyph(cairo_t* cr, const Rect& face, double centreY, double size, const std::string& glyph,
               unsigned color) {
  const TextStyle style{
      .family = kGlyphFamily, .size = face.h * size, .color = color, .maxWidth = face.w, .minScale = 0.6};
  drawTextCentered(cr, face.x + 0.5 * face.w, face.y + centreY * face.h, glyph, style);
}

void drawCharacter(cairo_t* cr, const Rect& face, const std::string& numeral) {
  drawGlyph(cr, face, 0.31, 0.32, numeral, kBlue);
  drawGlyph(cr, face, 0.68, 0.3, mj::kWanMark, kRed);
}

void drawDragon(cairo_t* cr, const Rect& face, const mj::FaceInfo& info) {
  if (info.rank == mj::kWhiteDragon) {
    const Rect frame{face.x + face.w / 4, face.y + face.h / 4, face.w / 2, face.h / 2};
    strokeRoundedRect(cr, frame, face.w * 0.08, std::max(2.0, face.w * 0.05), kBlue, 1);
    return;
  }
  drawGlyph(cr, face, 0.5, 0.5, info.glyph, info.rank == mj::kRedDragon ? kRed : kGreen);
}

// Sizes in face widths.
struct Blossom {
  int petals;
  unsigned color;
  double petalW;
  double petalL;
  double roundness;  // corner radius in petal widths
};
constexpr Blossom kFlower{6, kRed, 0.16, 0.26, 0.5};
constexpr Blossom kSeason{4, kGreen, 0.1, 0.34, 0.3};

// Draws the number in the bottom right corner. It is raised if the font's digits sit so low that they would
// leave the face.
void drawNumber(cairo_t* cr, const Rect& face, const std::string& number, unsigned color) {
  constexpr double kFoot = 0.97;
  const TextStyle style{
      .family = "sans", .size = face.h * 0.16, .bold = true, .color = color, .align = Align::Right};
  const double top = std::min(face.h - 0.18 * face.h, kFoot * face.h - inkBottom(cr, number, style));
  drawText(cr, face.x + face.w - 0.06 * face.w, face.y + top, number, style);
}

void drawBlossom(cairo_t* cr, const Rect& face, const Blossom& blossom, int rank) {
  const double w = face.w;
  const double cx = face.x + w / 2;
  const double cy = face.y + face.h / 2;
  const double pw = w * blossom.petalW;
  const double pl = w * blossom.petalL;
  for (int i = 0; i < blossom.petals; ++i) {
    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_rotate(cr, i * 2 * pi / blossom.petals);
    fillRoundedRect(cr, {-pw / 2, -0.13 * w - pl / 2, pw, pl}, pw * blossom.roundness, blossom.color, 1);
    cairo_restore(cr);
  }
  fillCircle(cr, cx, cy, w * 0.1, palette::kGold, 1);
  strokeCircle(cr, cx, cy, w * 0.1, 1, 0x000000, 0.15);

  drawNumber(cr, face, std::to_string(rank + 1), blossom.color);
}

void drawBlank(cairo_t* cr, const Rect& rect, const TilePaint& paint, double alpha) {
  const Rect face = tileFaceRect(rect);
  const Rect inner{face.x + face.w * 0.08, face.y + face.h * 0.07, face.w * 0.84, face.h * 0.86};
  drawTileBlock(cr, rect, paint.body, paint.face, alpha);
  strokeRoundedRect(cr, inner, tileRadius(rect.w) * 0.7, 1, kInnerFrame, alpha * kInnerFrameAlpha);
}

// Fades the picture as one layer, so that overlapping strokes do not show through each other.
void drawPicture(cairo_t* cr, const Rect& faceRect, const std::string& face, double alpha) {
  if (face.empty()) return;
  if (alpha >= 1) {
    drawTileFace(cr, faceRect, face);
    return;
  }
  cairo_push_group(cr);
  drawTileFace(cr, faceRect, face);
  cairo_pop_group_to_source(cr);
  cairo_paint_with_alpha(cr, alpha);
}

// A slow wave between 0 and 1.
double breath(double time, double rate) { return 0.5 + 0.5 * std::sin(time * rate); }

struct TileJob {
  const std::string& face;
  double w;
  double h;
  bool selected;
};

void paintTileJob(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const TileJob*>(user);
  drawTileBase(cr, {0, 0, job.w, job.h}, job.face, {.selected = job.selected});
}

// --- the fan ---

// The foot of the middle tile in the fan's picture, and the picture's size, in tile widths. They leave room
// for the corners and shadows of the tilted tiles.
constexpr double kFanMiddle = 2.6;
constexpr double kFanStand = 1.7;
constexpr double kFanPictureW = 2 * kFanMiddle;
constexpr double kFanPictureH = 2.4;

void paintFan(cairo_t* cr, double tileW) {
  static constexpr const char* kFaces[] = {"dragRed", "wan1", "bam2", "dot5", "windE"};
  const double tileH = kTileAspect * tileW;
  const Rect rect{-tileW / 2, -tileH, tileW, tileH};
  int k = -2;
  for (const char* face : kFaces) {
    cairo_save(cr);
    cairo_translate(cr, (kFanMiddle + k * 0.56) * tileW, kFanStand * tileW);
    cairo_rotate(cr, k * 15 * pi / 180);
    roundedRectPath(cr, rect, tileRadius(tileW));
    softShadowFromPath(cr, 0, 3, 5, 0x000000, 0.35);
    cairo_new_path(cr);
    drawStaticTile(cr, rect, face, 1);
    cairo_restore(cr);
    ++k;
  }
}

struct FanPicture {
  CairoSurface pixels;
  double tileW = 0;
  double scale = 0;
};

// The fan's picture. Painted again only if size or scale changed: its shadows take longer than the rest of a
// frame.
const FanPicture& fanPicture(double tileW, double scale) {
  // Never destroyed: a screen may draw while the process ends.
  static auto& fan = *new FanPicture;
  if (fan.tileW == tileW && fan.scale == scale) return fan;
  fan = {CairoSurface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, gpuPixels(kFanPictureW * tileW),
                                                 gpuPixels(kFanPictureH * tileW))),
         tileW, scale};
  cairo_surface_set_device_scale(fan.pixels.get(), scale, scale);
  const CairoContext cr(cairo_create(fan.pixels.get()));
  paintFan(cr.get(), tileW);
  return fan;
}

}  // namespace

double hintGrowth(double time) { return 1 + 0.07 * breath(time, kHintRate); }
double hintAlpha(double time) { return 0.45 + 0.55 * breath(time, kHintRate); }
double selectAlpha(double time) { return 0.5 + 0.5 * breath(time, kSelectRate); }
double mismatchAlpha(double time) { return 0.15 + 0.85 * std::abs(std::sin(time * kMismatchRate)); }

double tileBevel(double w) { return std::max(3.0, std::round(w * 0.1)); }
double tileRadius(double w) { return std::max(4.0, std::round(w * 0.16)); }

Rect tileFaceRect(const Rect& tile) {
  const double bevel = tileBevel(tile.w);
  return {tile.x, tile.y, tile.w - bevel, tile.h - bevel};
}

Rect scaledRect(const Rect& rect, double factor) {
  return {rect.x - (factor - 1) * rect.w / 2, rect.y - (factor - 1) * rect.h / 2, rect.w * factor,
          rect.h * factor};
}

void drawTileBlock(cairo_t* cr, const Rect& rect, unsigned body, unsigned face, double alpha) {
  const double radius = tileRadius(rect.w);
  const Rect faceRect = tileFaceRect(rect);
  fillRoundedRect(cr, rect, radius, body, alpha);
  strokeRoundedRect(cr, rect, radius, 1, kBodyEdge, alpha);
  fillRoundedRect(cr, faceRect, radius, face, alpha);
  strokeRoundedRect(cr, faceRect, radius, 1, kFaceEdge, alpha);
}

void drawTileFace(cairo_t* cr, const Rect& faceRect, const std::string& face) {
  const mj::FaceInfo info = mj::faceInfo(face);
  switch (info.suit) {
    case mj::kCharacters:
      return drawCharacter(cr, faceRect, info.glyph);
    case mj::kWinds:
      return drawGlyph(cr, faceRect, 0.5, 0.5, info.glyph, kBlue);
    case mj::kDragons:
      return drawDragon(cr, faceRect, info);
    case mj::kFlowers:
      return drawBlossom(cr, faceRect, kFlower, info.rank);
    case mj::kSeasons:
      return drawBlossom(cr, faceRect, kSeason, info.rank);
    default:
      return drawPips(cr, faceRect, info);
  }
}

void drawTileBase(cairo_t* cr, const Rect& rect, const std::string& face, const TileVisual& visual) {
  drawBlank(cr, rect, visual.selected ? kSelectedPaint : kNormalPaint, visual.alpha);
  drawPicture(cr, tileFaceRect(rect), face, visual.alpha);
}

void drawStaticTile(cairo_t* cr, const Rect& rect, const std::string& face, double alpha) {
  cairo_save(cr);
  drawTileBase(cr, rect, face, {.alpha = alpha});
  cairo_restore(cr);
}

void drawTileGlow(cairo_t* cr, const Rect& rect, unsigned color, double fillAlpha, double strokeAlpha) {
  const double radius = tileRadius(rect.w);
  fillRoundedRect(cr, rect, radius, color, fillAlpha);
  strokeRoundedRect(cr, insetRect(rect, 2), radius, 4, color, strokeAlpha);
}

void drawTile(cairo_t* cr, const Rect& rect, const std::string& face, const TileVisual& visual) {
  const double radius = tileRadius(rect.w);
  const double a = visual.alpha;
  drawTileBase(cr, rect, face, visual);
  if (visual.hint) strokeRoundedRect(cr, tileFaceRect(rect), radius, 2, kHintColor, a);
  if (visual.dim) fillRoundedRect(cr, rect, radius, kDimColor, a * kDimAlpha);
  if (visual.hint) {
    const double g = hintGrowth(visual.time);
    strokeRoundedRect(cr, scaledRect(rect, g), radius * g, 3, kHintColor, a * hintAlpha(visual.time));
  }
  if (visual.selected) {
    const double p = selectAlpha(visual.time);
    drawTileGlow(cr, rect, kSelectColor, a * kSelectFillAlpha * p, a * p);
  }
  if (visual.mismatch) {
    const double f = mismatchAlpha(visual.time);
    drawTileGlow(cr, rect, kMismatchColor, a * kMismatchFillAlpha * f, a * f);
  }
}

double drawTileFan(cairo_t* cr, double cx, double cy, double tileW) {
  if (!(tileW > 0)) return 0;
  const FanPicture& fan = fanPicture(tileW, gpuScale());
  const double height = kTileFanH * tileW;
  // A failed surface would put the context into an error state.
  if (cairo_surface_status(fan.pixels.get()) != CAIRO_STATUS_SUCCESS) return height;
  // On whole device pixels, or the letters would blur.
  const auto snapped = [&](double place) { return std::round(place * fan.scale) / fan.scale; };
  cairo_save(cr);
  cairo_set_source_surface(cr, fan.pixels.get(), snapped(cx - kFanMiddle * tileW),
                           snapped(cy - kFanStand * tileW));
  cairo_paint(cr);
  cairo_restore(cr);
  return height;
}

SDL_Texture* tileTexture(const std::string& face, double w, double h, bool selected) {
  const int deviceW = gpuPixels(w);
  const int deviceH = gpuPixels(h);
  const std::string family = (selected ? "tileSel|" : "tile|") + face + "|";
  const std::string key = family + std::to_string(deviceW) + "x" + std::to_string(deviceH);
  TileJob job{face, w, h, selected};
  return gpuTextureOrStandIn(key, family, deviceW, deviceH, paintTileJob, &job);
}

}  // namespace ui
