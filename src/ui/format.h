// format.h: times as numbers alone, the same in every language.
#pragma once

#include <cstdint>
#include <string>

namespace ui {

// A duration as minutes and seconds: "01:01". An hour and a minute is "61:00", less than a second "00:00", a
// negative one too.
std::string formatTime(std::int64_t milliseconds);

// The local day of a moment, given since the epoch: "31.12.2025". Empty for a moment that no calendar
// reaches.
std::string formatDate(std::int64_t milliseconds);

}  // namespace ui
