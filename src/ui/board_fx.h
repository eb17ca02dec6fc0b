// board_fx.h: the two animations of a board: a new deal flies in, a removed tile bursts. Holds their state;
// drawBoard draws the fly-in. Units: logical pixels, seconds.
#pragma once

#include <string>
#include <vector>

#include "ui/board_geometry.h"

namespace ui {

struct BoardFx {
  // A removed tile that rises, spins, grows and fades. Centre and size are those of its face, before zoom and
  // pan.
  struct Burst {
    double cx;
    double cy;
    double w;
    double h;
    double start;
    std::string face;
  };

  bool introActive = false;  // a fly-in has begun; stays true after it ends
  double introStart = 0;
  std::vector<double> delays;  // by slot id: time from introStart to take-off
  double introEnd = 0;         // a moment after the last landing
  double lastSound = 0;        // time of the last take-off sound
  std::vector<Burst> bursts;

  // Plans the fly-in of all tiles on the table: layer by layer, in a spiral from the centre.
  void beginIntro(const mj::GameState& game, double now);
  // Starts the burst of a tile removed from `slotId` that showed `face`.
  void addBurst(const mj::GameState& game, const BoardGeom& geom, int slotId, const std::string& face,
                double now);
  // Whether a take-off sound is due in the frame at `now` that lasted `dt`: a tile takes off in it, and the
  // last sound is long enough ago. Remembers the sound.
  bool takeSound(double now, double dt);
  // Removes finished bursts.
  void update(double now);
};

// Pose of a tile in flight: offset from its place, scale and rotation. All become normal as the flight ends.
struct FlightPose {
  double dx;
  double dy;
  double scale;
  double degrees;
};
inline constexpr double kFlightTime = 0.32;
inline constexpr double kBurstTime = 1.7;
// `progress` runs from 0, take-off, to 1, landing. A slot id always takes the same path.
FlightPose flightPose(int slotId, double progress);

// Draws the running bursts with the board's zoom and pan, not clipped to `rect`. `fx` may be null.
void drawBursts(Ctx& ctx, const BoardFx* fx, const Rect& rect, const BoardOpts& opts);

}  // namespace ui
