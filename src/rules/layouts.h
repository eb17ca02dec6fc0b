// layouts.h: where the tiles of a level lie, which of them are free, and how much room they take. Knows no
// faces. Units: half tiles for x (right) and y (down), layers for z (0 is the table, upward). A tile is two
// units wide and two high. Layer 0 lies on even coordinates; each higher layer is shifted by (+1, +1).
#pragma once

#include <array>
#include <vector>

namespace mj {

// A place for one tile. A layout is a vector of slots where each id equals its index.
struct Slot {
  int id = 0;
  int x = 0;
  int y = 0;
  int z = 0;

  bool operator==(const Slot&) const = default;
};

// The outline of a heap's lowest layer.
enum class HeapShape : int {
  Rect = 0,      // 1.5 times as wide as high
  WideRect = 1,  // 2.4 times as wide as high
  Diamond = 2,
  Disc = 3,
  Cross = 4,
  Triangle = 5,  // points up
  Saltire = 6,   // a diagonal cross
  Ring = 7,
  Octagon = 8,
};

// The order in which levels cycle through the shapes.
inline constexpr std::array<HeapShape, 9> kShapes = {
    HeapShape::Rect,    HeapShape::Diamond, HeapShape::Disc,     HeapShape::Cross, HeapShape::Triangle,
    HeapShape::Octagon, HeapShape::Saltire, HeapShape::WideRect, HeapShape::Ring};

struct Bounds {
  int minX = 0;
  int minY = 0;
  double w = 0;    // in whole tiles
  double h = 0;    // in whole tiles
  int levels = 0;  // highest z + 1
};

// A heap of `count` slots with at most seven layers, in which every upper tile rests on four lower ones.
// `spread` is the share of the tiles to put on the lowest layer; a smaller share makes a steeper heap. The
// number of slots is always even: an odd `count` gives one slot less. A `count` that cannot be reached (many
// tiles with a tiny spread) gives the largest heap found. A `count` below 1 gives no slots.
std::vector<Slot> buildShapedHeap(HeapShape shape, int count, double spread);

// How one tile blocks another: by lying on it, even on a quarter of it, or by touching its left or right
// side, even half of it. A tile is free if nothing lies on it and its left or right side is open.
enum class Side { None, Above, Left, Right };
// How `other` blocks `tile`; None for the same slot.
Side sideOf(const Slot& tile, const Slot& other);

// Whether the tile of slot `i` would be free if the tiles with a non-zero flag in `present` (by slot id) were
// on the table. The flag of `i` itself is ignored. Aborts on an index outside the layout.
bool isFreeAmong(const std::vector<Slot>& slots, const std::vector<char>& present, int i);

// All zero for an empty layout.
Bounds boundsOf(const std::vector<Slot>& slots);

}  // namespace mj
