#include "screens/list_screen.h"

#include <SDL_keycode.h>

#include <algorithm>
#include <string>

#include "ui/draw.h"
#include "ui/palette.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr ui::Rect kBack = {12, 8, 44, 40};
constexpr double kHeadlineX = 68;
constexpr double kHeadlineY = 12;
constexpr double kMargin = 12;

constexpr double kChipsY = 64;
constexpr double kChipH = 40;
constexpr double kChipGap = 6;
constexpr double kMaxChipW = 96;

std::string pageName(int page) {
  return std::to_string(page * kLevelsPerPage + 1) + "–" + std::to_string((page + 1) * kLevelsPerPage);
}

}  // namespace

bool listHeader(ui::Ctx& ctx, std::string_view headline) {
  const bool back = ui::backButton(ctx, kBack) || ctx.in.hasKey(SDLK_ESCAPE);
  ui::drawText(
      ctx.cr, kHeadlineX, kHeadlineY, headline,
      {.size = 24, .bold = true, .color = ui::palette::kGold, .maxWidth = ctx.w - kHeadlineX - kMargin});
  return back;
}

int pageOf(int level) { return std::clamp((level - 1) / kLevelsPerPage, 0, kPages - 1); }

std::optional<int> pageChips(ui::Ctx& ctx, int page, int marked) {
  const double w = std::min((ctx.w - 2 * kMargin - (kPages - 1) * kChipGap) / kPages, kMaxChipW);
  std::optional<int> clicked;
  for (int i = 0; i < kPages; ++i) {
    const ui::Rect rect = {kMargin + i * (w + kChipGap), kChipsY, w, kChipH};
    if (ui::pageChip(ctx, rect, pageName(i), i == page, i == marked && i != page)) clicked = i;
  }
  return clicked;
}

}  // namespace screens
