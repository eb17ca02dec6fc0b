// about.h: the layout of the about and licences screens for any window size. Rectangles of scrolling content
// are given at a scroll of 0. Units: logical pixels.
#pragma once

#include <array>
#include <cstddef>

#include "ui/context.h"

namespace screens {

// A centred column between the header and the footer.
struct ColumnLayout {
  ui::Rect view;  // clips the content; the scrollbar is at its right edge
  double x;       // left edge and width of the column, without the scrollbar
  double w;
};
ColumnLayout columnLayout(double w, double h);

// The texts of the about screen, from top to bottom.
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
  double fanTileW;  // width of one tile of the fan
  ui::Rect fan;
  std::array<ui::Rect, kAboutLines> lines;  // each as wide as the column
  ui::Rect button;
  double contentHeight;  // from the view's top, including the button

  ui::Rect at(AboutLine line) const { return lines[static_cast<std::size_t>(line)]; }
};
// The content is centred in the view if it fits. A low or narrow window gets a smaller fan and smaller gaps.
AboutLayout aboutLayout(double w, double h);

}  // namespace screens
