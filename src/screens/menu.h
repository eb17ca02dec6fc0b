// menu.h: the main menu, from which the player reaches every other screen. Units: logical pixels; seconds of
// the frame clock.
#pragma once

#include <optional>
#include <string>

#include "rules/engine.h"
#include "screens/menu_layout.h"
#include "ui/context.h"

namespace screens {

class Menu : public ui::Screen {
 public:
  // `behind` is the board that drifts behind the plaques.
  explicit Menu(mj::GameState behind);
  ~Menu() override;

  void update(ui::Ctx& ctx) override;

 private:
  void takeTimes(const ui::Ctx& ctx);
  void drawTable(ui::Ctx& ctx) const;
  void drawTitle(const ui::Ctx& ctx) const;
  void plaques(ui::Ctx& ctx) const;
  bool plaque(ui::Ctx& ctx, MenuEntry entry, const std::string& label) const;

  const ui::GameState continued;  // the game that "continue" starts
  const mj::GameState backdrop;
  MenuLayout layout = {};  // of the current frame
  std::optional<double> startedAt;
  std::optional<double> lastInput;
  int plaqueFrame = 0;  // which plaque shines
};

}  // namespace screens
