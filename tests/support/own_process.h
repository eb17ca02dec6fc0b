// own_process.h: a test's act in a process of its own, for code that looks at the environment or the working
// directory once and remembers what it saw. The test program's own environment and memory stay as they are.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <string>

namespace support {

// What `act` (taking nothing, giving a string) gives back in a forked process. If that process does not come
// to the end of it, the test fails.
template <class Act>
std::string inOwnProcess(const Act& act) {
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) {
    ADD_FAILURE() << "no pipe";
    return {};
  }
  const pid_t child = fork();
  if (child == 0) {
    const std::string result = act();
    const bool written = write(ends[1], result.data(), result.size()) == static_cast<ssize_t>(result.size());
    _exit(written ? 0 : 1);
  }
  close(ends[1]);
  std::string result;
  std::array<char, 4096> chunk;
  for (ssize_t got = 0; (got = read(ends[0], chunk.data(), chunk.size())) > 0;) {
    result.append(chunk.data(), static_cast<std::size_t>(got));
  }
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    ADD_FAILURE() << "the process did not end well, status " << status;
  }
  return result;
}

}  // namespace support
