// arrow_way.h: finds a way from one tile to another with the arrow keys. Header only.
#pragma once

#include <algorithm>
#include <iterator>
#include <map>
#include <vector>

#include "screens/tile_cursor.h"

namespace support {

inline constexpr screens::Arrow kArrows[] = {screens::Arrow::Left, screens::Arrow::Right, screens::Arrow::Up,
                                             screens::Arrow::Down};

// The shortest sequence of arrows from one free tile to another. Empty if there is none.
inline std::vector<screens::Arrow> wayTo(const mj::GameState& game, int from, int to) {
  struct Step {
    int before;
    screens::Arrow arrow;
  };
  std::map<int, Step> steps = {{from, {from, screens::Arrow::Left}}};
  std::vector<int> reached = {from};
  for (std::size_t i = 0; i < reached.size() && !steps.contains(to); ++i) {
    for (const screens::Arrow arrow : kArrows) {
      const int next = screens::tileTowards(game, reached[i], arrow);
      if (steps.try_emplace(next, Step{reached[i], arrow}).second) reached.push_back(next);
    }
  }
  std::vector<screens::Arrow> way;
  for (int tile = to; tile != from && steps.contains(tile); tile = steps.at(tile).before)
    way.push_back(steps.at(tile).arrow);
  std::reverse(way.begin(), way.end());
  return way;
}

}  // namespace support
