// layouts.h: where the tiles of a level lie, which of them are free, and how much room they take.
// Knows no faces. Units: half tiles for x (right) and y (down), layers for z (0 at the table, growing
// upward). A tile covers 2 × 2 units. Layer 0 lies on even coordinates, each higher one is moved by (+1, +1).
#pragma once

#include <array>
#include <vector>

namespace mj {

// A place for one tile. A layout is a vector of slots in which each id equals its index.
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
  Triangle = 5,  // apex at the top
  Saltire = 6,   // a diagonal cross
  Ring = 7,
  Octagon = 8,
};

// The order in which levels run through the outlines.
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

// A heap of `count` slots, upper tiles resting on four lower ones, seven layers at most. `spread` is the
// share of the tiles asked of the lowest layer: the smaller, the steeper the heap. The number of slots is
// always even: an odd `count` gives one less, and one that no such heap reaches (many tiles, tiny spread)
// gives as many as there are. A `count` below 1 gives none.
std::vector<Slot> buildShapedHeap(HeapShape shape, int count, double spread);

// What may keep a tile from being free: a tile on it, be it but a quarter, or one right beside it, be it but
// half. A tile is free while nothing lies on it and its left or its right side is open.
enum class Side { None, Above, Left, Right };
// Where `other` hinders `tile`; None for the slot itself.
Side sideOf(const Slot& tile, const Slot& other);

// Whether the tile of slot `i` could be taken, were the tiles with a non-zero flag in `present` (by slot id)
// on the table. Its own flag is not looked at. An index outside the layout aborts.
bool isFreeAmong(const std::vector<Slot>& slots, const std::vector<char>& present, int i);

// All zero for an empty layout.
Bounds boundsOf(const std::vector<Slot>& slots);

}  // namespace mj
