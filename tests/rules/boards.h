// boards.h: layouts and games for the tests of the rules, and the checks that every heap must pass.
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

// A layout of tiles at the given x, y, z, with ids in that order.
std::vector<mj::Slot> layoutAt(const std::vector<std::array<int, 3>>& places);

// A row of adjacent tiles on the table, one per face. An empty face is a removed tile.
mj::GameState rowOf(const std::vector<std::string>& faces);

// Tiles on the table, too far apart to block one another: all are free.
mj::GameState looseTiles(const std::vector<std::string>& faces);

// The level's layout with the same face everywhere: any two free tiles match.
mj::GameState gameOfOneFace(int level);

// A new game of the level.
mj::GameState gameOf(int level, std::uint32_t deal);

// Expects that ids equal indexes, that no two slots overlap, and that every slot above the table rests on
// four others.
void expectSolidHeap(const std::vector<mj::Slot>& slots);

// How often each face, or each match key, is on the table.
std::map<std::string, int> facesOnTable(const mj::GameState& game);
std::map<std::string, int> keysOnTable(const mj::GameState& game);

int tilesOnTable(const mj::GameState& game);

// Removes the pairs in order until the rules forbid one. Returns how many were removed.
std::size_t play(mj::GameState& game, const std::vector<mj::SlotPair>& order);

// 64-bit FNV-1a digest of the texts in order, each followed by a line feed.
std::uint64_t digestOf(const std::vector<std::string>& texts);

}  // namespace test
