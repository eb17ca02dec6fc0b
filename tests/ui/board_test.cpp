#include "ui/board.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>
#include <string>
#include <vector>

#include "rules/boards.h"
#include "rules/levels.h"
#include "support/glyph_font.h"
#include "support/gpu_window.h"
#include "support/picture.h"
#include "ui/board_fx.h"
#include "ui/board_scenes.h"
#include "ui/draw.h"
#include "ui/gpu.h"
#include "ui/tile.h"

namespace {

using support::channelDifference;
using support::GpuWindow;
using support::looksLike;
using support::pixelAt;
using support::samePicture;
using test::expectRect;
using test::Frame;
using test::Ink;
using test::inkOf;
using test::isCached;
using test::opacityOf;
using test::paintScene;
using test::Path;

// A layout with the same face on every tile.
mj::GameState boardAt(const std::vector<std::array<int, 3>>& places, const std::string& face = "dot1") {
  mj::GameState game;
  game.slots = test::layoutAt(places);
  game.faces.assign(game.slots.size(), face);
  return game;
}

// Four tiles with a fifth on top of their common corner.
mj::GameState smallHeap() { return boardAt({{0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {2, 2, 0}, {1, 1, 1}}); }

ui::BoardGeom geometryOf(const mj::GameState& game, const ui::Rect& rect,
                         ui::FitMode fit = ui::FitMode::Contain) {
  return ui::boardGeometry(game.slots, rect, fit);
}

ui::CairoSurface board(Path path, const Frame& frame, const mj::GameState& game, const ui::Rect& rect,
                       const ui::BoardOpts& opts = {}, ui::BoardFx* fx = nullptr) {
  return paintScene(path, frame, [&](ui::Ctx& ctx) { ui::drawBoard(ctx, game, rect, opts, fx); });
}

// A fly-in that began at time 0, with these take-off delays by slot id.
ui::BoardFx flyIn(const std::vector<double>& delays) {
  ui::BoardFx fx;
  fx.introActive = true;
  fx.delays = delays;
  fx.introEnd = 100;
  return fx;
}

// --- geometry ---

TEST(BoardGeometry, FitsTheWholeHeapWithShiftedLayers) {
  const ui::BoardGeom geom = geometryOf(smallHeap(), {10, 20, 300, 300});
  EXPECT_EQ(geom.tileW, 102);  // 300 / (1.34 * 2.18) = 102.69
  EXPECT_EQ(geom.tileH, 137);
  EXPECT_NEAR(geom.layerDx, 12.24, 1e-9);
  EXPECT_NEAR(geom.layerDy, 24.66, 1e-9);
  EXPECT_NEAR(geom.offX, 12.24, 1e-9);
  EXPECT_NEAR(geom.offY, 24.66, 1e-9);
  EXPECT_NEAR(geom.originX, 51.88, 1e-9);
  EXPECT_NEAR(geom.originY, 20.67, 1e-9);
  EXPECT_EQ(geom.layers, 2);
}

TEST(BoardGeometry, FillsTheRectangleInItsTighterDirectionToCover) {
  const ui::BoardGeom geom = geometryOf(smallHeap(), {10, 20, 300, 300}, ui::FitMode::Cover);
  EXPECT_EQ(geom.tileW, 141);  // 300 / 2.12 = 141.5
  EXPECT_EQ(geom.tileH, 189);
  EXPECT_NEAR(geom.originX, 10 + (300 - 298.92) / 2, 1e-9);
  EXPECT_NEAR(geom.originY, 20 + (300 - 412.02) / 2, 1e-9);
}

TEST(BoardGeometry, IsBoundByTheWidthOfAWideBoard) {
  const ui::BoardGeom geom = geometryOf(boardAt({{0, 0, 0}, {18, 0, 0}}), {0, 0, 505, 505});
  EXPECT_EQ(geom.tileW, 50);
  EXPECT_EQ(geom.tileH, 67);
  EXPECT_EQ(geom.originX, 2.5);
  EXPECT_EQ(geom.originY, 219);
}

TEST(BoardGeometry, PlacesHigherLayersUpAndToTheLeft) {
  const mj::GameState game = smallHeap();
  const ui::BoardGeom geom = geometryOf(game, {10, 20, 300, 300});
  expectRect(geom.place(game.slots[0]), 64.12, 45.33, 102, 137);
  expectRect(geom.place(game.slots[3]), 166.12, 182.33, 102, 137);
  expectRect(geom.place(game.slots[4]), 51.88 + 51, 20.67 + 68.5, 102, 137);
}

TEST(BoardGeometry, StartsAtTheSmallestCoordinatesWhereverTheyLie) {
  const mj::GameState game = boardAt({{-6, 8, 0}, {-4, 8, 0}});
  const ui::BoardGeom geom = geometryOf(game, {0, 0, 101, 68});
  EXPECT_EQ(geom.minX, -6);
  EXPECT_EQ(geom.minY, 8);
  expectRect(geom.place(game.slots[0]), 0.5, 0.5, 50, 67);
  expectRect(geom.place(game.slots[1]), 50.5, 0.5, 50, 67);
}

TEST(BoardGeometry, HoldsTilesAtSixByEightAndStillCentresThem) {
  for (const double side : {20.0, 12.0, 1.0}) {
    const ui::BoardGeom geom = geometryOf(smallHeap(), {100, 200, side, side});
    EXPECT_EQ(geom.tileW, 6) << side;
    EXPECT_EQ(geom.tileH, 8) << side;
    EXPECT_NEAR(geom.layerDx, 0.72, 1e-12) << side;
    EXPECT_NEAR(geom.layerDy, 1.44, 1e-12) << side;
    EXPECT_NEAR(geom.originX, 100 + (side - 12.72) / 2, 1e-9) << side;
    EXPECT_NEAR(geom.originY, 200 + (side - 17.44) / 2, 1e-9) << side;
  }
  EXPECT_EQ(geometryOf(smallHeap(), {0, 0, 21, 21}).tileW, 7);  // 21 / 2.9212 = 7.19
}

TEST(BoardGeometry, OfNoSlotsIsAllZeroWithOneLayer) {
  const ui::BoardGeom geom = ui::boardGeometry({}, {10, 20, 300, 300}, ui::FitMode::Contain);
  for (const double value :
       {geom.tileW, geom.tileH, geom.layerDx, geom.layerDy, geom.originX, geom.originY, geom.offX, geom.offY})
    EXPECT_EQ(value, 0);
  EXPECT_EQ(geom.minX, 0);
  EXPECT_EQ(geom.minY, 0);
  EXPECT_EQ(geom.layers, 1);
}

TEST(PaintOrder, GoesByLayerThenRowThenColumn) {
  const mj::GameState game = boardAt({{1, 1, 1}, {2, 2, 0}, {0, 2, 0}, {-2, 0, 1}, {4, 0, 0}, {-2, 0, 0}});
  EXPECT_EQ(ui::paintOrder(game), (std::vector<int>{5, 4, 2, 1, 3, 0}));
}

TEST(PaintOrder, LeavesOutTilesThatAreGone) {
  mj::GameState game = smallHeap();
  game.faces[1].clear();
  game.faces[4].clear();
  EXPECT_EQ(ui::paintOrder(game), (std::vector<int>{0, 2, 3}));
}

TEST(TextureQuality, GoesInHalvesFromOneToThree) {
  EXPECT_EQ(ui::textureQuality(1.2), 1.5);
  EXPECT_EQ(ui::textureQuality(0.5), 1);
  EXPECT_EQ(ui::textureQuality(4), 3);
  EXPECT_EQ(ui::textureQuality(1), 1);
  EXPECT_EQ(ui::textureQuality(1.5), 1.5);
  EXPECT_EQ(ui::textureQuality(1.51), 2);
  EXPECT_EQ(ui::textureQuality(3), 3);
}

TEST(BoardView, ZoomsAboutTheCentreAndPansAfterwards) {
  const ui::BoardView view({100, 200, 400, 300}, {.zoom = 2, .panX = 30, .panY = -20});
  expectRect(view.toScreen({300, 350, 10, 20}), 330, 330, 20, 40);
  expectRect(view.toScreen({310, 340, 10, 20}), 350, 310, 20, 40);
  EXPECT_NEAR(view.boardX(350), 310, 1e-12);
  EXPECT_NEAR(view.boardY(310), 340, 1e-12);
}

// --- hit test ---

// A flat row of two tiles of 50 x 67; the first begins at (0, 0).
const ui::Rect kRowRect{0, 0, 100, 67};
mj::GameState twoInARow() { return boardAt({{0, 0, 0}, {2, 0, 0}}); }

TEST(HitTest, HasLeftAndTopEdgesInsideAndRightAndBottomOnesOutside) {
  const mj::GameState game = twoInARow();
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, 0, 0), 0);
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, 49.99, 66.99), 0);
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, 50, 0), 1);
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, 100, 30), -1);
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, 30, 67), -1);
  EXPECT_EQ(ui::hitTestTile(game, kRowRect, {}, -0.01, 30), -1);
}

TEST(HitTest, FindsNothingOutsideTheBoardsRectangle) {
  const mj::GameState game = boardAt({{0, 0, 0}});
  const ui::Rect rect{100, 100, 4, 4};  // smaller than the one tile of 6 x 8
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 100, 100), 0);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 103.9, 103.9), 0);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 99.5, 102), -1);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 104, 102), -1);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 102, 104), -1);
}

TEST(HitTest, FindsNothingBetweenTheTiles) {
  EXPECT_EQ(ui::hitTestTile(boardAt({{0, 0, 0}, {4, 0, 0}}), {0, 0, 150, 67}, {}, 75, 30), -1);
  EXPECT_EQ(ui::hitTestTile({}, kRowRect, {}, 30, 30), -1);
}

TEST(HitTest, PassesThroughTilesThatAreGone) {
  mj::GameState game = smallHeap();
  const ui::Rect rect{10, 20, 300, 300};
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 160, 160), 4);
  game.faces[4].clear();
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 160, 160), 0);
}

TEST(HitTest, TakesTheHigherOfTwoStackedTiles) {
  // The upper tile is listed first, so that the order of the slots does not help.
  const mj::GameState game = boardAt({{0, 0, 1}, {0, 0, 0}});
  const ui::Rect rect{0, 0, 112, 158};
  const ui::BoardGeom geom = geometryOf(game, rect);
  const ui::Rect upper = geom.place(game.slots[0]);
  const ui::Rect lower = geom.place(game.slots[1]);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, upper.x + 50, upper.y + 70), 0);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, lower.x + lower.w - 1, lower.y + lower.h - 1), 1);
}

TEST(HitTest, TakesTheNextRowsTileWhereItCoversABevel) {
  const mj::GameState game = boardAt({{0, 0, 0}, {1, 1, 0}});
  const ui::Rect rect{0, 0, 150, 201};
  const ui::Rect first = geometryOf(game, rect).place(game.slots[0]);
  const double bevel = ui::tileBevel(first.w);
  const double onBottomStrip = first.y + first.h - bevel / 2;
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, first.x + 0.75 * first.w, onBottomStrip), 1);
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, first.x + 0.25 * first.w, onBottomStrip), 0);
}

TEST(HitTest, MapsThePointerBackThroughZoomAndPan) {
  const mj::GameState game = test::gameOf(20, 7);
  const ui::Rect rect{40, 30, 600, 420};
  const ui::BoardOpts zoomed{.zoom = 2.3, .panX = 41, .panY = -57};
  const ui::BoardView view(rect, zoomed);
  std::set<int> found;
  for (int row = 0; row < 420; row += 9) {
    for (int column = 0; column < 600; column += 9) {
      const double x = rect.x + column + 0.5;
      const double y = rect.y + row + 0.5;
      if (!rect.contains(view.screenX(x), view.screenY(y))) continue;
      const int expected = ui::hitTestTile(game, rect, {}, x, y);
      EXPECT_EQ(ui::hitTestTile(game, rect, zoomed, view.screenX(x), view.screenY(y)), expected)
          << x << ' ' << y;
      found.insert(expected);
    }
  }
  EXPECT_GT(found.size(), 10U);
}

TEST(HitTest, GoesByTheSameFitAsTheDrawing) {
  const mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}});
  const ui::Rect rect{0, 0, 100, 400};
  EXPECT_EQ(ui::hitTestTile(game, rect, {}, 25, 100), -1);
  EXPECT_EQ(ui::hitTestTile(game, rect, {.fit = ui::FitMode::Cover}, 25, 100), 0);
}

// --- drawing, on both paths ---

class BoardDrawing : public support::WithGlyphFont, public testing::WithParamInterface<Path> {
 protected:
  static bool textures() { return GetParam() == Path::Textures; }
};
INSTANTIATE_TEST_SUITE_P(By, BoardDrawing, testing::Values(Path::Cairo, Path::Textures), test::pathName);

// How much darker the veil may be on the texture path: what its own colour would lose if its opacity applied
// twice, 0.45 * 0.55 of its brightest channel 0x1C, and one for rounding.
constexpr int kDarkerVeil = 8;

const Frame kFrame{.w = 420, .h = 320, .time = 0.2};
const ui::Rect kRect{10, 10, 400, 300};

TEST_P(BoardDrawing, ShowsNothingOfABoardWithoutTiles) {
  mj::GameState taken = smallHeap();
  taken.faces.assign(5, "");
  mj::GameState facesWithoutSlots;
  facesWithoutSlots.faces = {"dot1", "dot1"};
  for (const mj::GameState& game : {mj::GameState{}, taken, facesWithoutSlots}) {
    EXPECT_TRUE(inkOf(board(GetParam(), kFrame, game, kRect).get()).empty());
    EXPECT_EQ(ui::hitTestTile(game, kRect, {}, 200, 150), -1);
  }
}

TEST_P(BoardDrawing, BearsFacesOfNoTile) {
  mj::GameState game = smallHeap();
  game.faces = {"joker", "wan12", "flower", "dragBlue", "dot0"};
  EXPECT_FALSE(inkOf(board(GetParam(), kFrame, game, kRect).get()).empty());
}

TEST_P(BoardDrawing, BearsARectangleWithoutRoom) {
  EXPECT_TRUE(inkOf(board(GetParam(), kFrame, smallHeap(), {50, 50, 0, 0}).get()).empty());
}

TEST_P(BoardDrawing, IgnoresIdsOfNoSlot) {
  const auto plain = board(GetParam(), kFrame, smallHeap(), kRect);
  const ui::BoardOpts opts{.hintIds = {-1, 99}, .pickA = 77, .pickB = -5, .mismatchA = 1000, .mismatchB = -2};
  EXPECT_TRUE(samePicture(board(GetParam(), kFrame, smallHeap(), kRect, opts).get(), plain.get()));
}

TEST_P(BoardDrawing, ShowsPickedTilesLikeTheGamesOwn) {
  mj::GameState game = smallHeap();
  const auto picked = board(GetParam(), kFrame, game, kRect, {.pickB = 4});
  EXPECT_TRUE(samePicture(board(GetParam(), kFrame, game, kRect, {.pickA = 4}).get(), picked.get()));
  game.selected = 4;
  EXPECT_TRUE(samePicture(board(GetParam(), kFrame, game, kRect).get(), picked.get()));
  game.selected = -1;
  EXPECT_FALSE(samePicture(board(GetParam(), kFrame, game, kRect).get(), picked.get(), 40));
}

TEST_P(BoardDrawing, VeilsBlockedTilesOnly) {
  const auto row = board(GetParam(), kFrame, boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}}, "windX"), kRect);
  const ui::Rect middle = {10 + 134, 10 + 61, 133, 178};  // 400 / 3 = 133.3
  const auto pixelIn = [&](int tile) {
    return pixelAt(row.get(), static_cast<int>(middle.x) + (tile - 1) * 133 + 60, 160);
  };
  EXPECT_EQ(pixelIn(0), 0xFFF5EEDCU);
  EXPECT_LE(channelDifference(pixelIn(1), 0xFF898F82U), textures() ? kDarkerVeil : 1);
  EXPECT_EQ(pixelIn(2), 0xFFF5EEDCU);
}

TEST_P(BoardDrawing, StaysInsideItsRectangle) {
  const ui::Rect rect{100, 80, 120, 90};
  const auto cover = board(GetParam(), kFrame, smallHeap(), rect, {.fit = ui::FitMode::Cover, .zoom = 3});
  const Ink ink = inkOf(cover.get());
  EXPECT_EQ(ink.left, 100);
  EXPECT_EQ(ink.top, 80);
  EXPECT_EQ(ink.right, 220);
  EXPECT_EQ(ink.bottom, 170);
}

TEST_P(BoardDrawing, LeavesNoClipBehind) {
  const auto picture = paintScene(GetParam(), kFrame, [&](ui::Ctx& ctx) {
    ui::drawBoard(ctx, smallHeap(), {100, 80, 120, 90}, {.zoom = 2, .panX = 10}, nullptr);
    if (textures()) {
      EXPECT_EQ(SDL_RenderIsClipEnabled(ui::gpuRenderer()), SDL_FALSE);
      ui::gpuBlit(ui::tileTexture("", 30, 40, false), 350, 250, 30, 40, 1);
    } else {
      ui::fillRect(ctx.cr, {350, 250, 30, 40}, 0xF5EEDC, 1);
    }
  });
  EXPECT_EQ(pixelAt(picture.get(), 360, 265), 0xFFF5EEDCU);
}

TEST_P(BoardDrawing, LeavesOutTilesThatHaveNotTakenOff) {
  mj::GameState game = boardAt({{0, 0, 0}, {4, 0, 0}});
  ui::BoardFx fx = flyIn({0, 0.5});
  const Frame frame{.w = 420, .h = 320, .time = 0.49};
  const auto waiting = board(GetParam(), frame, game, kRect, {}, &fx);
  game.faces[1].clear();
  EXPECT_TRUE(samePicture(waiting.get(), board(GetParam(), frame, game, kRect, {}, &fx).get()));
  EXPECT_FALSE(inkOf(waiting.get()).empty());
}

TEST_P(BoardDrawing, ShowsALandedTileAsIfItHadNeverFlown) {
  ui::BoardFx fx = flyIn({0, 0.1, 0.2, 0.25, 0.3});
  const Frame landed{.w = 420, .h = 320, .time = 0.3 + ui::kFlightTime + 1e-9};
  EXPECT_TRUE(samePicture(board(GetParam(), landed, smallHeap(), kRect, {}, &fx).get(),
                          board(GetParam(), landed, smallHeap(), kRect).get()));
}

TEST_P(BoardDrawing, IgnoresDelaysOfAnIntroThatWasNotBegun) {
  ui::BoardFx fx = flyIn({50, 50, 50, 50, 50});
  fx.introActive = false;
  EXPECT_TRUE(samePicture(board(GetParam(), kFrame, smallHeap(), kRect, {}, &fx).get(),
                          board(GetParam(), kFrame, smallHeap(), kRect).get()));
}

TEST_P(BoardDrawing, ShowsNoOverlaysOnATileInFlight) {
  mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}});
  ui::BoardFx middleFlies = flyIn({100, 0, 100});
  const Frame frame{.w = 420, .h = 320, .time = 0.25};
  const auto plain = board(GetParam(), frame, game, kRect, {}, &middleFlies);
  ASSERT_FALSE(inkOf(plain.get()).empty());
  const ui::BoardOpts marked{.hintIds = {1}, .mismatchA = 1};
  EXPECT_TRUE(samePicture(board(GetParam(), frame, game, kRect, marked, &middleFlies).get(), plain.get()));
  // With its neighbours on the table it is blocked, without them it is free.
  game.faces[0].clear();
  game.faces[2].clear();
  EXPECT_TRUE(samePicture(board(GetParam(), frame, game, kRect, {}, &middleFlies).get(), plain.get()));
}

// Width or height of a rounded rectangle's bounding box after a rotation.
double turnedLength(double along, double across, double radius, double degrees) {
  const double turn = degrees * 3.14159265358979323846 / 180;
  return (along - 2 * radius) * std::cos(turn) + (across - 2 * radius) * std::abs(std::sin(turn)) +
         2 * radius;
}

TEST_P(BoardDrawing, FliesATileByItsPose) {
  mj::GameState game = boardAt({{10, 0, 0}, {0, 0, 0}, {20, 0, 0}});  // the first tile is in the middle
  game.faces[1].clear();
  game.faces[2].clear();
  const ui::Rect rect{0, 0, 660, 660};
  ui::BoardFx fx = flyIn({0, 0, 0});
  for (const double zoom : {1.0, 1.5}) {
    const ui::BoardView view(rect, {.zoom = zoom, .panX = 20});
    const ui::Rect rest = view.toScreen(geometryOf(game, rect).place(game.slots[0]));
    for (const double progress : {0.4, 0.6, 0.75, 0.9}) {
      const Frame frame{.w = 660, .h = 660, .time = progress * ui::kFlightTime};
      const Ink ink = inkOf(board(GetParam(), frame, game, rect, {.zoom = zoom, .panX = 20}, &fx).get());
      const ui::FlightPose pose = ui::flightPose(0, progress);
      const double w = rest.w * pose.scale;
      const double h = rest.h * pose.scale;
      const double radius = ui::tileRadius(60) * zoom * pose.scale;
      EXPECT_NEAR(ink.centreX(), rest.x + rest.w / 2 + zoom * pose.dx, 1.5) << zoom << ' ' << progress;
      EXPECT_NEAR(ink.centreY(), rest.y + rest.h / 2 + zoom * pose.dy, 1.5) << zoom << ' ' << progress;
      EXPECT_NEAR(ink.w(), turnedLength(w, h, radius, pose.degrees), 3) << zoom << ' ' << progress;
      EXPECT_NEAR(ink.h(), turnedLength(h, w, radius, pose.degrees), 3) << zoom << ' ' << progress;
    }
  }
}

// --- committed pictures ---

const Frame kScene{.w = 360, .h = 260, .time = 0.3};
const ui::Rect kSceneRect{10, 10, 340, 240};

// A level of 48 tiles without its first pair.
mj::GameState sceneGame() {
  mj::GameState game = test::gameOf(11, 3);
  const mj::SlotPair first = mj::findHint(game);
  mj::applyMatch(game, first.first, first.second);
  return game;
}

class BoardPictures : public BoardDrawing {
 protected:
  static testing::AssertionResult looksAsBefore(cairo_surface_t* picture, const std::string& scene) {
    return looksLike(picture, "board_" + scene + "_" + test::nameOf(GetParam()));
  }
};
INSTANTIATE_TEST_SUITE_P(By, BoardPictures, testing::Values(Path::Cairo, Path::Textures), test::pathName);

// A picked tile, a hint, a refused pair, and all blocked tiles veiled.
TEST_P(BoardPictures, OfTheStates) {
  mj::GameState game = sceneGame();
  const std::vector<int> free = mj::freeIds(game);
  ASSERT_GE(free.size(), 6U);
  game.selected = free[0];
  const ui::BoardOpts opts{
      .hintIds = {free[1], free[2]}, .pickA = free[3], .mismatchA = free[4], .mismatchB = free[5]};
  EXPECT_TRUE(looksAsBefore(board(GetParam(), kScene, game, kSceneRect, opts).get(), "states"));
}

TEST_P(BoardPictures, OfTheFlyIn) {
  const mj::GameState game = sceneGame();
  ui::BoardFx fx;
  fx.beginIntro(game, 0);
  const Frame frame{.w = 360, .h = 260, .time = 5.2};  // late enough for several tiles in flight
  EXPECT_TRUE(looksAsBefore(board(GetParam(), frame, game, kSceneRect, {}, &fx).get(), "fly_in"));
}

TEST_P(BoardPictures, OfAZoomedAndPannedBoard) {
  const mj::GameState game = sceneGame();
  const ui::BoardOpts opts{.hintIds = {mj::freeIds(game)[1]}, .zoom = 1.7, .panX = 60, .panY = -35};
  EXPECT_TRUE(looksAsBefore(board(GetParam(), kScene, game, kSceneRect, opts).get(), "zoomed"));
}

TEST_P(BoardPictures, OfABoardAtDeviceScaleTwo) {
  mj::GameState game = sceneGame();
  game.selected = mj::freeIds(game)[0];
  const Frame frame{.w = 240, .h = 180, .time = 0.3, .scale = 2};
  EXPECT_TRUE(looksAsBefore(board(GetParam(), frame, game, {10, 10, 220, 160}).get(), "scale_2"));
}

// --- the texture path ---

class BoardTextures : public support::WithGlyphFont {};

const Frame kRowFrame{.w = 260, .h = 140};
const ui::Rect kThreeRect{10, 10, 150, 67};  // three tiles of 50 x 67 on whole pixels

// Excludes the outermost pixels: cairo strokes half of the outline outside the tile, where a texture ends.
bool isInside(const ui::Rect& tile, int x, int y) {
  const double radius = ui::tileRadius(tile.w);
  const double dx = std::min(x - tile.x, tile.x + tile.w - 1 - x);
  const double dy = std::min(y - tile.y, tile.y + tile.h - 1 - y);
  return dx >= 1 && dy >= 1 && (dx >= radius || dy >= radius);
}

TEST_F(BoardTextures, ShowWhatCairoPaintsButForTheOutlines) {
  mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}});
  game.faces = {"wan3", "flower2", "bam7"};
  const auto painted = board(Path::Cairo, kRowFrame, game, kThreeRect);
  const auto copied = board(Path::Textures, kRowFrame, game, kThreeRect);
  const ui::BoardGeom geom = geometryOf(game, kThreeRect);
  for (const mj::Slot& slot : game.slots) {
    const ui::Rect tile = geom.place(slot);
    for (int y = 10; y < 77; ++y) {
      for (int x = 10; x < 160; ++x) {
        if (!isInside(tile, x, y)) continue;
        ASSERT_LE(channelDifference(pixelAt(copied.get(), x, y), pixelAt(painted.get(), x, y)),
                  slot.id == 1 ? kDarkerVeil : 0)
            << x << ' ' << y;
      }
    }
  }
}

// Textures are placed on whole pixels, cairo's tiles are not. They differ by up to half a pixel.
TEST_F(BoardTextures, ShowAHeapAlmostAsCairoPaintsIt) {
  const mj::GameState game = sceneGame();
  const auto painted = board(Path::Cairo, kScene, game, kSceneRect);
  const auto copied = board(Path::Textures, kScene, game, kSceneRect);
  int far = 0;
  for (int y = 0; y < kScene.h; ++y) {
    for (int x = 0; x < kScene.w; ++x)
      far += channelDifference(pixelAt(copied.get(), x, y), pixelAt(painted.get(), x, y)) > 64 ? 1 : 0;
  }
  EXPECT_LT(far, 0.015 * kScene.w * kScene.h);
}

TEST_F(BoardTextures, AreNotUsedWhenSoftwareIsAskedFor) {
  const GpuWindow window(420, 320);
  ui::gpuBeginFrame();
  const auto drawn = support::makePicture(420, 320, [](cairo_t* cr) {
    ui::fillRect(cr, {0, 0, 420, 320}, test::kFelt, 1);
    ui::Ctx ctx;
    ctx.cr = cr;
    ui::drawBoard(ctx, smallHeap(), kRect, {.software = true}, nullptr);
  });
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
  EXPECT_FALSE(inkOf(drawn.get()).empty());
}

// Draws one frame in its own window and returns the number of copies.
int copiesOf(const mj::GameState& game, const ui::BoardOpts& opts, ui::BoardFx* fx, double time = 0.1) {
  int copies = 0;
  paintScene(Path::Textures, {.w = 260, .h = 140, .time = time}, [&](ui::Ctx& ctx) {
    ui::drawBoard(ctx, game, kThreeRect, opts, fx);
    copies = ui::gpuDrawCalls();
  });
  return copies;
}

TEST_F(BoardTextures, AreOneCopyForATileAndOneForEachOfItsOverlays) {
  mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}});
  EXPECT_EQ(copiesOf(game, {}, nullptr), 4);  // the middle tile is veiled
  EXPECT_EQ(copiesOf(game, {.hintIds = {0, 2}, .pickA = 0, .mismatchA = 0, .mismatchB = 2}, nullptr), 9);
  ui::BoardFx fx = flyIn({0, 0, 0});
  EXPECT_EQ(copiesOf(game, {.hintIds = {0, 2}, .pickA = 0, .mismatchA = 0, .mismatchB = 2}, &fx), 3);
}

TEST_F(BoardTextures, AreKeptByQualityAndDeviceSize) {
  const GpuWindow window(260, 140);
  ui::gpuSetScale(2);
  mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}});
  ui::Ctx ctx;
  ui::drawBoard(ctx, game, kThreeRect, {.hintIds = {0}, .pickA = 2, .mismatchA = 0, .zoom = 1.2}, nullptr);
  // 50 x 67 at quality 1.5 and two device pixels per pixel.
  EXPECT_TRUE(isCached("tile|dot1|150x201", 150, 201));
  EXPECT_TRUE(isCached("tileSel|dot1|150x201", 150, 201));
  for (const char* kind : {"scrim", "hint", "select", "mismatch"})
    EXPECT_TRUE(isCached(std::string("ov|") + kind + "|150x201", 150, 201)) << kind;
  EXPECT_FALSE(isCached("tile|dot1|100x134", 100, 134));
}

TEST_F(BoardTextures, AreTheSameForAllZoomsOfOneQuality) {
  const GpuWindow window(260, 140);
  ui::Ctx ctx;
  ui::drawBoard(ctx, boardAt({{0, 0, 0}}), {0, 0, 50, 67}, {.zoom = 1.1}, nullptr);
  SDL_Texture* kept = ui::tileTexture("dot1", 75, 100.5, false);
  ui::drawBoard(ctx, boardAt({{0, 0, 0}}), {0, 0, 50, 67}, {.zoom = 1.5}, nullptr);
  EXPECT_TRUE(isCached("tile|dot1|75x101", 75, 101));
  EXPECT_EQ(ui::tileTexture("dot1", 75, 100.5, false), kept);
}

// At this scale a tile of 49 x 66 is 65 1/3 device pixels wide.
TEST_F(BoardTextures, AreSharpWhereATileIsNoWholeNumberOfDevicePixelsWide) {
  const Frame frame{.w = 49, .h = 66, .scale = 4.0 / 3};
  const ui::Rect wholeFrame{0, 0, 49, 66};
  const mj::GameState game = boardAt({{0, 0, 0}}, "wan8");
  const ui::CairoSurface copied = board(Path::Textures, frame, game, wholeFrame);
  const ui::CairoSurface painted = board(Path::Cairo, frame, game, wholeFrame);
  constexpr int kOutline = 6;  // its pixels are blended on either path
  for (int y = kOutline; y < 88 - kOutline; ++y) {
    for (int x = kOutline; x < 65 - kOutline; ++x) {
      ASSERT_LE(channelDifference(pixelAt(copied.get(), x, y), pixelAt(painted.get(), x, y)), 2)
          << x << ", " << y;
    }
  }
}

double meanDifference(cairo_surface_t* a, cairo_surface_t* b) {
  const support::Pixels left(a);
  const support::Pixels right(b);
  const int w = cairo_image_surface_get_width(a);
  const int h = cairo_image_surface_get_height(a);
  double sum = 0;
  for (int y = 0; y < h; ++y)
    for (int x = 0; x < w; ++x) sum += support::channelDifference(left.at(x, y), right.at(x, y));
  return sum / (w * h);
}

// After a zoom every tile needs a sharper picture. A frame that painted them all would be late.
TEST_F(BoardTextures, BecomeSharpOverSomeFramesAfterAZoom) {
  const ui::Rect rect{0, 0, 600, 400};
  mj::GameState game = mj::createGame(mj::levelToConfig(91).slots, 91);
  const GpuWindow window(600, 400);
  ui::Ctx ctx;
  const auto shownAt = [&](double zoom) {
    window.clear(0x203040);
    ui::gpuBeginFrame();
    ui::drawBoard(ctx, game, rect, {.zoom = zoom}, nullptr);
    return window.picture();
  };
  shownAt(1);
  ASSERT_GT(ui::gpuPaints(), 20) << "nothing could stand in for the first ones";
  const ui::CairoSurface first = shownAt(2);
  EXPECT_LE(ui::gpuPaints(), ui::kMostPaints + 1) << "tiles and the veil";
  int frames = 1;
  for (; ui::gpuOwesPictures() && frames < 30; ++frames) shownAt(2);
  EXPECT_GT(frames, 3);
  EXPECT_LT(frames, 10);
  const ui::CairoSurface sharp = shownAt(2);
  EXPECT_EQ(ui::gpuPaints(), 0);
  ui::gpuDropTextures("", ui::kKeepNone);
  EXPECT_TRUE(support::samePicture(shownAt(2).get(), sharp.get()));
  EXPECT_FALSE(support::samePicture(first.get(), sharp.get()));
  // Every tile was there, only less sharp.
  window.clear(0x203040);
  EXPECT_LT(meanDifference(first.get(), sharp.get()),
            0.1 * meanDifference(window.picture().get(), sharp.get()));
}

int overlayOpacity(const std::string& kind) {
  const auto notPainted = [](cairo_t*, void*) { ADD_FAILURE(); };
  return opacityOf(ui::gpuTexture("ov|" + kind + "|50x67", 50, 67, notPainted, nullptr));
}

TEST_F(BoardTextures, FadeWithTheBoardWhilePulsesShineOn) {
  const GpuWindow window(260, 140);
  ui::Ctx ctx;  // at time 0
  const mj::GameState game = boardAt({{0, 0, 0}, {2, 0, 0}, {4, 0, 0}});
  ui::drawBoard(ctx, game, kThreeRect, {.hintIds = {0}, .pickA = 2, .mismatchA = 2, .alpha = 0.5}, nullptr);
  EXPECT_EQ(opacityOf(ui::tileTexture("dot1", 50, 67, false)), 128);
  EXPECT_EQ(opacityOf(ui::tileTexture("dot1", 50, 67, true)), 128);
  EXPECT_EQ(overlayOpacity("scrim"), 57);     // 0.45 * 0.5
  EXPECT_EQ(overlayOpacity("hint"), 185);     // 0.725
  EXPECT_EQ(overlayOpacity("select"), 191);   // 0.75
  EXPECT_EQ(overlayOpacity("mismatch"), 38);  // 0.15
}

// The renderer clips at whole device pixels: the start rounded down, the size rounded up.
TEST_F(BoardTextures, AreClippedAtWholeDevicePixels) {
  const mj::GameState heap = smallHeap();
  const auto inkAt = [&](double scale, const ui::Rect& rect) {
    const Frame frame{.w = 120, .h = 120, .scale = scale};
    return inkOf(board(Path::Textures, frame, heap, rect, {.fit = ui::FitMode::Cover, .zoom = 3}).get());
  };
  const Ink fractions = inkAt(1, {10.6, 20.6, 50.2, 40.2});
  EXPECT_EQ(fractions.left, 10);
  EXPECT_EQ(fractions.top, 20);
  EXPECT_EQ(fractions.right, 61);
  EXPECT_EQ(fractions.bottom, 61);
  const Ink doubled = inkAt(2, {10.25, 20.25, 50.2, 40.2});
  EXPECT_EQ(doubled.left, 20);
  EXPECT_EQ(doubled.top, 40);
  EXPECT_EQ(doubled.right, 121);
  EXPECT_EQ(doubled.bottom, 121);
}

TEST(BoardWithoutRenderer, IsDrawnWithCairoAndLeavesTheContextAsItWas) {
  ui::gpuShutdown();
  support::makePicture(420, 320, [](cairo_t* cr) {
    cairo_scale(cr, 2, 2);
    ui::Ctx ctx;
    ctx.cr = cr;
    ui::drawBoard(ctx, smallHeap(), {10, 10, 100, 100}, {.zoom = 2, .panX = 5}, nullptr);
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    EXPECT_EQ(matrix.xx, 2);
    EXPECT_EQ(matrix.x0, 0);
    EXPECT_TRUE(cairo_in_clip(cr, 200, 150));
  });
}

}  // namespace
