// playing_layout.h: the layout of the Playing screen for any window size. Units: logical pixels.
#pragma once

#include <array>

#include "ui/context.h"

namespace screens {

// The header is above the board and the action bar below, with the same margins, all inside the table's
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
  std::array<ui::Rect, 6> buttons;  // left: hint, shuffle, undo; right: zoom in, zoom out, reset
};
PlayingLayout playingLayout(double w, double h);

// A panel over the middle of the board with up to two buttons.
struct PanelLayout {
  ui::Rect panel;
  double titleTop;
  ui::Rect first;
  ui::Rect second;
};
// The panel shown when no move is left. With one answer its button is `second`, centred in the panel.
PanelLayout noMovesPanel(double w, const ui::Rect& board, int answers);
// The panel shown during a pause.
PanelLayout pausePanel(double w, double h);

}  // namespace screens
