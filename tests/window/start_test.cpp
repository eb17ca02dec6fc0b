// How the program starts: its command line, its environment, and what it says when something is missing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "window/player_files.h"
#include "window/session.h"
#include "window/witness.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using window::Child;
using window::cleanEnvironment;
using window::Environment;
using window::gameCommand;
using window::Key;
using window::kFirstWindow;
using window::kNoOpenGl;
using window::kScreen;
using window::Session;
using window::Size;
using window::waitFor;

constexpr const char* kVersionText = "Quenlock's Mahjong 1.1.0 (Build 1054)\n";
constexpr const char* kHelpText =
    "Quenlock's Mahjong 1.1.0\n"
    "  --version    Version ausgeben\n"
    "  --fullscreen im Vollbild starten\n"
    "  --windowed   im Fenster starten\n";

// A run where there is no display at all.
struct Unseen {
  explicit Unseen(const std::vector<std::string>& arguments, const Environment& changes = {})
      : child(gameCommand(arguments), window::changed(cleanEnvironment(home.path()), changes)) {}

  support::TempDir home;
  Child child;
};

// --- the first screens ---

TEST(Start, ShowsTheSplashScreenAndThenTheMenu) {
  const Session session({.toTable = false});
  EXPECT_FALSE(window::isMenuShownIn(session.game.picture().get()));
  EXPECT_TRUE(session.showsMenu());
}

// --- the command line ---

void expectPrints(const std::vector<std::string>& arguments, const std::string& text) {
  Unseen run(arguments);
  EXPECT_EQ(run.child.waitForEnd(), 0);
  EXPECT_EQ(run.child.output(), text);
  EXPECT_EQ(run.child.errors(), "");
}

TEST(CommandLine, PrintsWhatIsAskedForFirst) {
  expectPrints({"--version"}, kVersionText);
  expectPrints({"--help"}, kHelpText);
  expectPrints({"--version", "--help"}, kVersionText);
  expectPrints({"--help", "--version"}, kHelpText);
  expectPrints({"--fullscreen", "x", "--help"}, kHelpText);
}

TEST(CommandLine, UnknownArgumentsAreIgnored) {
  Session session({.arguments = {"-h", "--Version", "--help=all", "", "level 7"}, .screen = kScreen});
  EXPECT_TRUE(session.hasSize(kFirstWindow));
  session.game.close();
  EXPECT_TRUE(session.endsWith(0));
  EXPECT_THAT(session.game.process().output(), Not(HasSubstr("Mahjong")));
}

TEST(CommandLine, AsksForAWindowLast) {
  Session session({.arguments = {"--fullscreen", "--windowed"}, .screen = kScreen});
  EXPECT_TRUE(session.hasSize(kFirstWindow));
  EXPECT_TRUE(session.showsTable());
  EXPECT_FALSE(session.game.isFullscreen());
}

TEST(CommandLine, AsksForTheFullScreenLast) {
  Session session({.arguments = {"--windowed", "--fullscreen"}, .screen = kScreen});
  EXPECT_TRUE(session.hasSize(kScreen));
  EXPECT_TRUE(session.game.isFullscreen());
  EXPECT_TRUE(session.showsTable());
  session.game.type(Key::F11);
  EXPECT_TRUE(session.hasSize(kFirstWindow));
}

// --- the display ---

TEST(Display, IsMissedWithAMessage) {
  for (const Environment& environment :
       {Environment{{"SDL_VIDEODRIVER", "x11"}},
        Environment{{"SDL_VIDEODRIVER", "x11,wayland"}, {"XDG_RUNTIME_DIR", "/none"}},
        Environment{{"SDL_VIDEODRIVER", "x11"}, {"DISPLAY", ":999999"}},
        Environment{{"SDL_VIDEODRIVER", "nosuch"}}}) {
    Unseen run({}, environment);
    EXPECT_EQ(run.child.waitForEnd(), 1);
    EXPECT_THAT(run.child.errors(), StartsWith("SDL_Init: "));
    EXPECT_THAT(run.child.output(), IsEmpty());
  }
}

TEST(Display, IsUsedWithOpenGlWhereThereIsSome) {
  Session session;
  EXPECT_EQ(session.game.process().output(), "[video] Treiber x11, Renderer opengl (beschleunigt), vsync\n");
  EXPECT_THAT(session.game.process().errors(), IsEmpty());
}

TEST(Display, IsUsedWithoutOpenGlToo) {
  Session session({.environment = kNoOpenGl});
  EXPECT_THAT(session.game.process().output(),
              StartsWith("[video] Treiber x11, Renderer software (Software!), "));
  EXPECT_TRUE(waitFor([&] {
    return session.game.process().errors() == "[gpu] kein vormultipliziertes Mischen — nehme das normale\n";
  }));
}

// --- the desktop around it ---

TEST(Desktop, MaximisedWindowIsMaximisedAgainAfterFullScreen) {
  Session session({.screen = kScreen, .toTable = false});
  ASSERT_TRUE(session.showsMenu());
  session.game.setMaximised(true);
  const auto fills = [&] { return session.game.isMaximised() && session.game.size().w == kScreen.w; };
  ASSERT_TRUE(waitFor(fills));
  const Size size = session.game.size();
  for (int i = 0; i < 2; ++i) {
    session.game.type(Key::F11);
    ASSERT_TRUE(waitFor([&] { return session.game.isFullscreen() && session.game.size() == kScreen; }));
    session.game.type(Key::F11);
    ASSERT_TRUE(waitFor([&] { return !session.game.isFullscreen() && session.game.size() == size; }));
    ASSERT_TRUE(waitFor(fills));
  }
  quit(session.game);
  const window::Members saved = window::membersOf(session.desktop.dataPath("settings.json"));
  EXPECT_EQ(saved.at(".maximized"), "true");
  EXPECT_EQ(saved.at(".windowW"), std::to_string(kFirstWindow.w));
  EXPECT_EQ(saved.at(".windowH"), std::to_string(kFirstWindow.h));
}

TEST(Desktop, MaximisedWindowIsMaximisedAgainAfterItWasMinimised) {
  Session session({.screen = kScreen, .toTable = false});
  ASSERT_TRUE(session.showsMenu());
  session.game.setMaximised(true);
  const auto fills = [&] { return session.game.isMaximised() && session.game.size().w == kScreen.w; };
  ASSERT_TRUE(waitFor(fills));
  session.game.minimise();
  session.game.restore();
  ASSERT_TRUE(waitFor(fills));
  EXPECT_TRUE(session.showsMenu());
  quit(session.game);
  EXPECT_EQ(window::membersOf(session.desktop.dataPath("settings.json")).at(".maximized"), "true");
}

TEST(Desktop, IsNotAskedToBypassItsCompositor) {
  const Session session({.toTable = false});
  EXPECT_FALSE(session.game.bypassesCompositor());
}

TEST(Desktop, MayShowItsScreenSaver) {
  window::Desktop desktop;
  const support::TempDir scratch;
  Environment environment = window::preloading(desktop, VESKARA_WITNESS);
  environment[window::kWitnessVariable] = scratch.path("witness");
  const window::Game game(desktop, {}, environment);
  EXPECT_TRUE(waitFor([&] {
    window::Testimony testimony;
    std::ifstream(scratch.path("witness"), std::ios::binary)
        .read(reinterpret_cast<char*>(&testimony), sizeof testimony);
    return testimony.screenSaver;
  }));
}

// --- the keyboard ---

class Keyboard : public testing::TestWithParam<std::string> {};
INSTANTIATE_TEST_SUITE_P(Layout, Keyboard,
                         testing::Values("gr", "il", "ru", "ara", "tr", "cz", "fr", "de", "us(dvorak)", "jp",
                                         "kr", "hu"),
                         [](const auto& layout) {
                           return layout.param.substr(0, layout.param.find('(')) == "us" ? "dvorak"
                                                                                         : layout.param;
                         });

TEST_P(Keyboard, HasAllKeysOfTheGame) {
  Session session({.keyboard = GetParam(), .screen = kScreen});
  ASSERT_TRUE(session.showsTable());
  mj::GameState& game = session.table.game;
  ui::BoardOpts& view = session.table.view;

  session.game.typeCharacter('+');
  view.zoom = 1.6;
  ASSERT_TRUE(session.showsTable()) << "+";
  session.game.typeCharacter('-');
  view.zoom = 1;
  ASSERT_TRUE(session.showsTable()) << "-";
  session.game.typeCharacter('+');
  view.zoom = 1.6;
  ASSERT_TRUE(session.showsTable());
  session.game.typeCharacter('0');
  view.zoom = 1;
  ASSERT_TRUE(session.showsTable()) << "0";

  const auto [a, b] = session.table.pair();
  session.tap(a);
  EXPECT_TRUE(session.showsSelected(a));
  session.tap(b);
  mj::applyMatch(game, a, b);
  EXPECT_TRUE(session.showsTable());
  session.game.typeCharacter('u');
  mj::undo(game);
  ASSERT_TRUE(session.showsTable()) << "u";
  // Not before: until the last tiles have come to rest an aid is not given.
  session.game.typeCharacter('m');
  mj::shuffleBoard(game);
  ASSERT_TRUE(session.showsTable()) << "m";
  const int free = session.table.pair().first;
  session.tap(free);
  EXPECT_TRUE(session.showsSelected(free));
  session.game.typeCharacter('h');  // a hint unselects
  ASSERT_TRUE(session.showsTable()) << "h";

  session.game.typeCharacter('q', Key::LeftControl);
  EXPECT_TRUE(session.endsWith(0)) << "Ctrl+Q";
}

// --- the files ---

TEST(Files, NeitherACacheNorFontsAreNeededToPlay) {
  Session session({.environment = {{"XDG_CACHE_HOME", "/dev/null"}, {"FONTCONFIG_FILE", "/none"}}});
  EXPECT_TRUE(waitFor([&] {
    return session.game.process().errors().find(
               "[assets] cannot write /dev/null/veskara/fonts/QuenlockMahjongGlyphs.ttf\n") !=
           std::string::npos;
  }));
  const auto tiles = static_cast<int>(session.table.game.slots.size());
  EXPECT_TRUE(waitFor([&] { return session.table.tilesShownIn(session.game.picture().get()) > tiles / 2; }));
  session.game.close();
  EXPECT_TRUE(session.endsWith(0));
}

// --- the environment ---

std::vector<Size> sizesOfPictures(const std::string& directory) {
  std::vector<Size> sizes;
  for (const auto& file : std::filesystem::directory_iterator(directory)) {
    const ui::CairoSurface picture(cairo_image_surface_create_from_png(file.path().c_str()));
    sizes.push_back(
        {cairo_image_surface_get_width(picture.get()), cairo_image_surface_get_height(picture.get())});
  }
  return sizes;
}

TEST(Environment, LetsTheGamePlayItselfAndTellItsPace) {
  Session session({.environment = {{"VESKARA_AUTOPLAY", "0.05"}, {"VESKARA_STATS", "1"}}, .screen = kScreen});
  const auto progress = [&] { return support::readAll(session.desktop.dataPath("progress.json")); };
  EXPECT_TRUE(waitFor([&] { return progress().find("\"currentLevel\":2") != std::string::npos; }));
  const auto recorded = [&] { return std::filesystem::exists(session.desktop.dataPath("solves.json")); };
  EXPECT_TRUE(waitFor(recorded)) << "the picture is there by then";
  EXPECT_THAT(sizesOfPictures(session.desktop.dataPath("solves")), ElementsAre(Size{640, 640}));

  std::istringstream lines(session.game.process().errors());
  int count = 0;
  for (std::string line; std::getline(lines, line); ++count) {
    EXPECT_THAT(line, MatchesRegex("\\[stats\\] [ 0-9]{3} fps   CPU [ 0-9]{3,}\\.[0-9] ms   "
                                   "GPU [ 0-9]{3,}\\.[0-9] ms   [0-9]+ Kopien  1100x760 .*"));
  }
  EXPECT_GT(count, 5);
}

}  // namespace
