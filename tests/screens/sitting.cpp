#include "screens/sitting.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rules/levels.h"

namespace test {
namespace {

// Seconds; longer than the longest fly-in and the flash after it.
constexpr double kLongEnough = 20;
constexpr double kPairTime = 0.321;

int layerOf(const mj::GameState& game, int tile) { return game.slots[static_cast<std::size_t>(tile)].z; }

}  // namespace

Sitting::Sitting(const ui::GameState& descriptor, support::Drawing drawing, int w, int h, Files files)
    : data(files == Files::None ? std::make_optional<support::DataHome>() : std::nullopt),
      screen(descriptor),
      harness([this](ui::Ctx& ctx) { focus.frame(ctx, false, [&] { screen.update(ctx); }); }, w, h, drawing),
      order(mj::createDeal(mj::levelToConfig(descriptor.level).slots, descriptor.deal).order) {
  harness.frame();
}

void Sitting::waitForIntro() {
  harness.frame(kLongEnough);
  harness.frame(1);
}

void Sitting::click(int tile) {
  const support::Point p = at(tile);
  harness.click(p.x, p.y);
}

void Sitting::clickBoth(mj::SlotPair pair) {
  click(pair.first);
  click(pair.second);
}

void Sitting::take(mj::SlotPair pair) {
  clickBoth(pair);
  harness.frame(kPairTime);
  EXPECT_FALSE(lies(pair.first) || lies(pair.second));
}

void Sitting::playUntilLeft(std::size_t pairs) {
  while (game().history.size() + pairs < order.size()) take(order[game().history.size()]);
}

ui::BoardOpts Sitting::shown() {
  harness.frame(0);
  return screen.boardOptions();
}

support::Point Sitting::at(int tile) const {
  const auto point = support::visiblePoint(game(), screen.boardRect(), screen.boardOptions(), tile);
  EXPECT_TRUE(point) << "tile " << tile << " cannot be seen";
  return point.value_or(support::Point{});
}

mj::SlotPair unequalPair(const mj::GameState& game) {
  const std::vector<int> ids = mj::freeIds(game);
  const auto other =
      std::find_if(ids.begin() + 1, ids.end(), [&](int id) { return !mj::canMatch(game, ids[0], id); });
  return {ids[0], *other};
}

int blockedTile(const Sitting& sitting) {
  for (const mj::Slot& slot : sitting.game().slots) {
    const bool seen = support::visiblePoint(sitting.game(), sitting.screen.boardRect(),
                                            sitting.screen.boardOptions(), slot.id)
                          .has_value();
    if (seen && !mj::isFree(sitting.game(), slot.id)) return slot.id;
  }
  ADD_FAILURE() << "no tile is blocked";
  return -1;
}

int topTile(const mj::GameState& game) {
  const std::vector<int> ids = mj::freeIds(game);
  return *std::max_element(ids.begin(), ids.end(),
                           [&](int a, int b) { return layerOf(game, a) < layerOf(game, b); });
}

mj::SlotPair lowestPair(const mj::GameState& game) {
  const std::vector<mj::SlotPair> pairs = mj::availablePairs(game);
  const auto height = [&](const mj::SlotPair& pair) {
    return layerOf(game, pair.first) + layerOf(game, pair.second);
  };
  return *std::min_element(pairs.begin(), pairs.end(), [&](const mj::SlotPair& a, const mj::SlotPair& b) {
    return height(a) < height(b);
  });
}

}  // namespace test
