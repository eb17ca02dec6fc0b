// win.h: writes a win down. Knows no screen.
#pragma once

#include "ui/context.h"

namespace screens {

// Writes down how far the player has come and how well, and removes the saved game only then: whoever kills
// the program meanwhile leaves the win or the game. `solved` describes the Solved screen of the win.
void recordWin(const ui::GameState& solved);

}  // namespace screens
