#include "app/app.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "app/fake_screens.h"
#include "support/data_home.h"

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

  // Runs one frame in which the live screen calls `act`.
  void frame(const std::function<void()>& act = {}) {
    fake::script().onUpdate = [&act](ui::Ctx&) {
      if (act) act();
    };
    game.update(ctx);
  }
  // The events since the last call.
  static std::vector<std::string> events() { return std::exchange(fake::script().events, {}); }

  ui::Ctx ctx;
  ui::Game game{fake::make};
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

TEST_F(ScreenStack, MakesEachScreenFromItsDescriptor) {
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
    ui::Game shortLived(fake::make);
    fake::script().onUpdate = nullptr;
    shortLived.update(ctx);
    events();
  }
  EXPECT_THAT(events(), ElementsAre("Splash destroyed"));
}

// --- mouse buttons across a change of screens ---

// Sends button input to the stack of screens. Each call is one frame.
class Buttons : public ScreenStack {
 protected:
  Buttons() {
    change();
    screenSees();
  }

  // Runs a frame with this input and returns what the live screen sees of it.
  ui::Input screenSees(const ui::Input& in = {}) {
    ui::Input seen;
    ctx.in = in;
    fake::script().onUpdate = [&seen](const ui::Ctx& frameCtx) { seen = frameCtx.in; };
    game.update(ctx);
    return seen;
  }
  // The live screen requests another one, whose first frame is the next frame.
  void change(const ui::Input& in = {}) {
    ctx.in = in;
    fake::script().onUpdate = [this](ui::Ctx&) { game.replace(kPlaying); };
    game.update(ctx);
  }

  static ui::Input held() { return with({.down = true}); }
  static ui::Input press() { return with({.down = true, .pressed = true}); }
  static ui::Input release() { return with({.clicked = true}); }
  static ui::Input fastRelease() { return with({.clicked = true, .doubleClicked = true}); }
  static ui::Input click() { return with({.pressed = true, .clicked = true}); }
  static ui::Input fastClick() { return with({.pressed = true, .clicked = true, .doubleClicked = true}); }

 private:
  struct Flags {
    bool down = false;
    bool pressed = false;
    bool clicked = false;
    bool doubleClicked = false;
  };
  static ui::Input with(const Flags& flags) {
    ui::Input in;
    in.down = flags.down;
    in.pressed = flags.pressed;
    in.clicked = flags.clicked;
    in.doubleClicked = flags.doubleClicked;
    return in;
  }
};

bool isQuiet(const ui::Input& in) {
  return !in.down && !in.pressed && !in.clicked && !in.doubleClicked && !in.rightClicked;
}

TEST_F(Buttons, ReleaseOfAButtonPressedOnAnEarlierScreenIsNotHeardOf) {
  change(press());
  EXPECT_TRUE(isQuiet(screenSees(held())));
  EXPECT_TRUE(isQuiet(screenSees(held())));
  EXPECT_TRUE(isQuiet(screenSees(release())));
}

TEST_F(Buttons, ReleaseInTheFirstFrameIsNotHeardOf) {
  change(press());
  EXPECT_TRUE(isQuiet(screenSees(release())));
}

TEST_F(Buttons, EveryChangeOfTheStackCounts) {
  const std::function<void()> changes[] = {[this] { game.push(kSolved); }, [this] { game.pop(); },
                                           [this] { game.replace(kSolved); },
                                           [this] { game.resetTo(kSolved); }, [this] { game.pop(); }};
  for (const auto& ask : changes) {
    screenSees();
    screenSees(press());
    frame(ask);
    EXPECT_TRUE(isQuiet(screenSees(held())));
    EXPECT_TRUE(isQuiet(screenSees(release())));
  }
  EXPECT_EQ(game.descriptors().size(), 1U) << "the last screen was rebuilt, not popped";
}

TEST_F(Buttons, ButtonStaysForeignOverSeveralScreens) {
  change(press());
  change(held());
  change(held());
  screenSees(held());
  EXPECT_TRUE(isQuiet(screenSees(held())));
  EXPECT_TRUE(isQuiet(screenSees(release())));
}

TEST_F(Buttons, WhatArrivesBeforeTheFirstFrameIsNotHeardOf) {
  for (const ui::Input& in : {press(), release(), click(), fastClick()}) {
    change();
    EXPECT_TRUE(isQuiet(screenSees(in)));
    screenSees(release());
  }
  change();
  ui::Input right;
  right.rightClicked = true;
  EXPECT_TRUE(isQuiet(screenSees(right)));
}

TEST_F(Buttons, PressBeforeTheFirstFrameIsNotHeardOfLaterEither) {
  change();
  screenSees(press());
  EXPECT_TRUE(isQuiet(screenSees(held())));
  EXPECT_TRUE(isQuiet(screenSees(release())));
}

TEST_F(Buttons, ReleaseWithoutAPressIsNotHeardOf) { EXPECT_TRUE(isQuiet(screenSees(release()))); }

TEST_F(Buttons, OtherInputOfTheFirstFrameIsHeardOf) {
  change();
  ui::Input in = click();
  in.mx = 30;
  in.wheel = 2;
  in.keys = {27};
  const ui::Input seen = screenSees(in);
  EXPECT_EQ(seen.mx, 30);
  EXPECT_EQ(seen.wheel, 2);
  EXPECT_THAT(seen.keys, ElementsAre(27));
}

TEST_F(Buttons, PressOnTheNewScreenCountsAsEver) {
  change(click());
  screenSees();
  EXPECT_TRUE(screenSees(press()).pressed);
  EXPECT_TRUE(screenSees(held()).down);
  const ui::Input seen = screenSees(release());
  EXPECT_TRUE(seen.clicked);
  EXPECT_FALSE(seen.down);
}

TEST_F(Buttons, NewPressInTheFrameOfTheOldReleaseCounts) {
  change(press());
  screenSees(held());
  ui::Input in = press();
  in.clicked = true;
  const ui::Input seen = screenSees(in);
  EXPECT_FALSE(seen.clicked) << "the release belonged to the old screen";
  EXPECT_TRUE(seen.pressed && seen.down);
  EXPECT_TRUE(screenSees(release()).clicked);
}

TEST_F(Buttons, SecondClickOfADoubleClickThatChangedTheScreenWorksNothing) {
  screenSees(press());
  change(release());
  screenSees();
  EXPECT_FALSE(screenSees(press()).clicked);
  const ui::Input seen = screenSees(fastRelease());
  EXPECT_FALSE(seen.clicked || seen.doubleClicked);
}

TEST_F(Buttons, SecondClickAfterAPressThatChangedTheScreenWorksNothing) {
  change(press());
  screenSees(release());
  screenSees();
  EXPECT_FALSE(screenSees(fastClick()).clicked);
}

TEST_F(Buttons, ClicksThatFollowAsFastBelongToTheSameRun) {
  change(click());
  screenSees();
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(screenSees(fastClick()).clicked);
  EXPECT_TRUE(screenSees(click()).clicked);
}

TEST_F(Buttons, FastClickAfterOneThatLedNowhereWorks) {
  screenSees(click());
  change();  // without a mouse button
  screenSees();
  EXPECT_TRUE(screenSees(fastClick()).clicked);
}

TEST_F(Buttons, FastClicksAcrossTwoChangesWorkNothing) {
  change(click());
  change();
  screenSees();
  EXPECT_FALSE(screenSees(fastClick()).clicked);
}

TEST_F(Buttons, ImpatientClicksWorkASecondAfterTheScreenCameUp) {
  change(click());
  screenSees();
  const double shown = ctx.time;
  for (const double age : {0.2, 0.4, 0.6, 0.8, 0.99}) {
    ctx.time = shown + age;
    EXPECT_FALSE(screenSees(fastClick()).clicked) << age;
  }
  ctx.time = shown + 1.1;
  EXPECT_TRUE(screenSees(fastClick()).clicked);
}

TEST_F(Buttons, SlowerClickWorks) {
  change(click());
  screenSees();
  EXPECT_TRUE(screenSees(click()).clicked);
}

TEST_F(Buttons, DoubleClickOnOneScreenIsHeardOf) {
  screenSees(click());
  const ui::Input seen = screenSees(fastClick());
  EXPECT_TRUE(seen.clicked && seen.doubleClicked);
}

// Tests which key presses reach a screen.
class Presses : public Buttons {
 protected:
  // Runs one frame, `after` seconds after the last, with this key pressed. Returns whether the screen saw it
  // as fresh.
  bool hears(int key, double after) {
    ctx.time += after;
    ui::Input in;
    in.keys = in.freshKeys = {key};
    heard = screenSees(in);
    return heard.hasFreshKey(key);
  }
  ui::Input heard;
  void changeByEnter() {
    ctx.time += 10;
    ui::Input in;
    in.keys = in.freshKeys = {SDLK_RETURN};
    change(in);
  }
};

TEST_F(Presses, WorkTheScreenThatIsSeen) {
  screenSees();
  for (const int key : {SDLK_RETURN, SDLK_KP_ENTER, SDLK_SPACE}) EXPECT_TRUE(hears(key, 0.1));
}

TEST_F(Presses, BeforeTheFirstFrameWorkNothing) {
  change();
  EXPECT_FALSE(hears(SDLK_RETURN, 10));
  EXPECT_THAT(heard.keys, ElementsAre(SDLK_RETURN)) << "but the key was pressed";
}

TEST_F(Presses, ThatFollowFastOnOneThatChangedTheScreenWorkNothing) {
  changeByEnter();
  screenSees();
  for (int i = 0; i < 3; ++i) EXPECT_FALSE(hears(SDLK_RETURN, 0.2));
  EXPECT_TRUE(hears(SDLK_RETURN, 0.31));
  EXPECT_TRUE(hears(SDLK_RETURN, 0.1)) << "after one of this screen's own";
}

TEST_F(Presses, ImpatientOnesWorkASecondAfterTheScreenCameUp) {
  changeByEnter();
  screenSees();
  for (int i = 0; i < 4; ++i) EXPECT_FALSE(hears(SDLK_SPACE, 0.24));
  EXPECT_TRUE(hears(SDLK_SPACE, 0.24));
}

TEST_F(Presses, AfterAChangeThatNoPressMadeWork) {
  change();
  screenSees();
  EXPECT_TRUE(hears(SDLK_RETURN, 0.01));
}

TEST(ProgramStack, IsOneForTheProcess) { EXPECT_EQ(&ui::Game::instance(), &ui::Game::instance()); }

TEST(ProgramSettings, AreChangedInPlace) {
  const support::DataHome data;
  ui::Game::settings().windowW = 1234;
  EXPECT_EQ(ui::Game::settings().windowW, 1234);
  ui::Game::settings() = {};
}

}  // namespace
