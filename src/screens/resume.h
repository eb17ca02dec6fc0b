// resume.h: what is left of a saved game when somebody sits down to it again. Knows no screen.
#pragma once

#include <cstdint>
#include <optional>

#include "storage/storage.h"

namespace screens {

// The saved game, ready to be played on; nothing if there is none, or if all its tiles are gone: it would be
// won and never end. What a damaged file says against the rules is dropped: a selected tile that is not free,
// entries of the history whose tiles still lie on the table, a time and counters beyond all reason.
std::optional<store::SavedGame> resumableGame();
// The same if it is one of this level and deal.
std::optional<store::SavedGame> resumableGame(int level, std::uint32_t deal);

}  // namespace screens
