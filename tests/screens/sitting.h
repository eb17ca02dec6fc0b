// sitting.h: plays on a Playing screen without a window or a stack of screens.
#pragma once

#include <optional>

#include "rules/deal.h"
#include "screens/playing.h"
#include "support/data_home.h"
#include "support/screen_harness.h"
#include "ui/focus.h"

namespace test {

inline constexpr ui::GameState kFirstLevel = {.kind = ui::ScreenKind::Playing, .level = 1, .deal = 1};
// After the lowest pair of this deal is taken there is no pair left, and a shuffle helps.
inline constexpr ui::GameState kSoonStuck = {.kind = ui::ScreenKind::Playing, .level = 1, .deal = 9};

// Whether the player starts without files or keeps the existing ones.
enum class Files { None, Kept };

struct Sitting {
  explicit Sitting(const ui::GameState& descriptor = kFirstLevel,
                   support::Drawing drawing = support::Drawing::Textures, int w = 640, int h = 480,
                   Files files = Files::None);
  Sitting(const ui::GameState& descriptor, Files files)
      : Sitting(descriptor, support::Drawing::Textures, 640, 480, files) {}

  // Waits until the tiles have flown in and the flash after that is over.
  void waitForIntro();
  // Clicks a visible point of the tile. Fails the test if there is none.
  void click(int tile);
  void clickBoth(mj::SlotPair pair);
  // Clicks the pair and waits until it is gone. Fails the test if it stays.
  void take(mj::SlotPair pair);
  // Takes pairs in the deal's order until this many are left.
  void playUntilLeft(std::size_t pairs);
  void win() { playUntilLeft(0); }

  const mj::GameState& game() const { return screen.table(); }
  bool lies(int tile) const { return !game().faces[static_cast<std::size_t>(tile)].empty(); }
  // The options that the next frame draws the board with. Runs a frame of length 0.
  ui::BoardOpts shown();
  support::Point at(int tile) const;

  std::optional<support::DataHome> data;
  screens::Playing screen;
  ui::Focus focus;
  support::ScreenHarness harness;
  std::vector<mj::SlotPair> order;  // of pairs that wins the deal
};

// Two free tiles that do not match. There must be such tiles.
mj::SlotPair unequalPair(const mj::GameState& game);
// A visible tile that is not free. Fails the test and returns -1 if there is none.
int blockedTile(const Sitting& sitting);
// A free tile of the highest layer that has one.
int topTile(const mj::GameState& game);
// The available pair on the lowest layers. There must be a pair.
mj::SlotPair lowestPair(const mj::GameState& game);

}  // namespace test
