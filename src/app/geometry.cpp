#include "app/geometry.h"

#include <algorithm>

namespace ui {

namespace {

// Room kept for the window's frame and title bar.
constexpr int kFrameW = 20;
constexpr int kFrameH = 60;
constexpr int kTitleBarH = 30;

// Up to this size a larger window shows more; beyond it, everything grows.
constexpr double kRoomyW = 1920;
constexpr double kRoomyH = 1080;

}  // namespace

WindowGeometry initialGeometry(const store::Settings& settings, const SDL_Rect& usable) {
  const bool placed = settings.windowX != store::kNoPosition && settings.windowY != store::kNoPosition;
  WindowGeometry geometry{SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, settings.windowW, settings.windowH};
  if (placed) {
    geometry.x = settings.windowX;
    geometry.y = settings.windowY;
  }
  if (usable.w <= 0 || usable.h <= 0) return geometry;

  geometry.w = std::min(geometry.w, usable.w - kFrameW);
  geometry.h = std::min(geometry.h, usable.h - kFrameH);
  if (placed) {
    geometry.x = std::clamp(geometry.x, usable.x, usable.x + usable.w - geometry.w);
    geometry.y = std::clamp(geometry.y, usable.y + kTitleBarH, usable.y + usable.h - geometry.h);
  }
  return geometry;
}

double windowGrowth(int w, int h) { return std::max(1.0, std::min(w / kRoomyW, h / kRoomyH)); }

}  // namespace ui
