// What the Playing screen shows: zoom, pan and drag, the flash before the game and the fade after it.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "screens/playing.h"
#include "screens/sitting.h"
#include "support/picture.h"

namespace {

using support::Point;
using test::Sitting;

TEST(PlayingView, BoardLiesInItsPlaceWhateverTheWindowsSize) {
  Sitting sitting(test::kFirstLevel, support::Drawing::Textures, 1000, 700);
  sitting.waitForIntro();
  sitting.harness.resize(640, 480);
  sitting.harness.frame();
  const ui::Rect board = screens::playingLayout(640, 480).board;
  EXPECT_EQ(sitting.screen.boardRect().w, board.w);
  EXPECT_EQ(sitting.screen.boardRect().h, board.h);
  sitting.click(test::topTile(sitting.game()));
  EXPECT_EQ(sitting.game().selected, test::topTile(sitting.game()));
}

double zoomAfter(std::initializer_list<int> keys) {
  Sitting sitting;
  sitting.waitForIntro();
  for (const int code : keys) sitting.harness.key(code);
  return sitting.shown().zoom;
}

TEST(Zoom, KeysStepBySixTenths) {
  EXPECT_DOUBLE_EQ(zoomAfter({}), 1);
  EXPECT_DOUBLE_EQ(zoomAfter({SDLK_PLUS}), 1.6);
  EXPECT_DOUBLE_EQ(zoomAfter({SDLK_EQUALS}), 1.6);
  EXPECT_DOUBLE_EQ(zoomAfter({SDLK_PLUS, SDLK_PLUS}), 2.2);
  EXPECT_DOUBLE_EQ(zoomAfter({SDLK_PLUS, SDLK_PLUS, SDLK_MINUS}), 1.6);
}

TEST(Zoom, ZeroKeyResetsIt) { EXPECT_EQ(zoomAfter({SDLK_PLUS, SDLK_PLUS, SDLK_0}), 1); }

TEST(Zoom, StaysBetweenOneAndThree) {
  EXPECT_EQ(zoomAfter({SDLK_MINUS}), 1);
  EXPECT_EQ(zoomAfter({SDLK_PLUS, SDLK_MINUS, SDLK_MINUS}), 1);
  EXPECT_EQ(zoomAfter({SDLK_PLUS, SDLK_PLUS, SDLK_PLUS, SDLK_PLUS}), 3);
  EXPECT_DOUBLE_EQ(zoomAfter({SDLK_PLUS, SDLK_PLUS, SDLK_PLUS, SDLK_PLUS, SDLK_PLUS, SDLK_MINUS}), 2.4);
}

TEST(Zoom, WheelOverTheBoardStepsByAQuarter) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.wheel(320, 240, 1);
  EXPECT_EQ(sitting.shown().zoom, 1.25);
  sitting.harness.wheel(320, 240, 3);
  EXPECT_EQ(sitting.shown().zoom, 2);
  sitting.harness.wheel(320, 240, -2);
  EXPECT_EQ(sitting.shown().zoom, 1.5);
  sitting.harness.wheel(320, 240, 100);
  EXPECT_EQ(sitting.shown().zoom, 3);
  sitting.harness.wheel(320, 240, -100);
  EXPECT_EQ(sitting.shown().zoom, 1);
}

// The point of the board shown at window position (x, y).
Point under(Sitting& sitting, double x, double y) {
  const ui::BoardView view(sitting.screen.boardRect(), sitting.shown());
  return {view.boardX(x), view.boardY(y)};
}

TEST(Zoom, ByTheWheelKeepsThePointUnderThePointer) {
  Sitting sitting;
  sitting.waitForIntro();
  const auto expectKept = [&](double x, double y, double steps) {
    const Point before = under(sitting, x, y);
    sitting.harness.wheel(x, y, steps);
    const Point after = under(sitting, x, y);
    EXPECT_NEAR(after.x, before.x, 1e-9);
    EXPECT_NEAR(after.y, before.y, 1e-9);
  };
  expectKept(200, 150, 1);
  EXPECT_NE(sitting.shown().panX, 0);
  expectKept(200, 150, 3);
  expectKept(500, 300, 2);
  expectKept(210, 160, 100);
  expectKept(320, 240, -1);
}

TEST(Zoom, ByTheWheelEndsWithTheBoardInItsPlace) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.wheel(30, sitting.screen.boardRect().y + 3, 8);
  sitting.harness.wheel(600, 400, -6);
  const ui::Rect board = sitting.screen.boardRect();
  const ui::BoardOpts shown = sitting.shown();
  EXPECT_EQ(shown.zoom, 1.5);
  EXPECT_NEAR(shown.panX, board.w / 4, 1e-9) << "the board's left edge leaves its place";
  EXPECT_NEAR(shown.panY, board.h / 4, 1e-9);
  sitting.harness.wheel(600, 400, -6);
  EXPECT_EQ(sitting.shown().panX, 0);
  EXPECT_EQ(sitting.shown().panY, 0);
}

TEST(Zoom, ByTheWheelWhileTheBoardIsHeldGoesOnFromThere) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.screen.setZoom(2);
  sitting.harness.press(200, 200);
  sitting.harness.moveTo(220, 200);
  sitting.harness.wheel(220, 200, 2);
  const Point held = under(sitting, 220, 200);
  sitting.harness.moveTo(230, 210);
  const Point after = under(sitting, 230, 210);
  EXPECT_NEAR(after.x, held.x, 1e-9);
  EXPECT_NEAR(after.y, held.y, 1e-9);
  sitting.harness.release(230, 210);
  EXPECT_EQ(sitting.game().selected, -1) << "it is still a drag";
}

TEST(Zoom, ByKeysIsAboutTheCentre) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.moveTo(200, 150);
  sitting.harness.key(SDLK_PLUS);
  EXPECT_EQ(sitting.shown().panX, 0);
  EXPECT_EQ(sitting.shown().panY, 0);
}

TEST(Zoom, WheelBesideTheBoardDoesNothing) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.wheel(320, sitting.screen.boardRect().y - 1, 1);
  sitting.harness.wheel(320, sitting.screen.boardRect().y + sitting.screen.boardRect().h, 1);
  EXPECT_EQ(sitting.shown().zoom, 1);
}

TEST(Zoom, TilesAreTappedWhereTheyAreShown) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_PLUS);
  sitting.harness.drag(300, 240, 350, 220);
  sitting.harness.frame();
  sitting.take(mj::findHint(sitting.game()));
  EXPECT_EQ(sitting.game().removed, 2);
}

// A board at this zoom, and how far it can be panned.
struct Zoomed : Sitting {
  explicit Zoomed(double zoom) {
    waitForIntro();
    screen.setZoom(zoom);
    harness.frame();
    boundX = screen.boardRect().w * (zoom - 1) / 2;
    boundY = screen.boardRect().h * (zoom - 1) / 2;
  }
  // Drags repeatedly, enough to reach the limit of the pan.
  void dragFar(double dx, double dy) {
    for (int i = 0; i < 6; ++i) harness.drag(320, 240, 320 + dx, 240 + dy);
  }
  void expectPan(double x, double y) {
    EXPECT_NEAR(shown().panX, x, 1e-9);
    EXPECT_NEAR(shown().panY, y, 1e-9);
  }

  double boundX = 0;
  double boundY = 0;
};

TEST(Pan, FollowsTheMouseFromThePress) {
  Zoomed table(2);
  table.harness.press(320, 240);
  table.harness.moveTo(330, 245);
  table.expectPan(10, 5);
  table.harness.moveTo(300, 250);
  table.expectPan(-20, 10);
  table.harness.release(300, 250);
  table.expectPan(-20, 10);
}

TEST(Pan, GoesOnFromWhereItWas) {
  Zoomed table(2);
  table.harness.drag(320, 240, 350, 240);
  table.harness.drag(200, 200, 230, 210);
  table.expectPan(60, 10);
}

TEST(Pan, EndsWhereTheZoomedBoardEnds) {
  for (const double zoom : {1.25, 2.0, 3.0}) {
    Zoomed table(zoom);
    table.dragFar(300, 200);
    table.expectPan(table.boundX, table.boundY);
    table.dragFar(-300, -200);
    table.expectPan(-table.boundX, -table.boundY);
  }
}

TEST(Pan, IsBoundAnewWhenZoomedOut) {
  Zoomed table(3);
  table.dragFar(300, 200);
  table.screen.setZoom(1.5);
  table.expectPan(table.boundX / 4, table.boundY / 4);
  table.harness.key(SDLK_0);
  table.expectPan(0, 0);
  table.screen.setZoom(3);
  table.expectPan(0, 0);
}

TEST(Pan, IsBoundAnewWhenTheWindowShrinks) {
  Sitting sitting(test::kFirstLevel, support::Drawing::Textures, 1200, 900);
  sitting.waitForIntro();
  sitting.screen.setZoom(2);
  for (int i = 0; i < 4; ++i) sitting.harness.drag(500, 400, 900, 700);
  sitting.harness.resize(640, 480);
  const ui::BoardOpts shown = sitting.shown();
  EXPECT_DOUBLE_EQ(shown.panX, screens::playingLayout(640, 480).board.w / 2);
  EXPECT_DOUBLE_EQ(shown.panY, screens::playingLayout(640, 480).board.h / 2);
}

TEST(Pan, OfAZoomedBoardInAWindowTooSmallForAnyDoesNotEndTheGame) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.key(SDLK_PLUS);
  sitting.harness.resize(1, 1);
  sitting.harness.frame();
  sitting.harness.resize(640, 480);
  EXPECT_DOUBLE_EQ(sitting.shown().zoom, 1.6);
}

TEST(Pan, StaysAtZeroWithoutZoom) {
  Sitting sitting;
  sitting.waitForIntro();
  sitting.harness.drag(320, 240, 400, 300);
  EXPECT_EQ(sitting.shown().panX, 0);
  EXPECT_EQ(sitting.shown().panY, 0);
}

TEST(Drag, OfSixPixelsIsStillATap) {
  Zoomed table(1.6);
  const int tile = test::topTile(table.game());
  const Point p = table.at(tile);
  table.harness.drag(p.x, p.y, p.x + 6, p.y);
  EXPECT_EQ(table.game().selected, tile);
  table.expectPan(0, 0);
}

TEST(Drag, OfMoreThanSixPixelsIsNone) {
  Zoomed table(1.6);
  const Point p = table.at(test::topTile(table.game()));
  table.harness.drag(p.x, p.y, p.x + 6.5, p.y);
  EXPECT_EQ(table.game().selected, -1);
  table.expectPan(6.5, 0);
}

TEST(Drag, ThatComesBackToItsStartIsNoTapEither) {
  Zoomed table(1.6);
  const Point p = table.at(test::topTile(table.game()));
  table.harness.press(p.x, p.y);
  table.harness.moveTo(p.x + 40, p.y);
  table.harness.moveTo(p.x, p.y);
  table.harness.release(p.x, p.y);
  EXPECT_EQ(table.game().selected, -1);
  table.expectPan(0, 0);
}

TEST(Drag, IsForgottenByTheNextTap) {
  Zoomed table(1.6);
  table.harness.drag(320, 240, 350, 240);
  table.harness.frame();
  const int tile = test::topTile(table.game());
  table.click(tile);
  EXPECT_EQ(table.game().selected, tile);
}

TEST(Drag, EndsWhereverTheButtonIsReleased) {
  for (const Point& end : {Point{320, 5}, Point{320, 475}, Point{2, 240}, Point{-100, 240}}) {
    Zoomed table(3);
    table.harness.drag(320, 240, end.x, end.y);
    const ui::BoardOpts before = table.shown();
    table.harness.moveTo(200, 200);
    table.expectPan(before.panX, before.panY);
    EXPECT_EQ(table.game().selected, -1);
  }
}

TEST(Drag, BeginsOnTheBoardOnly) {
  Zoomed table(3);
  table.harness.drag(320, table.screen.boardRect().y - 2, 320, 240);
  table.expectPan(0, 0);
}

TEST(Drag, OfAnyLengthIsATapWithoutZoom) {
  Sitting sitting;
  sitting.waitForIntro();
  const int tile = test::topTile(sitting.game());
  const Point p = sitting.at(tile);
  sitting.harness.drag(p.x - 150, p.y + 60, p.x, p.y);
  EXPECT_EQ(sitting.game().selected, tile);
}

TEST(Drag, IsATapOnceTheZoomIsGone) {
  Zoomed table(2);
  table.harness.press(100, 240);
  table.harness.moveTo(200, 240);
  table.harness.key(SDLK_0);
  table.harness.frame();
  const int tile = test::topTile(table.game());
  const Point p = table.at(tile);
  table.harness.release(p.x, p.y);
  EXPECT_EQ(table.game().selected, tile);
}

TEST(Drag, IsATapWhenZoomingInAndOutLeftARoundingError) {
  // After these steps the zoom is 1.0000000000000004.
  Sitting sitting;
  sitting.waitForIntro();
  for (const char step : std::string("+++vv+vvv+vvvvvvv")) {
    if (step == '+') {
      sitting.harness.key(SDLK_PLUS);
    } else {
      sitting.harness.wheel(320, 240, -1);
    }
  }
  ASSERT_GT(sitting.shown().zoom, 1);
  ASSERT_NEAR(sitting.shown().zoom, 1, 1e-12);
  const int tile = test::topTile(sitting.game());
  const Point p = sitting.at(tile);
  sitting.harness.drag(p.x - 50, p.y, p.x, p.y);
  EXPECT_EQ(sitting.game().selected, tile);
}

// A point beside the board that shows only cloth.
constexpr int kClothX = 3;
constexpr int kClothY = 3;

// The cloth's colour under a cover of this colour and opacity.
std::uint32_t covered(std::uint32_t cloth, std::uint32_t cover, double alpha) {
  std::uint32_t result = 0;
  for (const int shift : {16, 8, 0}) {
    const double under = (cloth >> shift) & 0xFFU;
    const double over = (cover >> shift) & 0xFFU;
    result |= static_cast<std::uint32_t>(std::lround(under + (over - under) * alpha)) << shift;
  }
  return result;
}

constexpr std::uint32_t kReadyColor = 0xFFE9A8;
constexpr std::uint32_t kWinColor = 0xFFF4D6;

struct Seen : Sitting {
  Seen() : Sitting(test::kFirstLevel, support::Drawing::Cairo, 320, 240) {}

  std::uint32_t cloth() const { return harness.colorAt(kClothX, kClothY); }
  // Waits, then checks the opacity of the cover.
  void expectCover(double wait, std::uint32_t bare, std::uint32_t cover, double alpha) {
    harness.frame(wait);
    EXPECT_LE(support::channelDifference(cloth(), covered(bare, cover, alpha)), 2)
        << std::hex << cloth() << " instead of " << covered(bare, cover, alpha);
  }
};

TEST(ReadyFlash, RisesFastAndFallsSlowly) {
  Seen table;
  const std::uint32_t bare = table.cloth();
  table.expectCover(20, bare, kReadyColor, 0);
  table.expectCover(0.06, bare, kReadyColor, 0.21);
  table.expectCover(0.06, bare, kReadyColor, 0.42);
  table.expectCover(0.105, bare, kReadyColor, 0.315);
  table.expectCover(0.21, bare, kReadyColor, 0.105);
  table.expectCover(0.105, bare, kReadyColor, 0);
  table.expectCover(0.1, bare, kReadyColor, 0);
}

TEST(ReadyFlash, WaitsForTheEndOfTheIntro) {
  Seen table;
  const std::uint32_t bare = table.cloth();
  const double left = table.screen.effects().introEnd - table.harness.time();
  table.expectCover(left - 0.01, bare, kReadyColor, 0);
  table.expectCover(0.015, bare, kReadyColor, 0);
  table.expectCover(0.12, bare, kReadyColor, 0.42);
}

TEST(ReadyFlash, CoversTheBoardToo) {
  Seen table;
  table.harness.frame(20);
  table.harness.frame(0.12);
  const ui::CairoSurface flash = table.harness.picture();
  table.harness.frame(1);
  const int x = 160;
  const int y = 120;
  EXPECT_LE(support::channelDifference(
                support::pixelAt(flash.get(), x, y) & 0xFFFFFF,
                covered(support::pixelAt(table.harness.picture().get(), x, y) & 0xFFFFFF, kReadyColor, 0.42)),
            2);
}

TEST(ReadyFlash, IsNotShownInAGameThatIsWonMeanwhile) {
  Seen table;
  const std::uint32_t bare = table.cloth();
  table.playUntilLeft(1);
  table.harness.frame(table.screen.effects().introEnd - table.harness.time() - 0.25);
  table.clickBoth(table.order.back());
  table.harness.frame(0.321);
  ASSERT_TRUE(mj::isSolved(table.game()));
  table.expectCover(0.14, bare, kWinColor, 0.2125);
}

TEST(WinFade, CoversTheWindowWithinItsTimeAndNeverFully) {
  Seen table;
  table.waitForIntro();
  const std::uint32_t bare = table.cloth();
  table.win();
  table.expectCover(0, bare, kWinColor, 0);
  table.expectCover(0.14, bare, kWinColor, 0.2125);
  table.expectCover(0.14, bare, kWinColor, 0.425);
  table.expectCover(0.28, bare, kWinColor, 0.85);
  table.expectCover(0.05, bare, kWinColor, 0.85);
}

TEST(Burst, IsSeenOverTheBoard) {
  Seen table;
  table.waitForIntro();
  table.take(mj::findHint(table.game()));
  table.harness.frame(0.3);
  const ui::CairoSurface burst = table.harness.picture();
  table.harness.frame(2);
  EXPECT_FALSE(support::samePicture(burst.get(), table.harness.picture().get(), 60));
}

TEST(PauseVeil, HidesTheBoard) {
  Seen table;
  table.waitForIntro();
  const ui::CairoSurface open = table.harness.picture();
  table.harness.key(SDLK_SPACE);
  table.harness.frame();
  // Pixels of a tile's face, beside its ink.
  int difference = 0;
  for (int x = 150; x < 170; ++x) {
    const std::uint32_t seen = support::pixelAt(open.get(), x, 120) & 0xFFFFFF;
    difference = std::max(difference, support::channelDifference(table.harness.colorAt(x, 120), seen));
  }
  EXPECT_GT(difference, 60);
  table.harness.key(SDLK_SPACE);
  table.harness.frame();
  EXPECT_TRUE(support::samePicture(table.harness.picture().get(), open.get(), 0));
}

}  // namespace
