// player.h: a player of the real game over several sittings. Starts without files. Links go to a fake opener
// that only records them. Checks of the window and the files wait until they are true.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "screens/menu_layout.h"
#include "window/painted_screen.h"
#include "window/player_files.h"
#include "window/session.h"

namespace window {

class Player {
 public:
  // Starts the program, or starts it again after it has ended. The window shows the program's first screen.
  void sitDown(const Environment& changes = {});

  Session& session() { return *sitting; }
  const Game& game() const { return sitting->game; }
  std::string dataPath(const std::string& file = "") const { return sitting->desktop.dataPath(file); }

  // Goes from the menu through this entry. False if the menu does not come or stays.
  bool choose(screens::MenuEntry entry) const { return chooseFromMenu(game(), entry); }
  // The part of the window that an open dialog surely covers.
  ui::Rect question() const;

  // How the window should show this screen, with the current pointer and files.
  ui::CairoSurface painted(const ui::GameState& descriptor, const Act& act = {}) const;
  // Whether the window shows that, now or after a while.
  testing::AssertionResult shows(const ui::GameState& descriptor, const Act& act = {}) const;
  // Whether the window matches `wanted` in this rectangle, now or after a while.
  testing::AssertionResult shows(cairo_surface_t* wanted, const ui::Rect& rect) const;
  // Whether the files equal `files`, now or after a while.
  testing::AssertionResult hasFiles() const;
  // The expected files.
  PlayerFiles files;

  // The addresses that the game asked to open, one per line.
  std::string opened() const { return support::readAll(desk.path("opened")); }

 private:
  Environment environment() const;

  support::TempDir desk;
  std::unique_ptr<Session> sitting;
};

}  // namespace window
