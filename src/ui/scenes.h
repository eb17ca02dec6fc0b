// scenes.h: two more uses of a board: the faded one that drifts behind the menu, and the picture of one in a
// file. Knows no screen and no record of games. Units: logical pixels, seconds; the file's size in its
// pixels.
#pragma once

#include <string>

#include "rules/engine.h"
#include "rules/table_themes.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace ui {

// The game's board over the whole window, faded, zooming and drifting slowly by ctx.time. Only tiles are
// drawn, so that whatever cloth lies below shows through. With a renderer the board is painted once for a
// size of the window and copied from then on, until it is forgotten: call that when the menu with this game
// ends. Where the renderer cannot paint into a texture there is no backdrop.
void drawMenuBackdrop(Ctx& ctx, const mj::GameState& game);
void forgetMenuBackdrop();

// Paints a square of this size in the context's corner: the theme's cloth, the board as it looks on the
// table, a thin frame.
void drawCapture(cairo_t* cr, const mj::GameState& game, const mj::TableTheme& theme, double size);
// The same as a picture of size x size pixels. Null when it cannot be made, as without a pixel.
CairoSurface captureBoard(const mj::GameState& game, const mj::TableTheme& theme, int size);
// Writes a picture as a PNG. A file of that name is replaced once the new one is whole: should anything go
// wrong, or the program die meanwhile, it is as it was before. False when nothing could be written, and for
// null.
bool writePng(cairo_surface_t* picture, const std::string& path);
// Both at once.
bool captureBoardPng(const mj::GameState& game, const mj::TableTheme& theme, int size,
                     const std::string& path);

}  // namespace ui
