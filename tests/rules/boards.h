// boards.h: layouts and games as the tests of the rules need them, and what every heap must hold to.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "rules/engine.h"
#include "rules/layouts.h"

namespace test {

// A layout of tiles at the given x, y, z, numbered in that order.
std::vector<mj::Slot> layoutAt(const std::vector<std::array<int, 3>>& places);

// A row of tiles side by side at the table, one for each face; an empty face is a tile taken.
mj::GameState rowOf(const std::vector<std::string>& faces);

// Tiles at the table too far apart to block one another, so that all are free.
mj::GameState looseTiles(const std::vector<std::string>& faces);

// The level's layout with the same face everywhere: any two free tiles match.
mj::GameState gameOfOneFace(int level);

// A fresh game of the level.
mj::GameState gameOf(int level, std::uint32_t deal);

// Only slots that are numbered by index, lie on no other, and above the table rest on four others.
void expectSolidHeap(const std::vector<mj::Slot>& slots);

// The faces on the table, or their match keys, with how often each is there.
std::map<std::string, int> facesOnTable(const mj::GameState& game);
std::map<std::string, int> keysOnTable(const mj::GameState& game);

int tilesOnTable(const mj::GameState& game);

// Takes the pairs in order, as far as the rules allow. Returns how many.
std::size_t play(mj::GameState& game, const std::vector<mj::SlotPair>& order);

// Digest of texts in order (64-bit FNV-1a, each closed by a line feed).
std::uint64_t digestOf(const std::vector<std::string>& texts);

}  // namespace test
