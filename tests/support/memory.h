// memory.h: how much heap memory the process uses. Does not work with the sanitizers' allocators.
#pragma once

#include <malloc.h>

namespace support {

#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kMemoryIsSeen = false;
#else
inline constexpr bool kMemoryIsSeen = true;
#endif

// Bytes allocated and not freed by anyone in the process: the game, cairo, pango, SDL.
inline long liveBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<long>(info.uordblks + info.hblkhd);
}

// Allowed growth: one twentieth, because files and pictures vary in size.
inline constexpr long kGrowthPart = 20;

}  // namespace support
