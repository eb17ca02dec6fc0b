// menu.h: the way from the program's start to the table: past the splash screen and through the menu.
#pragma once

#include <cairo.h>

#include "window/desktop.h"

namespace window {

// Whether the picture of the window shows the menu.
bool isMenuShownIn(cairo_surface_t* picture);

// Skips the splash screen, and clicks on "continue" when the menu is there. False if the menu does not come,
// or does not go.
bool continueFromMenu(const Game& game);

}  // namespace window
