// solved_layout.h: where everything lies on the Solved screen, for any size of the window. Units: logical
// pixels.
#pragma once

#include <array>

#include "ui/context.h"

namespace screens {

// In a wide window what is told about the game lies beside the board, with the buttons below it; else it lies
// above the board, and the buttons in a row under it. All of it lies inside the table's golden frame.
struct SolvedLayout {
  bool wide;
  ui::Rect info;
  double starScale;  // of the award in `info`
  ui::Rect board;
  ui::Rect buttons;
  double footerBottom;
};
SolvedLayout solvedLayout(double w, double h);

// What the panel holds: one below the other, or, in a panel too low for that, the award and the headline at
// the left and the lines at the right.
struct InfoLayout {
  ui::Rect stars;
  ui::Rect headline;
  double headlineSize;
  std::array<ui::Rect, 4> lines;
};
InfoLayout infoLayout(const ui::Rect& panel, double starScale);

// Three buttons that fill the rectangle, one below the other when `wide`, else side by side.
std::array<ui::Rect, 3> solvedButtons(const ui::Rect& rect, bool wide);

}  // namespace screens
