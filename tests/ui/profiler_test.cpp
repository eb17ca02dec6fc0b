// The profiler: what it reports about a frame's sections, and that it reports nothing unless it is switched
// on.

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "support/own_process.h"
#include "ui/gpu.h"

namespace {

// The environment is read once per process, so each test runs in its own.
class ProfilerDeathTest : public testing::Test {
 protected:
  void SetUp() override { testing::FLAGS_gtest_death_test_style = "threadsafe"; }
};

void printReport() { std::fprintf(stderr, "<%s>", ui::profReport().c_str()); }

TEST_F(ProfilerDeathTest, ReportsEndedSectionsInTheOrderOfTheirNames) {
  const auto profile = [] {
    setenv("VESKARA_STATS", "", 1);
    ui::profBegin("felt");
    ui::profEnd("felt");
    ui::profBegin("board");
    ui::profEnd("board");
    ui::profBegin("board");
    ui::profEnd("board");
    ui::profBegin("never ended");
    printReport();
    std::_Exit(0);
  };
  EXPECT_EXIT(profile(), testing::ExitedWithCode(0), "< board [0-9]+\\.[0-9] felt [0-9]+\\.[0-9]>");
}

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration time) { return std::chrono::duration<double, std::milli>(time).count(); }

// Bounds for the time of some sections, measured by a separate clock.
struct Bounds {
  double least = 0;
  double most = 0;
};

void measureSection(Bounds& sum, std::chrono::milliseconds length) {
  const Clock::time_point before = Clock::now();
  ui::profBegin("felt");
  const Clock::time_point begun = Clock::now();
  std::this_thread::sleep_for(length);
  const Clock::time_point ends = Clock::now();
  ui::profEnd("felt");
  sum.least += milliseconds(ends - begun);
  sum.most += milliseconds(Clock::now() - before);
}

// Describes what is wrong with the reported mean of `count` sections; empty if nothing is.
std::string compared(const Bounds& sum, int count) {
  constexpr double kRounded = 0.051;
  const std::string report = ui::profReport();
  const double mean = std::atof(report.substr(sizeof " felt").c_str());
  if (mean > sum.least / count - kRounded && mean < sum.most / count + kRounded) return "";
  return report + " is not " + std::to_string(sum.least / count) + " to " + std::to_string(sum.most / count) +
         "; ";
}

TEST(Profiler, TellsTheMeanOfASectionInMilliseconds) {
  using std::chrono::milliseconds;
  EXPECT_EQ(support::inOwnProcess([] {
              setenv("VESKARA_STATS", "", 1);
              Bounds three;
              for (const int length : {30, 2, 10}) measureSection(three, milliseconds(length));
              std::string wrong = compared(three, 3);
              Bounds one;  // the earlier sections are forgotten
              measureSection(one, milliseconds(5));
              return wrong + compared(one, 1);
            }),
            "");
}

TEST_F(ProfilerDeathTest, StartsAnewAfterAReport) {
  const auto profile = [] {
    setenv("VESKARA_STATS", "0", 1);
    ui::profBegin("felt");
    ui::profEnd("felt");
    ui::profBegin("board");
    ui::profEnd("board");
    printReport();
    ui::profBegin("felt");
    ui::profEnd("felt");
    printReport();
    printReport();
    std::_Exit(0);
  };
  EXPECT_EXIT(profile(), testing::ExitedWithCode(0), "< board [0-9.]+ felt [0-9.]+>< felt [0-9.]+><>");
}

TEST_F(ProfilerDeathTest, SaysNothingUnlessAsked) {
  const auto profile = [] {
    unsetenv("VESKARA_STATS");
    ui::profBegin("felt");
    ui::profEnd("felt");
    printReport();
    std::_Exit(0);
  };
  EXPECT_EXIT(profile(), testing::ExitedWithCode(0), "<>");
}

}  // namespace
