#include <cairo.h>

#include <array>
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
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/miniature.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/gpu.h"
#include "ui/handles.h"
#include "ui/palette.h"
#include "ui/pointer_block.h"
#include "ui/stars.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kCardRadius = 10;
constexpr double kHoverAlpha = 0.06;
constexpr ui::TextStyle kLabelStyle = {.size = 16, .bold = true, .color = ui::palette::kLightText};
constexpr ui::TextStyle kFactStyle = {
    .size = 12, .color = ui::palette::kMutedText, .align = ui::Align::Right};

constexpr std::uint32_t kLockedCover = 0x061C14;
constexpr double kLockedAlpha = 0.35;
constexpr double kLockedMiniature = 0.5;  // its opacity: the padlock stands out from it

// The page that the player chose last, also on an earlier visit; -1 before the first choice.
int& lastPage() {
  static int g_lastPage = -1;
  return g_lastPage;
}

std::string counted(const char* key, int n) { return i18n::tr(key, {{"n", std::to_string(n)}}); }

void drawPlate(cairo_t* cr, const ui::Rect& card) {
  ui::fillRoundedRect(cr, card, kCardRadius, ui::palette::kPanel, 1);
  ui::strokeRoundedRect(cr, card, kCardRadius, 1, ui::palette::kPanelEdge, 1);
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

// Null when cairo cannot make it.
ui::CairoSurface paintedMiniature(const std::vector<mj::Slot>& slots, double side) {
  const int pixels = ui::gpuPixels(side);
  ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pixels, pixels));
  if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_surface_set_device_scale(picture.get(), ui::gpuScale(), ui::gpuScale());
  const ui::CairoContext cr(cairo_create(picture.get()));
  paintMini(cr.get(), {0, 0, side, side}, slots);
  return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(picture) : nullptr;
}

// On whole device pixels: anywhere else the picture would be blurred, and slow to draw.
void drawPicture(cairo_t* cr, cairo_surface_t* picture, double x, double y, double alpha) {
  const double scale = ui::gpuScale();
  cairo_set_source_surface(cr, picture, std::round(x * scale) / scale, std::round(y * scale) / scale);
  cairo_paint_with_alpha(cr, alpha);
}

bool overlap(const ui::Rect& a, const ui::Rect& b) { return a.y < b.y + b.h && b.y < a.y + a.h; }

}  // namespace

// The hundred levels in pages of ten, with their layouts and the stars won on them. Those that the player has
// not come to yet are locked.
class LevelSelect : public ui::Screen {
 public:
  LevelSelect();
  void update(ui::Ctx& ctx) override;

 private:
  void turnTo(int newPage);
  void cards(ui::Ctx& ctx);
  void card(ui::Ctx& ctx, const ui::Rect& rect, int i, double miniatureSide);
  void drawTexts(cairo_t* cr, const CardLayout& layout, int i) const;
  void drawMiniature(cairo_t* cr, const ui::Rect& rect, const mj::LevelConfig& config, double alpha);

  int levelAt(int i) const { return kLevelsPerPage * page + i + 1; }

  int progressLevel;
  int page = 0;
  std::array<int, kLevelsPerPage> stars{};  // the best on each level of the page; 0: not solved yet
  double scroll = 0;
  // By layout, which the level tells, and size in device pixels.
  std::map<std::string, ui::CairoSurface> miniatures;
};

LevelSelect::LevelSelect() : progressLevel(store::loadProgress().currentLevel) {
  turnTo(lastPage() >= 0 ? lastPage() : pageOf(progressLevel));
}

void LevelSelect::update(ui::Ctx& ctx) {
  ui::drawFelt(ctx, mj::tableThemeForStage(page), false);
  if (listHeader(ctx, i18n::tr("levels.headline"))) return ui::Game::instance().pop();
  const std::optional<int> chosen = pageChips(ctx, page, pageOf(progressLevel));
  cards(ctx);
  if (chosen) turnTo(lastPage() = *chosen);
}

void LevelSelect::turnTo(int newPage) {
  page = newPage;
  scroll = 0;
  for (int i = 0; i < kLevelsPerPage; ++i) {
    stars[static_cast<std::size_t>(i)] = store::bestFor(levelAt(i)).stars;
  }
}

void LevelSelect::cards(ui::Ctx& ctx) {
  const LevelGrid grid = levelGrid(ctx.w, ctx.h);
  ui::applyScroll(ctx, grid.view, grid.contentHeight, scroll);
  {
    // What the view's edge cuts off does not hear of the pointer either.
    const ui::PointerBlock block(ctx, !ctx.hover(grid.view));
    cairo_save(ctx.cr);
    cairo_rectangle(ctx.cr, grid.view.x, grid.view.y, grid.view.w, grid.view.h);
    cairo_clip(ctx.cr);
    for (int i = 0; i < kLevelsPerPage; ++i) {
      const ui::Rect rect = grid.card(i, scroll);
      if (overlap(rect, grid.view)) card(ctx, rect, i, grid.miniature);
    }
    cairo_restore(ctx.cr);
  }
  ui::scrollbar(ctx, grid.view, grid.contentHeight, scroll);
}

void LevelSelect::card(ui::Ctx& ctx, const ui::Rect& rect, int i, double miniatureSide) {
  const int level = levelAt(i);
  const bool locked = level > progressLevel;
  const CardLayout layout = cardLayout(rect, miniatureSide);
  drawPlate(ctx.cr, rect);
  drawMiniature(ctx.cr, layout.miniature, mj::levelToConfig(level), locked ? kLockedMiniature : 1);
  drawTexts(ctx.cr, layout, i);
  if (locked) {
    drawLock(ctx.cr, rect);
  } else if (ctx.hover(rect)) {
    ui::fillRoundedRect(ctx.cr, rect, kCardRadius, ui::palette::kGold, kHoverAlpha);
  }

  if (!ctx.takeClick(rect)) return;
  if (locked) return audio::play(audio::Sfx::Error);
  audio::play(audio::Sfx::Click);
  store::clearGame();
  ui::Game::instance().push(
      {.kind = ui::ScreenKind::Playing, .level = level, .deal = static_cast<std::uint32_t>(level)});
}

void LevelSelect::drawTexts(cairo_t* cr, const CardLayout& layout, int i) const {
  const mj::LevelConfig& config = mj::levelToConfig(levelAt(i));
  ui::drawTextIn(cr, layout.label, counted("playing.levelLabel", config.level), kLabelStyle);
  ui::drawTextIn(cr, layout.tiles, counted("levels.tileCount", config.tiles), kFactStyle);
  ui::drawTextIn(cr, layout.layers, counted("levels.layers", config.layers), kFactStyle);
  const int won = stars[static_cast<std::size_t>(i)];
  if (won > 0) ui::starsInline(cr, layout.starsX, layout.starsY, won, kCardStarRadius);
}

void LevelSelect::drawMiniature(cairo_t* cr, const ui::Rect& rect, const mj::LevelConfig& config,
                                double alpha) {
  const std::string key = std::to_string(config.level) + "|" + std::to_string(ui::gpuPixels(rect.w));
  const auto [entry, isNew] = miniatures.try_emplace(key);
  if (isNew) entry->second = paintedMiniature(config.slots, rect.w);
  if (entry->second) drawPicture(cr, entry->second.get(), rect.x, rect.y, alpha);
}

std::unique_ptr<ui::Screen> makeLevelSelect() { return std::make_unique<LevelSelect>(); }

}  // namespace screens
