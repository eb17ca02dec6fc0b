// hand.h: sends mouse, key and window manager requests to a display, whether they make sense or not. Knows no
// program. Units: pixels of the screen.
#pragma once

#include <memory>
#include <string>

#include "window/desktop.h"

namespace test {

class Hand {
 public:
  // Throws std::runtime_error if the display cannot be reached.
  explicit Hand(const std::string& displayName);
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;
  ~Hand();

  void move(window::Point onScreen) const;
  // Numbered as in X: 1 to 3 are buttons, 4 to 7 the wheel's directions.
  void button(unsigned number, bool down) const;
  void key(unsigned code, bool down) const;

  // Takes the active window for the functions below. They do nothing to a window that is gone.
  void takeWindow();
  void resize(window::Size size) const;
  void minimise() const;
  // Restores and activates the window.
  void raise() const;
  bool isShown() const;
  // Takes the keyboard from all windows.
  void dropFocus() const;

 private:
  struct Connection;
  std::unique_ptr<Connection> connection;
};

}  // namespace test
