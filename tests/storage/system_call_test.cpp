// Makes each system call of a save fail once, and kills the program at each, using strace.

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "states.h"
#include "support/data_home.h"

namespace {

using support::DataHome;
using test::Kind;

const std::vector<std::string> kCalls = {"openat", "read",   "write", "writev",     "close",
                                         "unlink", "rename", "mkdir", "newfstatat", "flock"};

// Whether strace may trace a process here; containers often forbid it.
bool canTrace() { return std::system("strace -o /dev/null true 2>/dev/null") == 0; }

struct Outcome {
  int status = 0;
  bool hit = false;      // the call happened and was disturbed
  std::string messages;  // on standard error
};

// Saves the states in a separate process. `before` is prepended to its command.
Outcome save(const Kind& kind, int first, int last, const std::string& before = "") {
  const support::TempDir scratch;
  const std::string command = before + " " SAVE_STATES " " + kind.name + " " + std::to_string(first) + " " +
                              std::to_string(last) + " 2>" + scratch.path("messages");
  Outcome run;
  run.status = std::system(command.c_str());
  run.messages = support::readAll(scratch.path("messages"));
  return run;
}

// The same, but the n-th `call` on the record's file, its temporary file or their directory is hit by
// `disturbance`.
Outcome saveDisturbed(const DataHome& home, const Kind& kind, int first, int last, const std::string& call,
                      int n, const std::string& disturbance) {
  const support::TempDir scratch;
  const std::string file = home.path(kind.file);
  Outcome run = save(kind, first, last,
                     "ASAN_OPTIONS=detect_leaks=0 strace -o " + scratch.path("trace") + " -P " + home.path() +
                         " -P " + file + " -P " + file + ".tmp -e trace=" + call + " -e inject=" + call +
                         ":" + disturbance + ":when=" + std::to_string(n));
  const std::string trace = support::readAll(scratch.path("trace"));
  run.hit =
      trace.find("INJECTED") != std::string::npos || trace.find("killed by SIGKILL") != std::string::npos;
  return run;
}

class Disturbed : public testing::TestWithParam<Kind> {
 protected:
  void SetUp() override {
    if (!canTrace()) GTEST_SKIP() << "strace is not permitted here";
  }

  // Runs `check` for every call that a save makes on the record's files, each time in a new directory with
  // state 1.
  template <class Check>
  void atEveryCall(const Check& check) {
    int calls = 0;
    for (const std::string& call : kCalls) {
      for (int n = 1;; ++n) {
        const DataHome home;
        GetParam().save(1);
        SCOPED_TRACE(call + " " + std::to_string(n));
        if (!check(home, call, n)) break;
        ++calls;
      }
    }
    std::printf("%s: %d calls\n", GetParam().name, calls);
    EXPECT_GE(calls, 6);
  }
};

TEST_P(Disturbed, ByAFailingCallKeepsTheOldStateOrTheNewOneAndSaysSo) {
  const Kind& kind = GetParam();
  atEveryCall([&kind](const DataHome& home, const std::string& call, int n) {
    const Outcome run = saveDisturbed(home, kind, 2, 2, call, n, "error=ENOSPC");
    EXPECT_EQ(run.status, 0);
    const int found = kind.load();
    EXPECT_TRUE(found == 1 || found == 2) << found;
    // If only the renaming fails, the new state is read under its temporary name.
    const bool failed = found == 1 || (run.hit && call == "rename");
    EXPECT_EQ(run.messages, failed ? home.failureOf(kind.file) : "");

    EXPECT_EQ(save(kind, found + 1, found + 1).messages, "");
    EXPECT_EQ(kind.load(), found + 1);
    return run.hit;
  });
}

TEST_P(Disturbed, ByAFailingCallTheProgramGoesOnSaving) {
  const Kind& kind = GetParam();
  atEveryCall([&kind](const DataHome& home, const std::string& call, int n) {
    const Outcome run = saveDisturbed(home, kind, 2, 4, call, n, "error=EIO");
    EXPECT_EQ(run.status, 0);
    const int found = kind.load();
    EXPECT_GE(found, run.messages.empty() ? 4 : 3);
    return run.hit;
  });
}

// The second save has to cope with what the first one left, such as a missing file with a complete temporary.
TEST_P(Disturbed, ByKillsAtAnyTwoCallsKeepsTheOldStateOrTheNewOne) {
  const Kind& kind = GetParam();
  atEveryCall([&kind](const DataHome& home, const std::string& call, int n) {
    const Outcome first = saveDisturbed(home, kind, 2, 2, call, n, "signal=KILL");
    const int before = kind.load();
    EXPECT_TRUE(before == 1 || before == 2) << before;
    const std::string left = home.path() + "-left";
    for (const std::string second : {"write", "writev", "unlink", "rename"}) {
      std::filesystem::copy(home.path(), left, std::filesystem::copy_options::recursive);
      saveDisturbed(home, kind, before + 1, before + 1, second, 1, "signal=KILL");
      const int found = kind.load();
      EXPECT_TRUE(found == before || found == before + 1) << second << ": " << before << " became " << found;
      std::filesystem::remove_all(home.path());
      std::filesystem::rename(left, home.path());
    }
    return first.hit;
  });
}

INSTANTIATE_TEST_SUITE_P(Saving, Disturbed, testing::ValuesIn(test::kinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
