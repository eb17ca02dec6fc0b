// Preloaded into a program. Ends it right after frame number END_AT_FRAME is presented; the first is 1 and
// the default. So the life of the process is the time to that frame.

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
