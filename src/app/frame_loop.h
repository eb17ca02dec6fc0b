// frame_loop.h: the program's single-threaded loop: handles events, runs a frame of the screen stack,
// presents it. It paints only when something may have changed, and no faster than the display. A still
// picture costs almost nothing.
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
  // Window and renderer must outlive the loop. `clock` is a monotonic clock in seconds.
  FrameLoop(SDL_Window* shownIn, SDL_Renderer* drawnBy, double (*clock)());

  // Runs one pass. Returns false after the last one: the window was closed, the player pressed Ctrl+Q, or a
  // screen or a signal ended the program.
  //
  // While the window is minimised, hidden or has no size, a pass draws nothing, runs no screen and waits
  // briefly for an event; the screens' time stops. While the picture stays the same, a pass also waits, but
  // the time goes on. After a frame, a pass waits until the display can show the next one, and longer if the
  // window has neither keyboard focus nor the pointer. Any event except mouse motion ends that wait. With
  // VESKARA_STATS set, the loop never waits while the window is visible.
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
  Ctx ctx;  // kept across frames because `quit` must persist
  bool appliedFullscreen;
  double frameTime;  // shortest time between two frames, in seconds
  int pixelW = 0;
  int pixelH = 0;
  double growth = 1;     // points per logical pixel
  double scale = 1;      // device pixels per logical pixel
  double awayTime = 0;   // how far the screens' time is behind the clock, in seconds
  double due = 0;        // when the display can show the next frame
  double waited = 0;     // time the loop spent waiting since the last frame, in seconds
  bool news = false;     // an event arrived since the last frame
  bool settled = false;  // no event preceded the last frame, and it left nothing to do
  int drawnW = 0;        // size of the last frame
  int drawnH = 0;
  double lastGeometrySave = 0;
  std::optional<FrameStats> stats;  // when VESKARA_STATS is set
};

}  // namespace ui
