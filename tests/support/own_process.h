// own_process.h: runs part of a test in a forked process, for code that reads the environment or the working
// directory only once. The test program's own environment and memory stay unchanged.
#pragma once

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <string>

namespace support {

// Reads from the pipe until its other end is closed. False on an error or after five minutes.
inline bool readToEnd(int pipe, std::string& result) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point end = Clock::now() + std::chrono::minutes(5);
  std::array<char, 4096> chunk;
  for (pollfd waiting = {pipe, POLLIN, 0};;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
    if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) <= 0) return false;
    const ssize_t got = read(pipe, chunk.data(), chunk.size());
    if (got <= 0) return got == 0;
    result.append(chunk.data(), static_cast<std::size_t>(got));
  }
}

// Runs `act` (no arguments, returns a string) in a forked process and returns its result. The test fails if
// the process does not finish properly or takes longer than five minutes.
template <class Act>
std::string inOwnProcess(const Act& act) {
  std::array<int, 2> ends = {};
  if (pipe(ends.data()) != 0) {
    ADD_FAILURE() << "cannot create a pipe";
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
  if (child > 0 && !readToEnd(ends[0], result)) {
    ADD_FAILURE() << "the process did not finish in time";
    kill(child, SIGKILL);
  }
  close(ends[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || status != 0) {
    ADD_FAILURE() << "the process failed, status " << status;
  }
  return result;
}

}  // namespace support
