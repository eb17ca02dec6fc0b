// states.h: the screens of the game in the states worth looking at.
#pragma once

#include <functional>
#include <memory>
#include <span>

#include "gallery/studio.h"
#include "ui/context.h"

namespace gallery {

struct State {
  const char* name;
  // Builds the screen, with what it needs of the player's files, of which there are none before.
  std::function<std::unique_ptr<ui::Screen>()> make;
  // From the screen's first frame to the one that is painted.
  std::function<void(Sitting&)> reach;
};
std::span<const State> states();

}  // namespace gallery
