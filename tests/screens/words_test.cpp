// The texts and icons of each screen and their places.

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/app.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/about.h"
#include "screens/attract.h"
#include "screens/card.h"
#include "screens/environment.h"
#include "screens/gallery_layout.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/menu.h"
#include "screens/menu_layout.h"
#include "screens/miniature.h"
#include "screens/playing_layout.h"
#include "screens/screens.h"
#include "screens/settings_layout.h"
#include "screens/sitting.h"
#include "screens/solved_layout.h"
#include "storage/storage.h"
#include "support/data_home.h"
#include "support/frame_record.h"
#include "support/picture.h"
#include "support/screen_harness.h"
#include "ui/draw.h"
#include "ui/palette.h"
#include "ui/widgets.h"

namespace {

using support::FrameRecord;
using support::kUsualH;
using support::kUsualW;
using test::Sitting;
using testing::Contains;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::UnorderedElementsAreArray;
using ui::ActionIcon;
using ui::Rect;

// High enough to show all cards of a page.
constexpr int kTallH = 1600;

// A screen alone in its window.
struct Shown {
  explicit Shown(std::unique_ptr<ui::Screen> made, int w = kUsualW, int h = kUsualH,
                 support::Drawing drawing = support::Drawing::Cairo)
      : screen(std::move(made)), harness([this](ui::Ctx& ctx) { screen->update(ctx); }, w, h, drawing) {
    harness.next().mx = -1;
    harness.frame(0);
  }

  FrameRecord record(double later = 0) {
    return support::recordOf([&] { harness.frame(later); });
  }

  std::unique_ptr<ui::Screen> screen;
  support::ScreenHarness harness;
};

FrameRecord recordOf(Sitting& sitting) {
  return support::recordOf([&] { sitting.harness.frame(0); });
}

std::optional<support::DrawnText> find(const FrameRecord& record, const std::string& words) {
  for (const support::DrawnText& text : record.texts)
    if (text.words == words) return text;
  return std::nullopt;
}

Rect lowestStrip(int w, int h, double from) { return {0, from, 1.0 * w, h - from}; }

void expectFooter(const FrameRecord& record, double bottomY, int w = kUsualW) {
  const Rect place = {0, bottomY - ui::kFooterHeight, 1.0 * w, ui::kFooterHeight};
  EXPECT_THAT(record.wordsIn(place), ElementsAre("© 2026 Quenlock Software", "v1.1.0 Build 1054"));
}

// Expects the headline as the only text in the header.
void expectHeadline(const FrameRecord& record, const std::string& headline) {
  EXPECT_THAT(record.wordsIn({0, 0, kUsualW, screens::kListTop}), ElementsAre(headline));
}

// --- splash and menu ---

TEST(SplashWords, AreTheTitleTheTaglineAndTheFooter) {
  Shown splash(screens::makeSplash());
  const FrameRecord record = splash.record(2);
  EXPECT_TRUE(record.says("Tiles. Pairs. Calm."));
  for (const char* letter : {"Q", "u", "M", "A", "H", "J", "O", "N", "G"}) EXPECT_TRUE(record.says(letter));
  expectFooter(record, kUsualH - ui::kFooterGap);
}

std::unique_ptr<ui::Screen> menu() {
  return std::make_unique<screens::Menu>(mj::createGame(mj::levelToConfig(61).slots, 61));
}

std::vector<std::string> plaques(const FrameRecord& record) {
  std::vector<std::string> labels;
  for (const Rect& place : screens::menuLayout(kUsualW, kUsualH).plaques) {
    const std::vector<std::string> words = record.wordsIn(place);
    // Other words belong to the board behind the plaques; the label is drawn last.
    labels.push_back(words.empty() ? "" : words.back());
  }
  return labels;
}

TEST(MenuWords, AreOnItsPlaques) {
  const support::DataHome data;
  store::saveProgress({.currentLevel = 37});
  Shown shown(menu());
  EXPECT_THAT(plaques(shown.record()), ElementsAre("Continue with level 37", "New game", "Choose level",
                                                   "Achievements", "Settings", "About"));
  i18n::setLanguage("de");
  EXPECT_THAT(plaques(shown.record()), ElementsAre("Weiter mit Level 37", "Neues Spiel", "Level wählen",
                                                   "Erfolge", "Einstellungen", "Über"));
}

TEST(MenuWords, HaveTheTaglineAboveAndTheFooterBelow) {
  const support::DataHome data;
  Shown shown(menu(), kUsualW, kUsualH, support::Drawing::Textures);
  const FrameRecord record = shown.record();
  const screens::MenuLayout layout = screens::menuLayout(kUsualW, kUsualH);
  EXPECT_THAT(record.wordsIn({0, *layout.taglineTop, kUsualW, 20}), ElementsAre("Tiles. Pairs. Calm."));
  expectFooter(record, layout.footerBottom);
}

// --- playing ---

// Each counter's icon and the text to its right.
std::vector<std::pair<ActionIcon, std::string>> counters(const FrameRecord& record) {
  std::vector<std::pair<ActionIcon, std::string>> found;
  for (const Rect& place : screens::playingLayout(kUsualW, kUsualH).counters) {
    const std::vector<std::string> words = record.wordsIn(place);
    EXPECT_EQ(words.size(), 1U);
    found.emplace_back(record.iconIn(place), words.empty() ? "" : words.front());
  }
  return found;
}

struct Table : Sitting {
  explicit Table(const ui::GameState& descriptor = test::kFirstLevel)
      : Sitting(descriptor, support::Drawing::Textures, kUsualW, kUsualH) {
    waitForIntro();
  }
};

TEST(PlayingWords, CountTilesHintsAndShufflesBesideTheirIcons) {
  Table table;
  table.take(table.order[0]);
  for (int i = 0; i < 3; ++i) table.harness.key(SDLK_h);
  table.harness.key(SDLK_m);
  table.harness.key(SDLK_m);
  EXPECT_THAT(counters(recordOf(table)),
              ElementsAre(std::pair(ActionIcon::Card, "34"), std::pair(ActionIcon::Hint, "3"),
                          std::pair(ActionIcon::Shuffle, "2")));
}

TEST(PlayingWords, NameTheLevelAndTheTimePlayed) {
  const support::DataHome data;
  store::saveGame({.level = 61,
                   .seed = 61,
                   .game = mj::createGame(mj::levelToConfig(61).slots, 61),
                   .elapsedMs = 3725500});
  Sitting sitting({.kind = ui::ScreenKind::Playing, .level = 61, .deal = 61}, support::Drawing::Textures,
                  kUsualW, kUsualH, test::Files::Kept);
  const screens::PlayingLayout layout = screens::playingLayout(kUsualW, kUsualH);
  EXPECT_THAT(recordOf(sitting).wordsIn(layout.label), ElementsAre("Level 61"));
  EXPECT_THAT(recordOf(sitting).wordsIn(layout.time), ElementsAre("62:05"));
  sitting.harness.run(1);
  EXPECT_THAT(recordOf(sitting).wordsIn(layout.time), ElementsAre("62:06"));
}

TEST(PlayingWords, AreBesideTheIconsOfTheActions) {
  Table table;
  const FrameRecord record = recordOf(table);
  const screens::PlayingLayout layout = screens::playingLayout(kUsualW, kUsualH);
  constexpr std::array<ActionIcon, 6> kIcons = {ActionIcon::Hint,   ActionIcon::Shuffle, ActionIcon::Undo,
                                                ActionIcon::ZoomIn, ActionIcon::ZoomOut, ActionIcon::Fit};
  const std::array<std::vector<std::string>, 6> labels = {{{"Hint"}, {"Shuffle"}, {"Undo"}}};
  for (std::size_t i = 0; i < kIcons.size(); ++i) {
    EXPECT_EQ(record.iconIn(layout.buttons[i]), kIcons[i]) << i;
    EXPECT_EQ(record.wordsIn(layout.buttons[i]), labels[i]) << i;
  }
  EXPECT_EQ(record.iconIn(layout.pause), ActionIcon::Pause);
}

TEST(PlayingWords, SayThatNoMoveIsLeftAndWhatHelps) {
  Table table(test::kSoonStuck);
  table.take(test::lowestPair(table.game()));
  table.harness.frame(2);
  const FrameRecord record = recordOf(table);
  const screens::PanelLayout panel =
      screens::noMovesPanel(kUsualW, screens::playingLayout(kUsualW, kUsualH).board, 2);
  EXPECT_THAT(record.wordsIn(panel.panel), ElementsAre("No moves left", "Undo", "Shuffle"));
  EXPECT_THAT(record.wordsIn(panel.first), ElementsAre("Undo"));
  EXPECT_THAT(record.wordsIn(panel.second), ElementsAre("Shuffle"));
}

TEST(PlayingWords, OfThePauseAreItsNameAndTheTwoWaysOn) {
  Table table;
  table.harness.key(SDLK_SPACE);
  const screens::PanelLayout panel = screens::pausePanel(kUsualW, kUsualH);
  const FrameRecord english = recordOf(table);
  EXPECT_THAT(english.wordsIn(panel.panel), ElementsAre("Paused", "Resume", "Exit"));
  EXPECT_THAT(english.wordsIn(panel.first), ElementsAre("Resume"));
  EXPECT_THAT(english.wordsIn(panel.second), ElementsAre("Exit"));
  i18n::setLanguage("de");
  EXPECT_THAT(recordOf(table).wordsIn(panel.panel), ElementsAre("Pause", "Weiter", "Beenden"));
}

// The faces that a picture of this board shows, one per tile.
std::vector<std::string> facesOf(const mj::GameState& game) {
  std::vector<std::string> faces;
  for (const std::string& face : game.faces)
    if (!face.empty()) faces.push_back(face);
  return faces;
}

TEST(PlayingPictures, ShowEachTileThatLies) {
  Table table;
  table.take(table.order[0]);
  table.harness.frame(2);
  EXPECT_THAT(recordOf(table).picturesOf("tile|"), UnorderedElementsAreArray(facesOf(table.game())));
}

// --- solved ---

std::unique_ptr<ui::Screen> solved(int level) {
  return screens::makeSolved({.kind = ui::ScreenKind::Solved,
                              .level = level,
                              .deal = 7,
                              .timeMs = 754999,
                              .tiles = 60,
                              .hints = 2,
                              .shuffles = 1,
                              .recorded = true});
}

struct SolvedShown : Shown {
  explicit SolvedShown(int level) : Shown(solved(level), kUsualW, kUsualH, support::Drawing::Textures) {
    harness.frame(0.3);
  }
  screens::SolvedLayout layout = screens::solvedLayout(kUsualW, kUsualH);
};

TEST(SolvedWords, TellHowTheGameWent) {
  SolvedShown shown(24);
  const screens::InfoLayout info = screens::infoLayout(shown.layout.info, shown.layout.starScale);
  const FrameRecord record = shown.record();
  EXPECT_THAT(record.wordsIn(info.headline), ElementsAre("Solved!"));
  EXPECT_THAT(record.wordsIn(info.lines[0]), ElementsAre("Level 24 cleared"));
  EXPECT_THAT(record.wordsIn(info.lines[1]), ElementsAre("60 tiles cleared"));
  EXPECT_THAT(record.wordsIn(info.lines[2]), ElementsAre("Time: 12:34"));
  EXPECT_THAT(record.wordsIn(info.lines[3]), ElementsAre("Hints: 2 · Shuffles: 1"));
  expectFooter(record, shown.layout.footerBottom);
}

std::vector<std::string> waysOn(SolvedShown& shown) {
  std::vector<std::string> labels;
  for (const Rect& place : screens::solvedButtons(shown.layout.buttons, shown.layout.wide))
    for (const std::string& words : shown.record().wordsIn(place)) labels.push_back(words);
  return labels;
}

TEST(SolvedWords, NameTheNextLevelTheGalleryAndTheMenuOnTheButtons) {
  SolvedShown shown(24);
  EXPECT_THAT(waysOn(shown), ElementsAre("Next: level 25", "Achievements", "Main menu"));
  i18n::setLanguage("de");
  EXPECT_THAT(waysOn(shown), ElementsAre("Weiter zu Level 25", "Zu den Erfolgen", "Zum Menü"));
}

TEST(SolvedWords, OfferTheLastLevelAfterItself) {
  SolvedShown shown(100);
  EXPECT_EQ(waysOn(shown).front(), "Next: level 100");
}

TEST(SolvedPicture, IsTheWholeBoardAsItWasDealt) {
  SolvedShown shown(24);
  const FrameRecord record = shown.record();
  const mj::GameState dealt = mj::createGame(mj::levelToConfig(24).slots, 7);
  EXPECT_THAT(record.picturesOf("tile|"), UnorderedElementsAreArray(facesOf(dealt)));
  for (const support::DrawnPicture& picture : record.pictures) {
    if (!picture.key.starts_with("tile|")) continue;
    EXPECT_TRUE(
        shown.layout.board.contains(picture.rect.x + picture.rect.w / 2, picture.rect.y + picture.rect.h / 2))
        << picture.key;
  }
}

// --- level select ---

const std::vector<std::string> kPageNames = {"1–10",  "11–20", "21–30", "31–40", "41–50",
                                             "51–60", "61–70", "71–80", "81–90", "91–100"};

std::vector<std::string> wordsOfChips(const FrameRecord& record) {
  return record.wordsIn({0, screens::kListTop, kUsualW, screens::kPagedListTop - screens::kListTop});
}

TEST(LevelSelectWords, AreTheHeadlineAndThePages) {
  const support::DataHome data;
  Shown shown(screens::makeLevelSelect());
  const FrameRecord record = shown.record();
  expectHeadline(record, "Choose level");
  EXPECT_EQ(wordsOfChips(record), kPageNames);
}

class LevelPage : public testing::TestWithParam<int> {
 protected:
  LevelPage() {
    store::saveProgress({.currentLevel = 100});
    screens::chosenPages().levels = GetParam();
  }
  int levelAt(int i) const { return 10 * GetParam() + i + 1; }

  const support::DataHome data;
  const screens::CardGrid grid = screens::levelGrid(kUsualW, kTallH);
};

INSTANTIATE_TEST_SUITE_P(Page, LevelPage, testing::Range(0, 10));

TEST_P(LevelPage, SaysOnEachCardItsLevelItsTilesAndItsLayers) {
  Shown shown(screens::makeLevelSelect(), kUsualW, kTallH);
  const FrameRecord record = shown.record();
  for (int i = 0; i < 10; ++i) {
    const mj::LevelConfig& config = mj::levelToConfig(levelAt(i));
    EXPECT_THAT(record.wordsIn(grid.card(i, 0)), ElementsAre("Level " + std::to_string(levelAt(i)),
                                                             std::to_string(config.slots.size()) + " tiles",
                                                             std::to_string(config.layers) + " layers"));
  }
}

// This level's miniature on a card's plate.
ui::CairoSurface miniatureOf(int level, int side) {
  const Rect all = {0, 0, 1.0 * side, 1.0 * side};
  const ui::CairoSurface miniature = support::makePicture(
      side, side, [&](cairo_t* cr) { screens::paintMini(cr, all, mj::levelToConfig(level).slots); });
  return support::makePicture(side, side, [&](cairo_t* cr) {
    ui::fillRect(cr, all, ui::palette::kPanel, 1);
    cairo_set_source_surface(cr, miniature.get(), 0, 0);
    cairo_paint(cr);
  });
}

ui::CairoSurface cut(cairo_surface_t* picture, double x, double y, int side) {
  return support::makePicture(side, side, [&](cairo_t* cr) {
    cairo_set_source_surface(cr, picture, -x, -y);
    cairo_paint(cr);
  });
}

TEST_P(LevelPage, ShowsOnEachCardItsOwnLayout) {
  Shown shown(screens::makeLevelSelect(), kUsualW, kTallH);
  const ui::CairoSurface page = shown.harness.picture();
  for (int i = 0; i < 10; ++i) {
    const Rect card = grid.card(i, 0);
    const Rect place = screens::levelCardLayout({0, 0, card.w, card.h}).miniature;
    const ui::CairoSurface seen = cut(page.get(), std::round(card.x) + std::round(place.x),
                                      std::round(card.y) + std::round(place.y), static_cast<int>(place.w));
    EXPECT_TRUE(support::samePicture(seen.get(), miniatureOf(levelAt(i), static_cast<int>(place.w)).get()))
        << levelAt(i);
  }
}

TEST(LevelPictures, OfAResultBelowZeroShowNoStars) {
  const support::DataHome data;
  const auto pageWith = [&](const std::string& stars) {
    data.write("progress.json", R"({"currentLevel":5,"bests":{"2":{"stars":)" + stars + "}}}");
    return Shown(screens::makeLevelSelect()).harness.picture();
  };
  const ui::CairoSurface none = pageWith("0");
  EXPECT_TRUE(support::samePicture(pageWith("-1").get(), none.get()));
  EXPECT_FALSE(support::samePicture(pageWith("1").get(), none.get()));
}

// --- gallery ---

store::SolveEntry entryOf(int level, int seconds, std::int64_t day) {
  constexpr std::int64_t kDay = 86'400'000;
  return {.id = "id" + std::to_string(level),
          .level = level,
          .seed = 1,
          .elapsedMs = 1000 * seconds,
          .solvedAt = day * kDay + kDay / 2,
          .shot = "",
          .stars = 2};
}

struct GalleryShown : Shown {
  GalleryShown() : Shown(screens::makeGallery()) {}
  screens::CardGrid grid = screens::galleryGrid(kUsualW, kUsualH, screens::kPagedListTop);
};

TEST(GalleryWords, SayOnEachCardItsLevelItsTimeAndItsDay) {
  const test::Environment zone("TZ", "UTC");
  tzset();
  const support::DataHome data;
  store::ensureDataDirs();
  store::recordSolve(entryOf(8, 3661, 20'453));  // days since 1 January 1970
  store::recordSolve(entryOf(3, 59, 20'512));
  GalleryShown shown;
  const FrameRecord record = shown.record();
  const auto wordsOf = [&](int i) {
    const Rect card = shown.grid.card(i, 0);
    // The words above the picture.
    return record.wordsIn({card.x, card.y, card.w, screens::solveCardLayout(card.w, card.h).picture.y});
  };
  EXPECT_THAT(wordsOf(0), ElementsAre("00:59", "Level 3", "28.02.2026"));
  EXPECT_THAT(wordsOf(1), ElementsAre("61:01", "Level 8", "31.12.2025"));
}

TEST(GalleryWords, AreTheHeadlineThePagesAndTheHint) {
  const support::DataHome data;
  store::ensureDataDirs();
  store::recordSolve(entryOf(3, 59, 20'512));
  GalleryShown shown;
  const FrameRecord record = shown.record();
  expectHeadline(record, "Achievements");
  EXPECT_EQ(wordsOfChips(record), kPageNames);
  EXPECT_THAT(record.wordsIn(lowestStrip(kUsualW, kUsualH, shown.grid.view.y + shown.grid.view.h)),
              ElementsAre("Right-click an image to delete the entry."));
}

TEST(GalleryWords, SayThatAPageIsEmpty) {
  const support::DataHome data;
  GalleryShown shown;
  EXPECT_THAT(shown.record().wordsIn(shown.grid.view), Contains("No solved boards yet."));
  EXPECT_FALSE(shown.record().says("Right-click an image to delete the entry."));
}

// Expects a dialog in the middle of the window: its title, text, left and right button. The dialog's panel is
// painted once and cached, so `record` must be the first frame that shows it.
void expectQuestion(const FrameRecord& record, const std::array<std::string, 4>& words) {
  const auto title = find(record, words[0]);
  const auto text = find(record, words[1]);
  ASSERT_TRUE(title && text);
  EXPECT_LT(title->box.y + title->box.h, text->box.y);
  EXPECT_GT(title->size, text->size);
  constexpr double kButtonsY = kUsualH / 2.0 + 53;
  EXPECT_THAT(record.wordsIn({kUsualW / 2.0 - 190, kButtonsY, 185, 42}), Contains(words[2]));
  EXPECT_THAT(record.wordsIn({kUsualW / 2.0 + 5, kButtonsY, 185, 42}), Contains(words[3]));
}

TEST(GalleryWords, AskBeforeARecordIsDeleted) {
  const support::DataHome data;
  store::ensureDataDirs();
  store::recordSolve(entryOf(3, 59, 20'512));
  GalleryShown shown;
  const Rect card = shown.grid.card(0, 0);
  shown.harness.rightClick(card.x + 20, card.y + 20);
  expectQuestion(shown.record(), {"Delete entry", "Really delete this entry?", "Cancel", "OK"});
  i18n::setLanguage("de");
  expectQuestion(shown.record(), {"Eintrag löschen", "Diesen Eintrag wirklich löschen?", "Abbrechen", "OK"});
}

// --- settings ---

std::vector<std::string> withNativeNames(std::vector<std::string> words,
                                         const std::vector<std::string>& after) {
  for (const i18n::Language& language : i18n::languages()) words.push_back(language.nativeName);
  words.insert(words.end(), after.begin(), after.end());
  return words;
}

struct SettingsShown : Shown {
  SettingsShown() : Shown(screens::makeSettings(), kUsualW, 1000) {}

  // The texts of the rows in drawing order, with the help's lines joined.
  std::vector<std::string> rows() {
    const Rect view = screens::listView(kUsualW, 1000);
    std::vector<std::string> words;
    for (const support::DrawnText& text : record().texts) {
      if (!view.contains(text.box.x + text.box.w / 2, text.box.y + text.box.h / 2)) continue;
      words.push_back(text.words);
      std::replace(words.back().begin(), words.back().end(), '\n', ' ');
    }
    return words;
  }
};

TEST(SettingsWords, AreItsRowsFromTopToBottom) {
  const support::DataHome data;
  ui::Game::settings().musicVolume = 0.25;
  ui::Game::settings().sfxVolume = 0.5;
  SettingsShown shown;
  expectHeadline(shown.record(), "Settings");
  expectFooter(shown.record(), 1000 - ui::kFooterGap);
  std::vector<std::string> rows = shown.rows();
  const auto first = std::find(rows.begin(), rows.end(), "Language");
  rows.erase(rows.begin(), first);  // leaves out the fan's tiles
  const auto expected =
      withNativeNames({"Language", "System"},
                      {"Music volume", "25", "Effects volume", "50", "Sound", "Fullscreen",
                       "Keyboard: H hint · M shuffle · U undo · Space pause · +/− zoom · F11 fullscreen",
                       "Reset progress", "Quit"});
  EXPECT_THAT(rows, ElementsAreArray(expected));
}

TEST(SettingsWords, StandWhereTheirRowIs) {
  const support::DataHome data;
  SettingsShown shown;
  const FrameRecord record = shown.record();
  const ui::CairoSurface page = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(page.get()));
  const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), kUsualW);
  const double top = screens::settingsTop(layout, screens::listView(kUsualW, 1000));
  const auto at = [&](Rect rect) {
    rect.y += top;
    return record.wordsIn(rect);
  };
  EXPECT_THAT(at(layout.language), ElementsAre("Language"));
  for (const screens::LanguageChip& chip : layout.chips) EXPECT_THAT(at(chip.rect), ElementsAre(chip.name));
  EXPECT_THAT(at(layout.music.label), ElementsAre("Music volume"));
  EXPECT_THAT(at(layout.effects.label), ElementsAre("Effects volume"));
  EXPECT_THAT(at(layout.sound), ElementsAre("Sound"));
  EXPECT_THAT(at(layout.fullscreen), ElementsAre("Fullscreen"));
  EXPECT_THAT(at(layout.reset), ElementsAre("Reset progress"));
  EXPECT_THAT(at(layout.quit), ElementsAre("Quit"));
}

TEST(SettingsWords, AskBeforeAllIsLost) {
  const support::DataHome data;
  Shown shown(screens::makeSettings());
  const Rect reset = find(shown.record(), "Reset progress")->box;
  shown.harness.click(reset.x + reset.w / 2, reset.y + reset.h / 2);
  expectQuestion(shown.record(),
                 {"Reset progress?",
                  "All unlocked levels, best scores AND saved achievement images will be permanently lost. "
                  "This cannot be undone.",
                  "Cancel", "Yes, reset"});
}

// --- about and licences ---

TEST(AboutWords, AreItsLinesFromTopToBottom) {
  const support::DataHome data;
  Shown shown(screens::makeAbout());
  const FrameRecord record = shown.record();
  expectHeadline(record, "About");
  expectFooter(record, kUsualH - ui::kFooterGap);
  const screens::AboutLayout layout = screens::aboutLayout(kUsualW, kUsualH);
  const std::array<const char*, screens::kAboutLines> expected = {
      "Quenlock's Mahjong", "v1.1.0 Build 1054",       "Developed by",           "The Quenlock team",
      "Quenlock Software",  "GPL 3 or later · © 2026", "hello@quenlock.example", "quenlock.example",
      "Music & sound",      "The Quenlock team",       "quenlock.example/music"};
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_THAT(record.wordsIn(layout.lines[i]), ElementsAre(expected[i]));
  EXPECT_THAT(record.wordsIn(layout.button), ElementsAre("Show licenses"));
}

TEST(LicensesWords, AreTwelveComponentsWithTheirTermsAndPages) {
  const support::DataHome data;
  Shown shown(screens::makeLicenses(), kUsualW, 1000);
  const FrameRecord record = shown.record();
  expectHeadline(record, "Open Source Licenses");
  expectFooter(record, 1000 - ui::kFooterGap);
  EXPECT_THAT(record.wordsIn(screens::columnLayout(kUsualW, 1000).view),
              ElementsAre("SDL2", "zlib licence · libsdl.org",                                         //
                          "SDL2_mixer", "zlib licence · github.com/libsdl-org/SDL_mixer",              //
                          "cairo", "LGPL 2.1 / MPL 1.1 · cairographics.org",                           //
                          "Pango", "LGPL 2.1 · pango.gnome.org",                                       //
                          "GLib / GObject", "LGPL 2.1 · gitlab.gnome.org/GNOME/glib",                  //
                          "fontconfig", "MIT-style · fontconfig.org",                                  //
                          "FreeType", "FTL / GPL 2 · freetype.org",                                    //
                          "libpng / zlib", "libpng licence / zlib · libpng.org / zlib.net",            //
                          "libogg / libvorbis", "BSD-3 · xiph.org",                                    //
                          "Noto Serif CJK — 17-glyph subset",                                          //
                          "SIL Open Font License 1.1 · github.com/notofonts/noto-cjk",                 //
                          "Calm music by The Quenlock team", "CC BY 4.0 · quenlock.example/music",     //
                          "Sound effects by The Quenlock team", "CC0 1.0 · quenlock.example/music"));  //
}

// --- demo ---

TEST(AttractWords, InviteToPlayAndCountTheTiles) {
  Shown shown(std::make_unique<screens::Attract>(7, 7), kUsualW, kUsualH, support::Drawing::Textures);
  const screens::AttractLayout layout = screens::attractLayout(kUsualW, kUsualH);
  const FrameRecord record = shown.record();
  EXPECT_THAT(record.wordsIn(layout.title), ElementsAre("DEMO"));
  EXPECT_THAT(record.wordsIn(layout.tilesLeft), ElementsAre("Tiles left: 36"));
  EXPECT_THAT(record.wordsIn(layout.invitation), ElementsAre("Click to play"));
  shown.harness.frame(0.9);
  shown.harness.frame(0.9);
  shown.harness.frame(0.95);
  EXPECT_THAT(shown.record(0.1).wordsIn(layout.tilesLeft), ElementsAre("Tiles left: 34"));
}

}  // namespace
