#include "screens/list_screen.h"

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <string>

#include "resources/audio.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/focus.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/pointer_block.h"
#include "ui/tile.h"

namespace screens {
namespace {

constexpr ui::Rect kBack = {12, 8, 44, 40};
constexpr double kHeadlineX = 68;
constexpr double kHeadlineY = 12;

constexpr double kRowStep = 60;  // an arrow key scrolls by this much
constexpr double kFar = 1e9;

constexpr double kMinViewH = 80;
constexpr double kMinPagedViewH = 60;
// How far the middle tile of the fan stands below the top of the tilted ones, in tile widths.
constexpr double kFanStand = 1.43;

constexpr double kChipsY = 64;
constexpr double kChipH = 40;
constexpr double kChipGap = 6;
constexpr double kMaxChipW = 96;

// The page that the page keys lead to, at most the last one.
int pageByKeys(ui::Input& in, int page) {
  if (in.takeKey(SDLK_PAGEUP)) --page;
  if (in.takeKey(SDLK_PAGEDOWN)) ++page;
  if (in.takeKey(SDLK_HOME)) page = 0;
  if (in.takeKey(SDLK_END)) page = kPages - 1;
  return std::clamp(page, 0, kPages - 1);
}

std::string pageName(int page) {
  return std::to_string(page * kLevelsPerPage + 1) + "–" + std::to_string((page + 1) * kLevelsPerPage);
}

// Page keys scroll by a page. Arrow keys scroll by a row if they lead to no control.
double scrollByKeys(ui::Ctx& ctx, double page) {
  double by = 0;
  if (ctx.in.takeKey(SDLK_PAGEDOWN)) by += page;
  if (ctx.in.takeKey(SDLK_PAGEUP)) by -= page;
  if (ctx.in.takeKey(SDLK_END)) by += kFar;
  if (ctx.in.takeKey(SDLK_HOME)) by -= kFar;
  return ctx.focus == nullptr ? by : by + kRowStep * ctx.focus->unanswered();
}

// Scrolls by the wheel and the keys, and brings a newly focused control into view.
void scrollList(ui::Ctx& ctx, const ui::Rect& view, double contentHeight, double& scroll) {
  const double before = scroll;
  scroll += scrollByKeys(ctx, view.h - kRowStep);
  if (ctx.focus != nullptr) scroll += ctx.focus->hiddenPart(view);
  ui::applyScroll(ctx, {0, view.y, ctx.w, view.h}, contentHeight, scroll);
  if (ctx.focus != nullptr) ctx.focus->follow(view, scroll - before);
}

// Returns true when the player goes back.
bool header(ui::Ctx& ctx, std::string_view headline) {
  const bool back = ui::backButton(ctx, kBack) || ctx.in.hasKey(SDLK_ESCAPE);
  ui::drawText(
      ctx.cr, kHeadlineX, kHeadlineY, headline,
      {.size = 24, .bold = true, .color = ui::palette::kGold, .maxWidth = ctx.w - kHeadlineX - kListMargin});
  return back;
}

}  // namespace

bool listFrame(ui::Ctx& ctx, const mj::TableTheme* theme, std::string_view headline, bool asking,
               const std::function<void()>& body) {
  ui::drawFelt(ctx, theme, false);
  const ui::InputBlock question(ctx, asking);
  const bool left = header(ctx, headline) && !asking;
  const ui::InputBlock leaving(ctx, left);
  body();
  ctx.stillUntil = ui::kForever;
  return left;
}

ui::Rect listView(double w, double h) {
  return {0, kListTop, w, std::max(h - kListTop - kFooterRoom, kMinViewH)};
}

void scrolledList(ui::Ctx& ctx, const ui::Rect& view, double contentHeight, double& scroll,
                  const std::function<void()>& content) {
  scrollList(ctx, view, contentHeight, scroll);
  if (ctx.focus != nullptr) ctx.focus->beginView(view);
  {
    const ui::PointerBlock block(ctx, !ctx.hover(view));
    const ui::GpuClip clip(view);
    cairo_save(ctx.cr);
    cairo_rectangle(ctx.cr, view.x, view.y, view.w, view.h);
    cairo_clip(ctx.cr);
    content();
    cairo_restore(ctx.cr);
  }
  if (ctx.focus != nullptr) ctx.focus->endView();
  ui::scrollbar(ctx, view, contentHeight, scroll);
}

bool isInView(const ui::Rect& rect, const ui::Rect& view) {
  return rect.y < view.y + view.h && view.y < rect.y + rect.h;
}

void drawFan(const ui::Ctx& ctx, double top, double tileW) {
  ui::drawTileFan(ctx.cr, ctx.w / 2, top + kFanStand * tileW, tileW);
}

ChosenPages& chosenPages() {
  static ChosenPages pages;
  return pages;
}

int pageOf(int level) { return std::clamp((level - 1) / kLevelsPerPage, 0, kPages - 1); }

std::optional<int> pageChips(ui::Ctx& ctx, int page, int marked) {
  const double w = std::min((ctx.w - 2 * kListMargin - (kPages - 1) * kChipGap) / kPages, kMaxChipW);
  std::optional<int> clicked;
  for (int i = 0; i < kPages; ++i) {
    const ui::Rect rect = {kListMargin + i * (w + kChipGap), kChipsY, w, kChipH};
    if (ui::pageChip(ctx, rect, pageName(i), i == page, i == marked && i != page)) clicked = i;
  }
  const int turned = pageByKeys(ctx.in, page);
  if (turned == page) return clicked;
  audio::play(audio::Sfx::Click);
  return turned;
}

ui::Rect pagedListView(double w, double h, double top, double below) {
  return {0, top, w, std::max(h - top - below, kMinPagedViewH)};
}

}  // namespace screens
