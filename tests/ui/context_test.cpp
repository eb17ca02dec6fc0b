#include "ui/context.h"

#include <gtest/gtest.h>

namespace {

constexpr ui::Rect kButton = {10, 20, 100, 40};

ui::Ctx mouseAt(double x, double y) {
  ui::Ctx ctx;
  ctx.in.mx = x;
  ctx.in.my = y;
  return ctx;
}

ui::Ctx clickAt(double x, double y) {
  ui::Ctx ctx = mouseAt(x, y);
  ctx.in.clicked = true;
  return ctx;
}

TEST(Rect, HoldsItsLeftAndTopEdgeButNotItsRightAndBottom) {
  EXPECT_TRUE(kButton.contains(10, 20));
  EXPECT_TRUE(kButton.contains(109.999, 59.999));
  EXPECT_FALSE(kButton.contains(110, 30));
  EXPECT_FALSE(kButton.contains(50, 60));
  EXPECT_FALSE(kButton.contains(9.999, 30));
  EXPECT_FALSE(kButton.contains(50, 19.999));
}

TEST(Rect, WithoutWidthOrHeightHoldsNothing) {
  EXPECT_FALSE((ui::Rect{10, 20, 0, 40}).contains(10, 20));
  EXPECT_FALSE((ui::Rect{10, 20, 100, 0}).contains(10, 20));
}

TEST(TakeClick, OnTheRightOrBottomEdgeIsOutside) {
  EXPECT_TRUE(clickAt(10, 20).takeClick(kButton));
  EXPECT_FALSE(clickAt(110, 30).takeClick(kButton));
  EXPECT_FALSE(clickAt(50, 60).takeClick(kButton));
}

TEST(TakeClick, OnlyTheFirstOfTwoOverlappingButtonsGetsIt) {
  ui::Ctx ctx = clickAt(50, 30);
  const ui::Rect over = {40, 25, 100, 40};
  EXPECT_TRUE(ctx.takeClick(kButton));
  EXPECT_TRUE(ctx.clickTaken);
  EXPECT_FALSE(ctx.takeClick(over));
  EXPECT_FALSE(ctx.takeClick(kButton));
}

TEST(TakeClick, MissedButtonLeavesTheClickToTheNext) {
  ui::Ctx ctx = clickAt(50, 30);
  EXPECT_FALSE(ctx.takeClick({200, 200, 10, 10}));
  EXPECT_FALSE(ctx.clickTaken);
  EXPECT_TRUE(ctx.takeClick(kButton));
}

TEST(TakeClick, NeedsAReleasedLeftButton) {
  ui::Ctx ctx = mouseAt(50, 30);
  ctx.in.pressed = ctx.in.down = ctx.in.rightClicked = true;
  EXPECT_FALSE(ctx.takeClick(kButton));
  EXPECT_FALSE(ctx.clickTaken);
}

TEST(Hover, IsTrueForBothOfTwoOverlappingButtonsAndAfterTheClickIsTaken) {
  ui::Ctx ctx = clickAt(50, 30);
  const ui::Rect over = {40, 25, 100, 40};
  ctx.takeClick(kButton);
  EXPECT_TRUE(ctx.hover(kButton));
  EXPECT_TRUE(ctx.hover(over));
  EXPECT_FALSE(ctx.hover({50, 31, 10, 10}));
}

TEST(TakeRightClick, IsReportedToBothOfTwoOverlappingButtons) {
  ui::Ctx ctx = mouseAt(50, 30);
  ctx.in.rightClicked = true;
  EXPECT_TRUE(ctx.takeRightClick(kButton));
  EXPECT_TRUE(ctx.takeRightClick({40, 25, 100, 40}));
  EXPECT_FALSE(ctx.takeRightClick({60, 25, 100, 40}));
  EXPECT_FALSE(ctx.clickTaken);
}

TEST(TakeRightClick, DoesNotLookWhetherTheLeftClickIsTaken) {
  ui::Ctx ctx = clickAt(50, 30);
  EXPECT_FALSE(ctx.takeRightClick(kButton));
  ctx.in.rightClicked = true;
  ctx.takeClick(kButton);
  EXPECT_TRUE(ctx.takeRightClick(kButton));
}

TEST(HasKey, FindsAnyKeyOfTheFrame) {
  ui::Input in;
  EXPECT_FALSE(in.hasKey('h'));
  in.keys = {'m', 'h', 'h'};
  EXPECT_TRUE(in.hasKey('h'));
  EXPECT_TRUE(in.hasKey('m'));
  EXPECT_FALSE(in.hasKey('u'));
}

TEST(HasFreshKey, FindsAKeyThatWasPressedAnew) {
  ui::Input in;
  in.keys = {'m', 'h', 'h'};
  in.freshKeys = {'h'};
  EXPECT_TRUE(in.hasFreshKey('h'));
  EXPECT_FALSE(in.hasFreshKey('m'));
}

}  // namespace
