#include "screens/stack.h"

#include "screens/screens.h"

namespace test {
namespace {

// Whoever uses the mouse has seen the screen: a first frame with a button in it comes after one without.
void update(ui::Ctx& ctx) {
  ui::Game& game = ui::Game::instance();
  const ui::Input& in = ctx.in;
  if (game.beginsScreen() && in.hasButtons()) {
    const ui::Input hand = in;
    ctx.in.dropButtons();
    game.update(ctx);
    ctx.in = hand;
    ctx.dt = 0;
  }
  game.update(ctx);
}

}  // namespace

Stack::Stack(const ui::GameState& first, int w, int h) : harness(update, w, h, support::Drawing::Textures) {
  ui::Game::instance().setFactory(screens::make);
  // The screen of the test before may be alive. It may ask for another in the same frame, and then wins; and
  // it writes down what it leaves.
  do {
    ui::Game::instance().resetTo(first);
    harness.frame(0);
  } while (!testing::Value(top(), Shows(first.kind, first.level, first.deal)));
  data = support::DataHome();
}

}  // namespace test
