// states.h: each kind of record in states that are numbered, so that a test which disturbs their writing can
// tell what it finds afterwards.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace test {

struct Kind {
  const char* name;
  const char* file;
  // Makes state n the stored one; n counts from 1 without gaps.
  void (*save)(int n);
  // The number of the state that is stored whole; 0 for anything else.
  int (*load)();
};

inline void PrintTo(const Kind& kind, std::ostream* out) { *out << kind.name; }

const std::vector<Kind>& kinds();
const Kind& kindNamed(const std::string& name);

}  // namespace test
