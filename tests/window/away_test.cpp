// A window that nobody sees: the program rests, the game waits, and the picture is back when the window
// returns.

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <limits>
#include <string>
#include <thread>

#include "window/player_files.h"
#include "window/session.h"

namespace {

using window::Key;
using window::Members;
using window::membersOf;
using window::Session;
using window::takeNumber;

constexpr std::chrono::seconds kAway{3};

int statisticsLines(Session& session) {
  const std::string errors = session.game.process().errors();
  int lines = 0;
  for (std::size_t at = errors.find("[stats]"); at != std::string::npos; at = errors.find("[stats]", at + 1))
    ++lines;
  return lines;
}

// Processor time used by the program so far, in seconds.
double processorTime(Session& session) {
  std::ifstream file("/proc/" + std::to_string(session.game.process().pid()) + "/stat");
  file.ignore(std::numeric_limits<std::streamsize>::max(), ')');  // the process name may contain anything
  std::string field;
  for (int i = 3; i < 14; ++i) file >> field;
  double user = 0;
  double system = 0;
  file >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

TEST(Away, MinimisedWindowIsNotDrawnAndTheClockOfTheLevelStands) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  Session session({.environment = {{"VESKARA_STATS", "1"}}});
  ASSERT_TRUE(session.showsTable());
  session.takePair();

  session.game.minimise();
  const int lines = statisticsLines(session);
  const double used = processorTime(session);
  std::this_thread::sleep_for(kAway);
  EXPECT_LE(statisticsLines(session), lines + 1) << "one may tell of the time before";
  EXPECT_LT(processorTime(session) - used, 0.15 * std::chrono::duration<double>(kAway).count());

  session.game.restore();
  EXPECT_TRUE(session.showsTable());
  session.takePair();
  session.game.type(Key::Escape);
  EXPECT_TRUE(session.showsMenu());
  const auto atMost = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start - kAway);
  Members saved = membersOf(session.desktop.dataPath("save.json"));
  EXPECT_LE(takeNumber(saved, ".current_mahjong.elapsedMs"), atMost.count());
}

TEST(Away, MinimisedProgramEndsOnASignalWithTheGameKept) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    Session first;
    first.takePair();
    first.game.minimise();
    first.game.process().send(signal);
    ASSERT_TRUE(first.endsWith(0));
    const Session second(first, {});
    EXPECT_TRUE(second.showsTable());
  }
}

}  // namespace
