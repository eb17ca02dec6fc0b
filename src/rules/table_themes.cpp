#include "rules/table_themes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace mj {
namespace {

// name, middle, top, bottom, glow, vignette, ornament
constexpr std::array<TableTheme, 10> kThemes = {{
    {"jade", 0x0E3A2B, 0x1A6347, 0x072017, 0x2C8A63, 0x04140E, 0xE8B84B},
    {"imperialRed", 0x5E1414, 0x8A2222, 0x2A0707, 0xB0382F, 0x1A0303, 0xF0CF6A},
    {"midnightBlue", 0x122A55, 0x1E417E, 0x07142E, 0x2F5FAE, 0x03081A, 0xE8B84B},
    {"violet", 0x361A52, 0x512A7E, 0x1B0C30, 0x7A44AE, 0x0E051A, 0xE6C463},
    {"lacquerBlack", 0x1D1813, 0x312921, 0x0A0807, 0x5A4A36, 0x000000, 0xD9A441},
    {"sandalwood", 0x5A3A1E, 0x7E552E, 0x2E1D0E, 0xA8773F, 0x190F06, 0xF0D488},
    {"emerald", 0x0C4A30, 0x157A4A, 0x052418, 0x2BB06A, 0x02140C, 0xF0CF6A},
    {"burgundy", 0x4A1530, 0x7E2350, 0x240A18, 0xB03F74, 0x14040C, 0xE8B84B},
    {"petrol", 0x0E3A3F, 0x176369, 0x06201F, 0x2C8A8A, 0x03100F, 0xE6C463},
    {"imperialGold", 0x3A2E0E, 0x5E4A16, 0x1A1405, 0x9A7A2A, 0x0C0903, 0xF5D97A},
}};

}  // namespace

const TableTheme* tableThemeForStage(int stage) {
  return &kThemes[static_cast<std::size_t>(std::clamp(stage, 0, static_cast<int>(kThemes.size()) - 1))];
}

const TableTheme* tableThemeForLevel(int level) {
  return tableThemeForStage((std::clamp(level, 1, 100) - 1) / 10);
}

}  // namespace mj
