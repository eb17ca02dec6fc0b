#include "rules/boards.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "rules/levels.h"
#include "rules/tiles.h"

namespace test {
namespace {

mj::GameState spacedOut(const std::vector<std::string>& faces, int distance) {
  mj::GameState game;
  game.faces = faces;
  for (int i = 0; i < static_cast<int>(faces.size()); ++i) game.slots.push_back({i, i * distance, 0, 0});
  game.removed = static_cast<int>(std::count(faces.begin(), faces.end(), ""));
  return game;
}

}  // namespace

std::vector<mj::Slot> layoutAt(const std::vector<std::array<int, 3>>& places) {
  std::vector<mj::Slot> slots;
  for (const auto& [x, y, z] : places) slots.push_back({static_cast<int>(slots.size()), x, y, z});
  return slots;
}

mj::GameState rowOf(const std::vector<std::string>& faces) { return spacedOut(faces, 2); }

mj::GameState looseTiles(const std::vector<std::string>& faces) { return spacedOut(faces, 4); }

mj::GameState gameOfOneFace(int level) {
  mj::GameState game;
  game.slots = mj::levelToConfig(level).slots;
  game.faces.assign(game.slots.size(), "dot1");
  return game;
}

mj::GameState gameOf(int level, std::uint32_t deal) {
  return mj::createGame(mj::levelToConfig(level).slots, deal);
}

void expectSolidHeap(const std::vector<mj::Slot>& slots) {
  std::set<std::array<int, 3>> places;
  for (const mj::Slot& slot : slots) places.insert({slot.x, slot.y, slot.z});
  EXPECT_EQ(slots.size() % 2, 0U);
  for (std::size_t i = 0; i < slots.size(); ++i) {
    const auto& [id, x, y, z] = slots[i];
    EXPECT_EQ(id, static_cast<int>(i));
    for (const int dx : {-1, 0, 1}) {
      for (const int dy : {-1, 0, 1}) {
        EXPECT_EQ(places.count({x + dx, y + dy, z}), dx == 0 && dy == 0 ? 1U : 0U) << "overlap at slot " << i;
      }
    }
    for (const int dx : {-1, 1}) {
      for (const int dy : {-1, 1}) {
        EXPECT_EQ(z == 0 || places.count({x + dx, y + dy, z - 1}) == 1, true)
            << "slot " << i << " hangs over";
      }
    }
  }
  EXPECT_EQ(places.size(), slots.size());
}

std::map<std::string, int> facesOnTable(const mj::GameState& game) {
  std::map<std::string, int> count;
  for (const std::string& face : game.faces) {
    if (!face.empty()) ++count[face];
  }
  return count;
}

std::map<std::string, int> keysOnTable(const mj::GameState& game) {
  std::map<std::string, int> count;
  for (const auto& [face, times] : facesOnTable(game)) count[mj::matchKey(face)] += times;
  return count;
}

int tilesOnTable(const mj::GameState& game) {
  return static_cast<int>(game.faces.size() -
                          static_cast<std::size_t>(std::count(game.faces.begin(), game.faces.end(), "")));
}

std::size_t play(mj::GameState& game, const std::vector<mj::SlotPair>& order) {
  std::size_t taken = 0;
  for (const auto& [a, b] : order) {
    if (!mj::canMatch(game, a, b)) break;
    mj::applyMatch(game, a, b);
    ++taken;
  }
  return taken;
}

std::uint64_t digestOf(const std::vector<std::string>& texts) {
  std::uint64_t digest = 0xCBF29CE484222325U;
  const auto add = [&digest](char c) { digest = (digest ^ static_cast<unsigned char>(c)) * 0x100000001B3U; };
  for (const std::string& text : texts) {
    for (const char c : text) add(c);
    add('\n');
  }
  return digest;
}

}  // namespace test
