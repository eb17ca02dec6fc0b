// frame_loop.h: the program's single-threaded loop: events in, the screen stack's frame, pixels out. While
// the window can be seen it never sleeps: a renderer with vsync sets the pace.
#pragma once

#include <optional>

#include "app/events.h"
#include "app/frame.h"
#include "app/stats.h"
#include "ui/context.h"

namespace ui {

class FrameLoop {
 public:
  // Window and renderer must outlive the loop. `clock` is a monotonic clock in seconds; the loop begins at
  // once.
  FrameLoop(SDL_Window* shownIn, SDL_Renderer* drawnBy, double (*clock)());

  // One pass. False when it was the last: the window was closed, Ctrl+Q, a screen or a signal said so. While
  // the window is away, minimised or hidden or without drawable size, a pass draws nothing, runs no screen
  // and waits a moment for events; the screens' time stands still.
  bool pass();

 private:
  void drainEvents();
  void handle(const SDL_Event& event);
  void applyFullscreen();
  void keepMaximised();
  void readMouse();
  void measure();
  bool isAway() const;
  void waitAway();
  void drawFrame();
  void updateScreen();
  void report(double updateTime, double uploadTime);
  void saveGeometry();

  SDL_Window* window;
  SDL_Renderer* renderer;
  double (*now)();
  EventReader events;
  FrameCanvas canvas;
  Ctx ctx;  // lives across frames so that its `quit` does
  bool appliedFullscreen;
  int pixelW = 0;
  int pixelH = 0;
  double awayTime = 0;  // by which the screens' time is behind the clock
  double lastGeometrySave = 0;
  std::optional<FrameStats> stats;  // when VESKARA_STATS is set
};

}  // namespace ui
