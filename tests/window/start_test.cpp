// How the program starts: its command line, its environment, and its messages if something is missing.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
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

// A run without a display.
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

// --- the desktop ---

// A window that is maximised at first, and the settings it leaves.
class MaximisedWindow : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(session.showsMenu());
    session.game.setMaximised(true);
    ASSERT_TRUE(fillsScreen());
  }
  bool fillsScreen() const {
    return waitFor([&] { return session.game.isMaximised() && session.game.size().w == kScreen.w; });
  }
  window::Members settingsAfterwards() {
    quit(session.game);
    return window::membersOf(session.desktop.dataPath("settings.json"));
  }

  Session session{{.screen = kScreen, .toTable = false}};
};

TEST_F(MaximisedWindow, IsMaximisedAgainAfterFullScreen) {
  const Size size = session.game.size();
  for (int i = 0; i < 2; ++i) {
    session.game.type(Key::F11);
    ASSERT_TRUE(waitFor([&] { return session.game.isFullscreen() && session.game.size() == kScreen; }));
    session.game.type(Key::F11);
    ASSERT_TRUE(waitFor([&] { return !session.game.isFullscreen() && session.game.size() == size; }));
    ASSERT_TRUE(fillsScreen());
  }
  const window::Members saved = settingsAfterwards();
  EXPECT_EQ(saved.at(".maximized"), "true");
  EXPECT_EQ(saved.at(".windowW"), std::to_string(kFirstWindow.w));
  EXPECT_EQ(saved.at(".windowH"), std::to_string(kFirstWindow.h));
}

TEST_F(MaximisedWindow, IsMaximisedAgainAfterItWasMinimised) {
  session.game.minimise();
  session.game.restore();
  ASSERT_TRUE(fillsScreen());
  EXPECT_TRUE(session.showsMenu());
  EXPECT_EQ(settingsAfterwards().at(".maximized"), "true");
}

// A window manager that changes the window as it appears, with and without a position in the settings.
class ImposedOnWindow : public testing::TestWithParam<const char*> {
 protected:
  // Runs the program until the menu shows, then quits.
  void run(const std::string& imposed) {
    window::Desktop desktop(window::kLatinKeyboard, kScreen, imposed);
    support::writeFile(desktop.dataPath("settings.json"), GetParam());
    window::Game game(desktop);
    ASSERT_TRUE(waitFor([&] { return window::isMenuShownIn(game.picture().get()); }));
    size = game.size();
    maximised = game.isMaximised();
    quit(game);
    saved = window::membersOf(desktop.dataPath("settings.json"));
  }

  Size size;
  bool maximised = false;
  window::Members saved;
};
INSTANTIATE_TEST_SUITE_P(Place, ImposedOnWindow, testing::Values("{}", R"({"windowX":100,"windowY":120})"),
                         [](const auto& param) { return param.index == 0 ? "Unknown" : "Known"; });

TEST_P(ImposedOnWindow, SizeIsKept) {
  run("<size><width>900</width><height>600</height></size>");
  EXPECT_EQ(size, (Size{900, 600}));
  EXPECT_EQ(saved[".windowW"], "900");
  EXPECT_EQ(saved[".windowH"], "600");
}

TEST_P(ImposedOnWindow, MaximisedStateIsKept) {
  run("<maximized>yes</maximized>");
  EXPECT_TRUE(maximised);
  EXPECT_EQ(saved[".maximized"], "true");
  EXPECT_EQ(saved[".windowW"], std::to_string(kFirstWindow.w));
  EXPECT_EQ(saved[".windowH"], std::to_string(kFirstWindow.h));
}

TEST(Desktop, IsNotAskedToBypassItsCompositor) {
  const Session session({.toTable = false});
  EXPECT_FALSE(session.game.bypassesCompositor());
}

TEST(Desktop, MayShowItsScreenSaver) {
  const support::TempDir scratch;
  const std::string witness = scratch.path("witness");
  const Session session(
      {.environment = {{window::kWitnessVariable, witness}}, .preload = VESKARA_WITNESS, .toTable = false});
  EXPECT_TRUE(waitFor([&] { return window::testimonyIn(witness).screenSaver; }));
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
  // Only now: hints and shuffles are refused until the tiles have flown in.
  session.game.typeCharacter('m');
  mj::shuffleBoard(game);
  ASSERT_TRUE(session.showsTable()) << "m";
  const int free = session.table.pair().first;
  session.tap(free);
  EXPECT_TRUE(session.showsSelected(free));
  session.game.typeCharacter('h');  // a hint clears the selection
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
