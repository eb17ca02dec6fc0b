// states.h: the game's screens in the states that are worth looking at.
#pragma once

#include <functional>
#include <memory>
#include <span>

#include "gallery/studio.h"
#include "ui/context.h"

namespace gallery {

struct State {
  const char* name;
  // Builds the screen and writes the player's files that it needs. There are none before.
  std::function<std::unique_ptr<ui::Screen>()> make;
  // Leads from the screen's first frame to the one that is painted.
  std::function<void(Sitting&)> reach;
};
std::span<const State> states();

}  // namespace gallery
