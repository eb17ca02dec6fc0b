// playing_layout.h: where everything lies on the Playing screen, for any size of the window. Units: logical
// pixels.
#pragma once

#include <array>

#include "ui/context.h"

namespace screens {

// Header above, action bar below, both with the same margins, and the board in between, inside the table's
// golden frame. In a narrow window the bars are lower.
struct PlayingLayout {
  ui::Rect header;
  ui::Rect back;
  ui::Rect label;
  std::array<ui::Rect, 3> counters;  // tiles left, hints, shuffles
  ui::Rect time;
  ui::Rect pause;

  ui::Rect board;

  ui::Rect actions;
  std::array<ui::Rect, 6> buttons;  // hint, shuffle, undo at the left; zoom in, out and reset at the right
};
PlayingLayout playingLayout(double w, double h);

// A panel over the middle of the board with up to two buttons.
struct PanelLayout {
  ui::Rect panel;
  double titleTop;
  ui::Rect first;
  ui::Rect second;
};
// No move is left. With one answer it is the second, in the middle of the panel.
PanelLayout noMovesPanel(double w, const ui::Rect& board, int answers);
// The game is paused.
PanelLayout pausePanel(double w, double h);

}  // namespace screens
