// environment.h: sets an environment variable and unsets it in the destructor, whatever its value was before.
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
