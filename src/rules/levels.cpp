#include "rules/levels.h"

#include <algorithm>
#include <cstddef>
#include <map>

namespace mj {
namespace {

constexpr int kLastStage = 9;
constexpr double kFlattest = 0.62;
constexpr double kSteepest = 0.32;

// The share of a level's tiles on its lowest layer. Heaps get steeper from stage to stage. Within a stage the
// share cycles through four steps from steep to flat.
double spreadOf(int index, int stage) {
  const double base = index <= 89 ? 0.58 - 0.022 * stage : 0.382;
  return std::clamp(base + 0.05 * (index % 10 % 4), kSteepest, kFlattest);
}

LevelConfig buildLevel(int level) {
  const int index = level - 1;
  const int stage = std::min(index / 10, kLastStage);
  LevelConfig config;
  config.level = level;
  // Each stage skips one shape of the cycle.
  config.shape =
      kShapes[(static_cast<std::size_t>(stage) + static_cast<std::size_t>(index)) % kShapes.size()];
  config.slots =
      buildShapedHeap(config.shape, kStageTargets[static_cast<std::size_t>(stage)], spreadOf(index, stage));
  config.tiles = static_cast<int>(config.slots.size());
  config.layers = boundsOf(config.slots).levels;
  config.stage = stage;
  return config;
}

}  // namespace

const LevelConfig& levelToConfig(int level) {
  // Never destroyed: a screen may save its game at exit, when destructors of statics already run.
  static auto& cache = *new std::map<int, LevelConfig>;
  const int key = std::max(1, level);
  const auto found = cache.find(key);
  return found != cache.end() ? found->second : cache.emplace(key, buildLevel(key)).first->second;
}

}  // namespace mj
