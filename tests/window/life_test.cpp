// One player's life with the real program: from an empty home through won and unfinished games to a reset.
// After each step the files have exactly the expected contents.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/about.h"
#include "screens/attract.h"
#include "screens/card.h"
#include "screens/level_grid.h"
#include "screens/solved_layout.h"
#include "storage/storage.h"
#include "support/glyph_font.h"
#include "support/picture.h"
#include "ui/board.h"
#include "ui/context.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "window/controls.h"
#include "window/player.h"

namespace {

using screens::MenuEntry;
using screens::SettingsLayout;
using support::ScreenHarness;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;
using ui::ScreenKind;
using window::FileWatch;
using window::Key;
using window::kScreen;
using window::Members;
using window::membersOf;
using window::middleOf;
using window::Player;
using window::Point;
using window::quoted;
using window::Size;
using window::Table;
using window::takeNumber;
using window::waitFor;

constexpr const char* kSettings = "settings.json";
constexpr const char* kProgress = "progress.json";
constexpr const char* kSave = "save.json";
constexpr const char* kSolves = "solves.json";

constexpr ui::GameState kLevelSelect = {.kind = ScreenKind::LevelSelect};
constexpr ui::GameState kGallery = {.kind = ScreenKind::Gallery};
constexpr ui::GameState kSettingsScreen = {.kind = ScreenKind::Settings};
constexpr ui::GameState kAbout = {.kind = ScreenKind::About};
constexpr ui::GameState kLicenses = {.kind = ScreenKind::Licenses};
constexpr ui::GameState kDemo = {.kind = ScreenKind::Attract};

std::int64_t nowMs() {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(sinceEpoch).count();
}

std::string unquoted(const std::string& text) { return text.substr(1, text.size() - 2); }

// The path in solves.json of this member of the record at this index.
std::string inRecord(std::size_t place, const std::string& name) {
  return std::string("[").append(std::to_string(place)).append("].").append(name);
}

mj::GameState dealt(int level) {
  return mj::createGame(mj::levelToConfig(level).slots, static_cast<std::uint32_t>(level));
}

// How often a player shuffles on this level who always takes the first pair found.
int shufflesOnLevel(int level) {
  mj::GameState game = dealt(level);
  while (!mj::isSolved(game)) {
    const auto [a, b] = mj::findHint(game);
    if (a < 0) {
      mj::shuffleBoard(game);
    } else {
      mj::applyMatch(game, a, b);
    }
  }
  return game.shuffles;
}

// The expected picture of a solved board.
ui::CairoSurface portrait(int level) {
  constexpr int kSide = 640;
  const mj::TableTheme& theme = *mj::tableThemeForLevel(level);
  return support::makePictureApart(kSide, kSide, [&](cairo_t* cr) {
    ui::Ctx ctx;
    ctx.cr = cr;
    const double margin = 0.06 * kSide;
    ui::drawCloth(cr, kSide, kSide, theme);
    ui::drawBoard(ctx, dealt(level), {margin, margin, kSide - 2 * margin, kSide - 2 * margin},
                  {.software = true}, nullptr);
    ui::strokeRoundedRect(cr, {4, 4, kSide - 8, kSide - 8}, 12, 2, theme.ornament, 0.45);
  });
}

// The chapters run in the order of chapters().
class Life : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(support::registerGlyphFont()); }

  // First sitting: the game plays by itself.
  void comesToTheMenu();
  void winsTheFirstLevel();
  void winsTheNextLevel();
  void goesBackToTheMenuAndQuits();
  // Second sitting: everything by hand.
  void playsAndLeavesInTheMiddle();
  void goesOnWhereItWasLeft();
  void looksAtTheLevels();
  void deletesAPicture();
  void readsTheGameInArabic();
  void turnsTheMusicUp();
  void fillsTheScreenForAMoment();
  void beginsAfresh();
  void opensLinksAndReadsLicences();
  void fallsAsleepOverTheMenu();
  void quitsForGood();
  using Chapter = void (Life::*)();
  static std::vector<Chapter> chapters();

  void expectWin(int level, std::int64_t startedAt);
  void expectSolvedScreen(int level);
  void expectSaved(std::int64_t leastMs, std::int64_t mostMs);
  void expectSolves();
  screens::SolvedLayout solvedLayout() const;
  void clickSolvedButton(std::size_t place) const;
  void returnsToTheMenu();
  void click(const ui::Rect& rect) const { player.game().click(middleOf(rect)); }
  Members& settings() { return player.files.documents[kSettings]; }

  Player player;
  std::vector<Members> solves;  // records of won games, latest first
  std::int64_t elapsedMs = 0;   // of the unfinished game
};

// --- the first sitting ---

void Life::comesToTheMenu() {
  player.sitDown({{"VESKARA_AUTOPLAY", "0.02"}});
  ASSERT_TRUE(player.session().hasSize(window::kFirstWindow));
  EXPECT_TRUE(player.session().showsMenu()) << "it comes by itself";
  settings() = window::firstSettings(player.game().position());
  EXPECT_TRUE(player.hasFiles());
}

void Life::winsTheFirstLevel() {
  const std::int64_t startedAt = nowMs();
  EXPECT_TRUE(player.choose(MenuEntry::Continue));
  expectWin(1, startedAt);
}

void Life::winsTheNextLevel() {
  const std::int64_t startedAt = nowMs();
  clickSolvedButton(0);
  expectWin(2, startedAt);
}

// Only the game knows the time and the record's id. All else follows from the rules.
void Life::expectWin(int level, std::int64_t startedAt) {
  ASSERT_TRUE(waitFor([&] {
    return window::readPlayerFiles(player.dataPath()).others.size() == solves.size() + 1 &&
           membersOf(player.dataPath(kSolves)).contains(inRecord(solves.size(), "id"));
  }));
  Members seen = membersOf(player.dataPath(kSolves));
  const std::string id = unquoted(seen["[0].id"]);
  EXPECT_THAT(id, MatchesRegex("[0-9]{13}_[0-9]{1,5}"));
  const std::int64_t playedMs = takeNumber(seen, "[0].elapsedMs");
  EXPECT_GT(playedMs, 0);
  EXPECT_LT(playedMs, nowMs() - startedAt);
  const std::int64_t solvedAt = takeNumber(seen, "[0].solvedAt");
  EXPECT_EQ(solvedAt % 1000, 0);
  EXPECT_GT(solvedAt, startedAt - 1000);
  EXPECT_LE(solvedAt, nowMs());

  const int aids = shufflesOnLevel(level);
  const std::string stars = std::to_string(store::computeStars(aids));
  solves.insert(solves.begin(), {{"aids", std::to_string(aids)},
                                 {"elapsedMs", std::to_string(playedMs)},
                                 {"id", quoted(id)},
                                 {"level", std::to_string(level)},
                                 {"seed", std::to_string(level)},
                                 {"shot", quoted(id + ".png")},
                                 {"solvedAt", std::to_string(solvedAt)},
                                 {"stars", stars},
                                 {"tiles", std::to_string(mj::levelToConfig(level).tiles)}});
  expectSolves();
  Members& progress = player.files.documents[kProgress];
  for (const char* name : {"aids", "elapsedMs", "stars"}) {
    progress[std::string(".bests.").append(std::to_string(level)).append(".").append(name)] = solves[0][name];
  }
  progress[".currentLevel"] = std::to_string(level + 1);
  progress[".totalSolves"] = std::to_string(level);
  // The game was saved during play and cleared by the win.
  player.files.documents[kSave] = window::kEmptyObject;
  EXPECT_TRUE(player.hasFiles());

  const ui::CairoSurface picture(cairo_image_surface_create_from_png(
      player.dataPath(std::string("solves/").append(id).append(".png")).c_str()));
  EXPECT_TRUE(support::samePicture(picture.get(), portrait(level).get()));
  expectSolvedScreen(level);
}

void Life::expectSolves() {
  Members& members = player.files.documents[kSolves];
  members = solves.empty() ? window::kEmptyArray : Members{};
  player.files.others.clear();
  for (std::size_t i = 0; i < solves.size(); ++i) {
    for (const auto& [name, value] : solves[i]) members[inRecord(i, name)] = value;
    player.files.others.insert(std::string("solves/").append(unquoted(solves[i]["shot"])));
  }
}

screens::SolvedLayout Life::solvedLayout() const {
  const Size size = player.game().size();
  return screens::solvedLayout(size.w, size.h);
}

void Life::clickSolvedButton(std::size_t place) const {
  const screens::SolvedLayout layout = solvedLayout();
  click(screens::solvedButtons(layout.buttons, layout.wide)[place]);
}

void Life::expectSolvedScreen(int level) {
  const screens::SolvedLayout layout = solvedLayout();
  const ui::CairoSurface wanted = player.painted({.kind = ScreenKind::Solved,
                                                  .level = level,
                                                  .deal = static_cast<std::uint32_t>(level),
                                                  .timeMs = std::stoll(solves[0]["elapsedMs"]),
                                                  .tiles = mj::levelToConfig(level).tiles,
                                                  .shuffles = shufflesOnLevel(level)});
  // Below the stars, which keep moving.
  const screens::InfoLayout info = screens::infoLayout(layout.info, layout.starScale);
  for (const ui::Rect& rect : {info.headline, info.lines[0], info.lines[1], info.lines[2], info.lines[3]}) {
    EXPECT_TRUE(player.shows(wanted.get(), rect));
  }
  EXPECT_TRUE(player.shows(wanted.get(), layout.buttons));
}

void Life::goesBackToTheMenuAndQuits() {
  clickSolvedButton(2);
  EXPECT_TRUE(player.session().showsMenu());
  quit(player.session().game);
  EXPECT_EQ(player.session().game.process().errors(), "");
  EXPECT_TRUE(player.hasFiles());
}

// --- the second sitting: an unfinished game ---

void Life::playsAndLeavesInTheMiddle() {
  player.sitDown();
  const std::int64_t startedAt = nowMs();
  EXPECT_TRUE(player.session().showsMenu());
  EXPECT_TRUE(player.choose(MenuEntry::NewGame));
  mj::GameState& game = player.session().table.game;
  EXPECT_TRUE(player.session().showsTable());
  player.session().takePair();
  player.session().takePair();
  player.game().type(Key::H);
  ++game.hints;
  player.game().type(Key::M);
  mj::shuffleBoard(game);
  EXPECT_TRUE(player.session().showsTable());
  player.game().type(Key::U);
  mj::undo(game);
  EXPECT_TRUE(player.session().showsTable());
  returnsToTheMenu();
  expectSaved(1, nowMs() - startedAt);
}

void Life::expectSaved(std::int64_t leastMs, std::int64_t mostMs) {
  const Members written = membersOf(player.dataPath(kSave));
  Members seen = written;
  elapsedMs = takeNumber(seen, ".current_mahjong.elapsedMs");
  EXPECT_GE(elapsedMs, leastMs);
  EXPECT_LE(elapsedMs, mostMs);
  EXPECT_LE(takeNumber(seen, ".current_mahjong.savedAt"), nowMs());
  EXPECT_EQ(seen, window::savedMembers(player.session().table.game, 1, 1));
  player.files.documents[kSave] = written;
  EXPECT_TRUE(player.hasFiles());
}

void Life::goesOnWhereItWasLeft() {
  const std::int64_t startedAt = nowMs();
  const std::int64_t before = elapsedMs;
  EXPECT_TRUE(player.choose(MenuEntry::Continue));
  Table& table = player.session().table;
  EXPECT_TRUE(table.isShownIn(player.game().picture().get())) << "the tiles do not fly in again";
  player.session().takePair();
  player.game().type(Key::H);
  ++table.game.hints;
  returnsToTheMenu();
  expectSaved(before + 1, before + nowMs() - startedAt);
}

void Life::returnsToTheMenu() {
  player.game().type(Key::Escape);
  EXPECT_TRUE(player.session().showsMenu());
}

// --- levels and gallery ---

void Life::looksAtTheLevels() {
  EXPECT_TRUE(player.choose(MenuEntry::LevelSelect));
  EXPECT_TRUE(player.shows(kLevelSelect));

  const Size size = player.game().size();
  const screens::CardGrid grid = screens::levelGrid(size.w, size.h);
  const ui::CairoSurface seen = player.game().picture();
  const ui::CairoSurface firstDay = window::paintedScreen("", kLevelSelect, size, player.game().mouse());
  for (const int level : {1, 2, 3}) {
    EXPECT_FALSE(window::sameIn(grid.card(level - 1, 0), seen.get(), firstDay.get())) << level;
  }
  for (const int level : {4, 5}) {
    EXPECT_TRUE(window::sameIn(grid.card(level - 1, 0), seen.get(), firstDay.get())) << level;
  }

  click(grid.card(3, 0));
  returnsToTheMenu();
  EXPECT_TRUE(player.hasFiles()) << "a locked level was played";
}

void Life::deletesAPicture() {
  EXPECT_TRUE(player.choose(MenuEntry::Gallery));
  const ui::Rect card = firstCard(player.game());
  const Point first = middleOf(card);
  EXPECT_TRUE(player.shows(player.painted(kGallery).get(), card));
  const auto ask = [&] {
    player.game().rightClick(first);
    const ui::CairoSurface asked =
        player.painted(kGallery, [&](ScreenHarness& harness) { harness.rightClick(first.x, first.y); });
    EXPECT_TRUE(player.shows(asked.get(), player.question()));
  };

  ask();
  answer(player.game(), false);
  EXPECT_TRUE(player.shows(player.painted(kGallery).get(), card));
  EXPECT_TRUE(player.hasFiles());

  ask();
  answer(player.game(), true);
  solves.pop_back();
  expectSolves();
  EXPECT_TRUE(player.hasFiles());
  EXPECT_TRUE(player.shows(kGallery));
  returnsToTheMenu();
}

// --- the settings ---

auto languageChip(const std::string& code) {
  return [code](const SettingsLayout& layout) {
    for (const screens::LanguageChip& chip : layout.chips)
      if (chip.code == code) return chip.rect;
    return ui::Rect{};
  };
}

void Life::readsTheGameInArabic() {
  EXPECT_TRUE(player.choose(MenuEntry::Settings));
  EXPECT_TRUE(player.shows(kSettingsScreen));
  for (const auto& [from, to] : {std::pair{"en", "ar"}, std::pair{"ar", ""}}) {
    click(settingsControl(player.game(), languageChip(to), from));
    settings()[".language"] = quoted(to);
    EXPECT_TRUE(player.hasFiles());
    EXPECT_TRUE(player.shows(kSettingsScreen)) << to;
  }
}

void Life::turnsTheMusicUp() {
  FileWatch watch(player.dataPath());
  const ui::Rect slider =
      settingsControl(player.game(), [](const SettingsLayout& layout) { return layout.music.slider; });
  const Point middle = middleOf(slider);
  const Point end = {static_cast<int>(slider.x + slider.w) + 5, middle.y};
  player.game().moveMouse(middle);
  player.game().pressButton();
  for (const Point& place : {middle, end}) {
    player.game().moveMouse(place);
    EXPECT_TRUE(player.shows(kSettingsScreen, [&](ScreenHarness& harness) {
      harness.press(middle.x, middle.y);
      harness.moveTo(place.x, place.y);
    }));
  }
  EXPECT_THAT(watch.touched(), IsEmpty()) << "it is still held";

  player.game().releaseButton();
  settings()[".musicVolume"] = "1";
  EXPECT_TRUE(player.hasFiles());
  EXPECT_TRUE(player.shows(kSettingsScreen));
  EXPECT_THAT(watch.replaced(), ElementsAre(kSettings));
}

void Life::fillsTheScreenForAMoment() {
  for (const auto& [value, size] : {std::pair{"true", kScreen}, std::pair{"false", window::kFirstWindow}}) {
    click(settingsControl(player.game(), &SettingsLayout::fullscreen));
    settings()[".fullscreen"] = value;
    EXPECT_TRUE(player.session().hasSize(size));
    EXPECT_EQ(player.game().isFullscreen(), size == kScreen);
    EXPECT_TRUE(player.hasFiles());
    // The window has changed its place under the pointer.
    player.game().moveMouse({0, 0});
    EXPECT_TRUE(player.shows(kSettingsScreen)) << value;
  }
}

void Life::beginsAfresh() {
  const auto ask = [&] {
    const Point reset = middleOf(settingsControl(player.game(), &SettingsLayout::reset));
    player.game().click(reset);
    const ui::CairoSurface asked =
        player.painted(kSettingsScreen, [&](ScreenHarness& harness) { harness.click(reset.x, reset.y); });
    EXPECT_TRUE(player.shows(asked.get(), player.question()));
  };
  ask();
  answer(player.game(), false);
  EXPECT_TRUE(player.shows(kSettingsScreen));
  EXPECT_TRUE(player.hasFiles());

  ask();
  answer(player.game(), true);
  solves.clear();
  expectSolves();
  player.files.documents[kProgress] = {{".bests", "{}"}, {".currentLevel", "1"}, {".totalSolves", "0"}};
  player.files.documents[kSave] = window::kEmptyObject;
  EXPECT_TRUE(player.hasFiles());
  returnsToTheMenu();
  EXPECT_TRUE(player.hasFiles());
}

// --- the end ---

void Life::opensLinksAndReadsLicences() {
  EXPECT_TRUE(player.choose(MenuEntry::About));
  EXPECT_TRUE(player.shows(kAbout));
  const Size size = player.game().size();
  const screens::AboutLayout layout = screens::aboutLayout(size.w, size.h);
  std::string wanted;
  for (const auto& [line, address] :
       {std::pair{screens::AboutLine::Mail, "mailto:hello@quenlock.example"},
        std::pair{screens::AboutLine::Web, "https://quenlock.example"},
        std::pair{screens::AboutLine::MusicWeb, "https://quenlock.example/music"}}) {
    click(layout.at(line));
    wanted.append(address).append("\n");
    EXPECT_TRUE(waitFor([&] { return player.opened() == wanted; })) << player.opened();
  }

  click(layout.button);
  EXPECT_TRUE(player.shows(kLicenses));
  const Point middle = {size.w / 2, size.h / 2};
  player.game().moveMouse(middle);
  player.game().turnWheel(-1);
  player.game().turnWheel(-1);
  EXPECT_TRUE(
      player.shows(kLicenses, [&](ScreenHarness& harness) { harness.wheel(middle.x, middle.y, -2); }));

  player.game().type(Key::Escape);
  EXPECT_TRUE(player.shows(kAbout));
}

// Really waits a minute.
void Life::fallsAsleepOverTheMenu() {
  using Clock = std::chrono::steady_clock;
  const Size size = player.game().size();
  const screens::AttractLayout layout = screens::attractLayout(size.w, size.h);
  const ui::CairoSurface demo = player.painted(kDemo);
  const auto isDemo = [&] {
    const ui::CairoSurface seen = player.game().picture();
    return seen && window::sameIn(layout.invitation, seen.get(), demo.get());
  };
  FileWatch watch(player.dataPath());
  const Clock::time_point lastInput = Clock::now();
  returnsToTheMenu();
  EXPECT_FALSE(isDemo());
  ASSERT_TRUE(waitFor(isDemo, 2 * window::kPatience));
  EXPECT_GE(Clock::now() - lastInput, std::chrono::seconds(60));

  const ui::CairoSurface atFirst = player.game().picture();
  EXPECT_TRUE(waitFor([&] {
    const ui::CairoSurface later = player.game().picture();
    return later && !window::sameIn(layout.tilesLeft, later.get(), atFirst.get());
  })) << "it plays";
  player.game().type(Key::Space);
  EXPECT_TRUE(player.session().showsMenu());
  EXPECT_THAT(watch.touched(), IsEmpty());
  EXPECT_TRUE(player.hasFiles());
}

void Life::quitsForGood() {
  EXPECT_TRUE(player.choose(MenuEntry::Settings));
  EXPECT_TRUE(player.shows(kSettingsScreen));
  click(settingsControl(player.game(), &SettingsLayout::quit));
  EXPECT_TRUE(player.session().endsWith(0));
  EXPECT_EQ(player.session().game.process().errors(), "");
  EXPECT_TRUE(player.hasFiles());
}

std::vector<Life::Chapter> Life::chapters() {
  return {&Life::comesToTheMenu,
          &Life::winsTheFirstLevel,
          &Life::winsTheNextLevel,
          &Life::goesBackToTheMenuAndQuits,
          &Life::playsAndLeavesInTheMiddle,
          &Life::goesOnWhereItWasLeft,
          &Life::looksAtTheLevels,
          &Life::deletesAPicture,
          &Life::readsTheGameInArabic,
          &Life::turnsTheMusicUp,
          &Life::fillsTheScreenForAMoment,
          &Life::beginsAfresh,
          &Life::opensLinksAndReadsLicences,
          &Life::fallsAsleepOverTheMenu,
          &Life::quitsForGood};
}

TEST_F(Life, IsKeptInTheFiles) {
  for (const Chapter chapter : chapters()) {
    (this->*chapter)();
    // The following chapters would only run into timeouts.
    if (HasFailure()) return;
  }
}

}  // namespace
