// controls.h: where the player clicks on the lists' screens, and the questions that are asked there.
#pragma once

#include <functional>
#include <string>

#include "screens/settings_layout.h"
#include "window/desktop.h"

namespace window {

// Does what makes the game ask, and waits until the question lies over the screen. False if none comes.
bool askBy(const Game& game, const std::function<void()>& act);
// Where something of the settings lies in the window, in this language.
ui::Rect settingsControl(const Game& game,
                         const std::function<ui::Rect(const screens::SettingsLayout&)>& control,
                         const std::string& language = "en");
// Where the gallery's first card lies.
ui::Rect firstCard(const Game& game);
// Clicks on yes or no.
void answer(const Game& game, bool yes);
// Says yes, and waits until the question is gone. False if it stays.
bool confirm(const Game& game);

}  // namespace window
