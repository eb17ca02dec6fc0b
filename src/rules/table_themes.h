// table_themes.h: the colours of the table felt, one theme a stage. Units: 0xRRGGBB.
#pragma once

#include <cstdint>

namespace mj {

struct TableTheme {
  const char* name;  // an identifier, never shown
  std::uint32_t middle;
  std::uint32_t top;
  std::uint32_t bottom;
  std::uint32_t glow;
  std::uint32_t vignette;
  std::uint32_t ornament;
};

// Stages count from 0; those outside 0…9 get the nearest one's theme. Never null, valid for ever.
const TableTheme* tableThemeForStage(int stage);

// Levels count from 1; those outside 1…100 get the nearest one's theme. Never null, valid for ever.
const TableTheme* tableThemeForLevel(int level);

}  // namespace mj
