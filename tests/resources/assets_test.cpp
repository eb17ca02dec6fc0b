#include "resources/assets.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "resources/assets_data.h"
#include "resources/scramble.h"
#include "support/own_process.h"
#include "support/temp_dir.h"

namespace {

using assets_data::kKey;
using assets_data::scrambledByte;
using support::inOwnProcess;
using support::readAll;
using support::TempDir;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

const char* const kFont = "fonts/QuenlockMahjongGlyphs.ttf";

std::string sourceFile(const std::string& name) { return readAll(std::string(VESKARA_ASSETS) + "/" + name); }

// This process must not load an existing asset: a loaded asset would hide the overrides of later tests.

// The result of `act` in a process with `root` as VESKARA_ASSET_DIR.
template <class Act>
std::string withOverrides(const std::string& root, const Act& act) {
  return inOwnProcess([&] {
    setenv("VESKARA_ASSET_DIR", root.c_str(), 1);
    return std::string(act());
  });
}

std::string blobWithOverrides(const std::string& root, const std::string& name) {
  return withOverrides(root, [&] { return assets::blob(name); });
}

// The built-in names whose bytes differ from the source file with `root` as VESKARA_ASSET_DIR.
std::string replacedBy(const std::string& root) {
  return withOverrides(root, [] {
    std::string names;
    for (std::size_t row = 0; row < assets_data::kEntryCount; ++row) {
      const std::string name = assets_data::kEntries[row].name;
      if (assets::blob(name) != sourceFile(name)) names += name + " ";
    }
    return names;
  });
}

// Runs materializeFonts in a process with `base` as cache directory. Returns what it printed, then on a new
// line its result.
std::string materializeIn(const std::string& base) {
  return inOwnProcess([&] {
    unsetenv("VESKARA_ASSET_DIR");
    setenv("XDG_CACHE_HOME", base.c_str(), 1);
    testing::internal::CaptureStderr();
    const std::string dir = assets::materializeFonts();
    return testing::internal::GetCapturedStderr() + dir;
  });
}

TEST(Scramble, TakesTheFirstKeyByteAloneForByte0) { EXPECT_EQ(scrambledByte(0x5A, 0), 0x5A ^ kKey[0]); }

TEST(Scramble, AddsOneToTheFirstKeyByteForByte256) {
  EXPECT_EQ(scrambledByte(0x5A, 256), 0x5A ^ kKey[0] ^ 1);
}

TEST(Scramble, RepeatsTheKeyEveryEightBytes) {
  EXPECT_EQ(scrambledByte(0, 7), kKey[7]);
  EXPECT_EQ(scrambledByte(0, 8), kKey[0]);
  EXPECT_EQ(scrambledByte(0, 255), kKey[7]);
}

TEST(Scramble, CountsBlocksModulo256) {
  EXPECT_EQ(scrambledByte(0, 0xFF00), kKey[0] ^ 0xFF);
  EXPECT_EQ(scrambledByte(0, 0x10000), kKey[0]);
  EXPECT_EQ(scrambledByte(0, 0x10100), kKey[0] ^ 1);
}

TEST(Scramble, UndoesItself) {
  std::string bytes(100'000, 'x');
  assets_data::scramble(bytes);
  EXPECT_NE(bytes, std::string(100'000, 'x'));
  assets_data::scramble(bytes);
  EXPECT_EQ(bytes, std::string(100'000, 'x'));
}

TEST(AssetTable, HoldsTheMusicThenTheEffectsThenTheFont) {
  std::vector<std::string> names;
  for (std::size_t row = 0; row < assets_data::kEntryCount; ++row) {
    names.emplace_back(assets_data::kEntries[row].name);
  }
  EXPECT_THAT(names, ElementsAre("audio/bgm_calm.ogg", "audio/sfx_click.ogg", "audio/sfx_place.ogg",
                                 "audio/sfx_tile.ogg", "audio/sfx_nono.ogg", "audio/sfx_remove.ogg",
                                 "audio/sfx_error.ogg", "audio/sfx_hint.ogg", "audio/sfx_ready.ogg",
                                 "audio/sfx_success.ogg", "audio/sfx_win_glare.ogg", "audio/sfx_star1.ogg",
                                 "audio/sfx_star2.ogg", "audio/sfx_star3.ogg", kFont));
}

TEST(AssetTable, HoldsTheSourceFilesScrambled) {
  for (std::size_t row = 0; row < assets_data::kEntryCount; ++row) {
    const assets_data::Entry& entry = assets_data::kEntries[row];
    std::string expected = sourceFile(entry.name);
    ASSERT_THAT(expected, SizeIs(entry.size)) << entry.name;
    assets_data::scramble(expected);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end(), reinterpret_cast<const char*>(entry.data)))
        << entry.name;
  }
}

TEST(Assets, AreKnownByTheirExactName) {
  EXPECT_TRUE(assets::has("audio/sfx_click.ogg"));
  EXPECT_FALSE(assets::has("AUDIO/SFX_CLICK.OGG"));
  EXPECT_TRUE(assets::has(kFont));
  EXPECT_FALSE(assets::has("FONTS/QUENLOCKMAHJONGGLYPHS.TTF"));
  EXPECT_FALSE(assets::has("QuenlockMahjongGlyphs.ttf"));
  EXPECT_FALSE(assets::has(std::string(kFont) + "x"));
  EXPECT_FALSE(assets::has(""));
}

TEST(Assets, AreTheSourceFilesByteForByte) {
  ASSERT_THAT(sourceFile(kFont), SizeIs(testing::Gt(1000U)));
  EXPECT_THAT(replacedBy(""), IsEmpty());
}

TEST(Assets, StayAtOneAddress) {
  EXPECT_EQ(inOwnProcess([] {
              const std::string* first = &assets::blob(kFont);
              assets::blob("audio/none.ogg");
              return &assets::blob(kFont) == first ? "same" : "moved";
            }),
            "same");
}

TEST(Assets, ComplainOfAnUnknownNameEachTime) {
  testing::internal::CaptureStderr();
  const std::string name = "audio/none.ogg";
  const std::string& first = assets::blob(name);
  const std::string& second = assets::blob(name);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[assets] unknown asset: audio/none.ogg\n[assets] unknown asset: audio/none.ogg\n");
  EXPECT_THAT(first, IsEmpty());
  EXPECT_EQ(&first, &second);
}

TEST(AssetOverride, ReplacesTheFileOfItsNameAndNoOther) {
  const TempDir dir;
  dir.makeFile("assets/audio/sfx_tile.ogg", "another sound");
  EXPECT_EQ(blobWithOverrides(dir.path(), "audio/sfx_tile.ogg"), "another sound");
  EXPECT_EQ(replacedBy(dir.path()), "audio/sfx_tile.ogg ");
}

TEST(AssetOverride, GivesAFileThatIsNotBuiltIn) {
  const TempDir dir;
  dir.makeFile("assets/fonts/Other.ttf", "another font");
  EXPECT_EQ(blobWithOverrides(dir.path(), "fonts/Other.ttf"), "another font");
  EXPECT_EQ(
      withOverrides(dir.path(), [] { return assets::has("fonts/Other.ttf") ? "built in" : "not built in"; }),
      "not built in");
}

TEST(AssetOverride, MayBeEmpty) {
  const TempDir dir;
  dir.makeFile(std::string("assets/") + kFont, "");
  EXPECT_THAT(blobWithOverrides(dir.path(), kFont), IsEmpty());
}

TEST(AssetOverride, MayBeLongerThanOneRead) {
  const TempDir dir;
  const std::string bytes = std::string(150'000, 'a') + "end";
  dir.makeFile(std::string("assets/") + kFont, bytes);
  EXPECT_EQ(blobWithOverrides(dir.path(), kFont), bytes);
}

TEST(AssetOverride, IsNoDirectory) {
  const TempDir dir;
  dir.makeDir(std::string("assets/") + kFont);
  EXPECT_EQ(blobWithOverrides(dir.path(), kFont), sourceFile(kFont));
}

TEST(AssetOverride, IsNoPipeToWaitFor) {
  const TempDir dir;
  dir.makeDir("assets/fonts");
  ASSERT_EQ(mkfifo(dir.path(std::string("assets/") + kFont).c_str(), 0600), 0);
  EXPECT_EQ(blobWithOverrides(dir.path(), kFont), sourceFile(kFont));
}

TEST(AssetOverride, IsLookedForOnce) {
  const TempDir dir;
  EXPECT_EQ(withOverrides(dir.path(),
                          [&] {
                            const std::string first = assets::blob(kFont);
                            dir.makeFile(std::string("assets/") + kFont, "too late");
                            return assets::blob(kFont) == first ? "kept" : "replaced";
                          }),
            "kept");
}

TEST(MaterializeFonts, WritesTheFontBelowTheCacheDirectory) {
  const TempDir dir;
  EXPECT_EQ(materializeIn(dir.path("new/cache")), dir.path("new/cache/veskara/fonts"));
  EXPECT_EQ(readAll(dir.path("new/cache/veskara/fonts/QuenlockMahjongGlyphs.ttf")), sourceFile(kFont));
}

TEST(MaterializeFonts, TakesTheHomeDirectoryWithoutACacheVariable) {
  const TempDir dir;
  EXPECT_EQ(inOwnProcess([&] {
              setenv("XDG_CACHE_HOME", "", 1);
              setenv("HOME", dir.path().c_str(), 1);
              return assets::materializeFonts();
            }),
            dir.path(".cache/veskara/fonts"));
  EXPECT_TRUE(std::filesystem::exists(dir.path(".cache/veskara/fonts/QuenlockMahjongGlyphs.ttf")));
}

TEST(MaterializeFonts, TakesTheWorkingDirectoryWithoutAHome) {
  const TempDir dir;
  EXPECT_EQ(inOwnProcess([&] {
              unsetenv("XDG_CACHE_HOME");
              unsetenv("HOME");
              std::filesystem::current_path(dir.path());
              return assets::materializeFonts();
            }),
            "./.cache/veskara/fonts");
  EXPECT_TRUE(std::filesystem::exists(dir.path(".cache/veskara/fonts/QuenlockMahjongGlyphs.ttf")));
}

TEST(MaterializeFonts, OverwritesAStaleFontOfAnotherSize) {
  const TempDir dir;
  const std::string target = dir.makeFile("veskara/fonts/QuenlockMahjongGlyphs.ttf", std::string(9036, 'x'));
  materializeIn(dir.path());
  EXPECT_EQ(readAll(target), sourceFile(kFont));
}

TEST(MaterializeFonts, LeavesAFontOfTheRightSizeAlone) {
  const TempDir dir;
  const std::string sameSize(sourceFile(kFont).size(), 'x');
  const std::string target = dir.makeFile("veskara/fonts/QuenlockMahjongGlyphs.ttf", sameSize);
  materializeIn(dir.path());
  EXPECT_EQ(readAll(target), sameSize);
}

TEST(MaterializeFonts, GoesOnWhereTheCacheCannotBeWritten) {
  const TempDir dir;
  const std::string file = dir.makeFile("file", "");
  EXPECT_EQ(materializeIn(file), "[assets] cannot write " + file +
                                     "/veskara/fonts/QuenlockMahjongGlyphs.ttf\n" + file + "/veskara/fonts");
}

TEST(MaterializeFonts, ReplacesAPipe) {
  const TempDir dir;
  const std::string target = dir.makeDir("veskara/fonts") + "/QuenlockMahjongGlyphs.ttf";
  ASSERT_EQ(mkfifo(target.c_str(), 0600), 0);
  EXPECT_EQ(materializeIn(dir.path()), dir.path("veskara/fonts"));
  EXPECT_EQ(readAll(target), sourceFile(kFont));
}

TEST(MaterializeFonts, ComplainsOfAFontCutShortByAFullDisk) {
  const TempDir dir;
  std::filesystem::create_directories(dir.path("veskara/fonts"));
  const std::string target = dir.path("veskara/fonts/QuenlockMahjongGlyphs.ttf");
  std::filesystem::create_symlink("/dev/full", target);
  EXPECT_EQ(materializeIn(dir.path()), "[assets] cannot write " + target + "\n" + dir.path("veskara/fonts"));
}

}  // namespace
