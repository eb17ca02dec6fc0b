// geometry.h: where the window opens, and how large it shows things. Units: SDL's window coordinates, here
// called points.
#pragma once

#include <SDL.h>

#include "storage/storage.h"

namespace ui {

struct WindowGeometry {
  int x;  // either may be SDL_WINDOWPOS_CENTERED
  int y;
  int w;
  int h;

  bool isPlaced() const { return !SDL_WINDOWPOS_ISCENTERED(x); }
};

// The stored geometry, brought inside `usable`, the part of the screen that panels leave free: room for the
// window's frame is kept, and 30 above it for its title bar. An empty `usable` means that it is not known,
// and the stored geometry is taken as it is. Without a stored position the window is centred.
WindowGeometry initialGeometry(const store::Settings& settings, const SDL_Rect& usable);

// Points that a logical pixel is long in a window of this size: one up to 1920 x 1080. In a larger window
// everything grows, so that a screen keeps the composition that it has there.
double windowGrowth(int w, int h);

}  // namespace ui
