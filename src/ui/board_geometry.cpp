#include "ui/board_geometry.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "rules/layouts.h"
#include "ui/tile.h"

namespace ui {
namespace {

// Smaller tiles cannot be told apart. A board that would need them overflows its rectangle.
constexpr double kMinTileW = 6;
constexpr double kMinTileH = 8;

}  // namespace

BoardView::BoardView(const Rect& board, const BoardOpts& opts)
    : cx(board.x + board.w / 2),
      cy(board.y + board.h / 2),
      zoom(opts.zoom),
      panX(opts.panX),
      panY(opts.panY) {}

Rect BoardGeom::place(const mj::Slot& slot) const {
  return {(slot.x - minX) * 0.5 * tileW + originX + offX - layerDx * slot.z,
          (slot.y - minY) * 0.5 * tileH + originY + offY - layerDy * slot.z, tileW, tileH};
}

BoardGeom boardGeometry(const std::vector<mj::Slot>& slots, const Rect& rect, FitMode fit) {
  BoardGeom geom;
  if (slots.empty()) return geom;
  const mj::Bounds bounds = mj::boundsOf(slots);
  const int top = bounds.levels - 1;
  const double byWidth = rect.w / (bounds.w + kLayerDx * top);
  const double byHeight = rect.h / (kTileAspect * (bounds.h + kLayerDy * top));
  const double t =
      std::floor(fit == FitMode::Contain ? std::min(byWidth, byHeight) : std::max(byWidth, byHeight));
  geom.tileW = t > kMinTileW ? t : kMinTileW;
  geom.tileH = t > kMinTileW ? std::round(kTileAspect * t) : kMinTileH;
  geom.layerDx = kLayerDx * geom.tileW;
  geom.layerDy = kLayerDy * geom.tileH;
  geom.offX = geom.layerDx * top;
  geom.offY = geom.layerDy * top;
  geom.originX = rect.x + (rect.w - (geom.tileW * bounds.w + geom.offX)) * 0.5;
  geom.originY = rect.y + (rect.h - (geom.tileH * bounds.h + geom.offY)) * 0.5;
  geom.minX = bounds.minX;
  geom.minY = bounds.minY;
  geom.layers = bounds.levels;
  return geom;
}

std::vector<int> paintOrder(const mj::GameState& game) {
  std::vector<int> ids;
  for (const mj::Slot& slot : game.slots) {
    if (!game.faces[static_cast<std::size_t>(slot.id)].empty()) ids.push_back(slot.id);
  }
  const auto key = [&game](int id) {
    const mj::Slot& slot = game.slots[static_cast<std::size_t>(id)];
    return std::tuple(slot.z, slot.y, slot.x);
  };
  std::sort(ids.begin(), ids.end(), [&key](int a, int b) { return key(a) < key(b); });
  return ids;
}

int hitTestTile(const mj::GameState& game, const Rect& rect, const BoardOpts& opts, double px, double py) {
  if (game.slots.empty() || !rect.contains(px, py)) return -1;
  const BoardGeom geom = boardGeometry(game.slots, rect, opts.fit);
  const BoardView view(rect, opts);
  const double qx = view.boardX(px);
  const double qy = view.boardY(py);
  const std::vector<int> order = paintOrder(game);
  const auto hit = std::find_if(order.rbegin(), order.rend(), [&](int id) {
    return geom.place(game.slots[static_cast<std::size_t>(id)]).contains(qx, qy);
  });
  return hit == order.rend() ? -1 : *hit;
}

}  // namespace ui
