#include "rules/layouts.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <limits>
#include <set>
#include <tuple>

namespace mj {
namespace {

constexpr int kAttempts = 6;
constexpr double kGrowth = 1.3;  // growth of the lowest layer per attempt
constexpr int kHighestLayer = 6;
constexpr int kLargestRadius = 39;

struct Pos {
  int x = 0;
  int y = 0;

  bool operator<(const Pos& other) const { return std::tie(y, x) < std::tie(other.y, other.x); }
};

struct Cell {
  int x = 0;
  int y = 0;
  int z = 0;
};

std::vector<Pos> rectangle(double aspect, long n) {
  const auto count = static_cast<double>(n);
  const long cols = std::max(2L, static_cast<long>(std::ceil(std::sqrt(aspect * count))));
  const long rows = std::max(2L, static_cast<long>(std::ceil(count / static_cast<double>(cols))));
  std::vector<Pos> cells;
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) cells.push_back({2 * c, 2 * r});
  }
  return cells;
}

bool insideCross(int r, int dx, int dy) {
  const long arm = std::max(1L, std::lround(0.36 * r));
  return std::abs(dx) <= arm || std::abs(dy) <= arm;
}

bool insideSaltire(int r, int dx, int dy) {
  const long arm = std::max(1L, std::lround(0.32 * r));
  return std::min(std::abs(dy + dx), std::abs(dx - dy)) <= arm;
}

// Whether the cell at offset (dx, dy) from the centre, in tiles, belongs to the outline of radius r.
bool inside(HeapShape shape, int r, int dx, int dy) {
  const int squared = dx * dx + dy * dy;
  switch (shape) {
    case HeapShape::Diamond:
      return std::abs(dx) + std::abs(dy) <= r;
    case HeapShape::Disc:
      return squared <= r * r;
    case HeapShape::Triangle:
      return dy + r >= 2 * std::abs(dx);
    case HeapShape::Saltire:
      return insideSaltire(r, dx, dy);
    case HeapShape::Ring:
      return 0.3 * (r * r) <= squared && squared <= r * r;
    case HeapShape::Octagon:
      return std::abs(dx) <= 0.9 * r && std::abs(dx) + std::abs(dy) <= 1.45 * r;
    default:
      return insideCross(r, dx, dy);
  }
}

std::vector<Pos> outline(HeapShape shape, int r) {
  std::vector<Pos> cells;
  for (int dy = -r; dy <= r; ++dy) {
    for (int dx = -r; dx <= r; ++dx) {
      if (inside(shape, r, dx, dy)) cells.push_back({2 * dx, 2 * dy});
    }
  }
  return cells;
}

// An outline of the given shape with at least n cells. If even the largest radius is too small, a rectangle.
std::vector<Pos> baseShape(HeapShape shape, long n) {
  if (shape == HeapShape::WideRect) return rectangle(2.4, n);
  if (shape != HeapShape::Rect) {
    for (int r = 1; r <= kLargestRadius; ++r) {
      auto cells = outline(shape, r);
      if (static_cast<long>(cells.size()) >= n) return cells;
    }
  }
  return rectangle(1.5, n);
}

// The positions of the next layer: wherever a tile rests on four others.
std::vector<Pos> layerAbove(const std::vector<Pos>& layer) {
  const std::set<Pos> taken(layer.begin(), layer.end());
  const auto has = [&taken](int x, int y) { return taken.count({x, y}) != 0; };
  std::vector<Pos> above;
  for (const auto& [x, y] : layer) {
    if (has(x + 2, y) && has(x, y + 2) && has(x + 2, y + 2)) above.push_back({x + 1, y + 1});
  }
  return above;
}

std::vector<Cell> pileUp(std::vector<Pos> layer) {
  std::vector<Cell> cells;
  for (int z = 0; z <= kHighestLayer && !layer.empty(); ++z) {
    for (const auto& [x, y] : layer) cells.push_back({x, y, z});
    layer = layerAbove(layer);
  }
  return cells;
}

// Keeps the `count` cells that are lowest and, within a layer, closest to the centre.
void keepInnermost(std::vector<Cell>& cells, std::size_t count) {
  double sumX = 0;
  double sumY = 0;
  for (const Cell& cell : cells) {
    sumX += cell.x;
    sumY += cell.y;
  }
  const double centreX = sumX / static_cast<double>(cells.size());
  const double centreY = sumY / static_cast<double>(cells.size());
  const auto rank = [centreX, centreY](const Cell& cell) {
    const double dx = cell.x - centreX;
    const double dy = cell.y - centreY;
    return std::pair(cell.z, dx * dx + dy * dy);
  };
  std::stable_sort(cells.begin(), cells.end(),
                   [&rank](const Cell& a, const Cell& b) { return rank(a) < rank(b); });
  cells.resize(count);
}

}  // namespace

std::vector<Slot> buildShapedHeap(HeapShape shape, int count, double spread) {
  const auto wanted = static_cast<std::size_t>(std::max(0, count));
  double factor = spread;
  std::vector<Cell> cells;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    cells = pileUp(baseShape(shape, std::max(4L, std::lround(count * factor))));
    if (cells.size() >= wanted) break;
    factor *= kGrowth;
  }
  if (cells.size() > wanted) keepInnermost(cells, wanted);
  if (cells.size() % 2 != 0) cells.pop_back();

  std::vector<Slot> slots;
  for (const auto& [x, y, z] : cells) slots.push_back({static_cast<int>(slots.size()), x, y, z});
  return slots;
}

Side sideOf(const Slot& tile, const Slot& other) {
  if (std::abs(other.y - tile.y) > 1) return Side::None;
  const int dx = other.x - tile.x;
  if (other.z == tile.z + 1 && std::abs(dx) <= 1) return Side::Above;
  if (other.z != tile.z || std::abs(dx) != 2) return Side::None;
  return dx < 0 ? Side::Left : Side::Right;
}

bool isFreeAmong(const std::vector<Slot>& slots, const std::vector<char>& present, int i) {
  assert(i >= 0 && static_cast<std::size_t>(i) < slots.size());
  const Slot& tile = slots[static_cast<std::size_t>(i)];
  bool left = false;
  bool right = false;
  for (const Slot& other : slots) {
    if (present[static_cast<std::size_t>(other.id)] == 0) continue;
    const Side side = sideOf(tile, other);
    if (side == Side::Above) return false;
    left = left || side == Side::Left;
    right = right || side == Side::Right;
  }
  return !left || !right;
}

Bounds boundsOf(const std::vector<Slot>& slots) {
  if (slots.empty()) return {};
  int minX = std::numeric_limits<int>::max();
  int minY = minX;
  int maxX = std::numeric_limits<int>::min();
  int maxY = maxX;
  int maxZ = maxX;
  for (const Slot& slot : slots) {
    minX = std::min(minX, slot.x);
    maxX = std::max(maxX, slot.x);
    minY = std::min(minY, slot.y);
    maxY = std::max(maxY, slot.y);
    maxZ = std::max(maxZ, slot.z);
  }
  return {minX, minY, (maxX - minX + 2) / 2.0, (maxY - minY + 2) / 2.0, maxZ + 1};
}

}  // namespace mj
