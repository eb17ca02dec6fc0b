// list_screen.h: the common parts of the screens behind the menu: the felt with back button and headline, the
// scrolling list, and the row of page chips. Units: logical pixels.
#pragma once

#include <functional>
#include <optional>
#include <string_view>

#include "rules/table_themes.h"
#include "ui/context.h"
#include "ui/widgets.h"

namespace screens {

inline constexpr int kPages = 10;
inline constexpr int kLevelsPerPage = 10;
// The top of the scrolling list: below the headline, and below the page chips.
inline constexpr double kListTop = 56;
inline constexpr double kPagedListTop = 114;
inline constexpr double kListMargin = 12;    // at the sides of the chips and of the cards
inline constexpr double kColumnMargin = 20;  // least margin at the sides of a column
// Height reserved for the footer below the list.
inline constexpr double kFooterRoom = ui::kFooterGap + ui::kFooterHeight + 8;

// Draws one frame: the felt, the back button, the headline and `body`. Returns true when the player goes back
// with the back button or Escape; the caller then pops the screen. `body` gets no input in that frame but is
// still drawn, because the frame stays visible until the next screen's first one. While `asking`, nothing
// here gets any input; the caller draws its question afterwards. Marks the picture as still: nothing in it
// moves by itself.
bool listFrame(ui::Ctx& ctx, const mj::TableTheme* theme, std::string_view headline, bool asking,
               const std::function<void()>& body);

// The view of a list with a footer below it.
ui::Rect listView(double w, double h);

// Draws the scrolling `content`, clipped to `view`, and a scrollbar at the view's right edge. The wheel works
// across the whole width of the window, at the height of the view. The page keys scroll too, unless
// pageChips() has taken them. Content ignores the pointer while that is outside the view. A control that gets
// the keyboard focus is scrolled fully into view.
void scrolledList(ui::Ctx& ctx, const ui::Rect& view, double contentHeight, double& scroll,
                  const std::function<void()>& content);
// Whether any part of the rectangle is visible, judging by its height only.
bool isInView(const ui::Rect& rect, const ui::Rect& view);

// Draws the fan of tiles in the middle of the window's width. `top` is the top of the tilted tiles.
void drawFan(const ui::Ctx& ctx, double top, double tileW);

// The page the player last chose in each list. Kept until the program ends; empty before the first choice.
struct ChosenPages {
  std::optional<int> levels;
  std::optional<int> gallery;
};
ChosenPages& chosenPages();

// The page of a level, 0 to 9. A level out of range gives the nearest page.
int pageOf(int level);

// Draws the chips of the ten pages, each labelled with its first and last level. `page` is the one shown.
// Returns the page whose chip was clicked or that the page keys lead to, if any. `marked` is the page the
// player has reached; its chip has a ring and a dot while another page is shown.
std::optional<int> pageChips(ui::Ctx& ctx, int page, int marked);
// The view of a list that begins at `top` and leaves the height `below` free under it.
ui::Rect pagedListView(double w, double h, double top, double below);

}  // namespace screens
