// tile_cursor.h: where the keyboard's cursor goes on a board. It stands on free tiles only. What is asked
// here depends on the tiles and on nothing else: neither on the window nor on the zoom.
#pragma once

#include <vector>

#include "rules/engine.h"

namespace screens {

enum class Arrow { Left, Right, Up, Down };

// The free tile to which an arrow leads from this free one: the nearest in the quarter of the board that lies
// that way, as the board is seen. The tile itself where there is none. Whoever presses again and again the
// arrow in whose quarter a free tile lies comes to it: each step leads nearer.
int tileTowards(const mj::GameState& game, int tile, Arrow arrow);

// Where the cursor begins: on the selected tile, else on the free one nearest the middle. -1 without any.
int firstTile(const mj::GameState& game);
// The free tile nearest to a slot, which may be empty: the slot's own if that is free. -1 without any.
int tileNear(const mj::GameState& game, int slot);

// The free tiles from left to right, row by row from above.
std::vector<int> tilesInReadingOrder(const mj::GameState& game);
// The one after this free tile in that order, or before it with a `step` of -1. -1 where the board ends.
int tileAfter(const mj::GameState& game, int tile, int step);
// The next free tile in that order that matches the chosen one, from the first again after the last. The tile
// itself where none matches.
int partnerAfter(const mj::GameState& game, int tile, int chosen, int step);

}  // namespace screens
