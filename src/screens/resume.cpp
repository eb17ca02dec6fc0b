#include "screens/resume.h"

#include <algorithm>
#include <vector>

namespace screens {
namespace {

// Thirty years of play, and more hints or shuffles than anybody takes. Larger values could overflow when they
// grow.
constexpr std::int64_t kMaxElapsedMs = 1'000'000'000'000;
constexpr int kMaxAids = 999'999;

// Keeps only entries that undo can take back in turn: both slots are empty and no slot occurs twice.
void repairHistory(mj::GameState& game) {
  std::vector<char> claimed = mj::presence(game);
  const auto isStale = [&](const mj::HistoryEntry& entry) {
    char& a = claimed[static_cast<std::size_t>(entry.a)];
    char& b = claimed[static_cast<std::size_t>(entry.b)];
    if (a != 0 || b != 0 || entry.a == entry.b) return true;
    a = 1;
    b = 1;
    return false;
  };
  // If two entries name the same slot, the newer one wins.
  std::reverse(game.history.begin(), game.history.end());
  std::erase_if(game.history, isStale);
  std::reverse(game.history.begin(), game.history.end());
}

}  // namespace

std::optional<store::SavedGame> resumableGame() {
  store::SavedGame saved = store::loadGame();
  if (!saved.valid || mj::isSolved(saved.game)) return {};
  mj::GameState& game = saved.game;
  if (!mj::isFree(game, game.selected)) game.selected = -1;
  game.hints = std::min(game.hints, kMaxAids);
  game.shuffles = std::min(game.shuffles, kMaxAids);
  repairHistory(game);
  saved.elapsedMs = std::clamp<std::int64_t>(saved.elapsedMs, 0, kMaxElapsedMs);
  return saved;
}

std::optional<store::SavedGame> resumableGame(int level, std::uint32_t deal) {
  auto saved = resumableGame();
  if (saved && (saved->level != level || saved->seed != deal)) saved.reset();
  return saved;
}

}  // namespace screens
