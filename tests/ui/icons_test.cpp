#include "ui/icons.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/picture.h"
#include "ui/palette.h"
#include "ui/widget_scenes.h"

namespace {

using support::looksLike;
using test::hasColor;
using test::Ink;
using test::inkOf;
using test::kFelt;
using ui::ActionIcon;

namespace palette = ui::palette;

constexpr int kIcons = 10;
constexpr int kSide = 100;

// An icon in the middle of a picture of 100 x 100.
ui::CairoSurface icon(ActionIcon which, double size = 80, double alpha = 1) {
  return test::paintScene(test::Path::Cairo, {.w = kSide, .h = kSide}, [&](const ui::Ctx& ctx) {
    ui::drawActionIcon(ctx.cr, which, kSide / 2.0, kSide / 2.0, size, palette::kLightText, alpha);
  });
}

bool isInk(cairo_surface_t* picture, double x, double y) {
  return static_cast<bool>(
      hasColor(picture, static_cast<int>(50 + 40 * x), static_cast<int>(50 + 40 * y), palette::kLightText));
}

void expectInk(cairo_surface_t* picture, double left, double top, double right, double bottom) {
  const Ink ink = inkOf(picture);
  EXPECT_NEAR(ink.left, left, 1);
  EXPECT_NEAR(ink.top, top, 1);
  EXPECT_NEAR(ink.right, right, 1);
  EXPECT_NEAR(ink.bottom, bottom, 1);
}

TEST(ActionIcons, LookAsTheyAlwaysDid) {
  for (const int size : {22, 64}) {
    const int step = size + 12;
    const auto sheet =
        test::paintScene(test::Path::Cairo, {.w = kIcons * step, .h = step}, [&](const ui::Ctx& ctx) {
          for (int i = 0; i < kIcons; ++i) {
            ui::drawActionIcon(ctx.cr, static_cast<ActionIcon>(i), (i + 0.5) * step, 0.5 * step, size,
                               palette::kLightText, 1);
          }
        });
    EXPECT_TRUE(looksLike(sheet.get(), "icons_" + std::to_string(size)));
  }
}

TEST(ActionIcons, StandInTheirOrder) {
  EXPECT_EQ(static_cast<int>(ActionIcon::Hint), 0);
  EXPECT_EQ(static_cast<int>(ActionIcon::Shuffle), 1);
  EXPECT_EQ(static_cast<int>(ActionIcon::Undo), 2);
  EXPECT_EQ(static_cast<int>(ActionIcon::ZoomIn), 3);
  EXPECT_EQ(static_cast<int>(ActionIcon::ZoomOut), 4);
  EXPECT_EQ(static_cast<int>(ActionIcon::Fit), 5);
  EXPECT_EQ(static_cast<int>(ActionIcon::Pause), 6);
  EXPECT_EQ(static_cast<int>(ActionIcon::Play), 7);
  EXPECT_EQ(static_cast<int>(ActionIcon::Replay), 8);
  EXPECT_EQ(static_cast<int>(ActionIcon::Card), 9);
}

// At size 80 the lines are 8.8 wide, half of that on either side.
TEST(ActionIcons, KeepToTheirSquare) {
  for (int i = 0; i < kIcons; ++i) {
    const Ink ink = inkOf(icon(static_cast<ActionIcon>(i)).get());
    EXPECT_GE(ink.left, 50 - 40 - 5) << i;
    EXPECT_GE(ink.top, 50 - 40 - 5) << i;
    EXPECT_LE(ink.right, 50 + 40 + 5) << i;
    EXPECT_LE(ink.bottom, 50 + 40 + 5) << i;
  }
}

TEST(ActionIcons, HaveTheirMeasures) {
  constexpr double kHalfLine = 4.4;
  expectInk(icon(ActionIcon::Fit).get(), 50 - 30 - kHalfLine, 50 - 30 - kHalfLine, 50 + 30 + kHalfLine,
            50 + 30 + kHalfLine);
  expectInk(icon(ActionIcon::Pause).get(), 50 - 20, 50 - 28, 50 + 20, 50 + 28);
  expectInk(icon(ActionIcon::Play).get(), 50 - 16, 50 - 28, 50 + 28, 50 + 28);
  expectInk(icon(ActionIcon::Hint).get(), 50 - 22 - kHalfLine, 50 - 32 - kHalfLine, 50 + 22 + kHalfLine,
            50 + 30 + kHalfLine);
  expectInk(icon(ActionIcon::ZoomIn).get(), 50 - 28 - kHalfLine, 50 - 28 - kHalfLine, 50 + 32 + kHalfLine,
            50 + 32 + kHalfLine);
  // The card is 49.6 x 67.2. Its shadow lies 1.5 to the right and below.
  expectInk(icon(ActionIcon::Card).get(), 25.2, 16.4, 74.8 + 1.5, 83.6 + 1.5);
}

TEST(ActionIcons, TurnTheirArrowsTheRightWay) {
  const auto undo = icon(ActionIcon::Undo);
  EXPECT_TRUE(isInk(undo.get(), -0.5, -0.2));    // its head
  EXPECT_TRUE(isInk(undo.get(), 0.64, 0.1));     // the arc's right
  EXPECT_FALSE(isInk(undo.get(), -0.35, 0.65));  // its gap
  const auto replay = icon(ActionIcon::Replay);
  EXPECT_TRUE(isInk(replay.get(), 0.5, -0.2));
  EXPECT_TRUE(isInk(replay.get(), -0.64, 0));
  EXPECT_FALSE(isInk(replay.get(), 0.35, 0.55));
  const auto shuffle = icon(ActionIcon::Shuffle);
  for (const double side : {-1.0, 1.0}) {
    EXPECT_TRUE(isInk(shuffle.get(), 0.8, 0.5 * side));
    EXPECT_TRUE(isInk(shuffle.get(), -0.95, 0.5 * side));
    EXPECT_TRUE(isInk(shuffle.get(), 0.42, 0.84 * side));
  }
  EXPECT_TRUE(isInk(shuffle.get(), -0.1, 0));
}

TEST(ActionIcons, TellZoomingInFromZoomingOutByOneBar) {
  const auto in = icon(ActionIcon::ZoomIn);
  const auto out = icon(ActionIcon::ZoomOut);
  EXPECT_TRUE(isInk(in.get(), -0.15, -0.4));
  EXPECT_FALSE(isInk(out.get(), -0.15, -0.4));
  for (const auto* picture : {&in, &out}) EXPECT_TRUE(isInk(picture->get(), -0.4, -0.15));
}

TEST(ActionIcons, HaveLinesOfAtLeastOneAndAHalfPixels) {
  // At size 10 the lines would be 1.1 wide.
  const auto tiny = icon(ActionIcon::Fit, 10);
  const Ink ink = inkOf(tiny.get());
  EXPECT_EQ(ink.w(), 10);  // 7.5 + 1.6, rounded out to whole pixels
}

TEST(ActionIcons, FadeWithTheirOpacity) {
  const auto half = icon(ActionIcon::Pause, 80, 0.4);
  EXPECT_TRUE(hasColor(half.get(), 36, 50, test::over(kFelt, palette::kLightText, 0.4)));
  const auto card = icon(ActionIcon::Card, 80, 0.4);
  EXPECT_TRUE(hasColor(card.get(), 75, 60, test::over(kFelt, palette::kLightText, 0.4 * 0.45)));
}

TEST(ActionIcons, LeaveTheContextAsItWas) {
  support::makePicture(kSide, kSide, [](cairo_t* cr) {
    for (int i = 0; i < kIcons; ++i) {
      cairo_set_line_width(cr, 7);
      ui::drawActionIcon(cr, static_cast<ActionIcon>(i), 50, 50, 40, 0, 1);
      EXPECT_EQ(cairo_get_line_width(cr), 7) << i;
      EXPECT_EQ(cairo_get_line_cap(cr), CAIRO_LINE_CAP_BUTT) << i;
      EXPECT_FALSE(cairo_has_current_point(cr)) << i;
    }
  });
}

TEST(ActionIcons, AreNothingWithoutASizeOrAName) {
  for (int i = 0; i < kIcons; ++i) {
    for (const double size : {0.0, -5.0, std::numeric_limits<double>::quiet_NaN()})
      EXPECT_TRUE(inkOf(icon(static_cast<ActionIcon>(i), size).get()).empty()) << i << ' ' << size;
  }
  for (const int value : {-1, 10, 1000})
    EXPECT_TRUE(inkOf(icon(static_cast<ActionIcon>(value)).get()).empty()) << value;
}

}  // namespace
