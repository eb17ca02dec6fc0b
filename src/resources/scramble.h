// scramble.h: hides the embedded assets from tools that search executables for file headers. This is no
// encryption. Shared by the build tool that scrambles the assets and the library that reads them.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace assets_data {

// Changing the key rebuilds every embedded asset.
inline constexpr std::array<unsigned char, 8> kKey = {0xA7, 0x3C, 0xD1, 0x58, 0x0F, 0xE6, 0x92, 0x4B};

// Scrambles or unscrambles the byte at `index`; the operation is its own inverse. The term that changes every
// 256 bytes keeps a long run of equal bytes from repeating the key.
constexpr unsigned char scrambledByte(unsigned char byte, std::uint32_t index) {
  return static_cast<unsigned char>(byte ^ kKey[index % kKey.size()] ^ ((index >> 8) & 0xFFU));
}

// Scrambles or unscrambles a whole file in place.
inline void scramble(std::string& bytes) {
  std::uint32_t index = 0;
  for (char& byte : bytes) byte = static_cast<char>(scrambledByte(static_cast<unsigned char>(byte), index++));
}

}  // namespace assets_data
