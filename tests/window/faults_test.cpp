// Failing system calls, full disks and vanishing directories: the program plays on, reports what it could not
// write, and leaves every file whole, old or new.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "window/data_files.h"
#include "window/home.h"
#include "window/session.h"
#include "window/traced.h"

namespace {

namespace fs = std::filesystem;
using support::readAll;
using support::writeFile;
using window::areWhole;
using window::DataFiles;
using window::Desktop;
using window::Environment;
using window::Game;
using window::Key;
using window::waitFor;

const std::vector<std::string> kDocuments = {"settings.json", "progress.json", "save.json", "solves.json"};

std::string failureOf(const std::string& path) { return "[store] konnte " + path + " nicht schreiben\n"; }

bool says(Game& game, const std::string& line) {
  return game.process().errors().find(line) != std::string::npos;
}

// --- system calls ---

struct Fault {
  const char* name;
  std::string calls;
  std::string error;
  bool unfinished = false;  // new contents may remain under the temporary name
};
void PrintTo(const Fault& fault, std::ostream* out) { *out << fault.name; }

// Runs a game that wins by itself while its file writes fail. `when` tells strace which calls fail.
class Disturbed {
 public:
  Disturbed(const Fault& fault, const std::string& when) {
    writeFile(desktop.dataPath("save.json"), saved);
    Environment changes = window::traceable(desktop);
    changes["VESKARA_AUTOPLAY"] = "0.02";
    std::vector<std::string> command = window::straceCommand(
        scratch.path("trace"), window::injection(fault.calls, "error=" + fault.error + when, paths()));
    command.emplace_back(VESKARA_PROGRAM);
    Game game(command, desktop, changes);
    EXPECT_TRUE(window::continueFromMenu(game));
    // The record of the solve is written last.
    EXPECT_TRUE(waitFor([&] { return says(game, failureOf(path("solves.json"))) || hasSolve(); }));
    quit(game);
    errors = game.process().errors();
  }

  std::string path(const std::string& file) const { return desktop.dataPath(file); }
  bool hasSolve() const { return DataFiles(desktop.dataPath()).solves.size() == 1; }
  bool wasHit() const { return readAll(scratch.path("trace")).find("(INJECTED)") != std::string::npos; }
  bool saidNotWritten(const std::string& file) const {
    return errors.find(failureOf(path(file))) != std::string::npos;
  }

  // Lets the same player win again without faults.
  void winAgain() {
    writeFile(desktop.dataPath("save.json"), window::savedGame(2));
    Game game(desktop, {}, {{"VESKARA_AUTOPLAY", "0.02"}});
    EXPECT_TRUE(window::continueFromMenu(game));
    EXPECT_TRUE(waitFor([&] { return fs::exists(path("solves.json")); }));
    quit(game);
    EXPECT_EQ(game.process().errors(), "");
    EXPECT_TRUE(areWhole(desktop.dataPath()));
    EXPECT_EQ(DataFiles(desktop.dataPath()).level(), 2);
  }

  std::string saved = window::savedGame(2);
  Desktop desktop;
  std::string errors;

 private:
  std::vector<std::string> paths() const {
    std::vector<std::string> paths = {desktop.dataPath(), desktop.dataPath("solves")};
    for (const std::string& file : kDocuments) {
      paths.push_back(path(file) + ".tmp");
      // save.json must stay readable for the game to start from it.
      if (file != "save.json") paths.push_back(path(file));
    }
    return paths;
  }

  support::TempDir scratch;
};

class SystemCall : public testing::Test {
 protected:
  void SetUp() override {
    if (!window::canTrace()) GTEST_SKIP() << "strace may not trace here";
  }
};

class Failing : public SystemCall, public testing::WithParamInterface<Fault> {};

INSTANTIATE_TEST_SUITE_P(Call, Failing,
                         testing::Values(Fault{"Openat", "openat", "EACCES"},
                                         Fault{"Write", "write,writev", "ENOSPC"},
                                         Fault{"Close", "close", "EIO", true},
                                         Fault{"Rename", "rename", "EIO", true}),
                         [](const auto& fault) { return fault.param.name; });

TEST_P(Failing, AlwaysCostsTheFilesButNotTheGame) {
  Disturbed run(GetParam(), "");
  EXPECT_TRUE(run.wasHit());
  for (const std::string& file : kDocuments) EXPECT_TRUE(run.saidNotWritten(file)) << file;
  if (!GetParam().unfinished) {
    EXPECT_EQ(readAll(run.path("save.json")), run.saved);
    EXPECT_FALSE(fs::exists(run.path("progress.json")));
    EXPECT_FALSE(run.hasSolve());
  }
  run.winAgain();
}

TEST_P(Failing, OnceCostsNoMoreThanWhatIsNamed) {
  for (const char* when : {":when=1", ":when=4"}) {
    SCOPED_TRACE(when);
    const Disturbed run(GetParam(), when);
    EXPECT_TRUE(run.wasHit());
    const DataFiles files(run.desktop.dataPath());
    EXPECT_EQ(files.settings.size(), 10U);
    if (!run.saidNotWritten("progress.json")) {
      EXPECT_EQ(files.level(), 2);
      EXPECT_EQ(files.totalSolves(), 1);
      EXPECT_EQ(files.progress["bests"].size(), 1U);
    }
    EXPECT_TRUE(run.saidNotWritten("save.json") || !files.hasGame());
    EXPECT_TRUE(run.saidNotWritten("solves.json") || run.hasSolve());
  }
}

TEST_F(SystemCall, ThatMakesDirectoriesCostsThePictureWhenItFails) {
  const Disturbed run({"", "mkdir", "ENOSPC"}, "");
  EXPECT_TRUE(run.wasHit());
  EXPECT_EQ(run.errors, "");
  EXPECT_TRUE(areWhole(run.desktop.dataPath()));
  ASSERT_TRUE(run.hasSolve());
  EXPECT_EQ(DataFiles(run.desktop.dataPath()).solves[0]["shot"].s, "");
}

TEST_F(SystemCall, ThatRemovesOldFilesCostsNothingWhenItFails) {
  const Disturbed run({"", "unlink", "EACCES"}, "");
  EXPECT_TRUE(run.wasHit());
  EXPECT_EQ(run.errors, "");
  EXPECT_TRUE(areWhole(run.desktop.dataPath()));
  EXPECT_TRUE(run.hasSolve());
}

// --- full disks ---

TEST(FileSizeLimit, CostsThePictureButNotTheProgram) {
  Desktop desktop;
  writeFile(desktop.dataPath("save.json"), window::savedGame(2));
  Game game({"prlimit", "--fsize=65536", VESKARA_PROGRAM}, desktop, {{"VESKARA_AUTOPLAY", "0.02"}});
  EXPECT_TRUE(window::continueFromMenu(game));
  EXPECT_TRUE(waitFor([&] { return DataFiles(desktop.dataPath()).solves.size() == 1; }));
  quit(game);
  EXPECT_TRUE(areWhole(desktop.dataPath()));
  const DataFiles files(desktop.dataPath());
  EXPECT_EQ(files.solves[0]["shot"].s, "");
  EXPECT_EQ(files.level(), 2);
}

// A disk of 256 KiB, mounted while the object lives. Needs the right to mount; see isThere().
class SmallDisk {
 public:
  explicit SmallDisk(std::string place) : at(std::move(place)) {
    fs::create_directories(at);
    mounted = unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              mount("tmpfs", at.c_str(), "tmpfs", 0, "size=256k") == 0;
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  ~SmallDisk() {
    if (mounted) umount2(at.c_str(), MNT_DETACH);
  }

  bool isThere() const { return mounted; }
  void fill() const {
    std::ofstream file(at + "/filler", std::ios::binary);
    while (file << std::string(4096, 'x') << std::flush) {
    }
  }
  void makeRoom() const { fs::remove(at + "/filler"); }

 private:
  std::string at;
  bool mounted = false;
};

TEST(FullDisk, IsSurvivedUntilThereIsRoomAgain) {
  Desktop desktop;
  const SmallDisk disk(desktop.dataPath());
  if (!disk.isThere()) GTEST_SKIP() << "a test may not mount here";
  const std::string saved = window::savedGame(5);
  writeFile(desktop.dataPath("save.json"), saved);
  Game game(desktop);
  EXPECT_TRUE(window::continueFromMenu(game));
  disk.fill();
  game.type(Key::M);
  EXPECT_TRUE(waitFor([&] { return says(game, failureOf(desktop.dataPath("save.json"))); }));
  EXPECT_EQ(readAll(desktop.dataPath("save.json")), saved);
  disk.makeRoom();
  const auto hasShuffle = [&] { return DataFiles(desktop.dataPath()).game()["shufflesUsed"].asInt(0) == 1; };
  EXPECT_TRUE(waitFor(hasShuffle)) << "it saves again";
  quit(game);
  EXPECT_TRUE(areWhole(desktop.dataPath()));
}

// --- directories that vanish and return ---

// A game on the table with five pairs left.
struct GameInPlay {
  GameInPlay() {
    writeFile(data + "/save.json", window::savedGame(5));
    game.emplace(desktop);
    EXPECT_TRUE(window::continueFromMenu(*game));
  }

  // Shuffles and waits until the next save contains the shuffle.
  bool savesAgain() const {
    const int before = shufflesSaved();
    game->type(Key::M);
    return waitFor([&] { return shufflesSaved() > before; });
  }
  bool saysNotSaved() {
    return waitFor([&] { return says(*game, failureOf(data + "/save.json")); });
  }
  void expectEndsWell() {
    quit(*game);
    EXPECT_TRUE(areWhole(data));
  }

  Desktop desktop;
  std::string data = desktop.dataPath();
  std::string elsewhere = data + "-elsewhere";
  std::optional<Game> game;

 private:
  int shufflesSaved() const { return DataFiles(data).game()["shufflesUsed"].asInt(0); }
};

TEST(DataDirectory, ThatIsRemovedIsMadeAgain) {
  GameInPlay playing;
  fs::remove_all(playing.data);
  EXPECT_TRUE(playing.savesAgain());
  playing.expectEndsWell();
  EXPECT_EQ(playing.game->process().errors(), "");
}

TEST(DataDirectory, ThatIsRenamedIsLeftAlone) {
  GameInPlay playing;
  fs::rename(playing.data, playing.elsewhere);
  const std::string before = readAll(playing.elsewhere + "/save.json");
  EXPECT_TRUE(playing.savesAgain());
  playing.expectEndsWell();
  EXPECT_EQ(readAll(playing.elsewhere + "/save.json"), before);
  EXPECT_TRUE(areWhole(playing.elsewhere));
}

TEST(DataDirectory, ReplacedByAFileIsUsedAgainWhenItIsBack) {
  GameInPlay playing;
  fs::rename(playing.data, playing.elsewhere);
  writeFile(playing.data, "somebody's");
  EXPECT_TRUE(playing.saysNotSaved());
  EXPECT_EQ(readAll(playing.data), "somebody's");
  fs::remove(playing.data);
  fs::rename(playing.elsewhere, playing.data);
  EXPECT_TRUE(playing.savesAgain());
  playing.expectEndsWell();
}

TEST(DataDirectory, ThatMayNotBeWrittenForAWhileIsUsedAgain) {
  const window::Home home;
  const std::string saved = window::savedGame(5);
  home.write("save.json", saved);
  home.giveToNobody();
  Desktop desktop;
  Game game(home.command(), desktop, home.environment());
  EXPECT_TRUE(window::continueFromMenu(game));
  fs::permissions(home.data(), fs::perms::owner_read | fs::perms::owner_exec);
  EXPECT_TRUE(waitFor([&] { return says(game, failureOf(home.data() + "/save.json")); }));
  EXPECT_EQ(readAll(home.data() + "/save.json"), saved);
  fs::permissions(home.data(), fs::perms::owner_all);
  quit(game);
  EXPECT_TRUE(areWhole(home.data()));
  EXPECT_NE(readAll(home.data() + "/save.json"), saved);
}

}  // namespace
