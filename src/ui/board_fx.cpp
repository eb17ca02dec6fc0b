#include "ui/board_fx.h"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <numbers>

#include "rules/deal.h"
#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/tile.h"

namespace ui {
namespace {

using std::numbers::pi;

// The fly-in: tiles take off one after another, faster and faster. A large board takes about six seconds.
constexpr double kIntroTime = 6;
constexpr double kMinGap = 0.034;
constexpr double kMaxGap = 0.175;
constexpr double kFirstGap = 1.6;  // in units of the mean gap
constexpr double kLastGap = 0.4;
constexpr double kIntroRest = 0.16;  // pause after the last tile's gap and flight
constexpr double kSoundGap = 0.05;   // keeps a large deal from roaring

constexpr int kSparks = 20;
constexpr std::uint32_t kSparkColors[] = {0xE8B84B, 0xF6EFDD, 0xC92A2A, 0xF1D489, 0x2C8A63};
constexpr std::uint32_t kRingColor = 0xFFE9A8;

std::vector<mj::Slot> presentSlots(const mj::GameState& game) {
  std::vector<mj::Slot> slots;
  for (const mj::Slot& slot : game.slots) {
    if (!game.faces[static_cast<std::size_t>(slot.id)].empty()) slots.push_back(slot);
  }
  return slots;
}

// Sort key that grows along a spiral about (cx, cy): in rings two grid units wide, each starting at the
// positive x axis.
double spiralKey(const mj::Slot& slot, double cx, double cy) {
  const double dx = slot.x - cx;
  const double dy = slot.y - cy;
  const double angle = std::atan2(dy, dx);
  return std::floor(0.5 * std::hypot(dx, dy)) * 2 * pi + (angle < 0 ? angle + 2 * pi : angle);
}

void sortForIntro(std::vector<mj::Slot>& slots) {
  double cx = 0;
  double cy = 0;
  for (const mj::Slot& slot : slots) {
    cx += slot.x;
    cy += slot.y;
  }
  const auto count = static_cast<double>(slots.size());
  cx /= count;
  cy /= count;
  std::stable_sort(slots.begin(), slots.end(), [cx, cy](const mj::Slot& a, const mj::Slot& b) {
    return a.z != b.z ? a.z < b.z : spiralKey(a, cx, cy) < spiralKey(b, cx, cy);
  });
}

// Time between the take-offs of tile i of n and the next one.
double introGap(std::size_t i, std::size_t n) {
  if (n <= 1) return kFirstGap * kMaxGap;
  const double mean = std::clamp(kIntroTime / static_cast<double>(n), kMinGap, kMaxGap);
  const double done = static_cast<double>(i) / static_cast<double>(n - 1);
  return mean * (kFirstGap + (kLastGap - kFirstGap) * done);
}

// A burst's state at one moment.
struct BurstPhase {
  double eased;  // progress, 0 to 1
  double ring;   // progress of ring and sparks, which start half-way
  double size;   // factor of the tile's size
  double spin;   // factor of the width: the tile turns about its vertical axis
};

BurstPhase burstPhase(double p) {
  if (p >= 1) return {.eased = 1, .ring = 1, .size = 1.25, .spin = 1};
  const double e = 1 - (1 - p) * (1 - p);
  const double lift = std::sin(e * pi);
  return {.eased = e,
          .ring = std::max(0.0, 2 * (e - 0.5)),
          .size = (1 + 0.25 * e) * (1 + 0.28 * lift),
          .spin = std::abs(std::cos(e * 5 * pi))};  // two and a half turns
}

// A particle fills its texture. `user` points to the texture's side in logical pixels.
void paintRing(cairo_t* cr, void* user) {
  const double side = *static_cast<const double*>(user);
  const double line = std::max(3.0, side / 1.2 * 0.1);
  strokeCircle(cr, side / 2, side / 2, side / 2 - line / 2, line, kRingColor, 1);
}

struct DotJob {
  double side;
  std::uint32_t color;
};

void paintDot(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const DotJob*>(user);
  fillCircle(cr, job.side / 2, job.side / 2, job.side / 2, job.color, 1);
}

std::string particleKey(const char* kind, std::uint32_t color, int size) {
  std::array<char, 48> key{};
  std::snprintf(key.data(), key.size(), "%s|%06x|%d", kind, color, size);
  return key.data();
}

void blitCircle(SDL_Texture* texture, double cx, double cy, double r, double alpha) {
  gpuBlit(texture, cx - r, cy - r, 2 * r, 2 * r, alpha);
}

// Draws one burst, with textures or with cairo.
class BurstPainter {
 public:
  BurstPainter(cairo_t* context, bool useTextures, const ui::BoardFx::Burst& burst, const BoardView& view,
               const BurstPhase& burstPhase)
      : cr(context),
        textures(useTextures),
        face(burst.face),
        phase(burstPhase),
        w(burst.w * view.zoom),
        h(burst.h * view.zoom),
        cx(view.screenX(burst.cx)),
        cy(view.screenY(burst.cy)) {
    // The centre rises to a quarter tile below the window's top, but by at least 1 and at most 4.2 tile
    // heights.
    cy -= std::clamp(cy - 0.25 * h, h, 4.2 * h) * phase.eased;
  }

  void draw() const {
    drawTile();
    if (phase.ring <= 0) return;
    drawRing();
    for (int i = 0; i < kSparks; ++i) drawSpark(i);
  }

 private:
  void drawTile() const {
    const double alpha = std::clamp(1 - (phase.eased - 0.7) / 0.3, 0.0, 1.0);
    const double sx = std::max(phase.spin, 0.06) * phase.size;
    const double sy = phase.size;
    if (textures) {
      SDL_Texture* texture = tileTexture(face, w, h, false);
      gpuBlit(texture, cx - sx * w / 2, cy - sy * h / 2, sx * w, sy * h, alpha);
      return;
    }
    cairo_save(cr);
    cairo_translate(cr, cx, cy);
    cairo_scale(cr, sx, sy);
    drawStaticTile(cr, {-w / 2, -h / 2, w, h}, face, alpha);
    cairo_restore(cr);
  }

  void drawRing() const {
    const double radius = (2.8 * phase.ring + 0.3) * w * 0.6;
    const double alpha = (1 - phase.ring) * 0.85;
    if (!textures) {
      strokeCircle(cr, cx, cy, radius, std::max(3.0, w * 0.1), kRingColor, alpha);
      return;
    }
    const int size = std::max(4, gpuPixels(w * 1.2));
    double side = size / gpuScale();
    blitCircle(gpuTexture(particleKey("ring", kRingColor, size), size, size, paintRing, &side), cx, cy,
               radius, alpha);
  }

  void drawSpark(int i) const {
    const double r = phase.ring;
    const double angle = 2 * pi * i / kSparks + 0.5 * i;
    const double distance = (0.95 + 0.32 * (i % 4)) * w;
    const double x = cx + std::cos(angle) * distance * std::sqrt(r);
    const double y = cy + std::sin(angle) * distance * std::sqrt(r) + 0.5 * distance * r * r;
    const double fullRadius = (0.1 + 0.035 * (i % 3)) * w;
    const double radius = fullRadius * (1.1 - 0.5 * r) * 0.5;
    const double alpha = std::min(1.0, 1.6 * (1 - r));
    const std::uint32_t color = kSparkColors[static_cast<std::size_t>(i) % std::size(kSparkColors)];
    if (!textures) {
      fillCircle(cr, x, y, radius, color, alpha);
      return;
    }
    const int size = std::max(2, gpuPixels(2 * fullRadius));
    DotJob job{size / gpuScale(), color};
    blitCircle(gpuTexture(particleKey("dot", color, size), size, size, paintDot, &job), x, y, radius, alpha);
  }

  cairo_t* cr;
  bool textures;
  const std::string& face;
  BurstPhase phase;
  double w;  // size of the face, zoomed
  double h;
  double cx;  // the tile's centre on the screen
  double cy;
};

}  // namespace

void BoardFx::beginIntro(const mj::GameState& game, double now) {
  introActive = true;
  introStart = now;
  lastSound = 0;
  delays.assign(game.slots.size(), 0.0);

  std::vector<mj::Slot> slots = presentSlots(game);
  sortForIntro(slots);
  double delay = 0;
  for (std::size_t i = 0; i < slots.size(); ++i) {
    delays[static_cast<std::size_t>(slots[i].id)] = delay;
    delay += introGap(i, slots.size());
  }
  introEnd = now + delay + kFlightTime + kIntroRest;
}

void BoardFx::addBurst(const mj::GameState& game, const BoardGeom& geom, int slotId, const std::string& face,
                       double now) {
  const Rect rect = tileFaceRect(geom.place(game.slots[static_cast<std::size_t>(slotId)]));
  bursts.push_back({rect.x + rect.w / 2, rect.y + rect.h / 2, rect.w, rect.h, now, face});
}

bool BoardFx::takeSound(double now, double dt) {
  if (!introActive || now >= introEnd || now - lastSound < kSoundGap) return false;
  const bool takesOff = std::any_of(delays.begin(), delays.end(), [&](double delay) {
    return now - dt < introStart + delay && introStart + delay <= now;
  });
  if (takesOff) lastSound = now;
  return takesOff;
}

void BoardFx::update(double now) {
  std::erase_if(bursts, [now](const Burst& burst) { return now - burst.start > kBurstTime; });
}

FlightPose flightPose(int slotId, double progress) {
  // Each slot has its own random numbers, the same in every frame. The factor spreads neighbouring ids.
  std::uint32_t state = static_cast<std::uint32_t>(slotId) * 0x9E3779B1U + 0x9E3779B9U;
  const double direction = 2 * pi * mj::nextFraction(state);
  const double distance = 720 + 520 * mj::nextFraction(state);
  const double turn = (mj::nextFraction(state) - 0.5) * 150;
  const double q = progress - 1;
  const double eased = 1 + q * q * (2.12 * q + 1.12);  // overshoots a little before it rests
  const double left = 1 - eased;
  return {.dx = distance * left * std::cos(direction),
          .dy = distance * left * std::sin(direction),
          .scale = 0.55 + 0.45 * eased,
          .degrees = turn * left};
}

void drawBursts(Ctx& ctx, const BoardFx* fx, const Rect& rect, const BoardOpts& opts) {
  if (fx == nullptr) return;
  const bool textures = gpuRenderer() != nullptr && !opts.software;
  const BoardView view(rect, opts);
  for (const BoardFx::Burst& burst : fx->bursts) {
    const double p = (ctx.time - burst.start) / kBurstTime;
    if (p > 0) BurstPainter(ctx.cr, textures, burst, view, burstPhase(p)).draw();
  }
}

}  // namespace ui
