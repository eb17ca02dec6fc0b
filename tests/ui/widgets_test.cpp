// How the widgets answer to the pointer.
#include "ui/widgets.h"

#include <gtest/gtest.h>

#include <limits>
#include <ostream>
#include <string>
#include <vector>

#include "support/heard.h"
#include "support/picture.h"
#include "support/screen_harness.h"
#include "ui/widget_scenes.h"

namespace {

using support::heard;
using support::samePicture;
using support::ScreenHarness;
using test::Control;
using test::inkOf;
using test::isClickedAt;
using test::kMargin;
using test::paintWidget;

constexpr ui::Rect kWidgetRect{100, 50, 120, 40};
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct Clickable {
  const char* name;
  Control control;
};

std::ostream& operator<<(std::ostream& out, const Clickable& clickable) { return out << clickable.name; }

std::string nameOf(const testing::TestParamInfo<Clickable>& variant) { return variant.param.name; }

// A button that one function both draws and answers for.
template <auto widget, class... Options>
Control control(const Options&... options) {
  return [=](ui::Ctx& ctx, const ui::Rect& rect) { return widget(ctx, rect, options...); };
}

std::vector<Clickable> clickables() {
  using ui::ActionIcon;
  return {
      {"Plaque", control<ui::plaqueButton>("Play", ui::PlaqueOpts{})},
      {"PrimaryPlaque", control<ui::plaqueButton>("Play", ui::PlaqueOpts{.primary = true})},
      {"Header", control<ui::headerButton>("Level 1", false)},
      {"Back", control<ui::backButton>()},
      {"ActionIcon", control<ui::actionButton>(ActionIcon::Fit, "", false)},
      {"Action", control<ui::actionButton>(ActionIcon::Hint, "Hint", false)},
      {"PageChip", control<ui::pageChip>("Jade", false, true)},
      {"ActivePageChip", control<ui::pageChip>("Jade", true, false)},
      {"Chip", control<ui::chip>("English", false)},
      {"ActiveChip", control<ui::chip>("English", true)},
      {"Plain", control<ui::plainButton>("Cancel", false)},
      {"Danger", control<ui::dangerButton>("Delete")},
      {"Toggle", control<ui::toggleRow>("Music", true)},
  };
}

std::vector<Clickable> disabledOnes() {
  return {
      {"Plaque", control<ui::plaqueButton>("Play", ui::PlaqueOpts{.disabled = true})},
      {"PrimaryPlaque", control<ui::plaqueButton>("Play", ui::PlaqueOpts{.primary = true, .disabled = true})},
      {"Header", control<ui::headerButton>("Level 1", true)},
      {"ActionIcon", control<ui::actionButton>(ui::ActionIcon::Fit, "", true)},
      {"Action", control<ui::actionButton>(ui::ActionIcon::Hint, "Hint", true)},
      {"Plain", control<ui::plainButton>("Cancel", true)},
  };
}

class Clicking : public testing::TestWithParam<Clickable> {
 protected:
  void SetUp() override { heard().clear(); }

  static bool clickedAt(double x, double y) { return isClickedAt(GetParam().control, kWidgetRect, x, y); }
};
INSTANTIATE_TEST_SUITE_P(All, Clicking, testing::ValuesIn(clickables()), nameOf);

TEST_P(Clicking, IsAnsweredOnceWithOneSound) {
  int answers = 0;
  ScreenHarness harness([&](ui::Ctx& ctx) { answers += GetParam().control(ctx, kWidgetRect) ? 1 : 0; });
  harness.moveTo(160, 70);
  harness.press(160, 70);
  EXPECT_EQ(answers, 0);
  harness.release(160, 70);
  EXPECT_EQ(answers, 1);
  EXPECT_TRUE(harness.clickTaken());
  harness.frame();
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(heard(), std::vector{audio::Sfx::Click});
}

TEST_P(Clicking, IsAnsweredWithinTheRectangleOnly) {
  EXPECT_TRUE(clickedAt(100, 50));
  EXPECT_TRUE(clickedAt(219.9, 89.9));
  EXPECT_EQ(heard().size(), 2U);
  EXPECT_FALSE(clickedAt(99.9, 70));
  EXPECT_FALSE(clickedAt(220, 70));
  EXPECT_FALSE(clickedAt(160, 49.9));
  EXPECT_FALSE(clickedAt(160, 90));
  EXPECT_EQ(heard().size(), 2U);
}

TEST_P(Clicking, GoesToTheFirstOfTwoThatOverlap) {
  bool first = false;
  bool second = false;
  ScreenHarness harness([&](ui::Ctx& ctx) {
    first = GetParam().control(ctx, kWidgetRect);
    second = GetParam().control(ctx, {150, 60, 120, 40});
  });
  harness.click(160, 70);
  EXPECT_TRUE(first);
  EXPECT_FALSE(second);
  EXPECT_EQ(heard().size(), 1U);
  harness.click(240, 70);
  EXPECT_FALSE(first);
  EXPECT_TRUE(second);
}

TEST_P(Clicking, IsNotAnsweredWhenTheClickWasTaken) {
  bool clicked = false;
  ScreenHarness harness([&](ui::Ctx& ctx) {
    ctx.clickTaken = true;
    clicked = GetParam().control(ctx, kWidgetRect);
  });
  harness.click(160, 70);
  EXPECT_FALSE(clicked);
  EXPECT_TRUE(heard().empty());
}

TEST_P(Clicking, NeedsMoreThanTheRightButtonTheWheelOrAKey) {
  bool clicked = false;
  ScreenHarness harness([&](ui::Ctx& ctx) { clicked = clicked || GetParam().control(ctx, kWidgetRect); });
  harness.rightClick(160, 70);
  harness.wheel(160, 70, 1);
  harness.key('\r');
  EXPECT_FALSE(clicked);
  EXPECT_FALSE(harness.clickTaken());
  EXPECT_TRUE(heard().empty());
}

TEST_P(Clicking, ASecondWidgetElsewhereLeavesTheClick) {
  bool here = false;
  ScreenHarness harness([&](ui::Ctx& ctx) {
    GetParam().control(ctx, {300, 50, 120, 40});
    here = GetParam().control(ctx, kWidgetRect);
  });
  harness.click(160, 70);
  EXPECT_TRUE(here);
}

TEST_P(Clicking, MeetsNothingWhereThereIsNoArea) {
  const Control& control = GetParam().control;
  for (const ui::Rect& rect :
       {ui::Rect{160, 70, 0, 40}, ui::Rect{160, 70, 40, 0}, ui::Rect{170, 80, -20, -20},
        ui::Rect{160, 70, kNan, 40}, ui::Rect{160, 70, -20, 40}}) {
    EXPECT_FALSE(isClickedAt(control, rect, 160, 70)) << rect.w << " x " << rect.h;
    const auto picture =
        test::paintScene(test::Path::Cairo, {.w = 320, .h = 140}, [&](ui::Ctx& ctx) { control(ctx, rect); });
    EXPECT_TRUE(inkOf(picture.get()).empty()) << rect.w << " x " << rect.h;
  }
  EXPECT_TRUE(heard().empty());
}

// paintWidget uses makePicture, which fails if the context ends in an error.
TEST_P(Clicking, StaysPossibleOnTinyPlates) {
  for (const double side : {0.01, 1.0, 3.0, 7.0, 15.0}) {
    paintWidget(side, side, GetParam().control);
    EXPECT_TRUE(isClickedAt(GetParam().control, {10, 10, side, side}, 10, 10)) << side;
  }
}

class Plates : public Clicking {};
INSTANTIATE_TEST_SUITE_P(All, Plates, testing::ValuesIn([] {
                           auto plates = clickables();
                           plates.pop_back();  // the toggle, which has no plate
                           return plates;
                         }()),
                         nameOf);

// The outer half of the outline lies outside the plate.
TEST_P(Plates, AreClickedWhereTheyAreDrawn) {
  const auto ink = inkOf(paintWidget(120, 40, GetParam().control).get());
  EXPECT_EQ(ink.left, kMargin - 1);
  EXPECT_EQ(ink.top, kMargin - 1);
  EXPECT_EQ(ink.right, kMargin + 120 + 1);
  EXPECT_EQ(ink.bottom, kMargin + 40 + 1);
}

class Disabled : public Clicking {};
INSTANTIATE_TEST_SUITE_P(All, Disabled, testing::ValuesIn(disabledOnes()), nameOf);

TEST_P(Disabled, NeverAnswersNorSoundsNorTakesTheClick) {
  bool clicked = false;
  ScreenHarness harness([&](ui::Ctx& ctx) { clicked = clicked || GetParam().control(ctx, kWidgetRect); });
  harness.click(160, 70);
  harness.press(160, 70);
  harness.release(160, 70);
  EXPECT_FALSE(clicked);
  EXPECT_FALSE(harness.clickTaken());
  EXPECT_TRUE(heard().empty());
}

TEST_P(Disabled, LooksTheSameUnderThePointer) {
  const auto away = paintWidget(120, 40, GetParam().control);
  const auto held = paintWidget(120, 40, [](ui::Ctx& ctx, const ui::Rect& rect) {
    test::hold(ctx, rect);
    GetParam().control(ctx, rect);
  });
  EXPECT_TRUE(samePicture(away.get(), held.get()));
}

// --- slider ---

constexpr ui::Rect kTrack{100, 50, 200, 20};

// The slider's value after one frame with the button held, or not, at this place.
double sliderAt(double x, double y, double value, bool held = true) {
  double result = -1;
  ScreenHarness harness([&](ui::Ctx& ctx) { result = ui::slider(ctx, kTrack, value); });
  if (held) {
    harness.press(x, y);
  } else {
    harness.moveTo(x, y);
  }
  return result;
}

TEST(Slider, FollowsThePointerAlongItsTrack) {
  EXPECT_DOUBLE_EQ(sliderAt(100, 60, 0.7), 0);
  EXPECT_DOUBLE_EQ(sliderAt(150, 60, 0.7), 0.25);
  EXPECT_DOUBLE_EQ(sliderAt(300, 60, 0.7), 1);
}

TEST(Slider, EndsAtItsEndsWhenDraggedBeyond) {
  EXPECT_EQ(sliderAt(88, 60, 0.7), 0);
  EXPECT_EQ(sliderAt(99, 60, 0.7), 0);
  EXPECT_EQ(sliderAt(301, 60, 0.7), 1);
  EXPECT_EQ(sliderAt(311.9, 60, 0.7), 1);
}

TEST(Slider, IsHeldALittleBesideItself) {
  EXPECT_EQ(sliderAt(200, 44, 0.7), 0.5);
  EXPECT_EQ(sliderAt(200, 75.9, 0.7), 0.5);
  for (const auto& [x, y] : {std::pair{87.9, 60.0}, {312.0, 60.0}, {200.0, 43.9}, {200.0, 76.0}})
    EXPECT_EQ(sliderAt(x, y, 0.7), 0.7) << x << ' ' << y;
}

TEST(Slider, GivesBackWhatItWasGivenWhenNotTouched) {
  for (const double value : {0.0, 0.3, 1.0, 1.3, -0.5}) {
    EXPECT_EQ(sliderAt(200, 60, value, false), value);
    EXPECT_EQ(sliderAt(10, 10, value), value);
  }
}

TEST(Slider, TakesNotANumberForZero) {
  EXPECT_EQ(sliderAt(10, 10, kNan), 0);
  EXPECT_EQ(sliderAt(200, 60, kNan), 0.5);
}

TEST(Slider, FollowsItsDragFarBesideItself) {
  for (const auto& [dragX, expected] : {std::pair{150.0, 0.25}, {-4000.0, 0.0}, {4000.0, 1.0}}) {
    double result = -1;
    ScreenHarness harness([&, place = dragX](ui::Ctx& ctx) { result = ui::slider(ctx, kTrack, 0.7, place); });
    harness.press(10, 400);
    EXPECT_EQ(result, expected) << dragX;
  }
}

TEST(Slider, ChangesInEveryFrameOfADragWithoutASound) {
  heard().clear();
  std::vector<double> values;
  ScreenHarness harness(
      [&](ui::Ctx& ctx) { values.push_back(ui::slider(ctx, kTrack, values.empty() ? 0.9 : values.back())); });
  harness.drag(100, 60, 300, 60);
  // The press, ten steps, and the release. The button is up in the release's frame.
  ASSERT_EQ(values.size(), 12U);
  for (std::size_t i = 0; i <= 10; ++i) EXPECT_NEAR(values[i], static_cast<double>(i) / 10, 1e-12);
  EXPECT_EQ(values[11], 1);
  EXPECT_FALSE(harness.clickTaken());
  EXPECT_TRUE(heard().empty());
}

TEST(Slider, WithoutAreaKeepsItsValue) {
  for (const ui::Rect& rect :
       {ui::Rect{200, 50, 0, 20}, ui::Rect{200, 50, 100, 0}, ui::Rect{200, 50, -5, 20}}) {
    double value = -1;
    ScreenHarness harness([&](ui::Ctx& ctx) { value = ui::slider(ctx, rect, 0.7); });
    harness.press(200, 50);
    EXPECT_EQ(value, 0.7) << rect.w << " x " << rect.h;
  }
}

// --- scrolling ---

constexpr ui::Rect kList{100, 50, 200, 150};

// The scroll offset after the wheel was turned at this place.
double scrolled(double from, double contentHeight, double steps, double x = 150, double y = 100) {
  double scroll = from;
  ScreenHarness harness([&](const ui::Ctx& ctx) { ui::applyScroll(ctx, kList, contentHeight, scroll); });
  harness.wheel(x, y, steps);
  return scroll;
}

TEST(Scrolling, MovesSixtyPixelsAStepAgainstTheWheel) {
  EXPECT_EQ(scrolled(100, 1000, -1), 160);
  EXPECT_EQ(scrolled(100, 1000, 1), 40);
  EXPECT_EQ(scrolled(100, 1000, -2.5), 250);
}

TEST(Scrolling, EndsWhereTheContentEnds) {
  EXPECT_EQ(scrolled(100, 1000, 2), 0);
  EXPECT_EQ(scrolled(800, 1000, -2), 850);
}

TEST(Scrolling, NeedsThePointerInTheList) {
  EXPECT_EQ(scrolled(100, 1000, -1, 99, 100), 100);
  EXPECT_EQ(scrolled(100, 1000, -1, 150, 200), 100);
}

TEST(Scrolling, BringsAnOffsetBackIntoRangeWithoutTheWheel) {
  EXPECT_EQ(scrolled(900, 1000, 0, 0, 0), 850);
  EXPECT_EQ(scrolled(-20, 1000, 0, 0, 0), 0);
}

TEST(Scrolling, IsNoneWhereEverythingFits) {
  EXPECT_EQ(scrolled(100, 150, -1), 0);
  EXPECT_EQ(scrolled(100, 20, -1), 0);
  EXPECT_EQ(scrolled(100, 0, -1), 0);
}

}  // namespace
