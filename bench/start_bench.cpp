// The time from exec to a presented frame: the game compared with a bare program that opens the same window,
// lays out one text and paints one felt. The two take turns, so that a busy machine slows them alike. The
// game's first frame is that of the splash screen.

#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>

#include "support/temp_dir.h"

namespace {

// Seconds from the start of the program to the end of its first frame.
double secondsToFirstFrame(const char* program) {
  setenv("END_AT_FRAME", "1", 1);
  setenv("LD_PRELOAD", VESKARA_END_AT_FRAME, 1);
  const auto begun = std::chrono::steady_clock::now();
  char* arguments[] = {const_cast<char*>(program), nullptr};
  pid_t child = 0;
  int status = 0;
  if (posix_spawn(&child, program, nullptr, nullptr, arguments, environ) != 0 ||
      waitpid(child, &status, 0) != child || status != 0) {
    std::abort();
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

void start(benchmark::State& state) {
  double game = 0;
  double bare = 0;
  while (state.KeepRunning()) {
    bare += secondsToFirstFrame(VESKARA_BARE_PROGRAM);
    const double seconds = secondsToFirstFrame(VESKARA_PROGRAM);
    game += seconds;
    state.SetIterationTime(seconds);
  }
  const auto runs = static_cast<double>(state.iterations());
  state.counters["bare_ms"] = 1000 * bare / runs;
  state.counters["game_ms"] = 1000 * game / runs;
  state.counters["game/bare"] = game / bare;
}
BENCHMARK(start)->Iterations(40)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {  // NOLINT(bugprone-exception-escape): cannot measure without a directory
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  setenv("SDL_RENDER_DRIVER", "software", 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
