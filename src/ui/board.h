// board.h: paints a game's tiles in a rectangle. Knows no input and no clock of its own. Units: logical
// pixels, x right, y down; seconds.
#pragma once

#include "rules/engine.h"
#include "ui/board_fx.h"
#include "ui/board_geometry.h"
#include "ui/context.h"

namespace ui {

// Factor by which tile textures are larger than the unzoomed tile, 1 to 3 in halves: zooming does not repaint
// them every frame.
double textureQuality(double zoom);

// Paints the board clipped to `rect`: by cached textures when there is a renderer, else with cairo. With `fx`
// its fly-in is played, and heard; a tile in flight shows no overlays. Blocked tiles are veiled.
void drawBoard(Ctx& ctx, const mj::GameState& game, const Rect& rect, const BoardOpts& opts, BoardFx* fx);

}  // namespace ui
