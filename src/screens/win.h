// win.h: records a win. Knows no screen.
#pragma once

#include "ui/context.h"

namespace screens {

// Saves the player's progress and the level's best result, then removes the saved game. In this order, so
// that a kill at any time leaves the game or the win on disk. `solved` describes the Solved screen of the
// win.
void recordWin(const ui::GameState& solved);

}  // namespace screens
