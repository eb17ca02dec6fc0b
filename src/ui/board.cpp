#include "ui/board.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>

#include "resources/audio.h"
#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/tile.h"

namespace ui {
namespace {

enum class Overlay { Scrim, Hint, Select, Mismatch };
constexpr const char* kOverlayNames[] = {"scrim", "hint", "select", "mismatch"};

struct OverlayJob {
  Overlay kind;
  double w;
  double h;
};

// Overlays are painted at full strength: the blit's opacity makes them pulse.
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

// Seconds since take-off: negative before it, at least kFlightTime at rest.
double flightTime(const BoardFx* fx, int id, double now) {
  if (fx == nullptr || !fx->introActive) return kFlightTime;
  return now - fx->introStart - fx->delays[static_cast<std::size_t>(id)];
}

// The texture path: copies cached pictures with the renderer.
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
    const Rect rect = shownAt(tile);
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
  // A tile shown at its texture's own size gets exactly as many device pixels. One pixel less would blur it.
  Rect shownAt(const BoardTile& tile) const {
    Rect rect = view.toScreen(tile.rect);
    if (view.zoom == quality) {
      rect.w = gpuPixels(rect.w) / gpuScale();
      rect.h = gpuPixels(rect.h) / gpuScale();
    }
    return rect;
  }
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

// The cairo path: draws every tile from scratch.
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

}  // namespace ui
