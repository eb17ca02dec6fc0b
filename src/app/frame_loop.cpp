#include "app/frame_loop.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/app.h"
#include "app/signals.h"
#include "ui/gpu.h"

namespace ui {

namespace {

// Animations do not jump after a stall.
constexpr double kMaxFrameTime = 0.1;
// While the player drags the window its geometry is written no more often.
constexpr double kGeometrySaveInterval = 2;

double pixelScale(SDL_Window* window, int pixelW) {
  int windowW = 0;
  SDL_GetWindowSize(window, &windowW, nullptr);
  return pixelW > 0 && windowW > 0 ? static_cast<double>(pixelW) / windowW : 1.0;
}

}  // namespace

FrameLoop::FrameLoop(SDL_Window* shownIn, SDL_Renderer* drawnBy, double (*clock)())
    : window(shownIn),
      renderer(drawnBy),
      now(clock),
      events(Game::settings()),
      canvas(drawnBy),
      appliedFullscreen(Game::settings().fullscreen),
      lastFrameTime(clock()) {
  if (std::getenv("VESKARA_STATS") != nullptr) stats.emplace(lastFrameTime);
}

bool FrameLoop::pass() {
  drainEvents();
  applyFullscreen();
  readMouse();

  int pixelW = 0;
  int pixelH = 0;
  SDL_GetRendererOutputSize(renderer, &pixelW, &pixelH);
  if (pixelW <= 0 || pixelH <= 0) return !events.quitRequested();

  drawFrame(pixelW, pixelH);
  saveGeometry();
  return !events.quitRequested() && !ctx.quit && !terminationRequested();
}

void FrameLoop::drainEvents() {
  events.beginFrame(ctx);
  SDL_Event event;
  while (SDL_PollEvent(&event) != 0) events.handle(event, SDL_GetWindowFlags(window), now(), ctx);
  if (events.takeFullscreenToggle()) Game::persistSettings();
}

void FrameLoop::applyFullscreen() {
  const bool wanted = Game::settings().fullscreen;
  if (wanted == appliedFullscreen) return;
  SDL_SetWindowFullscreen(window, wanted ? SDL_WINDOW_FULLSCREEN_DESKTOP : 0);
  appliedFullscreen = wanted;
}

void FrameLoop::readMouse() {
  int x = 0;
  int y = 0;
  const Uint32 buttons = SDL_GetMouseState(&x, &y);
  events.readMouse(x, y, buttons, SDL_GetModState(), ctx);
}

void FrameLoop::drawFrame(int pixelW, int pixelH) {
  const double scale = pixelScale(window, pixelW);
  canvas.resize(pixelW, pixelH);
  CairoContext cr = canvas.begin(scale);
  ctx.cr = cr.get();
  ctx.w = pixelW / scale;
  ctx.h = pixelH / scale;
  ctx.time = now();
  ctx.dt = std::min(ctx.time - lastFrameTime, kMaxFrameTime);
  lastFrameTime = ctx.time;

  const double begun = now();
  gpuSetScale(scale);
  gpuBeginFrame();
  SDL_SetRenderDrawColor(renderer, 0, 0, 0, SDL_ALPHA_OPAQUE);
  SDL_RenderClear(renderer);
  Game::instance().update(ctx);
  ctx.cr = nullptr;
  cr.reset();

  const double drawn = now();
  canvas.upload();
  SDL_RenderPresent(renderer);

  if (!stats) return;
  const double shown = now();
  stats->add(drawn - begun, shown - drawn);
  if (!stats->due(shown)) return;
  std::fputs(stats->report(shown, gpuDrawCalls(), pixelW, pixelH, profReport()).c_str(), stderr);
}

void FrameLoop::saveGeometry() {
  if (!events.geometryDirty() || ctx.time - lastGeometrySave <= kGeometrySaveInterval) return;
  Game::persistSettings();
  events.geometrySaved();
  lastGeometrySave = ctx.time;
}

}  // namespace ui
