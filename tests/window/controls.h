// controls.h: where to click on the list screens, and how to answer their dialogs.
#pragma once

#include <functional>
#include <string>

#include "screens/settings_layout.h"
#include "window/desktop.h"

namespace window {

// Calls `act` and waits until a dialog covers the screen. False if none comes.
bool askBy(const Game& game, const std::function<void()>& act);
// The window rectangle of a control of the settings screen in this language, without scrolling.
ui::Rect settingsControl(const Game& game,
                         const std::function<ui::Rect(const screens::SettingsLayout&)>& control,
                         const std::string& language = "en");
// The window rectangle of the gallery's first card.
ui::Rect firstCard(const Game& game);
// Clicks on the dialog's yes or no button.
void answer(const Game& game, bool yes);
// Clicks on yes and waits until the dialog is gone. False if it stays.
bool confirm(const Game& game);

}  // namespace window
