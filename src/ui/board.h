// board.h: paints a game's tiles in a rectangle. Knows no input and no clock of its own. Units: logical
// pixels, x right, y down; seconds.
#pragma once

#include "rules/engine.h"
#include "ui/board_fx.h"
#include "ui/board_geometry.h"
#include "ui/context.h"

namespace ui {

// Size of the tile textures relative to the unzoomed tile: 1 to 3, in steps of a half, so that a zoom does
// not repaint them in every frame.
double textureQuality(double zoom);

// Paints the board clipped to `rect`: with cached textures if there is a renderer, else with cairo. With
// `fx`, plays its fly-in and the sound; a tile in flight shows no overlays. Blocked tiles are veiled.
void drawBoard(Ctx& ctx, const mj::GameState& game, const Rect& rect, const BoardOpts& opts, BoardFx* fx);

}  // namespace ui
