// seed.h: reads from the environment how long monkeys play and their seeds.
#pragma once

#include <cstdlib>

namespace test {

inline long numberFrom(const char* variable, long otherwise) {
  const char* text = std::getenv(variable);
  return text == nullptr || *text == '\0' ? otherwise : std::strtol(text, nullptr, 10);
}

// The first monkey's seed; the others' follow it.
inline unsigned firstSeed() { return static_cast<unsigned>(numberFrom("VESKARA_MONKEY_SEED", 1)); }

}  // namespace test
