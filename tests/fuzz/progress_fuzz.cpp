// Whatever progress.json holds, the progress is within its ranges, and saving one part keeps the other.

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/data_file.h"
#include "storage/storage.h"

namespace {

std::vector<store::LevelBest> bests() {
  std::vector<store::LevelBest> all;
  for (const int level : {1, 2, 10}) all.push_back(store::bestFor(level));
  return all;
}

void expectInRange(const store::Progress& progress) {
  assert(1 <= progress.currentLevel && progress.currentLevel <= store::kLastLevel);
  assert(progress.totalSolves >= 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::putFile("progress.json", data, size);
  const store::Progress progress = store::loadProgress();
  expectInRange(progress);
  const std::vector<store::LevelBest> before = bests();

  store::saveProgress(progress);
  assert(store::loadProgress() == progress && bests() == before);
  store::recordBest(1, before[0]);
  assert(store::loadProgress() == progress && bests() == before);

  const store::Progress advanced = store::advanceLevel(progress.currentLevel);
  expectInRange(advanced);
  assert(store::loadProgress() == advanced && bests() == before);
  return 0;
}
