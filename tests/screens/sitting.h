// sitting.h: somebody at the table: a Playing screen of its own, run without a window.
#pragma once

#include <optional>

#include "rules/deal.h"
#include "screens/playing.h"
#include "support/data_home.h"
#include "support/screen_harness.h"
#include "ui/focus.h"

namespace test {

inline constexpr ui::GameState kFirstLevel = {.kind = ui::ScreenKind::Playing, .level = 1, .deal = 1};
// Once the lowest pair of this deal is taken no pair is left, and a shuffle helps.
inline constexpr ui::GameState kSoonStuck = {.kind = ui::ScreenKind::Playing, .level = 1, .deal = 9};

// Whether the player's files of before are gone or still there.
enum class Files { None, Kept };

struct Sitting {
  explicit Sitting(const ui::GameState& descriptor = kFirstLevel,
                   support::Drawing drawing = support::Drawing::Textures, int w = 640, int h = 480,
                   Files files = Files::None);
  Sitting(const ui::GameState& descriptor, Files files)
      : Sitting(descriptor, support::Drawing::Textures, 640, 480, files) {}

  // Waits until the tiles have flown in and the flash after it is over.
  void waitForIntro();
  // Clicks where the tile can be seen. The test fails if it cannot.
  void click(int tile);
  void clickBoth(mj::SlotPair pair);
  // Clicks the pair and waits until it is gone.
  void take(mj::SlotPair pair);
  // Takes pairs in the deal's own order until so many are left.
  void playUntilLeft(std::size_t pairs);
  // Takes the last pair, too.
  void win() { playUntilLeft(0); }

  const mj::GameState& game() const { return screen.table(); }
  bool lies(int tile) const { return !game().faces[static_cast<std::size_t>(tile)].empty(); }
  // As the next frame draws it.
  ui::BoardOpts shown();
  support::Point at(int tile) const;

  std::optional<support::DataHome> data;
  screens::Playing screen;
  ui::Focus focus;
  support::ScreenHarness harness;
  std::vector<mj::SlotPair> order;  // of pairs by which the deal can be won
};

// Two free tiles that do not match.
mj::SlotPair unequalPair(const mj::GameState& game);
// A tile that is not free although it can be seen.
int blockedTile(const Sitting& sitting);
// A free tile of the highest layer, which nothing hides.
int topTile(const mj::GameState& game);
// The available pair that lies lowest.
mj::SlotPair lowestPair(const mj::GameState& game);

}  // namespace test
