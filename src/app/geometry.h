// geometry.h: where the window opens, and how large it draws. Units: SDL's window coordinates, here called
// points.
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

// The stored geometry, fitted into `usable`, the part of the screen without panels. Keeps room for the
// window's frame, and 30 above the window for its title bar. An empty `usable` means that it is unknown; the
// stored geometry is then returned unchanged. Without a stored position the window is centred.
WindowGeometry initialGeometry(const store::Settings& settings, const SDL_Rect& usable);

// Points per logical pixel in a window of this size: 1 up to 1920 x 1080. In a larger window everything
// grows, so that a screen keeps the composition it has at that size.
double windowGrowth(int w, int h);

}  // namespace ui
