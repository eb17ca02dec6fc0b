// deal.h: lays faces on a layout so that the game can be won, and lays those still on the table anew.
// Knows no game record and no clock: random numbers come from a 32-bit state that is handed in and given
// back, so the same layout and the same state give the same faces on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "rules/layouts.h"

namespace mj {

using SlotPair = std::pair<int, int>;  // two slot ids

// One draw of the Mulberry32 generator: advances its state, returns a fraction from 0 to below 1.
double nextFraction(std::uint32_t& state);

// Fisher–Yates from the back; draws once for each element but the first.
template <typename T>
void shuffleInPlace(std::vector<T>& v, std::uint32_t& state) {
  for (std::size_t n = v.size(); n > 1; --n) {
    const auto j = static_cast<std::size_t>(nextFraction(state) * static_cast<double>(n));
    std::swap(v[n - 1], v[j]);
  }
}

struct Deal {
  std::vector<std::string> faces;  // by slot id
  std::uint32_t rng = 0;           // the generator's state afterwards
  std::vector<SlotPair> order;     // the pairs in an order in which they can be taken: one way to win
};

// Deals the tile set from `seed`. First an order is found in which the bare layout can be taken away two free
// tiles at a time, then each of these pairs is given a matching pair of faces. A layout that no order takes
// away gets no faces at all, but those of buildShapedHeap all have one. Of a layout beyond 144 slots the last
// in the order stay empty.
Deal createDeal(const std::vector<Slot>& slots, std::uint32_t seed);

// Deals the faces still on the table (the non-empty ones of `faces`, one entry a slot) anew to the slots they
// lie on, so that the rest can be won; `state` is the generator's. Matching faces are paired in slot order,
// and should a damaged record hold odd ones, those are dealt as pairs that do not match: no face is ever
// lost. Where no order takes the rest away, whatever lies where (an odd number of tiles, or a pile with one
// free tile on top and nothing beside it), faces and state come back as they were and the order is empty.
Deal reshufflePresent(const std::vector<Slot>& slots, const std::vector<std::string>& faces,
                      std::uint32_t state);

}  // namespace mj
