#include <SDL_keycode.h>

#include <algorithm>
#include <array>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/screens.h"
#include "screens/solve_picture.h"
#include "screens/solved_layout.h"
#include "screens/win.h"
#include "storage/storage.h"
#include "ui/board.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/focus.h"
#include "ui/format.h"
#include "ui/palette.h"
#include "ui/scenes.h"
#include "ui/stars.h"
#include "ui/widgets.h"

namespace screens {
namespace {

// Seconds. Painting the picture and writing it both delay a frame, so they do not share one, nor use the
// first.
constexpr double kPaintAt = 0.2;
constexpr double kRecordAt = 0.4;
constexpr double kFadeTime = 0.46;
constexpr double kFadeAlpha = 0.85;
constexpr std::array<audio::Sfx, 3> kChimes = {audio::Sfx::Star1, audio::Sfx::Star2, audio::Sfx::Star3};

// Shown after a win: the result of the game beside the board as it was dealt.
class Solved : public ui::Screen {
 public:
  explicit Solved(const ui::GameState& descriptor);

  void update(ui::Ctx& ctx) override;

 private:
  void chime(double t);
  void record(double t);
  void drawInfo(ui::Ctx& ctx, const ui::Rect& rect, double scale, double t) const;
  void drawButtons(ui::Ctx& ctx, const ui::Rect& rect, bool wide) const;
  static void toGallery();

  int level;
  std::uint32_t deal;
  std::int64_t timeMs;
  int tiles;
  int hints;
  int shuffles;
  int aids;
  int stars;
  int nextLevel;
  mj::GameState board;

  std::optional<double> startedAt;
  std::array<bool, 3> chimed = {};
  ui::CairoSurface picture;
  bool recorded = false;
};

Solved::Solved(const ui::GameState& descriptor)
    : level(descriptor.level),
      deal(descriptor.deal),
      timeMs(descriptor.timeMs),
      tiles(descriptor.tiles),
      hints(descriptor.hints),
      shuffles(descriptor.shuffles),
      aids(hints + shuffles),
      stars(store::computeStars(aids)),
      nextLevel(std::min(level + 1, store::kLastLevel)),
      board(mj::createGame(mj::levelToConfig(level).slots, deal)) {
  if (!descriptor.recorded) recordWin(descriptor);
}

void Solved::update(ui::Ctx& ctx) {
  if (!startedAt) startedAt = ctx.time;
  const double t = ctx.time - *startedAt;
  ui::drawFelt(ctx, mj::tableThemeForLevel(level), true);
  chime(t);
  record(t);
  const SolvedLayout layout = solvedLayout(ctx.w, ctx.h);
  ui::drawBoard(ctx, board, layout.board, {}, nullptr);
  drawInfo(ctx, layout.info, layout.starScale, t);
  drawButtons(ctx, layout.buttons, layout.wide);
  ui::footer(ctx, layout.footerBottom);
  if (t < kFadeTime) {
    ui::fillRect(ctx.cr, {0, 0, ctx.w, ctx.h}, ui::palette::kWinLight, kFadeAlpha * (1 - t / kFadeTime));
  }
  if (ctx.in.hasKey(SDLK_ESCAPE)) ui::Game::instance().resetTo({.kind = ui::ScreenKind::Menu});
}

void Solved::chime(double t) {
  for (std::size_t i = 0; i < chimed.size() && static_cast<int>(i) < stars; ++i) {
    if (chimed[i] || t < ui::kStarTimes[i]) continue;
    chimed[i] = true;
    audio::play(kChimes[i]);
  }
}

void Solved::record(double t) {
  if (recorded || t < kPaintAt) return;
  if (!picture) picture = ui::captureBoard(board, *mj::tableThemeForLevel(level), kSolvePictureSide);
  if (t < kRecordAt) return;
  recorded = true;
  store::ensureDataDirs();
  const std::string id = store::newSolveId();
  store::SolveEntry entry = {.id = id,
                             .level = level,
                             .tiles = tiles,
                             .seed = deal,
                             .elapsedMs = timeMs,
                             .solvedAt = static_cast<std::int64_t>(std::time(nullptr)) * 1000,
                             .shot = id + ".png",
                             .stars = stars,
                             .aids = aids};
  if (!ui::writePng(picture.get(), store::shotPath(entry))) entry.shot.clear();
  picture.reset();
  store::recordSolve(entry);
}

void Solved::drawInfo(ui::Ctx& ctx, const ui::Rect& rect, double scale, double t) const {
  const InfoLayout layout = infoLayout(rect, scale);
  const ui::Rect& award = layout.stars;
  ui::starRow(ctx, award.x + award.w / 2, award.y + award.h / 2, stars, scale, t);
  ui::drawTextIn(
      ctx.cr, layout.headline, i18n::tr("solved.headline"),
      {.size = layout.headlineSize, .bold = true, .color = ui::palette::kGold, .align = ui::Align::Center});
  const std::array<std::string, 4> texts = {
      i18n::tr("solved.levelDone", {{"n", std::to_string(level)}}),
      i18n::tr("solved.tilesCleared", {{"n", std::to_string(tiles)}}),
      i18n::labelled(i18n::tr("solved.time"), ui::formatTime(timeMs)),
      i18n::tr("solved.aidsLine", {{"hints", std::to_string(hints)}, {"shuffles", std::to_string(shuffles)}}),
  };
  for (std::size_t i = 0; i < texts.size(); ++i) {
    ui::drawTextIn(ctx.cr, layout.lines[i], texts[i],
                   {.size = 16,
                    .bold = i == 0,
                    .color = ui::palette::kLightText,
                    .alpha = i == 0 ? 1 : 0.8,
                    .align = ui::Align::Center});
  }
}

void Solved::drawButtons(ui::Ctx& ctx, const ui::Rect& rect, bool wide) const {
  ui::Game& game = ui::Game::instance();
  const std::array<ui::Rect, 3> places = solvedButtons(rect, wide);
  const auto button = [&](std::size_t place, const std::string& label) {
    return ui::plainButton(ctx, places[place], label, false);
  };
  ui::nameMain(ctx, places[0]);
  if (button(0, i18n::tr("solved.nextLevel", {{"n", std::to_string(nextLevel)}}))) {
    game.replace(
        {.kind = ui::ScreenKind::Playing, .level = nextLevel, .deal = static_cast<std::uint32_t>(nextLevel)});
  }
  if (button(1, i18n::tr("solved.toGallery"))) toGallery();
  if (button(2, i18n::tr("solved.toMenu"))) game.resetTo({.kind = ui::ScreenKind::Menu});
}

// If the player came from the gallery, returns to it instead of stacking a second one, which would have to be
// left twice.
void Solved::toGallery() {
  ui::Game& game = ui::Game::instance();
  const std::vector<ui::GameState>& stack = game.descriptors();
  const bool fromThere = stack.size() >= 2 && stack[stack.size() - 2].kind == ui::ScreenKind::Gallery;
  if (fromThere) return game.pop();
  game.replace({.kind = ui::ScreenKind::Gallery});
}

}  // namespace

std::unique_ptr<ui::Screen> makeSolved(const ui::GameState& descriptor) {
  return std::make_unique<Solved>(descriptor);
}

}  // namespace screens
