// memory.h: how much of its memory a process uses. Knows nothing of the sanitizers' allocators: with them
// there is nothing to be seen.
#pragma once

#include <malloc.h>

namespace support {

#ifdef __SANITIZE_ADDRESS__
inline constexpr bool kMemoryIsSeen = false;
#else
inline constexpr bool kMemoryIsSeen = true;
#endif

// Bytes that are allocated and not freed, whoever asked for them: the game, cairo, pango, SDL.
inline long liveBytes() {
  const struct mallinfo2 info = mallinfo2();
  return static_cast<long>(info.uordblks + info.hblkhd);
}

// A twentieth more may come by chance: files and pictures of other sizes.
inline constexpr long kGrowthPart = 20;

}  // namespace support
