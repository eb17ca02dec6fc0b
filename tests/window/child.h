// child.h: runs a program with its own environment, collects its output and waits for its end. The program
// never outlives the test. Knows no displays.
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

// How long a test waits for something to happen. Only a failing test waits this long. The limit is generous
// because the machine may be busy and the sanitizers slow the program down.
inline constexpr std::chrono::seconds kPatience{60};

// Checks the condition repeatedly until it is true or the time is up. Returns the last result.
bool waitFor(const std::function<bool()>& condition, std::chrono::seconds patience = kPatience);

using Environment = std::map<std::string, std::string>;

// What a program needs from the test's environment (PATH, the sanitizers' options), and directories below
// `home` for all its files. Contains no display.
Environment cleanEnvironment(const std::string& home);
// Returns the environment with these variables set.
Environment changed(Environment environment, const Environment& changes);

class Child {
 public:
  // Starts `command`; its first word is the program. The program gets only `environment` and no input.
  Child(const std::vector<std::string>& command, const Environment& environment);
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;
  // Kills the program if it is still running.
  ~Child();

  pid_t pid() const { return process; }
  void send(int signal) const;

  // What the program has written so far.
  std::string output() const;
  std::string errors() const;

  bool hasEnded();
  // Waits for the program's end. Returns its exit status, or minus the number of the signal that killed it.
  // Nothing if it is still running after kPatience.
  std::optional<int> waitForEnd();

 private:
  support::TempDir files;
  pid_t process = -1;
  std::optional<int> status;
};

}  // namespace window
