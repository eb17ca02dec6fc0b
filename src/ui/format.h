// format.h: formats durations and dates as numbers only, the same in every language.
#pragma once

#include <cstdint>
#include <string>

namespace ui {

// A duration as minutes and seconds: "01:01". An hour and a minute is "61:00". Less than a second, also a
// negative duration, is "00:00".
std::string formatTime(std::int64_t milliseconds);

// The local date of a moment in milliseconds since the Unix epoch: "31.12.2025". Empty if the moment is too
// far away for a calendar date.
std::string formatDate(std::int64_t milliseconds);

}  // namespace ui
