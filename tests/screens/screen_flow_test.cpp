// How the screens follow one another on the program's stack.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/levels.h"
#include "screens/environment.h"
#include "screens/menu_layout.h"
#include "screens/playing.h"
#include "screens/stack.h"

namespace {

using test::Environment;
using test::Shows;
using test::Stack;
using ui::ScreenKind;

constexpr ui::GameState kSplash = {};

ui::GameState playing(int level, std::uint32_t deal) {
  return {.kind = ScreenKind::Playing, .level = level, .deal = deal};
}

// Skips the splash screen and continues from the menu.
void goOn(Stack& stack) {
  stack.harness.key(SDLK_SPACE);
  const ui::Rect plaque = screens::menuLayout(640, 480).plaque(screens::MenuEntry::Continue);
  stack.harness.click(plaque.x + plaque.w / 2, plaque.y + plaque.h / 2);
}

TEST(ScreenFlow, LeadsFromTheSplashScreenThroughTheMenuToTheFirstLevelAndBack) {
  Stack stack(kSplash);
  stack.harness.key(SDLK_SPACE);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  goOn(stack);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
  EXPECT_EQ(Stack::depth(), 2U);
  stack.harness.key(SDLK_ESCAPE);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(ScreenFlow, EscapeReturnsToTheScreenBelow) {
  for (const bool paused : {false, true}) {
    Stack stack(playing(1, 1));
    ui::Game::instance().push(playing(2, 2));
    stack.harness.frame();
    ASSERT_EQ(Stack::depth(), 2U);
    if (paused) stack.harness.key(SDLK_SPACE);
    stack.harness.key(SDLK_ESCAPE);
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
    EXPECT_EQ(Stack::depth(), 1U);
  }
}

// Plays by hand on the program's stack. Keeps its own copy of the game to know which tiles lie where.
class Hand {
 public:
  explicit Hand(const ui::GameState& descriptor)
      : stack(descriptor),
        game(mj::createGame(mj::levelToConfig(descriptor.level).slots, descriptor.deal)),
        order(mj::createDeal(game.slots, descriptor.deal).order) {
    stack.harness.frame();
    stack.harness.frame(20);
    introEnded = stack.harness.time();
  }

  void hint() {
    stack.harness.key(SDLK_h);
    ++game.hints;
  }
  void shuffle() {
    stack.harness.key(SDLK_m);
    order = mj::reshufflePresent(game.slots, game.faces, game.rng).order;
    mj::shuffleBoard(game);
  }
  void takeAll() {
    for (const auto& [a, b] : order) {
      click(a);
      click(b);
      mj::applyMatch(game, a, b);
      stack.harness.run(0.3125, 0.0625);
      stack.harness.frame();
    }
  }
  // The first frame after the intro counts only a tenth of a second, the longest a frame can count.
  double playTime() const { return 0.1 + stack.harness.time() - introEnded; }

  Stack stack;

 private:
  void click(int tile) {
    const auto p = support::visiblePoint(game, screens::playingLayout(640, 480).board, {}, tile);
    ASSERT_TRUE(p);
    stack.harness.click(p->x, p->y);
  }

  mj::GameState game;
  std::vector<mj::SlotPair> order;
  double introEnded;
};

TEST(WinFade, GivesWayToTheSolvedScreen) {
  Hand hand(playing(1, 1));
  hand.takeAll();
  hand.stack.harness.frame(0.615);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
  hand.stack.harness.frame(0.002);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Solved, 1, 1));
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(WinFade, TellsTheSolvedScreenHowTheGameWent) {
  Hand hand(playing(3, 4000000000));
  hand.hint();
  hand.shuffle();
  hand.hint();
  hand.takeAll();
  const double played = hand.playTime();
  hand.stack.harness.frame(0.617);
  ASSERT_THAT(Stack::top(), Shows(ScreenKind::Solved, 3, 4000000000));
  EXPECT_EQ(Stack::top().timeMs, std::llround(std::floor(1000 * played)));
  EXPECT_EQ(Stack::top().tiles, 36);
  EXPECT_EQ(Stack::top().hints, 2);
  EXPECT_EQ(Stack::top().shuffles, 1);
}

TEST(AutoplayFlow, SolvesTheFirstLevelAndShowsTheResult) {
  const Environment environment("VESKARA_AUTOPLAY", "0.02");
  Stack stack(kSplash);
  goOn(stack);
  std::vector<ScreenKind> seen;
  for (int frames = 0; frames < 1000; ++frames) {
    if (seen.empty() || seen.back() != Stack::top().kind) seen.push_back(Stack::top().kind);
    stack.harness.frame(0.05);
  }
  EXPECT_THAT(seen, testing::ElementsAre(ScreenKind::Playing, ScreenKind::Solved));
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Solved, 1, 1));
}

class AutoplayLevels : public testing::TestWithParam<int> {};

TEST_P(AutoplayLevels, AreSolved) {
  const Environment environment("VESKARA_AUTOPLAY", "0.02");
  Stack stack(playing(GetParam(), static_cast<std::uint32_t>(GetParam())), 320, 240);
  for (int frames = 0; frames < 5000 && Stack::top().kind == ScreenKind::Playing; ++frames) {
    stack.harness.frame(0.1);
  }
  EXPECT_EQ(Stack::top().kind, ScreenKind::Solved);
  EXPECT_EQ(Stack::top().tiles, mj::levelToConfig(GetParam()).tiles);
  EXPECT_EQ(Stack::top().hints, 0);
}

INSTANTIATE_TEST_SUITE_P(Level, AutoplayLevels,
                         testing::Values(2, 9, 11, 20, 29, 38, 45, 56, 67, 78, 89, 91, 100),
                         [](const auto& param) { return std::to_string(param.param); });

}  // namespace
