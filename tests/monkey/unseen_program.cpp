#include "monkey/unseen_program.h"

#include <dlfcn.h>

#include <cmath>
#include <cstdlib>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/fonts.h"
#include "ui/gpu.h"

namespace {

// In seconds. Clicks or presses with at most this gap belong together, for at most this long.
constexpr double kRunGap = 0.3;
constexpr double kLongestRun = 1;

// What SDL would tell the program, set by the test.
struct Seen {
  double now = 0;
  int mouseX = 0;
  int mouseY = 0;
  Uint32 buttons = 0;
  double scale = 1;
  bool minimised = false;
  long frame = 0;
};

// Copying textures in software takes most of a frame, and nobody sees it, so only every tenth frame does.
constexpr long kCopiedFrames = 10;

Seen& seen() {
  static Seen state;
  return state;
}

bool copiesFrame() { return seen().frame % kCopiedFrames == 0; }

double testClock() { return seen().now; }

// Never destroyed, because the process ends with live textures.
std::map<SDL_Texture*, long>& textures() {
  static auto& live = *new std::map<SDL_Texture*, long>;
  return live;
}

// Returns SDL's own function behind a replacement below.
template <class Function>
Function* original(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// These replace SDL's functions in this program: SDL's dummy window has no mouse, no scale, and cannot be
// minimised.

Uint32 SDL_GetMouseState(int* x, int* y) {
  *x = seen().mouseX;
  *y = seen().mouseY;
  return seen().buttons;
}

void SDL_GetWindowSize(SDL_Window* window, int* w, int* h) {
  int pixelW = 0;
  int pixelH = 0;
  static auto* const ask = original<decltype(SDL_GetWindowSize)>("SDL_GetWindowSize");
  ask(window, &pixelW, &pixelH);
  if (w != nullptr) *w = static_cast<int>(std::lround(pixelW / seen().scale));
  if (h != nullptr) *h = static_cast<int>(std::lround(pixelH / seen().scale));
}

Uint32 SDL_GetWindowFlags(SDL_Window* window) {
  static auto* const ask = original<decltype(SDL_GetWindowFlags)>("SDL_GetWindowFlags");
  return ask(window) | (seen().minimised ? Uint32{SDL_WINDOW_MINIMIZED} : 0U);
}

// Only the test sends events, so there is nothing to wait for. A poll would mark the end of the queue, and
// the next poll would stop there.
int SDL_WaitEventTimeout(SDL_Event* event, int /*timeout*/) {
  return SDL_PeepEvents(event, 1, SDL_GETEVENT, SDL_FIRSTEVENT, SDL_POLLSENTINEL - 1) > 0 ? 1 : 0;
}

int SDL_RenderCopy(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* from, const SDL_Rect* to) {
  static auto* const copy = original<decltype(SDL_RenderCopy)>("SDL_RenderCopy");
  return copiesFrame() ? copy(renderer, texture, from, to) : 0;
}

int SDL_RenderCopyEx(SDL_Renderer* renderer, SDL_Texture* texture, const SDL_Rect* from, const SDL_Rect* to,
                     double angle, const SDL_Point* centre, SDL_RendererFlip flip) {
  static auto* const copy = original<decltype(SDL_RenderCopyEx)>("SDL_RenderCopyEx");
  return copiesFrame() ? copy(renderer, texture, from, to, angle, centre, flip) : 0;
}

SDL_Texture* SDL_CreateTexture(SDL_Renderer* renderer, Uint32 format, int access, int w, int h) {
  constexpr long kPixelBytes = 4;
  static auto* const create = original<decltype(SDL_CreateTexture)>("SDL_CreateTexture");
  SDL_Texture* texture = create(renderer, format, access, w, h);
  if (texture != nullptr) textures()[texture] = kPixelBytes * w * h;
  return texture;
}

void SDL_DestroyTexture(SDL_Texture* texture) {
  static auto* const destroy = original<decltype(SDL_DestroyTexture)>("SDL_DestroyTexture");
  textures().erase(texture);
  destroy(texture);
}

namespace test {
namespace {

void check(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string(what) + ": " + SDL_GetError());
}

void startSound(const store::Settings& settings) {
  check(audio::init(), "no sound");
  audio::setEnabled(settings.soundOn);
  audio::setMusicVolume(settings.musicVolume);
  audio::setSfxVolume(settings.sfxVolume);
  if (settings.soundOn) audio::startMusic();
}

void push(SDL_Event event) { check(SDL_PushEvent(&event) == 1, "SDL_PushEvent"); }

}  // namespace

LiveTextures liveTextures() {
  LiveTextures live = {.count = static_cast<int>(textures().size())};
  for (const auto& [texture, bytes] : textures()) live.bytes += bytes;
  return live;
}

UnseenProgram::UnseenProgram() {
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  check(SDL_Init(SDL_INIT_TIMER | SDL_INIT_VIDEO) == 0, "SDL_Init");
  // Once per process, as in the game: fontconfig would list the font again at each start.
  ui::registerBundledFonts();
  start();
}

UnseenProgram::~UnseenProgram() {
  end();
  SDL_Quit();
}

void UnseenProgram::start() {
  const store::Settings& settings = ui::Game::settings();
  i18n::setLanguage(settings.language);
  window.reset(SDL_CreateWindow("", 0, 0, logicalSize.w, logicalSize.h, SDL_WINDOW_RESIZABLE));
  check(window != nullptr, "SDL_CreateWindow");
  renderer.reset(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE));
  check(renderer != nullptr, "SDL_CreateRenderer");
  ui::gpuInit(renderer.get());
  store::ensureDataDirs();
  startSound(settings);
  ui::Game::instance().setFactory(screens::make);
  loop.emplace(window.get(), renderer.get(), testClock);
}

void UnseenProgram::end() {
  ui::Game::persistSettings();
  ui::gpuShutdown();
  audio::shutdown();
  loop.reset();
  renderer.reset();
  window.reset();
}

void UnseenProgram::restart() {
  end();
  ui::Game::settings() = store::loadSettings();
  seen().minimised = false;
  // A new program knows of no click.
  lastRelease = -10;
  foreignRun = false;
  lastPress = -10;
  foreignPress = false;
  start();
  // The open screen lives one frame longer and may ask for another screen, which then wins.
  do {
    ui::Game::instance().resetTo({});
    pass(0);
  } while (screen() != ui::ScreenKind::Splash);
}

bool UnseenProgram::pass(double dt) {
  seen().now += dt;
  ++seen().frame;
  const bool works = !leftButton.empty() || seen().buttons != 0;
  judgeClicks();
  judgePresses();
  const bool goesOn = loop->pass();
  // A screen that is not built yet has had no frame.
  framesOfScreen = ui::Game::instance().beginsScreen() ? 0 : framesOfScreen + 1;
  if (framesOfScreen == 1) shownAt = seen().now;
  if (framesOfScreen == 0) pressedHere = false;
  if (framesOfScreen == 0 && works) foreignRun = true;
  if (framesOfScreen == 0) foreignPress = seen().now - lastPress < kRunGap;
  return goesOn;
}

void UnseenProgram::judgeClicks() {
  meantClick = false;
  for (const bool down : std::exchange(leftButton, {})) {
    if (down) {
      pressedHere = framesOfScreen > 0;
      continue;
    }
    const bool follows =
        seen().now - std::exchange(lastRelease, seen().now) < kRunGap && seen().now - shownAt < kLongestRun;
    foreignRun = !std::exchange(pressedHere, false) || (foreignRun && follows);
    meantClick = meantClick || !foreignRun;
  }
}

void UnseenProgram::judgePresses() {
  meantPress = std::exchange(pressed, false);
  if (!meantPress) return;
  const bool follows =
      seen().now - std::exchange(lastPress, seen().now) < kRunGap && seen().now - shownAt < kLongestRun;
  foreignPress = framesOfScreen == 0 || (foreignPress && follows);
  meantPress = !foreignPress;
}

ui::ScreenKind UnseenProgram::screen() { return ui::Game::instance().descriptors().back().kind; }

void UnseenProgram::moveMouse(int x, int y) {
  seen().mouseX = x;
  seen().mouseY = y;
}

void UnseenProgram::button(Uint8 which, bool down) {
  const Uint32 mask = SDL_BUTTON(which);
  const bool isDown = (seen().buttons & mask) != 0;
  if (isDown == down) return;  // a mouse reports each change once
  if (which == SDL_BUTTON_LEFT) leftButton.push_back(down);
  seen().buttons = down ? seen().buttons | mask : seen().buttons & ~mask;
  SDL_Event event = {};
  event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
  event.button.button = which;
  push(event);
}

void UnseenProgram::wheel(int steps) {
  SDL_Event event = {};
  event.type = SDL_MOUSEWHEEL;
  event.wheel.y = steps;
  push(event);
}

void UnseenProgram::key(SDL_Keycode code, Uint16 modifiers) {
  if (code == SDLK_RETURN || code == SDLK_KP_ENTER || code == SDLK_SPACE) pressed = true;
  SDL_Event event = {};
  event.type = SDL_KEYDOWN;
  event.key.keysym = {SDL_GetScancodeFromKey(code), code, modifiers, 0};
  push(event);
  event.type = SDL_KEYUP;
  push(event);
}

void UnseenProgram::windowEvent(SDL_WindowEventID what) {
  SDL_Event event = {};
  event.type = SDL_WINDOWEVENT;
  event.window.windowID = SDL_GetWindowID(window.get());
  event.window.event = static_cast<Uint8>(what);
  push(event);
}

void UnseenProgram::closeWindow() {
  SDL_Event event = {};
  event.type = SDL_QUIT;
  push(event);
}

void UnseenProgram::holdModifiers(Uint16 modifiers) { SDL_SetModState(static_cast<SDL_Keymod>(modifiers)); }

void UnseenProgram::resize(WindowSize logical) {
  logicalSize = logical;
  resizePixels();
}

void UnseenProgram::setScale(double pixels) {
  seen().scale = pixels;
  resizePixels();
}

void UnseenProgram::resizePixels() {
  const auto pixels = [](int length) { return static_cast<int>(std::lround(length * seen().scale)); };
  SDL_SetWindowSize(window.get(), pixels(logicalSize.w), pixels(logicalSize.h));
}

void UnseenProgram::setMinimised(bool minimised) {
  seen().minimised = minimised;
  windowEvent(minimised ? SDL_WINDOWEVENT_MINIMIZED : SDL_WINDOWEVENT_RESTORED);
}

WindowSize UnseenProgram::size() const {
  WindowSize now;
  SDL_GetWindowSize(window.get(), &now.w, &now.h);
  return now;
}

}  // namespace test
