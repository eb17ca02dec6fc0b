// data_file.h: a fuzz target's data directory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/data_home.h"

namespace fuzz {

// Writes an input to a file in the data directory.
inline void putFile(const std::string& name, const std::uint8_t* data, std::size_t size) {
  static const support::DataHome home;
  home.write(name, std::string(reinterpret_cast<const char*>(data), size));
}

}  // namespace fuzz
