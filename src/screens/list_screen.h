// list_screen.h: what the screens behind the menu have in common, so that they look alike: the felt with the
// back button and the headline, what scrolls below them, and the row of pages of ten levels. Units: logical
// pixels.
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
// Where what scrolls begins: below the headline, and below the pages.
inline constexpr double kListTop = 56;
inline constexpr double kPagedListTop = 114;
inline constexpr double kListMargin = 12;    // at the sides of the pages and of their cards
inline constexpr double kColumnMargin = 20;  // at the sides of a column, at least
// What is left free for the footer below what scrolls.
inline constexpr double kFooterRoom = ui::kFooterGap + ui::kFooterHeight + 8;

// One frame: the felt, the back button and the headline, and `body`. While the screen is `asking` something
// nothing of it hears of the mouse or the keyboard; the question is drawn by the caller, afterwards. True
// when the player goes back, by the button or the Escape key, which then do nothing else: the caller pops.
// The frame is drawn to its end all the same, or its remains would be seen until the next screen's first.
// Nothing in it moves by itself.
bool listFrame(ui::Ctx& ctx, const mj::TableTheme* theme, std::string_view headline, bool asking,
               const std::function<void()>& body);

// Where a list is seen that has a footer below it.
ui::Rect listView(double w, double h);

// Draws what scrolls, `content`, which is seen in `view` only, and its scrollbar at the view's right edge.
// The wheel moves `scroll` beside the view, too, and so do the page keys, unless there are pages. What is cut
// off at its edges does not hear of the pointer either; what gets the keyboard's focus there is shown whole.
void scrolledList(ui::Ctx& ctx, const ui::Rect& view, double contentHeight, double& scroll,
                  const std::function<void()>& content);
// Whether any of what lies there is seen.
bool isInView(const ui::Rect& rect, const ui::Rect& view);

// Draws the fan of tiles in the middle of the window's width; `top` is that of the tilted ones.
void drawFan(const ui::Ctx& ctx, double top, double tileW);

// The pages that the player has chosen last in each of the two lists, on an earlier visit too, until the
// program ends; empty before the first choice.
struct ChosenPages {
  std::optional<int> levels;
  std::optional<int> gallery;
};
ChosenPages& chosenPages();

// The page, 0 to 9, on which a level lies; a level out of range lies on the nearest one.
int pageOf(int level);

// Draws the chips of the ten pages, each named by its first and last level; `page` is the one shown. Gives
// the page whose chip was clicked, or to which the page keys turn. Where the player has come to, `marked`,
// bears a ring and a dot while another page is shown.
std::optional<int> pageChips(ui::Ctx& ctx, int page, int marked);
// Where a list that begins at `top` is seen and leaves so much free below it.
ui::Rect pagedListView(double w, double h, double top, double below);

}  // namespace screens
