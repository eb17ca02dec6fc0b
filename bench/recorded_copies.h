// recorded_copies.h: records the texture copies of a frame as they reach SDL, and repeats them in a bare
// loop. A program that links this replaces SDL's copying functions; each call is passed on.
#pragma once

#include <SDL.h>

#include <optional>
#include <vector>

namespace bench {

struct Copy {
  SDL_Texture* texture;
  SDL_Rect target;
  double angle;                  // in degrees, clockwise
  Uint8 opacity;                 // a premultiplied texture's alpha and colours are scaled alike
  std::optional<SDL_Rect> clip;  // only this part is drawn
};

// Records copies to the window while it lives, but not those that paint a texture. Only one may exist at a
// time.
class Recording {
 public:
  explicit Recording(std::vector<Copy>& into);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  ~Recording();
};

// Repeats the copies. Their textures must still exist.
void copyAll(SDL_Renderer* renderer, const std::vector<Copy>& copies);

}  // namespace bench
