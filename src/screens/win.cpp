#include "screens/win.h"

#include "storage/storage.h"

namespace screens {

void recordWin(const ui::GameState& solved) {
  const int aids = solved.hints + solved.shuffles;
  store::advanceLevel(solved.level);
  store::recordBest(solved.level,
                    {.stars = store::computeStars(aids), .aids = aids, .elapsedMs = solved.timeMs});
  store::clearGame();
}

}  // namespace screens
