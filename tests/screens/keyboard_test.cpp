// The screens used by keyboard alone, through the program's stack: the Tab order, what Enter does, how lists
// and pages follow the focus.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/about.h"
#include "screens/gallery_layout.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/menu_layout.h"
#include "screens/rects.h"
#include "screens/stack.h"
#include "storage/storage.h"
#include "support/heard.h"

namespace {

using audio::Sfx;
using screens::MenuEntry;
using support::heard;
using test::kBelow;
using test::Shows;
using test::Stack;
using testing::ElementsAre;
using ui::Rect;
using ui::ScreenKind;

constexpr int kPlayersLevel = 23;
constexpr int kPlayersRecords = 7;
// Seconds. Key presses this far apart do not form a run.
constexpr double kLongerThanARun = 0.5;

store::SolveEntry recordOf(int level, std::uint32_t seed) {
  return {.id = "id" + std::to_string(level), .level = level, .seed = seed, .shot = "", .stars = 2};
}

void saveGameOf(int level, std::uint32_t deal) {
  store::saveGame({.valid = true,
                   .level = level,
                   .seed = deal,
                   .game = mj::createGame(mj::levelToConfig(level).slots, deal),
                   .elapsedMs = 60000,
                   .savedAt = 1});
}

// A player on level 23, with seven records on its gallery page, who opens one of the screens.
struct Visit {
  explicit Visit(const ui::GameState& screen, int w = support::kSmallW, int h = support::kSmallH)
      : stack(kBelow, w, h), window{0, 0, 1.0 * w, 1.0 * h} {
    store::saveProgress({.currentLevel = kPlayersLevel, .totalSolves = kPlayersLevel});
    for (int level = 1; level <= kPlayersRecords; ++level) store::recordSolve(recordOf(20 + level, 100));
    ui::Game::instance().push(screen);
    pass();
    heard().clear();
  }

  void pass() {
    stack.harness.frame();
    stack.harness.frame(kLongerThanARun);
    stack.harness.frame();
  }
  void key(int code) { stack.harness.key(code); }
  void key(int code, int times) {
    for (int i = 0; i < times; ++i) key(code);
  }
  void backTab() {
    stack.harness.next().shift = true;
    key(SDLK_TAB);
  }
  static std::optional<Rect> ring() { return ui::Game::instance().keyboard().ring(); }
  // Whether the focus ring surrounds this control.
  static bool isRinged(const Rect& control) {
    const auto around = ring();
    return around && around->contains(control.x + control.w / 2, control.y + control.h / 2) &&
           around->w < control.w + 20 && around->h < control.h + 20;
  }
  // Presses Tab until the first ring comes again; returns all rings.
  std::vector<Rect> walk() {
    std::vector<Rect> rings;
    do {
      key(SDLK_TAB);
      if (!ring()) break;
      rings.push_back(*ring());
    } while (rings.size() < 100 && !(rings.size() > 1 && isSame(rings.back(), rings.front())));
    if (rings.size() > 1) rings.pop_back();
    return rings;
  }
  static bool isSame(const Rect& a, const Rect& b) {
    return a.x == b.x && a.y == b.y && a.w == b.w && a.h == b.h;
  }

  Stack stack;
  Rect window;
};

// --- Tab ---

struct FocusWalk {
  const char* name;
  ui::GameState screen;
  std::size_t controls;
  bool asking = false;
};
void PrintTo(const FocusWalk& walk, std::ostream* out) { *out << walk.name; }

// The expected numbers of focusable controls: the back button and the screen's own.
const FocusWalk kWalks[] = {
    {"Menu", {.kind = ScreenKind::Menu}, 6},
    {"LevelSelect", {.kind = ScreenKind::LevelSelect}, 1 + 10 + 10},
    {"Solved", {.kind = ScreenKind::Solved, .level = 1, .deal = 1, .tiles = 36}, 3},
    {"Gallery", {.kind = ScreenKind::Gallery}, 1 + 10 + kPlayersRecords},
    {"Settings", {.kind = ScreenKind::Settings}, 1 + 23 + 2 + 2 + 2},
    {"About", {.kind = ScreenKind::About}, 1 + 3 + 1},
    {"Licenses", {.kind = ScreenKind::Licenses}, 1},
    {"GalleryQuestion", {.kind = ScreenKind::Gallery}, 2, true},
};

struct Showing {
  const char* name;
  const char* language;
  int w;
  int h;
};
void PrintTo(const Showing& showing, std::ostream* out) { *out << showing.name; }

const Showing kShowings[] = {
    {"Small", "en", 640, 480}, {"Usual", "en", 1100, 760}, {"Arabic", "ar", 640, 480}};

class Walking : public testing::TestWithParam<std::tuple<FocusWalk, Showing>> {
 protected:
  Walking() { i18n::setLanguage(std::get<Showing>(GetParam()).language); }
  ~Walking() override { i18n::setLanguage("en"); }
};

INSTANTIATE_TEST_SUITE_P(By, Walking,
                         testing::Combine(testing::ValuesIn(kWalks), testing::ValuesIn(kShowings)),
                         [](const auto& param) {
                           return std::string(std::get<0>(param.param).name) + std::get<1>(param.param).name;
                         });

TEST_P(Walking, ComesByEveryControlOnceAndStaysInTheWindow) {
  const auto& [walk, showing] = GetParam();
  Visit visit(walk.screen, showing.w, showing.h);
  if (walk.asking) {
    visit.key(SDLK_TAB, 12);
    visit.key(SDLK_DELETE);
    visit.stack.harness.frame();
  }
  const std::vector<Rect> rings = visit.walk();
  EXPECT_EQ(rings.size(), walk.controls);
  for (const Rect& ring : rings) {
    EXPECT_TRUE(test::inside(ring, visit.window))
        << ring.x << " " << ring.y << " " << ring.w << " " << ring.h;
  }
}

// Reading order: to the right or down. The window is large enough that no list scrolls, which would move the
// next row to the place of the last.
TEST_P(Walking, GoesAsAReaderDoes) {
  const auto& [walk, showing] = GetParam();
  Visit visit(walk.screen, 1400, 1300);
  if (walk.asking) {
    visit.key(SDLK_TAB, 12);
    visit.key(SDLK_DELETE);
    visit.stack.harness.frame();
  }
  const std::vector<Rect> rings = visit.walk();
  ASSERT_EQ(rings.size(), walk.controls);
  for (std::size_t i = 1; i < rings.size(); ++i) {
    const Rect& last = rings[i - 1];
    const Rect& next = rings[i];
    const bool besides = next.x > last.x && std::abs(next.y - last.y) < last.h / 2;
    const bool below = next.y > last.y + last.h / 2;
    EXPECT_TRUE(besides || below) << i;
    EXPECT_FALSE(test::overlap(last, next, 12)) << i;
  }
}

TEST(Keyboard, TabBackGoesTheSameWay) {
  Visit visit({.kind = ScreenKind::Settings});
  std::vector<Rect> rings = visit.walk();
  std::vector<Rect> back;
  for (std::size_t i = 0; i < rings.size(); ++i) {
    visit.backTab();
    back.push_back(*Visit::ring());
  }
  EXPECT_EQ(back.size(), rings.size());
  EXPECT_EQ(back.back().x, rings.front().x);
  for (std::size_t i = 0; i < back.size(); ++i) EXPECT_EQ(back[i].x, rings[rings.size() - 1 - i].x) << i;
}

// --- Enter ---

TEST(Keyboard, EnterInTheMenuContinues) {
  Visit visit({.kind = ScreenKind::Menu});
  saveGameOf(9, 77);
  ui::Game::instance().resetTo({.kind = ScreenKind::Menu});
  visit.pass();
  visit.key(SDLK_RETURN);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 9, 77));
  EXPECT_THAT(heard(), ElementsAre(Sfx::Click));
}

TEST(Keyboard, EnterThatLeavesTheSplashScreenGoesNoFurther) {
  Visit visit({.kind = ScreenKind::Splash});
  for (int i = 0; i < 4; ++i) {
    visit.key(SDLK_RETURN);
    visit.stack.harness.frame(0.1);
  }
  EXPECT_EQ(Stack::top().kind, ScreenKind::Menu);
  visit.pass();
  visit.key(SDLK_RETURN);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Playing);
}

TEST(Keyboard, EnterWorksTheMenusOtherPlaques) {
  const ScreenKind kinds[] = {ScreenKind::Playing, ScreenKind::Playing,  ScreenKind::LevelSelect,
                              ScreenKind::Gallery, ScreenKind::Settings, ScreenKind::About};
  for (int i = 0; i < 6; ++i) {
    Visit visit({.kind = ScreenKind::Menu});
    visit.key(SDLK_TAB, i + 1);
    EXPECT_TRUE(Visit::isRinged(screens::menuLayout(640, 480).plaques[static_cast<std::size_t>(i)]));
    visit.key(i % 2 == 0 ? SDLK_RETURN : SDLK_SPACE);
    EXPECT_EQ(Stack::top().kind, kinds[i]);
  }
}

TEST(Keyboard, ArrowsGoThroughTheMenuAsItLies) {
  Visit visit({.kind = ScreenKind::Menu});
  const screens::MenuLayout layout = screens::menuLayout(640, 480);
  const auto comesTo = [&](int code, MenuEntry entry) {
    visit.key(code);
    return Visit::isRinged(layout.plaque(entry));
  };
  EXPECT_TRUE(comesTo(SDLK_DOWN, MenuEntry::Continue));
  EXPECT_TRUE(comesTo(SDLK_DOWN, MenuEntry::NewGame));
  EXPECT_TRUE(comesTo(SDLK_DOWN, MenuEntry::LevelSelect));
  EXPECT_TRUE(comesTo(SDLK_RIGHT, MenuEntry::Gallery));
  EXPECT_TRUE(comesTo(SDLK_DOWN, MenuEntry::About));
  EXPECT_TRUE(comesTo(SDLK_LEFT, MenuEntry::Settings));
  EXPECT_TRUE(comesTo(SDLK_UP, MenuEntry::LevelSelect));
  EXPECT_TRUE(comesTo(SDLK_UP, MenuEntry::NewGame));
}

TEST(Keyboard, EnterOnSolvedDealsTheNextLevel) {
  Visit visit({.kind = ScreenKind::Solved, .level = 12, .deal = 5, .tiles = 36});
  visit.key(SDLK_RETURN);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 13, 13));
}

TEST(Keyboard, EnterOnALevelsCardBeginsItOrSaysThatItIsLocked) {
  Visit visit({.kind = ScreenKind::LevelSelect});
  visit.key(SDLK_TAB, 1 + 10 + 4);
  heard().clear();
  visit.key(SDLK_RETURN);
  EXPECT_EQ(Stack::top().kind, ScreenKind::LevelSelect);
  EXPECT_THAT(heard(), ElementsAre(Sfx::Error)) << "level 24";
  visit.backTab();
  heard().clear();
  visit.key(SDLK_RETURN);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 23, 23));
  EXPECT_THAT(heard(), ElementsAre(Sfx::Click));
}

// --- settings ---

TEST(Keyboard, VolumesSwitchesAndLanguagesAreSet) {
  Visit visit({.kind = ScreenKind::Settings});
  store::Settings& settings = ui::Game::settings();
  const auto saved = [] { return store::loadSettings(); };
  visit.key(SDLK_TAB, 1 + 3);
  visit.key(SDLK_RETURN);
  EXPECT_EQ(settings.language, "en") << "the third chip";
  visit.key(SDLK_TAB, 21);
  visit.key(SDLK_RIGHT, 2);
  EXPECT_NEAR(settings.musicVolume, 0.35, 1e-9);
  EXPECT_NEAR(saved().musicVolume, 0.35, 1e-9);
  visit.key(SDLK_DOWN);
  visit.key(SDLK_LEFT, 3);
  EXPECT_NEAR(settings.sfxVolume, 0.85, 1e-9);
  visit.key(SDLK_DOWN);
  visit.key(SDLK_RETURN);
  EXPECT_FALSE(settings.soundOn);
  visit.key(SDLK_DOWN);
  visit.key(SDLK_SPACE);
  EXPECT_TRUE(saved().fullscreen);
}

TEST(Keyboard, EnterAtTheQuestionBeforeAResetCancels) {
  Visit visit({.kind = ScreenKind::Settings});
  visit.backTab();
  visit.backTab();
  visit.key(SDLK_RETURN);
  visit.stack.harness.frame();
  EXPECT_FALSE(Visit::ring());
  visit.key(SDLK_RETURN);
  visit.stack.harness.frame();
  EXPECT_EQ(store::loadProgress().currentLevel, kPlayersLevel);
  EXPECT_TRUE(Visit::ring()) << "back on the button";
  visit.key(SDLK_RETURN);
  visit.stack.harness.frame();
  visit.key(SDLK_TAB, 2);
  visit.key(SDLK_RETURN);
  EXPECT_EQ(store::loadProgress().currentLevel, 1);
}

TEST(Keyboard, QuitIsTheLastOfTheSettings) {
  Visit visit({.kind = ScreenKind::Settings});
  visit.backTab();
  visit.key(SDLK_RETURN);
  EXPECT_TRUE(visit.stack.harness.quit());
}

// --- pages and lists ---

TEST(Keyboard, PageKeysTurnThePagesOfBothLists) {
  for (const ScreenKind kind : {ScreenKind::LevelSelect, ScreenKind::Gallery}) {
    Visit visit({.kind = kind});
    const auto page = [&] {
      return kind == ScreenKind::Gallery ? screens::chosenPages().gallery : screens::chosenPages().levels;
    };
    visit.key(SDLK_PAGEUP);
    EXPECT_EQ(page(), 1);
    visit.key(SDLK_PAGEDOWN, 3);
    EXPECT_EQ(page(), 4);
    visit.key(SDLK_END);
    EXPECT_EQ(page(), 9);
    heard().clear();
    visit.key(SDLK_PAGEDOWN);
    EXPECT_EQ(page(), 9);
    EXPECT_TRUE(heard().empty()) << "there is no other";
    visit.key(SDLK_HOME);
    EXPECT_EQ(page(), 0);
    EXPECT_THAT(heard(), ElementsAre(Sfx::Click));
    visit.key(SDLK_PAGEUP);
    EXPECT_EQ(page(), 0);
  }
}

TEST(Keyboard, QuestionKeepsThePage) {
  Visit visit({.kind = ScreenKind::Gallery});
  visit.key(SDLK_TAB, 12);
  visit.key(SDLK_DELETE);
  visit.stack.harness.frame();
  visit.key(SDLK_END);
  EXPECT_FALSE(screens::chosenPages().gallery);
}

TEST(Keyboard, LevelsCardWithTheFocusIsWhole) {
  Visit visit({.kind = ScreenKind::LevelSelect});
  const Rect view = screens::levelGrid(640, 480).view;
  const double cardH = screens::levelGrid(640, 480).cardH;
  visit.key(SDLK_TAB, 11);
  for (int i = 0; i < 10; ++i) {
    visit.key(SDLK_TAB);
    EXPECT_GT(Visit::ring()->h, cardH) << i;
    EXPECT_TRUE(test::inside(*Visit::ring(), {view.x, view.y - 6, view.w, view.h + 12})) << i;
  }
}

// A digest of a column of pixels through the list. It changes when the list scrolls.
std::uint32_t digestOfList(const Visit& visit) {
  std::uint32_t digest = 0;
  for (int y = 60; y < 430; ++y) digest = 31 * digest + visit.stack.harness.colorAt(100, y);
  return digest;
}

TEST(Keyboard, ListWithoutControlsIsScrolled) {
  Visit visit({.kind = ScreenKind::Licenses});
  const std::uint32_t top = digestOfList(visit);
  const auto movesBack = [&](int there, int back) {
    visit.key(there);
    const bool moved = digestOfList(visit) != top;
    visit.key(back);
    return moved && digestOfList(visit) == top;
  };
  EXPECT_TRUE(movesBack(SDLK_PAGEDOWN, SDLK_PAGEUP));
  EXPECT_TRUE(movesBack(SDLK_END, SDLK_HOME));
  visit.key(SDLK_TAB);
  EXPECT_TRUE(movesBack(SDLK_DOWN, SDLK_UP)) << "arrows that find nothing else";
}

// --- the hand cursor ---

TEST(Hand, LiesOnLinksAndCardsAndNothingElse) {
  const auto showsHand = [](Visit& visit, const Rect& rect) {
    visit.stack.harness.moveTo(rect.x + rect.w / 2, rect.y + 20);
    return visit.stack.harness.hand();
  };
  const Rect felt = {320, 40, 1, 1};
  {
    Visit gallery({.kind = ScreenKind::Gallery});
    const Rect card = screens::galleryGrid(640, 480, screens::kPagedListTop).card(0, 0);
    EXPECT_TRUE(showsHand(gallery, card));
    EXPECT_FALSE(showsHand(gallery, felt));
    gallery.stack.harness.rightClick(card.x + 30, card.y + 60);
    EXPECT_FALSE(showsHand(gallery, card)) << "a question lies over it";
  }
  {
    Visit levels({.kind = ScreenKind::LevelSelect});
    const screens::CardGrid grid = screens::levelGrid(640, 480);
    EXPECT_TRUE(showsHand(levels, grid.card(0, 0)));
    levels.key(SDLK_PAGEDOWN);
    EXPECT_FALSE(showsHand(levels, grid.card(0, 0))) << "locked";
  }
  Visit about({.kind = ScreenKind::About});
  Rect mail = screens::aboutLayout(640, 480).at(screens::AboutLine::Mail);
  mail.y -= 10;
  EXPECT_TRUE(showsHand(about, mail));
  EXPECT_FALSE(showsHand(about, felt));
}

}  // namespace
