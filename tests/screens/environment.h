// environment.h: an environment variable as a test wants it, for as long as the object lives.
#pragma once

#include <cstdlib>

namespace test {

class Environment {
 public:
  Environment(const char* variable, const char* value) : name(variable) { setenv(name, value, 1); }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;
  ~Environment() { unsetenv(name); }

 private:
  const char* name;
};

}  // namespace test
