#include "ui/board.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <tuple>

#include "resources/audio.h"
#include "rules/layouts.h"
#include "ui/board_fx.h"
#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/tile.h"

namespace ui {
namespace {

// Shifts of a layer against the one below.
constexpr double kLayerDx = 0.12;  // in tile widths
constexpr double kLayerDy = 0.18;  // in tile heights
// Smaller tiles could not be told apart; a board that needs them overflows.
constexpr double kMinTileW = 6;
constexpr double kMinTileH = 8;

enum class Overlay { Scrim, Hint, Select, Mismatch };
constexpr const char* kOverlayNames[] = {"scrim", "hint", "select", "mismatch"};

struct OverlayJob {
  Overlay kind;
  double w;
  double h;
};

// Opaque strokes: the blit brings the pulse.
void paintOverlayJob(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const OverlayJob*>(user);
  const Rect tile{0, 0, job.w, job.h};
  const double radius = tileRadius(job.w);
  switch (job.kind) {
    case Overlay::Scrim:
      return fillRoundedRect(cr, tile, radius, kDimColor, 1);
    case Overlay::Hint:
      return strokeRoundedRect(cr, insetRect(tile, 1.5), radius, 3, kHintColor, 1);
    case Overlay::Select:
      return drawTileGlow(cr, tile, kSelectColor, kSelectFillAlpha, 1);
    case Overlay::Mismatch:
      return drawTileGlow(cr, tile, kMismatchColor, kMismatchFillAlpha, 1);
  }
}

SDL_Texture* overlayTexture(Overlay kind, double w, double h) {
  const int deviceW = gpuPixels(w);
  const int deviceH = gpuPixels(h);
  const std::string key = std::string("ov|") + kOverlayNames[static_cast<int>(kind)] + "|" +
                          std::to_string(deviceW) + "x" + std::to_string(deviceH);
  OverlayJob job{kind, w, h};
  return gpuTexture(key, deviceW, deviceH, paintOverlayJob, &job);
}

void blit(SDL_Texture* texture, const Rect& rect, double alpha) {
  gpuBlit(texture, rect.x, rect.y, rect.w, rect.h, alpha);
}

// One tile of a frame.
struct BoardTile {
  const std::string& face;
  Rect rect;  // before zoom and pan
  TileVisual visual;
};

bool contains(const std::vector<int>& ids, int id) {
  return std::find(ids.begin(), ids.end(), id) != ids.end();
}

TileVisual visualOf(const mj::GameState& game, const std::vector<char>& present, const BoardOpts& opts,
                    int id, double time) {
  return {.selected = id == game.selected || id == opts.pickA || id == opts.pickB,
          .hint = contains(opts.hintIds, id),
          .dim = !mj::isFreeAmong(game.slots, present, id),
          .mismatch = id == opts.mismatchA || id == opts.mismatchB,
          .time = time};
}

// Time since the tile took off, negative while it waits; kFlightTime or more when it rests.
double flightTime(const BoardFx* fx, int id, double now) {
  if (fx == nullptr || !fx->introActive) return kFlightTime;
  return now - fx->introStart - fx->delays[static_cast<std::size_t>(id)];
}

// The texture path: copies of cached pictures, queued on the renderer.
class TexturePainter {
 public:
  TexturePainter(const Rect& board, const BoardOpts& opts)
      : clip(board), view(board, opts), alpha(opts.alpha), quality(textureQuality(opts.zoom)) {}

  void drawFlying(const BoardTile& tile, const FlightPose& pose) const {
    const Rect rect = view.toScreen(tile.rect);
    const double cx = rect.x + rect.w / 2 + pose.dx * view.zoom;
    const double cy = rect.y + rect.h / 2 + pose.dy * view.zoom;
    gpuBlitRotated(baseTexture(tile), cx, cy, rect.w * pose.scale, rect.h * pose.scale, pose.degrees, alpha);
  }

  void drawResting(const BoardTile& tile) const {
    const Rect rect = view.toScreen(tile.rect);
    SDL_Texture* base = baseTexture(tile);
    if (base == nullptr) return;
    blit(base, rect, alpha);
    const TileVisual& visual = tile.visual;
    if (visual.dim) blit(overlay(Overlay::Scrim, tile), rect, kDimAlpha * alpha);
    if (visual.hint) {
      blit(overlay(Overlay::Hint, tile), scaledRect(rect, hintGrowth(visual.time)), hintAlpha(visual.time));
    }
    if (visual.selected) blit(overlay(Overlay::Select, tile), rect, selectAlpha(visual.time));
    if (visual.mismatch) blit(overlay(Overlay::Mismatch, tile), rect, mismatchAlpha(visual.time));
  }

 private:
  SDL_Texture* baseTexture(const BoardTile& tile) const {
    return tileTexture(tile.face, tile.rect.w * quality, tile.rect.h * quality, tile.visual.selected);
  }
  SDL_Texture* overlay(Overlay kind, const BoardTile& tile) const {
    return overlayTexture(kind, tile.rect.w * quality, tile.rect.h * quality);
  }

  GpuClip clip;
  BoardView view;
  double alpha;
  double quality;
};

// The cairo path: everything drawn anew.
class CairoPainter {
 public:
  CairoPainter(cairo_t* context, const Rect& board, const BoardOpts& opts) : cr(context) {
    const BoardView view(board, opts);
    cairo_save(cr);
    cairo_rectangle(cr, board.x, board.y, board.w, board.h);
    cairo_clip(cr);
    cairo_translate(cr, view.cx + view.panX, view.cy + view.panY);
    cairo_scale(cr, view.zoom, view.zoom);
    cairo_translate(cr, -view.cx, -view.cy);
  }
  ~CairoPainter() { cairo_restore(cr); }
  CairoPainter(const CairoPainter&) = delete;
  CairoPainter& operator=(const CairoPainter&) = delete;

  void drawFlying(const BoardTile& tile, const FlightPose& pose) const {
    const Rect& rect = tile.rect;
    cairo_save(cr);
    cairo_translate(cr, rect.x + rect.w / 2 + pose.dx, rect.y + rect.h / 2 + pose.dy);
    cairo_rotate(cr, pose.degrees * std::numbers::pi / 180);
    cairo_scale(cr, pose.scale, pose.scale);
    drawTileBase(cr, {-rect.w / 2, -rect.h / 2, rect.w, rect.h}, tile.face, tile.visual);
    cairo_restore(cr);
  }

  void drawResting(const BoardTile& tile) const { drawTile(cr, tile.rect, tile.face, tile.visual); }

 private:
  cairo_t* cr;
};

template <typename Painter>
void paintTiles(const Painter& painter, const Ctx& ctx, const mj::GameState& game, const Rect& rect,
                const BoardOpts& opts, const BoardFx* fx) {
  const BoardGeom geom = boardGeometry(game.slots, rect, opts.fit);
  const std::vector<char> present = mj::presence(game);
  for (const int id : paintOrder(game)) {
    const double flown = flightTime(fx, id, ctx.time);
    if (flown < 0) continue;
    const auto index = static_cast<std::size_t>(id);
    const BoardTile tile{game.faces[index], geom.place(game.slots[index]),
                         visualOf(game, present, opts, id, ctx.time)};
    if (flown < kFlightTime) {
      painter.drawFlying(tile, flightPose(id, flown / kFlightTime));
    } else {
      painter.drawResting(tile);
    }
  }
}

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

double textureQuality(double zoom) { return std::clamp(std::ceil(2 * zoom) / 2, 1.0, 3.0); }

void drawBoard(Ctx& ctx, const mj::GameState& game, const Rect& rect, const BoardOpts& opts, BoardFx* fx) {
  if (game.slots.empty()) return;
  if (gpuRenderer() != nullptr && !opts.software) {
    paintTiles(TexturePainter(rect, opts), ctx, game, rect, opts, fx);
  } else {
    paintTiles(CairoPainter(ctx.cr, rect, opts), ctx, game, rect, opts, fx);
  }
  if (fx != nullptr && fx->takeSound(ctx.time, ctx.dt)) audio::play(audio::Sfx::Tile);
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
