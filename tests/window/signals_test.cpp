// Signals at every stage of the program's life: it ends properly, keeps the game and leaves whole files.

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "screens/menu_layout.h"
#include "window/controls.h"
#include "window/data_files.h"
#include "window/session.h"
#include "window/traced.h"
#include "window/witness.h"

namespace {

namespace fs = std::filesystem;
using screens::MenuEntry;
using screens::SettingsLayout;
using support::readAll;
using support::writeFile;
using window::areWhole;
using window::askBy;
using window::Child;
using window::DataFiles;
using window::Desktop;
using window::Environment;
using window::Game;
using window::Key;
using window::middleOf;
using window::Session;
using window::settingsControl;
using window::waitFor;

// --- before the window exists ---

// A start during which signals arrive at certain system calls.
struct Start {
  const char* stage;
  std::string calls;
  std::string path;  // only calls on this path count; empty for all
  int signal;
  std::string when = "1";
};

class Starting : public testing::Test {
 protected:
  void SetUp() override {
    if (!window::canTrace()) GTEST_SKIP() << "strace may not trace here";
  }

  // The exit status of this start.
  std::optional<int> statusOf(const Start& start) {
    std::vector<std::string> options =
        window::injection(start.calls, "signal=" + std::to_string(start.signal) + ":when=" + start.when);
    if (!start.path.empty()) options.insert(options.end(), {"-P", start.path});
    std::vector<std::string> command = window::straceCommand(scratch.path("trace"), options);
    command.emplace_back(VESKARA_PROGRAM);
    Child child(command, window::changed(desktop.environment(), window::traceable(desktop)));
    return child.waitForEnd();
  }
  bool wasSent(int signal) const {
    return readAll(scratch.path("trace")).find(std::string("--- SIG") + sigabbrev_np(signal)) !=
           std::string::npos;
  }
  std::string font() const {
    return desktop.environment()["XDG_CACHE_HOME"] + "/veskara/fonts/QuenlockMahjongGlyphs.ttf";
  }

  Desktop desktop;
  support::TempDir scratch;
};

TEST_F(Starting, EndsInOrderAsSoonAsAFrameWasShown) {
  const Start starts[] = {
      {"the display is asked for", "connect", "", SIGTERM},
      {"the settings are read", "openat,newfstatat", desktop.dataPath("settings.json"), SIGINT},
      {"the font is written", "openat", font(), SIGHUP},
      {"directories are made", "mkdir", desktop.dataPath("solves"), SIGTERM},
  };
  for (const Start& start : starts) {
    SCOPED_TRACE(start.stage);
    fs::remove_all(desktop.dataPath());
    fs::remove(font());
    EXPECT_EQ(statusOf(start), 0);
    EXPECT_TRUE(wasSent(start.signal));
    EXPECT_TRUE(areWhole(desktop.dataPath()));
    EXPECT_TRUE(fs::exists(desktop.dataPath("settings.json")));
    EXPECT_FALSE(fs::exists(desktop.dataPath("save.json")));
  }
}

TEST_F(Starting, EndsAtOnceOnASecondSignal) {
  // Both signals arrive before the window exists: the first when the program connects to the display, the
  // second soon after.
  EXPECT_EQ(statusOf({"two", "connect,mkdir", "", SIGINT, "1..3"}), 128 + SIGINT);
  EXPECT_FALSE(fs::exists(desktop.dataPath("settings.json")));
}

TEST_F(Starting, IsSimplyKilledBeforeItHasDoneAnything) {
  EXPECT_EQ(statusOf({"libraries are loaded", "openat", "", SIGTERM}), -SIGTERM);
  EXPECT_FALSE(fs::exists(desktop.dataPath()));
}

// --- on the screens ---

void expectOrderlyEnd(Session& session, int signal) {
  session.game.process().send(signal);
  EXPECT_TRUE(session.endsWith(0));
  EXPECT_EQ(session.game.process().errors(), "");
  EXPECT_TRUE(areWhole(session.desktop.dataPath()));
}

void expectFreshGameKept(const Session& session) {
  const DataFiles files(session.desktop.dataPath());
  ASSERT_TRUE(files.hasGame());
  const std::vector<std::string>& faces = session.table.game.faces;
  ASSERT_EQ(files.game()["faces"].size(), faces.size());
  for (std::size_t i = 0; i < faces.size(); ++i) EXPECT_EQ(files.game()["faces"][i].s, faces[i]);
}

TEST(Signal, AsTheTilesFlyInKeepsTheDeal) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Session session;
    expectOrderlyEnd(session, signal);
    expectFreshGameKept(session);
  }
}

TEST(Signal, InAPauseKeepsTheGame) {
  Session session;
  EXPECT_TRUE(session.showsTable());
  session.game.type(Key::Space);
  EXPECT_TRUE(waitFor([&] { return session.table.isHiddenIn(session.game.picture().get()); }));
  expectOrderlyEnd(session, SIGHUP);
  expectFreshGameKept(session);
}

// --- while a dialog is open ---

std::shared_ptr<Desktop> deskOfAWinner() {
  // Large enough to show all settings without scrolling.
  auto desk = std::make_shared<Desktop>(window::kLatinKeyboard, window::kScreen);
  writeFile(desk->dataPath("progress.json"), window::progressAfterLevel1());
  writeFile(desk->dataPath("solves.json"), window::solvedLevels(1));
  writeFile(desk->dataPath("save.json"), window::savedGame(5));
  return desk;
}

// A winner's game that has gone from the menu through this entry.
struct Visit {
  explicit Visit(MenuEntry entry) : game(*desk) {
    game.type(Key::Space);
    EXPECT_TRUE(window::chooseFromMenu(game, entry));
  }

  void expectNothingChangedBy(int signal) {
    game.process().send(signal);
    EXPECT_EQ(game.process().waitForEnd(), 0) << game.process().errors();
    EXPECT_TRUE(areWhole(desk->dataPath()));
    EXPECT_EQ(readAll(desk->dataPath("progress.json")), window::progressAfterLevel1());
    EXPECT_EQ(readAll(desk->dataPath("solves.json")), window::solvedLevels(1));
    EXPECT_EQ(DataFiles(desk->dataPath()).game()["history"].size(), 13U);
  }

  std::shared_ptr<Desktop> desk = deskOfAWinner();
  Game game;
};

TEST(Signal, AsTheResetIsAskedForResetsNothing) {
  Visit visit(MenuEntry::Settings);
  EXPECT_TRUE(askBy(
      visit.game, [&] { visit.game.click(middleOf(settingsControl(visit.game, &SettingsLayout::reset))); }));
  visit.expectNothingChangedBy(SIGINT);
}

TEST(Signal, AsADeletionIsAskedForDeletesNothing) {
  Visit visit(MenuEntry::Gallery);
  EXPECT_TRUE(askBy(visit.game, [&] { visit.game.rightClick(middleOf(firstCard(visit.game))); }));
  visit.expectNothingChangedBy(SIGTERM);
}

// --- while a picture is written ---

// A game about to win by itself, and the signals raised when its picture is renamed into place.
struct Winning {
  explicit Winning(const std::string& signals) {
    writeFile(desktop.dataPath("save.json"), window::savedGame(2));
    Environment changes = preloading(desktop, VESKARA_WITNESS);
    changes["VESKARA_AUTOPLAY"] = "0.02";
    changes[window::kRaiseVariable] = ".png" + signals;
    Game game(desktop, {}, changes);
    EXPECT_TRUE(window::continueFromMenu(game));
    status = game.process().waitForEnd();
  }

  Desktop desktop;
  std::optional<int> status;
};

TEST(Signal, AsAPictureIsWrittenKeepsTheResult) {
  const Winning run(":" + std::to_string(SIGTERM));
  EXPECT_EQ(run.status, 0);
  EXPECT_TRUE(areWhole(run.desktop.dataPath()));
  const DataFiles files(run.desktop.dataPath());
  EXPECT_EQ(files.level(), 2);
  EXPECT_EQ(files.progress["bests"]["1"]["stars"].asInt(0), 3);
  EXPECT_FALSE(files.hasGame());
  ASSERT_EQ(files.solves.size(), 1U);
  EXPECT_TRUE(fs::exists(run.desktop.dataPath("solves/" + files.solves[0]["shot"].s)));
}

TEST(Signal, AsAPictureIsWrittenTwiceEndsAtOnceWithTheResultKept) {
  const Winning run(":" + std::to_string(SIGTERM) + ":" + std::to_string(SIGINT));
  EXPECT_EQ(run.status, 128 + SIGINT);
  const DataFiles files(run.desktop.dataPath());
  EXPECT_EQ(files.level(), 2);
  EXPECT_EQ(files.progress["bests"]["1"]["stars"].asInt(0), 3);
  EXPECT_FALSE(files.hasGame());
  EXPECT_EQ(files.solves.size(), 0U);
}

// --- closed streams ---

TEST(ClosedStreams, AreNotTakenForTheDisplay) {
  Desktop desktop;
  const std::string command = std::string("exec ") + VESKARA_PROGRAM + " >&- 2>&- <&-";
  Child child({"sh", "-c", command}, desktop.environment());
  EXPECT_TRUE(waitFor([&] { return fs::exists(desktop.dataPath("solves")); })) << "it has started";
  child.send(SIGTERM);
  EXPECT_EQ(child.waitForEnd(), 0);
  EXPECT_TRUE(areWhole(desktop.dataPath()));
}

TEST(ClosedStreams, MayHaveLostTheirReader) {
  Desktop desktop;
  // Standard error is a pipe whose reader has gone.
  Game game({"bash", "-c", std::string("exec ") + VESKARA_PROGRAM + " 2> >(true)"}, desktop,
            {{"VESKARA_STATS", "1"}});
  EXPECT_TRUE(window::continueFromMenu(game));
  EXPECT_TRUE(waitFor([&] { return fs::exists(desktop.dataPath("save.json")); })) << "it plays on";
  quit(game);
}

}  // namespace
