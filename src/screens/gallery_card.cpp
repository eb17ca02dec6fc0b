#include "screens/gallery_card.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "resources/i18n.h"
#include "rules/table_themes.h"
#include "screens/card.h"
#include "screens/gallery_layout.h"
#include "screens/solve_picture.h"
#include "ui/draw.h"
#include "ui/format.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/scenes.h"
#include "ui/stars.h"

namespace screens {
namespace {

using ui::Rect;

constexpr double kTextGap = 8;  // least gap between two texts on one line
constexpr double kStarRadius = 6;

// Rounds to whole device pixels, where a picture is copied without blurring.
double onPixel(double length) { return std::round(length * ui::gpuScale()) / ui::gpuScale(); }

// The largest rectangle with the proportions w : h in the middle of `area`.
Rect fitted(const Rect& area, double w, double h) {
  const double scale = std::min(area.w / w, area.h / h);
  return {onPixel(area.x + (area.w - w * scale) / 2), onPixel(area.y + (area.h - h * scale) / 2), w * scale,
          h * scale};
}

void paintTexts(cairo_t* cr, const SolveCardLayout& layout, const store::SolveEntry& entry) {
  ui::TextStyle time = {.size = 15, .color = ui::palette::kLightText, .align = ui::Align::Right};
  const std::string played = ui::formatTime(entry.elapsedMs);
  double timeW = 0;
  double timeH = 0;
  time.maxWidth = (layout.right - layout.left) / 2;
  ui::measureText(cr, played, time, timeW, timeH);
  ui::drawText(cr, layout.right, layout.firstTop, played, time);
  ui::drawText(cr, layout.left, layout.firstTop,
               i18n::tr("playing.levelLabel", {{"n", std::to_string(entry.level)}}),
               {.size = 15,
                .bold = true,
                .color = ui::palette::kCream,
                .maxWidth = layout.right - layout.left - timeW - kTextGap});
  ui::starsInline(cr, layout.starsX, layout.starsY, entry.stars, kStarRadius);
  ui::drawText(cr, layout.right, layout.secondTop, ui::formatDate(entry.solvedAt),
               {.size = 12, .color = ui::palette::kMutedText, .align = ui::Align::Right});
}

void paintPicture(cairo_t* cr, const Rect& area, cairo_surface_t* picture) {
  const int w = cairo_image_surface_get_width(picture);
  const int h = cairo_image_surface_get_height(picture);
  const Rect place = fitted(area, w, h);
  cairo_translate(cr, place.x, place.y);
  cairo_scale(cr, place.w / w, place.h / h);
  cairo_set_source_surface(cr, picture, 0, 0);
  cairo_pattern_set_extend(cairo_get_source(cr), CAIRO_EXTEND_PAD);
  cairo_rectangle(cr, 0, 0, w, h);
  cairo_fill(cr);
}

// Paints the board the way a saved picture shows it.
void paintBoard(cairo_t* cr, const Rect& area, int level, const mj::GameState& board) {
  const Rect place = fitted(area, 1, 1);
  cairo_translate(cr, place.x, place.y);
  cairo_scale(cr, place.w / kSolvePictureSide, place.h / kSolvePictureSide);
  cairo_rectangle(cr, 0, 0, kSolvePictureSide, kSolvePictureSide);
  cairo_clip(cr);
  ui::drawCapture(cr, board, *mj::tableThemeForLevel(level), kSolvePictureSide);
}

}  // namespace

int cardPictureSide(double cardW, double cardH) {
  const Rect area = solveCardLayout(cardW, cardH).picture;
  return ui::gpuPixels(std::min(area.w, area.h));
}

void paintCard(cairo_t* cr, double cardW, double cardH, const store::SolveEntry& entry,
               const CardPicture& shown) {
  const SolveCardLayout layout = solveCardLayout(cardW, cardH);
  drawCardPlate(cr, {0, 0, cardW, cardH});
  paintTexts(cr, layout, entry);
  cairo_save(cr);
  if (shown.picture != nullptr) {
    paintPicture(cr, layout.picture, shown.picture);
  } else {
    paintBoard(cr, layout.picture, entry.level, *shown.board);
  }
  cairo_restore(cr);
}

}  // namespace screens
