// fake_screens.h: screens that draw nothing themselves, run a test's code and record the events of their
// lives.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/context.h"

namespace fake {

struct Script {
  // Called by the live screen in each update; may be empty.
  std::function<void(ui::Ctx&)> onUpdate;
  // "Playing made", "Playing begins", "Playing ends", "Playing destroyed", in order. "begins" and "ends"
  // refer to an update.
  std::vector<std::string> events;
  // The descriptor of the last created screen.
  ui::GameState descriptor;
};

// The process's only script, because the factory takes no other argument. Each test begins with a new one.
Script& script();

// Creates a screen that follows the script. Null for an unknown kind.
std::unique_ptr<ui::Screen> make(const ui::GameState& descriptor);

}  // namespace fake
