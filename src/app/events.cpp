#include "app/events.h"

namespace ui {

namespace {

constexpr double kDoubleClickTime = 0.3;
// Seconds that a window manager may need to restore the window's state.
constexpr double kReturnTime = 0.5;
// In these states the window's size and position are not those of the normal window.
constexpr Uint32 kNotWindowed =
    SDL_WINDOW_FULLSCREEN | SDL_WINDOW_FULLSCREEN_DESKTOP | SDL_WINDOW_MINIMIZED | SDL_WINDOW_MAXIMIZED;

// Whether a key of the current layout produces `code` without Shift. SDL tells no more about the layout. It
// even reports digits on a row of keys that produces them only with Shift.
bool carries(SDL_Keycode code) { return SDL_GetScancodeFromKey(code) != SDL_SCANCODE_UNKNOWN; }

// Checks all letters: Greek and Hebrew layouts put punctuation on some letter keys, so one key proves
// nothing.
bool hasLatinLetters() {
  for (SDL_Keycode letter = SDLK_a; letter <= SDLK_z; ++letter)
    if (carries(letter)) return true;
  return false;
}

bool isPlus(const SDL_Keysym& key) {
  constexpr SDL_Keycode kCzechLetter = 0x016F;  // u with a ring
  const bool shift = (key.mod & KMOD_SHIFT) != 0;
  if (key.scancode == SDL_SCANCODE_1) return !shift && carries(kCzechLetter);
  if (carries(SDLK_PLUS) || carries(SDLK_EQUALS)) return false;
  switch (key.scancode) {
    case SDL_SCANCODE_EQUALS:
      return key.sym != SDLK_MINUS;
    case SDL_SCANCODE_3:          // Hungarian
    case SDL_SCANCODE_4:          // Turkish
    case SDL_SCANCODE_SEMICOLON:  // Japanese
      return shift;
    default:
      return false;
  }
}

// The French layout.
bool isMinus(const SDL_Keysym& key) { return key.scancode == SDL_SCANCODE_6 && !carries(SDLK_MINUS); }

}  // namespace

int keyCode(const SDL_Keysym& key) {
  if ((key.sym & SDLK_SCANCODE_MASK) != 0) return key.sym;
  const bool letterKey = SDL_SCANCODE_A <= key.scancode && key.scancode <= SDL_SCANCODE_Z;
  if (letterKey && !hasLatinLetters()) return SDLK_a + (key.scancode - SDL_SCANCODE_A);
  if (isPlus(key)) return SDLK_PLUS;
  return isMinus(key) ? SDLK_MINUS : key.sym;
}

void EventReader::beginFrame(Ctx& ctx) {
  ctx.in = {};
  ctx.clickTaken = false;
}

void EventReader::handle(const SDL_Event& event, Uint32 windowFlags, double now, Ctx& ctx) {
  switch (event.type) {
    case SDL_QUIT:
      quit = true;
      break;
    case SDL_KEYDOWN:
      keyDown(event.key, ctx);
      break;
    case SDL_MOUSEBUTTONDOWN:
      if (event.button.button == SDL_BUTTON_LEFT) ctx.in.pressed = true;
      if (event.button.button == SDL_BUTTON_RIGHT) ctx.in.rightClicked = true;
      break;
    case SDL_MOUSEBUTTONUP:
      if (event.button.button == SDL_BUTTON_LEFT) leftReleased(now, ctx);
      break;
    case SDL_MOUSEWHEEL:
      ctx.in.wheel += event.wheel.y;
      break;
    case SDL_RENDER_TARGETS_RESET:
    case SDL_RENDER_DEVICE_RESET:
      picturesLost = true;
      break;
    case SDL_WINDOWEVENT:
      windowChanged(event.window, windowFlags, now);
      break;
    default:
      break;
  }
}

void EventReader::readMouse(int x, int y, double growth, Uint32 buttons, SDL_Keymod modifiers, Ctx& ctx) {
  Input& in = ctx.in;
  in.mx = x / growth;
  in.my = y / growth;
  in.down = (buttons & SDL_BUTTON_LMASK) != 0;
  in.dx = (x - prevMouseX) / growth;
  in.dy = (y - prevMouseY) / growth;
  in.ctrl = (modifiers & KMOD_CTRL) != 0;
  in.shift = (modifiers & KMOD_SHIFT) != 0;
  prevMouseX = x;
  prevMouseY = y;
}

void EventReader::keyDown(const SDL_KeyboardEvent& event, Ctx& ctx) {
  const SDL_Keysym& key = event.keysym;
  const int code = keyCode(key);
  if (code == SDLK_F11) {
    settings.fullscreen = !settings.fullscreen;
    fullscreenToggled = true;
  } else if (code == SDLK_q && (key.mod & KMOD_CTRL) != 0) {
    quit = true;
  } else {
    ctx.in.keys.push_back(code);
    if (event.repeat == 0) ctx.in.freshKeys.push_back(code);
  }
}

void EventReader::leftReleased(double now, Ctx& ctx) {
  ctx.in.clicked = true;
  if (now - lastLeftRelease < kDoubleClickTime) ctx.in.doubleClicked = true;
  lastLeftRelease = now;
}

void EventReader::windowReturns(double now) { returnEnd = now + kReturnTime; }

void EventReader::restored(double now) {
  if (std::exchange(minimised, false)) windowReturns(now);
  if (!settings.fullscreen && !isReturning(now)) settings.maximized = false;
}

void EventReader::windowChanged(const SDL_WindowEvent& event, Uint32 windowFlags, double now) {
  const bool windowed = !settings.fullscreen && (windowFlags & kNotWindowed) == 0;
  switch (event.event) {
    case SDL_WINDOWEVENT_SIZE_CHANGED:
      if (!windowed) return;
      settings.windowW = event.data1;
      settings.windowH = event.data2;
      break;
    case SDL_WINDOWEVENT_MOVED:
      if (!windowed) return;
      settings.windowX = event.data1;
      settings.windowY = event.data2;
      break;
    case SDL_WINDOWEVENT_MAXIMIZED:
      settings.maximized = true;
      break;
    case SDL_WINDOWEVENT_RESTORED:
      restored(now);
      break;
    case SDL_WINDOWEVENT_MINIMIZED:
      minimised = true;
      return;
    default:
      return;
  }
  geometryChanged = true;
}

}  // namespace ui
