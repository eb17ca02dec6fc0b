// screens.h: the factories of the screens. Each returns a new screen in its initial state.
#pragma once

#include <memory>

#include "ui/context.h"

namespace screens {

// The screen for the descriptor's kind; null for an unknown kind.
std::unique_ptr<ui::Screen> make(const ui::GameState& descriptor);

std::unique_ptr<ui::Screen> makeSplash();
std::unique_ptr<ui::Screen> makeMenu();
std::unique_ptr<ui::Screen> makeLevelSelect();
std::unique_ptr<ui::Screen> makePlaying(const ui::GameState& descriptor);
std::unique_ptr<ui::Screen> makeSolved(const ui::GameState& descriptor);
std::unique_ptr<ui::Screen> makeGallery();
std::unique_ptr<ui::Screen> makeSettings();
std::unique_ptr<ui::Screen> makeAbout();
std::unique_ptr<ui::Screen> makeLicenses();
std::unique_ptr<ui::Screen> makeAttract();

}  // namespace screens
