#include "ui/draw.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "support/picture.h"

namespace {

using support::looksLike;
using support::makePicture;
using support::pixelAt;
using support::samePicture;

constexpr std::uint32_t kClear = 0;
constexpr std::uint32_t kOpaqueRed = 0xFFFF0000;

int alphaAt(cairo_surface_t* picture, int x, int y) { return static_cast<int>(pixelAt(picture, x, y) >> 24); }

bool isEmpty(cairo_surface_t* picture, int w, int h) {
  return static_cast<bool>(samePicture(picture, makePicture(w, h).get()));
}

// --- shapes ---

TEST(Colour, HasRedInItsHighestByteAndIgnoresTheOneAbove) {
  const auto picture = makePicture(4, 4, [](cairo_t* cr) { ui::fillRect(cr, {0, 0, 4, 4}, 0xAB12F0C4, 1); });
  EXPECT_EQ(pixelAt(picture.get(), 1, 1), 0xFF12F0C4U);
}

TEST(Colour, TakesItsOpacityApart) {
  const auto picture = makePicture(4, 4, [](cairo_t* cr) { ui::fillRect(cr, {0, 0, 4, 4}, 0xFF0000, 0.4); });
  EXPECT_EQ(pixelAt(picture.get(), 1, 1), 0x66660000U);
}

TEST(Colour, FillsAGradientFromStopToStop) {
  const auto picture = makePicture(1, 101, [](cairo_t* cr) {
    const ui::CairoPattern pattern(cairo_pattern_create_linear(0, 0, 0, 101));
    ui::addStop(pattern.get(), 0, 0xC80000, 1);
    ui::addStop(pattern.get(), 1, 0x0000C8, 1);
    cairo_set_source(cr, pattern.get());
    cairo_paint(cr);
  });
  EXPECT_LE(support::channelDifference(pixelAt(picture.get(), 0, 50), 0xFF640064), 1);
  EXPECT_LE(support::channelDifference(pixelAt(picture.get(), 0, 0), 0xFFC70001), 1);
}

TEST(FilledRectangle, CoversItsPixelsAndNoOthers) {
  const auto picture = makePicture(20, 20, [](cairo_t* cr) { ui::fillRect(cr, {5, 6, 7, 8}, 0xFF0000, 1); });
  EXPECT_EQ(pixelAt(picture.get(), 5, 6), kOpaqueRed);
  EXPECT_EQ(pixelAt(picture.get(), 11, 13), kOpaqueRed);
  EXPECT_EQ(pixelAt(picture.get(), 4, 6), kClear);
  EXPECT_EQ(pixelAt(picture.get(), 12, 13), kClear);
  EXPECT_EQ(pixelAt(picture.get(), 11, 14), kClear);
}

ui::CairoSurface roundedRect(double radius) {
  return makePicture(
      60, 40, [radius](cairo_t* cr) { ui::fillRoundedRect(cr, {10, 10, 40, 20}, radius, 0xFF0000, 1); });
}

TEST(RoundedRectangle, BecomesACapsuleWhenTheRadiusIsTooLarge) {
  EXPECT_TRUE(samePicture(roundedRect(11).get(), roundedRect(10).get()));
  EXPECT_TRUE(samePicture(roundedRect(1000).get(), roundedRect(10).get()));
  EXPECT_FALSE(samePicture(roundedRect(9).get(), roundedRect(10).get()));
}

TEST(RoundedRectangle, CutsItsCornersOnly) {
  const auto picture = roundedRect(8);
  for (const int x : {10, 49})
    for (const int y : {10, 29}) EXPECT_EQ(pixelAt(picture.get(), x, y), kClear) << x << ' ' << y;
  for (const int x : {18, 41})
    for (const int y : {10, 29}) EXPECT_EQ(pixelAt(picture.get(), x, y), kOpaqueRed) << x << ' ' << y;
  for (const int x : {10, 49}) EXPECT_EQ(pixelAt(picture.get(), x, 20), kOpaqueRed) << x;
}

TEST(RoundedRectangle, HasSharpCornersWithoutARadius) {
  const auto sharp =
      makePicture(60, 40, [](cairo_t* cr) { ui::fillRect(cr, {10, 10, 40, 20}, 0xFF0000, 1); });
  EXPECT_TRUE(samePicture(roundedRect(0).get(), sharp.get()));
  EXPECT_TRUE(samePicture(roundedRect(-5).get(), sharp.get()));
}

TEST(RoundedRectangle, IsAClosedOutlineApartFromWhatWasThere) {
  const auto picture = makePicture(60, 40, [](cairo_t* cr) {
    cairo_move_to(cr, 0, 0);
    ui::strokeRoundedRect(cr, {10, 10, 40, 20}, 6, 2, 0xFF0000, 1);
  });
  EXPECT_EQ(pixelAt(picture.get(), 5, 5), kClear) << "a line leads to the outline";
  EXPECT_EQ(pixelAt(picture.get(), 9, 20), kOpaqueRed) << "the outline lacks a side";
  EXPECT_EQ(pixelAt(picture.get(), 30, 10), kOpaqueRed);
  EXPECT_EQ(pixelAt(picture.get(), 30, 20), kClear) << "the outline is filled";
}

TEST(RoundedRectangle, LooksAsItAlwaysDid) {
  const auto picture = makePicture(160, 120, [](cairo_t* cr) {
    ui::fillRoundedRect(cr, {8, 8, 60, 44}, 12, 0x16523C, 1);
    ui::strokeRoundedRect(cr, {8, 8, 60, 44}, 12, 2, 0xE8B84B, 1);
    ui::fillRoundedRect(cr, {80, 8, 70, 26}, 100, 0xA64242, 0.6);
    ui::strokeRoundedRect(cr, {80.5, 44.5, 69, 26}, 4, 1, 0x0C3524, 0.8);
    ui::fillRoundedRect(cr, {8.3, 64.6, 50, 40}, 0, 0x122A55, 1);
    ui::strokeRoundedRect(cr, {70, 84, 80, 28}, 14, 3.5, 0xE8B84B, 0.5);
  });
  EXPECT_TRUE(looksLike(picture.get(), "rounded_rectangles"));
}

TEST(Circle, IsFilledToItsRadius) {
  const auto picture = makePicture(40, 40, [](cairo_t* cr) { ui::fillCircle(cr, 20, 20, 10, 0xFF0000, 1); });
  for (const int x : {11, 28}) EXPECT_EQ(pixelAt(picture.get(), x, 20), kOpaqueRed) << x;
  for (const int x : {9, 30}) EXPECT_EQ(pixelAt(picture.get(), x, 20), kClear) << x;
  EXPECT_EQ(pixelAt(picture.get(), 11, 11), kClear) << "a square";
}

TEST(Circle, IsStrokedAllRoundWithoutALineThatLeadsToIt) {
  const auto picture = makePicture(40, 40, [](cairo_t* cr) {
    cairo_move_to(cr, 0, 20);
    ui::strokeCircle(cr, 20, 20, 10, 2, 0xFF0000, 1);
  });
  for (const auto& [x, y] : {std::pair{9, 20}, {30, 20}, {20, 9}, {20, 30}})
    EXPECT_GT(alphaAt(picture.get(), x, y), 240) << x << ' ' << y;
  EXPECT_EQ(pixelAt(picture.get(), 20, 20), kClear) << "filled";
  EXPECT_EQ(pixelAt(picture.get(), 4, 20), kClear) << "a line leads to it";
  EXPECT_EQ(pixelAt(picture.get(), 35, 20), kClear) << "a line leads to it";
}

TEST(Line, GoesFromOneEndToTheOtherInItsWidth) {
  const auto picture =
      makePicture(30, 20, [](cairo_t* cr) { ui::drawLine(cr, 5, 10, 25, 10, 4, 0xFF0000, 1); });
  for (const int x : {5, 24})
    for (const int y : {8, 11}) EXPECT_EQ(pixelAt(picture.get(), x, y), kOpaqueRed) << x << ' ' << y;
  for (const int y : {7, 12}) EXPECT_EQ(pixelAt(picture.get(), 15, y), kClear) << y;
  for (const int x : {4, 25}) EXPECT_EQ(pixelAt(picture.get(), x, 10), kClear) << x;
}

TEST(Shapes, LeaveNoPathBehind) {
  makePicture(40, 40, [](cairo_t* cr) {
    ui::fillRect(cr, {1, 1, 9, 9}, 0, 1);
    ui::fillRoundedRect(cr, {1, 1, 9, 9}, 2, 0, 1);
    ui::strokeRoundedRect(cr, {1, 1, 9, 9}, 2, 1, 0, 1);
    ui::fillCircle(cr, 9, 9, 5, 0, 1);
    ui::strokeCircle(cr, 9, 9, 5, 1, 0, 1);
    ui::drawLine(cr, 1, 1, 9, 9, 1, 0, 1);
    EXPECT_FALSE(cairo_has_current_point(cr));
  });
}

// --- shadow ---

ui::CairoSurface shadow(double dx, double dy, double blur, double alpha) {
  return makePicture(120, 120, [=](cairo_t* cr) {
    ui::roundedRectPath(cr, {40, 40, 40, 40}, 8);
    ui::softShadowFromPath(cr, dx, dy, blur, 0, alpha);
  });
}

// Opacity of `fills` fills of opacity `alpha` on top of each other, 0 to 255.
double stacked(int fills, double alpha) { return 255 * (1 - std::pow(1 - alpha, fills)); }

TEST(SoftShadow, PaintsTwoRingsWhenTheBlurIsSmall) {
  for (const double blur : {0.0, 0.5, 1.0, 1.9, 2.0, 2.9})
    EXPECT_NEAR(alphaAt(shadow(0, 0, blur, 0.5).get(), 60, 60), stacked(2, 0.25), 1) << blur;
}

TEST(SoftShadow, PaintsARingForEachWholePixelOfItsBlur) {
  for (const int blur : {3, 8, 12}) {
    constexpr double kRing = 16 / 255.0;  // a whole step of a channel, so that little is lost to rounding
    const auto picture = shadow(0, 0, blur + 0.9, blur * kRing);
    EXPECT_NEAR(alphaAt(picture.get(), 60, 60), stacked(blur, kRing), 2) << blur;
  }
}

TEST(SoftShadow, FadesFromTheShapeOutwardsAndEndsAtItsBlur) {
  const auto picture = shadow(0, 0, 10, 0.8);
  for (int x = 80; x < 90; ++x)
    EXPECT_GT(alphaAt(picture.get(), x - 1, 60), alphaAt(picture.get(), x, 60)) << x;
  EXPECT_GT(alphaAt(picture.get(), 89, 60), 0);
  EXPECT_EQ(alphaAt(picture.get(), 90, 60), 0);
}

TEST(SoftShadow, LiesWhereItIsMovedTo) {
  const auto picture = shadow(20, -10, 4, 0.8);
  EXPECT_GT(alphaAt(picture.get(), 102, 50), 0);
  EXPECT_EQ(alphaAt(picture.get(), 104, 50), 0);
  EXPECT_EQ(alphaAt(picture.get(), 55, 50), 0);
  EXPECT_GT(alphaAt(picture.get(), 80, 27), 0);
  EXPECT_EQ(alphaAt(picture.get(), 80, 75), 0);
}

TEST(SoftShadow, LeavesThePathWhereItWas) {
  makePicture(120, 120, [](cairo_t* cr) {
    ui::roundedRectPath(cr, {40, 30, 20, 25}, 4);
    ui::softShadowFromPath(cr, 7, 9, 6, 0, 0.5);
    double x0 = 0;
    double y0 = 0;
    double x1 = 0;
    double y1 = 0;
    cairo_path_extents(cr, &x0, &y0, &x1, &y1);
    EXPECT_NEAR(x0, 40, 0.01);
    EXPECT_NEAR(y0, 30, 0.01);
    EXPECT_NEAR(x1, 60, 0.01);
    EXPECT_NEAR(y1, 55, 0.01);
  });
}

TEST(SoftShadow, KeepsTheContextsSettings) {
  makePicture(120, 120, [](cairo_t* cr) {
    cairo_set_line_width(cr, 3);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_BEVEL);
    ui::roundedRectPath(cr, {40, 30, 20, 25}, 4);
    ui::softShadowFromPath(cr, 7, 9, 6, 0, 0.5);
    EXPECT_EQ(cairo_get_line_width(cr), 3);
    EXPECT_EQ(cairo_get_line_join(cr), CAIRO_LINE_JOIN_BEVEL);
    double x = 0;
    double y = 0;
    cairo_user_to_device(cr, &x, &y);
    EXPECT_EQ(x, 0);
    EXPECT_EQ(y, 0);
  });
}

TEST(SoftShadow, PaintsNothingWithoutAPath) {
  const auto picture = makePicture(20, 20, [](cairo_t* cr) { ui::softShadowFromPath(cr, 0, 0, 5, 0, 1); });
  EXPECT_TRUE(isEmpty(picture.get(), 20, 20));
}

TEST(SoftShadow, LooksAsItAlwaysDid) {
  const auto picture = makePicture(160, 120, [](cairo_t* cr) {
    ui::fillRect(cr, {0, 0, 160, 120}, 0x16523C, 1);
    ui::roundedRectPath(cr, {30, 20, 90, 60}, 12);
    ui::softShadowFromPath(cr, 4, 8, 14, 0, 0.6);
    ui::setColor(cr, 0xF6EFDD, 1);
    cairo_fill(cr);
  });
  EXPECT_TRUE(looksLike(picture.get(), "soft_shadow"));
}

// --- text ---

constexpr int kTextW = 300;
constexpr int kTextH = 80;

ui::CairoSurface textPicture(const std::function<void(cairo_t*)>& paint) {
  return makePicture(kTextW, kTextH, paint);
}

struct Size {
  double w = 0;
  double h = 0;
};

Size measured(std::string_view text, const ui::TextStyle& style) {
  Size size;
  makePicture(8, 8, [&](cairo_t* cr) { ui::measureText(cr, text, style, size.w, size.h); });
  return size;
}

ui::CairoSurface drawnAt(double x, std::string_view text, const ui::TextStyle& style) {
  return textPicture([&](cairo_t* cr) { ui::drawText(cr, x, 10, text, style); });
}

const std::string kWords = "Mahjong solitaire";

// On whole device pixels, the same text gives the same picture in every release of cairo.
TEST(Text, BeginsOnAWholePixel) {
  const auto scaled = [](double scale, double x, double y) {
    return textPicture([&](cairo_t* cr) {
      cairo_scale(cr, scale, scale);
      ui::drawText(cr, x, y, kWords, {.size = 14});
    });
  };
  EXPECT_TRUE(samePicture(scaled(1, 12.4, 9.6).get(), scaled(1, 12, 10).get()));
  EXPECT_TRUE(samePicture(scaled(2, 12.2, 9.8).get(), scaled(2, 12, 10).get()));
  EXPECT_FALSE(samePicture(scaled(2, 12.5, 10).get(), scaled(2, 12, 10).get())) << "it can go by half a unit";

  const auto fine = [](double x) {
    const ui::CairoSurface picture = makePicture(kTextW, kTextH);
    cairo_surface_set_device_scale(picture.get(), 2, 2);
    const ui::CairoContext cr(cairo_create(picture.get()));
    ui::drawText(cr.get(), x, 10, kWords, {.size = 14});
    return ui::CairoSurface(cairo_surface_reference(picture.get()));
  };
  EXPECT_TRUE(samePicture(fine(12.2).get(), fine(12).get()));
  EXPECT_FALSE(samePicture(fine(12.5).get(), fine(12).get()));
}

TEST(Text, IsPlacedByFractionsOfAPixelWhenTurned) {
  const auto turned = [](double x) {
    return textPicture([&](cairo_t* cr) {
      cairo_rotate(cr, 0.2);
      ui::drawText(cr, x, 10, kWords, {.size = 14});
    });
  };
  EXPECT_FALSE(samePicture(turned(12.1).get(), turned(12).get()));
}

TEST(Text, IsDrawnUnscaledWhenItFits) {
  const Size free = measured(kWords, {.size = 20});
  const Size roomy = measured(kWords, {.size = 20, .maxWidth = free.w});
  EXPECT_GT(free.w, 100);
  EXPECT_EQ(roomy.w, free.w);
  EXPECT_EQ(roomy.h, free.h);
  EXPECT_TRUE(samePicture(drawnAt(5, kWords, {.size = 20, .maxWidth = 299}).get(),
                          drawnAt(5, kWords, {.size = 20}).get()));
}

TEST(Text, IsShrunkToFit) {
  const double room = 0.8 * measured(kWords, {.size = 20}).w;
  const Size shrunk = measured(kWords, {.size = 20, .maxWidth = room});
  const Size smaller = measured(kWords, {.size = 16});
  EXPECT_LE(shrunk.w, room);
  EXPECT_EQ(shrunk.w, smaller.w);
  EXPECT_EQ(shrunk.h, smaller.h);
}

TEST(Text, IsNeverShrunkBelowItsLeastScale) {
  const double width = measured(kWords, {.size = 20}).w;
  const ui::TextStyle cramped = {.size = 20, .maxWidth = 0.5 * width, .minScale = 0.7};
  EXPECT_EQ(measured(kWords, cramped).w, measured(kWords, {.size = 14}).w);
  EXPECT_TRUE(samePicture(drawnAt(5, kWords, cramped).get(), drawnAt(5, kWords, {.size = 14}).get()));
}

// 0.6 * 12 pixels is no multiple of an eighth.
TEST(Text, HasExactlyItsLeastSizeWhereThatLiesBetweenTwoSteps) {
  for (const double size : {12.0, 13.0, 14.0, 17.0}) {
    const auto cramped = drawnAt(5, kWords, {.size = size, .maxWidth = 1});
    EXPECT_TRUE(samePicture(cramped.get(), drawnAt(5, kWords, {.size = 0.6 * size}).get())) << size;
    const double stepBelow = std::floor(0.6 * size * 8) / 8;
    EXPECT_FALSE(samePicture(cramped.get(), drawnAt(5, kWords, {.size = stepBelow}).get())) << size;
  }
}

// Labels shrunk to ever new sizes once made the font caches grow without limit.
TEST(Text, IsShrunkByEighthsOfAPixel) {
  const double width = measured(kWords, {.size = 20}).w;
  const auto shrunkTo = [&](double size) {
    return drawnAt(5, kWords, {.size = 20, .maxWidth = width * size / 20, .minScale = 0.1});
  };
  EXPECT_TRUE(samePicture(shrunkTo(16.12).get(), shrunkTo(16.01).get()));
  EXPECT_FALSE(samePicture(shrunkTo(16.13).get(), shrunkTo(16.01).get()));
}

TEST(Text, IsNotShrunkWithoutAMaximumWidth) {
  for (const double none : {0.0, -20.0})
    EXPECT_EQ(measured(kWords, {.size = 20, .maxWidth = none}).w, measured(kWords, {.size = 20}).w) << none;
}

TEST(Text, OfNoWidthIsDrawnUnscaled) {
  // A word joiner is invisible and has no width.
  const Size free = measured("\u2060", {.size = 20});
  const Size fitted = measured("\u2060", {.size = 20, .maxWidth = 0.1});
  EXPECT_EQ(free.w, 0);
  EXPECT_EQ(fitted.h, free.h);
}

TEST(Text, ThatIsEmptyDoesNotEvenNeedAContext) {
  ui::drawText(nullptr, 0, 0, "", {.size = 20});
  ui::drawTextCentered(nullptr, 0, 0, "", {.size = 20});
}

TEST(Text, ThatIsEmptyMeasuresOneLineOfNoWidth) {
  const Size empty = measured("", {.size = 20});
  EXPECT_EQ(empty.w, 0);
  EXPECT_EQ(empty.h, measured("X", {.size = 20}).h);
}

TEST(Text, OfNoSizeDrawsNothingAndLeavesTheContextWhole) {
  for (const double size : {0.0, -3.0}) {
    const auto picture = textPicture([size](cairo_t* cr) {
      ui::drawText(cr, 10, 10, kWords, {.size = size});
      ui::drawTextCentered(cr, 10, 10, kWords, {.size = size});
    });
    EXPECT_TRUE(isEmpty(picture.get(), kTextW, kTextH)) << size;
    EXPECT_EQ(measured(kWords, {.size = size}).w, 0) << size;
  }
}

TEST(Text, HangsOnItsLeftEdgeItsMiddleOrItsRightEdge) {
  const double width = measured(kWords, {.size = 20}).w;
  const auto left = drawnAt(40, kWords, {.size = 20});
  EXPECT_TRUE(samePicture(drawnAt(40 + width / 2, kWords, {.size = 20, .align = ui::Align::Center}).get(),
                          left.get()));
  EXPECT_TRUE(
      samePicture(drawnAt(40 + width, kWords, {.size = 20, .align = ui::Align::Right}).get(), left.get()));
}

TEST(Text, HasItsTopWhereItIsDrawn) {
  const Size size = measured("X", {.size = 40});
  const auto picture = textPicture([](cairo_t* cr) { ui::drawText(cr, 10, 20, "X", {.size = 40}); });
  int inside = 0;
  int outside = 0;
  for (int y = 0; y < kTextH; ++y) {
    for (int x = 0; x < kTextW; ++x) {
      if (alphaAt(picture.get(), x, y) > 0) ++(y >= 20 && y < 20 + size.h ? inside : outside);
    }
  }
  EXPECT_GT(inside, 0);
  EXPECT_EQ(outside, 0);
}

TEST(CentredText, HasItsMiddleThereWhateverItsAlignment) {
  const Size size = measured(kWords, {.size = 20});
  const auto expected = textPicture(
      [&](cairo_t* cr) { ui::drawText(cr, 150 - size.w / 2, 40 - size.h / 2, kWords, {.size = 20}); });
  for (const auto align : {ui::Align::Left, ui::Align::Center, ui::Align::Right}) {
    const auto seen = textPicture(
        [&](cairo_t* cr) { ui::drawTextCentered(cr, 150, 40, kWords, {.size = 20, .align = align}); });
    EXPECT_TRUE(samePicture(seen.get(), expected.get())) << static_cast<int>(align);
  }
}

TEST(CentredText, IsShrunkToFitToo) {
  const double width = measured(kWords, {.size = 20}).w;
  const auto centred = [](const ui::TextStyle& style) {
    return textPicture([&](cairo_t* cr) { ui::drawTextCentered(cr, 150, 40, kWords, style); });
  };
  const auto seen = centred({.size = 20, .maxWidth = width / 2, .minScale = 0.7});
  EXPECT_TRUE(samePicture(seen.get(), centred({.size = 14}).get()));
}

TEST(TextPath, OutlinesTheLettersWhereTheyAreDrawn) {
  const ui::TextStyle style{.size = 40, .maxWidth = 0.8 * measured("XX", {.size = 40}).w};
  const ui::CairoSurface recording(cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, nullptr));
  const ui::CairoContext cr(cairo_create(recording.get()));
  ui::drawTextCentered(cr.get(), 150, 40, "XX", style);
  ui::Rect ink;
  cairo_recording_surface_ink_extents(recording.get(), &ink.x, &ink.y, &ink.w, &ink.h);

  ui::textPathCentered(cr.get(), 150, 40, "XX", style);
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
  cairo_fill_extents(cr.get(), &left, &top, &right, &bottom);
  EXPECT_GT(right - left, 30);
  EXPECT_NEAR(left, ink.x, 1.5);
  EXPECT_NEAR(top, ink.y, 1.5);
  EXPECT_NEAR(right, ink.x + ink.w, 1.5);
  EXPECT_NEAR(bottom, ink.y + ink.h, 1.5);
}

TEST(TextPath, OfNothingIsNoPath) {
  textPicture([](cairo_t* cr) {
    ui::textPathCentered(cr, 150, 40, "", {.size = 20});
    ui::textPathCentered(cr, 150, 40, kWords, {.size = 0});
    EXPECT_FALSE(cairo_has_current_point(cr));
  });
}

TEST(Text, HasItsColourAndOpacity) {
  const auto picture = textPicture(
      [](cairo_t* cr) { ui::drawText(cr, 10, 0, "\u2588", {.size = 40, .color = 0xFF0000, .alpha = 0.4}); });
  EXPECT_EQ(pixelAt(picture.get(), 20, 25), 0x66660000U);
}

TEST(Text, TellsItsStylesApartFromOneDrawingToTheNext) {
  // All in one context, one after another, like the labels of a screen.
  const ui::TextStyle kStyles[] = {{.size = 20},
                                   {.size = 20, .bold = true},
                                   {.size = 20, .italic = true},
                                   {.size = 21},
                                   {.family = "DejaVu Serif", .size = 20},
                                   {.size = 20}};
  makePicture(8, 8, [&](cairo_t* cr) {
    for (const ui::TextStyle& style : kStyles) {
      Size size;
      ui::measureText(cr, kWords, style, size.w, size.h);
      const Size alone = measured(kWords, style);
      EXPECT_EQ(size.w, alone.w) << style.family << style.size << style.bold << style.italic;
      EXPECT_EQ(size.h, alone.h) << style.family << style.size << style.bold << style.italic;
    }
  });
  EXPECT_GT(measured(kWords, kStyles[1]).w, measured(kWords, kStyles[0]).w);
  EXPECT_NE(measured(kWords, kStyles[4]).w, measured(kWords, kStyles[0]).w);
  EXPECT_FALSE(samePicture(drawnAt(5, kWords, kStyles[2]).get(), drawnAt(5, kWords, kStyles[0]).get()));
}

TEST(Text, DoesNotRememberATextThatWasLonger) {
  makePicture(8, 8, [](cairo_t* cr) {
    Size size;
    ui::measureText(cr, kWords, {.size = 20}, size.w, size.h);
    ui::measureText(cr, std::string_view(kWords).substr(0, 4), {.size = 20}, size.w, size.h);
    EXPECT_EQ(size.w, measured("Mahj", {.size = 20}).w);
  });
}

// --- wrapped text ---

const std::string kSentence = "Every tile that is taken off the table frees the ones below and beside it.";

ui::CairoSurface wrapped(double width, std::string_view text, const ui::TextStyle& style) {
  return makePicture(kTextW, 200, [&](cairo_t* cr) { ui::drawWrappedText(cr, 50, 10, width, text, style); });
}

double wrappedHeight(double width, std::string_view text, const ui::TextStyle& style) {
  double height = 0;
  makePicture(8, 8, [&](cairo_t* cr) { height = ui::wrappedTextHeight(cr, width, text, style); });
  return height;
}

// The first column with ink and the one after the last, above row `end`.
std::pair<int, int> inkedColumns(cairo_surface_t* picture, int end) {
  std::pair<int, int> columns(kTextW, 0);
  for (int x = 0; x < kTextW; ++x) {
    for (int y = 0; y < end; ++y) {
      if (pixelAt(picture, x, y) != kClear) columns = {std::min(columns.first, x), x + 1};
    }
  }
  return columns;
}

TEST(WrappedText, StaysWithinItsColumn) {
  const auto [left, right] = inkedColumns(wrapped(180, kSentence, {.size = 14}).get(), 200);
  EXPECT_GE(left, 49);
  EXPECT_LE(right, 50 + 180 + 1);
  EXPECT_GT(right, 50 + 120);
}

TEST(WrappedText, IsAsHighAsItsLines) {
  const double line = measured("x", {.size = 14}).h;
  EXPECT_EQ(wrappedHeight(1000, kSentence, {.size = 14}), line);
  EXPECT_NEAR(wrappedHeight(measured(kSentence, {.size = 14}).w * 0.6, kSentence, {.size = 14}), 2 * line, 1);
  EXPECT_GT(wrappedHeight(90, kSentence, {.size = 14}), 5 * line);
}

TEST(WrappedText, BreaksAWordThatIsWiderThanItsColumn) {
  for (const double width : {60.0, 1.0, 0.0, -20.0}) {
    EXPECT_GT(wrappedHeight(width, "Incomprehensibilities", {.size = 14}), 40) << width;
  }
  const auto [left, right] = inkedColumns(wrapped(60, "Incomprehensibilities", {.size = 14}).get(), 200);
  EXPECT_LE(right, 50 + 60 + 1);
}

TEST(WrappedText, LiesInItsColumnAsItsStyleSays) {
  const std::string one = "Tile";
  const double room = 180 - measured(one, {.size = 14}).w;
  const auto leftOf = [&](ui::Align align) {
    return inkedColumns(wrapped(180, one, {.size = 14, .align = align}).get(), 200).first;
  };
  const int left = leftOf(ui::Align::Left);
  EXPECT_NEAR(leftOf(ui::Align::Center), left + room / 2, 1.5);
  EXPECT_NEAR(leftOf(ui::Align::Right), left + room, 1.5);
}

TEST(WrappedText, LiesAsItsStyleSaysAlsoWhereItRunsFromRightToLeft) {
  const std::string hebrew = "אבן";
  const double room = 180 - measured(hebrew, {.size = 14}).w;
  const auto leftOf = [&](ui::Align align) {
    return inkedColumns(wrapped(180, hebrew, {.size = 14, .align = align}).get(), 200).first;
  };
  const int left = leftOf(ui::Align::Left);
  EXPECT_NEAR(left, 50, 2);
  EXPECT_NEAR(leftOf(ui::Align::Right), left + room, 1.5);
}

TEST(WrappedText, IsNothingWithoutLettersOrASize) {
  EXPECT_TRUE(isEmpty(wrapped(180, "", {.size = 14}).get(), kTextW, 200));
  EXPECT_TRUE(isEmpty(wrapped(180, kSentence, {.size = 0}).get(), kTextW, 200));
  EXPECT_EQ(wrappedHeight(180, "", {.size = 14}), 0);
  EXPECT_EQ(wrappedHeight(180, kSentence, {.size = -1}), 0);
}

TEST(WrappedText, LeavesTextsOfOneLineUnbroken) {
  const auto before = drawnAt(5, kSentence, {.size = 20});
  wrapped(60, kSentence, {.size = 20});
  EXPECT_TRUE(samePicture(drawnAt(5, kSentence, {.size = 20}).get(), before.get()));
}

// --- text in several contexts ---

// Small letters, because rounding to device pixels affects them most.
double widthAtScale(cairo_t* cr, double scale) {
  Size size;
  cairo_save(cr);
  cairo_scale(cr, scale, scale);
  ui::measureText(cr, "Millimetre sticks", {.size = 9.3}, size.w, size.h);
  cairo_restore(cr);
  return size.w;
}

class TextContexts : public testing::Test {
 protected:
  ui::CairoContext make() const { return ui::CairoContext(cairo_create(picture_.get())); }

 private:
  ui::CairoSurface picture_ = makePicture(8, 8);
};

TEST_F(TextContexts, AreLaidOutForAnewWhenTheirScaleChanges) {
  const ui::CairoContext fresh = make();
  const double expected = widthAtScale(fresh.get(), 3);
  const ui::CairoContext scaled = make();
  ASSERT_NE(widthAtScale(scaled.get(), 1), expected);
  EXPECT_EQ(widthAtScale(scaled.get(), 3), expected);
}

TEST_F(TextContexts, AreToldApartWhenOneLiesWhereAnotherLay) {
  const ui::CairoContext fresh = make();
  const double expected = widthAtScale(fresh.get(), 3);
  ASSERT_NE(widthAtScale(make().get(), 1), expected);
  EXPECT_EQ(widthAtScale(make().get(), 3), expected);
}

TEST_F(TextContexts, MayTakeTurns) {
  const ui::CairoContext one = make();
  const ui::CairoContext other = make();
  const double small = widthAtScale(one.get(), 1);
  const double large = widthAtScale(other.get(), 3);
  EXPECT_EQ(widthAtScale(one.get(), 1), small);
  EXPECT_EQ(widthAtScale(other.get(), 3), large);
}

}  // namespace
