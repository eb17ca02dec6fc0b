// Any bytes can be parsed, and the result is the same after it is written and read again.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <string>

#include "storage/json.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const js::Value v = js::parse(std::string(reinterpret_cast<const char*>(data), size));
  const std::string text = v.dump();
  assert(js::parse(text).dump() == text);
  assert(js::Value(v).dump() == text);
  return 0;
}
