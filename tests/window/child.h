// child.h: a program run by a test: started with an environment of its own, its output collected, its end
// waited for. It never outlives the test. Knows nothing of displays.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace window {

// How long a test waits for what must come. Only a test that is about to fail waits so long; the machine may
// be slow and busy, and the sanitizers slow the program down further.
inline constexpr std::chrono::seconds kPatience{60};

// Asks again and again until the answer is yes, at most so long. Gives the last answer back.
bool waitFor(const std::function<bool()>& condition, std::chrono::seconds patience = kPatience);

using Environment = std::map<std::string, std::string>;

// What a program needs of the test's own environment (the search path, the sanitizers' options), and
// directories below `home` for all it may write. Names no display.
Environment cleanEnvironment(const std::string& home);
// The environment with these variables set.
Environment changed(Environment environment, const Environment& changes);

class Child {
 public:
  // Starts `command`, program first. It sees `environment` and nothing else, and reads no input.
  Child(const std::vector<std::string>& command, const Environment& environment);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  // Kills it if it still runs.
  ~Child();

  pid_t pid() const { return process; }
  void send(int signal) const;

  // What it has written so far.
  std::string output() const;
  std::string errors() const;

  bool hasEnded();
  // Waits for its end. The exit status, or minus the number of the signal that killed it; nothing if it still
  // runs when patience ends.
  std::optional<int> waitForEnd();

 private:
  support::TempDir files;
  pid_t process = -1;
  std::optional<int> status;
};

}  // namespace window
