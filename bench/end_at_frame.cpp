// Preloaded into a program: ends it right after the frame whose number END_AT_FRAME gives (1 for the first)
// was presented, so that the time to that frame is the life of the process.

#include <SDL.h>
#include <dlfcn.h>

#include <cstdlib>

extern "C" void SDL_RenderPresent(SDL_Renderer* renderer) {
  static const auto present =
      reinterpret_cast<void (*)(SDL_Renderer*)>(dlsym(RTLD_NEXT, "SDL_RenderPresent"));
  static const char* const wanted = std::getenv("END_AT_FRAME");
  static int left = wanted != nullptr ? std::atoi(wanted) : 1;
  present(renderer);
  if (--left == 0) std::_Exit(0);
}
