// levels.h: the layout behind a level number. A level's layout is always the same; only the deal changes
// between games.
#pragma once

#include <array>
#include <vector>

#include "rules/layouts.h"

namespace mj {

// Number of tiles in a level's layout, by stage. Ten levels make a stage.
inline constexpr std::array<int, 10> kStageTargets = {36, 48, 60, 72, 84, 96, 108, 120, 132, 144};

struct LevelConfig {
  int level = 1;
  HeapShape shape = HeapShape::Rect;
  std::vector<Slot> slots;
  int tiles = 0;   // number of slots
  int layers = 0;  // of the layout
  int stage = 0;   // 0…9
};

// Levels count from 1. Lower numbers mean level 1; numbers above 100 stay in the last stage. The result is
// built on the first request and stays valid until the process ends. One thread only.
const LevelConfig& levelToConfig(int level);

}  // namespace mj
