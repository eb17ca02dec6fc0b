#include "screens/attract.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <string>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/screens.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/palette.h"

namespace screens {
namespace {

constexpr double kDemoTime = 120;
constexpr double kCelebrationTime = 1.7;
// When each phase of a step ends, in seconds since the step began.
constexpr std::array<double, 4> kPhaseEnds = {0.8, 1.7, 2.7, 3.15};
constexpr unsigned kLevels = 25;  // larger boards are too much to watch

constexpr double kMargin = 12;
constexpr double kCaptionsH = 48;
constexpr double kTallInvitationUp = 62;
constexpr double kLineH = 20;
constexpr double kPillH = 26;
constexpr double kPillPadding = 16;
constexpr double kMaxCaptionW = 280;

constexpr double kCaptionSize = 14;
constexpr double kPulseSize = 0.06;
constexpr double kPulseRate = 1.7;
constexpr std::uint32_t kPillColor = 0x9B8CFF;
constexpr double kPillAlpha = 0.18;
constexpr double kInvitationAlpha = 0.6;

// Rounded to steps too small to see. Pango and cairo cache a font per size, which would grow to a hundred
// megabytes within two minutes.
double captionSize(double time) {
  constexpr double kStepsPerPixel = 8;
  const double size = kCaptionSize * (1 + kPulseSize * std::sin(kPulseRate * time));
  return std::round(size * kStepsPerPixel) / kStepsPerPixel;
}

std::mt19937 seededSource() {
  std::random_device device("default");
  return std::mt19937(device());
}

int randomLevel() {
  static std::mt19937 source = seededSource();
  return static_cast<int>(source() % kLevels) + 1;
}

std::uint32_t freshSeed() {
  static std::mt19937 source = seededSource();
  return static_cast<std::uint32_t>(source());
}

// A rectangle of size w x h with its middle at cx, vertically centred in `row`.
ui::Rect captionIn(const ui::Rect& row, double cx, double w, double h) {
  return {cx - w / 2, row.y + (row.h - h) / 2, w, h};
}

AttractLayout wideLayout(double w, double h) {
  const ui::Rect row = {kMargin, h - kCaptionsH, w - 2 * kMargin, kCaptionsH};
  const double columnW = std::min(std::floor(row.w / 3), kMaxCaptionW);
  return {.board = {kMargin, kMargin, row.w, row.y - kMargin},
          .title = captionIn(row, w / 2, columnW, kPillH),
          .tilesLeft = captionIn(row, w / 2 - columnW, columnW, kLineH),
          .invitation = captionIn(row, w / 2 + columnW, columnW, kLineH)};
}

AttractLayout tallLayout(double w, double h) {
  const double lineW = w - 2 * kMargin;
  const double boardTop = kMargin + kCaptionsH;
  const double invitationTop = h - kTallInvitationUp;
  return {.board = {kMargin, boardTop, lineW, invitationTop - kMargin - boardTop},
          .title = {(w - std::min(lineW, kMaxCaptionW)) / 2, kMargin, std::min(lineW, kMaxCaptionW), kPillH},
          .tilesLeft = {kMargin, boardTop - kLineH, lineW, kLineH},
          .invitation = {kMargin, invitationTop, lineW, kLineH}};
}

void drawCaption(const ui::Ctx& ctx, const ui::Rect& rect, const std::string& text, std::uint32_t color,
                 double alpha) {
  ui::drawTextIn(
      ctx.cr, rect, text,
      {.size = kCaptionSize, .color = color, .alpha = alpha, .align = ui::Align::Center, .maxWidth = rect.w});
}

// The text pulses; its pill keeps its size.
void drawTitle(const ui::Ctx& ctx, const ui::Rect& rect) {
  const std::string text = i18n::tr("attract.demo");
  ui::TextStyle style = {
      .size = kCaptionSize * (1 + kPulseSize), .bold = true, .color = ui::palette::kGold, .maxWidth = rect.w};
  double textW = 0;
  double textH = 0;
  ui::measureText(ctx.cr, text, style, textW, textH);
  const ui::Rect pill =
      captionIn(rect, rect.x + rect.w / 2, std::min(textW + 2 * kPillPadding, rect.w), rect.h);
  ui::fillRoundedRect(ctx.cr, pill, pill.h / 2, kPillColor, kPillAlpha);
  ui::strokeRoundedRect(ctx.cr, ui::insetRect(pill, 0.5), pill.h / 2, 1, ui::palette::kGold, 1);
  style.size = captionSize(ctx.time);
  ui::drawTextCentered(ctx.cr, pill.x + pill.w / 2, pill.y + pill.h / 2, text, style);
}

}  // namespace

AttractLayout attractLayout(double w, double h) { return w > h ? wideLayout(w, h) : tallLayout(w, h); }

Attract::Attract(int firstLevel, std::uint32_t firstDeal) { deal(firstLevel, firstDeal); }

void Attract::update(ui::Ctx& ctx) {
  begin(ctx.time);
  ui::drawFelt(ctx, nullptr, false);
  fx.update(ctx.time);
  const AttractLayout layout = attractLayout(ctx.w, ctx.h);
  if (isLeft(ctx)) {
    ui::Game::instance().pop();
  } else {
    play(ctx.time, layout.board);
  }
  drawTable(ctx, layout.board);
  drawCaptions(ctx, layout);
}

void Attract::deal(int newLevel, std::uint32_t newDeal) {
  level = newLevel;
  game = mj::createGame(mj::levelToConfig(level).slots, newDeal);
  phase = 0;
}

void Attract::begin(double now) {
  if (startedAt) return;
  startedAt = now;
  stepAt = now;
}

// Mouse motion does not end the demo: a hand may only brush against the mouse.
bool Attract::isLeft(const ui::Ctx& ctx) const {
  const ui::Input& in = ctx.in;
  return in.clicked || in.pressed || in.rightClicked || !in.keys.empty() || in.wheel != 0 ||
         ctx.time - *startedAt > kDemoTime;
}

void Attract::play(double now, const ui::Rect& board) {
  if (!mj::isSolved(game)) step(now, board);
  if (mj::isSolved(game)) celebrate(now);
}

void Attract::step(double now, const ui::Rect& board) {
  if (now - stepAt < kPhaseEnds[static_cast<std::size_t>(phase)]) return;
  switch (phase) {
    case 0:
      if (!choosePair(now)) return;
      break;
    case 1:
      options.pickB = pairB;
      audio::play(audio::Sfx::Place);
      break;
    case 2:
      takePair(now, board);
      break;
    default:
      stepAt = now;
  }
  phase = (phase + 1) % static_cast<int>(kPhaseEnds.size());
}

// If there is no pair, shuffles and restarts the step.
bool Attract::choosePair(double now) {
  const auto [a, b] = mj::findHint(game);
  if (a < 0) {
    mj::shuffleBoard(game);
    stepAt = now;
    return false;
  }
  pairA = a;
  pairB = b;
  options.pickA = pairA;
  audio::play(audio::Sfx::Place);
  return true;
}

void Attract::takePair(double now, const ui::Rect& board) {
  options = {};
  if (!mj::canMatch(game, pairA, pairB)) return;
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, options.fit);
  for (const int tile : {pairA, pairB}) {
    fx.addBurst(game, geom, tile, game.faces[static_cast<std::size_t>(tile)], now);
  }
  mj::applyMatch(game, pairA, pairB);
  audio::play(audio::Sfx::Remove);
}

void Attract::celebrate(double now) {
  if (!celebrateAt) {
    celebrateAt = now;
    audio::play(audio::Sfx::Success);
  }
  if (now - *celebrateAt <= kCelebrationTime) return;
  celebrateAt.reset();
  deal(randomLevel(), freshSeed());
  stepAt = now;
}

void Attract::drawTable(ui::Ctx& ctx, const ui::Rect& board) {
  ui::drawBoard(ctx, game, board, options, &fx);
  ui::drawBursts(ctx, &fx, board, options);
}

void Attract::drawCaptions(const ui::Ctx& ctx, const AttractLayout& layout) const {
  const int tilesLeft = static_cast<int>(game.slots.size()) - game.removed;
  drawTitle(ctx, layout.title);
  drawCaption(ctx, layout.tilesLeft, i18n::labelled(i18n::tr("playing.tilesLeft"), std::to_string(tilesLeft)),
              ui::palette::kLightText, 1);
  drawCaption(ctx, layout.invitation, i18n::tr("attract.clickToPlay"), ui::palette::kMutedText,
              kInvitationAlpha);
}

std::unique_ptr<ui::Screen> makeAttract() { return std::make_unique<Attract>(randomLevel(), freshSeed()); }

}  // namespace screens
