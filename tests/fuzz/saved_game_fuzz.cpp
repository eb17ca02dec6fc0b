// Whatever save.json holds, a game that counts as valid can be used like any other, and saving keeps it.

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <cstdint>

#include "fuzz/data_file.h"
#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/storage.h"

namespace {

bool isSlot(const mj::GameState& game, int id) {
  return 0 <= id && static_cast<std::size_t>(id) < game.slots.size();
}

void expectWhole(const mj::GameState& game) {
  assert(game.faces.size() == game.slots.size());
  assert(game.removed == std::count(game.faces.begin(), game.faces.end(), ""));
  assert(game.selected == -1 || isSlot(game, game.selected));
  assert(game.hints >= 0 && game.shuffles >= 0);
  for (const mj::HistoryEntry& pair : game.history) {
    assert(isSlot(game, pair.a) && isSlot(game, pair.b));
    assert(!pair.faceA.empty() && !pair.faceB.empty());
  }
  for (const mj::SlotPair& pair : mj::availablePairs(game))
    assert(mj::canMatch(game, pair.first, pair.second));
  assert(mj::isSolved(game) == (game.removed == static_cast<int>(game.slots.size())));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::putFile("save.json", data, size);
  store::SavedGame saved = store::loadGame();
  if (!saved.valid) return 0;
  assert(1 <= saved.level && saved.level <= store::kLastLevel);
  assert(saved.game.slots == mj::levelToConfig(saved.level).slots);
  expectWhole(saved.game);

  store::saveGame(saved);
  store::SavedGame again = store::loadGame();
  again.savedAt = saved.savedAt;
  assert(again == saved);
  store::clearGame();
  assert(!store::loadGame().valid);
  return 0;
}
