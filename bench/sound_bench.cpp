// The cost of the embedded files: unscrambling the music, compared with a memcpy of the same bytes; and
// audio::init, compared with opening and closing the device alone. Also the memory that audio::init keeps.

#include <SDL.h>
#include <SDL_mixer.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "resources/assets.h"
#include "resources/audio.h"
#include "resources/scramble.h"

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point begun) {
  return std::chrono::duration<double>(Clock::now() - begun).count();
}

double residentMegabytes() {
  long whole = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> whole >> resident;
  return static_cast<double>(resident * sysconf(_SC_PAGESIZE)) / 1e6;
}

double secondsOfBareDevice() {
  const auto begun = Clock::now();
  if (SDL_InitSubSystem(SDL_INIT_AUDIO) != 0 || Mix_OpenAudio(44100, AUDIO_S16SYS, 2, 1024) != 0)
    std::abort();
  const double seconds = secondsSince(begun);
  Mix_CloseAudio();
  SDL_QuitSubSystem(SDL_INIT_AUDIO);
  return seconds;
}

void init(benchmark::State& state) {
  double bare = 0;
  double whole = 0;
  double memory = 0;
  while (state.KeepRunning()) {
    bare += secondsOfBareDevice();
    const double before = residentMegabytes();
    const auto begun = Clock::now();
    if (!audio::init()) std::abort();
    const double seconds = secondsSince(begun);
    // Only the first run counts: later ones reuse its memory and files.
    if (memory == 0) memory = residentMegabytes() - before;
    audio::shutdown();
    whole += seconds;
    state.SetIterationTime(seconds);
  }
  const auto runs = static_cast<double>(state.iterations());
  state.counters["a_device_ms"] = 1000 * bare / runs;
  state.counters["b_init_ms"] = 1000 * whole / runs;
  state.counters["memory_MB"] = memory;
}
BENCHMARK(init)->Iterations(20)->UseManualTime()->Unit(benchmark::kMillisecond);

void unscramble(benchmark::State& state) {
  std::string bytes = assets::blob("audio/bgm_calm.ogg");
  std::string copy(bytes.size(), '\0');
  double copying = 0;
  double scrambling = 0;
  while (state.KeepRunning()) {
    auto begun = Clock::now();
    std::memcpy(copy.data(), bytes.data(), bytes.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
    copying += secondsSince(begun);
    begun = Clock::now();
    assets_data::scramble(bytes);
    benchmark::DoNotOptimize(bytes.data());
    benchmark::ClobberMemory();
    const double seconds = secondsSince(begun);
    scrambling += seconds;
    state.SetIterationTime(seconds);
  }
  const double gigabytes = static_cast<double>(bytes.size()) * static_cast<double>(state.iterations()) / 1e9;
  state.counters["a_memcpy_GB/s"] = gigabytes / copying;
  state.counters["b_unscramble_GB/s"] = gigabytes / scrambling;
  state.counters["music_ms"] = 1000 * scrambling / static_cast<double>(state.iterations());
}
BENCHMARK(unscramble)->UseManualTime()->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  setenv("SDL_AUDIODRIVER", "dummy", 1);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
