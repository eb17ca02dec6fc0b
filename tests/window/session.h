// session.h: the real game in its window, beside a model of the table as it should look after the player has
// chosen "continue". Checks of the window wait until they are true.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "window/desktop.h"
#include "window/menu.h"
#include "window/table.h"

namespace window {

// Makes SDL's OpenGL renderer fail, as on a machine without OpenGL.
inline const Environment kNoOpenGl = {
    {"SDL_OPENGL_LIBRARY", "/none"}, {"SDL_VIDEO_GL_DRIVER", "/none"}, {"SDL_VIDEO_EGL_DRIVER", "/none"}};

// Presses Ctrl+Q and expects exit status 0.
inline void quit(Game& game) {
  game.type(Key::LeftControl, Key::Q);
  EXPECT_EQ(game.process().waitForEnd(), 0) << game.process().errors();
}

// Options of a session.
struct Setup {
  std::vector<std::string> arguments = {};
  Environment environment = {};
  std::string keyboard = kLatinKeyboard;
  Size screen = kSmallScreen;
  std::string preload = {};  // a library to preload into the program
  bool toTable = true;       // whether to continue from the menu at once
};

class Session {
 public:
  explicit Session(const Setup& setup = {})
      : Session(std::make_shared<Desktop>(setup.keyboard, setup.screen), setup, Table()) {}
  // Starts the game again with the files of an earlier session that has ended. It should show the table as it
  // was left, without zoom.
  Session(const Session& earlier, const Setup& setup) : Session(earlier.place, setup, earlier.table) {
    table.view = {};
  }

  std::shared_ptr<Desktop> place;
  Desktop& desktop;
  Game game;
  Table table;

  // Whether the window shows the table, now or after a while, ignoring the tiles in `except`.
  testing::AssertionResult showsTable(const std::set<int>& except = {}) const {
    testing::AssertionResult result = testing::AssertionFailure();
    waitFor([&] { return static_cast<bool>(result = table.isShownIn(game.picture().get(), except)); });
    return result;
  }
  bool showsMenu() const {
    return waitFor([&] { return isMenuShownIn(game.picture().get()); });
  }
  bool showsSelected(int tile) const {
    return waitFor([&] { return table.isSelectedIn(game.picture().get(), tile); });
  }
  testing::AssertionResult hasSize(Size size) const {
    if (waitFor([&] { return game.size() == size; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it is " << game.size().w << " x " << game.size().h;
  }

  // Whether the program ends by itself with this status.
  testing::AssertionResult endsWith(int status) {
    const std::optional<int> seen = game.process().waitForEnd();
    if (seen == status) return testing::AssertionSuccess();
    if (!seen) return testing::AssertionFailure() << "it does not end";
    return testing::AssertionFailure() << "status " << *seen << ": " << game.process().errors();
  }

  void tap(int tile) const { game.click(table.spotOn(tile, game.size())); }
  // Takes a pair with two clicks, in the window and in the model.
  void takePair() {
    ASSERT_TRUE(showsTable());
    const auto [a, b] = table.pair();
    tap(a);
    EXPECT_TRUE(showsSelected(a));
    tap(b);
    mj::applyMatch(table.game, a, b);
    EXPECT_TRUE(showsTable());
  }

  // Makes sure that the game has handled all input so far, even input without a visible effect: pauses, waits
  // until the board is hidden, and continues. False if the board is not hidden or does not come back.
  bool pauseAndGoOn(const std::set<int>& except = {}) {
    game.type(Key::Space);
    const bool hidden = waitFor([this] { return table.isHiddenIn(game.picture().get()); });
    game.type(Key::Space);
    return hidden && showsTable(except);
  }

 private:
  Session(std::shared_ptr<Desktop> on, const Setup& setup, Table shown)
      : place(std::move(on)),
        desktop(*place),
        game(desktop, setup.arguments, environmentOf(setup)),
        table(std::move(shown)) {
    EXPECT_TRUE(!setup.toTable || continueFromMenu(game)) << "no way through the menu";
  }

  Environment environmentOf(const Setup& setup) const {
    return setup.preload.empty() ? setup.environment
                                 : changed(preloading(desktop, setup.preload), setup.environment);
  }
};

}  // namespace window
