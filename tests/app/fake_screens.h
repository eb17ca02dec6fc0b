// fake_screens.h: screens that draw nothing by themselves, do what a test tells them and remember their
// lives. They take the place of the real ones in this test program.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/context.h"

namespace fake {

struct Script {
  // Done by the live screen in each update; may be empty.
  std::function<void(ui::Ctx&)> onUpdate;
  // "Playing made", "Playing begins", "Playing ends", "Playing destroyed", in the order of events; begin and
  // end are those of an update.
  std::vector<std::string> events;
  // The descriptor that the last made screen was given; only some kinds are given one.
  ui::GameState descriptor;
};

// The one script of the process: the factories have nowhere else to look. A test begins with a new one.
Script& script();

}  // namespace fake
