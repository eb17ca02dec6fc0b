// about.h: where everything lies on the about and licences screens, for any size of the window. What scrolls
// is given where it lies before it is scrolled. Units: logical pixels.
#pragma once

#include <array>
#include <cstddef>

#include "ui/context.h"

namespace screens {

// A centred column, seen between the header and the footer.
struct ColumnLayout {
  ui::Rect view;  // what scrolls is seen in it, and with it the scrollbar at its right edge
  double x;       // of the column itself
  double w;
};
ColumnLayout columnLayout(double w, double h);

// What is written on the about screen, from top to bottom.
enum class AboutLine : std::size_t {
  Title,
  Version,
  MadeBy,
  Developers,
  Company,
  Notice,
  Mail,
  Web,
  MusicBy,
  Musician,
  MusicWeb,
};
inline constexpr std::size_t kAboutLines = 11;

struct AboutLayout {
  ColumnLayout column;
  double fanTileW;  // width of a tile of the fan
  ui::Rect fan;
  std::array<ui::Rect, kAboutLines> lines;  // each as wide as the column
  ui::Rect button;
  double contentHeight;  // from the view's top

  ui::Rect at(AboutLine line) const { return lines[static_cast<std::size_t>(line)]; }
};
// In the middle of the view if all of it fits. A low or narrow window has a smaller fan, and less air between
// the groups.
AboutLayout aboutLayout(double w, double h);

}  // namespace screens
