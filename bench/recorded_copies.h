// recorded_copies.h: the texture copies that a frame makes, taken down as they reach SDL, and made again in a
// bare loop. A program that links this has SDL's copying functions in its own hands and passes each call on.
#pragma once

#include <SDL.h>

#include <optional>
#include <vector>

namespace bench {

struct Copy {
  SDL_Texture* texture;
  SDL_Rect target;
  double angle;                  // in degrees, clockwise
  Uint8 opacity;                 // of a premultiplied texture: of its alpha and its colours alike
  std::optional<SDL_Rect> clip;  // what of it is seen
};

// While it lives the copies to the window are taken down; what paints a texture is not one of them. One at a
// time.
class Recording {
 public:
  explicit Recording(std::vector<Copy>& into);
  Recording(const Recording&) = delete;
  Recording& operator=(const Recording&) = delete;
  ~Recording();
};

// Makes them again. Their textures must still be there.
void copyAll(SDL_Renderer* renderer, const std::vector<Copy>& copies);

}  // namespace bench
