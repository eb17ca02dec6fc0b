#include "ui/stars.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "support/picture.h"
#include "ui/palette.h"
#include "ui/widget_scenes.h"

namespace {

using support::looksLike;
using support::samePicture;
using test::hasColor;
using test::Ink;
using test::inkOf;
using test::kFelt;

namespace palette = ui::palette;

// The award in the middle of a picture of 220 x 100.
ui::CairoSurface row(int stars, double t, double scale = 1) {
  return test::paintScene(test::Path::Cairo, {.w = 220, .h = 100},
                          [&](const ui::Ctx& ctx) { ui::starRow(ctx, 110, 50, stars, scale, t); });
}

ui::CairoSurface star(double r, bool filled) {
  return test::paintScene(test::Path::Cairo, {.w = 100, .h = 100}, [&](const ui::Ctx& ctx) {
    ui::drawStar(ctx.cr, 50, 50, r, filled, palette::kStarGold, 1);
  });
}

TEST(Star, LooksAsItAlwaysDid) {
  const auto sheet = test::paintScene(test::Path::Cairo, {.w = 320, .h = 110}, [](const ui::Ctx& ctx) {
    double x = 55;
    for (const bool filled : {true, false}) {
      ui::drawStar(ctx.cr, x, 55, 40, filled, palette::kStarGold, 1);
      ui::drawStar(ctx.cr, x + 65, 55, 14, filled, palette::kStarGold, 1);
      ui::drawStar(ctx.cr, x + 95, 55, 6, filled, palette::kStarGold, 0.5);
      x += 155;
    }
  });
  EXPECT_TRUE(looksLike(sheet.get(), "star"));
}

TEST(Star, PointsUpwardsAndHasItsNotches) {
  const auto picture = star(40, true);
  const Ink ink = inkOf(picture.get());
  EXPECT_NEAR(ink.top, 10, 1);
  EXPECT_NEAR(ink.left, 50 - 40 * std::cos(0.314159), 1);
  EXPECT_NEAR(ink.right, 50 + 40 * std::cos(0.314159), 1);
  EXPECT_NEAR(ink.bottom, 50 + 40 * std::cos(0.628318), 1);
  EXPECT_TRUE(hasColor(picture.get(), 50, 50, palette::kStarGold));
  // The bottom notch is 0.42 radii from the middle.
  EXPECT_TRUE(hasColor(picture.get(), 50, 50 + 15, palette::kStarGold));
  EXPECT_TRUE(hasColor(picture.get(), 50, 50 + 18, kFelt));
}

TEST(Star, IsHollowAsAnOutline) {
  const auto picture = star(40, false);
  EXPECT_TRUE(hasColor(picture.get(), 50, 50, kFelt));
  EXPECT_TRUE(hasColor(picture.get(), 50, 66, palette::kStarGold));  // the outline at the notch, 4.8 wide
}

TEST(Star, WithoutARadiusIsNothing) {
  for (const double r : {0.0, -4.0, std::nan("")})
    for (const bool filled : {true, false}) EXPECT_TRUE(inkOf(star(r, filled).get()).empty());
}

// --- the award ---

TEST(StarRow, LooksAsItAlwaysDid) {
  for (const int stars : {0, 1, 2, 3}) {
    const std::vector<double> times = {0, 0.5, 0.8, 1.0, 1.5, 3.1};
    const auto sheet = test::paintScene(test::Path::Cairo, {.w = 600, .h = 180}, [&](const ui::Ctx& ctx) {
      double x = 100;
      double y = 45;
      for (const double t : times) {
        ui::starRow(ctx, x, y, stars, 1, t);
        x += 200;
        if (x > 600) {
          x = 100;
          y += 90;
        }
      }
    });
    EXPECT_TRUE(looksLike(sheet.get(), "star_row_" + std::to_string(stars)));
  }
}

TEST(StarRow, IsARowOfOutlinesWithoutStars) {
  const Ink ink = inkOf(row(0, 9).get());
  // The sharp points of an outline reach 2.86 half line widths beyond the star.
  constexpr double kSmall = 20 + 2.86 * 1.2;
  constexpr double kLarge = 34 + 2.86 * 2.04;
  EXPECT_NEAR(ink.left, 110 - 68 - kSmall * std::cos(0.314159), 1);
  EXPECT_NEAR(ink.right, 110 + 68 + kSmall * std::cos(0.314159), 1);
  EXPECT_NEAR(ink.top, 50 - kLarge, 1);
  EXPECT_TRUE(hasColor(row(0, 9).get(), 110, 50, kFelt));
  EXPECT_TRUE(samePicture(row(0, 9).get(), row(0, 0).get()));
  EXPECT_TRUE(samePicture(row(0, 9).get(), row(-3, 0).get()));
}

constexpr int kLeft = 110 - 68;
constexpr int kMiddle = 110;
constexpr int kRight = 110 + 68;

bool shines(cairo_surface_t* picture, int x) {
  return static_cast<bool>(hasColor(picture, x, 50, palette::kStarGold));
}

TEST(StarRow, FillsTheMiddleFirstThenTheLeftThenTheRight) {
  for (const int stars : {-1, 0, 1, 2, 3, 4}) {
    const auto picture = row(stars, 9);
    EXPECT_EQ(shines(picture.get(), kMiddle), stars >= 1) << stars;
    EXPECT_EQ(shines(picture.get(), kLeft), stars >= 2) << stars;
    EXPECT_EQ(shines(picture.get(), kRight), stars >= 3) << stars;
  }
}

TEST(StarRow, PopsUpOneStarAfterTheOther) {
  struct Moment {
    double t;
    bool middle;
    bool left;
    bool right;
  };
  // A star has fully appeared 0.45 after its delay of 0.36, 0.62 or 0.88.
  const Moment moments[] = {{0.35, false, false, false}, {0.79, false, false, false},
                            {0.81, true, false, false},  {1.05, true, false, false},
                            {1.07, true, true, false},   {1.31, true, true, false},
                            {1.33, true, true, true}};
  for (const Moment& moment : moments) {
    const auto picture = row(3, moment.t);
    EXPECT_EQ(shines(picture.get(), kMiddle), moment.middle) << moment.t;
    EXPECT_EQ(shines(picture.get(), kLeft), moment.left) << moment.t;
    EXPECT_EQ(shines(picture.get(), kRight), moment.right) << moment.t;
  }
}

TEST(StarRow, ShowsNothingOfAnEarnedStarBeforeItsTime) {
  for (const double t : {-1.0, 0.0, 0.36}) EXPECT_TRUE(inkOf(row(3, t).get()).empty()) << t;
  EXPECT_FALSE(inkOf(row(3, 0.45).get()).empty());
}

TEST(StarRow, PulsesWithAHaloAroundEachStar) {
  constexpr double kDelay = 0.36;
  const auto reachAt = [](double t) { return inkOf(row(1, t).get()).h() / 2.0; };
  const double high = (3.14159265 / 2 + 2 * 3.14159265) / 1.6 - kDelay;
  const double low = (3 * 3.14159265 / 2) / 1.6 - kDelay;
  EXPECT_NEAR(reachAt(high), 34 * 1.25 * 1.08, 1);
  EXPECT_NEAR(reachAt(low), 34 * 1.25 * 0.92, 1);
  EXPECT_TRUE(hasColor(row(1, high).get(), 110, 50 + 40, test::over(kFelt, palette::kStarGold, 0.16)));
}

TEST(StarRow, GrowsWithItsScale) {
  const Ink ink = inkOf(row(0, 0, 0.5).get());
  EXPECT_NEAR(ink.w(), 2 * (34 + 10 * std::cos(0.314159)), 3);
  for (const double scale : {0.0, -1.0, std::nan("")}) EXPECT_TRUE(inkOf(row(3, 9, scale).get()).empty());
}

// --- small stars ---

ui::CairoSurface line(int stars, double r) {
  return test::paintScene(test::Path::Cairo, {.w = 120, .h = 60},
                          [&](const ui::Ctx& ctx) { ui::starsInline(ctx.cr, 60, 30, stars, r); });
}

TEST(StarsInline, LookAsTheyAlwaysDid) {
  const auto sheet = test::paintScene(test::Path::Cairo, {.w = 320, .h = 40}, [](const ui::Ctx& ctx) {
    for (const int stars : {0, 1, 2, 3}) ui::starsInline(ctx.cr, 40 + 80 * stars, 20, stars, 9);
  });
  EXPECT_TRUE(looksLike(sheet.get(), "stars_inline"));
}

TEST(StarsInline, AreFilledFromTheLeft) {
  for (const int stars : {-1, 0, 1, 2, 3, 9}) {
    const auto picture = line(stars, 12);
    for (const int i : {1, 2, 3}) {
      EXPECT_TRUE(hasColor(picture.get(), 60 + (i - 2) * 30, 30, i <= stars ? palette::kStarGold : kFelt))
          << stars << ' ' << i;
    }
  }
}

TEST(StarsInline, WithoutARadiusAreNothing) { EXPECT_TRUE(inkOf(line(2, 0).get()).empty()); }

}  // namespace
