// The real program plays sound, or plays on in silence if it cannot.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "window/session.h"

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using window::Environment;
using window::Session;
using window::waitFor;

// The file in which SDL's disk driver records the sound as 16-bit samples.
std::string recordingIn(const support::TempDir& dir) { return dir.path("heard.raw"); }
Environment recorder(const support::TempDir& dir) {
  return {{"SDL_AUDIODRIVER", "disk"}, {"SDL_DISKAUDIOFILE", recordingIn(dir)}};
}

int loudestIn(const std::string& recording) {
  const std::string bytes = support::readAll(recording);
  std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
  int loudest = 0;
  for (const std::int16_t sample : samples) loudest = std::max(loudest, std::abs(int{sample}));
  return loudest;
}

// Whether the recording holds at least this many seconds of stereo sound.
bool lasts(const std::string& recording, double seconds) {
  std::error_code ignored;
  const auto size = fs::file_size(recording, ignored);
  return !ignored && static_cast<double>(size) >= seconds * 44100 * 2 * sizeof(std::int16_t);
}

// The number of lines that the game itself wrote to standard error. SDL reports its disk driver there, too.
int messages(Session& session) {
  std::istringstream errors(session.game.process().errors());
  int count = 0;
  for (std::string line; std::getline(errors, line);) count += line.starts_with('[') ? 1 : 0;
  return count;
}

std::string dataHomeWith(const support::TempDir& dir, const std::string& settings) {
  dir.makeFile("data/veskara/settings.json", settings);
  return dir.path("data");
}

TEST(Sound, IsHeardFromTheStart) {
  const support::TempDir dir;
  Session session({.environment = recorder(dir)});
  EXPECT_TRUE(waitFor([&] { return loudestIn(recordingIn(dir)) > 300; }));
  quit(session.game);
  EXPECT_EQ(messages(session), 0);
}

TEST(Sound, IsSilentWhenTheSettingsSaySo) {
  for (const char* settings : {R"({"soundOn":false})", R"({"musicVolume":0,"sfxVolume":0})"}) {
    const support::TempDir dir;
    Environment environment = recorder(dir);
    environment["XDG_DATA_HOME"] = dataHomeWith(dir, settings);
    Session session({.environment = environment});
    EXPECT_TRUE(waitFor([&] { return lasts(recordingIn(dir), 10); })) << "the tiles have flown in";
    quit(session.game);
    EXPECT_EQ(loudestIn(recordingIn(dir)), 0) << settings;
  }
}

TEST(Sound, MayBeMissing) {
  Session session({.environment = {{"SDL_AUDIODRIVER", "nosuch"}}});
  EXPECT_TRUE(session.showsTable());
  quit(session.game);
  const std::string errors = session.game.process().errors();
  EXPECT_THAT(errors, testing::StartsWith("[audio] no audio subsystem: "));
  EXPECT_EQ(messages(session), 1);
}

TEST(Sound, DamagedFilesAreNotHeardAndNamedOnce) {
  const support::TempDir dir;
  dir.makeFile("assets/audio/sfx_tile.ogg", "OggS but no more");
  dir.makeFile("assets/audio/bgm_calm.ogg", "no music");
  Environment environment = recorder(dir);
  environment["VESKARA_ASSET_DIR"] = dir.path();
  Session session({.environment = environment});
  EXPECT_TRUE(waitFor([&] { return loudestIn(recordingIn(dir)) > 300; })) << "the other sounds are heard";
  quit(session.game);
  const std::string errors = session.game.process().errors();
  EXPECT_THAT(errors, HasSubstr("[audio] sfx failed: audio/sfx_tile.ogg ("));
  EXPECT_THAT(errors, HasSubstr("[audio] bgm failed ("));
  EXPECT_EQ(messages(session), 2);
}

TEST(Sound, EndsWithTheProgramWhateverEndsIt) {
  for (const int signal : {SIGTERM, SIGINT}) {
    const support::TempDir dir;
    Session session({.environment = recorder(dir)});
    EXPECT_TRUE(waitFor([&] { return lasts(recordingIn(dir), 0.5); }));
    session.game.process().send(signal);
    EXPECT_TRUE(session.endsWith(0));
  }
}

}  // namespace
