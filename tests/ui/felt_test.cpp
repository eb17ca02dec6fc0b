#include "ui/felt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "support/gpu_window.h"
#include "support/picture.h"
#include "ui/board_scenes.h"
#include "ui/gpu.h"

namespace {

using support::GpuWindow;
using support::makePicture;
using support::pixelAt;
using support::samePicture;
using test::isCached;

const mj::TableTheme* jade() { return mj::tableThemeForStage(0); }

ui::Ctx contextOf(cairo_t* cr, double w, double h) {
  ui::Ctx ctx;
  ctx.cr = cr;
  ctx.w = w;
  ctx.h = h;
  return ctx;
}

// The felt painted with cairo, as without a renderer.
ui::CairoSurface felt(int w, int h, const mj::TableTheme* theme, bool ornate) {
  ui::gpuShutdown();
  return makePicture(w, h, [&](cairo_t* cr) { ui::drawFelt(contextOf(cr, w, h), theme, ornate); });
}

// Draws the felt through the texture cache. The window's size is in logical pixels.
void drawInWindow(double w, double h, const mj::TableTheme* theme, bool ornate) {
  ui::drawFelt(contextOf(nullptr, w, h), theme, ornate);
}

// --- measures ---

TEST(FeltFrame, KeepsItsDistanceFromTheWindowsEdge) {
  EXPECT_EQ(ui::feltFrameMargin(1000, 700), 25);  // 24.5, rounded
  EXPECT_EQ(ui::feltFrameMargin(700, 1000), 25);
  EXPECT_EQ(ui::feltFrameMargin(342, 2000), 12);
  EXPECT_EQ(ui::feltFrameMargin(10, 10), 12);
  EXPECT_EQ(ui::feltFrameMargin(345, 2000), 12);  // 12.075
  EXPECT_EQ(ui::feltFrameMargin(358, 2000), 13);  // 12.53
  EXPECT_EQ(ui::feltFrameMargin(3840, 2160), 28);
}

TEST(FeltFrame, HasKeysThatGrowWithTheWindow) {
  EXPECT_EQ(ui::feltCornerSize(1000, 700), 34);  // 35, clamped
  EXPECT_EQ(ui::feltCornerSize(320, 900), 16);
  EXPECT_EQ(ui::feltCornerSize(10, 10), 16);
  EXPECT_EQ(ui::feltCornerSize(900, 332), 17);  // 16.6
  EXPECT_EQ(ui::feltCornerSize(500, 600), 25);
}

// --- the cloth ---

using Colour = std::array<double, 3>;

Colour colourOf(std::uint32_t color) {
  return {static_cast<double>((color >> 16) & 0xFFU), static_cast<double>((color >> 8) & 0xFFU),
          static_cast<double>(color & 0xFFU)};
}

Colour mix(const Colour& from, const Colour& to, double part) {
  Colour mixed{};
  for (std::size_t i = 0; i < mixed.size(); ++i) mixed[i] = from[i] + (to[i] - from[i]) * part;
  return mixed;
}

// The plain felt's colour at a point, computed without cairo.
Colour feltColour(const mj::TableTheme& theme, double w, double h, double x, double y) {
  const double down = y / h;
  const Colour cloth = down < 0.5 ? mix(colourOf(theme.top), colourOf(theme.middle), down / 0.5)
                                  : mix(colourOf(theme.middle), colourOf(theme.bottom), (down - 0.5) / 0.5);
  const double fromLight = std::min(1.0, std::hypot(x - w / 2, y - 0.3 * h) / (0.75 * std::max(w, h)));
  const Colour lit = mix(cloth, colourOf(theme.glow), 0.35 * (1 - fromLight));
  const double fromMiddle = std::min(1.0, std::hypot(x - w / 2, y - h / 2) / (0.78 * std::max(w, h)));
  return mix(lit, colourOf(theme.vignette), 0.8 * std::max(0.0, (fromMiddle - 0.55) / 0.45));
}

// Expects the colour of plain felt of w × h at one pixel of the picture.
void expectFelt(cairo_surface_t* picture, const mj::TableTheme& theme, int w, int h, int x, int y) {
  const Colour expected = feltColour(theme, w, h, x + 0.5, y + 0.5);
  const std::uint32_t pixel = pixelAt(picture, x, y);
  const Colour seen = colourOf(pixel);
  EXPECT_EQ(pixel >> 24, 0xFFU) << x << ' ' << y;
  for (std::size_t i = 0; i < seen.size(); ++i) EXPECT_NEAR(seen[i], expected[i], 2) << x << ' ' << y;
}

TEST(Felt, RunsFromTheTopColourOverTheMiddleToTheBottomOneUnderItsLight) {
  const auto picture = felt(1000, 700, jade(), false);
  for (const int y : {0, 100, 210, 349, 350, 500, 699}) expectFelt(picture.get(), *jade(), 1000, 700, 500, y);
}

TEST(Felt, DarkensTowardsItsCorners) {
  for (int stage = 0; stage < 10; ++stage) {
    const mj::TableTheme* theme = mj::tableThemeForStage(stage);
    const auto picture = felt(320, 200, theme, false);
    SCOPED_TRACE(theme->name);
    for (const int x : {0, 20, 160, 319})
      for (const int y : {0, 30, 100, 199}) expectFelt(picture.get(), *theme, 320, 200, x, y);
  }
}

TEST(Felt, WithoutAThemeIsTheFirstStagesAndNeverOrnate) {
  const auto plain = felt(400, 300, jade(), false);
  EXPECT_TRUE(samePicture(felt(400, 300, nullptr, false).get(), plain.get()));
  EXPECT_TRUE(samePicture(felt(400, 300, nullptr, true).get(), plain.get()));
  EXPECT_FALSE(samePicture(felt(400, 300, jade(), true).get(), plain.get()));
}

TEST(Felt, LooksAsItAlwaysDid) {
  EXPECT_TRUE(support::looksLike(felt(1000, 700, jade(), true).get(), "felt_jade_ornate"));
  EXPECT_TRUE(support::looksLike(felt(240, 180, mj::tableThemeForStage(1), true).get(), "felt_red_small"));
}

// --- the ornament ---

TEST(FeltOrnament, IsLeftOutWhereThereIsNoRoom) {
  EXPECT_TRUE(samePicture(felt(104, 400, jade(), true).get(), felt(104, 400, jade(), false).get()));
  EXPECT_TRUE(samePicture(felt(400, 104, jade(), true).get(), felt(400, 104, jade(), false).get()));
  EXPECT_FALSE(samePicture(felt(105, 400, jade(), true).get(), felt(105, 400, jade(), false).get()));
  EXPECT_FALSE(samePicture(felt(400, 105, jade(), true).get(), felt(400, 105, jade(), false).get()));
}

// How strongly the gold shows on each pixel.
class Gold {
 public:
  Gold(int w, int h) : plain_(felt(w, h, jade(), false)), ornate_(felt(w, h, jade(), true)) {}
  int at(int x, int y) const {
    return support::channelDifference(pixelAt(plain_.get(), x, y), pixelAt(ornate_.get(), x, y));
  }

 private:
  ui::CairoSurface plain_;
  ui::CairoSurface ornate_;
};

TEST(FeltOrnament, IsTheSameInAllFourCorners) {
  constexpr int kW = 500;
  constexpr int kH = 400;
  const Gold gold(kW, kH);
  for (int y = 0; y < kH / 2; ++y) {
    for (int x = 0; x < kW / 2; ++x) {
      // Gold stands out more on darker cloth, so the match is only exact from left to right.
      ASSERT_NEAR(gold.at(x, y), gold.at(kW - 1 - x, y), 3) << x << ' ' << y;
      ASSERT_EQ(gold.at(x, y) > 20, gold.at(x, kH - 1 - y) > 20) << x << ' ' << y;
    }
  }
}

TEST(FeltOrnament, HasTwoFramesAndAKeyInEachCorner) {
  const Gold gold(1000, 700);
  EXPECT_GT(gold.at(500, 24), 60);  // the frame's line, 2 wide about y = 25
  EXPECT_GT(gold.at(500, 25), 60);
  EXPECT_EQ(gold.at(500, 27), 0);
  EXPECT_GT(gold.at(500, 31), 15);  // the inner line, 1 wide about y = 31
  EXPECT_EQ(gold.at(500, 34), 0);
  // The key begins at (34, 34) and is 34 large. It runs down its left side, along its top, and inwards to its
  // end at (47.6, 45.6).
  EXPECT_GT(gold.at(34, 67), 80);
  EXPECT_GT(gold.at(60, 34), 80);
  EXPECT_GT(gold.at(67, 50), 80);
  EXPECT_GT(gold.at(58, 55), 80);
  EXPECT_GT(gold.at(47, 47), 80);
  EXPECT_EQ(gold.at(58, 46), 0);
  EXPECT_EQ(gold.at(75, 75), 0);
}

// --- the cached picture ---

TEST(FeltTexture, ShowsWhatCairoPaints) {
  const auto painted = felt(300, 220, jade(), true);
  const GpuWindow window(300, 220);
  drawInWindow(300, 220, jade(), true);
  EXPECT_TRUE(samePicture(window.picture().get(), painted.get()));
}

TEST(FeltTexture, IsOneCopyAFrame) {
  const GpuWindow window(300, 220);
  ui::gpuBeginFrame();
  drawInWindow(300, 220, jade(), true);
  EXPECT_EQ(ui::gpuDrawCalls(), 1);
}

TEST(FeltTexture, IsKeptByThemeOrnamentAndSize) {
  const GpuWindow window(300, 220);
  drawInWindow(300, 220, jade(), true);
  EXPECT_TRUE(isCached("felt|jade|orn|300x220", 300, 220));
  EXPECT_FALSE(isCached("felt|jade|300x220", 300, 220));
  drawInWindow(300, 220, mj::tableThemeForStage(3), false);
  EXPECT_TRUE(isCached("felt|violet|300x220", 300, 220));
}

TEST(FeltTexture, WithoutAThemeIsNeverKeptAsOrnate) {
  const GpuWindow window(300, 220);
  drawInWindow(300, 220, nullptr, true);
  EXPECT_TRUE(isCached("felt|jade|300x220", 300, 220));
  EXPECT_FALSE(isCached("felt|jade|orn|300x220", 300, 220));
}

TEST(FeltTexture, IsPaintedAnewForEachSizeAndOnlyOneSizeIsKept) {
  const GpuWindow window(300, 220);
  drawInWindow(300, 220, jade(), true);
  drawInWindow(300, 220, mj::tableThemeForStage(1), false);
  drawInWindow(300, 219, jade(), true);
  EXPECT_TRUE(isCached("felt|jade|orn|300x219", 300, 219));
  EXPECT_FALSE(isCached("felt|jade|orn|300x220", 300, 220));
  EXPECT_FALSE(isCached("felt|imperialRed|300x220", 300, 220));
}

TEST(FeltTexture, OfASizeThatOnlyEndsAlikeIsDroppedToo) {
  const GpuWindow window(300, 220);
  drawInWindow(1300, 220, jade(), true);
  drawInWindow(300, 220, jade(), true);
  EXPECT_FALSE(isCached("felt|jade|orn|1300x220", 1300, 220));
}

// Each picture is as large as the window: those of the current screen and the one below it are enough.
TEST(FeltTexture, IsKeptBesideTheOneBeforeAlone) {
  const GpuWindow window(300, 220);
  const auto show = [](int stage) { drawInWindow(300, 220, mj::tableThemeForStage(stage), true); };
  const auto isKept = [](int stage) {
    return isCached("felt|" + std::string(mj::tableThemeForStage(stage)->name) + "|orn|300x220", 300, 220);
  };
  for (const int stage : {0, 1, 0, 1, 1}) show(stage);
  EXPECT_TRUE(isKept(0));
  EXPECT_TRUE(isKept(1));
  show(2);
  EXPECT_FALSE(isKept(0));
  EXPECT_TRUE(isKept(1));
  EXPECT_TRUE(isKept(2));
  show(1);
  show(3);
  EXPECT_FALSE(isKept(2));
  EXPECT_TRUE(isKept(1));
}

TEST(FeltTexture, CoversEveryPixelAtFractionalScales) {
  for (const double scale : {1.25, 1.5, 1.75, 301.0 / 240}) {
    GpuWindow window(301, 221);
    ui::gpuSetScale(scale);
    window.clear(0xFF00FF);
    drawInWindow(301 / scale, 221 / scale, jade(), false);
    EXPECT_TRUE(isCached("felt|jade|301x221", 301, 221)) << scale;
    const auto seen = window.picture();
    SCOPED_TRACE(scale);
    for (const auto& [x, y] : {std::pair{300, 110}, {150, 220}, {300, 220}, {0, 220}, {300, 0}})
      expectFelt(seen.get(), *jade(), 301, 221, x, y);
  }
}

TEST(FeltTexture, FallsBackOnCairoWhenItCannotBeMade) {
  const GpuWindow window(50, 50);
  // Wider than a cairo image can be.
  const auto picture =
      makePicture(50, 50, [](cairo_t* cr) { ui::drawFelt(contextOf(cr, 40000, 50), jade(), false); });
  expectFelt(picture.get(), *jade(), 40000, 50, 25, 25);
}

}  // namespace
