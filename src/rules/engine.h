// engine.h: one game of solitaire, its moves and the questions about it. Knows no player, no clock and no
// files. Ids are slot ids. Questions accept any id and answer "no" outside the layout; moves abort there.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rules/deal.h"
#include "rules/layouts.h"

namespace mj {

// A removed pair.
struct HistoryEntry {
  int a = 0;
  int b = 0;
  std::string faceA;
  std::string faceB;

  bool operator==(const HistoryEntry&) const = default;
};

struct GameState {
  std::vector<Slot> slots;
  std::vector<std::string> faces;  // by slot id; empty once the tile is removed
  int selected = -1;               // -1 for none
  int removed = 0;                 // tiles removed
  std::uint32_t rng = 0;           // the generator's state after the deal and all shuffles
  int hints = 0;                   // hints used, counted by the caller that shows them
  int shuffles = 0;
  std::vector<HistoryEntry> history;  // oldest first

  bool operator==(const GameState&) const = default;
};

// A new game. The same layout and seed always give the same game.
GameState createGame(const std::vector<Slot>& slots, std::uint32_t seed);

// One entry per slot: 1 if its tile is on the table, else 0.
std::vector<char> presence(const GameState& state);

// Whether the tile is on the table and free: no tile lies on it, and its left or right side is open.
bool isFree(const GameState& state, int id);

// Whether the two tiles can be removed together now: two different tiles, both free, with matching faces.
bool canMatch(const GameState& state, int a, int b);

// The free tiles in slot order.
std::vector<int> freeIds(const GameState& state);

// Every pair that can be removed now. The lower id comes first in each pair; pairs are sorted by first id,
// then by second.
std::vector<SlotPair> availablePairs(const GameState& state);

// The first of availablePairs(), or (-1, -1) if there is none.
SlotPair findHint(const GameState& state);

// Whether every tile is removed. A game without slots does not count as solved.
bool isSolved(const GameState& state);

// Removes the pair and clears the selection. The caller must have checked canMatch.
void applyMatch(GameState& state, int a, int b);

// Puts the last removed pair back with the faces it had, and clears the selection. Other tiles keep the faces
// that a later shuffle gave them. Does nothing without history.
void undo(GameState& state);

// Reshuffles the remaining faces so that the rest can be won, and clears the selection. Counts as a shuffle
// even if the position cannot be won and the faces stay (see reshufflePresent). Keeps the history.
void shuffleBoard(GameState& state);

}  // namespace mj
