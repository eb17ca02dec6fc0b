// states.h: numbered states of each kind of record. A test that disturbs writing can tell by the number which
// state it finds afterwards.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace test {

struct Kind {
  const char* name;
  const char* file;
  // Saves state n; n counts from 1 without gaps.
  void (*save)(int n);
  // The number of the state in the file, if it is complete; otherwise 0.
  int (*load)();
};

inline void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const std::vector<Kind>& kinds();
const Kind& kindNamed(const std::string& name);

}  // namespace test
