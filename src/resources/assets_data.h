// assets_data.h: the embedded files, still scrambled. The rows are generated from the list in CMakeLists.txt.
// Only for assets.cpp; all other code uses assets.h.
#pragma once

#include <cstddef>
#include <cstdint>

namespace assets_data {

struct Entry {
  const char* name;           // path in assets/, for example "fonts/QuenlockMahjongGlyphs.ttf"
  const unsigned char* data;  // scrambled
  const std::uint64_t&
      size;  // stands beside the bytes: a changed asset leaves this table's object file as it is
};

extern const Entry kEntries[];
extern const std::size_t kEntryCount;

}  // namespace assets_data
