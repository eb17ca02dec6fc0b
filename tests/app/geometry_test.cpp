#include "app/geometry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

constexpr SDL_Rect kDesktop = {0, 0, 1920, 1040};
constexpr SDL_Rect kUnknown = {0, 0, 0, 0};

store::Settings stored(int x, int y, int w, int h) {
  store::Settings settings;
  settings.windowX = x;
  settings.windowY = y;
  settings.windowW = w;
  settings.windowH = h;
  return settings;
}

void expectGeometry(const ui::WindowGeometry& geometry, int x, int y, int w, int h) {
  EXPECT_EQ(geometry.x, x);
  EXPECT_EQ(geometry.y, y);
  EXPECT_EQ(geometry.w, w);
  EXPECT_EQ(geometry.h, h);
}

constexpr int kCentered = SDL_WINDOWPOS_CENTERED;

TEST(InitialGeometry, FirstStartIsCentredInTheDefaultSize) {
  expectGeometry(ui::initialGeometry({}, kDesktop), kCentered, kCentered, 1100, 760);
}

TEST(InitialGeometry, StoredPlaceThatFitsIsKept) {
  expectGeometry(ui::initialGeometry(stored(100, 80, 900, 700), kDesktop), 100, 80, 900, 700);
}

TEST(InitialGeometry, LargerWindowIsShrunkToLeaveRoomForItsFrame) {
  expectGeometry(ui::initialGeometry(stored(0, 30, 4000, 3000), kDesktop), 0, 30, 1900, 980);
  expectGeometry(ui::initialGeometry(stored(0, 30, 1901, 981), kDesktop), 0, 30, 1900, 980);
  expectGeometry(ui::initialGeometry(stored(0, 30, 1900, 980), kDesktop), 0, 30, 1900, 980);
}

TEST(InitialGeometry, PositionOffTheDisplayIsBroughtInside) {
  expectGeometry(ui::initialGeometry(stored(5000, 5000, 900, 700), kDesktop), 1020, 340, 900, 700);
  expectGeometry(ui::initialGeometry(stored(-5000, -5000, 900, 700), kDesktop), 0, 30, 900, 700);
}

TEST(InitialGeometry, TitleBarKeepsThirtyBelowTheTop) {
  EXPECT_EQ(ui::initialGeometry(stored(100, 29, 900, 700), kDesktop).y, 30);
  EXPECT_EQ(ui::initialGeometry(stored(100, 31, 900, 700), kDesktop).y, 31);
}

TEST(InitialGeometry, PanelsAtTheTopAndLeftAreLeftFree) {
  const SDL_Rect besidePanels = {70, 25, 1850, 1015};
  expectGeometry(ui::initialGeometry(stored(0, 0, 4000, 3000), besidePanels), 70, 55, 1830, 955);
  expectGeometry(ui::initialGeometry(stored(9000, 9000, 900, 700), besidePanels), 1020, 340, 900, 700);
}

TEST(InitialGeometry, ShrinksTheCentredWindowToo) {
  expectGeometry(ui::initialGeometry({}, {0, 0, 1024, 600}), kCentered, kCentered, 1004, 540);
}

TEST(InitialGeometry, StoredValuesStandWhereTheDisplayIsUnknown) {
  expectGeometry(ui::initialGeometry(stored(-3000, 5, 4000, 3000), kUnknown), -3000, 5, 4000, 3000);
  expectGeometry(ui::initialGeometry(stored(-3000, 5, 4000, 3000), {0, 0, 1920, 0}), -3000, 5, 4000, 3000);
  expectGeometry(ui::initialGeometry({}, kUnknown), kCentered, kCentered, 1100, 760);
}

TEST(InitialGeometry, OneCoordinateAloneIsNoPosition) {
  for (const SDL_Rect& usable : {kDesktop, kUnknown}) {
    expectGeometry(ui::initialGeometry(stored(100, store::kNoPosition, 900, 700), usable), kCentered,
                   kCentered, 900, 700);
    expectGeometry(ui::initialGeometry(stored(store::kNoPosition, 100, 900, 700), usable), kCentered,
                   kCentered, 900, 700);
  }
}

TEST(WindowGrowth, IsNoneUpToFullHd) {
  for (const auto& [w, h] :
       {std::pair(640, 480), std::pair(1100, 760), std::pair(1920, 1080), std::pair(0, 0)})
    EXPECT_EQ(ui::windowGrowth(w, h), 1) << w << " x " << h;
}

TEST(WindowGrowth, IsNoneInAWindowThatIsLargeInOneDirectionAlone) {
  EXPECT_EQ(ui::windowGrowth(5120, 1080), 1);
  EXPECT_EQ(ui::windowGrowth(5120, 480), 1);
  EXPECT_EQ(ui::windowGrowth(1920, 4000), 1);
  EXPECT_EQ(ui::windowGrowth(760, 4000), 1);
}

TEST(WindowGrowth, IsThatOfTheSideThatGrewLess) {
  EXPECT_EQ(ui::windowGrowth(3840, 2160), 2);
  EXPECT_EQ(ui::windowGrowth(2880, 1620), 1.5);
  EXPECT_EQ(ui::windowGrowth(2400, 2160), 1.25);
  EXPECT_EQ(ui::windowGrowth(3840, 1350), 1.25);
}

TEST(WindowGrowth, LeavesALargeWindowAtLeastTheRoomOfFullHd) {
  for (int w = 1920; w <= 8000; w += 37) {
    for (int h = 1080; h <= 5000; h += 29) {
      const double growth = ui::windowGrowth(w, h);
      EXPECT_NEAR(std::max(1920 - w / growth, 1080 - h / growth), 0, 1e-9) << w << " x " << h;
    }
  }
}

}  // namespace
