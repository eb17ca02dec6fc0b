#include "screens/stack.h"

#include "screens/screens.h"

namespace test {
namespace {

// Gives a new screen one frame before it gets button events, because it ignores a button that is down in its
// first frame. A real player has also seen the screen before clicking.
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
  // The previous test's screen may still be live. It may save on the way out, and its own request in the same
  // frame would win over this one, so repeat. Its files are dropped afterwards.
  do {
    ui::Game::instance().resetTo(first);
    harness.frame(0);
  } while (!testing::Value(top(), Shows(first.kind, first.level, first.deal)));
  data = support::DataHome();
}

}  // namespace test
