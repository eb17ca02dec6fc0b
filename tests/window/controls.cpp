#include "window/controls.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "support/picture.h"
#include "window/menu.h"

namespace window {
namespace {

// From the middle of the window, where the plate lies, to the middle of its right button.
constexpr Point kYes = {100, 74};

// How light the window is in its corner, where nothing but cloth ever is. Compares as false without a
// picture.
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
  // The question's veil takes most of the light there is.
  const double before = cornerLight(game);
  act();
  return waitFor([&] { return cornerLight(game) < before / 2; });
}

Point settingsControl(const Game& game, ui::Rect screens::SettingsLayout::*control) {
  const Size size = game.size();
  const ui::CairoSurface paper = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(paper.get()));
  const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), size.w);
  const ui::Rect view = screens::listView(size.w, size.h);
  ui::Rect rect = layout.*control;
  rect.y += view.y + std::max((view.h - layout.height) / 2, 0.0);
  return middleOf(rect);
}

Point firstCard(const Game& game) {
  const Size size = game.size();
  return middleOf(screens::galleryGrid(size.w, size.h, screens::kPagedListTop).card(0, 0));
}

bool confirm(const Game& game) {
  const double veiled = cornerLight(game);
  const Size size = game.size();
  game.click({size.w / 2 + kYes.x, size.h / 2 + kYes.y});
  return waitFor([&] { return cornerLight(game) > 2 * veiled; });
}

}  // namespace window
