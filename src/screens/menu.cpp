#include "screens/menu.h"

#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <utility>

#include "app/app.h"
#include "resources/i18n.h"
#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/resume.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/focus.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/scenes.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kShineTime = 3;  // for each plaque in turn
constexpr double kTaglineSize = 14;
// How far above and below a text the backdrop is darkened. Small for the tagline: the title's tiles are just
// above it.
constexpr double kTaglineReach = 16;
constexpr double kFooterReach = 34;
constexpr double kIdleTime = 60;  // without input, before the demo starts
// The start time of the falling tiles, long past: they fall only on the splash screen.
constexpr double kAtRest = -1e9;

// A plaque that leads to a screen without parameters.
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

// The saved game if it can be resumed; else the highest unlocked level with its first deal.
ui::GameState gameToContinue() {
  if (const auto saved = resumableGame()) return playing(saved->level, saved->seed);
  const int level = store::loadProgress().currentLevel;
  return playing(level, static_cast<std::uint32_t>(level));
}

mj::GameState randomDeal() {
  std::mt19937 rng{std::random_device("default")()};
  const int level = static_cast<int>(rng() % store::kLastLevel) + 1;
  const auto deal = static_cast<std::uint32_t>(rng());
  return mj::createGame(mj::levelToConfig(level).slots, deal);
}

// Darkens the backdrop's tiles so that the text stays readable.
void drawShade(cairo_t* cr, const ui::Rect& text, double reachY) {
  constexpr double kReachX = 110;
  constexpr double kAlpha = 0.8;
  ui::drawSoftPatch(cr, text, kReachX, reachY, ui::palette::kVeil, kAlpha);
}

bool hasInput(const ui::Input& in) {
  return in.pressed || in.clicked || in.rightClicked || in.wheel != 0 || in.dx != 0 || in.dy != 0 ||
         !in.keys.empty();
}

}  // namespace

Menu::Menu(mj::GameState behind) : continued(gameToContinue()), backdrop(std::move(behind)) {}

Menu::~Menu() { ui::forgetMenuBackdrop(); }

void Menu::update(ui::Ctx& ctx) {
  takeTimes(ctx);
  drawTable(ctx);
  drawTitle(ctx);
  drawShade(ctx.cr, layout.footer, kFooterReach);
  plaques(ctx);
  ui::footer(ctx, layout.footerBottom);
  if (ctx.time - *lastInput > kIdleTime) ui::Game::instance().push({.kind = ui::ScreenKind::Attract});
}

void Menu::takeTimes(const ui::Ctx& ctx) {
  if (!startedAt) startedAt = ctx.time;
  if (!lastInput || hasInput(ctx.in)) lastInput = ctx.time;
  plaqueFrame = static_cast<int>(std::fmod((ctx.time - *startedAt) / kShineTime, 6.0));
  layout = menuLayout(ctx.w, ctx.h);
}

void Menu::drawTable(ui::Ctx& ctx) const {
  ui::profBegin("filz");
  ui::drawFelt(ctx, mj::tableThemeForLevel(continued.level), true);
  ui::profEnd("filz");
  ui::profBegin("backdrop");
  ui::drawMenuBackdrop(ctx, backdrop);
  ui::profEnd("backdrop");
}

void Menu::drawTitle(const ui::Ctx& ctx) const {
  ui::profBegin("titel");
  drawTitleBlock(ctx, layout.title, layout.titleTop, kAtRest);
  ui::profEnd("titel");
  if (!layout.taglineTop) return;
  drawShade(ctx.cr, taglineRect(ctx, *layout.taglineTop, kTaglineSize), kTaglineReach);
  drawTagline(ctx, *layout.taglineTop, kTaglineSize);
}

void Menu::plaques(ui::Ctx& ctx) const {
  const std::string level = std::to_string(continued.level);
  ui::nameMain(ctx, layout.plaque(MenuEntry::Continue));
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

bool Menu::plaque(ui::Ctx& ctx, MenuEntry entry, const std::string& label) const {
  return ui::plaqueButton(ctx, layout.plaque(entry), label,
                          {.primary = entry == MenuEntry::Continue,
                           .shineIndex = static_cast<int>(entry),
                           .shineActive = plaqueFrame,
                           .fontSize = layout.fontSize});
}

std::unique_ptr<ui::Screen> makeMenu() { return std::make_unique<Menu>(randomDeal()); }

}  // namespace screens
