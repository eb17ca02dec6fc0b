// frame_loop.h: the program's single-threaded loop: events in, the screen stack's frame, pixels out. A frame
// is painted where it may show something new, and no faster than the display shows them: a picture that stays
// as it is costs nothing.
#pragma once

#include <optional>

#include "app/events.h"
#include "app/frame.h"
#include "app/hand_cursor.h"
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
  // and waits a moment for events; the screens' time stands still. While the picture stays as it is a pass
  // waits too, but the time goes on. After a frame it waits until the display may show another, and longer
  // where nobody looks: the window has neither keyboard nor pointer. Whatever happens but a movement of the
  // mouse ends that wait. With VESKARA_STATS set the loop never waits while the window can be seen.
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
  bool isStill() const;
  void waitStill();
  void rest();
  Uint32 waitFor(double seconds);
  double shortestFrame() const;
  void drawFrame();
  void updateScreen();
  void report(double updateTime, double uploadTime);
  void saveGeometry();

  SDL_Window* window;
  SDL_Renderer* renderer;
  double (*now)();
  EventReader events;
  FrameCanvas canvas;
  HandCursor handCursor;
  Ctx ctx;  // lives across frames so that its `quit` does
  bool appliedFullscreen;
  double frameTime;  // between two frames, at least
  int pixelW = 0;
  int pixelH = 0;
  double growth = 1;     // points per logical pixel
  double scale = 1;      // device pixels per logical pixel
  double awayTime = 0;   // by which the screens' time is behind the clock
  double due = 0;        // when the display can show the next frame
  double waited = 0;     // by the loop itself since the last frame
  bool news = false;     // something happened since the last frame
  bool settled = false;  // nothing had happened before the last frame
  int drawnW = 0;        // the last frame's size
  int drawnH = 0;
  double lastGeometrySave = 0;
  std::optional<FrameStats> stats;  // when VESKARA_STATS is set
};

}  // namespace ui
