#include "storage/paths.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "support/own_process.h"
#include "support/temp_dir.h"

namespace {

using support::inOwnProcess;
using support::TempDir;

// This process must not look up the asset root: the result would be remembered for all later tests.
void forgetAssetVariables() {
  for (const char* name : {"SNAP", "APPDIR", "VESKARA_ASSET_DIR"}) unsetenv(name);
}

// The asset root found by a process with only this variable set, started in an empty directory.
std::string rootFoundWith(const char* variable, const std::string& value) {
  const TempDir empty;
  return inOwnProcess([&] {
    forgetAssetVariables();
    setenv(variable, value.c_str(), 1);
    std::filesystem::current_path(empty.path());
    return paths::assetDir();
  });
}

std::string foundBelow(const std::string& root, const std::string& name) {
  return inOwnProcess([&] {
    forgetAssetVariables();
    setenv("VESKARA_ASSET_DIR", root.c_str(), 1);
    return paths::asset(name);
  });
}

void makeAssetTree(const TempDir& dir, const std::string& root) {
  dir.makeDir(root + "/assets/fonts");
  dir.makeDir(root + "/assets/audio");
}

bool isDirectory(const std::string& path) { return std::filesystem::is_directory(path); }

// The installed trees take precedence over those beside the program and in the working directory.
bool gameIsInstalled() {
  return isDirectory("/usr/share/veskara/assets/audio") || isDirectory("/app/share/veskara/assets/audio");
}

struct CloseProgram {
  void operator()(FILE* output) const { pclose(output); }
};

// The asset root found by a copy of print_asset_dir in this directory, with no variable set.
std::string rootFoundByProgramIn(const std::string& dir) {
  const std::string program = dir + "/print_asset_dir";
  std::filesystem::copy_file(PRINT_ASSET_DIR, program);
  return inOwnProcess([&] {
    forgetAssetVariables();
    const std::unique_ptr<FILE, CloseProgram> output(popen(program.c_str(), "r"));
    std::array<char, 4096> root = {};
    return std::string(std::fgets(root.data(), root.size(), output.get()) == nullptr ? "" : root.data());
  });
}

TEST(EnvOr, GivesTheValueOfASetVariable) {
  EXPECT_EQ(inOwnProcess([] {
              setenv("VESKARA_TEST", "value", 1);
              return paths::envOr("VESKARA_TEST", "other");
            }),
            "value");
}

TEST(EnvOr, TakesAnEmptyVariableForAnUnsetOne) {
  EXPECT_EQ(inOwnProcess([] {
              setenv("VESKARA_TEST", "", 1);
              return paths::envOr("VESKARA_TEST", "other");
            }),
            "other");
  EXPECT_EQ(paths::envOr("VESKARA_TEST_UNSET", "other"), "other");
  EXPECT_EQ(paths::envOr("VESKARA_TEST_UNSET"), "");
}

TEST(ExeDir, IsTheDirectoryOfTheTestProgram) {
  EXPECT_EQ(paths::exeDir(), std::filesystem::read_symlink("/proc/self/exe").parent_path().string());
}

TEST(AssetDir, IsTheDirectoryNamedByTheEnvironment) {
  const TempDir dir;
  makeAssetTree(dir, "tree");
  EXPECT_EQ(rootFoundWith("VESKARA_ASSET_DIR", dir.path("tree")), dir.path("tree"));
}

TEST(AssetDir, LiesInUsrShareOfASnapOrAppImage) {
  const TempDir dir;
  makeAssetTree(dir, "usr/share/veskara");
  EXPECT_EQ(rootFoundWith("SNAP", dir.path()), dir.path("usr/share/veskara"));
  EXPECT_EQ(rootFoundWith("APPDIR", dir.path()), dir.path("usr/share/veskara"));
}

TEST(AssetDir, PrefersSnapToAppImageToTheNamedDirectory) {
  const TempDir dir;
  makeAssetTree(dir, "snap/usr/share/veskara");
  makeAssetTree(dir, "appdir/usr/share/veskara");
  makeAssetTree(dir, "named");
  const auto found = [&](bool snap) {
    return inOwnProcess([&] {
      forgetAssetVariables();
      if (snap) setenv("SNAP", dir.path("snap").c_str(), 1);
      setenv("APPDIR", dir.path("appdir").c_str(), 1);
      setenv("VESKARA_ASSET_DIR", dir.path("named").c_str(), 1);
      return paths::assetDir();
    });
  };
  EXPECT_EQ(found(true), dir.path("snap/usr/share/veskara"));
  EXPECT_EQ(found(false), dir.path("appdir/usr/share/veskara"));
}

TEST(AssetDir, SkipsARootWithFontsButNoAudio) {
  const TempDir dir;
  dir.makeDir("usr/share/veskara/assets/fonts");
  makeAssetTree(dir, "named");
  EXPECT_EQ(inOwnProcess([&] {
              forgetAssetVariables();
              setenv("SNAP", dir.path().c_str(), 1);
              setenv("VESKARA_ASSET_DIR", dir.path("named").c_str(), 1);
              return paths::assetDir();
            }),
            dir.path("named"));
}

TEST(AssetDir, SkipsARootWhoseAudioIsAFile) {
  const TempDir dir;
  dir.makeDir("assets/fonts");
  dir.makeFile("assets/audio", "");
  EXPECT_NE(rootFoundWith("VESKARA_ASSET_DIR", dir.path()), dir.path());
}

TEST(AssetDir, FollowsSymbolicLinks) {
  const TempDir dir;
  makeAssetTree(dir, "tree");
  std::filesystem::create_directory_symlink(dir.path("tree"), dir.path("link"));
  EXPECT_EQ(rootFoundWith("VESKARA_ASSET_DIR", dir.path("link")), dir.path("link"));
}

TEST(AssetDir, IsTheWorkingDirectoryIfTheTreeLiesThere) {
  if (gameIsInstalled()) GTEST_SKIP() << "the installed game's tree comes first";
  const TempDir dir;
  makeAssetTree(dir, ".");
  EXPECT_EQ(inOwnProcess([&] {
              forgetAssetVariables();
              std::filesystem::current_path(dir.path());
              return paths::assetDir();
            }),
            ".");
}

TEST(AssetDir, IsTheProgramsDirectoryIfThereIsNoTree) {
  if (gameIsInstalled()) GTEST_SKIP() << "the installed game's tree comes first";
  EXPECT_EQ(rootFoundWith("VESKARA_ASSET_DIR", "/nonexistent"), paths::exeDir());
}

TEST(AssetDir, IgnoresTheEnvironmentAfterTheFirstCall) {
  const TempDir dir;
  makeAssetTree(dir, "first");
  makeAssetTree(dir, "second");
  EXPECT_EQ(inOwnProcess([&] {
              forgetAssetVariables();
              setenv("VESKARA_ASSET_DIR", dir.path("first").c_str(), 1);
              paths::assetDir();
              setenv("VESKARA_ASSET_DIR", dir.path("second").c_str(), 1);
              return paths::assetDir();
            }),
            dir.path("first"));
}

TEST(AssetDir, LiesInShareBesideTheBinOfAnInstalledProgram) {
  const TempDir dir;
  makeAssetTree(dir, "share/veskara");
  makeAssetTree(dir, "bin");
  EXPECT_EQ(rootFoundByProgramIn(dir.makeDir("bin")), dir.path("bin/../share/veskara"));
}

TEST(AssetDir, LiesBesideAnUnpackedProgram) {
  if (gameIsInstalled()) GTEST_SKIP() << "the installed game's tree comes first";
  const TempDir dir;
  makeAssetTree(dir, "game");
  makeAssetTree(dir, ".");
  EXPECT_EQ(rootFoundByProgramIn(dir.path("game")), dir.path("game"));
}

TEST(AssetDir, LiesAboveAProgramInABuildFolder) {
  if (gameIsInstalled()) GTEST_SKIP() << "the installed game's tree comes first";
  const TempDir dir;
  makeAssetTree(dir, ".");
  EXPECT_EQ(rootFoundByProgramIn(dir.makeDir("build")), dir.path("build/.."));
}

TEST(Asset, IsAPathBelowTheRootsAssets) {
  const TempDir dir;
  makeAssetTree(dir, ".");
  EXPECT_EQ(foundBelow(dir.path(), "fonts/a.ttf"), dir.path("assets/fonts/a.ttf"));
}

TEST(Asset, OfAnEmptyNameIsTheTreeWithASlash) {
  const TempDir dir;
  makeAssetTree(dir, ".");
  EXPECT_EQ(foundBelow(dir.path(), ""), dir.path("assets/"));
}

TEST(EnsureDir, CreatesEveryDirectoryOfARelativePath) {
  const TempDir dir;
  inOwnProcess([&] {
    std::filesystem::current_path(dir.path());
    paths::ensureDir("a/b/c");
    return "";
  });
  EXPECT_TRUE(isDirectory(dir.path("a/b/c")));
}

TEST(EnsureDir, PassesOverDoubledSlashes) {
  const TempDir dir;
  paths::ensureDir(dir.path() + "//a///b//");
  EXPECT_TRUE(isDirectory(dir.path("a/b")));
}

TEST(EnsureDir, StartsAtTheWorkingDirectoryForADot) {
  const TempDir dir;
  inOwnProcess([&] {
    std::filesystem::current_path(dir.path());
    paths::ensureDir("./a/./b");
    return "";
  });
  EXPECT_TRUE(isDirectory(dir.path("a/b")));
}

TEST(EnsureDir, TakesABackslashForASeparator) {
  const TempDir dir;
  paths::ensureDir(dir.path("a\\b"));
  EXPECT_TRUE(isDirectory(dir.path("a")));
}

TEST(EnsureDir, LetsEverybodyReadAndTheOwnerWrite) {
  const TempDir dir;
  inOwnProcess([&] {
    umask(0);
    paths::ensureDir(dir.path("a"));
    return "";
  });
  EXPECT_EQ(std::filesystem::status(dir.path("a")).permissions(), static_cast<std::filesystem::perms>(0755));
}

TEST(EnsureDir, KeepsWhatIsThere) {
  const TempDir dir;
  dir.makeFile("a/file", "kept");
  paths::ensureDir(dir.path("a/b"));
  EXPECT_EQ(support::readAll(dir.path("a/file")), "kept");
  EXPECT_TRUE(isDirectory(dir.path("a/b")));
}

TEST(EnsureDir, IsSilentWhereNothingCanBeCreated) {
  const TempDir dir;
  dir.makeFile("file", "");
  testing::internal::CaptureStderr();
  paths::ensureDir(dir.path("file/a"));
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_FALSE(std::filesystem::exists(dir.path("file/a")));
}

}  // namespace
