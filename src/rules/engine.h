// engine.h: one game of solitaire and what can be done with it. Knows no player, no clock and no files.
// Ids are slot ids. Questions take any id and answer "no" to those outside the layout; moves abort on them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "rules/deal.h"
#include "rules/layouts.h"

namespace mj {

// A pair that was taken.
struct HistoryEntry {
  int a = 0;
  int b = 0;
  std::string faceA;
  std::string faceB;

  bool operator==(const HistoryEntry&) const = default;
};

struct GameState {
  std::vector<Slot> slots;
  std::vector<std::string> faces;  // by slot id; empty where the tile is gone
  int selected = -1;               // -1 for none
  int removed = 0;                 // tiles taken
  std::uint32_t rng = 0;           // the generator's state after the deal and all shuffles
  int hints = 0;                   // hints taken, counted by whoever shows them
  int shuffles = 0;
  std::vector<HistoryEntry> history;  // oldest first

  bool operator==(const GameState&) const = default;
};

// A fresh game; the same layout and seed always give the same one.
GameState createGame(const std::vector<Slot>& slots, std::uint32_t seed);

// 1 for each slot whose tile is on the table, else 0.
std::vector<char> presence(const GameState& state);

// Whether the tile is on the table and could be taken if its partner could.
bool isFree(const GameState& state, int id);

// Whether the two tiles can be taken together now.
bool canMatch(const GameState& state, int a, int b);

// The tiles on the table that are free, in slot order.
std::vector<int> freeIds(const GameState& state);

// Every pair that can be taken, ordered by its first id, then by its second, the first always the lower.
std::vector<SlotPair> availablePairs(const GameState& state);

// The first of the available pairs; (-1, -1) when there is none.
SlotPair findHint(const GameState& state);

// Whether every tile was taken. A record without a layout is no solved game.
bool isSolved(const GameState& state);

// Takes the pair and unselects. The caller asked canMatch before.
void applyMatch(GameState& state, int a, int b);

// Puts the pair taken last back with the faces it had, and unselects. Other tiles keep what a later shuffle
// gave them. Without history nothing happens.
void undo(GameState& state);

// Lays the remaining faces anew so that the rest can be won, unselects, and counts as a shuffle even where
// nothing could be laid otherwise (see reshufflePresent). History is kept.
void shuffleBoard(GameState& state);

}  // namespace mj
