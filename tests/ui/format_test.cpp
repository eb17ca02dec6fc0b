#include "ui/format.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <string>

#include "support/own_process.h"

namespace {

constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();

TEST(FormatTime, IsInMinutesAndSeconds) {
  EXPECT_EQ(ui::formatTime(0), "00:00");
  EXPECT_EQ(ui::formatTime(999), "00:00");
  EXPECT_EQ(ui::formatTime(1000), "00:01");
  EXPECT_EQ(ui::formatTime(59999), "00:59");
  EXPECT_EQ(ui::formatTime(60000), "01:00");
  EXPECT_EQ(ui::formatTime(61000), "01:01");
  EXPECT_EQ(ui::formatTime(599000), "09:59");
}

TEST(FormatTime, HasNoHours) {
  EXPECT_EQ(ui::formatTime(61 * 60000), "61:00");
  EXPECT_EQ(ui::formatTime(100 * 60000 + 5000), "100:05");
  EXPECT_EQ(ui::formatTime(kMost), "153722867280912:55");
}

TEST(FormatTime, IsNothingForANegativeTime) {
  EXPECT_EQ(ui::formatTime(-1), "00:00");
  EXPECT_EQ(ui::formatTime(-61000), "00:00");
  EXPECT_EQ(ui::formatTime(kLeast), "00:00");
}

std::string dateIn(const char* zone, std::int64_t milliseconds) {
  return support::inOwnProcess([&] {
    setenv("TZ", zone, 1);
    tzset();
    return ui::formatDate(milliseconds);
  });
}

constexpr std::int64_t kNewYear = 1767225600000;  // 2026, in UTC

TEST(FormatDate, IsDayMonthAndYear) {
  EXPECT_EQ(dateIn("UTC0", kNewYear), "01.01.2026");
  EXPECT_EQ(dateIn("UTC0", kNewYear - 1), "31.12.2025");
  EXPECT_EQ(dateIn("UTC0", 0), "01.01.1970");
  EXPECT_EQ(dateIn("UTC0", 1709164800000), "29.02.2024");
}

TEST(FormatDate, IsTheLocalDay) {
  EXPECT_EQ(dateIn("East-2", kNewYear - 7200000), "01.01.2026");
  EXPECT_EQ(dateIn("East-2", kNewYear - 7200001), "31.12.2025");
  EXPECT_EQ(dateIn("West5", kNewYear), "31.12.2025");
}

TEST(FormatDate, AnswersForAnyMoment) {
  EXPECT_EQ(dateIn("UTC0", -86400000), "31.12.1969");
  EXPECT_EQ(dateIn("UTC0", kMost), "17.08.292278994");
  EXPECT_EQ(dateIn("UTC0", kLeast), "16.05.-292275055");
}

}  // namespace
