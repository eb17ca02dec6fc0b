// assets_data.h: the embedded files as they lie in the executable, scrambled. The rows come from the list in
// CMakeLists.txt; everybody but assets.cpp asks assets.h instead.
#pragma once

#include <cstddef>
#include <cstdint>

namespace assets_data {

struct Entry {
  const char* name;           // below assets/, for example "fonts/QuenlockMahjongGlyphs.ttf"
  const unsigned char* data;  // scrambled
  const std::uint64_t&
      size;  // stands beside the bytes: a changed asset leaves this table's object file as it is
};

extern const Entry kEntries[];
extern const std::size_t kEntryCount;

}  // namespace assets_data
