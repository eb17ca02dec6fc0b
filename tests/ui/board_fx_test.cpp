#include "ui/board_fx.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <vector>

#include "rules/boards.h"
#include "support/glyph_font.h"
#include "support/gpu_window.h"
#include "support/picture.h"
#include "ui/board_scenes.h"
#include "ui/gpu.h"

namespace {

using support::GpuWindow;
using support::looksLike;
using test::Frame;
using test::Ink;
using test::inkOf;
using test::isCached;
using test::paintScene;
using test::Path;

constexpr double kPi = 3.14159265358979323846;

// --- fly-in ---

ui::BoardFx introOf(const mj::GameState& game, double now = 0) {
  ui::BoardFx fx;
  fx.beginIntro(game, now);
  return fx;
}

mj::GameState tiles(std::size_t count) { return test::looseTiles(std::vector<std::string>(count, "dot1")); }

std::vector<double> takeOffs(std::size_t count) {
  std::vector<double> delays = introOf(tiles(count)).delays;
  std::sort(delays.begin(), delays.end());
  return delays;
}

// The gaps shrink linearly from 1.6 to 0.4 of their mean, so the k-th take-off has a closed form.
void expectTakeOffs(std::size_t count, double meanGap) {
  const std::vector<double> delays = takeOffs(count);
  ASSERT_EQ(delays.size(), count);
  for (std::size_t i = 0; i < count; ++i) {
    const auto k = static_cast<double>(i);
    const double expected = meanGap * (1.6 * k - 1.2 * k * (k - 1) / 2 / (static_cast<double>(count) - 1));
    EXPECT_NEAR(delays[i], expected, 1e-9) << i;
  }
}

TEST(Intro, Of36TilesTakesOffAtGapsFrom267To67Milliseconds) {
  expectTakeOffs(36, 6.0 / 36);
  const std::vector<double> delays = takeOffs(36);
  EXPECT_NEAR(delays[1] - delays[0], 1.6 / 6, 1e-9);                      // 0.267
  EXPECT_NEAR(delays[35] - delays[34], (1.6 - 1.2 * 34 / 35) / 6, 1e-9);  // 0.072; no tile after the last gap
  EXPECT_NEAR(introOf(tiles(36)).introEnd, 6.48, 1e-9);
}

TEST(Intro, Of144TilesTakesOffAtGapsFrom67To17Milliseconds) {
  expectTakeOffs(144, 6.0 / 144);
  EXPECT_NEAR(takeOffs(144)[1], 0.2 / 3, 1e-9);
  EXPECT_NEAR(introOf(tiles(144)).introEnd, 6.48, 1e-9);
}

TEST(Intro, OfAVeryLargeBoardKeepsAMeanGapOf34Milliseconds) {
  expectTakeOffs(500, 0.034);
  EXPECT_NEAR(introOf(tiles(500)).introEnd, 17.48, 1e-9);
}

TEST(Intro, OfASmallBoardKeepsAMeanGapOf175Milliseconds) {
  expectTakeOffs(2, 0.175);
  expectTakeOffs(20, 0.175);
  EXPECT_NEAR(introOf(tiles(20)).introEnd, 3.98, 1e-9);
}

TEST(Intro, OfOneTileOrNoneIsOverAtOnce) {
  EXPECT_EQ(takeOffs(1), std::vector<double>{0});
  EXPECT_NEAR(introOf(tiles(1), 10).introEnd, 10.76, 1e-9);
  EXPECT_TRUE(takeOffs(0).empty());
  EXPECT_NEAR(introOf(tiles(0), 10).introEnd, 10.48, 1e-9);
}

TEST(Intro, BeginsAnewWithoutTheSoundOfTheOneBefore) {
  ui::BoardFx fx = introOf(tiles(4));
  fx.lastSound = 3;
  fx.bursts.push_back({1, 2, 3, 4, 5, "dot1"});
  fx.beginIntro(tiles(9), 20);
  EXPECT_TRUE(fx.introActive);
  EXPECT_EQ(fx.introStart, 20);
  EXPECT_EQ(fx.lastSound, 0);
  EXPECT_EQ(fx.delays.size(), 9U);
  EXPECT_EQ(fx.bursts.size(), 1U);
}

// Slot ids in order of take-off.
std::vector<int> takeOffOrder(const mj::GameState& game) {
  const std::vector<double> delays = introOf(game).delays;
  std::vector<int> ids;
  for (const mj::Slot& slot : game.slots) {
    if (!game.faces[static_cast<std::size_t>(slot.id)].empty()) ids.push_back(slot.id);
  }
  std::sort(ids.begin(), ids.end(), [&delays](int a, int b) {
    return delays[static_cast<std::size_t>(a)] < delays[static_cast<std::size_t>(b)];
  });
  return ids;
}

// Five by five tiles about (8, 8), numbered row by row.
mj::GameState square() {
  std::vector<std::array<int, 3>> places;
  for (int y = 0; y < 5; ++y) {
    for (int x = 0; x < 5; ++x) places.push_back({4 + 2 * x, 4 + 2 * y, 0});
  }
  mj::GameState game;
  game.slots = test::layoutAt(places);
  game.faces.assign(places.size(), "dot1");
  return game;
}

TEST(Intro, GoesRoundTheCentreInRingsTwoUnitsWide) {
  // The inner ring starts at the right and goes down. The corners, 5.66 away, still belong to the outer ring.
  EXPECT_EQ(takeOffOrder(square()), (std::vector<int>{12, 13, 18, 17, 16, 11, 6, 7, 8, 14, 19, 24, 23,
                                                      22, 21, 20, 15, 10, 5,  0, 1, 2, 3,  4,  9}));
}

TEST(Intro, FillsTheLowerLayersFirst) {
  mj::GameState game;
  game.slots = test::layoutAt({{1, 1, 1}, {1, 1, 2}, {0, 0, 0}, {2, 0, 0}, {0, 2, 0}, {2, 2, 0}});
  game.faces.assign(6, "dot1");
  EXPECT_EQ(takeOffOrder(game), (std::vector<int>{5, 4, 2, 3, 0, 1}));
}

TEST(Intro, CountsOnlyTilesOnTheTable) {
  mj::GameState game = square();
  for (std::size_t id = 0; id < 25; ++id) {
    if (id % 5 < 3) game.faces[id].clear();
  }
  // Two columns remain. Their centre lies right of the whole square's.
  EXPECT_EQ(takeOffOrder(game), (std::vector<int>{14, 13, 19, 18, 8, 9, 24, 23, 3, 4}));
  const ui::BoardFx fx = introOf(game);
  EXPECT_EQ(fx.delays.size(), 25U);
  EXPECT_EQ(fx.delays[0], 0);
  EXPECT_NEAR(fx.introEnd, 10 * 0.175 + 0.48, 1e-9);
}

// --- flight ---

struct Fractions {
  int id;
  double direction;
  double distance;
  double turn;
};
// Computed independently of this program.
constexpr Fractions kFractions[] = {
    {0, 0.3588899802416563, 0.10590326134115458, 0.675290479324758},
    {1, 0.8700448414310813, 0.7359313212800771, 0.6062696557492018},
    {7, 0.5124059207737446, 0.737086154287681, 0.2673876772169024},
    {35, 0.8591698568779975, 0.34160050842911005, 0.31414721882902086},
    {143, 0.5485748713836074, 0.4310198603197932, 0.4532890501432121},
};

TEST(Flight, StartsFarAwaySmallAndTurnedAtTheTilesOwnRandomPlace) {
  for (const Fractions& r : kFractions) {
    const ui::FlightPose pose = ui::flightPose(r.id, 0);
    const double distance = 720 + 520 * r.distance;
    EXPECT_NEAR(pose.dx, distance * std::cos(2 * kPi * r.direction), 1e-9) << r.id;
    EXPECT_NEAR(pose.dy, distance * std::sin(2 * kPi * r.direction), 1e-9) << r.id;
    EXPECT_NEAR(pose.degrees, (r.turn - 0.5) * 150, 1e-9) << r.id;
    EXPECT_NEAR(pose.scale, 0.55, 1e-12) << r.id;
  }
}

TEST(Flight, EndsAtRest) {
  for (int id = 0; id < 144; ++id) {
    const ui::FlightPose pose = ui::flightPose(id, 1);
    EXPECT_EQ(pose.dx, 0);
    EXPECT_EQ(pose.dy, 0);
    EXPECT_EQ(pose.scale, 1);
    EXPECT_EQ(pose.degrees, 0);
  }
}

TEST(Flight, OvershootsALittleBeforeItRests) {
  // The part of the way left at half time: 1 - (1 + 0.25 * (1.12 - 1.06)) = -0.015.
  const ui::FlightPose start = ui::flightPose(7, 0);
  const ui::FlightPose half = ui::flightPose(7, 0.5);
  EXPECT_NEAR(half.dx, -0.015 * start.dx, 1e-9);
  EXPECT_NEAR(half.dy, -0.015 * start.dy, 1e-9);
  EXPECT_NEAR(half.degrees, -0.015 * start.degrees, 1e-9);
  EXPECT_NEAR(half.scale, 1.00675, 1e-9);
  const ui::FlightPose quarter = ui::flightPose(7, 0.25);
  EXPECT_NEAR(quarter.dx, 0.264375 * start.dx, 1e-9);
}

TEST(Flight, StartsWithinItsBoundsForEveryTile) {
  for (int id = 0; id < 500; ++id) {
    const ui::FlightPose pose = ui::flightPose(id, 0);
    const double distance = std::hypot(pose.dx, pose.dy);
    EXPECT_GE(distance, 720 - 1e-9);
    EXPECT_LT(distance, 1240);
    EXPECT_LT(std::abs(pose.degrees), 75.0001);
  }
}

// --- bursts ---

class Bursts : public support::WithGlyphFont, public testing::WithParamInterface<Path> {};
INSTANTIATE_TEST_SUITE_P(By, Bursts, testing::Values(Path::Cairo, Path::Textures), test::pathName);

constexpr double kW = 40;  // size of the burst's face
constexpr double kH = 54;
// The time at which a burst's eased progress has this value. It is 1 - (1 - p)², where p is the time in units
// of 1.7 s.
double timeOf(double eased) { return ui::kBurstTime * (1 - std::sqrt(1 - eased)); }
// The tile's size factor at this progress.
double sizeAt(double eased) { return (1 + 0.25 * eased) * (1 + 0.28 * std::sin(eased * kPi)); }

ui::BoardFx burstAt(double cx, double cy, double start = 0) {
  ui::BoardFx fx;
  fx.bursts.push_back({cx, cy, kW, kH, start, "dot5"});
  return fx;
}

constexpr ui::Rect kBurstsRect{0, 0, 400, 800};

ui::CairoSurface burstPicture(Path path, const ui::BoardFx& fx, double time, const ui::BoardOpts& opts = {}) {
  const Frame frame{.w = 400, .h = 800, .time = time};
  return paintScene(path, frame, [&](ui::Ctx& ctx) { ui::drawBursts(ctx, &fx, kBurstsRect, opts); });
}

Ink burstInk(Path path, const ui::BoardFx& fx, double time, const ui::BoardOpts& opts = {}) {
  return inkOf(burstPicture(path, fx, time, opts).get());
}

TEST_P(Bursts, AreNotDrawnBeforeTheyStart) {
  EXPECT_TRUE(burstInk(GetParam(), burstAt(200, 400, 5), 4.9).empty());
  EXPECT_TRUE(burstInk(GetParam(), burstAt(200, 400, 5), 5).empty());
  EXPECT_FALSE(burstInk(GetParam(), burstAt(200, 400, 5), 5.1).empty());
}

TEST_P(Bursts, AreFullyTransparentAtTheirEnd) {
  EXPECT_TRUE(burstInk(GetParam(), burstAt(200, 400), ui::kBurstTime).empty());
  EXPECT_TRUE(burstInk(GetParam(), burstAt(200, 400), 3).empty());
  EXPECT_FALSE(burstInk(GetParam(), burstAt(200, 400), 1.4).empty());
}

TEST_P(Bursts, OfNothingDrawNothing) {
  const auto picture = paintScene(GetParam(), {.w = 40, .h = 40, .time = 1},
                                  [](ui::Ctx& ctx) { ui::drawBursts(ctx, nullptr, kBurstsRect, {}); });
  EXPECT_TRUE(inkOf(picture.get()).empty());
  EXPECT_TRUE(burstInk(GetParam(), {}, 1).empty());
}

// At eased progress 0.4: the tile has made one turn, and there is no ring and no spark yet.
TEST_P(Bursts, RiseToAQuarterTileBelowTheWindowsTop) {
  const Ink ink = burstInk(GetParam(), burstAt(200, 150), timeOf(0.4));
  EXPECT_NEAR(ink.centreX(), 200, 1);
  EXPECT_NEAR(ink.centreY(), 150 - 0.4 * (150 - 0.25 * kH), 1);
  EXPECT_NEAR(ink.w(), sizeAt(0.4) * kW, 3);
  EXPECT_NEAR(ink.h(), sizeAt(0.4) * kH, 3);
}

TEST_P(Bursts, RiseAtMost4Point2TileHeights) {
  EXPECT_NEAR(burstInk(GetParam(), burstAt(200, 700), timeOf(0.4)).centreY(), 700 - 0.4 * 4.2 * kH, 1);
}

TEST_P(Bursts, RiseAtLeastATileHeightEvenOutOfTheWindow) {
  // Without that minimum it would rise by only half a tile.
  const Ink low = burstInk(GetParam(), burstAt(200, 0.75 * kH), timeOf(0.2));
  EXPECT_NEAR(low.bottom, 0.75 * kH - 0.2 * kH + sizeAt(0.2) * kH / 2, 1.5);
  const Ink out = burstInk(GetParam(), burstAt(200, 0.25 * kH), timeOf(0.4));
  EXPECT_NEAR(out.bottom, 0.25 * kH - 0.4 * kH + sizeAt(0.4) * kH / 2, 1.5);
  EXPECT_EQ(out.top, 0);
}

// The outline adds half its width on each side, and smoothing adds part of a pixel.
void expectBreadth(const Ink& ink, double eased, double turned) {
  const double w = sizeAt(eased) * kW * turned;
  EXPECT_GE(ink.w(), w - 1) << eased;
  EXPECT_LE(ink.w(), w + 4) << eased;
  EXPECT_NEAR(ink.h(), sizeAt(eased) * kH, 4) << eased;
}

TEST_P(Bursts, TurnAboutTheVerticalAxisButNeverVanish) {
  const auto inkAt = [](double eased) { return burstInk(GetParam(), burstAt(200, 400), timeOf(eased)); };
  expectBreadth(inkAt(0.1), 0.1, 0.06);  // edge-on
  expectBreadth(inkAt(0.15), 0.15, std::sqrt(0.5));
  expectBreadth(inkAt(0.2), 0.2, 1);  // after half a turn
  expectBreadth(inkAt(0.3), 0.3, 0.06);
}

TEST_P(Bursts, FollowTheBoardsZoomAndPan) {
  const ui::BoardOpts opts{.zoom = 1.5, .panX = -30, .panY = 40};
  const Ink ink = burstInk(GetParam(), burstAt(240, 500), timeOf(0.4), opts);
  const double cx = 200 + 40 * 1.5 - 30;
  const double cy = 400 + 100 * 1.5 + 40;
  EXPECT_NEAR(ink.centreX(), cx, 1);
  EXPECT_NEAR(ink.centreY(), cy - 0.4 * 4.2 * 1.5 * kH, 1);
  EXPECT_NEAR(ink.w(), 1.5 * sizeAt(0.4) * kW, 3);
}

TEST_P(Bursts, ReachBeyondTheBoardsRectangle) {
  const ui::Rect below{0, 300, 400, 200};
  const ui::BoardFx fx = burstAt(200, 310);
  const auto picture = paintScene(GetParam(), {.w = 400, .h = 800, .time = timeOf(0.8)},
                                  [&](ui::Ctx& ctx) { ui::drawBursts(ctx, &fx, below, {}); });
  EXPECT_LT(inkOf(picture.get()).top, 200);
}

TEST_P(Bursts, ThrowSparksFromTheSecondHalfOfTheirWay) {
  const Ink before = burstInk(GetParam(), burstAt(200, 400), timeOf(0.499));
  EXPECT_LT(before.w(), 1.5 * kW);
  // At eased progress 0.8, r = 0.6 for ring and sparks. The ring reaches (2.8 * 0.6 + 0.3) * 0.6 W from the
  // centre.
  const Ink after = burstInk(GetParam(), burstAt(200, 400), timeOf(0.8));
  EXPECT_GT(after.w(), 2 * 1.188 * kW);
}

TEST_P(Bursts, LookAsTheyAlwaysDid) {
  ui::BoardFx fx;
  double cx = 70;
  for (const double eased : {0.05, 0.16, 0.4, 0.55, 0.75, 0.9, 0.99}) {
    fx.bursts.push_back({cx, 240, 44, 60, 2 - timeOf(eased), "wan5"});
    cx += 140;
  }
  const Frame frame{.w = 980, .h = 300, .time = 2};
  const auto picture =
      paintScene(GetParam(), frame, [&](ui::Ctx& ctx) { ui::drawBursts(ctx, &fx, {0, 0, 980, 300}, {}); });
  EXPECT_TRUE(looksLike(picture.get(), "bursts_" + test::nameOf(GetParam())));
}

TEST(BurstTextures, AreKeptByColourAndDeviceSize) {
  const GpuWindow window(400, 800);
  ui::gpuSetScale(1.5);
  ui::gpuBeginFrame();
  ui::Ctx ctx;
  ctx.time = timeOf(0.4);
  const ui::BoardFx fx = burstAt(200, 400);
  ui::drawBursts(ctx, &fx, kBurstsRect, {});
  EXPECT_EQ(ui::gpuDrawCalls(), 1);

  ctx.time = timeOf(0.6);
  ui::gpuBeginFrame();
  ui::drawBursts(ctx, &fx, kBurstsRect, {});
  EXPECT_EQ(ui::gpuDrawCalls(), 22);  // the tile, its ring and twenty sparks
  EXPECT_TRUE(isCached("tile|dot5|60x81", 60, 81));
  EXPECT_TRUE(isCached("ring|ffe9a8|72", 72, 72));
  // Sizes: 2 * 0.1 * 40 * 1.5 = 12; 0.035 and 0.07 more give 16.2 and 20.4.
  for (const char* color : {"e8b84b", "f6efdd", "c92a2a", "f1d489", "2c8a63"}) {
    for (const int size : {12, 17, 21})
      EXPECT_TRUE(isCached(std::string("dot|") + color + "|" + std::to_string(size), size, size)) << color;
  }
}

TEST(BurstTextures, HaveTheirLeastSizesForTinyTiles) {
  const GpuWindow window(40, 40);
  ui::BoardFx fx;
  fx.bursts.push_back({20, 20, 3, 5, 0, "dot1"});
  ui::Ctx ctx;
  ctx.time = timeOf(0.6);
  ui::drawBursts(ctx, &fx, {0, 0, 40, 40}, {});
  EXPECT_TRUE(isCached("ring|ffe9a8|4", 4, 4));
  EXPECT_TRUE(isCached("dot|e8b84b|2", 2, 2));
}

TEST(BurstList, DropsWhatIsOlderThan1Point7SecondsAndKeepsTheOrder) {
  ui::BoardFx fx;
  for (const double start : {3.0, 0.0, 2.0, 0.25, 9.0}) fx.bursts.push_back({0, 0, 1, 1, start, "dot1"});
  fx.update(ui::kBurstTime);
  EXPECT_EQ(fx.bursts.size(), 5U);
  fx.update(1.75);
  ASSERT_EQ(fx.bursts.size(), 4U);
  fx.update(2);
  ASSERT_EQ(fx.bursts.size(), 3U);
  EXPECT_EQ(fx.bursts[0].start, 3);
  EXPECT_EQ(fx.bursts[1].start, 2);
  EXPECT_EQ(fx.bursts[2].start, 9);
}

TEST(BurstList, TakesPlaceAndSizeFromTheTilesFace) {
  mj::GameState game = test::rowOf({"", "dot4"});
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, {10, 20, 100, 67}, ui::FitMode::Contain);
  ui::BoardFx fx;
  fx.addBurst(game, geom, 1, "season2", 4.5);
  ASSERT_EQ(fx.bursts.size(), 1U);
  const ui::BoardFx::Burst& burst = fx.bursts[0];
  EXPECT_EQ(burst.w, 45);  // 50 x 67 minus the bevel of 5
  EXPECT_EQ(burst.h, 62);
  EXPECT_EQ(burst.cx, 60 + 22.5);
  EXPECT_EQ(burst.cy, 20 + 31);
  EXPECT_EQ(burst.start, 4.5);
  EXPECT_EQ(burst.face, "season2");
}

}  // namespace
