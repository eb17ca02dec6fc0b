// own_life.h: a long run in a process of its own: whatever that process dies of, the test that waits for it
// says in which frame.
#pragma once

#include <atomic>
#include <functional>
#include <string>

#include "support/temp_dir.h"

namespace test {

// Where the run keeps the player's files and the cache.
class OwnLife {
 public:
  // What a run is told: after each frame its number is to be written here.
  using Run = std::function<void(std::atomic<long>& frame)>;

  // Runs `run` to the end of its process, with the destructors of the program's statics. The test fails,
  // naming `name` and the frame, if the run failed or the process did not end well.
  void live(const std::string& name, const Run& run) const;

  // Fails the test for each file that another reader cannot read, or that the game itself takes for something
  // else than is written.
  void expectWholeFiles() const;

  std::string dataDir() const { return home.path("veskara"); }

 private:
  support::TempDir home;
};

}  // namespace test
