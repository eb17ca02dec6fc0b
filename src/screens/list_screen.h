// list_screen.h: what the screens behind the menu have in common, so that they look alike: the back button
// and the headline at the top, and the row of pages of ten levels. Units: logical pixels.
#pragma once

#include <optional>
#include <string_view>

#include "app/context.h"

namespace screens {

inline constexpr int kPages = 10;
inline constexpr int kLevelsPerPage = 10;
// Where what scrolls begins: below the headline, and below the pages.
inline constexpr double kListTop = 56;
inline constexpr double kPagedListTop = 114;

// Draws back button and headline. True when the player goes back, by the button or the Escape key: the caller
// pops, and ends its frame.
bool listHeader(ui::Ctx& ctx, std::string_view headline);

// The page, 0 to 9, on which a level lies; a level out of range lies on the nearest one.
int pageOf(int level);

// Draws the chips of the ten pages, each named by its first and last level; `page` is the one shown. Gives
// the page whose chip was clicked. Where the player has come to, `marked`, bears a dot while another page is
// shown.
std::optional<int> pageChips(ui::Ctx& ctx, int page, int marked);

}  // namespace screens
