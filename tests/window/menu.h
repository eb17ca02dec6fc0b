// menu.h: gets from the start of the program past the splash screen and through the menu.
#pragma once

#include <cairo.h>

#include "screens/menu_layout.h"
#include "window/desktop.h"

namespace window {

// Where to click on this rectangle.
Point middleOf(const ui::Rect& rect);

// Whether the window's picture shows the menu; false if it is null.
bool isMenuShownIn(cairo_surface_t* picture);

// Waits for the menu, clicks on this entry and waits until the menu is gone. False if the menu does not come
// or stays.
bool chooseFromMenu(const Game& game, screens::MenuEntry entry);
// Skips the splash screen and chooses "continue".
bool continueFromMenu(const Game& game);

}  // namespace window
