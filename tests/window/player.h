// player.h: somebody who plays the real game over as many sittings as it takes, with files that begin empty
// and with an opener of web links that only writes down what it was asked for. Whatever is asked of the
// window or of the files is waited for.
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
  // Starts the program, at first and once more when it has ended. The window shows what the program begins
  // with.
  void sitDown(const Environment& changes = {});

  Session& session() { return *sitting; }
  const Game& game() const { return sitting->game; }
  std::string dataPath(const std::string& file = "") const { return sitting->desktop.dataPath(file); }

  // Goes from the menu through one of its entries. False if the menu is not there, or stays.
  bool choose(screens::MenuEntry entry) const { return chooseFromMenu(game(), entry); }
  // What surely belongs to a question that lies over the screen.
  ui::Rect question() const;

  // What the window ought to show of this screen, with the pointer where it is and the files as they are.
  ui::CairoSurface painted(const ui::GameState& descriptor, const Act& act = {}) const;
  // Whether it comes to show that.
  testing::AssertionResult shows(const ui::GameState& descriptor, const Act& act = {}) const;
  // Whether it comes to show the same as `wanted` in this rectangle.
  testing::AssertionResult shows(cairo_surface_t* wanted, const ui::Rect& rect) const;
  // Whether the files come to be `files`.
  testing::AssertionResult hasFiles() const;
  // What they ought to be.
  PlayerFiles files;

  // The addresses that were to be opened, each on a line.
  std::string opened() const { return support::readAll(desk.path("opened")); }

 private:
  Environment environment() const;

  support::TempDir desk;
  std::unique_ptr<Session> sitting;
};

}  // namespace window
