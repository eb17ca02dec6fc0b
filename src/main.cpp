// main.cpp: sets up command line, window, renderer, fonts and sound, then runs the frame loop until the
// player quits.

#include <SDL.h>
#include <cairo.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <span>

#include "app/app.h"
#include "app/command_line.h"
#include "app/frame_loop.h"
#include "app/geometry.h"
#include "app/signals.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "screens/screens.h"
#include "ui/fonts.h"
#include "ui/gpu.h"
#include "ui/handles.h"
#include "ui/tile.h"
#include "version.h"

namespace {

constexpr const char* kTitle = "Quenlock's Mahjong";

// Seconds since the first call.
double nowSeconds() {
  using Clock = std::chrono::steady_clock;
  static const Clock::time_point start = Clock::now();
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// The caller may have started the program with closed standard streams. The next opened files, such as the
// connection to the display, would get their descriptors and receive what is printed for the player.
void holdStandardStreams() {
  int file = open("/dev/null", O_RDWR);
  while (file >= 0 && file <= STDERR_FILENO) file = open("/dev/null", O_RDWR);
  if (file > STDERR_FILENO) close(file);
}

// Screens allocate and free large pictures. By default the allocator raises its threshold after the first of
// them and then keeps such memory in the heap, between small long-lived blocks. With a fixed threshold it
// returns each picture's memory to the system.
void returnLargeMemory() { mallopt(M_MMAP_THRESHOLD, 128 * 1024); }

// Sets an environment variable while it lives, unless the player has set it.
class VariableDefault {
 public:
  VariableDefault(const char* variable, const char* value)
      : name(variable), added(std::getenv(variable) == nullptr) {
    if (added) setenv(name, value, 1);
  }
  ~VariableDefault() {
    if (added) unsetenv(name);
  }
  VariableDefault(const VariableDefault&) = delete;
  VariableDefault& operator=(const VariableDefault&) = delete;

 private:
  const char* name;
  bool added;
};

// SDL reads its windows' id only from the environment, and only during SDL_Init. The variables are removed
// afterwards so that a browser opened from the game does not inherit the id.
bool initSdl(Uint32 flags) {
  const VariableDefault onX11("SDL_VIDEO_X11_WMCLASS", kApplicationId);
  const VariableDefault onWayland("SDL_VIDEO_WAYLAND_WMCLASS", kApplicationId);
  return SDL_Init(flags) == 0;
}

// Calls SDL_Quit when it goes out of scope, after everything made with SDL is gone.
struct SdlSession {
  explicit SdlSession(Uint32 flags) : ready(initSdl(flags)) {}
  ~SdlSession() { SDL_Quit(); }
  SdlSession(const SdlSession&) = delete;
  SdlSession& operator=(const SdlSession&) = delete;

  bool ready;
};

// The display area for windows. Empty if SDL knows neither that nor the display's size.
SDL_Rect usableBounds() {
  SDL_Rect bounds{};
  if (SDL_GetDisplayUsableBounds(0, &bounds) == 0 && bounds.w > 0) return bounds;
  if (SDL_GetDisplayBounds(0, &bounds) == 0) return bounds;
  return {};
}

ui::SdlWindow openWindow(const ui::WindowGeometry& geometry) {
  return ui::SdlWindow(SDL_CreateWindow(kTitle, geometry.x, geometry.y, geometry.w, geometry.h,
                                        SDL_WINDOW_HIDDEN | SDL_WINDOW_RESIZABLE | SDL_WINDOW_ALLOW_HIGHDPI));
}

int isNoMove(void* /*user*/, SDL_Event* event) {
  return event->type != SDL_WINDOWEVENT || event->window.event != SDL_WINDOWEVENT_MOVED ? 1 : 0;
}

// Some window managers place the frame where SDL asked for the window's client area, so that the window would
// move down by the height of its title bar at each start. Once the window has its frame, this moves it to the
// wanted position and discards the events about the first one. Size and state stay as the window manager
// chose them.
void placeInside(SDL_Window* window, const ui::WindowGeometry& geometry) {
  SDL_PumpEvents();
  SDL_SetWindowPosition(window, geometry.x, geometry.y);
  SDL_PumpEvents();
  SDL_FilterEvents(isNoMove, nullptr);
}

// Call after creating the renderer: SDL may then recreate the window, and the new one would lose the minimum
// size. The minimum size is set before the window is shown: SDL then requests the current size again, which
// would undo a change by the window manager.
void arrangeWindow(SDL_Window* window, const ui::WindowGeometry& geometry, const store::Settings& settings) {
  SDL_SetWindowMinimumSize(window, store::kMinWindowW, store::kMinWindowH);
  SDL_ShowWindow(window);
  if (geometry.isPlaced()) placeInside(window, geometry);
  if (settings.maximized) SDL_MaximizeWindow(window);
  if (settings.fullscreen) SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
}

// For docks that find no desktop entry, for example when the game is not installed: a tile from the glyph
// font.
void setIcon(SDL_Window* window) {
  constexpr int kSize = 64;
  constexpr double kTileW = kSize / ui::kTileAspect;
  const ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kSize, kSize));
  const ui::CairoContext cr(cairo_create(picture.get()));
  ui::drawStaticTile(cr.get(), {(kSize - kTileW) / 2, 0, kTileW, kSize}, "dragRed", 1);
  cairo_surface_flush(picture.get());
  const ui::SdlSurface icon(SDL_CreateRGBSurfaceWithFormatFrom(
      cairo_image_surface_get_data(picture.get()), kSize, kSize, 32,
      cairo_image_surface_get_stride(picture.get()), SDL_PIXELFORMAT_ARGB8888));
  if (icon) SDL_SetWindowIcon(window, icon.get());
}

// Otherwise SDL presents its software frames through OpenGL, which may itself be software.
void showWithoutOpenGl() { SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0"); }

ui::SdlRenderer openRenderer(SDL_Window* window) {
  SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "linear");
  const char* driver = SDL_GetHint(SDL_HINT_RENDER_DRIVER);
  if (driver != nullptr && SDL_strcasecmp(driver, "software") == 0) showWithoutOpenGl();
  ui::SdlRenderer renderer(
      SDL_CreateRenderer(window, -1, SDL_RENDERER_ACCELERATED | SDL_RENDERER_PRESENTVSYNC));
  if (renderer) return renderer;
  showWithoutOpenGl();
  renderer.reset(SDL_CreateRenderer(window, -1, SDL_RENDERER_SOFTWARE));
  return renderer;
}

void reportVideo(SDL_Renderer* renderer) {
  SDL_RendererInfo info;
  if (SDL_GetRendererInfo(renderer, &info) != 0) return;
  std::printf("[video] Treiber %s, Renderer %s%s%s\n", SDL_GetCurrentVideoDriver(),
              info.name != nullptr ? info.name : "?",
              (info.flags & SDL_RENDERER_ACCELERATED) != 0 ? " (beschleunigt)" : " (Software!)",
              (info.flags & SDL_RENDERER_PRESENTVSYNC) != 0 ? ", vsync" : ", ohne vsync");
  std::fflush(stdout);
}

void startSound(const store::Settings& settings) {
  audio::init();
  audio::setEnabled(settings.soundOn);
  audio::setMusicVolume(settings.musicVolume);
  audio::setSfxVolume(settings.sfxVolume);
  if (settings.soundOn) audio::startMusic();
}

int fail(const char* what) {
  std::fprintf(stderr, "%s: %s\n", what, SDL_GetError());
  return 1;
}

int play(std::span<const char* const> arguments) {
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  // By default SDL keeps the screen saver away and asks to bypass the compositor. Neither suits this game.
  SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
  SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
  // The name shown in sound mixers.
  SDL_SetHint(SDL_HINT_APP_NAME, kTitle);
  ui::installTerminationHandler(audio::shutdown);
  ui::surviveFailedWrites();
  const SdlSession sdl(SDL_INIT_TIMER | SDL_INIT_VIDEO);
  if (!sdl.ready) return fail("SDL_Init");

  store::Settings& settings = ui::Game::settings();
  ui::applyWindowArguments(arguments, settings);
  i18n::setLanguage(settings.language);

  const ui::WindowGeometry geometry = ui::initialGeometry(settings, usableBounds());
  const ui::SdlWindow window = openWindow(geometry);
  if (!window) return fail("SDL_CreateWindow");
  // The game reads keys, not text. An input method would swallow letters.
  SDL_StopTextInput();
  const ui::SdlRenderer renderer = openRenderer(window.get());
  if (!renderer) return fail("SDL_CreateRenderer");
  arrangeWindow(window.get(), geometry, settings);
  reportVideo(renderer.get());

  ui::gpuInit(renderer.get());
  ui::registerBundledFonts();
  setIcon(window.get());
  store::ensureDataDirs();
  startSound(settings);

  ui::Game::instance().setFactory(screens::make);
  ui::FrameLoop loop(window.get(), renderer.get(), nowSeconds);
  while (loop.pass()) {
  }
  ui::Game::persistSettings();
  ui::gpuShutdown();
  audio::shutdown();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  holdStandardStreams();
  returnLargeMemory();
  const std::span<const char* const> arguments(argv + 1, argc > 1 ? static_cast<std::size_t>(argc - 1) : 0U);
  if (const auto text = ui::infoText(arguments)) {
    std::fputs(text->c_str(), stdout);
    return 0;
  }
  return play(arguments);
}
