// Preloaded into the game. Keeps a Testimony up to date, raises signals when files are renamed into place,
// and makes functions fail, all as told by environment variables.

#include "window/witness.h"

#include <SDL.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

using window::Testimony;

constexpr double kLongestFrame = 0.1;

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

Testimony* openTestimony() {
  const char* path = std::getenv(window::kWitnessVariable);
  const int file = path == nullptr ? -1 : open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  if (file < 0 || ftruncate(file, sizeof(Testimony)) != 0) return nullptr;
  void* const memory = mmap(nullptr, sizeof(Testimony), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
  close(file);
  return memory == MAP_FAILED ? nullptr : new (memory) Testimony;
}

Testimony& testimony() {
  static Testimony unseen;
  static Testimony* const seen = openTestimony();
  return seen == nullptr ? unseen : *seen;
}

// The function that the program would call without this library.
template <class Function>
Function original(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

void raiseSignalsAt(std::string_view path) {
  const char* const wanted = std::getenv(window::kRaiseVariable);
  if (wanted == nullptr) return;
  static int times = 0;
  std::string_view rest = wanted;
  const std::size_t star = rest.find('*');
  if (star != std::string_view::npos) rest.remove_prefix(star + 1);
  std::size_t colon = rest.find(':');
  if (!path.ends_with(rest.substr(0, colon))) return;
  ++times;
  if (star != std::string_view::npos && times != std::atoi(wanted)) return;
  for (; colon != std::string_view::npos; colon = rest.find(':')) {
    rest.remove_prefix(colon + 1);
    std::raise(std::atoi(rest.data()));
  }
}

bool isRefused(std::string_view function) {
  const char* const refused = std::getenv(window::kRefuseVariable);
  if (refused == nullptr || refused != function) return false;
  SDL_SetError("refused by a test");
  return true;
}

bool worksControls(SDL_Keycode key) {
  return key == SDLK_RETURN || key == SDLK_KP_ENTER || key == SDLK_SPACE;
}

}  // namespace

extern "C" SDL_Window* SDL_CreateWindow(const char* title, int x, int y, int w, int h, Uint32 flags) {
  static const auto create = original<decltype(&SDL_CreateWindow)>("SDL_CreateWindow");
  return isRefused("SDL_CreateWindow") ? nullptr : create(title, x, y, w, h, flags);
}

extern "C" SDL_Renderer* SDL_CreateRenderer(SDL_Window* window, int index, Uint32 flags) {
  static const auto create = original<decltype(&SDL_CreateRenderer)>("SDL_CreateRenderer");
  return isRefused("SDL_CreateRenderer") ? nullptr : create(window, index, flags);
}

// The game calls this once in each pass of the loop, after the events and just before it reads the clock.
extern "C" int SDL_GetRendererOutputSize(SDL_Renderer* renderer, int* w, int* h) {
  static const auto ask = original<int (*)(SDL_Renderer*, int*, int*)>("SDL_GetRendererOutputSize");
  static double last = now();
  const double time = now();
  testimony().played += std::min(time - last, kLongestFrame);
  last = time;
  ++testimony().passes;
  testimony().screenSaver = SDL_IsScreenSaverEnabled() == SDL_TRUE;
  return ask(renderer, w, h);
}

extern "C" void SDL_RenderPresent(SDL_Renderer* renderer) {
  static const auto present = original<void (*)(SDL_Renderer*)>("SDL_RenderPresent");
  ++testimony().frames;
  present(renderer);
}

extern "C" int SDL_PollEvent(SDL_Event* event) {
  static const auto poll = original<int (*)(SDL_Event*)>("SDL_PollEvent");
  const int got = poll(event);
  if (got != 0 && event->type == SDL_KEYDOWN && worksControls(event->key.keysym.sym))
    testimony().pressPass = testimony().passes + 1;
  if (got == 0 || event->type != SDL_MOUSEBUTTONUP || event->button.button != SDL_BUTTON_LEFT) return got;
  const double time = now();
  testimony().sinceRelease = time - testimony().releasedAt;
  testimony().releasedAt = time;
  ++testimony().releases;
  testimony().releasePass = testimony().passes + 1;
  return got;
}

extern "C" int rename(const char* from, const char* to) noexcept {
  static const auto put = original<int (*)(const char*, const char*)>("rename");
  raiseSignalsAt(to);
  const int result = put(from, to);
  if (result == 0 && std::string_view(to).ends_with("/save.json")) {
    testimony().playedAtSave = testimony().played;
    ++testimony().saves;
  }
  return result;
}
