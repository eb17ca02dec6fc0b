// data_file.h: the player's data directory of a fuzz target.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "support/data_home.h"

namespace fuzz {

// Makes an input the contents of a file of the data directory.
inline void putFile(const std::string& name, const std::uint8_t* data, std::size_t size) {
  static const support::DataHome home;
  home.write(name, std::string(reinterpret_cast<const char*>(data), size));
}

}  // namespace fuzz
