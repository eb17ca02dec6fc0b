#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <random>
#include <string>

#include "app/app.h"
#include "resources/i18n.h"
#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/menu_layout.h"
#include "screens/resume.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/felt.h"
#include "ui/gpu.h"
#include "ui/scenes.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kShineTime = 3;  // of each plaque, one after the other
constexpr double kIdleTime = 60;  // without input, until the demo
// The tiles have dropped long ago: that is the splash screen's.
constexpr double kAtRest = -1e9;

// A screen behind the menu, without parameters of its own.
struct Door {
  MenuEntry entry;
  const char* label;
  ui::ScreenKind kind;
};
constexpr std::array kDoors = {
    Door{MenuEntry::LevelSelect, "menu.levelSelect", ui::ScreenKind::LevelSelect},
    Door{MenuEntry::Gallery, "menu.gallery", ui::ScreenKind::Gallery},
    Door{MenuEntry::Settings, "menu.settings", ui::ScreenKind::Settings},
    Door{MenuEntry::About, "menu.about", ui::ScreenKind::About},
};

ui::GameState playing(int level, std::uint32_t deal) {
  return {.kind = ui::ScreenKind::Playing, .level = level, .deal = deal};
}

// The game that was left, if it can be played on; else the highest level, dealt as on its first play.
ui::GameState gameToContinue() {
  const store::SavedGame saved = store::loadGame();
  if (saved.valid && resumableGame(saved.level, saved.seed)) return playing(saved.level, saved.seed);
  const int level = store::loadProgress().currentLevel;
  return playing(level, static_cast<std::uint32_t>(level));
}

mj::GameState randomDeal() {
  std::mt19937 rng{std::random_device("default")()};
  const int level = static_cast<int>(rng() % store::kLastLevel) + 1;
  const auto deal = static_cast<std::uint32_t>(rng());
  return mj::createGame(mj::levelToConfig(level).slots, deal);
}

bool hasInput(const ui::Input& in) {
  return in.pressed || in.clicked || in.rightClicked || in.wheel != 0 || in.dx != 0 || in.dy != 0 ||
         !in.keys.empty();
}

// The hub: from here the player goes everywhere, and comes back to here.
class Menu : public ui::Screen {
 public:
  void update(ui::Ctx& ctx) override {
    takeTimes(ctx);
    drawTable(ctx);
    drawTitle(ctx);
    plaques(ctx);
    ui::footer(ctx, layout.footerBottom);
    if (ctx.time - *lastInput > kIdleTime) ui::Game::instance().push({.kind = ui::ScreenKind::Attract});
  }

 private:
  void takeTimes(const ui::Ctx& ctx) {
    if (!startedAt) startedAt = ctx.time;
    if (!lastInput || hasInput(ctx.in)) lastInput = ctx.time;
    plaqueFrame = static_cast<int>(std::fmod((ctx.time - *startedAt) / kShineTime, 6.0));
    layout = menuLayout(ctx.w, ctx.h);
  }

  void drawTable(ui::Ctx& ctx) const {
    ui::profBegin("filz");
    ui::drawFelt(ctx, mj::tableThemeForLevel(continued.level), true);
    ui::profEnd("filz");
    ui::profBegin("backdrop");
    ui::drawMenuBackdrop(ctx, backdrop);
    ui::profEnd("backdrop");
  }

  void drawTitle(const ui::Ctx& ctx) const {
    ui::profBegin("titel");
    drawTitleBlock(ctx, layout.title, layout.titleTop, kAtRest);
    ui::profEnd("titel");
    if (layout.taglineTop) drawTagline(ctx, *layout.taglineTop, 14);
  }

  void plaques(ui::Ctx& ctx) const {
    const std::string level = std::to_string(continued.level);
    if (plaque(ctx, MenuEntry::Continue, i18n::tr("menu.continue", {{"n", level}}))) {
      ui::Game::instance().push(continued);
    }
    if (plaque(ctx, MenuEntry::NewGame, i18n::tr("menu.newGame"))) {
      store::clearGame();
      ui::Game::instance().push(playing(1, 1));
    }
    for (const Door& door : kDoors) {
      if (plaque(ctx, door.entry, i18n::tr(door.label))) ui::Game::instance().push({.kind = door.kind});
    }
  }

  bool plaque(ui::Ctx& ctx, MenuEntry entry, const std::string& label) const {
    return ui::plaqueButton(ctx, layout.plaque(entry), label,
                            {.primary = entry == MenuEntry::Continue,
                             .shineIndex = static_cast<int>(entry),
                             .shineActive = plaqueFrame,
                             .fontSize = layout.fontSize});
  }

  const ui::GameState continued = gameToContinue();
  const mj::GameState backdrop = randomDeal();
  MenuLayout layout = {};  // of this frame
  std::optional<double> startedAt;
  std::optional<double> lastInput;
  int plaqueFrame = 0;  // whose turn it is to shine
};

}  // namespace

std::unique_ptr<ui::Screen> makeMenu() { return std::make_unique<Menu>(); }

}  // namespace screens
