// The level select screen: which levels are open, what a click does to the screen, the files and the sound,
// and the layout of the cards.

#include "screens/level_grid.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "resources/i18n.h"
#include "rules/engine.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/list_screen.h"
#include "screens/miniature.h"
#include "screens/rects.h"
#include "screens/screens.h"
#include "screens/stack.h"
#include "storage/storage.h"
#include "support/file_reads.h"
#include "support/heard.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/gpu.h"

namespace {

using audio::Sfx;
using screens::CardGrid;
using screens::LevelCardLayout;
using support::kUsualH;
using support::kUsualW;
using support::Point;
using test::inside;
using test::kBelow;
using test::kRounding;
using test::overlap;
using test::Shows;
using test::Stack;
using testing::ElementsAre;
using testing::IsEmpty;
using ui::Rect;
using ui::ScreenKind;

constexpr ui::GameState kLevelSelect = {.kind = ScreenKind::LevelSelect};

Point middleOf(const Rect& rect) { return {rect.x + rect.w / 2, rect.y + rect.h / 2}; }

// The level select screen on top of another one, after its first frame.
struct LevelVisit {
  explicit LevelVisit(int progress = 1) {
    store::saveProgress({.currentLevel = progress});
    open();
  }

  // Opens the screen and clears the record of sounds.
  void open() {
    ui::Game::instance().resetTo(kBelow);
    stack.harness.frame(0);
    ui::Game::instance().push(kLevelSelect);
    stack.harness.frame(0);
    stack.harness.frame(0);
    stack.harness.moveTo(-1, -1);
    support::heard().clear();
  }

  void click(const Point& p) { stack.harness.click(p.x, p.y); }
  // The card at this index on its page, at this scroll position.
  Rect card(int i, double scroll = 0) const { return grid.card(i, scroll); }
  void clickCard(int i) { click(middleOf(card(i))); }
  void clickChip(int page) { click({12 + 102.0 * page + 48, 84}); }

  // The page shown. Starts the page's first level to find out.
  int pageShown() {
    clickCard(0);
    return (Stack::top().level - 1) / 10;
  }

  Stack stack{kBelow, kUsualW, kUsualH};
  CardGrid grid = screens::levelGrid(kUsualW, kUsualH);
};

void saveGameOf(int level) {
  const auto seed = static_cast<std::uint32_t>(level);
  store::saveGame({.level = level,
                   .seed = seed,
                   .game = mj::createGame(mj::levelToConfig(level).slots, seed),
                   .elapsedMs = 1000});
}

TEST(LevelSelect, HasOnlyTheFirstLevelOpenAtAFirstStart) {
  LevelVisit visit;
  for (int i = 1; i < 8; ++i) {
    const Rect card = visit.card(i);
    visit.click({card.x + 20, card.y + 20});
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::LevelSelect, 0, 0)) << "level " << i + 1;
  }
  visit.clickCard(0);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
}

TEST(LevelSelect, StartsAnOpenLevelFromItsFirstDeal) {
  LevelVisit visit(17);
  visit.clickCard(6 - 1);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 16, 16));
  EXPECT_EQ(Stack::depth(), 3U);
  EXPECT_THAT(support::heard(), ElementsAre(Sfx::Click));
}

TEST(LevelSelect, OpensTheLevelThatThePlayerHasComeToAndNoHigherOne) {
  LevelVisit visit(6);
  visit.clickCard(6);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::LevelSelect, 0, 0));
  visit.clickCard(5);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 6, 6));
}

TEST(LevelSelect, RefusesALockedLevelAudiblyAndKeepsTheSavedGame) {
  LevelVisit visit(3);
  saveGameOf(2);
  visit.clickCard(3);
  EXPECT_THAT(support::heard(), ElementsAre(Sfx::Error));
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::LevelSelect, 0, 0));
  EXPECT_TRUE(store::loadGame().valid);
}

TEST(LevelSelect, DiscardsTheSavedGameWhicheverLevelIsPicked) {
  for (const int saved : {2, 3}) {
    LevelVisit visit(3);
    saveGameOf(saved);
    ASSERT_TRUE(visit.stack.data.has("save.json"));
    visit.clickCard(2);
    EXPECT_FALSE(store::loadGame().valid) << "a game of level " << saved;
  }
}

TEST(LevelSelect, GoesBackByButtonAndByEscape) {
  {
    LevelVisit visit;
    visit.stack.harness.key(SDLK_ESCAPE);
    EXPECT_EQ(Stack::depth(), 1U);
  }
  LevelVisit visit;
  visit.click({30, 28});
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(LevelSelect, ShowsAtFirstThePageThatThePlayerHasComeTo) {
  LevelVisit visit(34);
  EXPECT_EQ(visit.pageShown(), 3);
}

TEST(LevelSelect, ShowsThePageWhoseChipIsClicked) {
  LevelVisit visit(100);
  for (const int page : {0, 7, 9}) {
    visit.clickChip(page);
    EXPECT_EQ(visit.pageShown(), page);
    visit.open();
  }
}

TEST(LevelSelect, ShowsThePageLastChosenWhenItIsOpenedAgain) {
  LevelVisit visit(95);
  visit.clickChip(2);
  visit.stack.harness.key(SDLK_ESCAPE);
  store::saveProgress({.currentLevel = 100});
  visit.open();
  EXPECT_EQ(visit.pageShown(), 2);
}

TEST(LevelSelect, BeginsEachPageAtItsTop) {
  LevelVisit visit(100);
  visit.stack.harness.wheel(550, 400, -3);
  visit.clickChip(4);
  const Rect card = visit.card(0);
  visit.click({card.x + 20, card.y + 5});
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 41, 41));
}

TEST(LevelSelect, MovesItsCardsWithTheWheelAsFarAsTheLastRow) {
  LevelVisit visit(10);
  visit.stack.harness.wheel(550, 400, -100);
  const double most = visit.grid.contentHeight(10) - visit.grid.view.h;
  ASSERT_GT(most, 0);
  const Rect last = visit.card(9, most);
  EXPECT_EQ(last.y + last.h, visit.grid.view.y + visit.grid.view.h);
  visit.click({last.x + 20, last.y + last.h - 5});
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 10, 10));
}

TEST(LevelSelect, ItsCardsAreClickedOnlyWhereTheyAreSeen) {
  LevelVisit visit(100);
  visit.clickChip(0);
  support::heard().clear();
  // The list is clipped. Unclipped, the first click would hit the second row, and after scrolling the second
  // click would hit the first row.
  visit.click({100, visit.grid.view.y + visit.grid.view.h + 3});
  visit.stack.harness.wheel(550, 400, -1);
  visit.click({100, visit.grid.view.y - 4});
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::LevelSelect, 0, 0));
  EXPECT_THAT(support::heard(), IsEmpty());
  visit.click({100, visit.grid.view.y + 1});
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
}

TEST(LevelSelect, TakesNoNoticeOfAClickBetweenTheCards) {
  LevelVisit visit(10);
  visit.click({visit.card(0).x + visit.grid.cardW + 6, 300});
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::LevelSelect, 0, 0));
  EXPECT_THAT(support::heard(), IsEmpty());
}

// --- look ---

// The screen alone, drawn with cairo. Write the player's files before opening it.
class LevelSelectView : public testing::Test {
 protected:
  void show(int progress) {
    store::saveProgress({.currentLevel = progress});
    reopen();
  }
  void reopen() {
    screen = screens::makeLevelSelect();
    harness.moveTo(-1, -1);
  }
  std::uint32_t at(const Point& p) const {
    return harness.colorAt(static_cast<int>(p.x), static_cast<int>(p.y));
  }
  // A point on the card's plate with nothing drawn over it.
  Point plate(int i) const {
    const Rect card = grid.card(i, 0);
    return {card.x + card.w / 2, card.y + card.h - 6};
  }
  Point firstStar(int i) const {
    const LevelCardLayout layout = screens::levelCardLayout(grid.card(i, 0));
    return {layout.starsX - 2.5 * screens::kCardStarRadius, layout.starsY};
  }

  support::DataHome data;
  std::unique_ptr<ui::Screen> screen;
  support::ScreenHarness harness{[this](ui::Ctx& ctx) { screen->update(ctx); }, kUsualW, kUsualH};
  CardGrid grid = screens::levelGrid(kUsualW, kUsualH);
};

TEST_F(LevelSelectView, VeilsLockedCards) {
  show(2);
  EXPECT_EQ(at(plate(1)), 0x16523CU);
  EXPECT_LE(support::channelDifference(at(plate(2)), 0x103F2E), 1);
}

TEST_F(LevelSelectView, PutsAPadlockInTheMiddleOfLockedCards) {
  show(1);
  for (int i = 1; i < 4; ++i) {
    const Point middle = middleOf(grid.card(i, 0));
    const std::uint32_t body = at({middle.x, middle.y + 8});
    EXPECT_LE(support::channelDifference(body, 0xA6C2B1), 22) << std::hex << body;
  }
}

TEST_F(LevelSelectView, ShowsForAMomentThatALockedCardWasRefused) {
  show(1);
  const std::uint32_t open = at(plate(0));
  const std::uint32_t locked = at(plate(1));
  harness.click(plate(1).x, plate(1).y);
  harness.frame();
  EXPECT_GE(support::channelDifference(at(plate(1)), locked), 40);
  EXPECT_EQ(at(plate(0)), open);
  EXPECT_EQ(at(plate(2)), locked);
  harness.frame(0.5);
  harness.frame();
  EXPECT_EQ(at(plate(1)), locked);
}

TEST_F(LevelSelectView, LightsUpTheOpenCardUnderThePointer) {
  show(1);
  const std::uint32_t locked = at(plate(1));
  harness.moveTo(plate(0).x, plate(0).y);
  EXPECT_LE(support::channelDifference(at({plate(0).x + 20, plate(0).y}), 0x23583D), 1);
  harness.moveTo(plate(1).x, plate(1).y);
  EXPECT_EQ(at(plate(0)), 0x16523CU);
  EXPECT_EQ(at(plate(1)), locked);
}

TEST_F(LevelSelectView, LightsUpNoCardFromOutsideTheList) {
  show(100);
  harness.click(60, 84);
  harness.moveTo(100, grid.view.y + grid.view.h + 3);
  EXPECT_EQ(at(plate(0)), 0x16523CU);
  EXPECT_EQ(at({100, grid.card(4, 0).y + 6}), 0x16523CU);
}

TEST_F(LevelSelectView, ShowsStarsWhereALevelWasSolved) {
  store::saveProgress({.currentLevel = 3});
  store::recordBest(1, {.stars = 1, .aids = 4, .elapsedMs = 1000});
  reopen();
  EXPECT_LE(support::channelDifference(at(firstStar(0)), 0xF0C14A), 2);
  EXPECT_EQ(at(firstStar(1)), 0x16523CU);
}

TEST_F(LevelSelectView, ShowsTheBestResultsOfThePageThatIsChosen) {
  store::saveProgress({.currentLevel = 20});
  store::recordBest(11, {.stars = 3, .aids = 0, .elapsedMs = 1000});
  reopen();
  harness.click(60, 84);
  harness.frame();
  EXPECT_EQ(at(firstStar(0)), 0x16523CU);
  harness.click(162, 84);
  harness.frame();
  EXPECT_LE(support::channelDifference(at(firstStar(0)), 0xF0C14A), 2);
}

TEST_F(LevelSelectView, ReadsNoFileBetweenTheFrames) {
  show(1);
  store::saveProgress({.currentLevel = 5});
  store::recordBest(1, {.stars = 3, .aids = 0, .elapsedMs = 1000});
  const ui::CairoSurface before = harness.picture();
  harness.frame();
  EXPECT_TRUE(support::samePicture(harness.picture().get(), before.get()));
}

// The file used to be read for every card.
TEST_F(LevelSelectView, ReadsTheProgressOnceAndNotForEachCard) {
  store::saveProgress({.currentLevel = 20});
  support::FileReads reads(data.path("progress.json"));
  reopen();
  EXPECT_EQ(reads.count(), 1);
  harness.click(60, 84);
  harness.click(162, 84);
  EXPECT_EQ(reads.count(), 0);
}

// As while the edge of a large window is dragged. Both scales give the same size in device pixels.
TEST_F(LevelSelectView, PaintsItsMiniaturesAnewForEveryScale) {
  ui::gpuSetScale(1.499);
  show(7);
  ui::gpuSetScale(1.5);
  harness.frame();
  const ui::CairoSurface rescaled = harness.picture();
  reopen();
  EXPECT_TRUE(support::samePicture(rescaled.get(), harness.picture().get()));
  ui::gpuSetScale(1);
}

TEST_F(LevelSelectView, LiesOnTheFeltOfItsPage) {
  show(100);
  for (const int page : {0, 1, 8}) {
    harness.click(12 + 102.0 * page + 48, 84);
    harness.frame();
    const ui::CairoSurface felt = support::makePicture(kUsualW, kUsualH, [&](cairo_t* cr) {
      ui::Ctx ctx;
      ctx.cr = cr;
      ctx.w = kUsualW;
      ctx.h = kUsualH;
      ui::drawFelt(ctx, mj::tableThemeForStage(page), false);
    });
    EXPECT_EQ(at({700, 30}), support::pixelAt(felt.get(), 700, 30) & 0xFFFFFFU) << "page " << page;
  }
}

TEST_F(LevelSelectView, DrawsNothingOfItsCardsOutsideTheList) {
  show(10);
  const std::uint32_t below = at({100, grid.view.y + grid.view.h + 2});
  harness.wheel(550, 400, -2);
  EXPECT_EQ(at({100, grid.view.y + grid.view.h + 2}), below);
  EXPECT_NE(at({100, grid.view.y + 2}), at({100, grid.view.y - 3}));
}

// --- layout ---

class LevelGridIn : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  const double w = GetParam().first;
  const double h = GetParam().second;
  const CardGrid grid = screens::levelGrid(w, h);
};

TEST_P(LevelGridIn, HasItsListBetweenTheChipsAndTheLowerEdge) {
  EXPECT_EQ(grid.view.y, 114);
  EXPECT_EQ(grid.view.h, h - 160);
}

TEST_P(LevelGridIn, FillsTheWidthWithCardsTwelveApart) {
  EXPECT_EQ(grid.card(0, 0).x, 12);
  const Rect last = grid.card(grid.columns - 1, 0);
  EXPECT_NEAR(last.x + last.w, w - 12, 1e-9);
  EXPECT_NEAR(grid.card(1, 0).x - grid.cardW, 24, 1e-9);
  EXPECT_EQ(grid.card(grid.columns, 0).x, 12);
  EXPECT_EQ(grid.card(grid.columns, 0).y, 114 + 310);
  EXPECT_EQ(grid.cardH, 298);
}

TEST_P(LevelGridIn, EndsBelowItsLastRow) {
  const Rect last = grid.card(9, 0);
  EXPECT_EQ(last.y + last.h, grid.view.y + grid.contentHeight(10));
}

TEST_P(LevelGridIn, KeepsThePartsOfACardApart) {
  const Rect card = grid.card(0, 0);
  const LevelCardLayout layout = screens::levelCardLayout(card);
  const double r = screens::kCardStarRadius;
  const Rect stars = {layout.starsX - 3.5 * r, layout.starsY - r, 7 * r, 2 * r};
  EXPECT_EQ(layout.starsY, card.y + 52);
  const std::array<Rect, 5> parts = {layout.label, layout.tiles, layout.layers, stars, layout.miniature};
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_TRUE(inside(parts[i], card, kRounding)) << i;
    for (std::size_t k = 0; k < i; ++k) EXPECT_FALSE(overlap(parts[i], parts[k])) << i << " and " << k;
  }
}

INSTANTIATE_TEST_SUITE_P(Window, LevelGridIn,
                         testing::Values(std::pair(640, 480), std::pair(779, 600), std::pair(1100, 760),
                                         std::pair(1224, 768), std::pair(1920, 1080), std::pair(3840, 2160)),
                         [](const auto& param) { return std::to_string(param.param.first); });

TEST(LevelGrid, HasTwoToFiveColumns) {
  EXPECT_EQ(screens::levelGrid(640, 480).columns, 2);
  EXPECT_EQ(screens::levelGrid(743, 480).columns, 2);
  EXPECT_EQ(screens::levelGrid(744, 480).columns, 3);
  EXPECT_EQ(screens::levelGrid(1100, 760).columns, 4);
  EXPECT_EQ(screens::levelGrid(1224, 760).columns, 5);
  EXPECT_EQ(screens::levelGrid(3840, 2160).columns, 5);
}

TEST(LevelGrid, HasLowerCardsWhereTheyAreNarrow) {
  const CardGrid grid = screens::levelGrid(400, 480);
  EXPECT_EQ(grid.columns, 2);
  EXPECT_EQ(grid.cardW, 182);
  EXPECT_EQ(screens::levelCardLayout(grid.card(0, 0)).miniature.w, 146);
  EXPECT_EQ(grid.cardH, 146 + 108);
}

TEST(LevelGrid, HasAListInTheLowestWindowToo) { EXPECT_EQ(screens::levelGrid(640, 100).view.h, 60); }

// The width of a card's text as drawn.
double widthOf(const Rect& rect, const char* key, const char* n, ui::TextStyle style) {
  const ui::CairoSurface paper = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(paper.get()));
  style.maxWidth = rect.w;
  double w = 0;
  double h = 0;
  ui::measureText(cr.get(), i18n::tr(key, {{"n", n}}), style, w, h);
  EXPECT_LE(h, rect.h) << i18n::currentLanguage() << " " << key;
  return w;
}

TEST(LevelCard, KeepsItsTextsApartInEveryLanguage) {
  // The narrowest card and the longest numbers. Letters are placed on whole pixels, so a shrunk text may be
  // slightly wider than its room.
  constexpr double kApart = 4;
  const CardGrid grid = screens::levelGrid(744, 600);
  const LevelCardLayout layout = screens::levelCardLayout(grid.card(0, 0));
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    const double label = widthOf(layout.label, "playing.levelLabel", "100", {.size = 16, .bold = true});
    const double tiles = widthOf(layout.tiles, "levels.tileCount", "144", {.size = 12});
    const double layers = widthOf(layout.layers, "levels.layers", "4", {.size = 12});
    EXPECT_GE(layout.tiles.x + layout.tiles.w - tiles, layout.label.x + label + kApart) << language.code;
    EXPECT_LE(layers, layout.layers.w) << language.code;
  }
}

// --- miniatures ---

ui::CairoSurface miniatureOf(const std::vector<mj::Slot>& slots, const Rect& rect) {
  return support::makePicture(100, 100, [&](cairo_t* cr) { screens::paintMini(cr, rect, slots); });
}

int brightness(std::uint32_t color) {
  return static_cast<int>((color >> 16 & 0xFF) + (color >> 8 & 0xFF) + (color & 0xFF));
}

TEST(Miniature, IsBrighterTheHigherItsTilesLie) {
  for (int z = 0; z < 3; ++z) {
    const auto middle = [](int layer) {
      return support::pixelAt(miniatureOf({{.z = layer}}, {20, 20, 60, 60}).get(), 50, 50);
    };
    EXPECT_GT(brightness(middle(z + 1)), brightness(middle(z))) << z;
  }
}

TEST(Miniature, PaintsTheHigherTileOverTheLowerWhateverTheirOrder) {
  const mj::Slot low = {.id = 0, .x = 0, .y = 0, .z = 0};
  const mj::Slot high = {.id = 1, .x = 1, .y = 1, .z = 1};
  const ui::CairoSurface sorted = miniatureOf({low, high}, {0, 0, 100, 100});
  EXPECT_TRUE(support::samePicture(miniatureOf({high, low}, {0, 0, 100, 100}).get(), sorted.get()));
}

TEST(Miniature, PaintsNothingBeyondItsRectangle) {
  // The rectangle is so small that even the smallest tiles stick out.
  const ui::CairoSurface picture = miniatureOf(mj::levelToConfig(91).slots, {40, 40, 20, 20});
  EXPECT_NE(support::pixelAt(picture.get(), 50, 50), 0U);
  for (int i = 0; i < 100; ++i) {
    for (const int edge : {39, 60}) {
      EXPECT_EQ(support::pixelAt(picture.get(), i, edge), 0U);
      EXPECT_EQ(support::pixelAt(picture.get(), edge, i), 0U);
    }
  }
}

TEST(Miniature, OfNoTilesIsEmpty) {
  const ui::CairoSurface picture = miniatureOf({}, {0, 0, 100, 100});
  EXPECT_TRUE(support::samePicture(picture.get(), support::makePicture(100, 100).get()));
}

}  // namespace
