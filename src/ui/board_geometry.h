// board_geometry.h: where a board's tiles lie: fits a layout into a rectangle, applies zoom and pan, finds
// the tile under the pointer. Draws nothing. Units: logical pixels, x right, y down; layers grow upward.
#pragma once

#include <vector>

#include "rules/engine.h"
#include "ui/context.h"

namespace ui {

// How far each layer is shifted against the one below it.
inline constexpr double kLayerDx = 0.12;  // in tile widths
inline constexpr double kLayerDy = 0.18;  // in tile heights

enum class FitMode {
  Contain,  // the whole board fits the rectangle
  Cover,    // the board fills the rectangle and may overflow it in one direction
};

// A layout fitted into a rectangle. Higher layers are shifted up and to the left, so that a tile's body reads
// as thickness.
struct BoardGeom {
  double tileW = 0;
  double tileH = 0;
  double layerDx = 0;  // leftward shift per layer
  double layerDy = 0;  // upward shift per layer
  double originX = 0;  // top left corner of the picture
  double originY = 0;
  double offX = 0;  // total shift of the highest layer
  double offY = 0;
  int minX = 0;  // smallest slot coordinates, in half tiles
  int minY = 0;
  int layers = 1;

  // The tile's rectangle before zoom and pan.
  Rect place(const mj::Slot& slot) const;
};

// How to draw a board. A slot id of -1 means none.
struct BoardOpts {
  FitMode fit = FitMode::Contain;
  std::vector<int> hintIds = {};
  int pickA = -1;  // shown as selected, besides the game's own selected tile
  int pickB = -1;
  int mismatchA = -1;  // shown as a refused pair
  int mismatchB = -1;
  double zoom = 1;  // about the centre of the board's rectangle
  double panX = 0;  // added after zooming
  double panY = 0;
  double alpha = 1;       // of tiles and veils, not of other overlays; cairo ignores it
  bool software = false;  // draw with cairo even if there is a renderer

  bool operator==(const BoardOpts&) const = default;
};

// Maps board coordinates to the screen: zoom about the centre of the board's rectangle, then pan.
struct BoardView {
  BoardView(const Rect& board, const BoardOpts& opts);

  double screenX(double x) const { return cx + (x - cx) * zoom + panX; }
  double screenY(double y) const { return cy + (y - cy) * zoom + panY; }
  double boardX(double x) const { return (x - cx) / zoom + cx - panX / zoom; }
  double boardY(double y) const { return (y - cy) / zoom + cy - panY / zoom; }
  Rect toScreen(const Rect& r) const { return {screenX(r.x), screenY(r.y), r.w * zoom, r.h * zoom}; }

  double cx;
  double cy;
  double zoom;
  double panX;
  double panY;
};

// Fits a layout into a rectangle with tiles of whole logical pixels, never smaller than 6 x 8. Without slots
// all values are zero, except for one layer.
BoardGeom boardGeometry(const std::vector<mj::Slot>& slots, const Rect& rect, FitMode fit);

// Slot ids of the tiles on the table in painting order: by layer, then y, then x.
std::vector<int> paintOrder(const mj::GameState& game);

// Slot id of the tile at (px, py) on the screen, or -1. Outside `rect` there is none. Where tiles overlap,
// the one painted last wins. A tile in flight is found at its resting place.
int hitTestTile(const mj::GameState& game, const Rect& rect, const BoardOpts& opts, double px, double py);

}  // namespace ui
