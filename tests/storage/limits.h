// limits.h: the limits to which numbers in the files are clamped.
#pragma once

#include <cstdint>
#include <limits>

namespace test {

inline constexpr int kIntMin = std::numeric_limits<int>::min();
inline constexpr int kIntMax = std::numeric_limits<int>::max();
inline constexpr std::uint32_t kUintMax = std::numeric_limits<std::uint32_t>::max();
inline constexpr std::int64_t kInt64Min = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t kInt64Max = std::numeric_limits<std::int64_t>::max();

}  // namespace test
