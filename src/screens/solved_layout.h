// solved_layout.h: the layout of the Solved screen for any window size. Units: logical pixels.
#pragma once

#include <array>

#include "ui/context.h"

namespace screens {

// In a wide window the info panel is beside the board, with the buttons below it. Otherwise it is above the
// board, with the buttons in a row underneath. Everything lies inside the table's golden frame.
struct SolvedLayout {
  bool wide;
  ui::Rect info;
  double starScale;  // of the stars in `info`
  ui::Rect board;
  ui::Rect buttons;
  double footerBottom;
};
SolvedLayout solvedLayout(double w, double h);

// The info panel's contents, one below the other. In a panel too low for that, the stars and the headline are
// at the left and the lines at the right.
struct InfoLayout {
  ui::Rect stars;
  ui::Rect headline;
  double headlineSize;
  std::array<ui::Rect, 4> lines;
};
InfoLayout infoLayout(const ui::Rect& panel, double starScale);

// Three buttons that fill the rectangle: one below the other if `wide`, else side by side.
std::array<ui::Rect, 3> solvedButtons(const ui::Rect& rect, bool wide);

}  // namespace screens
