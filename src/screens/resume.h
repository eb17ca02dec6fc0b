// resume.h: checks and repairs a saved game before it is resumed. Knows no screen.
#pragma once

#include <cstdint>
#include <optional>

#include "storage/storage.h"

namespace screens {

// The saved game, ready to be resumed. Nothing if there is none or if no tiles are left: that game would be
// won and never end. Repairs what breaks the rules in a damaged file: unselects a tile that is not free,
// drops undo entries whose tiles are still on the table, limits the time and the counters to sane values.
std::optional<store::SavedGame> resumableGame();
// The same, but only if the saved game has this level and deal.
std::optional<store::SavedGame> resumableGame(int level, std::uint32_t deal);

}  // namespace screens
