// Tests the directories of the player's files, and the settings. A process looks the directory up only once,
// so each use runs in a process of its own.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>

#include "storage/storage.h"
#include "support/own_process.h"
#include "support/temp_dir.h"

namespace {

using store::Settings;
using support::inOwnProcess;

constexpr const char* kSettingsFile = "veskara/settings.json";

// All fields as text, to compare records and to pass them between processes.
std::string textOf(const Settings& s) {
  return s.language + " " + std::to_string(s.soundOn) + " " + std::to_string(s.musicVolume) + " " +
         std::to_string(s.sfxVolume) + " " + std::to_string(s.fullscreen) + " " +
         std::to_string(s.maximized) + " " + std::to_string(s.windowW) + " " + std::to_string(s.windowH) +
         " " + std::to_string(s.windowX) + " " + std::to_string(s.windowY);
}

std::string inDataHome(const std::string& home, const std::function<std::string()>& act) {
  return inOwnProcess([&] {
    setenv("XDG_DATA_HOME", home.c_str(), 1);
    return act();
  });
}

std::string loadedFrom(const std::string& home) {
  return inDataHome(home, [] { return textOf(store::loadSettings()); });
}

// The settings loaded if the file holds `text`.
std::string loaded(const std::string& text) {
  const support::TempDir home;
  home.makeFile(kSettingsFile, text);
  return loadedFrom(home.path());
}

std::string savedTo(const std::string& home, const Settings& settings) {
  return inDataHome(home, [&] {
    testing::internal::CaptureStderr();
    store::saveSettings(settings);
    return testing::internal::GetCapturedStderr();
  });
}

Settings everythingChanged() {
  Settings s;
  s.language = "zh-TW";
  s.soundOn = false;
  s.musicVolume = 0.1;
  s.sfxVolume = 1.0 / 3;
  s.fullscreen = true;
  s.maximized = true;
  s.windowW = 801;
  s.windowH = 602;
  s.windowX = -5;
  s.windowY = 40;
  return s;
}

template <class Change>
std::string defaultsBut(const Change& change) {
  Settings s;
  change(s);
  return textOf(s);
}

const std::string kDefaults = textOf(Settings());

TEST(DataDir, LiesBelowTheDataHome) {
  EXPECT_EQ(inDataHome("/some/where", store::dataDir), "/some/where/veskara");
  EXPECT_EQ(inDataHome("/some/where", store::solvesDir), "/some/where/veskara/solves");
}

TEST(DataDir, LiesBelowHomeWhenTheDataHomeIsEmpty) {
  EXPECT_EQ(inDataHome("",
                       [] {
                         setenv("HOME", "/home/you", 1);
                         return store::dataDir();
                       }),
            "/home/you/.local/share/veskara");
}

TEST(DataDir, LiesBelowTheWorkingDirectoryWithoutEither) {
  EXPECT_EQ(inOwnProcess([] {
              unsetenv("HOME");
              unsetenv("XDG_DATA_HOME");
              return store::dataDir();
            }),
            "./.local/share/veskara");
}

TEST(DataDir, IsMadeWithItsSolves) {
  const support::TempDir home;
  inDataHome(home.path("not/yet"), [] {
    store::ensureDataDirs();
    return "";
  });
  EXPECT_TRUE(std::filesystem::is_directory(home.path("not/yet/veskara/solves")));
}

TEST(LoadSettings, GivesTheDefaultsWithoutAFile) {
  const support::TempDir home;
  EXPECT_EQ(loadedFrom(home.path()), kDefaults);
}

TEST(LoadSettings, GivesTheDefaultsForWhatIsNoObject) {
  for (const char* text : {"", "[]", "[1,2]", "3", "\"x\"", "{\"soundOn\":false"})
    EXPECT_EQ(loaded(text), kDefaults);
}

TEST(LoadSettings, BringsVolumesIntoTheirRange) {
  EXPECT_EQ(loaded(R"({"musicVolume":3})"), defaultsBut([](Settings& s) { s.musicVolume = 1; }));
  EXPECT_EQ(loaded(R"({"musicVolume":-0.5})"), defaultsBut([](Settings& s) { s.musicVolume = 0; }));
  EXPECT_EQ(loaded(R"({"sfxVolume":inf})"), kDefaults);
  EXPECT_EQ(loaded(R"({"sfxVolume":-inf})"), defaultsBut([](Settings& s) { s.sfxVolume = 0; }));
  EXPECT_EQ(loaded(R"({"musicVolume":nan,"sfxVolume":-nan})"), kDefaults);
}

TEST(LoadSettings, KeepsTheWindowLargeEnough) {
  EXPECT_EQ(loaded(R"({"windowW":200})"), defaultsBut([](Settings& s) { s.windowW = 640; }));
  EXPECT_EQ(loaded(R"({"windowH":100})"), defaultsBut([](Settings& s) { s.windowH = 480; }));
  EXPECT_EQ(loaded(R"({"windowW":800.6})"), defaultsBut([](Settings& s) { s.windowW = 801; }));
  EXPECT_EQ(loaded(R"({"windowW":1e300})"), defaultsBut([](Settings& s) { s.windowW = 640; }));
}

TEST(LoadSettings, LeavesOutMembersOfAWrongKind) {
  EXPECT_EQ(loaded(R"({"language":5,"soundOn":0,"musicVolume":"1","fullscreen":1,"maximized":"true",)"
                   R"("windowX":"3","windowY":null,"windowW":[],"windowH":{}})"),
            kDefaults);
}

TEST(LoadSettings, TakesAnyPositionAndLanguage) {
  EXPECT_EQ(loaded(R"({"windowX":-3000,"windowY":9000,"language":"xx"})"), defaultsBut([](Settings& s) {
              s.windowX = -3000;
              s.windowY = 9000;
              s.language = "xx";
            }));
}

TEST(SaveSettings, IsReadBackInEveryField) {
  const support::TempDir home;
  EXPECT_EQ(savedTo(home.path(), everythingChanged()), "");
  EXPECT_EQ(loadedFrom(home.path()), textOf(everythingChanged()));
}

TEST(SaveSettings, WritesOneLineOfTenMembersInTheOrderOfTheirNames) {
  const support::TempDir home;
  savedTo(home.path(), everythingChanged());
  EXPECT_EQ(
      support::readAll(home.path(kSettingsFile)),
      R"({"fullscreen":true,"language":"zh-TW","maximized":true,"musicVolume":0.10000000000000001,)"
      R"("sfxVolume":0.33333333333333331,"soundOn":false,"windowH":602,"windowW":801,"windowX":-5,"windowY":40})");
}

TEST(SaveSettings, SaysSoWhenItFailsAndKeepsTheOldFile) {
  const support::TempDir home;
  const std::string path = home.makeFile(kSettingsFile, "{}");
  home.makeFile(std::string(kSettingsFile) + ".tmp/somebodys", "");  // blocks the temporary name
  EXPECT_EQ(savedTo(home.path(), Settings()), "[store] konnte " + path + " nicht schreiben\n");
  EXPECT_EQ(support::readAll(path), "{}");
}

// Reported only once: after that there is a readable file.
TEST(SaveSettings, SetsAsideWhatCannotBeRead) {
  const support::TempDir home;
  const std::string path = home.path(kSettingsFile);
  for (const std::string name : {"1", "2"}) {
    home.makeFile(std::string(kSettingsFile) + "/kept", name);
    const std::string aside = path + ".unread" + name;
    EXPECT_EQ(savedTo(home.path(), everythingChanged()),
              "[store] konnte " + path + " nicht lesen, aufgehoben als " + aside + "\n");
    EXPECT_EQ(loadedFrom(home.path()), textOf(everythingChanged()));
    EXPECT_EQ(savedTo(home.path(), everythingChanged()), "");
    EXPECT_EQ(support::readAll(aside + "/kept"), name);
    std::filesystem::remove(path);
  }
}

TEST(SaveSettings, SaysSoWithoutADirectory) {
  EXPECT_EQ(savedTo("/dev/null", Settings()),
            "[store] konnte /dev/null/veskara/settings.json nicht schreiben\n");
}

// Regression: a program killed between removing the old file and renaming the new one lost the player's
// settings.
TEST(LoadSettings, ReadsAWholeTemporaryWhenTheFileIsMissing) {
  const support::TempDir home;
  home.makeFile(std::string(kSettingsFile) + ".tmp", R"({"soundOn":false})");
  EXPECT_EQ(loadedFrom(home.path()), defaultsBut([](Settings& s) { s.soundOn = false; }));
}

TEST(LoadSettings, IgnoresATornTemporary) {
  const support::TempDir home;
  home.makeFile(std::string(kSettingsFile) + ".tmp", R"({"soundOn":false)");
  EXPECT_EQ(loadedFrom(home.path()), kDefaults);
}

TEST(LoadSettings, IgnoresTheTemporaryWhenThereIsAFile) {
  const support::TempDir home;
  home.makeFile(kSettingsFile, "{}");
  home.makeFile(std::string(kSettingsFile) + ".tmp", R"({"soundOn":false})");
  EXPECT_EQ(loadedFrom(home.path()), kDefaults);
}

}  // namespace
