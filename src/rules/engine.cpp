#include "rules/engine.h"

#include <cassert>
#include <cstddef>

#include "rules/tiles.h"

namespace mj {
namespace {

std::string& faceAt(GameState& state, int id) {
  assert(id >= 0 && static_cast<std::size_t>(id) < state.faces.size());
  return state.faces[static_cast<std::size_t>(id)];
}

bool onTable(const GameState& state, int id) {
  return id >= 0 && static_cast<std::size_t>(id) < state.faces.size() &&
         !state.faces[static_cast<std::size_t>(id)].empty();
}

}  // namespace

GameState createGame(const std::vector<Slot>& slots, std::uint32_t seed) {
  Deal deal = createDeal(slots, seed);
  GameState state;
  state.slots = slots;
  state.faces = std::move(deal.faces);
  state.rng = deal.rng;
  return state;
}

std::vector<char> presence(const GameState& state) {
  std::vector<char> present(state.slots.size(), 0);
  for (std::size_t id = 0; id < present.size(); ++id) present[id] = state.faces[id].empty() ? 0 : 1;
  return present;
}

bool isFree(const GameState& state, int id) {
  if (id < 0 || static_cast<std::size_t>(id) >= state.slots.size() || !onTable(state, id)) return false;
  return isFreeAmong(state.slots, presence(state), id);
}

bool canMatch(const GameState& state, int a, int b) {
  if (a == b || !onTable(state, a) || !onTable(state, b)) return false;
  const std::string keyA = matchKey(state.faces[static_cast<std::size_t>(a)]);
  const std::string keyB = matchKey(state.faces[static_cast<std::size_t>(b)]);
  return keyA == keyB && isFree(state, a) && isFree(state, b);
}

std::vector<int> freeIds(const GameState& state) {
  const std::vector<char> present = presence(state);
  std::vector<int> ids;
  for (const Slot& slot : state.slots) {
    const bool there = present[static_cast<std::size_t>(slot.id)] != 0;
    if (there && isFreeAmong(state.slots, present, slot.id)) ids.push_back(slot.id);
  }
  return ids;
}

std::vector<SlotPair> availablePairs(const GameState& state) {
  const std::vector<int> ids = freeIds(state);
  std::vector<std::string> keys;
  for (const int id : ids) keys.push_back(matchKey(state.faces[static_cast<std::size_t>(id)]));
  std::vector<SlotPair> pairs;
  for (std::size_t i = 0; i < ids.size(); ++i) {
    for (std::size_t j = i + 1; j < ids.size(); ++j) {
      if (keys[i] == keys[j]) pairs.emplace_back(ids[i], ids[j]);
    }
  }
  return pairs;
}

SlotPair findHint(const GameState& state) {
  const std::vector<SlotPair> pairs = availablePairs(state);
  return pairs.empty() ? SlotPair(-1, -1) : pairs.front();
}

bool isSolved(const GameState& state) {
  return !state.slots.empty() && static_cast<std::size_t>(state.removed) == state.slots.size();
}

void applyMatch(GameState& state, int a, int b) {
  std::string& faceA = faceAt(state, a);
  std::string& faceB = faceAt(state, b);
  state.history.push_back({a, b, faceA, faceB});
  faceA.clear();
  faceB.clear();
  state.selected = -1;
  state.removed += 2;
}

void undo(GameState& state) {
  if (state.history.empty()) return;
  const HistoryEntry last = std::move(state.history.back());
  state.history.pop_back();
  faceAt(state, last.a) = last.faceA;
  faceAt(state, last.b) = last.faceB;
  state.selected = -1;
  state.removed -= 2;
}

void shuffleBoard(GameState& state) {
  Deal result = reshufflePresent(state.slots, state.faces, state.rng);
  state.faces = std::move(result.faces);
  state.rng = result.rng;
  state.selected = -1;
  ++state.shuffles;
}

}  // namespace mj
