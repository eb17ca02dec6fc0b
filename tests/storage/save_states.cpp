// Saves states of one kind in sequence, for tests that watch from outside and run it as
// save_states KIND FIRST LAST

#include <cstdlib>
#include <string>

#include "states.h"

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  const std::string name = argv[1];
  const test::Kind& kind = test::kindNamed(name);
  const int last = std::atoi(argv[3]);
  for (int n = std::atoi(argv[2]); n <= last; ++n) kind.save(n);
  return 0;
}
