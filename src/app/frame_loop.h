// frame_loop.h: the program's single-threaded loop: events in, the screen stack's frame, pixels out. Never
// sleeps: a renderer with vsync sets the pace.
#pragma once

#include <optional>

#include "app/context.h"
#include "app/events.h"
#include "app/frame.h"
#include "app/stats.h"

namespace ui {

class FrameLoop {
 public:
  // Window and renderer must outlive the loop. `clock` is a monotonic clock in seconds; the loop begins at
  // once.
  FrameLoop(SDL_Window* shownIn, SDL_Renderer* drawnBy, double (*clock)());

  // One pass. False when it was the last: the window was closed, Ctrl+Q, a screen or a signal said so. A
  // window without drawable size draws nothing and runs no screen.
  bool pass();

 private:
  void drainEvents();
  void applyFullscreen();
  void readMouse();
  void drawFrame(int pixelW, int pixelH);
  void saveGeometry();

  SDL_Window* window;
  SDL_Renderer* renderer;
  double (*now)();
  EventReader events;
  FrameCanvas canvas;
  Ctx ctx;  // lives across frames so that its `quit` does
  bool appliedFullscreen;
  double lastFrameTime;
  double lastGeometrySave = 0;
  std::optional<FrameStats> stats;  // when VESKARA_STATS is set
};

}  // namespace ui
