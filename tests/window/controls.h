// controls.h: where the player clicks on the lists' screens, and the questions that are asked there.
#pragma once

#include <functional>

#include "screens/settings_layout.h"
#include "window/desktop.h"

namespace window {

// Does what makes the game ask, and waits until the question lies over the screen. False if none comes.
bool askBy(const Game& game, const std::function<void()>& act);
// The middle of one of the settings' controls.
Point settingsControl(const Game& game, ui::Rect screens::SettingsLayout::*control);
// The middle of the gallery's first card.
Point firstCard(const Game& game);
// Says yes to it, and waits until it is gone. False if it stays.
bool confirm(const Game& game);

}  // namespace window
