// With damaged files of any kind the real program starts, plays, reacts and ends well. Tests of file
// permissions run it as an unprivileged user.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "rules/deal.h"
#include "rules/levels.h"
#include "storage/storage.h"
#include "support/own_process.h"
#include "window/data_files.h"
#include "window/home.h"
#include "window/session.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using window::Desktop;
using window::Environment;
using window::Game;
using window::Home;
using window::Key;
using window::writtenFile;

// A game of level 1 with four pairs taken, one hint and one shuffle.
store::SavedGame goodGame() {
  const std::vector<mj::Slot>& slots = mj::levelToConfig(1).slots;
  store::SavedGame saved = {.valid = true, .level = 1, .seed = 1, .game = mj::createGame(slots, 1)};
  for (int i = 0; i < 4; ++i) {
    const auto [a, b] = mj::findHint(saved.game);
    mj::applyMatch(saved.game, a, b);
  }
  mj::shuffleBoard(saved.game);
  saved.game.hints = 1;
  saved.elapsedMs = 61000;
  return saved;
}

const std::string& goodSave() {
  static const std::string text = writtenFile("save.json", [] { store::saveGame(goodGame()); });
  return text;
}

// The relevant parts of a game as text, for comparison across processes.
std::string textOf(const mj::GameState& game) {
  std::string text;
  for (const std::string& face : game.faces) text += face + ",";
  for (const int number : {game.removed, game.hints, game.shuffles, static_cast<int>(game.history.size())}) {
    text += " " + std::to_string(number);
  }
  return text + " " + std::to_string(game.rng);
}

mj::GameState freshGame() { return mj::createGame(mj::levelToConfig(1).slots, 1); }

// What the keys for hint, shuffle and undo do right after the start. In a fresh game the tiles are still
// flying in and the keys do nothing.
void playKeys(mj::GameState& game) {
  if (game == freshGame()) return;
  if (mj::findHint(game).first >= 0) ++game.hints;
  mj::shuffleBoard(game);
  mj::undo(game);
}

std::string afterKeys(mj::GameState game) {
  playKeys(game);
  return textOf(game);
}

// The result of one run: start, press the keys for hint, shuffle and undo at once, quit.
struct Run {
  std::string errors;
  std::string game;  // the saved game, as textOf() gives it
};

Run playIn(Desktop& desktop, const Home& home) {
  Game game(home.command(), desktop, home.environment());
  EXPECT_TRUE(window::continueFromMenu(game));
  for (const Key key : {Key::H, Key::M, Key::U}) game.type(key);
  quit(game);
  return {.errors = game.process().errors(), .game = support::inOwnProcess([&] {
                                               setenv("XDG_DATA_HOME", home.path("data").c_str(), 1);
                                               return textOf(store::loadGame().game);
                                             })};
}

struct Damage {
  const char* name;
  std::function<void(const Home&)> make;
  mj::GameState expected;  // on the table after the start
};

mj::GameState goodGameBut(const std::function<void(mj::GameState&)>& change) {
  mj::GameState game = goodGame().game;
  change(game);
  return game;
}

// The good save with the first `from` replaced. Throws std::runtime_error if it has none.
std::string saveWith(const std::string& from, const std::string& to) {
  std::string text = goodSave();
  const std::size_t at = text.find(from);
  if (at == std::string::npos) throw std::runtime_error("the save holds no " + from);
  return text.replace(at, from.size(), to);
}

Damage saved(const char* name, const std::string& text, const mj::GameState& expected) {
  return {name, [text](const Home& home) { home.write("save.json", text); }, expected};
}

void expectPlays(const std::vector<Damage>& damages) {
  Desktop desktop;
  for (const Damage& damage : damages) {
    SCOPED_TRACE(damage.name);
    const Home home;
    damage.make(home);
    home.giveToNobody();
    const Run run = playIn(desktop, home);
    EXPECT_EQ(run.game, afterKeys(damage.expected));
    EXPECT_THAT(run.errors, Not(HasSubstr("[store]")));
  }
}

// --- files that can be replaced ---

TEST(DamagedFiles, CutAtAnyPlaceGiveAFreshGame) {
  const std::string& save = goodSave();
  const std::string settings = writtenFile("settings.json", [] { store::saveSettings({}); });
  Desktop desktop;
  for (std::size_t length = 0; length < save.size(); length += 100) {
    SCOPED_TRACE(length);
    const Home home;
    for (const char* file : {"save.json", "progress.json", "solves.json"}) {
      home.write(file, save.substr(0, length));
    }
    home.write("settings.json", settings.substr(0, length % settings.size()));
    home.giveToNobody();
    EXPECT_EQ(playIn(desktop, home).game, afterKeys(freshGame()));
  }
}

TEST(DamagedFiles, OfWrongKindsGiveAFreshGame) {
  std::vector<Damage> damages;
  for (const char* text : {"null", "[]", "7", R"({"current_mahjong":[]})", R"({"current_mahjong":{}})",
                           R"({"current_mahjong":{"level":1,"faces":{}}})", "\xFF\xFE", "{{{{"}) {
    damages.push_back(saved(text, text, freshGame()));
  }
  damages.push_back(saved("level", saveWith(R"("level":1)", R"("level":"1")"), freshGame()));
  expectPlays(damages);
}

TEST(DamagedFiles, LoseNoMoreThanWhatIsDamaged) {
  const std::string firstFace = R"("faces":[")" + goodGame().game.faces[0] + R"(")";
  ASSERT_NE(goodGame().game.faces[0], "");
  const mj::GameState good = goodGame().game;
  const auto withoutFirst = [](mj::GameState& game) {
    game.faces[0].clear();
    ++game.removed;
  };
  expectPlays({
      saved("nothing damaged", goodSave(), good),
      saved("the deal's number", saveWith(R"("seed":1)", R"("seed":[1])"), good),
      saved("a number among the faces", saveWith(firstFace, R"("faces":[5)"), goodGameBut(withoutFirst)),
      saved("an odd count of tiles", saveWith(firstFace, R"("faces":["")"), goodGameBut(withoutFirst)),
      saved("a face that nobody knows", saveWith(firstFace, R"("faces":["rose")"),
            goodGameBut([](mj::GameState& game) { game.faces[0] = "rose"; })),
      saved("no history", saveWith(R"("history":[)", R"("history":5,"was":[)"),
            goodGameBut([](mj::GameState& game) { game.history.clear(); })),
      saved("a history of tiles on the table",
            saveWith(R"("history":[)", R"("history":[{"a":0,"b":0,"fa":"dot1","fb":"dot1"},)"), good),
      saved("counters", saveWith(R"("hintsUsed":1)", R"("hintsUsed":-7)"),
            goodGameBut([](mj::GameState& game) { game.hints = 0; })),
      saved("a time beyond reason", saveWith(R"("elapsedMs":61000)", R"("elapsedMs":1e300)"), good),
      {"save under its temporary name", [](const Home& home) { home.write("save.json.tmp", goodSave()); },
       good},
      {"settings of wrong kinds",
       [](const Home& home) {
         home.write("save.json", goodSave());
         home.write("settings.json",
                    R"({"language":1,"soundOn":"yes","musicVolume":nan,"windowW":1e300,"windowX":-1e300})");
       },
       good},
  });
}

// --- files that cannot be written or read ---

// Expects a fresh game in which a pair can be taken, error messages for exactly these files, and a good end.
void expectPlaysAFreshGame(const Home& home, const std::vector<std::string>& files,
                           const Environment& changes = {}) {
  Desktop desktop;
  Environment environment = window::changed(home.environment(), changes);
  Game game(home.command(), desktop, environment);
  window::Table table;
  const auto isShown = [&] { return static_cast<bool>(table.isShownIn(game.picture().get())); };
  EXPECT_TRUE(window::continueFromMenu(game));
  EXPECT_TRUE(window::waitFor(isShown));
  const auto [a, b] = table.pair();
  game.click(table.spotOn(a, game.size()));
  EXPECT_TRUE(window::waitFor([&, first = a] { return table.isSelectedIn(game.picture().get(), first); }));
  game.click(table.spotOn(b, game.size()));
  mj::applyMatch(table.game, a, b);
  EXPECT_TRUE(window::waitFor(isShown));
  quit(game);
  const std::string dir = environment["XDG_DATA_HOME"] + "/veskara";
  for (const char* file : {"settings.json", "save.json"}) {
    const std::string message = "[store] konnte " + dir + "/" + file + " nicht schreiben\n";
    const bool named = game.process().errors().find(message) != std::string::npos;
    EXPECT_EQ(named, std::find(files.begin(), files.end(), file) != files.end()) << file;
  }
}

TEST(DataDirectory, ThatIsReadOnlyCostsTheFilesButNotTheGame) {
  const Home home;
  home.giveToNobody();
  fs::permissions(home.data(), fs::perms::owner_read | fs::perms::owner_exec);
  expectPlaysAFreshGame(home, {"settings.json", "save.json"});
  EXPECT_TRUE(fs::is_empty(home.data()));
}

TEST(DataDirectory, ThatCannotBeMadeCostsTheFilesButNotTheGame) {
  const Home home;
  home.giveToNobody();
  expectPlaysAFreshGame(home, {"settings.json", "save.json"}, {{"XDG_DATA_HOME", "/dev/null/data"}});
}

TEST(DataDirectory, WhoseFilesAreDirectoriesHasThemSetAside) {
  const Home home;
  for (const char* file : {"settings.json", "save.json"}) {
    fs::create_directories(home.data() + "/" + file + "/full");
  }
  home.giveToNobody();
  expectPlaysAFreshGame(home, {});
  for (const char* file : {"settings.json", "save.json"}) {
    EXPECT_TRUE(fs::is_regular_file(home.data() + "/" + file));
    EXPECT_TRUE(fs::exists(home.data() + "/" + file + ".unread1/full"));
  }
}

TEST(SaveFile, ThatCannotBeReadIsSetAsideForItsOwner) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can give files to a user of few rights";
  const Home home;
  home.write("save.json", goodSave());
  fs::permissions(home.data() + "/save.json", fs::perms::none);
  home.giveToNobody();
  expectPlaysAFreshGame(home, {});
  EXPECT_EQ(support::readAll(home.data() + "/save.json.unread1"), goodSave());
  EXPECT_TRUE(window::DataFiles(home.data()).hasGame());
}

}  // namespace
