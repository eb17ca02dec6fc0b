#include "resources/audio.h"

#include <SDL.h>
#include <SDL_mixer.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "resources/piped_device.h"
#include "support/own_process.h"
#include "support/temp_dir.h"

namespace {

using audio::Sfx;
using support::inOwnProcess;
using support::kBuffer;
using support::kLatency;
using support::Piece;
using support::pieces;
using support::PipedDevice;
using support::readAll;
using support::Samples;
using support::TempDir;
using support::trimmed;
using support::wav;
using testing::ElementsAre;
using testing::MatchesRegex;

struct SoundFile {
  Sfx effect;
  const char* name;
};
constexpr std::array<SoundFile, 13> kEffects = {{{Sfx::Click, "audio/sfx_click.ogg"},
                                                 {Sfx::Place, "audio/sfx_place.ogg"},
                                                 {Sfx::Tile, "audio/sfx_tile.ogg"},
                                                 {Sfx::NoNo, "audio/sfx_nono.ogg"},
                                                 {Sfx::Remove, "audio/sfx_remove.ogg"},
                                                 {Sfx::Error, "audio/sfx_error.ogg"},
                                                 {Sfx::Hint, "audio/sfx_hint.ogg"},
                                                 {Sfx::Ready, "audio/sfx_ready.ogg"},
                                                 {Sfx::Success, "audio/sfx_success.ogg"},
                                                 {Sfx::WinGlare, "audio/sfx_win_glare.ogg"},
                                                 {Sfx::Star1, "audio/sfx_star1.ogg"},
                                                 {Sfx::Star2, "audio/sfx_star2.ogg"},
                                                 {Sfx::Star3, "audio/sfx_star3.ogg"}}};
constexpr const char* kMusic = "audio/bgm_calm.ogg";

// Chunk size in frames that the last opened device was asked for.
int askedChunk = 0;

}  // namespace

// Replaces SDL_mixer's function in this program.
int Mix_OpenAudio(int frequency, Uint16 format, int channels, int chunk) {
  static auto* const openAudio =
      reinterpret_cast<decltype(Mix_OpenAudio)*>(dlsym(RTLD_NEXT, "Mix_OpenAudio"));
  askedChunk = chunk;
  return openAudio(frequency, format, channels, chunk);
}

namespace {

// The sounds of most tests: every effect has its own level, and the music alternates. All levels are
// multiples of the mixer's full volume, so that every volume comes out exactly.
constexpr std::size_t kEffectFrames = 20 * kBuffer;
constexpr std::size_t kMusicHalf = 30 * kBuffer + 77;
constexpr int kMusicLevel = 100 * MIX_MAX_VOLUME;
constexpr int levelOf(Sfx effect) { return 8 * MIX_MAX_VOLUME * (static_cast<int>(effect) + 1); }
constexpr int kClickLevel = levelOf(Sfx::Click);

std::string sourceFile(const std::string& name) { return readAll(std::string(VESKARA_ASSETS) + "/" + name); }

std::string replaceFile(const TempDir& dir, const std::string& name, const std::string& bytes) {
  return dir.makeFile("assets/" + name, bytes);
}

void makePlainSounds(const TempDir& dir) {
  for (const auto& [effect, name] : kEffects) replaceFile(dir, name, wav({{levelOf(effect), kEffectFrames}}));
  replaceFile(dir, kMusic, wav({{kMusicLevel, kMusicHalf}, {-kMusicLevel, kMusicHalf}}));
}

// Volumes that a caller may pass, and the mixer's volume for each.
struct VolumeCase {
  double asked;
  int mixer;
};
constexpr VolumeCase kVolumes[] = {{0.5, 64},  {0.999, 127}, {1, 128},
                                   {1.7, 128}, {0.01, 1},    {std::numeric_limits<double>::infinity(), 128}};
constexpr double kSilentVolumes[] = {0, -0.5, std::numeric_limits<double>::quiet_NaN()};

// Runs `act` in a process with `root` as VESKARA_ASSET_DIR and a dummy audio device. Returns what audio::init
// printed and the result of `act`.
template <class Act>
std::string withFiles(const std::string& root, const Act& act) {
  return inOwnProcess([&] {
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    setenv("VESKARA_ASSET_DIR", root.c_str(), 1);
    testing::internal::CaptureStderr();
    const bool usable = audio::init();
    return testing::internal::GetCapturedStderr() + (usable ? act() : "no sound");
  });
}

// A plus or a minus for each effect, whether it can be played. Then the same for the music, in words.
std::string playable() {
  std::string marks;
  for (const auto& [effect, name] : kEffects) {
    const int before = Mix_Playing(-1);
    audio::play(effect);
    marks += Mix_Playing(-1) > before ? '+' : '-';
  }
  audio::startMusic();
  return marks + (Mix_PlayingMusic() != 0 ? " with music" : " without music");
}

// The tests that need a process without loaded sounds come first. The later ones override the built-in files.

TEST(AudioDefaults, AreQuietMusicFullEffectsSwitchedOn) {
  const TempDir files;
  makePlainSounds(files);
  EXPECT_EQ(inOwnProcess([&] {
              setenv("VESKARA_ASSET_DIR", files.path().c_str(), 1);
              PipedDevice device;
              audio::init();
              audio::play(Sfx::Click);
              const int effect = device.level();
              audio::startMusic();
              return std::to_string(effect) + ", " + std::to_string(device.level() - effect);
            }),
            std::to_string(kClickLevel) + ", " + std::to_string(kMusicLevel / 4));
}

TEST(AudioDevice, MissingCostsOneLineAndTheSound) {
  const std::string said = inOwnProcess([] {
    setenv("SDL_AUDIODRIVER", "nonexistent", 1);
    testing::internal::CaptureStderr();
    const bool usable = audio::init();
    audio::play(Sfx::Click);
    audio::startMusic();
    audio::setMusicVolume(0.5);
    audio::setSfxVolume(0.5);
    audio::setEnabled(false);
    audio::setEnabled(true);
    audio::shutdown();
    return testing::internal::GetCapturedStderr() + (usable ? "usable" : "unusable");
  });
  EXPECT_THAT(said, MatchesRegex("\\[audio\\] no audio subsystem: [^\n]*nonexistent[^\n]*\nunusable"));
}

TEST(AudioDevice, ThatCannotBeOpenedMayBeThereLater) {
  const TempDir dir;
  const std::string said = inOwnProcess([&] {
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", dir.path("none/sound").c_str(), 1);
    testing::internal::CaptureStderr();
    const bool usable = audio::init();
    audio::play(Sfx::Click);
    audio::startMusic();
    const std::string complaint = testing::internal::GetCapturedStderr();
    PipedDevice device;
    return complaint + (usable ? "usable" : "unusable") + (audio::init() ? ", usable" : ", unusable");
  });
  EXPECT_THAT(said, MatchesRegex("\\[audio\\] Mix_OpenAudio: [^\n]+\nunusable, usable"));
}

TEST(AudioFiles, DamagedOnesCostALineEachAndTheirSound) {
  const TempDir dir;
  replaceFile(dir, "audio/sfx_click.ogg", "no sound at all");
  const std::string whole = sourceFile("audio/sfx_hint.ogg");
  replaceFile(dir, "audio/sfx_hint.ogg", whole.substr(0, 1000));
  replaceFile(dir, kMusic, std::string(5000, 'm'));
  EXPECT_THAT(withFiles(dir.path(), playable),
              MatchesRegex("\\[audio\\] sfx failed: audio/sfx_click.ogg \\([^\n]+\\)\n"
                           "\\[audio\\] sfx failed: audio/sfx_hint.ogg \\([^\n]+\\)\n"
                           "\\[audio\\] bgm failed \\([^\n]+\\)\n"
                           "-\\+\\+\\+\\+\\+-\\+\\+\\+\\+\\+\\+ without music"));
}

TEST(AudioFiles, AnEmptyEffectIsSilentWithoutAWord) {
  const TempDir dir;
  replaceFile(dir, "audio/sfx_star3.ogg", "");
  EXPECT_EQ(withFiles(dir.path(), playable), "++++++++++++- with music");
}

TEST(AudioFiles, EmptyMusicIsReported) {
  const TempDir dir;
  replaceFile(dir, kMusic, "");
  EXPECT_THAT(withFiles(dir.path(), playable),
              MatchesRegex("\\[audio\\] bgm failed \\([^\n]*\\)\n\\+{13} without music"));
}

TEST(AudioFiles, BuiltInOnesAllPlayWithoutAWord) {
  EXPECT_EQ(withFiles("", playable), "+++++++++++++ with music");
}

struct FreeChunk {
  void operator()(Mix_Chunk* chunk) const { Mix_FreeChunk(chunk); }
};

// A sound file's bytes, decoded for the open device.
Samples decoded(const std::string& bytes) {
  SDL_RWops* stream = SDL_RWFromConstMem(bytes.data(), static_cast<int>(bytes.size()));
  const std::unique_ptr<Mix_Chunk, FreeChunk> chunk(Mix_LoadWAV_RW(stream, 1));
  if (!chunk) return {};
  const auto* samples = reinterpret_cast<const std::int16_t*>(chunk->abuf);
  return {samples, samples + chunk->alen / sizeof(std::int16_t)};
}

// Whether `file` begins with `played`. Silence of the device before it is ignored.
bool beginsWith(const Samples& file, const Samples& played) {
  const Samples expected = trimmed(file);
  const Samples heard = trimmed(played);
  return heard.size() > 2 * kBuffer && heard.size() <= expected.size() &&
         std::equal(heard.begin(), heard.end(), expected.begin());
}

TEST(AudioFiles, BuiltInOnesAreHeardSampleBySample) {
  EXPECT_EQ(inOwnProcess([] {
              unsetenv("VESKARA_ASSET_DIR");
              PipedDevice device;
              audio::init();
              audio::setMusicVolume(1);
              std::string wrong;
              for (const auto& [effect, name] : kEffects) {
                const Samples file = decoded(sourceFile(name));
                audio::play(effect);
                const Samples heard = trimmed(device.listen(file.size() / 2 + kLatency));
                if (heard.empty() || heard != trimmed(file)) wrong += std::string(name) + " ";
              }
              audio::startMusic();
              const Samples beginning = decoded(sourceFile(kMusic).substr(0, 200'000));
              if (!beginsWith(beginning, device.listen(3 * 44100))) wrong += kMusic;
              return wrong;
            }),
            "");
}

TEST(AudioFiles, BuiltInMusicGoesOnAtItsSeamSampleBySample) {
  EXPECT_EQ(inOwnProcess([] {
              unsetenv("VESKARA_ASSET_DIR");
              PipedDevice device;
              audio::init();
              audio::setMusicVolume(1);
              const Samples file = decoded(sourceFile(kMusic));
              audio::startMusic();
              Mix_SetMusicPosition(static_cast<double>(file.size()) / 2 / 44100 - 2);
              const Samples heard = device.listen(4 * 44100 + kLatency);
              const auto lastSecond = file.end() - 2 * 44100;
              const auto found = std::search(heard.begin(), heard.end(), lastSecond, file.end());
              if (found == heard.end()) return "its end is not heard";
              const Samples after(found + (file.end() - lastSecond), heard.end());
              if (after.size() < 44100) return "too little is heard after its end";
              return std::equal(after.begin(), after.end(), file.begin()) ? "" : "it does not begin at once";
            }),
            "");
}

// A signal may end the program at any point.
TEST(AudioDeathTest, MayBeShutDownWhenTheProgramHasEnded) {
  const auto endWhilePlaying = [] {
    std::atexit(audio::shutdown);
    setenv("SDL_AUDIODRIVER", "dummy", 1);
    if (!audio::init()) std::_Exit(1);
    audio::startMusic();
    audio::play(Sfx::Click);
    std::exit(0);
  };
  EXPECT_EXIT(endWhilePlaying(), testing::ExitedWithCode(0), "^$");
}

class Audio : public testing::Test {
 protected:
  Audio() {
    makePlainSounds(files);
    setenv("VESKARA_ASSET_DIR", files.path().c_str(), 1);
    audio::setMusicVolume(1);
    audio::setSfxVolume(1);
  }
  ~Audio() override {
    device.reset();
    audio::shutdown();
    audio::setEnabled(false);  // also forgets the music
    audio::setEnabled(true);
  }

  void open() {
    device.emplace();
    ASSERT_TRUE(audio::init());
  }
  // Everything heard until the effect just started has ended.
  Samples hearEffect() { return device->listen(kEffectFrames + kLatency); }
  std::vector<Samples> hearTiles(int count) {
    std::vector<Samples> tiles;
    for (int i = 0; i < count; ++i) {
      audio::play(Sfx::Tile);
      tiles.push_back(trimmed(hearEffect()));
    }
    return tiles;
  }

  TempDir files;
  std::optional<PipedDevice> device;
};

TEST_F(Audio, EachEffectIsHeardOnceFromItsOwnFile) {
  open();
  for (const auto& [effect, name] : kEffects) {
    audio::play(effect);
    EXPECT_THAT(pieces(trimmed(hearEffect())), ElementsAre(Piece{levelOf(effect), kEffectFrames})) << name;
  }
}

TEST_F(Audio, EffectsAreHeardTogether) {
  open();
  audio::play(Sfx::Click);
  audio::play(Sfx::Place);
  audio::play(Sfx::Place);
  EXPECT_EQ(device->level(), kClickLevel + 2 * levelOf(Sfx::Place));
}

TEST_F(Audio, EffectsPlayAtTheirVolume) {
  open();
  for (const auto& [asked, mixer] : kVolumes) {
    audio::setSfxVolume(asked);
    audio::play(Sfx::Click);
    EXPECT_THAT(pieces(trimmed(hearEffect())), ElementsAre(Piece{8 * mixer, kEffectFrames})) << asked;
  }
}

TEST_F(Audio, AnEffectKeepsTheVolumeItBeganWith) {
  open();
  audio::play(Sfx::Click);
  audio::setSfxVolume(0.5);
  EXPECT_EQ(device->level(), kClickLevel);
  audio::play(Sfx::Place);
  EXPECT_EQ(device->level(), kClickLevel + levelOf(Sfx::Place) / 2);
}

TEST_F(Audio, EffectsWithoutVolumeTakeNoChannel) {
  open();
  for (const double silent : kSilentVolumes) {
    audio::setSfxVolume(silent);
    audio::play(Sfx::Click);
    EXPECT_EQ(Mix_Playing(-1), 0) << silent;
  }
}

TEST_F(Audio, TheEffectTooManyIsDropped) {
  open();
  for (int i = 0; i < 24; ++i) audio::play(Sfx::Click);
  audio::play(Sfx::Place);
  EXPECT_EQ(Mix_Playing(-1), 24);
  EXPECT_EQ(device->level(), 24 * kClickLevel);
  device->listen(kEffectFrames);
  audio::play(Sfx::Place);
  EXPECT_EQ(device->level(), levelOf(Sfx::Place));
}

TEST_F(Audio, WhatIsNoEffectIsNotHeard) {
  open();
  audio::play(static_cast<Sfx>(13));
  audio::play(static_cast<Sfx>(-1));
  EXPECT_EQ(Mix_Playing(-1), 0);
}

TEST_F(Audio, EffectsPlayedBeforeInitAreNotHeard) {
  audio::play(Sfx::Click);
  open();
  EXPECT_THAT(trimmed(hearEffect()), testing::IsEmpty());
}

TEST_F(Audio, AnEffectSoundsTheSameEachTime) {
  open();
  for (int i = 0; i < 3; ++i) {
    audio::play(Sfx::Place);
    EXPECT_THAT(pieces(trimmed(hearEffect())), ElementsAre(Piece{levelOf(Sfx::Place), kEffectFrames}));
  }
}

TEST_F(Audio, ATileNeverSoundsLikeTheOneBefore) {
  open();
  const std::vector<Samples> tiles = hearTiles(40);
  EXPECT_EQ(std::adjacent_find(tiles.begin(), tiles.end()), tiles.end());
  EXPECT_GE(std::set(tiles.begin(), tiles.end()).size(), 5U);
}

TEST_F(Audio, TilesAreChosenInTheSameOrderEachTime) {
  open();
  const std::vector<Samples> tiles = hearTiles(8);
  device.reset();
  audio::shutdown();
  open();
  EXPECT_EQ(hearTiles(8), tiles);
}

// A sound with a higher pitch is shorter.
TEST_F(Audio, TilesDifferInPitchByNoMoreThan3Percent) {
  open();
  std::set<std::size_t> lengths;
  for (const Samples& tile : hearTiles(40)) lengths.insert(tile.size() / 2);
  EXPECT_GE(lengths.size(), 5U);
  EXPECT_GE(static_cast<double>(*lengths.begin()) / kEffectFrames, 0.97);
  EXPECT_LE(static_cast<double>(*lengths.rbegin()) / kEffectFrames, 1.03);
}

TEST_F(Audio, TilesDifferInLevelAndNoneIsLouderThanTheFile) {
  open();
  std::set<int> levels;
  for (const Samples& tile : hearTiles(40)) levels.insert(tile[tile.size() / 2]);
  EXPECT_GE(levels.size(), 5U);
  EXPECT_GE(*levels.begin(), levelOf(Sfx::Tile) / 2);
  EXPECT_EQ(*levels.rbegin(), levelOf(Sfx::Tile));
}

// A bright sound reaches its level at once, a dull one gradually.
TEST_F(Audio, TilesDifferInBrightness) {
  open();
  std::set<std::ptrdiff_t> steps;
  for (const Samples& tile : hearTiles(40)) {
    const auto nearlyThere = [level = 0.95 * tile[tile.size() / 2]](std::int16_t x) { return x > level; };
    steps.insert(std::find_if(tile.begin(), tile.end(), nearlyThere) - tile.begin());
  }
  EXPECT_GE(steps.size(), 3U);
}

TEST_F(Audio, MusicIsRepeatedWithoutAGap) {
  open();
  audio::startMusic();
  std::vector<Piece> heard = pieces(trimmed(device->listen(6 * kMusicHalf + kLatency)));
  ASSERT_THAT(heard, testing::SizeIs(testing::Ge(6U)));
  heard.resize(5);
  const Piece up = {kMusicLevel, kMusicHalf};
  const Piece down = {-kMusicLevel, kMusicHalf};
  EXPECT_THAT(heard, ElementsAre(up, down, up, down, up));
}

TEST_F(Audio, MusicStartedAgainGoesOn) {
  open();
  audio::startMusic();
  device->listen(kMusicHalf);
  ASSERT_EQ(device->level(), -kMusicLevel);
  audio::startMusic();
  EXPECT_EQ(device->level(), -kMusicLevel);
}

TEST_F(Audio, MusicIsPlayedAtItsVolume) {
  for (const auto& [asked, mixer] : kVolumes) {
    open();
    audio::startMusic();
    audio::setMusicVolume(asked);
    EXPECT_EQ(Mix_VolumeMusic(-1), mixer) << asked;
    EXPECT_EQ(device->level(), 100 * mixer) << asked;
    device.reset();
    audio::shutdown();
  }
}

TEST_F(Audio, MusicWithoutVolumeIsSilent) {
  open();
  for (const double silent : kSilentVolumes) {
    audio::setMusicVolume(1);
    audio::setMusicVolume(silent);
    EXPECT_EQ(Mix_VolumeMusic(-1), 0) << silent;
  }
}

TEST_F(Audio, VolumesGivenBeforeInitHold) {
  audio::setMusicVolume(0.25);
  audio::setSfxVolume(0.5);
  open();
  audio::startMusic();
  audio::play(Sfx::Click);
  EXPECT_EQ(device->level(), kMusicLevel / 4 + kClickLevel / 2);
}

TEST_F(Audio, SwitchedOffStopsTheMusicAndLetsEffectsRunOut) {
  open();
  audio::startMusic();
  audio::play(Sfx::Click);
  ASSERT_EQ(device->level(), kMusicLevel + kClickLevel);
  audio::setEnabled(false);
  const std::vector<Piece> rest = pieces(hearEffect());
  ASSERT_THAT(rest, testing::SizeIs(testing::Ge(2U)));
  EXPECT_EQ(rest.back().level, 0);
  EXPECT_EQ(rest[rest.size() - 2].level, kClickLevel);
}

TEST_F(Audio, SwitchedOffPlaysNoEffects) {
  open();
  audio::setEnabled(false);
  audio::play(Sfx::Click);
  EXPECT_EQ(Mix_Playing(-1), 0);
  audio::setEnabled(true);
  audio::play(Sfx::Click);
  EXPECT_EQ(device->level(), kClickLevel);
}

TEST_F(Audio, SwitchedOnAgainHasNoMusicUntilItIsStarted) {
  open();
  audio::startMusic();
  audio::setEnabled(false);
  audio::setEnabled(true);
  EXPECT_EQ(device->level(), 0);
  audio::startMusic();
  EXPECT_EQ(device->level(), kMusicLevel);
}

TEST_F(Audio, MusicStartedWhileOffBeginsWhenSwitchedOn) {
  open();
  audio::setEnabled(false);
  audio::startMusic();
  EXPECT_EQ(device->level(), 0);
  audio::setEnabled(true);
  EXPECT_EQ(device->level(), kMusicLevel);
}

TEST_F(Audio, SwitchedOffBeforeInitStaysOff) {
  audio::startMusic();
  audio::setEnabled(false);
  open();
  audio::startMusic();
  audio::play(Sfx::Click);
  EXPECT_EQ(device->level(), 0);
}

TEST_F(Audio, MusicStartedBeforeInitBeginsAtTheNextStart) {
  audio::startMusic();
  open();
  EXPECT_EQ(device->level(), 0);
  audio::startMusic();
  EXPECT_EQ(device->level(), kMusicLevel);
}

TEST_F(Audio, MusicStartedBeforeInitBeginsWhenSwitchedOn) {
  audio::startMusic();
  open();
  EXPECT_EQ(device->level(), 0);
  audio::setEnabled(true);
  EXPECT_EQ(device->level(), kMusicLevel);
}

TEST_F(Audio, IsOpenedOnce) {
  open();
  audio::startMusic();
  EXPECT_TRUE(audio::init());
  EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 1);
  EXPECT_EQ(device->level(), kMusicLevel);
}

TEST_F(Audio, IsOpenedForStereoAtCdRate) {
  open();
  int frequency = 0;
  Uint16 format = 0;
  int channels = 0;
  Mix_QuerySpec(&frequency, &format, &channels);
  EXPECT_EQ(frequency, 44100);
  EXPECT_EQ(format, AUDIO_S16SYS);
  EXPECT_EQ(channels, 2);
}

TEST_F(Audio, IsOpenedInPiecesShortEnoughToAnswerAClick) {
  open();
  EXPECT_EQ(askedChunk, 1024);
}

TEST_F(Audio, ShutdownGivesTheDeviceBack) {
  audio::shutdown();
  open();
  audio::startMusic();
  audio::play(Sfx::Click);
  device.reset();
  audio::shutdown();
  EXPECT_EQ(Mix_QuerySpec(nullptr, nullptr, nullptr), 0);
  EXPECT_EQ(SDL_WasInit(SDL_INIT_AUDIO), 0U);
  audio::shutdown();
  audio::startMusic();
  audio::play(Sfx::Click);
  audio::setMusicVolume(1);
}

TEST_F(Audio, PlaysAgainAfterShutdown) {
  open();
  device.reset();
  audio::shutdown();
  open();
  audio::startMusic();
  audio::play(Sfx::Click);
  EXPECT_EQ(device->level(), kMusicLevel + kClickLevel);
}

TEST_F(Audio, ShutdownForgetsTheMusicButNotTheVolumes) {
  open();
  audio::setSfxVolume(0.5);
  audio::startMusic();
  device.reset();
  audio::shutdown();
  open();
  audio::setEnabled(true);
  audio::play(Sfx::Click);
  EXPECT_EQ(device->level(), kClickLevel / 2);
}

// The leak checker reports at the end of the process what these leave behind.
TEST_F(Audio, CanBeOpenedAndClosedAgainAndAgain) {
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  for (int i = 0; i < 8; ++i) {
    ASSERT_TRUE(audio::init());
    audio::startMusic();
    audio::play(Sfx::Click);
    audio::shutdown();
  }
}

}  // namespace
