#include "ui/format.h"

#include <array>
#include <cstdio>
#include <ctime>

namespace ui {
namespace {

constexpr std::int64_t kSecond = 1000;
constexpr std::int64_t kMinute = 60 * kSecond;

// Room for the longest numbers of either format.
using Text = std::array<char, 64>;

}  // namespace

std::string formatTime(std::int64_t milliseconds) {
  if (milliseconds < kSecond) return "00:00";
  const long long minutes = milliseconds / kMinute;
  const long long seconds = milliseconds / kSecond % 60;
  Text text = {};
  std::snprintf(text.data(), text.size(), "%02lld:%02lld", minutes, seconds);
  return text.data();
}

std::string formatDate(std::int64_t milliseconds) {
  const std::time_t moment = milliseconds / kSecond;
  std::tm day = {};
  if (localtime_r(&moment, &day) == nullptr) return {};
  Text text = {};
  std::snprintf(text.data(), text.size(), "%02d.%02d.%04d", day.tm_mday, day.tm_mon + 1, day.tm_year + 1900);
  return text.data();
}

}  // namespace ui
