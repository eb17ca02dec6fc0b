// Each sound of the Playing screen is played once, at the right time.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "screens/sitting.h"
#include "support/heard.h"

namespace {

using audio::Sfx;
using support::heard;
using test::Sitting;
using testing::ElementsAre;
using testing::IsEmpty;

// The sounds played during `action`.
std::vector<Sfx> soundsOf(const std::function<void()>& action) {
  heard().clear();
  action();
  return heard();
}

// A table whose tiles have flown in.
struct SoundTable : Sitting {
  explicit SoundTable(const ui::GameState& descriptor = test::kFirstLevel) : Sitting(descriptor) {
    waitForIntro();
  }
  void becomeStuck() {
    take(test::lowestPair(game()));
    ASSERT_THAT(mj::availablePairs(game()), IsEmpty());
  }
  std::vector<Sfx> clicking(int tile) {
    return soundsOf([&] { click(tile); });
  }
  std::vector<Sfx> clicking(const ui::Rect& rect) {
    return soundsOf([&] {
      harness.click(rect.x + rect.w / 2, rect.y + rect.h / 2);
      harness.frame();
    });
  }
  std::vector<Sfx> key(int code) {
    return soundsOf([&] {
      harness.key(code);
      harness.frame();
    });
  }
  std::vector<Sfx> waiting(double seconds) {
    return soundsOf([&] { harness.run(seconds); });
  }
  screens::PlayingLayout layout = screens::playingLayout(640, 480);
};

TEST(TapSound, PlacesTheFirstTileAndClicksWhenItIsPutBack) {
  SoundTable table;
  const int tile = test::topTile(table.game());
  EXPECT_THAT(table.clicking(tile), ElementsAre(Sfx::Place));
  EXPECT_THAT(table.clicking(tile), ElementsAre(Sfx::Click));
  EXPECT_THAT(table.waiting(2), IsEmpty());
}

TEST(TapSound, PlacesBothOfAPairAndRemovesThemOnce) {
  SoundTable table;
  const auto [a, b] = mj::findHint(table.game());
  EXPECT_THAT(table.clicking(a), ElementsAre(Sfx::Place));
  EXPECT_THAT(table.clicking(b), ElementsAre(Sfx::Place));
  EXPECT_THAT(table.waiting(0.3), IsEmpty());
  EXPECT_THAT(table.waiting(0.05), ElementsAre(Sfx::Remove));
  EXPECT_THAT(table.waiting(3), IsEmpty());
}

TEST(TapSound, RefusesAnUnequalPairOnceAndForgetsItSilently) {
  SoundTable table;
  const auto [a, b] = test::unequalPair(table.game());
  table.click(a);
  EXPECT_THAT(table.clicking(b), ElementsAre(Sfx::NoNo));
  EXPECT_THAT(table.waiting(2), IsEmpty());
}

TEST(TapSound, OfAThirdTileFollowsThatOfThePairItTakes) {
  SoundTable table;
  const auto [a, b] = mj::findHint(table.game());
  const int other = test::unequalPair(table.game()).second;
  table.clickBoth({a, b});
  EXPECT_THAT(table.clicking(other), ElementsAre(Sfx::Remove, Sfx::Place));
  EXPECT_THAT(table.waiting(1), IsEmpty());
}

TEST(TapSound, AfterARefusalPlacesTheTile) {
  SoundTable table;
  const auto unequal = test::unequalPair(table.game());
  table.clickBoth(unequal);
  EXPECT_THAT(table.clicking(unequal.second), ElementsAre(Sfx::Place));
  EXPECT_THAT(table.waiting(1), IsEmpty());
}

TEST(TapSound, ComplainsAboutABlockedTile) {
  SoundTable table;
  EXPECT_THAT(table.clicking(test::blockedTile(table)), ElementsAre(Sfx::Error));
}

TEST(TapSound, IsNotHeardBesideTheTiles) {
  SoundTable table;
  EXPECT_THAT(table.clicking({table.layout.board.x, table.layout.board.y, 2, 2}), IsEmpty());
}

TEST(TapSound, IsNotHeardOfAPairThatAShuffleMadeUnequal) {
  SoundTable table;
  const auto [a, b] = mj::findHint(table.game());
  table.clickBoth({a, b});
  table.harness.key(SDLK_m);
  ASSERT_FALSE(mj::canMatch(table.game(), a, b));
  EXPECT_THAT(table.waiting(1), IsEmpty());
}

TEST(WinSound, FollowsTheLastRemovalAtOnceAndOnce) {
  SoundTable table;
  table.playUntilLeft(1);
  table.clickBoth(table.order.back());
  EXPECT_THAT(table.waiting(0.5), ElementsAre(Sfx::Remove, Sfx::WinGlare));
}

TEST(WinSound, IsTheLastOfTheTable) {
  SoundTable table;
  table.win();
  EXPECT_THAT(table.key(SDLK_h), IsEmpty());
  EXPECT_THAT(table.key(SDLK_m), IsEmpty());
  EXPECT_THAT(table.key(SDLK_u), IsEmpty());
  for (const ui::Rect& button : table.layout.buttons) EXPECT_THAT(table.clicking(button), IsEmpty());
  EXPECT_THAT(table.clicking(table.layout.pause), IsEmpty());
}

TEST(KeySound, OfAHint) {
  SoundTable table;
  EXPECT_THAT(table.key(SDLK_h), ElementsAre(Sfx::Hint));
  EXPECT_THAT(table.waiting(2), IsEmpty());
}

TEST(KeySound, OfAHintThatFindsNoPair) {
  SoundTable table(test::kSoonStuck);
  table.becomeStuck();
  EXPECT_THAT(table.key(SDLK_h), ElementsAre(Sfx::Error));
}

TEST(KeySound, OfShuffleUndoAndPauseIsAClick) {
  SoundTable table;
  table.take(mj::findHint(table.game()));
  for (const int code : {SDLK_m, SDLK_u, SDLK_SPACE, SDLK_SPACE})
    EXPECT_THAT(table.key(code), ElementsAre(Sfx::Click)) << code;
}

TEST(KeySound, IsNoneWhereNothingHappens) {
  Sitting flyingIn;
  EXPECT_THAT(soundsOf([&] {
                flyingIn.harness.key(SDLK_h);
                flyingIn.harness.key(SDLK_m);
              }),
              testing::Each(Sfx::Tile));
  SoundTable table;
  for (const int code : {SDLK_u, SDLK_PLUS, SDLK_EQUALS, SDLK_MINUS, SDLK_0, SDLK_x})
    EXPECT_THAT(table.key(code), IsEmpty()) << code;
  table.key(SDLK_SPACE);
  for (const int code : {SDLK_h, SDLK_m, SDLK_u, SDLK_PLUS}) EXPECT_THAT(table.key(code), IsEmpty()) << code;
}

TEST(ButtonSound, IsOneClickAndThenTheActionsOwn) {
  SoundTable table;
  table.take(mj::findHint(table.game()));
  EXPECT_THAT(table.clicking(table.layout.buttons[0]), ElementsAre(Sfx::Click, Sfx::Hint));
  for (const unsigned i : {1U, 2U, 3U, 4U, 5U})
    EXPECT_THAT(table.clicking(table.layout.buttons[i]), ElementsAre(Sfx::Click)) << i;
  EXPECT_THAT(table.clicking(table.layout.back), ElementsAre(Sfx::Click));
}

TEST(ButtonSound, IsNoneOfUndoWithoutHistory) {
  SoundTable table;
  EXPECT_THAT(table.clicking(table.layout.buttons[2]), IsEmpty());
}

TEST(ButtonSound, OfPauseResumeAndExitIsOneClick) {
  SoundTable table;
  const screens::PanelLayout panel = screens::pausePanel(640, 480);
  EXPECT_THAT(table.clicking(table.layout.pause), ElementsAre(Sfx::Click));
  EXPECT_THAT(table.clicking(panel.first), ElementsAre(Sfx::Click));
  EXPECT_THAT(table.clicking(table.layout.pause), ElementsAre(Sfx::Click));
  EXPECT_THAT(table.clicking(panel.second), ElementsAre(Sfx::Click));
}

TEST(ButtonSound, IsNoneUnderThePauseOverlay) {
  SoundTable table;
  table.key(SDLK_SPACE);
  for (const ui::Rect& button : table.layout.buttons) EXPECT_THAT(table.clicking(button), IsEmpty());
  EXPECT_THAT(table.clicking(table.layout.back), IsEmpty());
  EXPECT_THAT(table.clicking(table.layout.pause), IsEmpty());
}

TEST(ButtonSound, OfAnAnswerToNoMovesIsOneClick) {
  for (const bool undo : {true, false}) {
    SoundTable table(test::kSoonStuck);
    table.becomeStuck();
    const screens::PanelLayout panel = screens::noMovesPanel(640, table.layout.board, 2);
    EXPECT_THAT(table.clicking(undo ? panel.first : panel.second), ElementsAre(Sfx::Click));
  }
}

TEST(ReadySound, EndsTheIntroOnce) {
  Sitting sitting;
  const double left = sitting.screen.effects().introEnd - sitting.harness.time();
  sitting.harness.frame(left - 0.001);
  EXPECT_THAT(soundsOf([&] { sitting.harness.frame(0.002); }), ElementsAre(Sfx::Ready));
  EXPECT_THAT(soundsOf([&] { sitting.harness.run(3); }), IsEmpty());
}

// The times of the landing sounds, from the next frame to one second after the fly-in.
std::vector<double> landings(Sitting& sitting, double dt) {
  std::vector<double> times;
  while (sitting.harness.time() < sitting.screen.effects().introEnd + 1) {
    const auto count =
        testing::Value(soundsOf([&] { sitting.harness.frame(dt); }), testing::Contains(Sfx::Tile));
    if (!count) continue;
    EXPECT_THAT(heard(), ElementsAre(Sfx::Tile));
    times.push_back(sitting.harness.time());
  }
  return times;
}

TEST(LandingSound, IsHeardOfEachTileOfASmallDeal) {
  Sitting sitting;
  // The first tile's sound came in the very first frame, before `landings` listens.
  EXPECT_EQ(landings(sitting, support::ScreenHarness::kFrameTime).size(), sitting.game().slots.size() - 1);
}

TEST(LandingSound, OfALargeDealPattersAtMostTwentyTimesASecond) {
  for (const double dt : {1.0 / 64, 1.0 / 16}) {
    Sitting sitting({.kind = ui::ScreenKind::Playing, .level = 91, .deal = 91});
    const std::vector<double> times = landings(sitting, dt);
    ASSERT_GT(times.size(), 50U);
    EXPECT_LT(times.size(), sitting.game().slots.size());
    for (std::size_t i = 1; i < times.size(); ++i) EXPECT_GE(times[i] - times[i - 1], 0.05) << i;
    EXPECT_LT(times.back(), sitting.screen.effects().introEnd);
  }
}

TEST(LandingSound, IsSilentInAPause) {
  Sitting sitting;
  sitting.harness.key(SDLK_SPACE);
  EXPECT_THAT(landings(sitting, support::ScreenHarness::kFrameTime), IsEmpty());
}

TEST(ResumedGame, BeginsSilently) {
  const support::DataHome data;
  {
    const Sitting left(test::kFirstLevel, test::Files::Kept);
  }
  EXPECT_THAT(soundsOf([] {
                Sitting sitting(test::kFirstLevel, test::Files::Kept);
                sitting.harness.run(20);
              }),
              IsEmpty());
}

}  // namespace
