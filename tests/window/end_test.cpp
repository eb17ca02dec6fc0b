// All ways to end the program from outside, and its exit status for each.

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <string>

#include "window/session.h"

namespace {

using window::Desktop;
using window::Key;
using window::Session;
using window::waitFor;

// Whether a signal was sent to the process but not yet delivered.
bool hasPending(pid_t process, int signal) {
  std::ifstream lines("/proc/" + std::to_string(process) + "/status");
  for (std::string name; lines >> name;) {
    std::string value;
    if (name != "ShdPnd:" || !(lines >> value)) continue;
    return (std::stoull(value, nullptr, 16) >> (signal - 1) & 1) != 0;
  }
  return false;
}

// Sends the second signal after the first was delivered, while the frozen display keeps the loop from ending.
void expectEndAtOnce(int first, int second) {
  Session session;
  const Desktop::Frozen frozen(session.desktop);
  const pid_t process = session.game.process().pid();
  session.game.process().send(first);
  EXPECT_TRUE(waitFor([&] { return !hasPending(process, first); }));
  session.game.process().send(second);
  EXPECT_TRUE(session.endsWith(128 + second));
}

TEST(End, ComesOnControlQ) {
  Session session;
  session.game.type(Key::LeftControl, Key::Q);
  EXPECT_TRUE(session.endsWith(0));
}

TEST(End, ComesWhenTheWindowIsClosed) {
  Session session;
  session.game.close();
  EXPECT_TRUE(session.endsWith(0));
}

TEST(End, ComesWhenTheMinimisedWindowIsClosed) {
  Session session;
  session.game.minimise();
  session.game.close();
  EXPECT_TRUE(session.endsWith(0));
}

class OrderlyEnd : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(On, OrderlyEnd, testing::Values(SIGTERM, SIGINT, SIGHUP),
                         [](const auto& signal) { return sigabbrev_np(signal.param); });

TEST_P(OrderlyEnd, HasStatusZero) {
  Session session;
  session.game.process().send(GetParam());
  EXPECT_TRUE(session.endsWith(0));
}

TEST(End, ComesAtOnceOnASecondSignal) {
  expectEndAtOnce(SIGINT, SIGINT);
  expectEndAtOnce(SIGTERM, SIGHUP);
}

}  // namespace
