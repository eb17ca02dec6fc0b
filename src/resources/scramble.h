// scramble.h: how the embedded assets are kept from being cut out of the executable by a search for file
// headers; no encryption. Shared by the build tool that scrambles them and the library that reads them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace assets_data {

// Changing it re-embeds every asset at the next build.
inline constexpr std::array<unsigned char, 8> kKey = {0xA7, 0x3C, 0xD1, 0x58, 0x0F, 0xE6, 0x92, 0x4B};

// The byte at `index`, scrambled; or plain again, as the operation is its own inverse. The term that changes
// every 256 bytes keeps a long run of equal bytes from showing the key over and over.
constexpr unsigned char scrambledByte(unsigned char byte, std::uint32_t index) {
  return static_cast<unsigned char>(byte ^ kKey[index % kKey.size()] ^ ((index >> 8) & 0xFFU));
}

// A whole file in place, each byte as above.
inline void scramble(std::string& bytes) {
  std::uint32_t index = 0;
  for (char& byte : bytes) byte = static_cast<char>(scrambledByte(static_cast<unsigned char>(byte), index++));
}

}  // namespace assets_data
