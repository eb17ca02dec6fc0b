// The settings screen: what each row changes, and when it is saved.

#include "screens/settings_layout.h"

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/environment.h"
#include "screens/list_screen.h"
#include "screens/stack.h"
#include "support/heard.h"
#include "support/picture.h"
#include "ui/gpu.h"

namespace {

using support::Point;
using test::Stack;
using ui::ScreenKind;

constexpr const char* kFile = "settings.json";
constexpr Point kBackButton = {30, 30};

Point middle(const ui::Rect& rect) { return {rect.x + rect.w / 2, rect.y + rect.h / 2}; }
Point along(const ui::Rect& slider, double part) {
  return {slider.x + part * slider.w, slider.y + slider.h / 2};
}

screens::SettingsLayout layoutOf(double w) {
  const ui::CairoSurface picture = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(picture.get()));
  return screens::settingsLayout(cr.get(), w);
}

// The settings screen on top of another, with the settings of a first start, in English.
class SettingsScreen : public testing::Test {
 protected:
  explicit SettingsScreen(int w = 1100, int h = 760)
      : stack({.kind = ScreenKind::About}, w, h), width(w), height(h) {
    ui::Game::instance().push({.kind = ScreenKind::Settings});
    stack.harness.frame();
    stack.harness.frame();
    support::heard().clear();
    support::soundState() = {};
  }

  static store::Settings& settings() { return ui::Game::settings(); }
  screens::SettingsLayout layout() const { return layoutOf(width); }
  ui::Rect view() const { return screens::listView(width, height); }
  // The rectangle's place in the window at this scroll position.
  ui::Rect shown(ui::Rect rect, double scroll = 0) const {
    rect.y += screens::settingsTop(layout(), view()) - scroll;
    return rect;
  }
  ui::Rect slider(screens::VolumeRow screens::SettingsLayout::* row) const {
    return shown((layout().*row).slider);
  }
  void click(const ui::Rect& rect) { clickAt(middle(shown(rect))); }
  void clickAt(Point p) { stack.harness.click(p.x, p.y); }
  void press(Point p) { stack.harness.press(p.x, p.y); }
  void move(Point p) { stack.harness.moveTo(p.x, p.y); }
  void release(Point p) { stack.harness.release(p.x, p.y); }
  void clickLanguage(const std::string& code) {
    for (const screens::LanguageChip& chip : layout().chips)
      if (chip.code == code) return click(chip.rect);
    FAIL() << "no chip for " << code;
  }

  void openQuestion() {
    click(layout().reset);
    stack.harness.frame();
  }
  // The dialog is 420 x 230 in the middle of the window; its buttons are 180 x 42.
  Point cancelButton() const { return {width / 2 - 100, height / 2 + 74}; }
  Point confirmButton() const { return {width / 2 + 100, height / 2 + 74}; }

  bool isGolden(const ui::Rect& chip) const {
    const ui::Rect rect = shown(chip);
    return stack.harness.colorAt(static_cast<int>(rect.x + 8), static_cast<int>(rect.y + rect.h / 2)) ==
           0xE8B84B;
  }
  // Whether anything light is drawn in this rectangle.
  bool hasText(const ui::Rect& rect) const {
    const ui::CairoSurface picture = stack.harness.picture();
    for (int y = static_cast<int>(rect.y); y < rect.y + rect.h; ++y) {
      for (int x = static_cast<int>(rect.x); x < rect.x + rect.w; ++x) {
        if ((support::pixelAt(picture.get(), x, y) >> 16 & 0xFF) > 0x60) return true;
      }
    }
    return false;
  }

  // Whether the file was written since the last call. Removes it.
  bool wasWritten() const { return std::filesystem::remove(stack.data.path(kFile)); }

  Stack stack;
  double width;
  double height;
};

// --- layout ---

class SettingsLayout : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  const double w = GetParam().first;
  const double h = GetParam().second;
};

TEST_P(SettingsLayout, HasEverythingInOneColumnInAnyLanguage) {
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    const screens::SettingsLayout layout = layoutOf(w);
    const ui::Rect column = layout.help;
    EXPECT_EQ(column.x + column.w / 2, w / 2);
    EXPECT_GE(column.x, 12);
    EXPECT_LE(column.w, 620);
    std::vector<ui::Rect> rects = {layout.fan,          layout.language,       layout.music.label,
                                   layout.music.grip,   layout.music.number,   layout.effects.label,
                                   layout.effects.grip, layout.effects.number, layout.sound,
                                   layout.fullscreen,   layout.help,           layout.reset,
                                   layout.quit};
    for (const screens::LanguageChip& chip : layout.chips) rects.push_back(chip.rect);
    for (std::size_t i = 0; i < rects.size(); ++i) {
      EXPECT_GE(rects[i].x, column.x) << language.code << i;
      EXPECT_LE(rects[i].x + rects[i].w, column.x + column.w) << language.code << i;
      EXPECT_LE(rects[i].y + rects[i].h, layout.height) << language.code << i;
      for (std::size_t k = 0; k < i; ++k) {
        const bool apart = rects[i].x >= rects[k].x + rects[k].w || rects[k].x >= rects[i].x + rects[i].w ||
                           rects[i].y >= rects[k].y + rects[k].h || rects[k].y >= rects[i].y + rects[i].h;
        EXPECT_TRUE(apart) << language.code << i << " " << k;
      }
    }
  }
}

TEST_P(SettingsLayout, ShowsTheColumnBetweenHeaderAndFooter) {
  const ui::Rect view = screens::listView(w, h);
  EXPECT_EQ(view.y, 56);
  EXPECT_LE(view.y + view.h, h - 38);
  EXPECT_EQ(view.w, w);
}

INSTANTIATE_TEST_SUITE_P(Window, SettingsLayout,
                         testing::Values(std::pair(640, 480), std::pair(779, 600), std::pair(1100, 760),
                                         std::pair(1920, 1080), std::pair(3840, 2160)),
                         [](const auto& param) { return std::to_string(param.param.first); });

TEST(SettingsRows, AreSpacedEvenly) {
  const screens::SettingsLayout layout = layoutOf(1100);
  EXPECT_EQ(layout.fullscreen.y - layout.sound.y, 42);
  EXPECT_EQ(layout.help.y - layout.fullscreen.y, 50);
  EXPECT_EQ(layout.quit.y - layout.reset.y, 56);
}

TEST(SettingsChips, FlowInRowsWithTheSameGaps) {
  const screens::SettingsLayout layout = layoutOf(640);
  ASSERT_EQ(layout.chips.size(), 23U);
  for (std::size_t i = 1; i < layout.chips.size(); ++i) {
    const ui::Rect& last = layout.chips[i - 1].rect;
    const ui::Rect& rect = layout.chips[i].rect;
    if (rect.y == last.y) {
      EXPECT_EQ(rect.x - (last.x + last.w), 8);
    } else {
      EXPECT_EQ(rect.y - (last.y + last.h), 8);
      EXPECT_EQ(rect.x, layout.chips[0].rect.x);
      EXPECT_GT(last.x + last.w + 8 + rect.w, layout.help.x + layout.help.w) << "it had room";
    }
  }
}

// --- help ---

std::vector<std::string> linesOf(const std::string& text) {
  const std::string separator = "\u2028";
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;) {
    lines.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  lines.push_back(text.substr(begin));
  return lines;
}

double heightOfHelp(const std::string& text, double width) {
  double height = 0;
  support::makePicture(
      1, 1, [&](cairo_t* cr) { height = ui::wrappedTextHeight(cr, width, text, screens::kSettingsHelp); });
  return height;
}

TEST(SettingsHelp, KeepsEachKeyBesideWhatItDoes) {
  std::size_t most = 0;
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    for (const double w : {400, 640, 1100}) {
      const screens::SettingsLayout layout = layoutOf(w);
      const std::vector<std::string> lines = linesOf(layout.helpText);
      std::string joined = lines.front();
      for (std::size_t i = 1; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i - 1].ends_with(" ·")) << lines[i - 1];
        joined += " " + lines[i];
      }
      EXPECT_EQ(joined, i18n::tr("settings.keyboard"));
      EXPECT_EQ(layout.help.h, heightOfHelp(layout.helpText, 10000)) << language.code << ": broken again";
      EXPECT_EQ(layout.help.h, heightOfHelp(layout.helpText, layout.help.w));
      most = std::max(most, lines.size());
    }
  }
  EXPECT_GT(most, 2U);
  i18n::setLanguage("en");
}

// --- language ---

TEST_F(SettingsScreen, EachChipSetsItsLanguageAndWritesIt) {
  for (const i18n::Language& language : i18n::languages()) {
    clickLanguage(language.code);
    EXPECT_EQ(settings().language, language.code);
    EXPECT_EQ(i18n::currentLanguage(), language.code);
    EXPECT_EQ(store::loadSettings().language, language.code);
  }
}

TEST_F(SettingsScreen, SystemChipFollowsTheSystem) {
  const test::Environment environment("LANGUAGE", "fi");
  clickLanguage("de");
  clickLanguage("");
  EXPECT_EQ(settings().language, "");
  EXPECT_EQ(i18n::currentLanguage(), "fi");
  EXPECT_TRUE(wasWritten());
  EXPECT_EQ(layout().chips[0].name, "Järjestelmä");
}

TEST_F(SettingsScreen, OnlyTheChosenChipIsGolden) {
  for (const char* code : {"", "en", "he"}) {
    clickLanguage(code);
    stack.harness.moveTo(0, 0);
    for (const screens::LanguageChip& chip : layout().chips)
      EXPECT_EQ(isGolden(chip.rect), chip.code == code) << chip.code;
  }
}

TEST_F(SettingsScreen, LanguageOfADamagedFileShowsAsEnglish) {
  settings().language = "xx";
  i18n::setLanguage("xx");
  stack.harness.frame();
  for (const screens::LanguageChip& chip : layout().chips)
    EXPECT_EQ(isGolden(chip.rect), chip.code == "en") << chip.code;
}

// --- volumes ---

struct VolumeCase {
  const char* name;
  screens::VolumeRow screens::SettingsLayout::* row;
  double store::Settings::* value;
  double support::SoundState::* heard;
};

void PrintTo(const VolumeCase& param, std::ostream* out) { *out << param.name; }

class SettingsVolume : public SettingsScreen, public testing::WithParamInterface<VolumeCase> {
 protected:
  ui::Rect slider() const { return SettingsScreen::slider(GetParam().row); }
  double stored() const { return settings().*GetParam().value; }
  double heard() const { return support::soundState().*GetParam().heard; }
};

TEST_P(SettingsVolume, ChangesWhileItIsDraggedAndIsWrittenOnceAtTheEnd) {
  press(along(slider(), 0.5));
  EXPECT_NEAR(stored(), 0.5, 1e-9);
  EXPECT_NEAR(heard(), 0.5, 1e-9);
  for (const double part : {0.6, 0.4, 0.75}) {
    move(along(slider(), part));
    EXPECT_NEAR(stored(), part, 1e-9);
    EXPECT_NEAR(heard(), part, 1e-9);
    EXPECT_FALSE(stack.data.has(kFile));
  }
  release(along(slider(), 0.75));
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.75, 1e-6);
  EXPECT_TRUE(wasWritten());
  stack.harness.run(1);
  EXPECT_FALSE(wasWritten());
  EXPECT_TRUE(support::heard().empty());
}

TEST_P(SettingsVolume, LeavesTheOtherOneAlone) {
  store::Settings expected = settings();
  press(along(slider(), 0));
  release(along(slider(), 0));
  expected.*GetParam().value = 0;
  EXPECT_EQ(settings(), expected);
}

TEST_P(SettingsVolume, IgnoresATremblingHand) {
  settings().*GetParam().value = 0.5;
  press(along(slider(), 0.5009));
  move(along(slider(), 0.4991));
  release(along(slider(), 0.4991));
  EXPECT_EQ(stored(), 0.5);
  EXPECT_FALSE(wasWritten());
  press(along(slider(), 0.5011));
  release(along(slider(), 0.5011));
  EXPECT_NEAR(stored(), 0.5011, 1e-9);
  EXPECT_TRUE(wasWritten());
}

TEST_P(SettingsVolume, IsNotMovedByADragThatBeganElsewhere) {
  const store::Settings before = settings();
  press({slider().x - 30, slider().y + 5});
  move(along(slider(), 0.5));
  release(along(slider(), 0.5));
  EXPECT_EQ(settings(), before);
  EXPECT_FALSE(wasWritten());
}

TEST_P(SettingsVolume, FollowsTheHandThatLeavesTheSliderUntilItLetsGo) {
  press(along(slider(), 0.5));
  for (const double y : {20.0, 755.0, -300.0, 2000.0}) {
    move({along(slider(), 0.6).x, y});
    EXPECT_NEAR(stored(), 0.6, 1e-9) << y;
    EXPECT_NEAR(heard(), 0.6, 1e-9) << y;
    move(along(slider(), 0.7));
    EXPECT_NEAR(stored(), 0.7, 1e-9) << y;
  }
  EXPECT_FALSE(stack.data.has(kFile));
  release({along(slider(), 0.8).x, 20});
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.8, 1e-6);
  move(along(slider(), 0.2));
  EXPECT_NEAR(stored(), 0.8, 1e-9);
}

TEST_P(SettingsVolume, AFastHandReachesBothEnds) {
  for (const auto& [x, end] : {std::pair(-50.0, 0.0), {5000.0, 1.0}, {1.0, 0.0}, {width - 1, 1.0}}) {
    press(along(slider(), 0.5));
    move({x, middle(slider()).y});
    EXPECT_EQ(stored(), end) << x;
    release({x, middle(slider()).y});
    EXPECT_EQ(stored(), end) << x;
    EXPECT_EQ(store::loadSettings().*GetParam().value, end) << x;
  }
}

TEST_P(SettingsVolume, AHandThatLetsGoInTheSameFrameIsNotTooFast) {
  press(along(slider(), 0.5));
  release({5000, middle(slider()).y});
  EXPECT_EQ(stored(), 1);
  clickAt(along(slider(), 0.25));
  EXPECT_NEAR(stored(), 0.25, 1e-9);
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.25, 1e-6);
  EXPECT_TRUE(support::heard().empty());
}

TEST_P(SettingsVolume, LightsNothingThatTheDragComesOver) {
  const auto colorAtReset = [&] {
    const ui::Rect rect = shown(layout().reset);
    return stack.harness.colorAt(static_cast<int>(rect.x) + 5, static_cast<int>(middle(rect).y));
  };
  move({-1, -1});
  const std::uint32_t unlit = colorAtReset();
  move(middle(shown(layout().reset)));
  EXPECT_NE(colorAtReset(), unlit);
  press(along(slider(), 0.5));
  move(middle(shown(layout().reset)));
  EXPECT_EQ(colorAtReset(), unlit);
}

// The window missed the release of the button.
TEST_P(SettingsVolume, LetsGoOfAHandThatIsNotThereAnyMore) {
  press(along(slider(), 0.5));
  stack.harness.next().down = false;
  move({5000, 20});
  EXPECT_NEAR(stored(), 0.5, 1e-9);
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.5, 1e-6);
}

TEST_P(SettingsVolume, KeepsTheButtonToItselfUntilItIsReleased) {
  for (const Point end : {middle(shown(layout().sound)), middle(shown(layout().quit)), kBackButton}) {
    press(along(slider(), 0.5));
    move(end);
    release(end);
    EXPECT_TRUE(settings().soundOn);
    EXPECT_FALSE(stack.harness.quit());
    EXPECT_EQ(Stack::top().kind, ScreenKind::Settings);
  }
  click(layout().sound);
  EXPECT_FALSE(settings().soundOn);
}

TEST_P(SettingsVolume, IsWrittenWhenEscapeEndsTheDrag) {
  press(along(slider(), 0.5));
  EXPECT_FALSE(stack.data.has(kFile));
  stack.harness.key(SDLK_ESCAPE);
  EXPECT_EQ(Stack::top().kind, ScreenKind::About);
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.5, 1e-6);
}

TEST_P(SettingsVolume, IsWrittenWhenTheScreenIsTakenAwayInMidDrag) {
  press(along(slider(), 0.5));
  ui::Game::instance().resetTo({.kind = ScreenKind::About});
  stack.harness.frame();
  EXPECT_NEAR(store::loadSettings().*GetParam().value, 0.5, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Slider, SettingsVolume,
    testing::Values(VolumeCase{"Music", &screens::SettingsLayout::music, &store::Settings::musicVolume,
                               &support::SoundState::musicVolume},
                    VolumeCase{"Effects", &screens::SettingsLayout::effects, &store::Settings::sfxVolume,
                               &support::SoundState::sfxVolume}),
    [](const auto& param) { return std::string(param.param.name); });

TEST_F(SettingsScreen, OneDragMovesOneSlider) {
  const ui::Rect music = slider(&screens::SettingsLayout::music);
  const ui::Rect effects = slider(&screens::SettingsLayout::effects);
  press(along(music, 0.5));
  move(along(effects, 0.5));
  EXPECT_EQ(settings().sfxVolume, 1);
  release(along(effects, 0.5));
  EXPECT_EQ(settings().sfxVolume, 1);
  press(along(effects, 0.5));
  EXPECT_NEAR(settings().sfxVolume, 0.5, 1e-9);
}

// --- the other rows ---

TEST_F(SettingsScreen, SoundIsSwitchedOffAndOnAgainWithItsMusic) {
  click(layout().sound);
  EXPECT_FALSE(settings().soundOn);
  EXPECT_FALSE(support::soundState().enabled);
  EXPECT_EQ(support::soundState().musicStarts, 0);
  EXPECT_FALSE(store::loadSettings().soundOn);
  click(layout().sound);
  EXPECT_TRUE(settings().soundOn);
  EXPECT_TRUE(support::soundState().enabled);
  EXPECT_EQ(support::soundState().musicStarts, 1);
  EXPECT_TRUE(stack.data.has(kFile));
  EXPECT_TRUE(store::loadSettings().soundOn);
  EXPECT_EQ(support::heard(), std::vector(2, audio::Sfx::Click));
}

TEST_F(SettingsScreen, FullScreenIsFlippedAndWritten) {
  for (const bool on : {true, false}) {
    click(layout().fullscreen);
    EXPECT_EQ(settings().fullscreen, on);
    EXPECT_EQ(store::loadSettings().fullscreen, on);
    EXPECT_TRUE(wasWritten());
  }
}

TEST_F(SettingsScreen, HelpStandsAtTheLeftEdgeAsTheRowsDo) {
  for (const char* language : {"en", "ar", "he"}) {
    clickLanguage(language);
    stack.harness.frame();
    for (const ui::Rect& row : {layout().help, layout().sound})
      EXPECT_TRUE(hasText(shown({row.x, row.y, 12, row.h}))) << language;
    const ui::Rect help = layout().help;
    EXPECT_FALSE(hasText(shown({help.x + help.w - 12, help.y, 12, help.h}))) << language;
  }
}

TEST_F(SettingsScreen, QuitEndsTheProgram) {
  click(layout().quit);
  EXPECT_TRUE(stack.harness.quit());
}

TEST_F(SettingsScreen, NothingIsWrittenOrEndedUnasked) {
  stack.harness.run(1);
  clickAt({5, 400});
  EXPECT_FALSE(stack.data.has(kFile));
  EXPECT_FALSE(stack.harness.quit());
  EXPECT_EQ(Stack::depth(), 2U);
}

TEST_F(SettingsScreen, EscapeAndTheBackButtonWriteAndReturn) {
  for (const bool byKey : {true, false}) {
    settings().windowW = byKey ? 700 : 800;
    if (byKey) {
      stack.harness.key(SDLK_ESCAPE);
    } else {
      clickAt(kBackButton);
    }
    EXPECT_EQ(Stack::top().kind, ScreenKind::About);
    EXPECT_EQ(Stack::depth(), 1U);
    EXPECT_EQ(store::loadSettings(), settings());
    EXPECT_TRUE(wasWritten());
    ui::Game::instance().push({.kind = ScreenKind::Settings});
    stack.harness.frame();
    stack.harness.frame();
    EXPECT_FALSE(wasWritten());
  }
}

// --- reset ---

class SettingsReset : public SettingsScreen {
 protected:
  SettingsReset() {
    store::advanceLevel(1);
    store::recordBest(1, {.stars = 3, .aids = 0, .elapsedMs = 1000});
    store::saveGame({.level = 1, .seed = 1, .game = mj::createGame(mj::levelToConfig(1).slots, 1)});
    stack.data.write("solves/a.png", "a picture");
    store::recordSolve({.id = "a", .level = 1, .shot = "a.png", .stars = 3});
    kept = files();
    openQuestion();
  }

  std::vector<std::string> files() const {
    std::vector<std::string> texts;
    for (const char* file : {"progress.json", "save.json", "solves.json", "solves/a.png"}) {
      EXPECT_TRUE(stack.data.has(file)) << file;
      texts.push_back(stack.data.text(file));
    }
    return texts;
  }
  // Whether the dialog is closed: a click reaches the rows again.
  bool isAnswered() {
    const bool before = settings().fullscreen;
    click(layout().fullscreen);
    return settings().fullscreen != before;
  }

  std::vector<std::string> kept;
};

TEST_F(SettingsReset, YesDeletesProgressGameAndGallery) {
  clickAt(confirmButton());
  EXPECT_EQ(store::loadProgress(), store::Progress{});
  EXPECT_EQ(store::bestFor(1), store::LevelBest{});
  EXPECT_FALSE(store::loadGame().valid);
  EXPECT_TRUE(store::listSolves().empty());
  EXPECT_FALSE(stack.data.has("solves/a.png"));
  EXPECT_TRUE(isAnswered());
}

TEST_F(SettingsReset, YesKeepsTheSettings) {
  settings().musicVolume = 0.5;
  const store::Settings before = settings();
  clickAt(confirmButton());
  EXPECT_EQ(settings(), before);
}

TEST_F(SettingsReset, NoKeepsEverything) {
  clickAt(cancelButton());
  EXPECT_EQ(files(), kept);
  EXPECT_TRUE(isAnswered());
}

TEST_F(SettingsReset, EscapeMeansNoAndDoesNotLeave) {
  stack.harness.key(SDLK_ESCAPE);
  EXPECT_EQ(Stack::top().kind, ScreenKind::Settings);
  EXPECT_EQ(files(), kept);
  EXPECT_TRUE(isAnswered());
  stack.harness.key(SDLK_ESCAPE);
  EXPECT_EQ(Stack::top().kind, ScreenKind::About);
}

TEST_F(SettingsReset, NothingElseHearsOfTheMouseMeanwhile) {
  support::heard().clear();
  const store::Settings before = settings();
  clickAt(kBackButton);
  click(layout().language);
  clickLanguage("de");
  click(layout().sound);
  click(layout().fullscreen);
  const ui::Rect music = slider(&screens::SettingsLayout::music);
  press({music.x + 1, music.y + music.h / 2});
  release({music.x + 1, music.y + music.h / 2});
  EXPECT_EQ(settings(), before);
  EXPECT_EQ(i18n::currentLanguage(), "en");
  EXPECT_EQ(Stack::top().kind, ScreenKind::Settings);
  EXPECT_FALSE(stack.data.has(kFile));
  EXPECT_TRUE(support::heard().empty());
  EXPECT_FALSE(isAnswered());
}

// --- a low window ---

class LowSettings : public SettingsScreen {
 protected:
  LowSettings() : SettingsScreen(640, 480) {}

  void scrollBy(double distance) { stack.harness.wheel(320, 240, -distance / 60); }
};

TEST_F(LowSettings, ScrollsToItsEnd) {
  ASSERT_GT(layout().height, view().h);
  scrollBy(10000);
  clickAt(middle(shown(layout().quit, layout().height - view().h)));
  EXPECT_TRUE(stack.harness.quit());
}

TEST_F(LowSettings, RowsReactOnlyWhereTheyAreSeen) {
  const double edge = view().y + view().h;
  const ui::Rect sound = layout().sound;
  scrollBy(shown(sound).y + 20 - edge);
  clickAt({sound.x + 5, edge + 1});
  EXPECT_TRUE(settings().soundOn);
  clickAt({sound.x + 5, edge - 1});
  EXPECT_FALSE(settings().soundOn);
}

TEST_F(LowSettings, SlidersReactOnlyWhereTheyAreSeen) {
  const Point half = along(slider(&screens::SettingsLayout::music), 0.5);
  height -= view().y + view().h - half.y;
  stack.harness.resize(640, static_cast<int>(height));
  press({half.x, half.y + 1});
  release({half.x, half.y + 1});
  EXPECT_EQ(settings().musicVolume, 0.25);
  press({half.x, half.y - 1});
  EXPECT_NEAR(settings().musicVolume, 0.5, 1e-9);
}

TEST_F(LowSettings, DoesNotScrollBelowTheQuestion) {
  scrollBy(10000);
  const double end = layout().height - view().h;
  clickAt(middle(shown(layout().reset, end)));
  scrollBy(-10000);
  stack.harness.key(SDLK_ESCAPE);
  clickAt(middle(shown(layout().quit, end)));
  EXPECT_TRUE(stack.harness.quit());
}

}  // namespace
