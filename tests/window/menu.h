// menu.h: the way from the program's start to the table: past the splash screen and through the menu.
#pragma once

#include <cairo.h>

#include "screens/menu_layout.h"
#include "window/desktop.h"

namespace window {

// Where to click for a control that lies there.
Point middleOf(const ui::Rect& rect);

// Whether the picture of the window shows the menu.
bool isMenuShownIn(cairo_surface_t* picture);

// Clicks on this entry when the menu is there. False if the menu does not come, or does not go.
bool chooseFromMenu(const Game& game, screens::MenuEntry entry);
// Skips the splash screen, and chooses "continue".
bool continueFromMenu(const Game& game);

}  // namespace window
