// After a win: what is saved and when, what is shown and played, and where the buttons lead.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include "resources/i18n.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/rects.h"
#include "screens/solved_layout.h"
#include "screens/stack.h"
#include "storage/storage.h"
#include "support/heard.h"
#include "support/picture.h"
#include "ui/felt.h"
#include "ui/scenes.h"

namespace {

using audio::Sfx;
using support::heard;
using test::kRounding;
using test::overlap;
using test::Shows;
using test::Stack;
using testing::ElementsAre;
using testing::IsEmpty;
using ui::ScreenKind;

constexpr double kLongAfter = 5;

constexpr ui::GameState kWon = {.kind = ScreenKind::Solved,
                                .level = 12,
                                .deal = 4000000000,
                                .timeMs = 65432,
                                .tiles = 48,
                                .hints = 1,
                                .shuffles = 1};

ui::GameState wonWith(int hints, int shuffles) {
  ui::GameState descriptor = kWon;
  descriptor.hints = hints;
  descriptor.shuffles = shuffles;
  return descriptor;
}

// The Solved screen on top of a game, `shownFor` seconds after its first frame.
struct Won {
  explicit Won(const ui::GameState& descriptor = kWon, double shownFor = 0, int w = 640, int h = 480)
      : stack({.kind = ScreenKind::Playing, .level = 1, .deal = 1}, w, h) {
    ui::Game::instance().push(descriptor);
    stack.harness.frame(0);
    heard().clear();
    stack.harness.frame(0);
    if (shownFor > 0) stack.harness.frame(shownFor);
  }

  void press(std::size_t button, int w = 640, int h = 480) {
    const screens::SolvedLayout layout = screens::solvedLayout(w, h);
    const ui::Rect rect = screens::solvedButtons(layout.buttons, layout.wide)[button];
    stack.harness.click(rect.x + rect.w / 2, rect.y + rect.h / 2);
  }

  std::vector<std::string> pictures() const {
    std::vector<std::string> names;
    if (!stack.data.has("solves")) return names;
    for (const auto& file : std::filesystem::directory_iterator(stack.data.path("solves"))) {
      names.push_back(file.path().filename());
    }
    return names;
  }

  Stack stack;
};

// --- what is saved ---

TEST(SolvedScreen, OpensTheNextLevelWithItsFirstFrame) {
  Won won;
  EXPECT_EQ(store::loadProgress(), (store::Progress{2, 1})) << "level 12 is beyond the first start's level";
  store::saveProgress({.currentLevel = 12, .totalSolves = 7});
  ui::Game::instance().replace(kWon);
  won.stack.harness.frame();
  won.stack.harness.frame(0);
  EXPECT_EQ(store::loadProgress(), (store::Progress{13, 8}));
}

TEST(SolvedScreen, KeepsTheBestResultWithItsFirstFrame) {
  const Won won(wonWith(1, 2));
  EXPECT_EQ(store::bestFor(12), (store::LevelBest{.stars = 1, .aids = 3, .elapsedMs = 65432}));
}

TEST(SolvedScreen, ForgetsTheSavedGameWithItsFirstFrame) {
  Won won;
  store::saveGame({.level = 12, .seed = 5, .game = mj::createGame(mj::levelToConfig(12).slots, 5)});
  won.stack.harness.run(1);
  ASSERT_TRUE(store::loadGame().valid) << "and only then";
  ui::Game::instance().replace(kWon);
  won.stack.harness.frame();
  won.stack.harness.frame(0);
  EXPECT_FALSE(store::loadGame().valid);
}

TEST(SolvedScreen, WritesNothingDownThatAlreadyIs) {
  ui::GameState descriptor = kWon;
  descriptor.recorded = true;
  const Won won(descriptor);
  EXPECT_EQ(store::loadProgress(), store::Progress());
  EXPECT_EQ(store::bestFor(12), store::LevelBest());
}

TEST(SolvedScreen, CountsTheSolveOnce) {
  const Won won(kWon, kLongAfter);
  EXPECT_EQ(store::loadProgress().totalSolves, 1);
}

TEST(SolvedScreen, RecordsTheSolveAfterFourTenthsOfASecond) {
  const std::int64_t before = std::time(nullptr);
  Won won(kWon, 0.399);
  EXPECT_THAT(store::listSolves(), IsEmpty());
  EXPECT_THAT(won.pictures(), IsEmpty());
  won.stack.harness.frame(0.002);
  const std::vector<store::SolveEntry> solves = store::listSolves();
  ASSERT_EQ(solves.size(), 1U);
  const store::SolveEntry& entry = solves.front();
  EXPECT_EQ(entry, (store::SolveEntry{.id = entry.id,
                                      .level = 12,
                                      .tiles = 48,
                                      .seed = 4000000000,
                                      .elapsedMs = 65432,
                                      .solvedAt = entry.solvedAt,
                                      .shot = entry.id + ".png",
                                      .stars = 2,
                                      .aids = 2}));
  EXPECT_GE(entry.solvedAt, before * 1000);
  EXPECT_LE(entry.solvedAt, std::time(nullptr) * 1000);
  EXPECT_EQ(entry.solvedAt % 1000, 0);
  EXPECT_THAT(won.pictures(), ElementsAre(entry.shot));
}

TEST(SolvedScreen, RecordsTheSolveOnce) {
  Won won(kWon, 0.41);
  store::clearAllSolves();
  won.stack.harness.frame(kLongAfter);
  EXPECT_THAT(store::listSolves(), IsEmpty());
  EXPECT_THAT(won.pictures(), IsEmpty());
}

TEST(SolvedScreen, PicturesTheBoardAsItWasDealt) {
  const Won won(kWon, 0.41);
  const store::SolveEntry entry = store::listSolves().at(0);
  const mj::GameState dealt = mj::createGame(mj::levelToConfig(12).slots, 4000000000);
  const std::string expected = won.stack.data.path("expected.png");
  ASSERT_TRUE(ui::captureBoardPng(dealt, *mj::tableThemeForLevel(12), 640, expected));
  EXPECT_EQ(support::readAll(store::shotPath(entry)), support::readAll(expected));
}

TEST(SolvedScreen, RecordsTheSolveWithoutAPictureThatCannotBeWritten) {
  Won won;
  std::filesystem::remove_all(won.stack.data.path("solves"));
  won.stack.data.write("solves", "a file where the pictures should go");
  won.stack.harness.frame(0.41);
  const std::vector<store::SolveEntry> solves = store::listSolves();
  ASSERT_EQ(solves.size(), 1U);
  EXPECT_EQ(solves[0].shot, "");
  EXPECT_EQ(solves[0].level, 12);
}

TEST(SolvedScreen, MakesTheDirectoriesItNeeds) {
  Won won;
  std::filesystem::remove_all(won.stack.data.path());
  won.stack.harness.frame(0.41);
  EXPECT_THAT(won.pictures(), ElementsAre(store::listSolves().at(0).shot));
}

TEST(SolvedScreen, LeftAtOnceLeavesProgressButNoRecord) {
  Won won(kWon, 0.39);
  won.stack.harness.next().keys = {SDLK_ESCAPE};
  won.stack.harness.frame(0);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  EXPECT_THAT(store::listSolves(), IsEmpty());
  EXPECT_THAT(won.pictures(), IsEmpty());
  EXPECT_EQ(store::loadProgress().totalSolves, 1);
  EXPECT_EQ(store::bestFor(12).stars, 2);
}

// --- sounds ---

TEST(SolvedScreen, ChimesOnceForEachStarAsItPopsUp) {
  Won won(wonWith(0, 0), 0.359);
  EXPECT_THAT(heard(), IsEmpty());
  won.stack.harness.frame(0.002);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1));
  won.stack.harness.frame(0.258);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1));
  won.stack.harness.frame(0.002);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1, Sfx::Star2));
  won.stack.harness.frame(0.258);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1, Sfx::Star2));
  won.stack.harness.frame(0.002);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1, Sfx::Star2, Sfx::Star3));
  won.stack.harness.run(2);
  EXPECT_EQ(heard().size(), 3U);
}

TEST(SolvedScreen, ChimesForNoMoreStarsThanWereEarned) {
  Won two(wonWith(1, 0), kLongAfter);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1, Sfx::Star2));
  Won one(wonWith(2, 3), kLongAfter);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Star1));
}

// --- where the buttons lead ---

TEST(SolvedScreen, StaysUntilAWayOnIsChosen) {
  Won won;
  won.stack.harness.run(100, 1);
  won.stack.harness.key(SDLK_SPACE);
  won.stack.harness.click(320, 240);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Solved, 12, 4000000000));
}

TEST(SolvedScreen, FirstButtonDealsTheNextLevel) {
  for (const auto& [w, h] : {std::pair{640, 480}, std::pair{1100, 760}}) {
    Won won(kWon, 0, w, h);
    won.press(0, w, h);
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 13, 13));
    EXPECT_EQ(Stack::depth(), 2U);
    EXPECT_THAT(heard(), ElementsAre(Sfx::Click));
  }
}

TEST(SolvedScreen, LastLevelIsFollowedByItself) {
  Won won({.kind = ScreenKind::Solved, .level = 100, .deal = 7, .tiles = 144});
  EXPECT_EQ(store::bestFor(100).stars, 3);
  won.press(0);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 100, 100));
}

TEST(SolvedScreen, SecondButtonOpensTheGalleryInItsPlace) {
  Won won;
  won.press(1);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Gallery, 0, 0));
  EXPECT_EQ(Stack::depth(), 2U);
}

TEST(SolvedScreen, ThirdButtonLeadsToTheMenuAlone) {
  Won won;
  won.press(2);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(SolvedScreen, EscapeLeadsToTheMenuAlone) {
  Won won(kWon, kLongAfter);
  won.stack.harness.key(SDLK_ESCAPE);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  EXPECT_EQ(Stack::depth(), 1U);
}

// --- look ---

std::uint32_t faded(std::uint32_t color, double alpha) {
  std::uint32_t mixed = 0;
  for (const int shift : {16, 8, 0}) {
    const double below = color >> shift & 0xFF;
    const double above = 0xFFF4D6 >> shift & 0xFF;
    mixed |= static_cast<std::uint32_t>(below + (above - below) * alpha) << shift;
  }
  return mixed;
}

TEST(SolvedScreen, FadesInFromTheLightOfTheWin) {
  Won won;
  // A point on bare cloth.
  const auto cloth = [&] { return won.stack.harness.colorAt(30, 240); };
  const std::uint32_t atFirst = cloth();
  won.stack.harness.frame(0.23);
  const std::uint32_t halfWay = cloth();
  won.stack.harness.frame(0.229);
  const std::uint32_t almost = cloth();
  won.stack.harness.frame(0.002);
  const std::uint32_t clear = cloth();
  won.stack.harness.frame(kLongAfter);
  EXPECT_EQ(clear, cloth());
  EXPECT_LE(support::channelDifference(atFirst, faded(clear, 0.85)), 2);
  EXPECT_LE(support::channelDifference(halfWay, faded(clear, 0.425)), 2);
  EXPECT_LE(support::channelDifference(almost, faded(clear, 0.85 * 0.001 / 0.46)), 2);
}

TEST(SolvedScreen, FadeCoversTheWholeWindow) {
  const Won won;
  for (const auto& [x, y] : {std::pair{0, 0}, {639, 0}, {0, 479}, {639, 479}, {320, 240}}) {
    // What lies below contributes at most 0.15 of the colour.
    const std::uint32_t color = won.stack.harness.colorAt(x, y);
    EXPECT_LE(support::channelDifference(color, faded(0x808080, 0.85)), 24) << x << ", " << y;
  }
}

// The smallest rectangle around all pixels that differ between the pictures of two wins.
ui::Rect changed(const ui::GameState& a, const ui::GameState& b) {
  const ui::CairoSurface first = Won(a, kLongAfter).stack.harness.picture();
  const ui::CairoSurface second = Won(b, kLongAfter).stack.harness.picture();
  double left = 640;
  double top = 480;
  double right = 0;
  double bottom = 0;
  for (int y = 0; y < 480; ++y) {
    for (int x = 0; x < 640; ++x) {
      if (support::pixelAt(first.get(), x, y) == support::pixelAt(second.get(), x, y)) continue;
      left = std::min<double>(left, x);
      top = std::min<double>(top, y);
      right = std::max<double>(right, x + 1);
      bottom = std::max<double>(bottom, y + 1);
    }
  }
  return {left, top, right - left, bottom - top};
}

MATCHER_P(LiesIn, outer, "") {
  return arg.w > 0 && arg.h > 0 && arg.x >= outer.x && arg.y >= outer.y &&
         arg.x + arg.w <= outer.x + outer.w && arg.y + arg.h <= outer.y + outer.h;
}

TEST(SolvedScreen, TellsHowTheGameWentInLinesOfTheirOwn) {
  const screens::SolvedLayout layout = screens::solvedLayout(640, 480);
  const screens::InfoLayout info = screens::infoLayout(layout.info, layout.starScale);
  ui::GameState other = kWon;
  other.tiles = 144;
  EXPECT_THAT(changed(kWon, other), LiesIn(info.lines[1]));
  other = kWon;
  other.timeMs = 3661000;
  EXPECT_THAT(changed(kWon, other), LiesIn(info.lines[2]));
  EXPECT_THAT(changed(wonWith(2, 0), wonWith(0, 2)), LiesIn(info.lines[3]));
  EXPECT_THAT(changed(wonWith(2, 1), wonWith(1, 2)), LiesIn(info.lines[3]));
}

TEST(SolvedScreen, LooksAsPainted) {
  for (const char* language : {"en", "fr", "ar"}) {
    i18n::setLanguage(language);
    const Won won(kWon, kLongAfter);
    const ui::Rect info = screens::solvedLayout(640, 480).info;
    const ui::CairoSurface whole = won.stack.harness.picture();
    const ui::CairoSurface cut =
        support::makePicture(static_cast<int>(info.w), static_cast<int>(info.h), [&](cairo_t* cr) {
          cairo_set_source_surface(cr, whole.get(), -info.x, -info.y);
          cairo_paint(cr);
        });
    EXPECT_TRUE(support::looksLike(cut.get(), std::string("solved_info_") + language));
  }
}

// --- layout ---

struct Window {
  double w;
  double h;
  bool wide;
};
void PrintTo(const Window& window, std::ostream* out) { *out << window.w << " x " << window.h; }

class SolvedLayoutAt : public testing::TestWithParam<Window> {};
INSTANTIATE_TEST_SUITE_P(Size, SolvedLayoutAt,
                         testing::Values(Window{640, 480, false}, Window{779, 600, false},
                                         Window{900, 600, false}, Window{901, 480, true},
                                         Window{1100, 760, true}, Window{1150, 1000, false},
                                         Window{1151, 1000, true}, Window{1080, 1920, false},
                                         Window{1920, 1080, true}, Window{3840, 2160, true}));

void expectApart(const std::vector<ui::Rect>& rects, const ui::Rect& around) {
  for (std::size_t i = 0; i < rects.size(); ++i) {
    EXPECT_THAT(rects[i], LiesIn(around)) << i;
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_FALSE(overlap(rects[i], rects[j], kRounding)) << i << " and " << j;
  }
}

TEST_P(SolvedLayoutAt, IsWideWhereThereIsRoomBesideTheBoard) {
  EXPECT_EQ(screens::solvedLayout(GetParam().w, GetParam().h).wide, GetParam().wide);
}

TEST_P(SolvedLayoutAt, NothingOverlapsOrLeavesTheFrame) {
  const auto [w, h, wide] = GetParam();
  const double margin = ui::feltFrameMargin(w, h) + 6;
  const ui::Rect inner = {margin - 1e-9, margin - 1e-9, w - 2 * margin + 2e-9, h - 2 * margin + 2e-9};
  const screens::SolvedLayout layout = screens::solvedLayout(w, h);
  const ui::Rect footer = {inner.x, layout.footerBottom - 32, inner.w, 32};
  expectApart({layout.info, layout.board, layout.buttons, footer}, inner);
  const screens::InfoLayout info = screens::infoLayout(layout.info, layout.starScale);
  expectApart({info.stars, info.headline, info.lines[0], info.lines[1], info.lines[2], info.lines[3]},
              layout.info);
  const auto buttons = screens::solvedButtons(layout.buttons, layout.wide);
  const ui::Rect& b = layout.buttons;
  expectApart({buttons[0], buttons[1], buttons[2]}, {b.x, b.y, b.w + 1e-9, b.h + 1e-9});
}

TEST(SolvedLayout, BesideTheBoardTheInformationTakesAThirdOfTheWidth) {
  const double inner = 1100 - 2 * (ui::feltFrameMargin(1100, 760) + 6);
  EXPECT_DOUBLE_EQ(screens::solvedLayout(1100, 760).info.w, inner / 3);
}

TEST(SolvedLayout, AboveTheBoardTheInformationTakesAPartOfTheHeight) {
  const double low = 480 - 2 * (ui::feltFrameMargin(640, 480) + 6);
  EXPECT_DOUBLE_EQ(screens::solvedLayout(640, 480).info.h, 0.38 * low);
  EXPECT_DOUBLE_EQ(screens::solvedLayout(880, 800).info.h, 230);
}

TEST(SolvedLayout, StarsAndHeadlineAreSmallerInANarrowPanel) {
  EXPECT_EQ(screens::solvedLayout(640, 480).starScale, 1.15);
  EXPECT_EQ(screens::solvedLayout(220, 480).starScale, 0.85);
  EXPECT_EQ(screens::infoLayout({0, 0, 200, 300}, 1.15).headlineSize, 32);
  EXPECT_EQ(screens::infoLayout({0, 0, 199, 300}, 0.85).headlineSize, 24);
}

}  // namespace
