// scenes.h: two more pictures of a board: the faded backdrop that drifts behind the menu, and the capture
// saved in a file. Knows no screens and no stored games. Units: logical pixels, seconds; a capture's size in
// its own pixels.
#pragma once

#include <string>

#include "rules/engine.h"
#include "rules/table_themes.h"
#include "ui/context.h"
#include "ui/handles.h"

namespace ui {

// Draws the game's board faded over the whole window, zooming and drifting slowly with ctx.time. Only tiles
// are drawn, so the cloth below shows through. With a renderer the board is painted once for a window size
// and then copied. Call forgetMenuBackdrop when the menu with this game ends. If the texture cannot be made,
// there is no backdrop.
void drawMenuBackdrop(Ctx& ctx, const mj::GameState& game);
void forgetMenuBackdrop();

// Paints a square of side `size` at the context's origin: the theme's cloth, the board as on the table, a
// thin frame.
void drawCapture(cairo_t* cr, const mj::GameState& game, const mj::TableTheme& theme, double size);
// The same as a picture of size x size pixels. Returns null if it cannot be made or `size` is below 1.
CairoSurface captureBoard(const mj::GameState& game, const mj::TableTheme& theme, int size);
// Writes the picture as a PNG. Replaces an existing file only once the new one is complete: if something
// fails or the program dies, the old file stays. Returns false on failure or if the picture is null.
bool writePng(cairo_surface_t* picture, const std::string& path);
// Captures the board and writes the PNG.
bool captureBoardPng(const mj::GameState& game, const mj::TableTheme& theme, int size,
                     const std::string& path);

}  // namespace ui
