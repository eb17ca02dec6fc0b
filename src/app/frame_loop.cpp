#include "app/frame_loop.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "app/app.h"
#include "app/geometry.h"
#include "app/signals.h"
#include "ui/gpu.h"

namespace ui {

namespace {

// Seconds. The longest step of time after a stall, so that animations do not jump.
constexpr double kMaxFrameTime = 0.1;
// Seconds. Limits how late the loop notices a signal while nothing else happens.
constexpr double kLongestWait = 0.2;
constexpr int kAwayWaitMs = 100;
constexpr double kUnwatchedFrameTime = 0.1;
// Refresh rate for displays that do not report theirs.
constexpr int kUsualRate = 60;
// A renderer with vsync waits for the display itself, with better timing. The shorter interval only limits
// one whose vsync does not work.
constexpr double kVsyncSlack = 0.8;
// Seconds between two saves of the geometry while the player drags the window.
constexpr double kGeometrySaveInterval = 2;

// Seconds between two frames of the display.
double displayFrameTime(SDL_Window* window) {
  SDL_DisplayMode mode = {};
  SDL_GetCurrentDisplayMode(std::max(SDL_GetWindowDisplayIndex(window), 0), &mode);
  return 1.0 / (mode.refresh_rate > 0 ? mode.refresh_rate : kUsualRate);
}

bool hasVsync(SDL_Renderer* renderer) {
  SDL_RendererInfo info = {};
  return SDL_GetRendererInfo(renderer, &info) == 0 && (info.flags & SDL_RENDERER_PRESENTVSYNC) != 0;
}

}  // namespace

FrameLoop::FrameLoop(SDL_Window* shownIn, SDL_Renderer* drawnBy, double (*clock)())
    : window(shownIn),
      renderer(drawnBy),
      now(clock),
      events(Game::settings()),
      canvas(drawnBy),
      appliedFullscreen(Game::settings().fullscreen),
      frameTime(displayFrameTime(shownIn) * (hasVsync(drawnBy) ? kVsyncSlack : 1)) {
  ctx.time = now();
  if (std::getenv("VESKARA_STATS") != nullptr) stats.emplace(ctx.time);
}

bool FrameLoop::pass() {
  drainEvents();
  applyFullscreen();
  keepMaximised();
  measure();
  readMouse();
  if (isAway()) {
    waitAway();
  } else if (isStill()) {
    waitStill();
  } else {
    drawFrame();
    rest();
  }
  saveGeometry();
  return !events.quitRequested() && !ctx.quit && !terminationRequested();
}

void FrameLoop::measure() {
  pixelW = 0;
  pixelH = 0;
  SDL_GetRendererOutputSize(renderer, &pixelW, &pixelH);
  int windowW = 0;
  int windowH = 0;
  SDL_GetWindowSize(window, &windowW, &windowH);
  growth = windowGrowth(windowW, windowH);
  scale = pixelW > 0 && windowW > 0 ? growth * pixelW / windowW : growth;
}

// Checks the flags too: on X11 a minimised window keeps its size.
bool FrameLoop::isAway() const {
  constexpr Uint32 kUnseen = SDL_WINDOW_MINIMIZED | SDL_WINDOW_HIDDEN;
  return (SDL_GetWindowFlags(window) & kUnseen) != 0 || pixelW <= 0 || pixelH <= 0;
}

void FrameLoop::waitAway() {
  events.beginFrame(ctx);
  SDL_Event event;
  if (SDL_WaitEventTimeout(&event, kAwayWaitMs) != 0) handle(event);
  awayTime = now() - ctx.time;
}

// The frame after a change is painted too: a screen may learn something while drawing that changes its next
// frame.
bool FrameLoop::isStill() const {
  const bool sameSize = pixelW == drawnW && pixelH == drawnH;
  return !stats && settled && !news && sameSize && now() - awayTime < ctx.stillUntil;
}

void FrameLoop::waitStill() { waitFor(std::min(ctx.stillUntil - (now() - awayTime), kLongestWait)); }

void FrameLoop::rest() {
  if (stats) return;
  const double shortest = shortestFrame();
  const double shown = now();
  due = std::clamp(due + shortest, shown, shown + shortest);
  // Mouse motion comes in many events and can wait for the next frame. Every other event ends the wait.
  double left = due - shown;
  while (left > 0 && waitFor(left) == SDL_MOUSEMOTION) left = due - now();
}

// Waits for an event and handles it. Returns its type, or 0 if none came.
Uint32 FrameLoop::waitFor(double seconds) {
  const double begun = now();
  SDL_Event event = {};
  const bool came = SDL_WaitEventTimeout(&event, static_cast<int>(std::ceil(seconds * 1000))) != 0;
  waited += std::min(now() - begun, seconds);
  if (came) handle(event);
  return came ? event.type : 0;
}

double FrameLoop::shortestFrame() const {
  constexpr Uint32 kWatched = SDL_WINDOW_INPUT_FOCUS | SDL_WINDOW_MOUSE_FOCUS;
  return (SDL_GetWindowFlags(window) & kWatched) != 0 ? frameTime : kUnwatchedFrameTime;
}

void FrameLoop::drainEvents() {
  SDL_Event event;
  while (SDL_PollEvent(&event) != 0) handle(event);
  if (events.takeFullscreenToggle()) Game::persistSettings();
}

void FrameLoop::handle(const SDL_Event& event) {
  news = true;
  events.handle(event, SDL_GetWindowFlags(window), now(), ctx);
}

void FrameLoop::applyFullscreen() {
  const bool wanted = Game::settings().fullscreen;
  if (wanted == appliedFullscreen) return;
  SDL_SetWindowFullscreen(window, wanted ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
  events.windowReturns(now());
  appliedFullscreen = wanted;
}

// After full screen or minimising, SDL does not restore the maximised state.
void FrameLoop::keepMaximised() {
  constexpr Uint32 kElsewhere = SDL_WINDOW_MINIMIZED | SDL_WINDOW_HIDDEN | SDL_WINDOW_FULLSCREEN;
  const bool standsThere = (SDL_GetWindowFlags(window) & kElsewhere) == 0;
  if (!events.isReturning(now()) || !standsThere || !Game::settings().maximized) return;
  SDL_MaximizeWindow(window);  // no effect if it is maximised
}

void FrameLoop::readMouse() {
  int x = 0;
  int y = 0;
  const Uint32 buttons = SDL_GetMouseState(&x, &y);
  events.readMouse(x, y, growth, buttons, SDL_GetModState(), ctx);
}

void FrameLoop::drawFrame() {
  if (events.takePicturesLost()) {
    gpuDropTextures("", kKeepNone);
    canvas.drop();
  }
  canvas.resize(pixelW, pixelH);
  CairoContext cr = canvas.begin(scale);
  ctx.cr = cr.get();
  ctx.w = pixelW / scale;
  ctx.h = pixelH / scale;
  const double time = now() - awayTime;
  // Time that the loop itself spent waiting is not a stall.
  const double rested = std::exchange(waited, 0);
  ctx.dt = rested + std::min(time - ctx.time - rested, kMaxFrameTime);
  ctx.time = time;
  ctx.stillUntil = time;
  settled = !std::exchange(news, false);
  drawnW = pixelW;
  drawnH = pixelH;

  const double begun = now();
  gpuSetScale(scale);
  gpuBeginFrame();
  SDL_SetRenderDrawColor(renderer, 0, 0, 0, SDL_ALPHA_OPAQUE);
  SDL_RenderClear(renderer);
  updateScreen();
  ctx.cr = nullptr;
  cr.reset();
  canvas.flush();

  const double drawn = now();
  canvas.upload();
  SDL_RenderPresent(renderer);
  if (stats) report(drawn - begun, now() - drawn);
}

// Updates the screen, then starts the input of the next frame.
void FrameLoop::updateScreen() {
  const bool first = Game::instance().beginsScreen();
  Game::instance().update(ctx);
  handCursor.show(ctx.hand);
  if (Game::instance().beginsScreen() || gpuOwesPictures()) settled = false;
  events.beginFrame(ctx);
  if (!first) return;
  // A screen's first frame may take long. Clicks and keys during it were meant for the previous screen.
  drainEvents();
  ctx.in.dropButtons();
  ctx.in.freshKeys.clear();
}

void FrameLoop::report(double updateTime, double uploadTime) {
  const double shown = now();
  stats->add(updateTime, uploadTime);
  if (!stats->due(shown)) return;
  std::fputs(stats->report(shown, gpuDrawCalls(), pixelW, pixelH, profReport()).c_str(), stderr);
}

void FrameLoop::saveGeometry() {
  if (!events.geometryDirty() || now() - lastGeometrySave <= kGeometrySaveInterval) return;
  Game::persistSettings();
  events.geometrySaved();
  lastGeometrySave = now();
}

}  // namespace ui
