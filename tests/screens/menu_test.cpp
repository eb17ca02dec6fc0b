// The splash screen and the main menu: what they show and where they lead.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/menu.h"
#include "screens/menu_layout.h"
#include "screens/stack.h"
#include "screens/title_block.h"
#include "support/file_reads.h"
#include "support/heard.h"
#include "support/picture.h"
#include "support/sight.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/palette.h"
#include "ui/title.h"
#include "ui/widgets.h"

namespace {

using screens::MenuEntry;
using screens::MenuLayout;
using screens::menuLayout;
using support::contrast;
using support::kSmallH;
using support::kSmallW;
using support::kUsualH;
using support::kUsualW;
using support::lightest;
using support::luminance;
using support::ScreenHarness;
using test::Shows;
using test::Stack;
using ui::ScreenKind;

constexpr ui::GameState kSplash = {};
constexpr ui::GameState kMenu = {.kind = ScreenKind::Menu};

constexpr std::array kEntries = {MenuEntry::Continue, MenuEntry::NewGame,  MenuEntry::LevelSelect,
                                 MenuEntry::Gallery,  MenuEntry::Settings, MenuEntry::About};

using Act = std::function<void(ScreenHarness&)>;

// --- the splash screen ---

TEST(Splash, LeadsToTheMenuAfterAWhile) {
  Stack stack(kSplash);
  stack.harness.frame();
  stack.harness.frame(2.39);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Splash);
  stack.harness.frame(0.02);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST(Splash, IsSkippedByAKeyOnItsFirstFrame) {
  for (const int key : {SDLK_ESCAPE, SDLK_SPACE, SDLK_a}) {
    Stack stack(kSplash);
    stack.harness.key(key);
    EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
    EXPECT_EQ(Stack::depth(), 1U);
  }
}

TEST(Splash, IsSkippedByAClickAnywhere) {
  for (const auto& [x, y] : {std::pair{0, 0}, std::pair{320, 240}, std::pair{639, 479}}) {
    Stack stack(kSplash);
    stack.harness.click(x, y);
    EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  }
}

TEST(Splash, IsNotSkippedByAHandThatOnlyMoves) {
  Stack stack(kSplash);
  stack.harness.moveTo(100, 100);
  stack.harness.press(200, 200);
  stack.harness.wheel(200, 200, 1);
  stack.harness.rightClick(200, 200);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Splash);
}

TEST(Splash, LiesOnPlainGreenCloth) {
  Stack stack(kSplash);
  stack.harness.frame();
  ScreenHarness cloth([](ui::Ctx& ctx) { ui::drawFelt(ctx, nullptr, false); }, kSmallW, kSmallH,
                      support::Drawing::Textures);
  cloth.frame();
  for (const auto& [x, y] : {std::pair{17, 240}, std::pair{30, 30}, std::pair{320, 100}}) {
    EXPECT_EQ(stack.harness.colorAt(x, y), cloth.colorAt(x, y));
  }
}

// A point on the title's last tile, beside its letter, if the row of tiles has its top at `top`.
support::Point onLastTile(double tileW, double top) {
  return {kSmallW / 2.0 + 2.5 * 1.12 * tileW + 0.62 * tileW, top + 0.3 * tileW};
}

bool isCream(const ScreenHarness& harness, support::Point at) {
  const std::uint32_t color = harness.colorAt(static_cast<int>(at.x), static_cast<int>(at.y));
  return support::channelDifference(color, 0xF5EEDC) <= 2;
}

TEST(Splash, DropsTheTilesOfItsTitleInOneAfterAnother) {
  // In a window 480 high the letters are 52.8 and the tiles 48 large. The block is 156.32 high, its top is at
  // 151.84.
  const support::Point last = onLastTile(48, 151.84 + 1.25 * 52.8 + 6);
  Stack stack(kSplash);
  stack.harness.frame();
  EXPECT_FALSE(isCream(stack.harness, last));
  stack.harness.frame(0.8);
  EXPECT_FALSE(isCream(stack.harness, last));
  stack.harness.frame(0.5);
  EXPECT_TRUE(isCream(stack.harness, last));
}

// --- the menu's layout ---

class MenuLayouts : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  const double w = GetParam().first;
  const double h = GetParam().second;
  const MenuLayout layout = menuLayout(w, h);
};
INSTANTIATE_TEST_SUITE_P(Window, MenuLayouts,
                         testing::Values(std::pair{500, 480}, std::pair{640, 480}, std::pair{640, 640},
                                         std::pair{779, 600}, std::pair{1100, 760}, std::pair{1120, 820},
                                         std::pair{1920, 500}, std::pair{1920, 1080}, std::pair{3840, 2160}),
                         [](const auto& size) {
                           return std::to_string(size.param.first) + "x" + std::to_string(size.param.second);
                         });

TEST_P(MenuLayouts, HaveOneThingBelowTheOther) {
  constexpr double kLeastGap = 10;
  const auto bottom = [&](MenuEntry entry) { return layout.plaque(entry).y + layout.plaque(entry).h; };
  const double titleFoot = layout.titleTop + layout.title.height();
  EXPECT_EQ(layout.taglineTop.value_or(titleFoot + 10), titleFoot + 10);
  const double headFoot = layout.taglineTop ? *layout.taglineTop + 17 : titleFoot;
  EXPECT_GE(layout.plaque(MenuEntry::Continue).y, headFoot + kLeastGap);
  EXPECT_GE(layout.plaque(MenuEntry::NewGame).y, bottom(MenuEntry::Continue) + kLeastGap);
  EXPECT_GE(layout.plaque(MenuEntry::LevelSelect).y, bottom(MenuEntry::NewGame) + kLeastGap);
  EXPECT_GE(layout.plaque(MenuEntry::Settings).y, bottom(MenuEntry::LevelSelect) + kLeastGap);
  EXPECT_GE(layout.footerBottom - 32, bottom(MenuEntry::About) + kLeastGap);
}

TEST_P(MenuLayouts, HaveTheFourLowerEntriesInTwoColumns) {
  const ui::Rect& wide = layout.plaque(MenuEntry::Continue);
  const ui::Rect& left = layout.plaque(MenuEntry::LevelSelect);
  const ui::Rect& right = layout.plaque(MenuEntry::Gallery);
  EXPECT_EQ(left.x, wide.x);
  EXPECT_DOUBLE_EQ(right.x + right.w, wide.x + wide.w);
  EXPECT_GE(right.x, left.x + left.w + 10);
  EXPECT_EQ(left.y, right.y);
  EXPECT_EQ(layout.plaque(MenuEntry::Settings).x, left.x);
  EXPECT_EQ(layout.plaque(MenuEntry::About).x, right.x);
  EXPECT_EQ(layout.plaque(MenuEntry::Settings).y, layout.plaque(MenuEntry::About).y);
}

TEST_P(MenuLayouts, LieInTheMiddleWithinTheGoldenFrame) {
  const double frame = ui::feltFrameMargin(w, h) + 6;
  EXPECT_GE(layout.titleTop, frame);
  EXPECT_LE(layout.footerBottom, h - frame);
  const ui::Rect& wide = layout.plaque(MenuEntry::Continue);
  EXPECT_DOUBLE_EQ(wide.x + wide.w / 2, w / 2);
  EXPECT_GE(wide.x, frame);
  EXPECT_LE(ui::tileTitleWidth("MAHJONG", layout.title.tileW), w - 2 * frame);
}

TEST_P(MenuLayouts, HaveRoomForTheirLabelsInEveryLanguage) {
  const ui::CairoSurface picture = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(picture.get()));
  const ui::TextStyle style = {.size = layout.fontSize, .bold = true};
  const auto expectFits = [&](MenuEntry entry, const std::string& label) {
    double width = 0;
    double height = 0;
    ui::measureText(cr.get(), label, style, width, height);
    EXPECT_LE(width, layout.plaque(entry).w - 44) << label;
  };
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    expectFits(MenuEntry::Continue, i18n::tr("menu.continue", {{"n", "100"}}));
    expectFits(MenuEntry::NewGame, i18n::tr("menu.newGame"));
    expectFits(MenuEntry::LevelSelect, i18n::tr("menu.levelSelect"));
    expectFits(MenuEntry::Gallery, i18n::tr("menu.gallery"));
    expectFits(MenuEntry::Settings, i18n::tr("menu.settings"));
    expectFits(MenuEntry::About, i18n::tr("menu.about"));
  }
}

// --- contrast with the backdrop ---

// A picture of the menu with the deal of this level as its backdrop.
ui::CairoSurface menuBefore(int level, int w, int h) {
  const support::DataHome data;
  screens::Menu menu(mj::createGame(mj::levelToConfig(level).slots, 1));
  ScreenHarness harness([&](ui::Ctx& ctx) { menu.update(ctx); }, w, h);
  harness.frame();
  return harness.picture();
}

TEST(MenuFooter, StandsOutFromWhateverTilesAreBelow) {
  constexpr double kLegible = 4.5;  // the contrast that small letters need
  constexpr double kHalfLine = 83;
  for (int level = 1; level <= 100; level += 9) {
    // Measured just above the letters.
    const ui::Rect footer = menuLayout(kSmallW, kSmallH).footer;
    const double middle = kSmallW / 2.0;
    const double below = lightest(menuBefore(level, kSmallW, kSmallH).get(), middle - kHalfLine, footer.y + 1,
                                  middle + kHalfLine, footer.y + 2);
    EXPECT_GE(contrast(luminance(ui::palette::kMutedText), below), kLegible) << level;
  }
}

// The letters are translucent; their lightest pixel counts as their colour.
TEST(MenuTagline, StandsOutFromWhateverTilesAreBelow) {
  constexpr double kLegible = 3;
  const ui::CairoContext cr(cairo_create(support::makePicture(1, 1).get()));
  ui::Ctx ctx;
  ctx.cr = cr.get();
  ctx.w = kUsualW;
  const ui::Rect text = screens::taglineRect(ctx, *menuLayout(kUsualW, kUsualH).taglineTop, 14);
  for (int level = 1; level <= 100; level += 9) {
    const auto picture = menuBefore(level, kUsualW, kUsualH);
    const double letters = lightest(picture.get(), text.x, text.y, text.x + text.w, text.y + text.h);
    const double below = lightest(picture.get(), text.x, text.y, text.x + text.w, text.y + 3);
    EXPECT_GE(contrast(letters, below), kLegible) << level;
  }
}

// Neighbouring pixels differ only slightly.
TEST(MenuShade, HasNoEdge) {
  constexpr int kStep = 6;
  const support::DataHome data;
  screens::Menu menu{mj::GameState{}};  // without tiles, whose edges would count
  ScreenHarness harness([&](ui::Ctx& ctx) { menu.update(ctx); }, kUsualW, kUsualH);
  harness.frame();
  const auto picture = harness.picture();
  const ui::Rect footer = menuLayout(kUsualW, kUsualH).footer;
  const int y = static_cast<int>(footer.y) + 1;  // above the letters
  for (int x = 60; x < kUsualW / 2; ++x) {
    EXPECT_LE(support::channelDifference(support::pixelAt(picture.get(), x - 1, y),
                                         support::pixelAt(picture.get(), x, y)),
              kStep)
        << x;
  }
  const int middle = static_cast<int>(footer.x) + 2;  // beside the letters
  for (int row = static_cast<int>(footer.y) - 30; row < kUsualH - 40; ++row) {
    EXPECT_LE(support::channelDifference(support::pixelAt(picture.get(), middle, row - 1),
                                         support::pixelAt(picture.get(), middle, row)),
              kStep)
        << row;
  }
}

TEST(MenuLayoutSizes, AreSmallAndWithoutTaglineInANarrowOrLowWindow) {
  EXPECT_TRUE(menuLayout(620, 600).taglineTop);
  EXPECT_FALSE(menuLayout(619, 600).taglineTop);
  EXPECT_FALSE(menuLayout(620, 599).taglineTop);
  EXPECT_LT(menuLayout(619, 600).title.wordSize, menuLayout(620, 600).title.wordSize);
}

// --- where the menu leads ---

class Menu : public testing::Test {
 protected:
  void click(MenuEntry entry) {
    const ui::Rect rect = menuLayout(kSmallW, kSmallH).plaque(entry);
    stack.harness.click(rect.x + rect.w / 2, rect.y + rect.h / 2);
  }
  void writeProgress(int level) const {
    stack.data.write("progress.json", "{\"currentLevel\":" + std::to_string(level) + "}");
  }
  static store::SavedGame savedGame(int level, std::uint32_t deal) {
    return {.valid = true,
            .level = level,
            .seed = deal,
            .game = mj::createGame(mj::levelToConfig(level).slots, deal)};
  }

  Stack stack{kMenu, kSmallW, kSmallH};
};

TEST_F(Menu, ContinuesWithTheFirstLevelAtFirst) {
  click(MenuEntry::Continue);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
  EXPECT_EQ(Stack::depth(), 2U);
}

TEST_F(Menu, ContinuesWithTheLevelReachedAndItsOwnDeal) {
  writeProgress(7);
  click(MenuEntry::Continue);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 7, 7));
}

TEST_F(Menu, ContinuesWithTheSavedGameWhateverLevelWasReached) {
  writeProgress(7);
  store::saveGame(savedGame(3, 4000000000));
  click(MenuEntry::Continue);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 3, 4000000000));
}

TEST_F(Menu, TakesASavedGameThatCannotBeContinuedForNone) {
  writeProgress(7);
  store::SavedGame won = savedGame(3, 5);
  for (std::string& face : won.game.faces) face.clear();
  store::saveGame(won);
  click(MenuEntry::Continue);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 7, 7));
}

TEST_F(Menu, ReadsTheSavedGameOnce) {
  store::saveGame(savedGame(3, 5));
  support::FileReads reads(stack.data.path("save.json"));
  stack.harness.frame();
  EXPECT_EQ(reads.count(), 1);
  stack.harness.frame();
  EXPECT_EQ(reads.count(), 0);
}

TEST_F(Menu, BeginsANewGameWithoutTheSavedOne) {
  writeProgress(7);
  store::saveGame(savedGame(1, 1));
  click(MenuEntry::NewGame);
  EXPECT_FALSE(store::loadGame().valid);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
  EXPECT_EQ(Stack::depth(), 2U);
  EXPECT_EQ(store::loadProgress().currentLevel, 7);
}

TEST_F(Menu, OffersTheGameThatWasJustLeft) {
  writeProgress(7);
  click(MenuEntry::NewGame);
  stack.harness.frame();
  stack.harness.key(SDLK_ESCAPE);
  ASSERT_THAT(Stack::top(), Shows(ScreenKind::Menu, 0, 0));
  click(MenuEntry::Continue);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
}

TEST_F(Menu, OpensTheScreensBehindIt) {
  for (const auto& [entry, kind] : {std::pair{MenuEntry::LevelSelect, ScreenKind::LevelSelect},
                                    std::pair{MenuEntry::Gallery, ScreenKind::Gallery},
                                    std::pair{MenuEntry::Settings, ScreenKind::Settings},
                                    std::pair{MenuEntry::About, ScreenKind::About}}) {
    ui::Game::instance().resetTo(kMenu);
    stack.harness.frame();
    click(entry);
    EXPECT_EQ(Stack::top().kind, kind);
    EXPECT_EQ(Stack::depth(), 2U);
  }
}

TEST_F(Menu, StaysWhateverKeyIsPressed) {
  for (const int key : {SDLK_ESCAPE, SDLK_SPACE, SDLK_h}) stack.harness.key(key);
  stack.harness.click(5, 5);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  EXPECT_EQ(Stack::depth(), 1U);
}

TEST_F(Menu, ClicksWhenAPlaqueIsPressed) {
  support::heard().clear();
  stack.harness.click(5, 5);
  EXPECT_TRUE(support::heard().empty());
  click(MenuEntry::Settings);
  EXPECT_EQ(support::heard(), std::vector{audio::Sfx::Click});
}

// --- the demo ---

TEST_F(Menu, StartsTheDemoAfterAMinuteWithoutInput) {
  stack.harness.frame();
  stack.harness.frame(59.9);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  stack.harness.frame(0.2);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Attract);
  EXPECT_EQ(Stack::depth(), 2U);
}

TEST_F(Menu, WaitsAMinuteMoreAfterAnyInput) {
  const Act acts[] = {
      [](ScreenHarness& harness) { harness.moveTo(3, 0); },
      [](ScreenHarness& harness) { harness.moveTo(3, 4); },
      [](ScreenHarness& harness) { harness.press(3, 4); },
      [](ScreenHarness& harness) { harness.release(3, 4); },
      [](ScreenHarness& harness) { harness.rightClick(3, 4); },
      [](ScreenHarness& harness) { harness.wheel(3, 4, -1); },
      [](ScreenHarness& harness) { harness.key(SDLK_a); },
  };
  stack.harness.frame();
  for (const Act& act : acts) {
    act(stack.harness);
    stack.harness.frame(59.9);
    EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  }
  stack.harness.frame(0.2);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Attract);
}

// --- what the menu shows ---

// Whether the plaque with this label is shown, with the shine exactly if it is the active one.
testing::AssertionResult showsPlaque(const ScreenHarness& harness, MenuEntry entry, const std::string& label,
                                     int active) {
  const MenuLayout layout = menuLayout(kSmallW, kSmallH);
  const ui::Rect& rect = layout.plaque(entry);
  const auto cut = [&](const std::function<void(cairo_t*)>& paint) {
    constexpr double kRim = 5;  // leaves out the round corners
    const ui::Rect inner = ui::insetRect(rect, kRim);
    return support::makePicture(static_cast<int>(inner.w), static_cast<int>(inner.h), [&](cairo_t* cr) {
      cairo_translate(cr, -std::ceil(inner.x), -std::ceil(inner.y));
      paint(cr);
    });
  };
  const ui::CairoSurface wanted = cut([&](cairo_t* cr) {
    ui::Ctx ctx;
    ctx.cr = cr;
    ctx.time = harness.time();
    ui::plaqueButton(ctx, rect, label,
                     {.primary = entry == MenuEntry::Continue,
                      .shineIndex = static_cast<int>(entry),
                      .shineActive = active,
                      .fontSize = layout.fontSize});
  });
  const ui::CairoSurface whole = harness.picture();
  const ui::CairoSurface seen = cut([&](cairo_t* cr) {
    cairo_set_source_surface(cr, whole.get(), 0, 0);
    cairo_paint(cr);
  });
  return support::samePicture(seen.get(), wanted.get(), 2);
}

TEST_F(Menu, NamesTheLevelToContinueWith) {
  writeProgress(100);
  stack.harness.frame();
  EXPECT_TRUE(showsPlaque(stack.harness, MenuEntry::Continue, "Continue with level 100", 0));
  EXPECT_TRUE(showsPlaque(stack.harness, MenuEntry::NewGame, "New game", 0));
}

TEST_F(Menu, LetsAShinePassThroughItsPlaquesOneAfterTheOther) {
  const std::array<std::string, 6> labels = {"Continue with level 1", "New game", "Choose level",
                                             "Achievements",          "Settings", "About"};
  stack.harness.frame();
  stack.harness.frame(1.3);
  for (int turn = 0; turn < 7; ++turn) {
    SCOPED_TRACE(turn);
    for (std::size_t i = 0; i < kEntries.size(); ++i) {
      EXPECT_TRUE(showsPlaque(stack.harness, kEntries[i], labels[i], turn % 6));
    }
    stack.harness.frame(3);
  }
}

TEST_F(Menu, HasItsTitleAtRestFromTheFirstFrameOn) {
  stack.harness.frame();
  const MenuLayout layout = menuLayout(kSmallW, kSmallH);
  const double tilesTop = layout.titleTop + 1.25 * layout.title.wordSize + 6;
  EXPECT_TRUE(isCream(stack.harness, onLastTile(layout.title.tileW, tilesTop)));
}

// How much redder than green the window's left edge is, summed up. Shows the cloth's colour, mixed with
// tiles.
double redderThanGreen(const ScreenHarness& harness) {
  double sum = 0;
  for (int y = 100; y < 380; ++y) {
    const std::uint32_t color = harness.colorAt(4, y);
    sum += static_cast<int>(color >> 16 & 0xFF) - static_cast<int>(color >> 8 & 0xFF);
  }
  return sum;
}

TEST_F(Menu, LiesOnTheClothOfTheLevelToContinueWith) {
  stack.harness.frame();
  EXPECT_LT(redderThanGreen(stack.harness), 0) << "the green of the first stage";
  writeProgress(100);
  ui::Game::instance().resetTo(kMenu);
  stack.harness.frame();
  stack.harness.frame();
  EXPECT_GT(redderThanGreen(stack.harness), 0) << "the bronze of the last";
}

TEST_F(Menu, HasAnotherBoardBehindItEachTime) {
  stack.harness.frame(0);
  const ui::CairoSurface first = stack.harness.picture();
  ui::Game::instance().resetTo(kMenu);
  stack.harness.frame(0);
  stack.harness.frame(0);
  EXPECT_FALSE(support::samePicture(stack.harness.picture().get(), first.get()));
}

}  // namespace
