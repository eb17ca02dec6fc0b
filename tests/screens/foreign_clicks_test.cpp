// Button events that began on one screen have no effect on the next one, whose controls are in the same
// places.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "rules/levels.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/menu_layout.h"
#include "screens/playing_layout.h"
#include "screens/settings_layout.h"
#include "screens/solved_layout.h"
#include "screens/stack.h"
#include "storage/storage.h"
#include "support/picture.h"

namespace {

using screens::MenuEntry;
using support::kSmallH;
using support::kSmallW;
using support::Point;
using test::Stack;
using ui::ScreenKind;

constexpr int kSavedLevel = 3;
constexpr std::uint32_t kSavedDeal = 7;

ui::Rect plaque(MenuEntry entry) { return screens::menuLayout(kSmallW, kSmallH).plaque(entry); }
Point middle(const ui::Rect& rect) { return {rect.x + rect.w / 2, rect.y + rect.h / 2}; }

// A point in both rectangles; empty if they do not overlap.
std::optional<Point> inBoth(const ui::Rect& a, const ui::Rect& b) {
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.w, b.x + b.w);
  const double bottom = std::min(a.y + a.h, b.y + b.h);
  if (left >= right || top >= bottom) return std::nullopt;
  return Point{(left + right) / 2, (top + bottom) / 2};
}

// A player with a saved game on a screen opened from the menu.
class ForeignClick : public testing::Test {
 protected:
  ForeignClick() : stack({.kind = ScreenKind::Menu}, kSmallW, kSmallH) {
    store::saveGame({.valid = true,
                     .level = kSavedLevel,
                     .seed = kSavedDeal,
                     .game = mj::createGame(mj::levelToConfig(kSavedLevel).slots, kSavedDeal),
                     .elapsedMs = 60000,
                     .savedAt = 1});
    stack.harness.frame();
  }

  void open(const ui::GameState& descriptor) {
    ui::Game::instance().push(descriptor);
    stack.harness.frame();
    stack.harness.frame();
    ASSERT_EQ(Stack::top().kind, descriptor.kind);
  }
  void press(Point p) { stack.harness.press(p.x, p.y); }
  void release(Point p) { stack.harness.release(p.x, p.y); }
  void click(Point p) { stack.harness.click(p.x, p.y); }
  // A second click within the double-click time.
  void clickFast(Point p) {
    stack.harness.next().doubleClicked = true;
    click(p);
  }
  void waitForFrames() {
    for (int i = 0; i < 3; ++i) stack.harness.frame();
  }
  // The first click leads to `next`; the second click of a double click does nothing there.
  void doubleClickLeadsTo(ScreenKind next, Point p) {
    click(p);
    ASSERT_EQ(Stack::top().kind, next);
    stack.harness.frame();
    clickFast(p);
    waitForFrames();
    EXPECT_EQ(Stack::top().kind, next);
  }
  void expectMenuWithTheSavedGame() {
    waitForFrames();
    EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
    EXPECT_EQ(store::loadGame().level, kSavedLevel);
    EXPECT_EQ(store::loadGame().seed, kSavedDeal);
  }

  Stack stack;
};

TEST_F(ForeignClick, PressThatEndsTheDemoBeginsNoNewGameWhenItIsReleased) {
  const Point newGame = middle(plaque(MenuEntry::NewGame));
  for (const int frames : {0, 1, 5}) {
    open({.kind = ScreenKind::Attract});
    press(newGame);
    ASSERT_EQ(Stack::top().kind, ScreenKind::Menu);
    stack.harness.frame();
    for (int i = 0; i < frames; ++i) stack.harness.frame();
    release(newGame);
    clickFast(newGame);
    expectMenuWithTheSavedGame();
  }
}

TEST_F(ForeignClick, DoubleClickOnTheSplashScreenBeginsNoNewGame) {
  const Point newGame = middle(plaque(MenuEntry::NewGame));
  ui::Game::instance().resetTo({});
  stack.harness.frame();
  stack.harness.frame();
  click(newGame);
  stack.harness.frame();
  clickFast(newGame);
  expectMenuWithTheSavedGame();
}

TEST_F(ForeignClick, DoubleClickOnExitBeginsNoNewGame) {
  const auto both = inBoth(screens::pausePanel(kSmallW, kSmallH).second, plaque(MenuEntry::NewGame));
  ASSERT_TRUE(both) << "they lie over one another";
  open({.kind = ScreenKind::Playing, .level = kSavedLevel, .deal = kSavedDeal});
  stack.harness.key(SDLK_SPACE);
  click(*both);
  ASSERT_EQ(Stack::top().kind, ScreenKind::Menu);
  stack.harness.frame();
  for (int i = 0; i < 4; ++i) clickFast(*both);
  expectMenuWithTheSavedGame();
}

TEST_F(ForeignClick, DoubleClickOnExitPlaysNoOtherLevel) {
  store::saveProgress({.currentLevel = store::kLastLevel, .totalSolves = 0});
  const ui::Rect exit = screens::pausePanel(kSmallW, kSmallH).second;
  std::optional<Point> both;
  for (int i = 0; i < screens::kLevelsPerPage && !both; ++i)
    both = inBoth(exit, screens::levelGrid(kSmallW, kSmallH).card(i, 0));
  ASSERT_TRUE(both) << "a card lies under it";
  open({.kind = ScreenKind::LevelSelect});
  open({.kind = ScreenKind::Playing, .level = kSavedLevel, .deal = kSavedDeal});
  stack.harness.key(SDLK_SPACE);
  doubleClickLeadsTo(ScreenKind::LevelSelect, *both);
}

TEST_F(ForeignClick, DoubleClickOnMainMenuOpensNothingThere) {
  const screens::SolvedLayout layout = screens::solvedLayout(kSmallW, kSmallH);
  const ui::Rect mainMenu = screens::solvedButtons(layout.buttons, layout.wide)[2];
  const auto both = inBoth(mainMenu, plaque(MenuEntry::About));
  ASSERT_TRUE(both) << "they lie over one another";
  open({.kind = ScreenKind::Solved, .level = 1, .deal = 1, .tiles = 36});
  doubleClickLeadsTo(ScreenKind::Menu, *both);
}

TEST_F(ForeignClick, ReleaseAfterASliderWasLeftByEscapeContinuesNothing) {
  const ui::CairoSurface paper = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(paper.get()));
  const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), kSmallW);
  ui::Rect slider = layout.music.slider;
  slider.y += screens::settingsTop(layout, screens::listView(kSmallW, kSmallH));
  for (const MenuEntry entry : {MenuEntry::Continue, MenuEntry::NewGame, MenuEntry::Settings}) {
    open({.kind = ScreenKind::Settings});
    press(middle(slider));
    stack.harness.key(SDLK_ESCAPE);
    ASSERT_EQ(Stack::top().kind, ScreenKind::Menu);
    stack.harness.frame();
    const Point target = middle(plaque(entry));
    stack.harness.moveTo(target.x, target.y);
    release(target);
    expectMenuWithTheSavedGame();
  }
}

TEST_F(ForeignClick, SlowerClickWorks) {
  const Point newGame = middle(plaque(MenuEntry::NewGame));
  open({.kind = ScreenKind::Attract});
  press(newGame);
  stack.harness.frame();
  release(newGame);
  click(newGame);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Playing);
  EXPECT_FALSE(store::loadGame().valid);
}

}  // namespace
