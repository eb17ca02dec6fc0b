#include "app/signals.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

// Each test ends a process of its own, because the flag stays set.

namespace {

using testing::ExitedWithCode;

void say(std::string_view text) {
  if (write(STDERR_FILENO, text.data(), text.size()) < 0) std::abort();
}

void lastWords() { say("last words"); }

void neverReturn() {
  for (;;) pause();
}

// Exits with status 3 if the process survives all the signals.
void receive(void (*words)(), std::initializer_list<int> signals) {
  ui::installTerminationHandler(words);
  for (const int sig : signals) raise(sig);
  std::_Exit(3);
}

// Exits with status 0 if the flag has the wanted value.
void checkFlagAfter(std::initializer_list<int> signals, bool wanted) {
  ui::installTerminationHandler(lastWords);
  for (const int sig : signals) raise(sig);
  std::_Exit(ui::terminationRequested() == wanted ? 0 : 1);
}

TEST(SignalsDeathTest, FirstOneOnlyAsksForTheEnd) {
  EXPECT_EXIT(checkFlagAfter({}, false), ExitedWithCode(0), "^$");
  for (const int sig : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EXIT(checkFlagAfter({sig}, true), ExitedWithCode(0), "^$") << sig;
  }
}

TEST(SignalsDeathTest, SecondOneEndsAtOnceWithItsStatus) {
  EXPECT_EXIT(receive(nullptr, {SIGINT, SIGINT}), ExitedWithCode(130), "");
  EXPECT_EXIT(receive(nullptr, {SIGTERM, SIGTERM}), ExitedWithCode(143), "");
  EXPECT_EXIT(receive(nullptr, {SIGHUP, SIGHUP}), ExitedWithCode(129), "");
}

TEST(SignalsDeathTest, StatusIsThatOfTheSecondSignal) {
  EXPECT_EXIT(receive(nullptr, {SIGTERM, SIGINT}), ExitedWithCode(130), "");
  EXPECT_EXIT(receive(nullptr, {SIGHUP, SIGTERM}), ExitedWithCode(143), "");
}

TEST(SignalsDeathTest, LastWordsAreSpokenAtTheSecondSignal) {
  EXPECT_EXIT(receive(lastWords, {SIGINT}), ExitedWithCode(3), "^$");
  EXPECT_EXIT(receive(lastWords, {SIGINT, SIGTERM}), ExitedWithCode(143), "^last words$");
}

TEST(SignalsDeathTest, HangingLastWordsDoNotKeepTheProgramAlive) {
  EXPECT_EXIT(receive(neverReturn, {SIGTERM, SIGINT}), ExitedWithCode(130), "");
}

// Exits with status 3 if a write fails and the program goes on.
void writeToNobody() {
  ui::surviveFailedWrites();
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) std::abort();
  close(ends[0]);
  std::_Exit(write(ends[1], "x", 1) < 0 && errno == EPIPE ? 3 : 0);
}

void writeBeyondTheLimit() {
  ui::surviveFailedWrites();
  const rlimit nothing = {};
  std::FILE* const file = std::tmpfile();
  if (file == nullptr || setrlimit(RLIMIT_FSIZE, &nothing) != 0) std::abort();
  std::_Exit(write(fileno(file), "x", 1) < 0 && errno == EFBIG ? 3 : 0);
}

TEST(SignalsDeathTest, FailedWritesAreSurvived) {
  EXPECT_EXIT(writeToNobody(), ExitedWithCode(3), "");
  EXPECT_EXIT(writeBeyondTheLimit(), ExitedWithCode(3), "");
}

TEST(SignalsDeathTest, OtherSignalsAreNotTouched) {
  EXPECT_EXIT(receive(lastWords, {SIGUSR1}), testing::KilledBySignal(SIGUSR1), "^$");
}

}  // namespace
