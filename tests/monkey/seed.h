// seed.h: how long a monkey plays and what it begins with, as the environment says.
#pragma once

#include <cstdlib>

namespace test {

inline long numberFrom(const char* variable, long otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr || *text == '\0' ? otherwise : std::strtol(text, nullptr, 10);
}

// Of the first monkey; others count on from it.
inline unsigned firstSeed() { return static_cast<unsigned>(numberFrom("VESKARA_MONKEY_SEED", 1)); }

}  // namespace test
