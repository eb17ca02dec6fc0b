#include "window/menu.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <thread>

#include "support/picture.h"
#include "ui/palette.h"

namespace window {
namespace {

using screens::MenuEntry;

ui::Rect plaqueOf(MenuEntry entry, Size windowSize) {
  return screens::menuLayout(windowSize.w, windowSize.h).plaque(entry);
}

// The tolerance covers a plaque that glows under the pointer.
bool isGold(cairo_surface_t* picture, int x, int y) {
  const std::uint32_t color = support::pixelAt(picture, x, y) & 0xFFFFFF;  // window pixels have no alpha
  return support::channelDifference(color, ui::palette::kGold) <= 16;
}

}  // namespace

Point middleOf(const ui::Rect& rect) {
  return {static_cast<int>(rect.x + rect.w / 2), static_cast<int>(rect.y + rect.h / 2)};
}

// The plaque is golden on both sides of its label, except where the shine passes. That is on one side at a
// time.
bool isMenuShownIn(cairo_surface_t* picture) {
  if (picture == nullptr) return false;
  constexpr int kBesideLabel = 16;
  const ui::Rect plaque = plaqueOf(MenuEntry::Continue, sizeOf(picture));
  const Point middle = middleOf(plaque);
  const int reach = static_cast<int>(plaque.w / 2) - kBesideLabel;
  return isGold(picture, middle.x - reach, middle.y) || isGold(picture, middle.x + reach, middle.y);
}

bool continueFromMenu(const Game& game) {
  game.type(Key::Space);
  return chooseFromMenu(game, MenuEntry::Continue);
}

bool chooseFromMenu(const Game& game, MenuEntry entry) {
  // The window may be resized while the program starts, which moves the plaque. So clicks again after each
  // change of size.
  std::optional<Size> clicked;
  const bool gone = waitFor([&] {
    const ui::CairoSurface picture = game.picture();
    if (!picture) return false;
    if (!isMenuShownIn(picture.get())) return clicked.has_value();
    const Size size = sizeOf(picture.get());
    if (clicked != size) game.click(middleOf(plaqueOf(entry, size)));
    clicked = size;
    return false;
  });
  // Waits, so that a following click does not count as a double click.
  constexpr std::chrono::milliseconds kDoubleClick{300};
  std::this_thread::sleep_for(kDoubleClick);
  return gone;
}

}  // namespace window
