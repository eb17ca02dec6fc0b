// board_fx.h: the two animations of a board: a fresh deal flies in, a removed pair bursts.
// Holds times only; the fly-in itself is drawn by drawBoard. Units: logical pixels, seconds.
#pragma once

#include <string>
#include <vector>

#include "ui/board_geometry.h"

namespace ui {

struct BoardFx {
  // A removed tile that jumps, spins, grows and fades. Centre and size are those of its face, before zoom and
  // pan.
  struct Burst {
    double cx;
    double cy;
    double w;
    double h;
    double start;
    std::string face;
  };

  bool introActive = false;  // a fly-in was begun; it stays set when the fly-in is over
  double introStart = 0;
  std::vector<double> delays;  // per slot id: from introStart to the tile's take-off
  double introEnd = 0;         // the last tile has landed, and a moment has passed
  double lastSound = 0;        // of a tile that took off
  std::vector<Burst> bursts;

  // Plans the fly-in of all tiles on the table: layer by layer, in a spiral from the centre.
  void beginIntro(const mj::GameState& game, double now);
  // Starts the burst of the tile that lay on `slotId`.
  void addBurst(const mj::GameState& game, const BoardGeom& geom, int slotId, const std::string& face,
                double now);
  // Whether a tile of the fly-in is to be heard in the frame at `now` that is `dt` long: one that takes off
  // in it, if the last one heard is long enough ago.
  bool takeSound(double now, double dt);
  // Forgets bursts that are over.
  void update(double now);
};

// Where a tile in flight is: turned, smaller and away from its place by as much as the flight is unfinished.
struct FlightPose {
  double dx;
  double dy;
  double scale;
  double degrees;
};
inline constexpr double kFlightTime = 0.32;
inline constexpr double kBurstTime = 1.7;
// `progress` runs from 0 to 1. The same slot id takes the same path every time.
FlightPose flightPose(int slotId, double progress);

// Draws the running bursts over the board, with its zoom and pan and unclipped. `fx` may be null.
void drawBursts(Ctx& ctx, const BoardFx* fx, const Rect& rect, const BoardOpts& opts);

}  // namespace ui
