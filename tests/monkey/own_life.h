// own_life.h: runs a long test in its own process. If that process dies, the waiting test names the frame.
#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "support/temp_dir.h"

namespace test {

// Also holds the directories of the run's files and cache.
class OwnLife {
 public:
  // A run writes the number of each finished frame to `frame`.
  using Run = std::function<void(std::atomic<long>& frame)>;

  // Runs `run` in a process and lets that end, with the destructors of the program's statics. If the run or
  // the process fails, fails the test with `name` and the frame.
  void live(const std::string& name, const Run& run) const;

  // Fails the test for each file that another library cannot read, or that the game reads differently.
  void expectWholeFiles() const;

  std::string dataDir() const { return home.path("veskara"); }

 private:
  support::TempDir home;
};

}  // namespace test
