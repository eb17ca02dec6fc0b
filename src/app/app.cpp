#include "app/app.h"

#include <SDL_keycode.h>

#include <cassert>
#include <utility>

namespace ui {
namespace {

// Seconds. A player who is still clicking this fast after that time has seen the new screen.
constexpr double kLongestRun = 1;
// Seconds. Key presses that follow one another within this time count as one run.
constexpr double kKeyRunGap = 0.3;

// Whether a key that operates controls was newly pressed, not just repeated.
bool hasPress(const Input& in) {
  return in.hasFreshKey(SDLK_RETURN) || in.hasFreshKey(SDLK_KP_ENTER) || in.hasFreshKey(SDLK_SPACE);
}

}  // namespace

Game::Game(ScreenFactory factory) : makeScreen(factory), stack(1) {}

Game& Game::instance() {
  static Game game(nullptr);
  return game;
}

void Game::setFactory(ScreenFactory factory) { makeScreen = factory; }

store::Settings& Game::settings() {
  // Never destroyed: the live screen's destructor may still write them at exit, even if the stack was created
  // first.
  static auto& settings = *new store::Settings(store::loadSettings());
  return settings;
}

void Game::persistSettings() { store::saveSettings(settings()); }

void Game::push(const GameState& descriptor) { pendingRequest = {Operation::Push, descriptor}; }
void Game::pop() { pendingRequest = {Operation::Pop, {}}; }
void Game::replace(const GameState& descriptor) { pendingRequest = {Operation::Replace, descriptor}; }
void Game::resetTo(const GameState& descriptor) { pendingRequest = {Operation::Reset, descriptor}; }

void Game::update(Ctx& ctx) {
  const bool buttonsWork = ctx.in.hasButtons();
  if (beginsScreen()) {
    forgetEarlierButtons(ctx);
    focus.forget();
  } else {
    keepOwnButtons(ctx);
  }
  keepOwnKeys(ctx);
  ensureScreen();
  showScreen(ctx);
  if (pendingRequest.operation == Operation::None) return;
  carryOut(std::exchange(pendingRequest, {}));
  ++stackVersion;
  screen.reset();
  foreignRun = foreignRun || buttonsWork;
  foreignKeys = followsPress(ctx.time);
}

void Game::showScreen(Ctx& ctx) {
  if (!screen) return;
  // During play, Space pauses the game.
  const bool spaceWorks = stack.back().kind != ScreenKind::Playing;
  ctx.hand = false;
  focus.frame(ctx, spaceWorks, [&] { screen->update(ctx); });
}

void Game::ensureScreen() {
  if (screen && builtVersion == stackVersion) return;
  assert(makeScreen != nullptr);
  screen = makeScreen(stack.back());
  builtVersion = stackVersion;
}

// Drops button events from before the screen's first frame: they were meant for the previous screen. Screens
// put their controls in the same places, so the release that ended the demo would start a new game, and so
// would the second click of a double click on "Exit".
void Game::forgetEarlierButtons(Ctx& ctx) {
  shownSince = ctx.time;
  hold = ctx.in.down ? Hold::Earlier : Hold::None;
  foreignRun = foreignRun || ctx.in.hasButtons();
  ctx.in.dropButtons();
}

void Game::keepOwnButtons(Ctx& ctx) {
  Input& in = ctx.in;
  const bool heardOfPress = hold == Hold::Own || (hold == Hold::None && in.pressed);
  if (!in.down) {
    hold = Hold::None;
  } else if (hold != Hold::Own) {
    hold = in.pressed ? Hold::Own : Hold::Earlier;
  }
  in.down = hold == Hold::Own;
  if (!in.clicked) return;
  const bool follows = in.doubleClicked && ctx.time - shownSince < kLongestRun;
  foreignRun = !heardOfPress || (foreignRun && follows);
  if (foreignRun) in.clicked = in.doubleClicked = false;
}

// The same for keys that operate controls: a player who keeps tapping Enter has not seen the new screen.
void Game::keepOwnKeys(Ctx& ctx) {
  if (ctx.time < lastPress) lastPress = -kLongestRun;  // the clock was reset
  if (!hasPress(ctx.in)) return;
  const bool follows = followsPress(ctx.time);
  lastPress = ctx.time;
  foreignKeys = beginsScreen() || (foreignKeys && follows && ctx.time - shownSince < kLongestRun);
  if (foreignKeys) ctx.in.freshKeys.clear();
}

bool Game::followsPress(double now) const { return now - lastPress < kKeyRunGap; }

void Game::carryOut(const Request& request) {
  switch (request.operation) {
    case Operation::None:
      break;
    case Operation::Push:
      stack.push_back(request.descriptor);
      break;
    case Operation::Pop:
      if (stack.size() >= 2) stack.pop_back();
      break;
    case Operation::Replace:
      stack.back() = request.descriptor;
      break;
    case Operation::Reset:
      stack.assign(1, request.descriptor);
      break;
  }
}

}  // namespace ui
