// The gallery, run through the program's stack: which pages and cards it shows for given records and
// pictures, and how it changes the files.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "screens/solve_picture.h"
#include "screens/solved_layout.h"
#include "screens/stack.h"
#include "support/heard.h"
#include "support/picture.h"
#include "ui/scenes.h"

namespace {

using support::kSmallH;
using support::kSmallW;
using test::kBelow;
using test::Stack;

constexpr ui::GameState kGallery = {.kind = ui::ScreenKind::Gallery};
constexpr int kRed = 0xFF0000;
constexpr double kAcceptX = kSmallW * 0.5 + 100;  // the dialog's OK button
constexpr double kCancelX = kSmallW * 0.5 - 100;
constexpr double kButtonsY = kSmallH * 0.5 + 115 - 62 + 21;

store::SolveEntry entryOf(int level, const std::string& shot = "") {
  return {.id = "id" + std::to_string(level), .level = level, .seed = 1, .shot = shot, .stars = 2};
}

ui::CairoSurface redPicture(int w, int h) {
  return support::makePicture(w, h, [](cairo_t* cr) {
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_paint(cr);
  });
}

// The gallery on top of another screen. It has not run a frame yet.
struct GalleryVisit {
  GalleryVisit() : stack(kBelow, kSmallW, kSmallH) { store::ensureDataDirs(); }

  void add(const store::SolveEntry& entry) const { store::recordSolve(entry); }
  void addWithPicture(int level, int w = 64, int h = 64) const {
    const std::string shot = std::to_string(level) + ".png";
    ASSERT_EQ(cairo_surface_write_to_png(redPicture(w, h).get(), stack.data.path("solves/" + shot).c_str()),
              CAIRO_STATUS_SUCCESS);
    add(entryOf(level, shot));
  }
  void enter() {
    ui::Game::instance().push(kGallery);
    stack.harness.frame();
    stack.harness.frame();
    support::heard().clear();
  }
  void leave() { stack.harness.key(SDLK_ESCAPE); }
  bool inGallery() const { return Stack::top().kind == ui::ScreenKind::Gallery; }
  void clickPage(int page) {
    const double w = (kSmallW - 24 - 54) / 10.0;
    stack.harness.click(12 + page * (w + 6) + w / 2, 84);
  }
  static ui::Rect card(int index, double scroll = 0) {
    return screens::galleryGrid(kSmallW, kSmallH, screens::kPagedListTop).card(index, scroll);
  }
  std::uint32_t middleOf(int index) const {
    const ui::Rect rect = card(index);
    return stack.harness.colorAt(static_cast<int>(rect.x + rect.w / 2),
                                 static_cast<int>(rect.y + rect.h / 2));
  }
  // Clicks the upper part of the card, which is always visible.
  void rightClickCard(int index) {
    const ui::Rect rect = card(index);
    stack.harness.rightClick(rect.x + 30, rect.y + 60);
  }
  void frame() { stack.harness.frame(); }

  Stack stack;
};

TEST(Gallery, ShowsThePictureOfARecord) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.enter();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, ShowsTheDealtBoardWhereThePictureFileIsGone) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  std::filesystem::remove(visit.stack.data.path("solves/1.png"));
  visit.enter();
  const auto board = visit.stack.harness.picture();
  EXPECT_NE(visit.middleOf(0), kRed);
  EXPECT_NE(visit.middleOf(0), 0x0C3524U);
  visit.leave();
  store::clearAllSolves();
  visit.add({.id = "other", .level = 1, .seed = 2, .shot = "", .stars = 2});
  visit.enter();
  EXPECT_FALSE(support::samePicture(board.get(), visit.stack.harness.picture().get()))
      << "another deal shows other tiles";
}

// The picture is reduced while the board is painted at its final size, so tile edges may differ. Compares
// only the rim, where the frame is and no tiles are.
TEST(Gallery, ShowsTheDealtBoardInTheFrameOfItsPicture) {
  GalleryVisit visit;
  ASSERT_TRUE(ui::captureBoardPng(mj::createGame(mj::levelToConfig(1).slots, 1), *mj::tableThemeForLevel(1),
                                  screens::kSolvePictureSide, visit.stack.data.path("solves/1.png")));
  visit.add(entryOf(1, "1.png"));
  visit.enter();
  const auto asPicture = visit.stack.harness.picture();
  visit.leave();
  std::filesystem::remove(visit.stack.data.path("solves/1.png"));
  visit.enter();
  const auto asBoard = visit.stack.harness.picture();
  const ui::Rect card = GalleryVisit::card(0);
  const ui::Rect area = screens::solveCardLayout(card.w, card.h).picture;
  const double rim = 0.05 * area.w;
  for (int y = static_cast<int>(card.y + area.y); y < card.y + area.y + area.h / 2; ++y) {
    for (int x = static_cast<int>(card.x + area.x); x < card.x + area.x + rim; ++x) {
      ASSERT_LE(support::channelDifference(support::pixelAt(asPicture.get(), x, y),
                                           support::pixelAt(asBoard.get(), x, y)),
                10)
          << x << ' ' << y;
    }
  }
}

TEST(Gallery, ShowsAPictureFileAsItIsAtTheNextVisit) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.enter();
  visit.leave();
  std::filesystem::remove(visit.stack.data.path("solves/1.png"));
  visit.enter();
  EXPECT_NE(visit.middleOf(0), kRed);
}

TEST(Gallery, ReadsAPictureOnceAVisit) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.enter();
  std::filesystem::remove(visit.stack.data.path("solves/1.png"));
  visit.frame();
  visit.clickPage(1);
  visit.clickPage(0);
  visit.frame();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, WithoutARecordAllPagesAreEmptyAlike) {
  GalleryVisit visit;
  visit.enter();
  for (int page = 0; page < screens::kPages; ++page) {
    visit.clickPage(page);
    visit.rightClickCard(0);
    EXPECT_TRUE(support::heard() == std::vector{audio::Sfx::Click}) << "the chip alone sounds";
    EXPECT_GT(visit.stack.harness.colorAt(kSmallW / 2 - 15, 215), 0xE00000U)
        << "the fan is lighter than any felt";
    support::heard().clear();
  }
}

TEST(Gallery, SortsAPageByLevelAndLeavesOtherPagesOut) {
  GalleryVisit visit;
  visit.add(entryOf(11));
  visit.addWithPicture(3);
  visit.add(entryOf(10));
  visit.add(entryOf(2));
  visit.enter();
  EXPECT_NE(visit.middleOf(0), kRed);
  EXPECT_EQ(visit.middleOf(1), kRed);
}

TEST(Gallery, BeginsOnThePageOfTheProgress) {
  GalleryVisit visit;
  visit.addWithPicture(35);
  store::saveProgress({.currentLevel = 40});
  visit.enter();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, ComesBackToThePageChosenLastWhateverTheProgress) {
  GalleryVisit visit;
  visit.addWithPicture(45);
  visit.enter();
  visit.clickPage(4);
  visit.leave();
  store::saveProgress({.currentLevel = 91});
  visit.enter();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, LeavesByEscapeAndByTheBackButton) {
  GalleryVisit visit;
  visit.enter();
  ASSERT_TRUE(visit.inGallery());
  visit.leave();
  EXPECT_FALSE(visit.inGallery());
  visit.enter();
  visit.stack.harness.click(30, 28);
  EXPECT_FALSE(visit.inGallery());
}

TEST(Gallery, DeletesTheRecordAndItsPictureAfterTheQuestion) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.addWithPicture(2);
  visit.enter();
  visit.rightClickCard(1);
  EXPECT_TRUE(support::heard() == std::vector{audio::Sfx::Click});
  visit.frame();
  EXPECT_EQ(store::listSolves().size(), 2U) << "nothing goes before the answer";
  visit.stack.harness.click(kAcceptX, kButtonsY);
  ASSERT_EQ(store::listSolves().size(), 1U);
  EXPECT_EQ(store::listSolves().front().level, 1);
  EXPECT_FALSE(visit.stack.data.has("solves/2.png"));
  EXPECT_TRUE(visit.stack.data.has("solves/1.png"));
  visit.frame();
  EXPECT_NE(visit.middleOf(1), kRed);
}

// A damaged file may hold two records with one id. The second used to show the first one's picture, and
// deleting it deleted the first.
TEST(Gallery, TellsTwoRecordsOfOneIdAndLevelApart) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.stack.data.write("solves.json", R"([{"id":"same","level":1,"shot":"1.png","seed":1},)"
                                        R"({"id":"same","level":1,"shot":"","seed":2}])");
  visit.enter();
  EXPECT_EQ(visit.middleOf(0), kRed);
  EXPECT_NE(visit.middleOf(1), kRed);
  visit.rightClickCard(1);
  visit.frame();
  visit.stack.harness.click(kAcceptX, kButtonsY);
  ASSERT_EQ(store::listSolves().size(), 1U);
  EXPECT_EQ(store::listSolves().front().seed, 1U);
  visit.frame();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, ShowsAfterADeletionWhatHasMovedUp) {
  GalleryVisit visit;
  visit.addWithPicture(2);
  visit.add(entryOf(1));
  visit.enter();
  EXPECT_NE(visit.middleOf(0), kRed);
  visit.rightClickCard(0);
  visit.frame();
  visit.stack.harness.click(kAcceptX, kButtonsY);
  visit.frame();
  EXPECT_EQ(visit.middleOf(0), kRed);
}

TEST(Gallery, DeletesNothingWhenTheQuestionIsCancelled) {
  for (const bool byKey : {false, true}) {
    GalleryVisit visit;
    visit.addWithPicture(1);
    visit.enter();
    visit.rightClickCard(0);
    if (byKey) {
      visit.stack.harness.key(SDLK_ESCAPE);
    } else {
      visit.stack.harness.click(kCancelX, kButtonsY);
    }
    EXPECT_TRUE(visit.inGallery()) << "Escape goes to the question alone";
    visit.stack.harness.moveTo(0, kSmallH - 1);
    EXPECT_EQ(visit.middleOf(0), kRed) << "without a veil over it";
    EXPECT_TRUE(visit.stack.data.has("solves/1.png"));
    visit.leave();
  }
}

TEST(Gallery, HearsNothingBelowTheQuestion) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.addWithPicture(2);
  visit.enter();
  visit.rightClickCard(0);
  visit.rightClickCard(1);
  visit.stack.harness.click(30, 28);
  visit.clickPage(5);
  EXPECT_TRUE(visit.inGallery());
  visit.stack.harness.click(kAcceptX, kButtonsY);
  ASSERT_EQ(store::listSolves().size(), 1U);
  EXPECT_EQ(store::listSolves().front().level, 2) << "what was asked about goes";
  visit.frame();
  EXPECT_EQ(visit.middleOf(0), kRed) << "on the same page";
}

TEST(Gallery, CardsReactOnlyWhereTheyAreSeen) {
  GalleryVisit visit;
  for (int level = 1; level <= 6; ++level) visit.add(entryOf(level));
  visit.enter();
  visit.stack.harness.wheel(300, 300, -1);
  visit.stack.harness.rightClick(100, 110);
  visit.stack.harness.rightClick(100, kSmallH - 60);
  EXPECT_TRUE(support::heard().empty());
  visit.stack.harness.rightClick(100, 116);
  EXPECT_EQ(support::heard().size(), 1U);
}

TEST(Gallery, ScrollsToTheLastCardAndNoFurther) {
  GalleryVisit visit;
  for (int level = 1; level <= 3; ++level) visit.add(entryOf(level));
  visit.addWithPicture(4);
  visit.enter();
  visit.stack.harness.wheel(300, 300, -1000);
  const screens::CardGrid grid = screens::galleryGrid(kSmallW, kSmallH, screens::kPagedListTop);
  const ui::Rect last = grid.card(3, grid.contentHeight(4) - grid.view.h);
  EXPECT_NEAR(last.y + last.h, kSmallH - 64, 1e-9);
  EXPECT_EQ(
      visit.stack.harness.colorAt(static_cast<int>(last.x + last.w / 2), static_cast<int>(last.y + 200)),
      kRed);
}

TEST(Gallery, LightsTheCardUnderThePointer) {
  GalleryVisit visit;
  visit.addWithPicture(1);
  visit.enter();
  const ui::Rect card = GalleryVisit::card(0);
  visit.stack.harness.moveTo(card.x + 100, card.y + 100);
  EXPECT_NE(visit.middleOf(0), kRed);
  visit.stack.harness.moveTo(5, 300);
  EXPECT_EQ(visit.middleOf(0), kRed);
}

class SolvePicture : public testing::Test {
 protected:
  std::string file(const std::string& bytes) const { return dir.makeFile("a.png", bytes); }
  std::string good() const {
    std::string path = dir.path("good.png");
    EXPECT_EQ(cairo_surface_write_to_png(redPicture(40, 20).get(), path.c_str()), CAIRO_STATUS_SUCCESS);
    return path;
  }

  support::TempDir dir;
};

TEST_F(SolvePicture, IsMadeSmallerToFitASquareButNeverLarger) {
  const auto half = screens::loadSolvePicture(good(), 20);
  ASSERT_TRUE(half);
  EXPECT_EQ(cairo_image_surface_get_width(half.get()), 20);
  EXPECT_EQ(cairo_image_surface_get_height(half.get()), 10);
  EXPECT_EQ(support::pixelAt(half.get(), 0, 0), 0xFFFF0000U);
  const auto whole = screens::loadSolvePicture(good(), 400);
  ASSERT_TRUE(whole);
  EXPECT_EQ(cairo_image_surface_get_width(whole.get()), 40);
}

TEST_F(SolvePicture, IsMissingWhenItsFileIsCutOffAnywhere) {
  const std::string bytes = support::readAll(good());
  for (std::size_t length = 0; length < bytes.size(); ++length)
    EXPECT_FALSE(screens::loadSolvePicture(file(bytes.substr(0, length)), 20)) << length;
}

TEST_F(SolvePicture, IsMissingWhenItIsNoPng) {
  std::string bytes = support::readAll(good());
  bytes[1] = 'p';
  EXPECT_FALSE(screens::loadSolvePicture(file(bytes), 20));
  EXPECT_FALSE(screens::loadSolvePicture("", 20));
  EXPECT_FALSE(screens::loadSolvePicture(dir.path(), 20));
  EXPECT_FALSE(screens::loadSolvePicture("/dev/zero", 20));
}

TEST_F(SolvePicture, IsMissingBeyond4096PixelsOnASide) {
  const std::string path = dir.path("large.png");
  for (const auto& [w, h, there] : {std::tuple(4096, 1, true), {4097, 1, false}, {1, 4097, false}}) {
    ASSERT_EQ(cairo_surface_write_to_png(redPicture(w, h).get(), path.c_str()), CAIRO_STATUS_SUCCESS);
    EXPECT_EQ(screens::loadSolvePicture(path, 20) != nullptr, there) << w << " x " << h;
  }
}

class GalleryLayout : public testing::TestWithParam<std::tuple<int, int, int>> {
 protected:
  const double w = std::get<0>(GetParam());
  const double h = std::get<1>(GetParam());
  const screens::CardGrid grid = screens::galleryGrid(w, h, screens::kPagedListTop);
};

TEST_P(GalleryLayout, FillsTheWidthWithEvenGaps) {
  EXPECT_EQ(grid.columns, std::get<2>(GetParam()));
  const ui::Rect first = grid.card(0, 0);
  const ui::Rect last = grid.card(grid.columns - 1, 0);
  EXPECT_EQ(first.x, 12);
  EXPECT_NEAR(last.x + last.w, w - 12, 1e-9);
  EXPECT_NEAR(grid.card(1, 0).x - first.x - first.w, 10, 1e-9);
  EXPECT_NEAR(grid.card(grid.columns, 0).y - first.y - first.h, 10, 1e-9);
  EXPECT_EQ(grid.cardH, grid.cardW + 74);
}

TEST_P(GalleryLayout, LeavesTheHintAStripBelowTheList) {
  EXPECT_EQ(grid.view.y, 114);
  EXPECT_EQ(grid.view.y + grid.view.h, h - 64);
  EXPECT_GT(screens::galleryHintY(h), h - 64);
  EXPECT_LT(screens::galleryHintY(h) + 12, h);
}

TEST_P(GalleryLayout, KeepsTextsAndPictureApart) {
  const screens::SolveCardLayout card = screens::solveCardLayout(grid.cardW, grid.cardH);
  EXPECT_LT(card.starsY + 6, card.picture.y);
  EXPECT_LT(card.secondTop + 16, card.picture.y);
  EXPECT_EQ(card.picture.x, 4);
  EXPECT_GE(card.picture.h, card.picture.w) << "a square picture is as wide as the card";
  EXPECT_EQ(card.picture.y + card.picture.h, grid.cardH - 4);
}

INSTANTIATE_TEST_SUITE_P(Window, GalleryLayout,
                         testing::Values(std::tuple(640, 480, 2), std::tuple(779, 600, 3),
                                         std::tuple(1100, 760, 4), std::tuple(1920, 1080, 5),
                                         std::tuple(3840, 2160, 5)));

// --- playing a deal again ---

void keepGameOf(int level, std::uint32_t deal) {
  store::saveGame({.valid = true,
                   .level = level,
                   .seed = deal,
                   .game = mj::createGame(mj::levelToConfig(level).slots, deal),
                   .elapsedMs = 60000,
                   .savedAt = 1});
}

// A gallery with two records: level 3 with deal 4711, and level 5 with deal 7.
struct AgainVisit : GalleryVisit {
  AgainVisit() {
    add({.id = "a", .level = 3, .seed = 4711, .shot = "", .stars = 2});
    add({.id = "b", .level = 5, .seed = 7, .shot = "", .stars = 2});
  }

  // The screen below has saved its game on the way. These replace it by no game or by the given one.
  void enter() {
    GalleryVisit::enter();
    store::clearGame();
  }
  void enterWith(int level, std::uint32_t deal) {
    enter();
    keepGameOf(level, deal);
  }
  void click(int index) {
    const ui::Rect rect = card(index);
    stack.harness.click(rect.x + 30, rect.y + 60);
  }
  void clickFast(int index) {
    stack.harness.next().doubleClicked = true;
    click(index);
  }
  void doubleClick(int index) {
    click(index);
    clickFast(index);
  }
  static bool plays(int level, std::uint32_t deal) {
    const ui::GameState& top = Stack::top();
    return top.kind == ui::ScreenKind::Playing && top.level == level && top.deal == deal;
  }
};

TEST(Again, DoubleClickPlaysTheVeryDealOfTheCard) {
  AgainVisit visit;
  visit.enter();
  visit.doubleClick(0);
  EXPECT_TRUE(AgainVisit::plays(3, 4711));
  EXPECT_EQ(Stack::depth(), 3U) << "and leads back to the gallery";
  EXPECT_TRUE(support::heard() == std::vector{audio::Sfx::Click});
}

TEST(Again, EnterPlaysIt) {
  AgainVisit visit;
  visit.enter();
  for (int i = 0; i < 1 + 10 + 2; ++i) visit.stack.harness.key(SDLK_TAB);
  visit.stack.harness.key(SDLK_RETURN);
  EXPECT_TRUE(AgainVisit::plays(5, 7));
}

TEST(Again, SingleClicksDoNothing) {
  AgainVisit visit;
  visit.enter();
  visit.click(0);
  visit.click(0);
  EXPECT_TRUE(visit.inGallery());
  EXPECT_TRUE(support::heard().empty());
}

TEST(Again, BothClicksAreOnTheSameCard) {
  AgainVisit visit;
  visit.enter();
  visit.click(0);
  visit.clickFast(1);
  EXPECT_TRUE(visit.inGallery());
  visit.clickPage(0);
  visit.clickFast(1);
  EXPECT_TRUE(visit.inGallery()) << "the first was on a page";
}

TEST(Again, AnotherGameThatWaitsIsNotGivenUp) {
  AgainVisit visit;
  for (const auto& [level, deal] : {std::pair{9, 4711U}, std::pair{3, 5U}}) {
    visit.enterWith(level, deal);
    visit.doubleClick(0);
    EXPECT_TRUE(visit.inGallery());
    EXPECT_TRUE(support::heard() == std::vector{audio::Sfx::Error});
    EXPECT_EQ(store::loadGame().level, level);
    EXPECT_EQ(store::loadGame().seed, deal);
    visit.leave();
  }
}

TEST(Again, GameOfTheSameDealIsPlayedOn) {
  AgainVisit visit;
  visit.enterWith(3, 4711);
  visit.doubleClick(0);
  EXPECT_TRUE(AgainVisit::plays(3, 4711));
  EXPECT_EQ(store::loadGame().elapsedMs, 60000);
}

TEST(Again, GalleryAfterTheWinIsTheOneBefore) {
  AgainVisit visit;
  visit.enter();
  ui::Game::instance().push({.kind = ui::ScreenKind::Solved, .level = 3, .deal = 4711, .tiles = 36});
  visit.frame();
  visit.frame();
  const screens::SolvedLayout layout = screens::solvedLayout(kSmallW, kSmallH);
  const ui::Rect toGallery = screens::solvedButtons(layout.buttons, layout.wide)[1];
  visit.stack.harness.click(toGallery.x + 9, toGallery.y + 9);
  EXPECT_TRUE(visit.inGallery());
  EXPECT_EQ(Stack::depth(), 2U);
}

// --- by keyboard ---

TEST(Gallery, DeleteAsksAsTheRightClickDoes) {
  AgainVisit visit;
  visit.enter();
  for (int i = 0; i < 1 + 10 + 1; ++i) visit.stack.harness.key(SDLK_TAB);
  visit.stack.harness.key(SDLK_DELETE);
  EXPECT_TRUE(support::heard() == std::vector{audio::Sfx::Click});
  visit.frame();
  visit.stack.harness.key(SDLK_RETURN);
  visit.frame();
  EXPECT_EQ(store::listSolves().size(), 2U) << "Enter cancels";
  visit.stack.harness.key(SDLK_DELETE);
  visit.frame();
  visit.stack.harness.key(SDLK_TAB);
  visit.stack.harness.key(SDLK_TAB);
  visit.stack.harness.key(SDLK_RETURN);
  ASSERT_EQ(store::listSolves().size(), 1U);
  EXPECT_EQ(store::listSolves()[0].level, 5);
}

}  // namespace
