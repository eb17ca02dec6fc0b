// menu_layout.h: where everything lies in the main menu, for any size of the window. Units: logical pixels.
#pragma once

#include <array>
#include <optional>

#include "screens/title_block.h"
#include "ui/context.h"

namespace screens {

// The menu's entries, in the order of their plaques.
enum class MenuEntry : int { Continue, NewGame, LevelSelect, Gallery, Settings, About };

// The title above the plaques: two as wide as the column, and four below in two columns. A low or narrow
// window has smaller ones, and no tagline; in a large one all grow.
struct MenuLayout {
  TitleBlock title;
  double titleTop;
  std::optional<double> taglineTop;
  std::array<ui::Rect, 6> plaques;
  double fontSize;  // of the plaques' labels
  double footerBottom;
  ui::Rect footer;  // its two lines, about

  const ui::Rect& plaque(MenuEntry entry) const { return plaques[static_cast<std::size_t>(entry)]; }
};
MenuLayout menuLayout(double w, double h);

}  // namespace screens
