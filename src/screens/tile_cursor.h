// tile_cursor.h: moves the keyboard cursor between the free tiles of a board. The results depend only on the
// tiles, not on the window or the zoom.
#pragma once

#include <vector>

#include "rules/engine.h"

namespace screens {

enum class Arrow { Left, Right, Up, Down };

// The free tile that an arrow key leads to from `tile`, a free tile: the nearest one in the quarter of the
// board in that direction, as the board is seen. Returns `tile` itself if there is none. Each step gets
// nearer to every tile in that quarter, so pressing the arrow repeatedly reaches them.
int tileTowards(const mj::GameState& game, int tile, Arrow arrow);

// Where the cursor starts: the selected tile, else the free tile nearest the middle. -1 if no tile is free.
int firstTile(const mj::GameState& game);
// The free tile nearest to a slot, which may be empty. The slot's own tile if that is free. -1 if no tile is
// free.
int tileNear(const mj::GameState& game, int slot);

// The free tiles in rows from top to bottom, each row from left to right.
std::vector<int> tilesInReadingOrder(const mj::GameState& game);
// The tile `step` places (1 or -1) from this free tile in reading order. -1 beyond the first or last tile.
int tileAfter(const mj::GameState& game, int tile, int step);
// The next free tile in reading order, or in reverse if `step` is negative, that matches `chosen`. Wraps
// around at the end. Returns `tile` itself if none matches.
int partnerAfter(const mj::GameState& game, int tile, int chosen, int step);

}  // namespace screens
