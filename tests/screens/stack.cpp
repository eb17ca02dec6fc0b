#include "screens/stack.h"

namespace test {

Stack::Stack(const ui::GameState& first, int w, int h)
    : harness([](ui::Ctx& ctx) { ui::Game::instance().update(ctx); }, w, h, support::Drawing::Textures) {
  // A screen that is still alive may ask for another in the same frame, and then wins.
  do {
    ui::Game::instance().resetTo(first);
    harness.frame(0);
  } while (!testing::Value(top(), Shows(first.kind, first.level, first.deal)));
}

}  // namespace test
