#include "screens/tile_cursor.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

#include "ui/board_geometry.h"
#include "ui/tile.h"

namespace screens {
namespace {

// The centre of a tile as the board is seen, in tile widths.
struct Place {
  double x;
  double y;
};

Place placeOf(const mj::Slot& slot) {
  return {slot.x * 0.5 - ui::kLayerDx * slot.z, ui::kTileAspect * (slot.y * 0.5 - ui::kLayerDy * slot.z)};
}

Place placeOf(const mj::GameState& game, int slot) {
  return placeOf(game.slots[static_cast<std::size_t>(slot)]);
}

// Manhattan distance. The directions are quarters of the plane, and with this measure a step to the nearest
// tile in a quarter gets nearer to every tile of that quarter. With the straight-line distance it may not. No
// tile lies exactly between two quarters: the proportions of a tile rule that out.
double distance(const Place& a, const Place& b) { return std::abs(a.x - b.x) + std::abs(a.y - b.y); }

bool isTowards(const Place& from, const Place& to, Arrow arrow) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  switch (arrow) {
    case Arrow::Left:
      return -dx > std::abs(dy);
    case Arrow::Right:
      return dx > std::abs(dy);
    case Arrow::Up:
      return -dy > std::abs(dx);
    case Arrow::Down:
      return dy > std::abs(dx);
  }
  return false;
}

// -1 if `tiles` is empty.
int nearestOf(const mj::GameState& game, const std::vector<int>& tiles, const Place& place) {
  const auto nearest = std::min_element(tiles.begin(), tiles.end(), [&](int a, int b) {
    return distance(placeOf(game, a), place) < distance(placeOf(game, b), place);
  });
  return nearest == tiles.end() ? -1 : *nearest;
}

Place middleOf(const mj::GameState& game) {
  constexpr double kFar = std::numeric_limits<double>::max();
  Place least = {kFar, kFar};
  Place most = {-kFar, -kFar};
  for (const mj::Slot& slot : game.slots) {
    const Place place = placeOf(slot);
    least = {std::min(least.x, place.x), std::min(least.y, place.y)};
    most = {std::max(most.x, place.x), std::max(most.y, place.y)};
  }
  return {(least.x + most.x) / 2, (least.y + most.y) / 2};
}

}  // namespace

int tileTowards(const mj::GameState& game, int tile, Arrow arrow) {
  const Place from = placeOf(game, tile);
  std::vector<int> ahead = mj::freeIds(game);
  std::erase_if(ahead, [&](int other) { return !isTowards(from, placeOf(game, other), arrow); });
  const int nearest = nearestOf(game, ahead, from);
  return nearest < 0 ? tile : nearest;
}

int firstTile(const mj::GameState& game) {
  if (mj::isFree(game, game.selected)) return game.selected;
  return nearestOf(game, mj::freeIds(game), middleOf(game));
}

int tileNear(const mj::GameState& game, int slot) {
  return nearestOf(game, mj::freeIds(game), placeOf(game, slot));
}

std::vector<int> tilesInReadingOrder(const mj::GameState& game) {
  constexpr double kSameRow = ui::kTileAspect / 2;
  std::vector<int> tiles = mj::freeIds(game);
  const auto y = [&](int tile) { return placeOf(game, tile).y; };
  std::stable_sort(tiles.begin(), tiles.end(), [&](int a, int b) { return y(a) < y(b); });
  // A row extends half a tile below its highest tile.
  for (auto row = tiles.begin(); row != tiles.end();) {
    const double bottom = y(*row) + kSameRow;
    const auto end = std::find_if(row, tiles.end(), [&](int tile) { return y(tile) >= bottom; });
    std::stable_sort(row, end, [&](int a, int b) { return placeOf(game, a).x < placeOf(game, b).x; });
    row = end;
  }
  return tiles;
}

int tileAfter(const mj::GameState& game, int tile, int step) {
  const std::vector<int> tiles = tilesInReadingOrder(game);
  const auto next = std::find(tiles.begin(), tiles.end(), tile) - tiles.begin() + step;
  return 0 <= next && next < std::ssize(tiles) ? tiles[static_cast<std::size_t>(next)] : -1;
}

int partnerAfter(const mj::GameState& game, int tile, int chosen, int step) {
  std::vector<int> tiles = tilesInReadingOrder(game);
  if (step < 0) std::reverse(tiles.begin(), tiles.end());
  const auto here = std::find(tiles.begin(), tiles.end(), tile);
  if (here != tiles.end()) std::rotate(tiles.begin(), here + 1, tiles.end());
  const auto next =
      std::find_if(tiles.begin(), tiles.end(), [&](int other) { return mj::canMatch(game, chosen, other); });
  return next == tiles.end() ? tile : *next;
}

}  // namespace screens
