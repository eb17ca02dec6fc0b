#include "screens/playing.h"

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/resume.h"
#include "screens/screens.h"
#include "screens/tile_cursor.h"
#include "screens/win.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/focus.h"
#include "ui/format.h"
#include "ui/gpu.h"
#include "ui/icons.h"
#include "ui/palette.h"
#include "ui/pointer_block.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kPendingTime = 0.32;  // how long a matching pair is shown before it goes
constexpr double kRefusedTime = 0.48;
constexpr double kHintTime = 1.6;
constexpr double kWinFadeTime = 0.56;
constexpr double kWinEnd = 1.1;  // in fade times: the full cover stays for a moment
constexpr double kReadyRise = 0.12;
constexpr double kReadyFall = 0.42;
constexpr double kReadyAlpha = 0.42;
constexpr double kDefaultAutoplay = 0.35;
constexpr double kAutosaveInterval = 5;

constexpr double kNoZoom = 1.001;  // tolerance: zooming in steps leaves rounding errors
constexpr double kMaxZoom = 3;
constexpr double kWheelZoom = 0.25;
constexpr double kKeyZoom = 0.6;
constexpr double kTapSlack = 6;  // a longer movement is a drag

constexpr double kPauseVeil = 0.72;
constexpr unsigned kReadyColor = 0xFFE9A8;

// Seconds between automatic moves as set by VESKARA_AUTOPLAY; 0 if that is unset or empty. Anything but a
// number above 0.01 gives the default.
double autoplayFromEnvironment() {
  const char* text = std::getenv("VESKARA_AUTOPLAY");
  if (text == nullptr || *text == '\0') return 0;
  double seconds = 0;
  std::from_chars(text, text + std::strlen(text), seconds);
  return seconds > 0.01 ? seconds : kDefaultAutoplay;
}

// Draws an icon and a number beside it, vertically centred in `rect`.
void drawCounter(const ui::Ctx& ctx, const ui::Rect& rect, ui::ActionIcon icon, int number) {
  constexpr double kIconSize = 18;
  constexpr double kTextX = kIconSize + 7;
  ui::drawActionIcon(ctx.cr, icon, rect.x + kIconSize / 2, rect.y + rect.h / 2, kIconSize,
                     ui::palette::kMutedText, 1);
  ui::drawTextIn(ctx.cr, {rect.x + kTextX, rect.y, rect.w - kTextX, rect.h}, std::to_string(number),
                 {.size = 15, .color = ui::palette::kLightText});
}

// The clock's text is translucent. On the lightest cloths it needs a darker background.
void drawClock(cairo_t* cr, const ui::Rect& clock, std::int64_t elapsedMs) {
  constexpr double kInset = 8;
  constexpr double kRadius = 8;
  constexpr double kAlpha = 0.45;
  ui::fillRoundedRect(cr, clock, kRadius, ui::palette::kVeil, kAlpha);
  ui::drawTextIn(cr, {clock.x + kInset, clock.y, clock.w - 2 * kInset, clock.h}, ui::formatTime(elapsedMs),
                 {.size = 15, .color = ui::palette::kLightText, .alpha = 0.6, .align = ui::Align::Center});
}

void drawPanelWithTitle(const ui::Ctx& ctx, const PanelLayout& layout, std::string_view title) {
  const ui::Rect& panel = layout.panel;
  ui::drawPanel(ctx.cr, panel, ui::PanelLook::Dark);
  ui::drawText(ctx.cr, panel.x + panel.w / 2, layout.titleTop, title,
               {.size = 19,
                .bold = true,
                .color = ui::palette::kGold,
                .align = ui::Align::Center,
                .maxWidth = panel.w - 40});
}

void cover(ui::Ctx& ctx, unsigned color, double alpha) {
  ui::fillRect(ctx.cr, {0, 0, ctx.w, ctx.h}, color, alpha);
}

}  // namespace

Playing::Playing(const ui::GameState& descriptor)
    : level(descriptor.level), deal(descriptor.deal), autoplay(autoplayFromEnvironment()) {
  if (auto saved = resumableGame(level, deal)) {
    resumed = true;
    game = std::move(saved->game);
    elapsed = static_cast<double>(saved->elapsedMs) / 1000;
  } else {
    game = mj::createGame(mj::levelToConfig(level).slots, deal);
  }
}

Playing::~Playing() {
  if (won()) {
    recordWin(result());
  } else {
    save();
  }
}

void Playing::update(ui::Ctx& ctx) {
  drawTable(ctx);
  if (!started) begin(ctx.time);
  endIntro(ctx.time);
  fx.update(ctx.time);
  layout = playingLayout(ctx.w, ctx.h);
  boundPan();
  advanceClock(ctx.dt);
  autosave(ctx.dt);
  endWaits(ctx.time);
  {
    const ui::InputBlock block(ctx, paused);
    dragBoard(ctx);
    header(ctx);
    const std::optional<PanelLayout> panel = stuckPanel(ctx);
    cursorShown = false;
    if (!panel) boardKeys(ctx);
    drawTiles(ctx);
    // The tiles under the panel get no input.
    if (!panel || !ctx.hover(panel->panel)) boardInput(ctx);
    actionBar(ctx);
    if (panel) noMoves(ctx, *panel);
  }
  pauseOverlay(ctx);
  keys(ctx);
  autoplayStep(ctx.time);
  winFade(ctx);
  readyFlash(ctx);
  ctx.stillUntil = ctx.time + restTime();
}

void Playing::tapTile(int tile, double now) {
  // Tapping another tile removes the pair at once: the pair may be what blocks that tile.
  if (pending && tile != pending->tiles.first && tile != pending->tiles.second) removePair(now);
  if (won()) return;
  if (!mj::isFree(game, tile)) {
    audio::play(audio::Sfx::Error);
    return;
  }
  if (refused) forgetRefusal();
  hint.reset();
  if (tile == game.selected) {
    audio::play(audio::Sfx::Click);
    game.selected = -1;
  } else if (game.selected < 0) {
    audio::play(audio::Sfx::Place);
    game.selected = tile;
  } else if (mj::canMatch(game, game.selected, tile)) {
    audio::play(audio::Sfx::Place);
    pending = {{game.selected, tile}, now + kPendingTime};
    game.selected = tile;
  } else {
    audio::play(audio::Sfx::NoNo);
    refused = {{game.selected, tile}, now + kRefusedTime};
  }
}

void Playing::setZoom(double factor) {
  zoom = std::clamp(factor, 1.0, kMaxZoom);
  boundPan();
}

void Playing::drawTable(ui::Ctx& ctx) const {
  ui::profBegin("filz");
  ui::drawFelt(ctx, mj::tableThemeForLevel(level), true);
  ui::profEnd("filz");
}

void Playing::begin(double now) {
  started = true;
  if (resumed) return;
  introActive = true;
  fx.beginIntro(game, now);
}

void Playing::endIntro(double now) {
  if (!introActive || now < fx.introEnd) return;
  introActive = false;
  audio::play(audio::Sfx::Ready);
  readyAt = now;
}

void Playing::advanceClock(double dt) {
  if (!introActive && !paused && !won()) elapsed += dt;
}

void Playing::autosave(double dt) {
  saveClock += dt;
  if (saveClock <= kAutosaveInterval || won()) return;
  saveClock = 0;
  save();
}

void Playing::save() const {
  store::saveGame({.level = level, .seed = deal, .game = game, .elapsedMs = elapsedMs()});
}

// Goes back to the screen below. A won game goes to the Solved screen instead.
void Playing::leave() {
  if (!won()) {
    ui::Game::instance().pop();
    return;
  }
  ui::GameState solved = result();
  solved.recorded = true;  // by the destructor, which runs before the Solved screen exists
  ui::Game::instance().replace(solved);
}

ui::GameState Playing::result() const {
  return {.kind = ui::ScreenKind::Solved,
          .level = level,
          .deal = deal,
          .timeMs = elapsedMs(),
          .tiles = static_cast<int>(game.slots.size()),
          .hints = game.hints,
          .shuffles = game.shuffles};
}

// Saves at once, because a pause may be long.
void Playing::pause() {
  paused = true;
  saveClock = 0;
  save();
}

// Seconds until the picture changes: 0 while something moves or glows, forever during a pause, otherwise
// until the clock shows the next second or an autosave is due.
double Playing::restTime() const {
  if (introActive || pending || readyAt || won()) return 0;
  if (paused) return ui::kForever;
  const bool marked = refused || hint || game.selected >= 0;  // these glow
  if (marked || !fx.bursts.empty() || autoplay > 0) return 0;
  return std::min(std::floor(elapsed) + 1 - elapsed, kAutosaveInterval - saveClock);
}

void Playing::endWaits(double now) {
  if (pending && now >= pending->until) removePair(now);
  if (refused && now >= refused->until) forgetRefusal();
  if (hint && now >= hint->until) hint.reset();
}

void Playing::removePair(double now) {
  const auto [a, b] = std::exchange(pending, std::nullopt)->tiles;
  // A shuffle or an undo may have changed the tiles meanwhile.
  if (!mj::canMatch(game, a, b)) return;
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, layout.board, ui::FitMode::Contain);
  for (const int tile : {a, b}) {
    fx.addBurst(game, geom, tile, game.faces[static_cast<std::size_t>(tile)], now);
  }
  mj::applyMatch(game, a, b);
  audio::play(audio::Sfx::Remove);
  if (!won() || winAt) return;
  audio::play(audio::Sfx::WinGlare);
  winAt = now;
  paused = false;  // the pair may have been chosen just before a pause
}

void Playing::forgetRefusal() {
  refused.reset();
  game.selected = -1;
}

void Playing::header(ui::Ctx& ctx) {
  if (ui::backButton(ctx, layout.back)) leave();
  drawHeaderTexts(ctx);
  if (ui::actionButton(ctx, layout.pause, ui::ActionIcon::Pause, "", won())) pause();
}

void Playing::drawHeaderTexts(const ui::Ctx& ctx) const {
  ui::drawTextIn(ctx.cr, layout.label, i18n::tr("playing.levelLabel", {{"n", std::to_string(level)}}),
                 {.size = 17, .bold = true, .color = ui::palette::kLightText});
  const int tilesLeft = static_cast<int>(game.slots.size()) - game.removed;
  drawCounter(ctx, layout.counters[0], ui::ActionIcon::Card, tilesLeft);
  drawCounter(ctx, layout.counters[1], ui::ActionIcon::Hint, game.hints);
  drawCounter(ctx, layout.counters[2], ui::ActionIcon::Shuffle, game.shuffles);
  drawClock(ctx.cr, layout.time, elapsedMs());
}

// Handles the keys for the board.
void Playing::boardKeys(ui::Ctx& ctx) {
  if (ctx.in.dx != 0 || ctx.in.dy != 0) cursor.reset();
  if (ctx.focus == nullptr || won()) return;
  const ui::BoardKeys board = ctx.focus->offerBoard(layout.board);
  if (!board.focused) return;
  if (board.entered != 0) {
    const std::vector<int> tiles = tilesInReadingOrder(game);
    cursor = board.entered > 0 ? tiles.front() : tiles.back();
  }
  for (const int key : board.keys)
    if (ctx.focus->isOnBoard()) cursorKey(ctx, key);
  if (won()) return;
  if (cursor) cursor = tileNear(game, *cursor);
  cursorShown = cursor && ctx.focus->isOnBoard();
  if (cursorShown) showCursorTile();
}

// The first key only shows the cursor. But with a tile selected, Tab goes straight to a partner.
void Playing::cursorKey(ui::Ctx& ctx, int key) {
  if (won()) return;
  const bool begins = !cursor;
  cursor = begins ? firstTile(game) : tileNear(game, *cursor);
  if (key == SDLK_TAB && (!begins || game.selected >= 0)) return tabCursor(ctx);
  if (begins) return;
  switch (key) {
    case SDLK_LEFT:
      cursor = tileTowards(game, *cursor, Arrow::Left);
      break;
    case SDLK_RIGHT:
      cursor = tileTowards(game, *cursor, Arrow::Right);
      break;
    case SDLK_UP:
      cursor = tileTowards(game, *cursor, Arrow::Up);
      break;
    case SDLK_DOWN:
      cursor = tileTowards(game, *cursor, Arrow::Down);
      break;
    case SDLK_RETURN:
      tapTile(*cursor, ctx.time);
      break;
    default:
      break;
  }
}

// Moves to the next partner of the selected tile, or else to the next tile. Beyond the last tile the focus
// goes to the buttons.
void Playing::tabCursor(ui::Ctx& ctx) {
  const int step = ctx.in.shift ? -1 : 1;
  if (game.selected >= 0 && !pending && !refused) {
    cursor = partnerAfter(game, *cursor, game.selected, step);
    return;
  }
  const int next = tileAfter(game, *cursor, step);
  if (next >= 0) {
    cursor = next;
  } else {
    ctx.focus->leaveBoard(step);
  }
}

// Pans the zoomed board so that the cursor's tile is visible.
void Playing::showCursorTile() {
  if (zoom <= kNoZoom) return;
  const ui::Rect& board = layout.board;
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, ui::FitMode::Contain);
  const ui::BoardView view(board, {.zoom = zoom, .panX = panX, .panY = panY});
  const ui::Rect tile = view.toScreen(geom.place(game.slots[static_cast<std::size_t>(*cursor)]));
  const double margin = tile.w / 2;
  const auto shift = [margin](double low, double size, double least, double room) {
    return std::max(least + margin - low, 0.0) - std::max(low + size + margin - least - room, 0.0);
  };
  panX += shift(tile.x, tile.w, board.x, board.w);
  panY += shift(tile.y, tile.h, board.y, board.h);
  boundPan();
}

void Playing::drawTiles(ui::Ctx& ctx) {
  options = {};
  if (pending) std::tie(options.pickA, options.pickB) = pending->tiles;
  if (refused) std::tie(options.mismatchA, options.mismatchB) = refused->tiles;
  if (hint) options.hintIds = {hint->tiles.first, hint->tiles.second};
  options.zoom = zoom;
  options.panX = panX;
  options.panY = panY;
  // The board is hidden during a pause, so that nobody can study it while the clock stands.
  if (paused) return;
  ui::profBegin("board");
  ui::drawBoard(ctx, game, layout.board, options, &fx);
  ui::drawBursts(ctx, &fx, layout.board, options);
  if (cursorShown) drawCursor(ctx.cr);
  ui::profEnd("board");
}

void Playing::drawCursor(cairo_t* cr) const {
  constexpr double kReach = 8;  // beyond the board's edge, for the cursor of an outer tile
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, layout.board, options.fit);
  const ui::Rect tile = geom.place(game.slots[static_cast<std::size_t>(*cursor)]);
  const ui::Rect room = ui::insetRect(layout.board, -kReach);
  cairo_save(cr);
  cairo_rectangle(cr, room.x, room.y, room.w, room.h);
  cairo_clip(cr);
  ui::drawTileCursor(cr, ui::BoardView(layout.board, options).toScreen(tile));
  cairo_restore(cr);
}

// The panel that tells that no move is left; empty while there is a move.
std::optional<PanelLayout> Playing::stuckPanel(const ui::Ctx& ctx) const {
  if (introActive || paused || won() || !mj::availablePairs(game).empty()) return std::nullopt;
  return noMovesPanel(ctx.w, layout.board, game.history.empty() ? 1 : 2);
}

void Playing::noMoves(ui::Ctx& ctx, const PanelLayout& panel) {
  ui::coverControls(ctx);
  drawPanelWithTitle(ctx, panel, i18n::tr("playing.noMoves"));
  if (!game.history.empty() && ui::plainButton(ctx, panel.first, i18n::tr("playing.undo"), false)) takeBack();
  if (ui::plainButton(ctx, panel.second, i18n::tr("playing.shuffle"), false)) shuffle();
}

void Playing::boardInput(ui::Ctx& ctx) {
  const ui::Input& in = ctx.in;
  if (paused || !ctx.hover(layout.board)) return;
  if (in.wheel != 0) turnWheel(in);
  if (in.pressed && in.down && zoom > kNoZoom) grab = Grab{in.mx, in.my, panX, panY, false};
  if (!ctx.takeClick(layout.board)) return;
  const int tile = ui::hitTestTile(game, layout.board, options, in.mx, in.my);
  if (tile >= 0) tapTile(tile, ctx.time);
}

// Zooms about the pointer: the point under it stays there, within the pan's limits.
void Playing::turnWheel(const ui::Input& in) {
  const double target = std::clamp(zoom + kWheelZoom * in.wheel, 1.0, kMaxZoom);
  const double dx = in.mx - (layout.board.x + layout.board.w / 2);
  const double dy = in.my - (layout.board.y + layout.board.h / 2);
  panX = dx - (dx - panX) * target / zoom;
  panY = dy - (dy - panY) * target / zoom;
  setZoom(target);
  // A drag in progress continues from here.
  if (grab) grab = Grab{in.mx, in.my, panX, panY, grab->moved};
}

void Playing::dragBoard(ui::Ctx& ctx) {
  if (paused) grab.reset();
  if (!grab) return;
  const ui::Input& in = ctx.in;
  const double dx = in.mx - grab->mouseX;
  const double dy = in.my - grab->mouseY;
  if (std::hypot(dx, dy) > kTapSlack) grab->moved = true;
  if (grab->moved) {
    panX = grab->panX + dx;
    panY = grab->panY + dy;
    boundPan();
  }
  if (in.down && !in.clicked) return;
  // The release that ends a drag is not a click, wherever the pointer is.
  if (grab->moved && zoom > kNoZoom) ctx.clickTaken = true;
  grab.reset();
}

void Playing::actionBar(ui::Ctx& ctx) {
  const bool closed = paused || won();
  const auto button = [&](std::size_t place, ui::ActionIcon icon, const std::string& label, bool disabled) {
    return ui::actionButton(ctx, layout.buttons[place], icon, label, disabled);
  };
  if (button(0, ui::ActionIcon::Hint, i18n::tr("playing.hint"), !givesAid())) takeHint(ctx.time);
  if (button(1, ui::ActionIcon::Shuffle, i18n::tr("playing.shuffle"), !givesAid())) shuffle();
  if (button(2, ui::ActionIcon::Undo, i18n::tr("playing.undo"), closed || game.history.empty())) takeBack();
  if (button(3, ui::ActionIcon::ZoomIn, "", closed)) setZoom(zoom + kKeyZoom);
  if (button(4, ui::ActionIcon::ZoomOut, "", closed)) setZoom(zoom - kKeyZoom);
  if (button(5, ui::ActionIcon::Fit, "", closed)) setZoom(1);
}

void Playing::pauseOverlay(ui::Ctx& ctx) {
  if (!paused) return;
  cover(ctx, ui::palette::kVeil, kPauseVeil);
  ui::coverControls(ctx);
  const PanelLayout panel = pausePanel(ctx.w, ctx.h);
  ui::nameMain(ctx, panel.first);
  drawPanelWithTitle(ctx, panel, i18n::tr("playing.paused"));
  if (ui::plainButton(ctx, panel.first, i18n::tr("playing.resume"), false)) paused = false;
  if (ui::plainButton(ctx, panel.second, i18n::tr("playing.exit"), false)) leave();
}

void Playing::keys(ui::Ctx& ctx) {
  if (ctx.in.hasKey(SDLK_ESCAPE)) leave();
  if (won()) return;
  if (ctx.in.hasKey(SDLK_SPACE)) {
    audio::play(audio::Sfx::Click);
    if (paused) {
      paused = false;
    } else {
      pause();
    }
  }
  if (!paused) playKeys(ctx.in, ctx.time);
}

void Playing::playKeys(const ui::Input& in, double now) {
  // A held key asks for only one hint or shuffle: each costs stars.
  if (givesAid() && in.hasFreshKey(SDLK_h)) takeHint(now);
  if (givesAid() && in.hasFreshKey(SDLK_m)) {
    audio::play(audio::Sfx::Click);
    shuffle();
  }
  if (in.hasKey(SDLK_u) && !game.history.empty()) {
    audio::play(audio::Sfx::Click);
    takeBack();
  }
  if (in.hasKey(SDLK_PLUS) || in.hasKey(SDLK_EQUALS)) setZoom(zoom + kKeyZoom);
  if (in.hasKey(SDLK_MINUS)) setZoom(zoom - kKeyZoom);
  if (in.hasKey(SDLK_0)) setZoom(1);
}

void Playing::autoplayStep(double now) {
  if (autoplay <= 0 || introActive || paused || pending || refused || won()) return;
  if (now - lastAuto <= autoplay) return;
  lastAuto = now;
  const auto [a, b] = mj::findHint(game);
  if (a < 0) {
    audio::play(audio::Sfx::Click);
    shuffle();
  } else {
    tapTile(a == game.selected ? b : a, now);
  }
}

void Playing::winFade(ui::Ctx& ctx) {
  if (!winAt) return;
  const double p = (ctx.time - *winAt) / kWinFadeTime;
  cover(ctx, ui::palette::kWinLight, std::min(0.85 * p, 0.85));
  if (p >= kWinEnd) leave();
}

void Playing::readyFlash(ui::Ctx& ctx) {
  if (!readyAt || won()) return;
  const double t = ctx.time - *readyAt;
  const double part = t < kReadyRise ? t / kReadyRise : 1 - (t - kReadyRise) / kReadyFall;
  if (part <= 0 && t >= kReadyRise) {
    readyAt.reset();
    return;
  }
  cover(ctx, kReadyColor, kReadyAlpha * part);
}

void Playing::takeHint(double now) {
  const mj::SlotPair pair = mj::findHint(game);
  if (pair.first < 0) {
    audio::play(audio::Sfx::Error);
    return;
  }
  audio::play(audio::Sfx::Hint);
  hint = {pair, now + kHintTime};
  game.selected = -1;
  ++game.hints;
}

void Playing::shuffle() {
  hint.reset();
  mj::shuffleBoard(game);
}

void Playing::takeBack() {
  hint.reset();
  mj::undo(game);
}

void Playing::boundPan() {
  if (zoom <= kNoZoom) {
    panX = 0;
    panY = 0;
  }
  // In a very small window the board's size may be negative.
  const double boundX = std::max(layout.board.w * (zoom - 1) / 2, 0.0);
  const double boundY = std::max(layout.board.h * (zoom - 1) / 2, 0.0);
  panX = std::clamp(panX, -boundX, boundX);
  panY = std::clamp(panY, -boundY, boundY);
}

std::unique_ptr<ui::Screen> makePlaying(const ui::GameState& descriptor) {
  return std::make_unique<Playing>(descriptor);
}

}  // namespace screens
