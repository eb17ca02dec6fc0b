#include "recorded_copies.h"

#include <dlfcn.h>

#include <cstdlib>

namespace {

std::vector<bench::Copy>* recording = nullptr;

// SDL's real function of this name.
template <typename Function>
Function* next(const char* name) {
  auto* function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  if (function == nullptr) std::abort();
  return function;
}

std::optional<SDL_Rect> clipOf(SDL_Renderer* renderer) {
  if (SDL_RenderIsClipEnabled(renderer) == SDL_FALSE) return std::nullopt;
  SDL_Rect clip;
  SDL_RenderGetClipRect(renderer, &clip);
  return clip;
}

void takeDown(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* target, double angle) {
  if (recording == nullptr || SDL_GetRenderTarget(renderer) != nullptr) return;
  Uint8 opacity = 0;
  SDL_GetTextureAlphaMod(texture, &opacity);
  recording->push_back({texture, *target, angle, opacity, clipOf(renderer)});
}

bool sameClip(const std::optional<SDL_Rect>& a, const std::optional<SDL_Rect>& b) {
  return a && b ? SDL_RectEquals(&*a, &*b) == SDL_TRUE : a.has_value() == b.has_value();
}

}  // namespace

extern "C" int SDL_RenderCopy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                              const SDL_Rect* target) {
  static auto* const copy = next<decltype(SDL_RenderCopy)>("SDL_RenderCopy");
  takeDown(renderer, texture, target, 0);
  return copy(renderer, texture, source, target);
}

extern "C" int SDL_RenderCopyEx(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* source,
                                const SDL_Rect* target, double angle, const SDL_Point* center,
                                SDL_RendererFlip flip) {
  static auto* const copy = next<decltype(SDL_RenderCopyEx)>("SDL_RenderCopyEx");
  takeDown(renderer, texture, target, angle);
  return copy(renderer, texture, source, target, angle, center, flip);
}

namespace bench {

Recording::Recording(std::vector<Copy>& into) {
  into.clear();
  recording = &into;
}

Recording::~Recording() { recording = nullptr; }

void copyAll(SDL_Renderer* renderer, const std::vector<Copy>& copies) {
  std::optional<SDL_Rect> clip;
  for (const Copy& copy : copies) {
    if (!sameClip(copy.clip, clip)) SDL_RenderSetClipRect(renderer, copy.clip ? &*copy.clip : nullptr);
    clip = copy.clip;
    SDL_SetTextureAlphaMod(copy.texture, copy.opacity);
    SDL_SetTextureColorMod(copy.texture, copy.opacity, copy.opacity, copy.opacity);
    if (copy.angle == 0) {
      SDL_RenderCopy(renderer, copy.texture, nullptr, &copy.target);
    } else {
      SDL_RenderCopyEx(renderer, copy.texture, nullptr, &copy.target, copy.angle, nullptr, SDL_FLIP_NONE);
    }
  }
  if (clip) SDL_RenderSetClipRect(renderer, nullptr);
}

}  // namespace bench
