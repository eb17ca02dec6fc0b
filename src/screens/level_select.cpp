#include <cairo.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <utility>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/card.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/miniature.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/draw.h"
#include "ui/focus.h"
#include "ui/gpu.h"
#include "ui/handles.h"
#include "ui/palette.h"
#include "ui/stars.h"
#include "ui/tile.h"

namespace screens {
namespace {

constexpr const char* kCardKey = "level|";  // prefix of the texture keys of the cards
constexpr ui::TextStyle kLabelStyle = {.size = 16, .bold = true, .color = ui::palette::kLightText};
constexpr ui::TextStyle kFactStyle = {
    .size = 12, .color = ui::palette::kMutedText, .align = ui::Align::Right};

constexpr std::uint32_t kLockedCover = 0x061C14;
constexpr double kLockedAlpha = 0.35;
constexpr double kLockedMiniature = 0.5;  // opacity, so that the padlock stands out

std::string counted(const char* key, int n) { return i18n::tr(key, {{"n", std::to_string(n)}}); }

constexpr double kRefusalTime = 0.48;  // as long as a mismatched pair is shown
constexpr double kRefusalFill = 0.35;
constexpr double kRefusalLine = 3;

// Fades out as `left` goes from 1 to 0.
void drawRefusal(cairo_t* cr, const ui::Rect& card, double left) {
  ui::fillRoundedRect(cr, card, kCardRadius, ui::kMismatchColor, kRefusalFill * left);
  ui::strokeRoundedRect(cr, ui::insetRect(card, kRefusalLine / 2), kCardRadius, kRefusalLine,
                        ui::kMismatchColor, left);
}

void drawPadlock(cairo_t* cr, double cx, double cy) {
  constexpr double kBodyW = 26;
  constexpr double kBodyH = 22;
  constexpr double kBodyRadius = 5;
  constexpr double kShackleRadius = 8;
  constexpr double kShackleWidth = 3.5;
  constexpr double kAlpha = 0.9;
  const double top = cy - (kBodyH - kShackleRadius - kShackleWidth / 2) / 2;
  ui::fillRoundedRect(cr, {cx - kBodyW / 2, top, kBodyW, kBodyH}, kBodyRadius, ui::palette::kMutedText,
                      kAlpha);
  cairo_new_path(cr);
  cairo_arc(cr, cx, top, kShackleRadius, std::numbers::pi, 2 * std::numbers::pi);
  cairo_set_line_width(cr, kShackleWidth);
  ui::setColor(cr, ui::palette::kMutedText, kAlpha);
  cairo_stroke(cr);
}

void drawLock(cairo_t* cr, const ui::Rect& card) {
  ui::fillRoundedRect(cr, card, kCardRadius, kLockedCover, kLockedAlpha);
  drawPadlock(cr, card.x + card.w / 2, card.y + card.h / 2);
}

// Null if cairo cannot create the picture.
ui::CairoSurface paintedMiniature(const std::vector<mj::Slot>& slots, double side) {
  const int pixels = ui::gpuPixels(side);
  ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels));
  if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_surface_set_device_scale(picture.get(), ui::gpuScale(), ui::gpuScale());
  const ui::CairoContext cr(cairo_create(picture.get()));
  paintMini(cr.get(), {0, 0, side, side}, slots);
  return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(picture) : nullptr;
}

// Draws at whole device pixels. Elsewhere the picture would be blurred and slow to draw.
void drawPicture(cairo_t* cr, cairo_surface_t* picture, double x, double y, double alpha) {
  const double scale = ui::gpuScale();
  cairo_set_source_surface(cr, picture, std::round(x * scale) / scale, std::round(y * scale) / scale);
  cairo_paint_with_alpha(cr, alpha);
}

// Shows the hundred levels in pages of ten, with their layouts and the stars won. Levels the player has not
// reached are locked. Each card is painted once and cached as a texture.
class LevelSelect : public ui::Screen {
 public:
  LevelSelect();
  ~LevelSelect() override { ui::gpuDropTextures(kCardKey, ui::kKeepNone); }

  void update(ui::Ctx& ctx) override;

 private:
  void turnTo(int newPage);
  void refuse(int i, double now);
  void cards(ui::Ctx& ctx);
  void drawCard(ui::Ctx& ctx, const ui::Rect& rect, int i);
  void choose(int i, double now);
  std::string cardKey(int i) const;
  void paintCard(cairo_t* cr, const ui::Rect& rect, int i);
  void drawTexts(cairo_t* cr, const LevelCardLayout& layout, int i) const;
  void drawMiniature(cairo_t* cr, const ui::Rect& rect, const mj::LevelConfig& config, double alpha);

  int levelAt(int i) const { return kLevelsPerPage * page + i + 1; }
  bool isLocked(int i) const { return levelAt(i) > career.progress.currentLevel; }
  // The player's best on the level; 0 if it is not solved yet.
  int starsAt(int i) const { return career.bests[static_cast<std::size_t>(levelAt(i) - 1)].stars; }

  const store::Career career = store::loadCareer();
  int page;
  double scroll = 0;
  // A locked card glows for a moment after a click.
  struct Refusal {
    int card;      // cppcheck-suppress unusedStructMember
    double until;  // cppcheck-suppress unusedStructMember
  };
  std::optional<Refusal> refusal;
  // Keyed by level, which determines the layout, and by size in device pixels. All have the same scale.
  std::map<std::string, ui::CairoSurface> miniatures;
  double miniaturesScale = 0;
};

LevelSelect::LevelSelect() : page(chosenPages().levels.value_or(pageOf(career.progress.currentLevel))) {}

void LevelSelect::update(ui::Ctx& ctx) {
  if (refusal && ctx.time >= refusal->until) refusal.reset();
  std::optional<int> chosen;
  const bool left = listFrame(ctx, mj::tableThemeForStage(page), i18n::tr("levels.headline"), false, [&] {
    chosen = pageChips(ctx, page, pageOf(career.progress.currentLevel));
    cards(ctx);
  });
  if (left) return ui::Game::instance().pop();
  if (chosen) turnTo(*chosen);
  if (refusal) ctx.stillUntil = ctx.time;
}

void LevelSelect::refuse(int i, double now) {
  audio::play(audio::Sfx::Error);
  refusal = {i, now + kRefusalTime};
}

void LevelSelect::turnTo(int newPage) {
  page = newPage;
  chosenPages().levels = newPage;
  scroll = 0;
  refusal.reset();
  ui::gpuDropTextures(kCardKey, ui::kKeepNone);
}

void LevelSelect::cards(ui::Ctx& ctx) {
  const CardGrid grid = levelGrid(ctx.w, ctx.h);
  scrolledList(ctx, grid.view, grid.contentHeight(kLevelsPerPage), scroll, [&] {
    for (int i = 0; i < kLevelsPerPage; ++i) {
      const ui::Rect rect = grid.card(i, scroll);
      if (isInView(rect, grid.view)) drawCard(ctx, rect, i);
      if (ui::isWorked(ctx, rect)) choose(i, ctx.time);
    }
  });
}

void LevelSelect::drawCard(ui::Ctx& ctx, const ui::Rect& rect, int i) {
  ui::gpuPicture(ctx.cr, cardKey(i), rect,
                 [&](cairo_t* cr, double w, double h) { paintCard(cr, {0, 0, w, h}, i); });
  if (!isLocked(i)) lightCard(ctx, rect);
  if (refusal && refusal->card == i) drawRefusal(ctx.cr, rect, (refusal->until - ctx.time) / kRefusalTime);
}

void LevelSelect::choose(int i, double now) {
  if (isLocked(i)) return refuse(i, now);
  audio::play(audio::Sfx::Click);
  store::clearGame();
  const int level = levelAt(i);
  ui::Game::instance().push(
      {.kind = ui::ScreenKind::Playing, .level = level, .deal = static_cast<std::uint32_t>(level)});
}

std::string LevelSelect::cardKey(int i) const {
  return kCardKey + std::to_string(levelAt(i)) + "|" + std::to_string(starsAt(i)) +
         (isLocked(i) ? "|locked|" : "|open|") + i18n::currentLanguage();
}

void LevelSelect::paintCard(cairo_t* cr, const ui::Rect& rect, int i) {
  const LevelCardLayout layout = levelCardLayout(rect);
  drawCardPlate(cr, rect);
  drawMiniature(cr, layout.miniature, mj::levelToConfig(levelAt(i)), isLocked(i) ? kLockedMiniature : 1);
  drawTexts(cr, layout, i);
  if (isLocked(i)) drawLock(cr, rect);
}

void LevelSelect::drawTexts(cairo_t* cr, const LevelCardLayout& layout, int i) const {
  const mj::LevelConfig& config = mj::levelToConfig(levelAt(i));
  ui::drawTextIn(cr, layout.label, counted("playing.levelLabel", config.level), kLabelStyle);
  ui::drawTextIn(cr, layout.tiles, counted("levels.tileCount", config.tiles), kFactStyle);
  ui::drawTextIn(cr, layout.layers, counted("levels.layers", config.layers), kFactStyle);
  if (starsAt(i) > 0) ui::starsInline(cr, layout.starsX, layout.starsY, starsAt(i), kCardStarRadius);
}

void LevelSelect::drawMiniature(cairo_t* cr, const ui::Rect& rect, const mj::LevelConfig& config,
                                double alpha) {
  if (std::exchange(miniaturesScale, ui::gpuScale()) != ui::gpuScale()) miniatures.clear();
  const std::string key = std::to_string(config.level) + "|" + std::to_string(ui::gpuPixels(rect.w));
  const auto [entry, isNew] = miniatures.try_emplace(key);
  if (isNew) entry->second = paintedMiniature(config.slots, rect.w);
  if (entry->second) drawPicture(cr, entry->second.get(), rect.x, rect.y, alpha);
}

}  // namespace

std::unique_ptr<ui::Screen> makeLevelSelect() { return std::make_unique<LevelSelect>(); }

}  // namespace screens
