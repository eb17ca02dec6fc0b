#include "window/controls.h"

#include <cstdint>
#include <cstring>
#include <limits>

#include "resources/i18n.h"
#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "support/own_process.h"
#include "support/picture.h"

namespace window {
namespace {

// Button centres, relative to the middle of the window, where the dialog is.
constexpr Point kNo = {-100, 74};
constexpr Point kYes = {100, 74};

// The brightness of the window's corner, where only cloth is. NaN without a picture, so that comparisons are
// false.
double cornerLight(const Game& game) {
  constexpr int kSide = 8;
  const ui::CairoSurface picture = game.picture();
  if (!picture) return std::numeric_limits<double>::quiet_NaN();
  double sum = 0;
  for (int i = 0; i < kSide * kSide; ++i) {
    const std::uint32_t pixel = support::pixelAt(picture.get(), i % kSide, i / kSide);
    for (const int shift : {16, 8, 0}) sum += pixel >> shift & 0xFF;
  }
  return sum / (3 * kSide * kSide);
}

}  // namespace

bool askBy(const Game& game, const std::function<void()>& act) {
  // The dialog's veil takes most of the light.
  const double before = cornerLight(game);
  act();
  return waitFor([&] { return cornerLight(game) < before / 2; });
}

ui::Rect settingsControl(const Game& game,
                         const std::function<ui::Rect(const screens::SettingsLayout&)>& control,
                         const std::string& language) {
  const Size size = game.size();
  ui::Rect rect;
  // In a process of its own, because it measures texts: a process that has used pango must not fork later to
  // draw texts.
  const std::string bytes = support::inOwnProcess([&] {
    i18n::setLanguage(language);
    const ui::CairoSurface paper = support::makePicture(1, 1);
    const ui::CairoContext cr(cairo_create(paper.get()));
    const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), size.w);
    rect = control(layout);
    rect.y += screens::settingsTop(layout, screens::listView(size.w, size.h));
    return std::string(reinterpret_cast<const char*>(&rect), sizeof rect);
  });
  if (bytes.size() == sizeof rect) std::memcpy(&rect, bytes.data(), sizeof rect);
  return rect;
}

ui::Rect firstCard(const Game& game) {
  const Size size = game.size();
  return screens::galleryGrid(size.w, size.h, screens::kPagedListTop).card(0, 0);
}

void answer(const Game& game, bool yes) {
  const Size size = game.size();
  const Point place = yes ? kYes : kNo;
  game.click({size.w / 2 + place.x, size.h / 2 + place.y});
}

bool confirm(const Game& game) {
  const double veiled = cornerLight(game);
  answer(game, true);
  return waitFor([&] { return cornerLight(game) > 2 * veiled; });
}

}  // namespace window
