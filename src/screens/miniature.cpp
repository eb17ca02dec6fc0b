#include "screens/miniature.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

#include "ui/board.h"
#include "ui/draw.h"

namespace screens {
namespace {

// From the lowest layer to the highest, from the felt's green to ivory. No level has more layers.
constexpr std::array<std::uint32_t, 4> kLayerColors = {0x67A27F, 0xAECA98, 0xE4DEB4, 0xFCF6E6};
constexpr std::uint32_t kEdge = 0x0A2C1E;
constexpr double kEdgeAlpha = 0.85;
constexpr double kCornerRadius = 0.16;  // in tile widths

std::vector<const mj::Slot*> paintOrder(const std::vector<mj::Slot>& slots) {
  std::vector<const mj::Slot*> order;
  order.reserve(slots.size());
  for (const mj::Slot& slot : slots) order.push_back(&slot);
  std::sort(order.begin(), order.end(), [](const mj::Slot* a, const mj::Slot* b) {
    return std::tie(a->z, a->y, a->x) < std::tie(b->z, b->y, b->x);
  });
  return order;
}

void paintTile(cairo_t* cr, const ui::Rect& tile, int layer) {
  const auto index =
      static_cast<std::size_t>(std::clamp(layer, 0, static_cast<int>(kLayerColors.size()) - 1));
  const double radius = kCornerRadius * tile.w;
  ui::fillRoundedRect(cr, tile, radius, kLayerColors[index], 1);
  ui::strokeRoundedRect(cr, tile, radius, 1, kEdge, kEdgeAlpha);
}

}  // namespace

void paintMini(cairo_t* cr, const ui::Rect& rect, const std::vector<mj::Slot>& slots) {
  const ui::BoardGeom geom = ui::boardGeometry(slots, rect, ui::FitMode::Contain);
  cairo_save(cr);
  cairo_rectangle(cr, rect.x, rect.y, rect.w, rect.h);
  cairo_clip(cr);
  for (const mj::Slot* slot : paintOrder(slots)) paintTile(cr, geom.place(*slot), slot->z);
  cairo_restore(cr);
}

}  // namespace screens
