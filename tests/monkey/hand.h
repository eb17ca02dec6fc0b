// hand.h: mouse, keys and window manager of a display, without asking whether what they do makes sense. Knows
// no program. Units: pixels of the screen.
#pragma once

#include <memory>
#include <string>

#include "window/desktop.h"

namespace test {

class Hand {
 public:
  // Throws std::runtime_error when the display cannot be reached.
  explicit Hand(const std::string& displayName);
  Hand(const Hand&) = delete;
  Hand& operator=(const Hand&) = delete;
  ~Hand();

  void move(window::Point onScreen) const;
  // The numbers are X's: 1 to 3 are buttons, 4 to 7 the wheel's ways.
  void button(unsigned number, bool down) const;
  void key(unsigned code, bool down) const;

  // The window that is active now is the one that is meant below. One that is gone is left in peace.
  void takeWindow();
  void resize(window::Size size) const;
  void minimise() const;
  // Brings it back and makes it the active one.
  void raise() const;
  bool isShown() const;
  // No window has the keyboard then.
  void dropFocus() const;

 private:
  struct Connection;
  std::unique_ptr<Connection> connection;
};

}  // namespace test
