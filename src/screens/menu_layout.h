// menu_layout.h: the layout of the main menu for any window size. Units: logical pixels.
#pragma once

#include <array>
#include <optional>

#include "screens/title_block.h"
#include "ui/context.h"

namespace screens {

// The entries, in the order of their plaques.
enum class MenuEntry : int { Continue, NewGame, LevelSelect, Gallery, Settings, About };

// The title is above the plaques. Two plaques are as wide as the column; the other four are below, in two
// columns. Everything grows in a large window. A low or narrow one has smaller plaques and no tagline.
struct MenuLayout {
  TitleBlock title;
  double titleTop;
  std::optional<double> taglineTop;
  std::array<ui::Rect, 6> plaques;
  double fontSize;  // of the plaques' labels
  double footerBottom;
  ui::Rect footer;  // roughly its two lines

  const ui::Rect& plaque(MenuEntry entry) const { return plaques[static_cast<std::size_t>(entry)]; }
};
MenuLayout menuLayout(double w, double h);

}  // namespace screens
