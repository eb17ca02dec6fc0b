// The program in unusual surroundings: strange homes, hostile files, enormous variables. It plays and ends
// well, and writes only its own files.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "screens/menu_layout.h"
#include "support/picture.h"
#include "window/controls.h"
#include "window/data_files.h"
#include "window/home.h"
#include "window/session.h"
#include "window/traced.h"

namespace {

namespace fs = std::filesystem;
using screens::MenuEntry;
using support::readAll;
using support::TempDir;
using support::writeFile;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;
using window::areWhole;
using window::DataFiles;
using window::Desktop;
using window::Environment;
using window::Game;
using window::Home;
using window::Key;
using window::waitFor;

constexpr std::size_t kEnormous = 100'000;

using Command = std::vector<std::string>;

// Starts the game, goes to the table and quits. Returns the program's standard error.
std::string playAndQuit(const Command& command, Desktop& desktop, const Environment& changes = {}) {
  Game game(command, desktop, changes);
  EXPECT_TRUE(window::continueFromMenu(game));
  quit(game);
  return game.process().errors();
}
std::string playAndQuit(Desktop& desktop, const Environment& changes) {
  return playAndQuit({VESKARA_PROGRAM}, desktop, changes);
}

void deleteFirstCard(const Game& game) {
  EXPECT_TRUE(window::askBy(game, [&] { game.rightClick(window::middleOf(firstCard(game))); }));
  EXPECT_TRUE(window::confirm(game));
}

// --- homes ---

// A command that starts the game in this directory without these variables.
Command startedIn(const std::string& directory, const std::vector<std::string>& unset) {
  Command command = {"env", "-C", directory};
  for (const std::string& name : unset) command.insert(command.end(), {"-u", name});
  command.emplace_back(VESKARA_PROGRAM);
  return command;
}

std::set<std::string> namesIn(const std::string& directory) {
  std::set<std::string> names;
  for (const auto& entry : fs::directory_iterator(directory)) names.insert(entry.path().filename());
  return names;
}

// Expects the player's files below `data` and the font below `cache`.
void expectFilesBelow(const std::string& data, const std::string& cache) {
  EXPECT_TRUE(areWhole(data + "/veskara"));
  EXPECT_TRUE(DataFiles(data + "/veskara").hasGame());
  EXPECT_TRUE(fs::is_regular_file(cache + "/veskara/fonts/QuenlockMahjongGlyphs.ttf"));
}

const std::vector<std::string> kXdg = {"XDG_DATA_HOME", "XDG_CACHE_HOME"};

TEST(HomeDirectory, MayBeALink) {
  const TempDir dir;
  fs::create_directory_symlink(dir.makeDir("real"), dir.path("home"));
  Desktop desktop;
  EXPECT_EQ(playAndQuit(startedIn(dir.path(), kXdg), desktop, {{"HOME", dir.path("home")}}), "");
  expectFilesBelow(dir.path("real/.local/share"), dir.path("real/.cache"));
}

TEST(HomeDirectory, MayBeUnsetEmptyOrRelative) {
  Desktop desktop;
  for (const char* home : {"unset", "", "rel/home"}) {
    SCOPED_TRACE(home);
    const TempDir dir;
    std::vector<std::string> unset = kXdg;
    if (home == std::string("unset")) unset.emplace_back("HOME");
    EXPECT_EQ(playAndQuit(startedIn(dir.path(), unset), desktop, {{"HOME", home}}), "");
    const std::string below = home == std::string("rel/home") ? dir.path(home) : dir.path();
    expectFilesBelow(below + "/.local/share", below + "/.cache");
  }
}

TEST(DataHome, MayBeRelative) {
  const TempDir dir;
  Desktop desktop;
  EXPECT_EQ(
      playAndQuit(startedIn(dir.path(), {}), desktop, {{"XDG_DATA_HOME", "d/a"}, {"XDG_CACHE_HOME", "c"}}),
      "");
  expectFilesBelow(dir.path("d/a"), dir.path("c"));
}

TEST(DataHome, OfAnotherOwnerIsLeftAlone) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can play as another user";
  const Home home;
  home.giveToNobody();
  const TempDir foreign;
  fs::permissions(foreign.path(), fs::perms(0755));
  const std::string saved = window::savedGame(5);
  foreign.makeFile("veskara/save.json", saved);
  Desktop desktop;
  Environment environment = home.environment();
  environment["XDG_DATA_HOME"] = foreign.path();
  const std::string errors = playAndQuit(home.command(), desktop, environment);
  for (const char* file : {"settings.json", "save.json"}) {
    EXPECT_THAT(errors, HasSubstr("[store] konnte " + foreign.path("veskara/") + file));
  }
  EXPECT_EQ(namesIn(foreign.path("veskara")), std::set<std::string>{"save.json"});
  EXPECT_EQ(readAll(foreign.path("veskara/save.json")), saved);
}

// --- enormous variables ---

TEST(Variable, OfAHundredThousandBytesDoesNoHarm) {
  Desktop desktop;
  Environment changes;
  for (const char* name : {"LANG", "LANGUAGE", "VESKARA_AUTOPLAY", "VESKARA_ASSET_DIR", "APPDIR", "SNAP"}) {
    changes[name] = std::string(kEnormous, 'x');
  }
  // Only fontconfig complains, about the language. The game's own messages would begin with "[".
  EXPECT_THAT(playAndQuit(desktop, changes), Not(ContainsRegex("^\\[|\n\\[")));
  EXPECT_TRUE(DataFiles(desktop.dataPath()).hasGame());
}

TEST(Variable, OfAHundredThousandBytesNamesNoDirectory) {
  Desktop desktop;
  const std::string path = "/" + std::string(kEnormous, 'x');
  const std::string errors = playAndQuit(
      startedIn("/", kXdg), desktop, {{"HOME", path}, {"XDG_CONFIG_HOME", path}, {"XDG_RUNTIME_DIR", path}});
  EXPECT_THAT(errors, HasSubstr("[assets] cannot write " + path));
  for (const char* file : {"settings.json", "save.json"}) {
    EXPECT_THAT(errors, HasSubstr("[store] konnte " + path + "/.local/share/veskara/" + file));
  }
}

// --- hostile files in the places of the program's own ---

void makePipe(const std::string& path) {
  fs::create_directories(fs::path(path).parent_path());
  ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
}

TEST(Pipe, InPlaceOfAFileIsNotWaitedFor) {
  Desktop desktop;
  const std::string font =
      desktop.environment()["XDG_CACHE_HOME"] + "/veskara/fonts/QuenlockMahjongGlyphs.ttf";
  for (const char* file : {"settings.json", "progress.json", "solves.json", "save.json.tmp"}) {
    makePipe(desktop.dataPath(file));
  }
  makePipe(font);
  EXPECT_EQ(playAndQuit(desktop, {}), "");
  EXPECT_TRUE(fs::is_regular_file(font));
  EXPECT_EQ(DataFiles(desktop.dataPath()).settings.size(), 10U);
  EXPECT_TRUE(DataFiles(desktop.dataPath()).hasGame());
  EXPECT_FALSE(fs::exists(desktop.dataPath("save.json.tmp")));
}

// A start that finds hostile files in place of half of the assets.
TEST(AssetOverride, ThatIsHostileDoesNoHarm) {
  const std::string music = readAll(std::string(VESKARA_ASSETS) + "/audio/bgm_calm.ogg");
  const std::string effect = readAll(std::string(VESKARA_ASSETS) + "/audio/sfx_tile.ogg");
  std::string noise(9036, '\0');
  std::generate(noise.begin(), noise.end(),
                [n = 1U]() mutable { return static_cast<char>(n = n * 69069 + 1); });
  const TempDir dir;
  dir.makeFile("assets/audio/bgm_calm.ogg", music.substr(0, music.size() / 2));
  // In such a small file the headers are the first half.
  dir.makeFile("assets/audio/sfx_tile.ogg", effect.substr(0, effect.size() * 3 / 4));
  dir.makeFile("assets/audio/sfx_click.ogg", "");
  dir.makeDir("assets/audio/sfx_place.ogg");
  makePipe(dir.path("assets/audio/sfx_nono.ogg"));
  dir.makeFile("assets/audio/sfx_ready.ogg", noise);
  fs::create_symlink("/dev/zero", dir.path("assets/audio/sfx_hint.ogg"));
  dir.makeFile("assets/fonts/QuenlockMahjongGlyphs.ttf", noise);
  Desktop desktop;
  const std::string errors = playAndQuit(desktop, {{"VESKARA_ASSET_DIR", dir.path()}});
  EXPECT_THAT(errors, HasSubstr("[fonts] could not register "));
  EXPECT_THAT(errors, HasSubstr("[audio] sfx failed: audio/sfx_ready.ogg ("));
  EXPECT_EQ(std::count(errors.begin(), errors.end(), '\n'), 2) << errors;
}

// --- files that are not pictures of solved boards ---

std::string pngHeaderOfWidth(std::uint32_t width) {
  std::string png("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
  for (const int shift : {24, 16, 8, 0}) png += static_cast<char>(width >> shift & 0xFF);
  return png + std::string("\0\0\x02\x80\x08\x06\0\0\0\0\0\0\0", 13);
}

std::string goodPng() {
  const TempDir dir;
  const ui::CairoSurface picture = support::makePicture(640, 640);
  cairo_surface_write_to_png(picture.get(), dir.path("a.png").c_str());
  return readAll(dir.path("a.png"));
}

struct Shot {
  const char* name;
  std::function<void(const std::string& path)> make;
};

const Shot kShots[] = {
    {"no PNG", [](const std::string& path) { writeFile(path, "no PNG"); }},
    {"half a PNG",
     [](const std::string& path) { writeFile(path, goodPng().substr(0, goodPng().size() / 2)); }},
    {"20,000 pixels wide", [](const std::string& path) { writeFile(path, pngHeaderOfWidth(20000)); }},
    {"a directory", [](const std::string& path) { fs::create_directory(path); }},
    {"a pipe", [](const std::string& path) { makePipe(path); }},
    {"a device", [](const std::string& path) { fs::create_symlink("/dev/zero", path); }},
};

// The gallery draws the boards instead, deletes the records and keeps working.
TEST(Picture, ThatIsNoneIsDrawnAndDeletedLikeAnother) {
  Desktop desktop;
  fs::create_directories(desktop.dataPath("solves"));
  writeFile(desktop.dataPath("progress.json"), window::progressAfterLevel1());
  writeFile(desktop.dataPath("solves.json"), window::solvedLevels(std::size(kShots)));
  const auto shotPath = [&](std::size_t i) {
    return desktop.dataPath("solves/" + std::to_string(i + 1) + "_1.png");
  };
  for (std::size_t i = 0; i < std::size(kShots); ++i) kShots[i].make(shotPath(i));
  Game game(desktop);
  game.type(Key::Space);
  EXPECT_TRUE(window::chooseFromMenu(game, MenuEntry::Gallery));
  for (std::size_t i = 0; i < std::size(kShots); ++i) {
    SCOPED_TRACE(kShots[i].name);
    deleteFirstCard(game);
    const std::size_t left = std::size(kShots) - i - 1;
    EXPECT_TRUE(waitFor([&] { return DataFiles(desktop.dataPath()).solves.size() == left; }));
    // A directory is not a picture of the game's and is not deleted.
    if (fs::is_directory(fs::symlink_status(shotPath(i)))) continue;
    EXPECT_TRUE(waitFor([&] { return !fs::exists(fs::symlink_status(shotPath(i))); }));
  }
  quit(game);
  EXPECT_EQ(game.process().errors(), "");
}

// --- which files are written ---

// The calls that create, write, rename or delete a file or change its attributes.
constexpr const char* kChanges =
    "trace=open,openat,openat2,creat,mkdir,mkdirat,rename,renameat,renameat2,unlink,unlinkat,rmdir,link,"
    "linkat,"
    "symlink,symlinkat,mknod,mknodat,truncate,chmod,fchmodat,chown,lchown,fchownat,utime,utimes,utimensat";

// Other paths that may be opened for writing, each with its reason. Mesa's shaders and fontconfig's caches
// are in the user's cache directory and count as the game's own.
struct Allowed {
  const char* path;  // or the beginning of a path
  const char* reason;
};
const Allowed kAllowed[] = {
    {"/dev/null", "the game holds its standard streams with it"},
    {"/dev/dri/", "Mesa looks for a graphics card"},
    {"/dev/shm/", "memory shared with the display"},
};

std::vector<std::string> quotedIn(const std::string& line) {
  std::vector<std::string> parts;
  std::istringstream text(line);
  for (std::string part; std::getline(text, part, '"');) parts.push_back(part);
  // Keeps only what is inside quotes.
  std::vector<std::string> quoted;
  for (std::size_t i = 1; i < parts.size(); i += 2) quoted.push_back(parts[i]);
  return quoted;
}

// The calls in strace's log, one per line. strace splits a call if another thread's call comes in between;
// this joins the parts.
std::vector<std::string> callsIn(const std::string& log) {
  constexpr std::string_view kCut = " <unfinished ...>";
  constexpr std::string_view kResumed = " resumed>";
  std::vector<std::string> calls;
  std::map<std::string, std::string> begun;  // by thread
  std::istringstream lines(log);
  for (std::string line; std::getline(lines, line);) {
    std::string& beginning = begun[line.substr(0, line.find(' '))];
    const std::size_t resumed = line.find(kResumed);
    if (line.ends_with(kCut)) {
      beginning = line.substr(0, line.size() - kCut.size());
    } else if (resumed != std::string::npos) {
      calls.push_back(std::exchange(beginning, {}) + line.substr(resumed + kResumed.size()));
    } else {
      calls.push_back(line);
    }
  }
  for (const auto& [thread, beginning] : begun) calls.push_back(beginning);
  return calls;
}

// The paths that these calls changed, each with the log line. Leaves out failed calls and opens for reading.
std::map<std::string, std::string> pathsChangedIn(const std::string& log) {
  std::map<std::string, std::string> paths;
  for (const std::string& line : callsIn(log)) {
    const bool isCall = line.find('(') != std::string::npos;
    const bool failed = line.find(" = -1 ") != std::string::npos;
    const bool opens = line.find(" open") != std::string::npos;
    const bool onlyReads = opens && line.find("O_WRONLY") == std::string::npos &&
                           line.find("O_RDWR") == std::string::npos &&
                           line.find("O_CREAT") == std::string::npos;
    if (!isCall || failed || onlyReads) continue;
    for (const std::string& path : quotedIn(line)) paths.emplace(path, line);
  }
  return paths;
}

bool isAllowed(const std::string& path) {
  return std::any_of(std::begin(kAllowed), std::end(kAllowed),
                     [&](const Allowed& allowed) { return path.starts_with(allowed.path); });
}

// Wins a game, looks at its record, deletes it and changes a setting.
void live(Game& game, const std::string& data) {
  const auto solves = [&] { return DataFiles(data).solves.size(); };
  EXPECT_TRUE(window::continueFromMenu(game));
  EXPECT_TRUE(waitFor([&] { return solves() == 1; }));
  game.type(Key::Escape);
  EXPECT_TRUE(window::chooseFromMenu(game, MenuEntry::Gallery));
  deleteFirstCard(game);
  EXPECT_TRUE(waitFor([&] { return solves() == 0; }));
  game.type(Key::Escape);
  EXPECT_TRUE(window::chooseFromMenu(game, MenuEntry::Settings));
  game.click(window::middleOf(settingsControl(game, &screens::SettingsLayout::sound)));
  EXPECT_TRUE(waitFor([&] { return !DataFiles(data).settings["soundOn"].b; }));
  quit(game);
}

TEST(Tracing, SeesNothingChangedButTheGamesOwnFiles) {
  if (!window::canTrace()) GTEST_SKIP() << "strace may not trace here";
  const Home home;
  home.write("save.json", window::savedGame(2));
  home.giveToNobody();
  Desktop desktop;
  Environment environment = home.environment();
  environment.merge(window::traceable(desktop));
  environment["VESKARA_AUTOPLAY"] = "0.02";
  const std::string log = home.path("trace");
  Game game(home.command(window::straceCommand(log, {window::kOnlyTheseCalls, "-e", kChanges})), desktop,
            environment);
  live(game, home.data());
  EXPECT_TRUE(areWhole(home.data()));
  EXPECT_TRUE(fs::is_empty(home.data() + "/solves"));

  const std::map<std::string, std::string> paths = pathsChangedIn(readAll(log));
  EXPECT_TRUE(paths.contains(home.data() + "/progress.json.tmp")) << "strace has seen it";
  for (const auto& [path, line] : paths) {
    const bool isOwn = path.starts_with(home.data()) || path.starts_with(home.path("cache"));
    EXPECT_TRUE(isOwn || isAllowed(path)) << line;
  }
}

}  // namespace
