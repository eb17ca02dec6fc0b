#include "app/app.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/fake_screens.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::ScreenKind;

constexpr ui::GameState kSplash = {};
constexpr ui::GameState kPlaying = {.kind = ScreenKind::Playing, .level = 7, .deal = 4000000000};
constexpr ui::GameState kSolved = {.kind = ScreenKind::Solved,
                                   .level = 7,
                                   .deal = 4000000000,
                                   .timeMs = 5000000000,
                                   .tiles = 36,
                                   .hints = 2,
                                   .shuffles = 1};

std::vector<ScreenKind> kindsOf(const ui::Game& game) {
  std::vector<ScreenKind> kinds;
  for (const ui::GameState& descriptor : game.descriptors()) kinds.push_back(descriptor.kind);
  return kinds;
}

class ScreenStack : public testing::Test {
 protected:
  ScreenStack() { fake::script() = {}; }
  ~ScreenStack() override { fake::script().onUpdate = nullptr; }

  // One frame in which the live screen does this.
  void frame(const std::function<void()>& act = {}) {
    fake::script().onUpdate = [&act](ui::Ctx&) {
      if (act) act();
    };
    game.update(ctx);
  }
  // The events since the last call.
  static std::vector<std::string> events() { return std::exchange(fake::script().events, {}); }

  ui::Ctx ctx;
  ui::Game game;
};

TEST_F(ScreenStack, BeginsWithTheSplashScreen) {
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash));
  EXPECT_THAT(events(), IsEmpty());
  frame();
  EXPECT_THAT(events(), ElementsAre("Splash made", "Splash begins", "Splash ends"));
}

TEST_F(ScreenStack, KeepsTheScreenWhileNothingIsAskedFor) {
  frame();
  events();
  frame();
  EXPECT_THAT(events(), ElementsAre("Splash begins", "Splash ends"));
}

TEST_F(ScreenStack, HandsTheFrameToTheScreen) {
  ctx.time = 12.5;
  double seen = 0;
  fake::script().onUpdate = [&seen](ui::Ctx& frameCtx) {
    seen = frameCtx.time;
    frameCtx.quit = true;
  };
  game.update(ctx);
  EXPECT_EQ(seen, 12.5);
  EXPECT_TRUE(ctx.quit);
}

TEST_F(ScreenStack, ScreenIsDestroyedAfterItsUpdateAndTheNextMadeInTheNextFrame) {
  frame([this] { game.push(kPlaying); });
  EXPECT_THAT(events(), ElementsAre("Splash made", "Splash begins", "Splash ends", "Splash destroyed"));
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash, ScreenKind::Playing));
  frame();
  EXPECT_THAT(events(), ElementsAre("Playing made", "Playing begins", "Playing ends"));
}

TEST_F(ScreenStack, RequestWaitsForTheEndOfTheUpdate) {
  frame([this] {
    game.push(kPlaying);
    EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash));
  });
}

TEST_F(ScreenStack, PlayingAndSolvedAreGivenTheirDescriptor) {
  frame([this] { game.replace(kPlaying); });
  frame([this] { game.replace(kSolved); });
  EXPECT_EQ(fake::script().descriptor.level, 7);
  EXPECT_EQ(fake::script().descriptor.deal, 4000000000U);
  frame();
  EXPECT_EQ(fake::script().descriptor.timeMs, 5000000000);
  EXPECT_EQ(fake::script().descriptor.tiles, 36);
  EXPECT_EQ(fake::script().descriptor.hints, 2);
  EXPECT_EQ(fake::script().descriptor.shuffles, 1);
}

TEST_F(ScreenStack, PushThenReplaceInOneUpdateOnlyReplaces) {
  frame([this] {
    game.push(kPlaying);
    game.replace(kSolved);
  });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Solved));
}

TEST_F(ScreenStack, LastRequestOfAFrameWins) {
  frame([this] { game.push(kPlaying); });
  frame([this] {
    game.pop();
    game.resetTo(kPlaying);
    game.push(kSolved);
  });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash, ScreenKind::Playing, ScreenKind::Solved));
  frame([this] {
    game.replace(kPlaying);
    game.pop();
  });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash, ScreenKind::Playing));
}

TEST_F(ScreenStack, RequestIsCarriedOutOnce) {
  frame([this] { game.push(kPlaying); });
  frame();
  frame();
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash, ScreenKind::Playing));
}

TEST_F(ScreenStack, PopReturnsToAFreshScreen) {
  frame([this] { game.push(kPlaying); });
  frame([this] { game.pop(); });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash));
  events();
  frame();
  EXPECT_THAT(events(), ElementsAre("Splash made", "Splash begins", "Splash ends"));
}

TEST_F(ScreenStack, PopOfTheLastDescriptorBuildsItsScreenAnew) {
  frame([this] { game.pop(); });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash));
  frame();
  EXPECT_THAT(events(), ElementsAre("Splash made", "Splash begins", "Splash ends", "Splash destroyed",
                                    "Splash made", "Splash begins", "Splash ends"));
}

TEST_F(ScreenStack, ReplaceByAnEqualDescriptorBuildsTheScreenAnew) {
  frame([this] { game.replace(kSplash); });
  frame();
  EXPECT_THAT(events(), ElementsAre("Splash made", "Splash begins", "Splash ends", "Splash destroyed",
                                    "Splash made", "Splash begins", "Splash ends"));
}

TEST_F(ScreenStack, ResetFromADeepStackLeavesOneDescriptor) {
  for (int i = 0; i < 5; ++i) {
    frame([this] { game.push(kPlaying); });
  }
  ASSERT_EQ(game.descriptors().size(), 6U);
  frame([this] { game.resetTo(kSolved); });
  EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Solved));
}

TEST_F(ScreenStack, UnknownKindShowsNothingAndTheNextRequestIsStillCarriedOut) {
  for (const int kind : {-1, 10, 1000000}) {
    frame([&] { game.push({.kind = static_cast<ScreenKind>(kind)}); });
    events();
    frame();
    frame();
    EXPECT_THAT(events(), IsEmpty()) << kind;
    game.pop();
    frame();
    EXPECT_THAT(kindsOf(game), ElementsAre(ScreenKind::Splash)) << kind;
  }
}

TEST_F(ScreenStack, EndsWithItsScreen) {
  {
    ui::Game shortLived;
    fake::script().onUpdate = nullptr;
    shortLived.update(ctx);
    events();
  }
  EXPECT_THAT(events(), ElementsAre("Splash destroyed"));
}

TEST(ProgramStack, IsOneForTheProcess) { EXPECT_EQ(&ui::Game::instance(), &ui::Game::instance()); }

TEST(ProgramSettings, AreChangedInPlace) {
  ui::Game::settings().windowW = 1234;
  EXPECT_EQ(ui::Game::settings().windowW, 1234);
  ui::Game::settings() = {};
}

}  // namespace
