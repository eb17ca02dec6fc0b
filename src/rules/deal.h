// deal.h: deals faces onto a layout so that the game can be won, and reshuffles the faces still on the table.
// Knows no game record and no clock. Random numbers come from a 32-bit state that the caller passes in and
// gets back, so the same layout and state give the same faces on every machine.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "rules/layouts.h"

namespace mj {

using SlotPair = std::pair<int, int>;  // two slot ids

// One draw of the Mulberry32 generator. Advances `state` and returns a fraction in [0, 1).
double nextFraction(std::uint32_t& state);

// Fisher–Yates shuffle from the back. Draws once for each element except the first.
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
  std::vector<SlotPair> order;     // one order of pairs that wins the game
};

// Deals the whole tile set with `seed` as the generator's state. It first finds an order in which the bare
// layout can be removed in pairs of free tiles, then gives each of these pairs two matching faces. A layout
// without such an order gets no faces; every layout from buildShapedHeap has one. In a layout of more than
// 144 slots the last slots of the order stay empty.
Deal createDeal(const std::vector<Slot>& slots, std::uint32_t seed);

// Reshuffles the faces still on the table (the non-empty entries of `faces`, one entry per slot) among the
// slots they lie on, so that the rest can be won. `state` is the generator's. Matching faces are paired in
// slot order. If a damaged record holds faces without a partner, these are dealt as pairs that do not match;
// no face is lost. If the remaining tiles cannot be removed whatever their faces are (an odd number of tiles,
// or a stack with one free tile on top and nothing beside it), faces and state are returned unchanged and the
// order is empty.
Deal reshufflePresent(const std::vector<Slot>& slots, const std::vector<std::string>& faces,
                      std::uint32_t state);

}  // namespace mj
