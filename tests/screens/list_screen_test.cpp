// What the screens behind the menu have in common: scrolling, leaving, and caching of what they paint.

#include "screens/list_screen.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "screens/card.h"
#include "screens/screens.h"
#include "screens/stack.h"
#include "support/heard.h"
#include "support/picture.h"
#include "ui/felt.h"
#include "ui/gpu.h"

namespace {

using support::Drawing;
using support::kUsualH;
using support::kUsualW;
using support::ScreenHarness;
using test::kBelow;
using test::Stack;
using ui::ScreenKind;

// A player on level 6 who has solved the first five levels.
void writeFiles() {
  store::ensureDataDirs();
  store::saveProgress({.currentLevel = 6});
  for (int level = 1; level <= 5; ++level) {
    const std::string number = std::to_string(level);
    store::recordBest(level, {.stars = 2, .aids = 1, .elapsedMs = 60000});
    store::SolveEntry entry;
    entry.id = "id" + number;
    entry.level = level;
    entry.seed = 1;
    entry.stars = 2;
    if (level > 1) entry.shot = number + ".png";
    const ui::CairoSurface shot = support::makePicture(640, 640, [](cairo_t* cr) {
      cairo_set_source_rgb(cr, 0.5, 0.1, 0.1);
      cairo_paint(cr);
    });
    if (level > 1) cairo_surface_write_to_png(shot.get(), store::shotPath(entry).c_str());
    store::recordSolve(entry);
  }
}

struct Kind {
  std::string name;
  ScreenKind kind;
  std::unique_ptr<ui::Screen> (*make)();
  double listTop;  // top of the scrolling list
};

class ListScreens : public testing::TestWithParam<Kind> {
 protected:
  struct Show {
    Show(std::unique_ptr<ui::Screen> what, Drawing drawing, int w, int h)
        : screen(std::move(what)), harness([this](ui::Ctx& ctx) { screen->update(ctx); }, w, h, drawing) {
      harness.moveTo(-1, -1);
    }
    std::unique_ptr<ui::Screen> screen;
    ScreenHarness harness;
  };

  std::unique_ptr<Show> show(Drawing drawing, int w = kUsualW, int h = kUsualH) const {
    return std::make_unique<Show>(GetParam().make(), drawing, w, h);
  }

  support::DataHome data;
};

INSTANTIATE_TEST_SUITE_P(All, ListScreens,
                         testing::Values(Kind{"LevelSelect", ScreenKind::LevelSelect,
                                              screens::makeLevelSelect, 114},
                                         Kind{"Gallery", ScreenKind::Gallery, screens::makeGallery, 114},
                                         Kind{"Settings", ScreenKind::Settings, screens::makeSettings, 56},
                                         Kind{"About", ScreenKind::About, screens::makeAbout, 56},
                                         Kind{"Licences", ScreenKind::Licenses, screens::makeLicenses, 56}),
                         [](const auto& param) { return param.param.name; });

TEST_P(ListScreens, PaintNothingAfterTheirFirstFrame) {
  writeFiles();
  const auto shown = show(Drawing::Textures);
  EXPECT_GT(ui::gpuPaints(), 0);
  for (int i = 0; i < 100; ++i) {
    shown->harness.frame();
    ASSERT_EQ(ui::gpuPaints(), 0) << "frame " << i;
  }
}

TEST_P(ListScreens, PaintNothingWhenTheyComeBackToAPlaceByScrolling) {
  writeFiles();
  const auto shown = show(Drawing::Textures, 640, 300);
  const auto thereAndBack = [&] {
    int paints = 0;
    for (const int step : {-1, 1}) {
      for (int i = 0; i < 40; ++i) {
        shown->harness.wheel(320, 150, step);
        paints += ui::gpuPaints();
      }
    }
    return paints;
  };
  thereAndBack();
  EXPECT_EQ(thereAndBack(), 0);
}

// The software renderer draws translucent edges slightly darker, such as the rounded corners of cards.
void expectSamePictureButForCorners(cairo_surface_t* a, cairo_surface_t* b) {
  constexpr double kCorners = 0.001;
  EXPECT_TRUE(support::samePicture(a, b, 32));
  int differing = 0;
  const int w = cairo_image_surface_get_width(a);
  const int h = cairo_image_surface_get_height(a);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      if (support::channelDifference(support::pixelAt(a, x, y), support::pixelAt(b, x, y)) > 2) ++differing;
    }
  }
  EXPECT_LE(differing, kCorners * w * h);
}

TEST_P(ListScreens, LookTheSameCopiedAndDrawn) {
  writeFiles();
  for (const auto& [w, h] : {std::pair(640, 480), std::pair(1100, 760), std::pair(1277, 731)}) {
    const ui::CairoSurface copied = show(Drawing::Textures, w, h)->harness.picture();
    const ui::CairoSurface drawn = show(Drawing::Cairo, w, h)->harness.picture();
    expectSamePictureButForCorners(copied.get(), drawn.get());
  }
}

TEST_P(ListScreens, ShowNothingOfWhatScrollsAboveTheirList) {
  writeFiles();
  for (const Drawing drawing : {Drawing::Textures, Drawing::Cairo}) {
    const auto shown = show(drawing, 640, 300);
    const auto above = [&](const ui::CairoSurface& picture) {
      return support::makePicture(640, static_cast<int>(GetParam().listTop), [&](cairo_t* cr) {
        cairo_set_source_surface(cr, picture.get(), 0, 0);
        cairo_paint(cr);
      });
    };
    shown->harness.moveTo(2, 200);
    const ui::CairoSurface before = shown->harness.picture();
    shown->harness.wheel(2, 200, -1);
    const ui::CairoSurface after = shown->harness.picture();
    EXPECT_FALSE(support::samePicture(before.get(), after.get())) << "it scrolls";
    EXPECT_TRUE(support::samePicture(above(before).get(), above(after).get()));
  }
}

// A screen on top of another, after its first frame.
struct OpenedList : Stack {
  explicit OpenedList(ScreenKind kind, int w = kUsualW, int h = kUsualH) : Stack(kBelow, w, h) {
    writeFiles();
    ui::Game::instance().push({.kind = kind});
    harness.frame();
    harness.frame();
    harness.moveTo(-1, -1);
    support::heard().clear();
  }
};

TEST_P(ListScreens, AreDrawnToTheEndWhenTheyAreLeft) {
  for (const bool byKey : {true, false}) {
    OpenedList opened(GetParam().kind);
    opened.harness.moveTo(30, 30);
    const ui::CairoSurface before = opened.harness.picture();
    if (byKey) {
      opened.harness.key(SDLK_ESCAPE);
    } else {
      opened.harness.click(30, 30);
    }
    EXPECT_EQ(Stack::depth(), 1U);
    EXPECT_TRUE(support::samePicture(before.get(), opened.harness.picture().get())) << byKey;
  }
}

// No frame mixes one page's felt with another page's cards.
TEST(ListScreen, IsDrawnToTheEndWhenAPageIsChosenOrALevelBegun) {
  constexpr double kChip = 12 + 3 * 102 + 48;
  for (const ScreenKind kind : {ScreenKind::LevelSelect, ScreenKind::Gallery}) {
    OpenedList opened(kind);
    opened.harness.moveTo(kChip, 84);
    const ui::CairoSurface before = opened.harness.picture();
    opened.harness.click(kChip, 84);
    EXPECT_TRUE(support::samePicture(before.get(), opened.harness.picture().get()));
    opened.harness.frame();
    EXPECT_FALSE(support::samePicture(before.get(), opened.harness.picture().get())) << "another page";
  }
  OpenedList levels(ScreenKind::LevelSelect);
  levels.harness.click(12 + 48, 84);
  levels.harness.moveTo(60, 300);
  const ui::CairoSurface before = levels.harness.picture();
  levels.harness.click(60, 300);
  EXPECT_EQ(Stack::depth(), 3U);
  EXPECT_TRUE(support::samePicture(before.get(), levels.harness.picture().get()));
}

TEST(ListScreen, AClickInTheFrameInWhichItIsLeftDoesNothing) {
  OpenedList opened(ScreenKind::LevelSelect);
  opened.harness.next().keys = {SDLK_ESCAPE};
  opened.harness.click(100, 200);
  EXPECT_EQ(Stack::depth(), 1U);
  EXPECT_THAT(support::heard(), testing::IsEmpty());
}

TEST(ListScreen, IsScrolledByTheWheelBesideItsColumn) {
  OpenedList opened(ScreenKind::Licenses);
  const ui::CairoSurface before = opened.harness.picture();
  opened.harness.wheel(5, 300, -1);
  EXPECT_FALSE(support::samePicture(before.get(), opened.harness.picture().get()));
}

// --- page chips ---

// At 640 x 480, where the chips are smallest.
TEST(PageChips, TellThePageWhereThePlayerIsFromAllOthersOnAnyFelt) {
  constexpr std::uint32_t kGold = 0xE8B84B;
  for (int shown = 0; shown < screens::kPages; ++shown) {
    const int marked = (shown + 3) % screens::kPages;
    ScreenHarness harness([&](ui::Ctx& ctx) {
      ui::drawFelt(ctx, mj::tableThemeForStage(shown), false);
      screens::pageChips(ctx, shown, marked);
    });
    harness.moveTo(-1, -1);
    const ui::CairoSurface picture = harness.picture();
    // A pixel of the chip's upper edge, or below it one inside the chip that no letter covers.
    const auto at = [&](int page, int y) {
      return support::pixelAt(picture.get(), 12 + page * 62 + 28, y) & 0xFFFFFF;
    };
    for (int page = 0; page < screens::kPages; ++page) {
      EXPECT_EQ(at(page, 65) == kGold, page == marked || page == shown) << "felt " << shown << ", " << page;
      EXPECT_EQ(at(page, 73) == kGold, page == shown) << "felt " << shown << ", " << page;
    }
  }
}

// --- layout ---

TEST(ListLayout, AColumnsViewLiesBetweenHeaderAndFooter) {
  const ui::Rect view = screens::listView(1100, 760);
  EXPECT_EQ(view.y, 56);
  EXPECT_EQ(view.y + view.h, 760 - 46);
  EXPECT_EQ(screens::listView(640, 100).h, 80) << "in the lowest window too";
}

TEST(ListLayout, WhatOnlyTouchesTheViewIsNotSeen) {
  const ui::Rect view = {0, 100, 500, 50};
  EXPECT_FALSE(screens::isInView({0, 60, 10, 40}, view));
  EXPECT_TRUE(screens::isInView({0, 60, 10, 41}, view));
  EXPECT_TRUE(screens::isInView({0, 149, 10, 10}, view));
  EXPECT_FALSE(screens::isInView({0, 150, 10, 10}, view));
}

TEST(CardGrid, IsAsHighAsItsRows) {
  screens::CardGrid grid = screens::cardGrid({0, 100, 1000, 400}, 240, 10);
  grid.cardH = 100;
  EXPECT_EQ(grid.columns, 4);
  EXPECT_EQ(grid.contentHeight(0), 0);
  EXPECT_EQ(grid.contentHeight(4), 100);
  EXPECT_EQ(grid.contentHeight(5), 210);
  EXPECT_EQ(grid.card(4, 30).y, 100 + 110 - 30);
}

// --- the plate of a card ---

TEST(Card, HasItsOutlineWithinItsRectangle) {
  const ui::CairoSurface picture =
      support::makePicture(60, 40, [](cairo_t* cr) { screens::drawCardPlate(cr, {10, 10, 40, 20}); });
  EXPECT_EQ(support::pixelAt(picture.get(), 30, 9), 0U);
  EXPECT_EQ(support::pixelAt(picture.get(), 30, 10), 0xFF235F47);
  EXPECT_EQ(support::pixelAt(picture.get(), 30, 11), 0xFF16523C);
  EXPECT_EQ(support::pixelAt(picture.get(), 30, 29), 0xFF235F47);
  EXPECT_EQ(support::pixelAt(picture.get(), 30, 30), 0U);
}

}  // namespace
