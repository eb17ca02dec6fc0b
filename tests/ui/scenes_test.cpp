#include "ui/scenes.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <cmath>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "rules/boards.h"
#include "support/glyph_font.h"
#include "support/gpu_window.h"
#include "support/own_process.h"
#include "support/picture.h"
#include "support/temp_dir.h"
#include "ui/board.h"
#include "ui/board_scenes.h"
#include "ui/draw.h"
#include "ui/gpu.h"

namespace {

using support::channelDifference;
using support::GpuWindow;
using support::looksLike;
using support::pixelAt;
using support::samePicture;
using support::TempDir;
using test::Frame;
using test::inkOf;
using test::paintScene;
using test::Path;

// --- the backdrop ---

class MenuBackdrop : public support::WithGlyphFont, public testing::WithParamInterface<Path> {};
class BackdropTexture : public support::WithGlyphFont {};
INSTANTIATE_TEST_SUITE_P(By, MenuBackdrop, testing::Values(Path::Cairo, Path::Textures), test::pathName);

// Four tiles in the corners of a field of three by three tiles, so that a cross of felt shows between them.
mj::GameState corners() {
  mj::GameState game;
  game.slots = test::layoutAt({{0, 0, 0}, {4, 0, 0}, {0, 4, 0}, {4, 4, 0}});
  game.faces.assign(4, "windX");
  return game;
}

// In a window of this size the corner tiles are 100 x 134, and the felt between them is as large as a tile.
const Frame kSceneFrame{.w = 300, .h = 402};

ui::CairoSurface backdrop(Path path, double time, const mj::GameState& game, Frame frame = kSceneFrame) {
  frame.time = time;
  return paintScene(path, frame, [&](ui::Ctx& ctx) { ui::drawMenuBackdrop(ctx, game); });
}

bool isFelt(cairo_surface_t* picture, int x, int y) {
  return channelDifference(pixelAt(picture, x, y), 0xFF000000U | test::kFelt) <= 1;
}

struct Gap {
  int first;
  int last;  // exclusive
};

// How far the felt reaches from the middle in both directions.
Gap gapAlong(int length, const std::function<bool(int)>& isFeltAt) {
  Gap gap{length / 2, length / 2};
  while (gap.first > 0 && isFeltAt(gap.first - 1)) --gap.first;
  while (gap.last < length && isFeltAt(gap.last)) ++gap.last;
  return gap;
}

TEST_P(MenuBackdrop, DriftsAboutTheWindow) {
  constexpr double kQuarter = std::numbers::pi / 2;
  for (const double time : {0.0, kQuarter / 0.11, kQuarter / 0.09, 3 * kQuarter / 0.11, 3 * kQuarter / 0.09,
                            (kQuarter - 1) / 0.15, (3 * kQuarter - 1) / 0.15, 1234.5}) {
    const auto seen = backdrop(GetParam(), time, corners());
    // Measured along lines through the upper left tile. Lines through the middle meet only felt.
    const Gap across = gapAlong(300, [&](int x) { return isFelt(seen.get(), x, 30); });
    const Gap down = gapAlong(402, [&](int y) { return isFelt(seen.get(), 30, y); });
    const double zoom = 1.14 + 0.03 * std::sin(0.09 * time);
    const double left = 150 + 0.045 * 300 * std::sin(0.11 * time) - zoom * 50;
    const double top = 201 + 0.045 * 402 * std::sin(1 + 0.15 * time) - zoom * 67;
    EXPECT_NEAR(across.first, left, 2) << time;
    EXPECT_NEAR(across.last, left + zoom * 100, 2) << time;
    EXPECT_NEAR(down.first, top, 2) << time;
    EXPECT_NEAR(down.last, top + zoom * 134, 2) << time;
  }
}

TEST_P(MenuBackdrop, NeverShowsItsEdge) {
  // A tile covers every corner of the window, however far the board has drifted.
  for (double time = 0; time < 180; time += 1.7) {
    const auto seen = backdrop(GetParam(), time, corners());
    for (const auto& [x, y] : {std::pair{0, 0}, {299, 0}, {0, 401}, {299, 401}})
      ASSERT_FALSE(isFelt(seen.get(), x, y)) << time << ' ' << x << ' ' << y;
  }
}

TEST_P(MenuBackdrop, OfAGameWithoutSlotsIsNothing) {
  EXPECT_TRUE(inkOf(backdrop(GetParam(), 3, mj::GameState{}).get()).empty());
}

TEST_P(MenuBackdrop, LooksAsBefore) {
  const Frame frame{.w = 360, .h = 240};
  EXPECT_TRUE(looksLike(backdrop(GetParam(), 20, test::gameOf(11, 3), frame).get(),
                        "menu_backdrop_" + test::nameOf(GetParam())));
}

TEST(MenuBackdropWithoutRenderer, ShowsFourTenthsOfTheBoard) {
  const auto seen = backdrop(Path::Cairo, 0, corners());
  // The face's F5EEDC at 0.4 on the felt's 1F5A41.
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 30, 30), 0xFF75957FU), 1);
}

TEST(MenuBackdropWithoutRenderer, LeavesTheContextAsItWas) {
  ui::gpuShutdown();
  support::makePicture(300, 402, [](cairo_t* cr) {
    cairo_scale(cr, 2, 2);
    ui::Ctx ctx;
    ctx.cr = cr;
    ctx.w = 150;
    ctx.h = 201;
    ui::drawMenuBackdrop(ctx, corners());
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    EXPECT_EQ(matrix.xx, 2);
    EXPECT_EQ(matrix.x0, 0);
    EXPECT_EQ(cairo_get_group_target(cr), cairo_get_target(cr));
  });
}

// A window for several frames.
class Menu {
 public:
  // Draws a frame and returns whether it painted the board instead of only copying it.
  bool paints(const mj::GameState& game, double w = kSceneFrame.w, double h = kSceneFrame.h) {
    window.clear(test::kFelt);
    ui::gpuBeginFrame();
    ui::Ctx ctx;
    ctx.w = w;
    ctx.h = h;
    ctx.time = time;
    time += 0.1;
    ui::drawMenuBackdrop(ctx, game);
    return ui::gpuPaints() > 0;
  }
  // The backdrop's texture. Fails if none of this size is cached.
  static SDL_Texture* kept(int w, int h) {
    const auto notPainted = [](void*) { ADD_FAILURE() << "was not there"; };
    return ui::gpuRenderTarget("backdrop", w, h, notPainted, nullptr, false);
  }

  GpuWindow window{kSceneFrame.w, kSceneFrame.h};

 private:
  double time = 0;
};

TEST_F(BackdropTexture, IsPaintedOnceAndCopiedFromThenOn) {
  Menu menu;
  EXPECT_TRUE(menu.paints(corners()));
  SDL_Texture* first = Menu::kept(300, 402);
  for (int i = 0; i < 20; ++i) EXPECT_FALSE(menu.paints(corners()));
  EXPECT_EQ(Menu::kept(300, 402), first);
}

TEST_F(BackdropTexture, IsCopiedAtFourTenths) {
  Menu menu;
  menu.paints(corners());
  Uint8 alpha = 0;
  ASSERT_EQ(SDL_GetTextureAlphaMod(Menu::kept(300, 402), &alpha), 0);
  EXPECT_EQ(alpha, 102);
}

TEST_F(BackdropTexture, IsPaintedAnewInAnotherSize) {
  Menu menu;
  menu.paints(corners());
  EXPECT_TRUE(menu.paints(corners(), 280, 402));
  EXPECT_FALSE(menu.paints(corners(), 280, 402));
  EXPECT_NE(Menu::kept(280, 402), nullptr);
}

TEST_F(BackdropTexture, HasTheWindowsDeviceSize) {
  Menu menu;
  ui::gpuSetScale(1.5);
  menu.paints(corners(), 200, 268);
  EXPECT_NE(Menu::kept(300, 402), nullptr);
  ui::gpuSetScale(1);
}

TEST_F(BackdropTexture, ShowsAnotherGameOnceItIsForgotten) {
  mj::GameState fewer = corners();
  fewer.faces[0].clear();
  Menu menu;
  menu.paints(corners());
  ui::forgetMenuBackdrop();
  EXPECT_TRUE(menu.paints(fewer));
  const auto seen = menu.window.picture();
  EXPECT_TRUE(isFelt(seen.get(), 30, 30));
  EXPECT_FALSE(isFelt(seen.get(), 270, 30));
  EXPECT_FALSE(menu.paints(fewer));
  ui::forgetMenuBackdrop();
  EXPECT_TRUE(menu.paints(corners()));
  EXPECT_FALSE(isFelt(menu.window.picture().get(), 30, 30));
}

TEST_F(BackdropTexture, IsPaintedAnewForAnotherRenderer) {
  {
    Menu menu;
    menu.paints(corners());
  }
  Menu menu;
  EXPECT_TRUE(menu.paints(corners()));
  ui::gpuInit(ui::gpuRenderer());  // as if the renderer had lost its textures
  EXPECT_TRUE(menu.paints(corners()));
  EXPECT_FALSE(isFelt(menu.window.picture().get(), 30, 30));
}

// --- the picture in a file ---

class Capture : public support::WithGlyphFont {
 protected:
  std::string path(const std::string& name = "board.png") const { return dir.path(name); }

  TempDir dir;
};

const mj::TableTheme& violet() { return *mj::tableThemeForStage(3); }

ui::CairoSurface read(const std::string& path) {
  ui::CairoSurface picture(cairo_image_surface_create_from_png(path.c_str()));
  EXPECT_EQ(cairo_surface_status(picture.get()), CAIRO_STATUS_SUCCESS) << path;
  return picture;
}

std::vector<std::string> filesIn(const TempDir& dir) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
    names.push_back(entry.path().filename());
  return names;
}

void addStop(cairo_pattern_t* cloth, double offset, std::uint32_t color) {
  cairo_pattern_add_color_stop_rgb(cloth, offset, ((color >> 16) & 0xFFU) / 255.0,
                                   ((color >> 8) & 0xFFU) / 255.0, (color & 0xFFU) / 255.0);
}

// The expected capture, drawn by hand.
ui::CairoSurface drawn(const mj::GameState& game, const mj::TableTheme& theme, int size) {
  return support::makePicture(size, size, [&](cairo_t* cr) {
    const ui::CairoPattern cloth(cairo_pattern_create_linear(0, 0, 0, size));
    addStop(cloth.get(), 0, theme.top);
    addStop(cloth.get(), 0.5, theme.middle);
    addStop(cloth.get(), 1, theme.bottom);
    cairo_set_source(cr, cloth.get());
    cairo_paint(cr);
    ui::Ctx ctx;
    ctx.cr = cr;
    const double margin = size * 0.06;
    ui::drawBoard(ctx, game, {margin, margin, size - 2 * margin, size - 2 * margin}, {.software = true},
                  nullptr);
    ui::strokeRoundedRect(cr, {4, 4, size - 8.0, size - 8.0}, 12, 2, theme.ornament, 0.45);
  });
}

mj::GameState gameWithSelection() {
  mj::GameState game = test::gameOf(11, 3);
  game.selected = mj::freeIds(game)[0];
  return game;
}

TEST_F(Capture, IsClothBoardAndFrame) {
  for (const int size : {100, 300, 640}) {
    ASSERT_TRUE(ui::captureBoardPng(gameWithSelection(), violet(), size, path()));
    EXPECT_TRUE(samePicture(read(path()).get(), drawn(gameWithSelection(), violet(), size).get())) << size;
  }
}

TEST_F(Capture, LooksAsBefore) {
  ASSERT_TRUE(ui::captureBoardPng(gameWithSelection(), violet(), 320, path()));
  EXPECT_TRUE(looksLike(read(path()).get(), "capture"));
}

TEST_F(Capture, OfAGameWithoutSlotsIsClothAndFrame) {
  ASSERT_TRUE(ui::captureBoardPng({}, violet(), 200, path()));
  const auto seen = read(path());
  EXPECT_TRUE(samePicture(seen.get(), drawn({}, violet(), 200).get()));
  const auto opaque = [](std::uint32_t color) { return 0xFF000000U | color; };
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 100, 0), opaque(violet().top)), 1);
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 100, 100), opaque(violet().middle)), 1);
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 100, 199), opaque(violet().bottom)), 1);
  EXPECT_GT(channelDifference(pixelAt(seen.get(), 3, 100), opaque(violet().middle)), 20);
  EXPECT_GT(channelDifference(pixelAt(seen.get(), 4, 100), opaque(violet().middle)), 20);
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 6, 100), opaque(violet().middle)), 1);
}

TEST_F(Capture, LeavesAMarginAroundTheBoard) {
  // Four tiles of 66 x 88 in a row fill the picture's 300 pixels less two margins of 18.
  ASSERT_TRUE(ui::captureBoardPng(test::rowOf({"dot1", "dot2", "dot3", "dot4"}), violet(), 300, path()));
  const auto seen = read(path());
  const auto empty = drawn({}, violet(), 300);
  const auto isTile = [&](int x) {
    return channelDifference(pixelAt(seen.get(), x, 150), pixelAt(empty.get(), x, 150)) > 0;
  };
  EXPECT_FALSE(isTile(17));
  EXPECT_TRUE(isTile(18));
  EXPECT_TRUE(isTile(281));
  EXPECT_FALSE(isTile(282));
}

TEST_F(Capture, IsTheSameWithARenderer) {
  const GpuWindow window(50, 50);
  ui::gpuSetScale(2);
  ui::gpuBeginFrame();
  ASSERT_TRUE(ui::captureBoardPng(gameWithSelection(), violet(), 300, path()));
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
  EXPECT_TRUE(samePicture(read(path()).get(), drawn(gameWithSelection(), violet(), 300).get()));
}

TEST_F(Capture, OfAPixelIsStillAPicture) {
  for (const int size : {1, 7, 8, 9}) {
    ASSERT_TRUE(ui::captureBoardPng(gameWithSelection(), violet(), size, path())) << size;
    EXPECT_EQ(cairo_image_surface_get_width(read(path()).get()), size);
  }
}

TEST_F(Capture, WithoutAPixelOrTooLargeForAPictureWritesNothing) {
  for (const int size : {0, -1, -640, 40000}) {
    EXPECT_FALSE(ui::captureBoardPng(gameWithSelection(), violet(), size, path())) << size;
  }
  EXPECT_TRUE(filesIn(dir).empty());
}

TEST_F(Capture, FailsWhereNoFileCanBe) {
  EXPECT_FALSE(ui::captureBoardPng({}, violet(), 20, path("missing/board.png")));
  EXPECT_FALSE(ui::captureBoardPng({}, violet(), 20, ""));
  const std::string taken = dir.makeDir("board.png");
  EXPECT_FALSE(ui::captureBoardPng({}, violet(), 20, taken));
  EXPECT_EQ(filesIn(dir), std::vector<std::string>{"board.png"});
}

TEST_F(Capture, ReplacesAnOlderFileAndLeavesNothingElse) {
  dir.makeFile("board.png", std::string(1'000'000, 'x'));
  ASSERT_TRUE(ui::captureBoardPng({}, violet(), 40, path()));
  EXPECT_TRUE(samePicture(read(path()).get(), drawn({}, violet(), 40).get()));
  EXPECT_EQ(filesIn(dir), std::vector<std::string>{"board.png"});
}

TEST_F(Capture, NeverWritesIntoTheOlderFile) {
  dir.makeFile("board.png", "older");
  std::ifstream older(path(), std::ios::binary);
  ASSERT_TRUE(ui::captureBoardPng({}, violet(), 40, path()));
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(older), {}), "older");
}

TEST_F(Capture, OnAFullDiskFailsAndLeavesTheOlderFile) {
  dir.makeFile("board.png", "older");
  const std::string result = support::inOwnProcess([this] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit little{.rlim_cur = 1000, .rlim_max = 1000};
    if (setrlimit(RLIMIT_FSIZE, &little) != 0) return "no limit";
    return ui::captureBoardPng({}, violet(), 300, path()) ? "written" : "failed";
  });
  EXPECT_EQ(result, "failed");
  EXPECT_EQ(support::readAll(path()), "older");
  EXPECT_EQ(filesIn(dir), std::vector<std::string>{"board.png"});
}

}  // namespace
