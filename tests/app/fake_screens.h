// fake_screens.h: screens that draw nothing by themselves, do what a test tells them and remember their
// lives.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/context.h"

namespace fake {

struct Script {
  // Done by the live screen in each update; may be empty.
  std::function<void(ui::Ctx&)> onUpdate;
  // "Playing made", "Playing begins", "Playing ends", "Playing destroyed", in the order of events; begin and
  // end are those of an update.
  std::vector<std::string> events;
  // The descriptor that the last screen was made from.
  ui::GameState descriptor;
};

// The one script of the process: the factory has nowhere else to look. A test begins with a new one.
Script& script();

// Makes a screen that goes by the script; null for a kind that no screen has.
std::unique_ptr<ui::Screen> make(const ui::GameState& descriptor);

}  // namespace fake
