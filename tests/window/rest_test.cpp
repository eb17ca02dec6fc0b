// A window that nobody touches: screens at rest present no frames and send nothing to the display.

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <string>
#include <thread>

#include "support/temp_dir.h"
#include "window/session.h"
#include "window/witness.h"

namespace {

using screens::MenuEntry;
using window::Environment;
using window::Key;
using window::Session;

struct Renderer {
  const char* name;
  Environment environment;
};

class Rest : public testing::TestWithParam<Renderer> {
 protected:
  Rest() : session({.environment = environment(), .preload = VESKARA_WITNESS, .toTable = false}) {}

  std::string witness() const { return scratch.path("witness"); }
  Environment environment() const {
    return window::changed(GetParam().environment, {{window::kWitnessVariable, witness()}});
  }

  int frames() const { return window::testimonyIn(witness()).frames; }
  // The program's write calls so far. At rest these can only go to the display, as nothing is saved.
  long writes() {
    std::ifstream file("/proc/" + std::to_string(session.game.process().pid()) + "/io");
    std::string name;
    long value = 0;
    while (file >> name >> value && name != "syscw:") continue;
    return value;
  }
  // Waits until no new frame appears for 0.3 seconds. False if frames keep coming.
  bool comesToRest() const {
    return window::waitFor([this] {
      const int before = frames();
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      return frames() == before;
    });
  }
  void expectRest(const std::string& screen) {
    ASSERT_TRUE(comesToRest()) << screen;
    const int shown = frames();
    const long written = writes();
    std::this_thread::sleep_for(std::chrono::seconds(1));
    EXPECT_EQ(frames(), shown) << screen;
    EXPECT_LE(writes() - written, 1) << screen;
  }

  support::TempDir scratch;
  Session session;
};

const Renderer kRenderers[] = {{"OpenGl", {}}, {"Software", window::kNoOpenGl}};
std::string nameOf(const testing::TestParamInfo<Renderer>& info) { return info.param.name; }
INSTANTIATE_TEST_SUITE_P(With, Rest, testing::ValuesIn(kRenderers), nameOf);

TEST_P(Rest, ShowsNoFramesAndAsksNothingOfTheDisplay) {
  for (const MenuEntry entry :
       {MenuEntry::LevelSelect, MenuEntry::Gallery, MenuEntry::Settings, MenuEntry::About}) {
    ASSERT_TRUE(window::chooseFromMenu(session.game, entry));
    expectRest("menu entry " + std::to_string(static_cast<int>(entry)));
    session.game.type(Key::Escape);
  }
  ASSERT_TRUE(window::continueFromMenu(session.game));
  session.game.type(Key::Space);
  expectRest("pause");
}

TEST_P(Rest, InPlayShowsTheClockAndNothingElse) {
  ASSERT_TRUE(window::continueFromMenu(session.game));
  ASSERT_TRUE(session.showsTable());
  // Lets the flash after the fly-in pass.
  std::this_thread::sleep_for(std::chrono::seconds(2));
  const int shown = frames();
  std::this_thread::sleep_for(std::chrono::seconds(3));
  EXPECT_GE(frames() - shown, 2);
  EXPECT_LE(frames() - shown, 5) << "three seconds, and at most one save";
}

}  // namespace
