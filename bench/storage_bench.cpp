// The cost of the player's files: reading and writing the documents, compared with a well-known library and a
// plain copy of the same bytes, taking turns within each iteration; and the autosave during play, compared
// with a frame.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/json.h"
#include "storage/storage.h"

namespace {

constexpr int kSolves = 200;
constexpr int kLevel = 100;
constexpr double kFrameMs = 16.7;

template <class Act>
double secondsOf(const Act& act) {
  const auto begun = std::chrono::steady_clock::now();
  act();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begun).count();
}

std::string textOfFile(const char* name) {
  js::Value document;
  if (!js::parseFile(store::dataDir() + "/" + name, &document)) std::abort();
  return document.dump();
}

std::string fullGallery() {
  for (int i = 1; i <= kSolves; ++i) {
    const auto seed = static_cast<std::uint32_t>(i) * 2654435761U;
    const std::string id = store::newSolveId();
    store::recordSolve({.id = id,
                        .level = i,
                        .tiles = 144,
                        .seed = seed,
                        .elapsedMs = 1000 + seed % 1000000,
                        .solvedAt = 1718000000123 + i,
                        .shot = id + ".png",
                        .stars = 1 + i % 3,
                        .aids = i % 7});
  }
  return textOfFile("solves.json");
}

// A game with half of its pairs taken.
store::SavedGame gameInPlay() {
  store::SavedGame saved;
  saved.level = kLevel;
  saved.seed = 1;
  saved.game = mj::createGame(mj::levelToConfig(kLevel).slots, saved.seed);
  while (2 * saved.game.removed < static_cast<int>(saved.game.slots.size())) {
    const auto [a, b] = mj::findHint(saved.game);
    if (a < 0) {
      mj::shuffleBoard(saved.game);
    } else {
      mj::applyMatch(saved.game, a, b);
    }
  }
  return saved;
}

std::string savedGame() {
  store::saveGame(gameInPlay());
  return textOfFile("save.json");
}

// Compares the times of the game's code, of the library and of a copy for the same bytes.
template <class Ours, class Yardstick>
void compare(benchmark::State& state, const std::string& text, const Ours& ours, const Yardstick& yardstick) {
  double ourTime = 0;
  double yardstickTime = 0;
  double copyTime = 0;
  std::string copy(text.size(), '\0');
  while (state.KeepRunning()) {
    copyTime += secondsOf([&] {
      std::memcpy(copy.data(), text.data(), text.size());
      benchmark::ClobberMemory();
    });
    yardstickTime += secondsOf(yardstick);
    const double seconds = secondsOf(ours);
    ourTime += seconds;
    state.SetIterationTime(seconds);
  }
  const double megabytes = static_cast<double>(state.iterations()) * static_cast<double>(text.size()) / 1e6;
  state.counters["MB/s"] = megabytes / ourTime;
  state.counters["yardstick_MB/s"] = megabytes / yardstickTime;
  state.counters["copy_MB/s"] = megabytes / copyTime;
  state.counters["ours/yardstick"] = ourTime / yardstickTime;
  state.counters["bytes"] = static_cast<double>(text.size());
}

void parse(benchmark::State& state, std::string (*document)()) {
  const std::string text = document();
  compare(
      state, text, [&] { benchmark::DoNotOptimize(js::parse(text)); },
      [&] { benchmark::DoNotOptimize(nlohmann::json::parse(text)); });
}

void dump(benchmark::State& state, std::string (*document)()) {
  const std::string text = document();
  const js::Value ours = js::parse(text);
  const nlohmann::json yardstick = nlohmann::json::parse(text);
  compare(
      state, text, [&] { benchmark::DoNotOptimize(ours.dump()); },
      [&] { benchmark::DoNotOptimize(yardstick.dump()); });
}

void autosave(benchmark::State& state) {
  const store::SavedGame saved = gameInPlay();
  std::vector<double> times;
  while (state.KeepRunning()) {
    times.push_back(secondsOf([&] { store::saveGame(saved); }));
    state.SetIterationTime(times.back());
  }
  std::sort(times.begin(), times.end());
  state.counters["p50_ms"] = 1000 * times[times.size() / 2];
  state.counters["p99_ms"] = 1000 * times[times.size() * 99 / 100];
  state.counters["p99/frame"] = 1000 * times[times.size() * 99 / 100] / kFrameMs;
}

BENCHMARK_CAPTURE(parse, solves, fullGallery)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(parse, save, savedGame)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(dump, solves, fullGallery)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(dump, save, savedGame)->UseManualTime()->Unit(benchmark::kMicrosecond);
BENCHMARK(autosave)->UseManualTime()->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  std::string home = (std::filesystem::temp_directory_path() / "veskara-bench-XXXXXX").string();
  if (mkdtemp(home.data()) == nullptr || setenv("XDG_DATA_HOME", home.c_str(), 1) != 0) return 1;
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  std::filesystem::remove_all(home);
  return 0;
}
