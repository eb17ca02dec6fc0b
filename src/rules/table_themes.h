// table_themes.h: the colours of the table felt, one theme per stage. Units: 0xRRGGBB.
#pragma once

#include <cstdint>

namespace mj {

struct TableTheme {
  const char* name;  // identifier, never shown
  std::uint32_t middle;
  std::uint32_t top;
  std::uint32_t bottom;
  std::uint32_t glow;
  std::uint32_t vignette;
  std::uint32_t ornament;
};

// Stages count from 0. A stage outside 0…9 gets the nearest theme. Never null, valid for the whole run.
const TableTheme* tableThemeForStage(int stage);

// Levels count from 1. A level outside 1…100 gets the nearest theme. Never null, valid for the whole run.
const TableTheme* tableThemeForLevel(int level);

}  // namespace mj
