// The program: command line, window, renderer, fonts, then the frame loop until someone ends it.

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

// Whoever starts the program may have closed its standard streams. The next files that are opened, such as
// the connection to the display, would be taken for them, and what is meant for the player written into
// those.
void holdStandardStreams() {
  int file = open("/dev/null", O_RDWR);
  while (file >= 0 && file <= STDERR_FILENO) file = open("/dev/null", O_RDWR);
  if (file > STDERR_FILENO) close(file);
}

// Large pictures come and go with the screens. The allocator would learn from the first of them to keep such
// room for later, between small things that stay; so told it gives each picture's memory back.
void returnLargeMemory() { mallopt(M_MMAP_THRESHOLD, 128 * 1024); }

// Gives a variable of the environment a value while it lives, unless the player has given it one.
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

// The environment is the only place where SDL looks for the id of its windows, and it does so while it
// starts. A browser opened from the game later must not take the id for its own.
bool initSdl(Uint32 flags) {
  const VariableDefault onX11("SDL_VIDEO_X11_WMCLASS", kApplicationId);
  const VariableDefault onWayland("SDL_VIDEO_WAYLAND_WMCLASS", kApplicationId);
  return SDL_Init(flags) == 0;
}

// Ends SDL after everything made with it is gone.
struct SdlSession {
  explicit SdlSession(Uint32 flags) : ready(initSdl(flags)) {}
  ~SdlSession() { SDL_Quit(); }
  SdlSession(const SdlSession&) = delete;
  SdlSession& operator=(const SdlSession&) = delete;

  bool ready;
};

// Empty when the display tells nothing.
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

// A window manager may take the place a window is opened at for that of its frame, while SDL tells that of
// its inside: the window would wander down by the height of its title bar at each start. Once it has its
// frame, the inside is put where it was, and what was told of the first place forgotten. The window manager
// may have given it another size or state as well: that stays.
void placeInside(SDL_Window* window, const ui::WindowGeometry& geometry) {
  SDL_PumpEvents();
  SDL_SetWindowPosition(window, geometry.x, geometry.y);
  SDL_PumpEvents();
  SDL_FilterEvents(isNoMove, nullptr);
}

// After the renderer is made: for it SDL may open another window in place of the first, and that one would
// not know of a smallest size told to the first. Before it is shown: with the smallest size SDL asks for the
// present one once more, and would undo what the window manager made of it.
void arrangeWindow(SDL_Window* window, const ui::WindowGeometry& geometry, const store::Settings& settings) {
  SDL_SetWindowMinimumSize(window, store::kMinWindowW, store::kMinWindowH);
  SDL_ShowWindow(window);
  if (geometry.isPlaced()) placeInside(window, geometry);
  if (settings.maximized) SDL_MaximizeWindow(window);
  if (settings.fullscreen) SDL_SetWindowFullscreen(window, SDL_WINDOW_FULLSCREEN_DESKTOP);
}

// For docks that find no desktop entry, as where the game is not installed: a tile, in the glyph font.
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

// SDL would carry what it has painted without OpenGL to the window by OpenGL, which may be software in its
// turn.
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
  // SDL is made for films and for games that own the screen: it keeps the screen saver away, and asks for
  // every window to be shown past the compositor.
  SDL_SetHint(SDL_HINT_VIDEO_ALLOW_SCREENSAVER, "1");
  SDL_SetHint(SDL_HINT_VIDEO_X11_NET_WM_BYPASS_COMPOSITOR, "0");
  // The name that a sound mixer shows.
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
  // The game takes keys, not text; an input method would swallow letters.
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
