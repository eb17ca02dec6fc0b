#include "ui/title.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <numbers>
#include <string>

#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/tile.h"

namespace ui {
namespace {

constexpr std::uint32_t kGlowGold = 0xE8C44D;
constexpr std::uint32_t kGlowHighlight = 0xFFF7DF;
constexpr std::uint32_t kGlowShadow = 0xB8860B;

// Size of a glowing letter's picture in font sizes, with room for the halo.
constexpr double kPictureW = 1.2 + 0.7;
constexpr double kPictureH = 1.4 + 0.7;

constexpr int kHaloPasses = 3;
constexpr double kHaloStep = 0.035;  // growth from pass to pass

constexpr double kWavePeriod = 2.8;
constexpr double kWaveLead = 2.5;   // how far the crest runs beyond the word's ends, in letters
constexpr double kWaveReach = 1.6;  // how far the wave reaches from its crest, in letters
constexpr double kWaveLift = 2;     // pixels
constexpr double kWaveGrowth = 0.06;

constexpr std::array<std::uint32_t, 4> kInk = {0xB91C1C, 0x1E3A8A, 0x15803D, 0x8A6D1D};
constexpr std::uint32_t kTileBody = 0xC9B98F;
constexpr std::uint32_t kTileFace = 0xF5EEDC;
constexpr std::uint32_t kTileHighlight = 0xFFF3C4;
constexpr double kTileStep = 1.12;  // from tile to tile, in tile widths

constexpr double kDropDelay = 0.15;
constexpr double kDropStagger = 0.11;
constexpr double kDropTime = 0.46;
constexpr double kDropHeight = 0.9;  // in tile heights

// --- letters ---

std::size_t charLength(char first) {
  const auto byte = static_cast<unsigned char>(first);
  if (byte >= 0xF0 && byte <= 0xF7) return 4;
  if (byte >= 0xE0 && byte <= 0xEF) return 3;
  if (byte >= 0xC0 && byte <= 0xDF) return 2;
  return 1;
}

// Bold "sans" in English, for both titles. In another language an apostrophe may come from a font with taller
// lines and push the whole word down.
TextStyle letterStyle(double size, std::uint32_t color, double alpha) {
  return {.family = "sans", .size = size, .bold = true, .color = color, .alpha = alpha, .language = "en"};
}

void blitCentered(SDL_Texture* texture, double cx, double cy, double w, double h, double alpha) {
  gpuBlit(texture, cx - w / 2, cy - h / 2, w, h, alpha);
}

// --- the glowing word ---

struct GlowLetter {
  std::string_view text;
  double advance;
};

struct GlowWord {
  std::vector<GlowLetter> letters;
  double w = 0;
  double h = 0;
};

GlowWord measureWord(cairo_t* cr, std::string_view text, double size) {
  GlowWord word;
  const TextStyle style = letterStyle(size, kGlowGold, 1);
  for (const std::string_view letter : chars(text)) {
    double advance = 0;
    double height = 0;
    measureText(cr, letter, style, advance, height);
    word.letters.push_back({letter, advance});
    word.w += advance;
    word.h = std::max(word.h, height);
  }
  return word;
}

struct GlowPaint {
  std::uint32_t color;
  std::uint32_t haloColor;
  double haloAlpha;
};

void drawGlowLetter(cairo_t* cr, double cx, double cy, std::string_view letter, double size,
                    const GlowPaint& paint) {
  for (int pass = kHaloPasses; pass >= 1; --pass) {
    const double grown = size * (1 + kHaloStep * pass);
    drawTextCentered(cr, cx, cy, letter, letterStyle(grown, paint.haloColor, paint.haloAlpha));
  }
  drawTextCentered(cr, cx, cy, letter, letterStyle(size, paint.color, 1));
}

struct GlowJob {
  std::string_view letter;
  double size;
  std::uint32_t color;

  double w() const { return kPictureW * size; }
  double h() const { return kPictureH * size; }
};

void paintGlowLetter(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const GlowJob*>(user);
  drawGlowLetter(cr, job.w() / 2, job.h() / 2, job.letter, job.size, {job.color, job.color, 0.16});
}

std::string hex(std::uint32_t color) {
  std::array<char, 9> digits{};
  std::snprintf(digits.data(), digits.size(), "%06x", color);
  return digits.data();
}

// A length for a cache key, in quarters: fine enough to tell apart sizes that look different.
std::string quarters(double length) { return std::to_string(static_cast<int>(length * 4)); }

SDL_Texture* glowLetter(GlowJob job) {
  const std::string key = "glow|" + std::string(job.letter) + "|" + quarters(job.size) + "|" + hex(job.color);
  return gpuTexture(key, gpuPixels(job.w()), gpuPixels(job.h()), paintGlowLetter, &job);
}

// Strength of the wave at letter i of n, 0 to 1.
double waveAt(int i, int n, double time) {
  const double crest = (n + 2 * kWaveLead) * (std::fmod(time, kWavePeriod) / kWavePeriod) - kWaveLead;
  return std::max(0.0, 1 - std::abs(i - crest) / kWaveReach);
}

void blitGlowLetter(double cx, double cy, std::string_view letter, double size, double growth, double wave) {
  const GlowJob gold{letter, size, kGlowGold};
  blitCentered(glowLetter(gold), cx, cy, gold.w() * growth, gold.h() * growth, 1);
  if (wave <= 0.01) return;
  blitCentered(glowLetter({letter, size, kGlowHighlight}), cx, cy, gold.w() * growth, gold.h() * growth,
               wave);
}

// --- the word on tiles ---

void drawTitleTile(cairo_t* cr, const Rect& rect, std::string_view letter, std::uint32_t ink, double alpha) {
  const Rect face = tileFaceRect(rect);
  drawTileBlock(cr, rect, kTileBody, kTileFace, alpha);
  TextStyle style = letterStyle(rect.h * 0.5, ink, alpha);
  style.maxWidth = face.w;
  drawTextCentered(cr, face.x + face.w / 2, face.y + face.h / 2, letter, style);
}

void drawTileHighlight(cairo_t* cr, const Rect& rect, double alpha) {
  fillRoundedRect(cr, tileFaceRect(rect), tileRadius(rect.w), kTileHighlight, alpha);
}

struct TitleTileJob {
  std::string_view letter;
  double w;
  double h;
  std::uint32_t ink;
  bool highlight;
};

void paintTitleTile(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const TitleTileJob*>(user);
  const Rect rect{0, 0, job.w, job.h};
  if (job.highlight) return drawTileHighlight(cr, rect, 1);
  drawTitleTile(cr, rect, job.letter, job.ink, 1);
}

SDL_Texture* titleTile(std::string_view letter, double w, double h, std::uint32_t ink, bool highlight) {
  const std::string key =
      "ttl|" + std::string(letter) + "|" + quarters(w) + "|" + hex(ink) + (highlight ? "|1" : "|0");
  TitleTileJob job{letter, w, h, ink, highlight};
  return gpuTexture(key, gpuPixels(w), gpuPixels(h), paintTitleTile, &job);
}

// Progress of tile i's drop: negative before it begins, 1 or more at rest.
double dropProgress(int i, double sinceStart) {
  return (sinceStart - (kDropDelay + kDropStagger * i)) / kDropTime;
}

// A tile's pose in one frame.
struct TilePose {
  double dy;  // below its place
  double scale;
  double sway;  // factor of the width, which looks like a slight turn
  double alpha;
  double shine;  // opacity of the highlight
};

// Runs from 0 to 1 and overshoots a little on the way.
double easeOutBack(double progress) {
  const double p = progress - 1;
  return 1 + p * p * (2.4 * p + 1.4);
}

// Strength of the passing light on tile i of n, 0 to 0.55.
double shimmerAt(int i, int n, double time) {
  const double light = std::fmod(1.4 * time, n + 3) - 1.5;
  return 0.55 * std::max(0.0, 1 - std::abs(i - light));
}

TilePose tilePose(int i, int n, double tileH, double time, double dropped) {
  const double arrived = dropped < 1 ? easeOutBack(dropped) : 1;
  const double bob = std::sin(1.7 * time + 0.55 * i) * 0.05;
  const double turn = std::sin(1.2 * time + 0.6 * i) * 5 * std::numbers::pi / 180;
  return {.dy = (arrived * bob - (1 - arrived) * kDropHeight) * tileH,
          .scale = 0.82 + 0.18 * arrived,
          .sway = std::cos(turn * arrived),
          .alpha = arrived,
          .shine = arrived * shimmerAt(i, n, time)};
}

struct LetterTile {
  std::string_view letter;
  std::uint32_t ink;
  double cx;
  double cy;
  double w;
  double h;
};

void blitLetterTile(const LetterTile& tile, const TilePose& pose) {
  const double w = tile.w * pose.scale * pose.sway;
  const double h = tile.h * pose.scale;
  blitCentered(titleTile(tile.letter, tile.w, tile.h, tile.ink, false), tile.cx, tile.cy, w, h, pose.alpha);
  if (pose.shine <= 0) return;
  blitCentered(titleTile("", tile.w, tile.h, 0, true), tile.cx, tile.cy, w, h, pose.shine);
}

void drawLetterTile(cairo_t* cr, const LetterTile& tile, const TilePose& pose) {
  const Rect rect{-tile.w / 2, -tile.h / 2, tile.w, tile.h};
  cairo_save(cr);
  cairo_translate(cr, tile.cx, tile.cy);
  cairo_scale(cr, pose.sway * pose.scale, pose.scale);
  drawTitleTile(cr, rect, tile.letter, tile.ink, pose.alpha);
  if (pose.shine > 0) drawTileHighlight(cr, rect, pose.shine);
  cairo_restore(cr);
}

}  // namespace

std::vector<std::string_view> chars(std::string_view text) {
  std::vector<std::string_view> result;
  while (!text.empty()) {
    result.push_back(text.substr(0, charLength(text.front())));
    text.remove_prefix(result.back().size());
  }
  return result;
}

std::uint32_t mixColor(std::uint32_t color, double t) {
  const double part = std::clamp(t, 0.0, 1.0);
  std::uint32_t mixed = 0;
  for (const int shift : {16, 8, 0}) {
    const auto from = static_cast<double>((color >> shift) & 0xFFU);
    const auto to = static_cast<double>((kGlowHighlight >> shift) & 0xFFU);
    mixed |= static_cast<std::uint32_t>(from + (to - from) * part) << shift;
  }
  return mixed;
}

void drawGlowTitle(const Ctx& ctx, double cx, double top, std::string_view text, double size) {
  const GlowWord word = measureWord(ctx.cr, text, size);
  const auto n = static_cast<int>(word.letters.size());
  double x = cx - word.w / 2;
  for (int i = 0; i < n; ++i) {
    const GlowLetter& letter = word.letters[static_cast<std::size_t>(i)];
    const double wave = waveAt(i, n, ctx.time);
    const double growth = 1 + kWaveGrowth * wave;
    const double middleX = x + letter.advance / 2;
    const double middleY = top + word.h / 2 - kWaveLift * wave;
    if (gpuRenderer() != nullptr) {
      blitGlowLetter(middleX, middleY, letter.text, size, growth, wave);
    } else {
      drawGlowLetter(ctx.cr, middleX, middleY, letter.text, size * growth,
                     {mixColor(kGlowGold, wave), mixColor(kGlowShadow, wave), 0.12 + 0.1 * wave});
    }
    x += letter.advance;
  }
}

double drawTileTitle(const Ctx& ctx, double cx, double top, std::string_view text, double tileW,
                     double startTime) {
  const double tileH = std::round(kTileAspect * tileW);
  const std::vector<std::string_view> word = chars(text);
  const auto n = static_cast<int>(word.size());
  const double step = kTileStep * tileW;
  for (int i = 0; i < n && tileW > 0; ++i) {
    const double dropped = dropProgress(i, ctx.time - startTime);
    if (dropped < 0) break;
    const TilePose pose = tilePose(i, n, tileH, ctx.time, dropped);
    const LetterTile tile{.letter = word[static_cast<std::size_t>(i)],
                          .ink = kInk[static_cast<std::size_t>(i) % kInk.size()],
                          .cx = cx + (i + 0.5 - n / 2.0) * step,
                          .cy = top + tileH / 2 + pose.dy,
                          .w = tileW,
                          .h = tileH};
    if (gpuRenderer() != nullptr) {
      blitLetterTile(tile, pose);
    } else {
      drawLetterTile(ctx.cr, tile, pose);
    }
  }
  return tileH;
}

double tileTitleWidth(std::string_view text, double tileW) {
  return static_cast<double>(chars(text).size()) * kTileStep * tileW;
}

}  // namespace ui
