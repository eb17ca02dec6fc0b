#include "rules/deal.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "rules/tiles.h"

namespace mj {
namespace {

// The slots that can block a slot, computed once per search.
struct Neighbours {
  std::vector<std::size_t> above;
  std::vector<std::size_t> left;
  std::vector<std::size_t> right;
};

std::vector<Neighbours> neighboursOf(const std::vector<Slot>& slots) {
  std::vector<Neighbours> all(slots.size());
  for (std::size_t i = 0; i < slots.size(); ++i) {
    for (std::size_t j = 0; j < slots.size(); ++j) {
      const Side side = sideOf(slots[i], slots[j]);
      if (side == Side::Above) all[i].above.push_back(j);
      if (side == Side::Left) all[i].left.push_back(j);
      if (side == Side::Right) all[i].right.push_back(j);
    }
  }
  return all;
}

// Searches for an order in which the tiles can be removed in pairs of free tiles. Faces play no part. The
// search is depth first and draws the order of its trials from the generator, so every deal depends on the
// exact order of trials and draws.
//
// The search has no limit because it needs none. A free tile stays free, so a trial fails only where a single
// free tile covers everything that is left. The search avoids that while there are at least as many free
// tiles on the table as layers above it. Levels have at most four layers, so a dead end is always small there
// and the search leaves it within a few steps. Measured on 45,000 positions from honest play, it visited at
// most two positions more than there were pairs; on as many positions with random holes, as in damaged
// records, at most ten more. The hardest holes found by a targeted search cost 84 more. The exception is an
// odd number of tiles: it has no solution even with many free tiles, and the search would visit every subset.
// run() rejects it without searching.
class Dismantler {
 public:
  Dismantler(const std::vector<Slot>& tiles, std::uint32_t state)
      : neighbours_(neighboursOf(tiles)), present_(tiles.size(), '1'), rng_(state) {}

  bool run() { return present_.size() % 2 == 0 && rec(present_.size()); }
  // Pairs of indexes into the tiles. Empty if the search failed.
  const std::vector<SlotPair>& order() const { return order_; }
  std::uint32_t rng() const { return rng_; }

 private:
  bool rec(std::size_t remaining) {
    if (remaining == 0) return true;
    if (dead_.count(present_) != 0) return false;
    std::vector<int> free = freeTiles();
    shuffleInPlace(free, rng_);
    for (std::size_t i = 0; i < free.size(); ++i) {
      for (std::size_t j = i + 1; j < free.size(); ++j) {
        take(free[i], free[j]);
        if (rec(remaining - 2)) return true;
        putBack();
      }
    }
    dead_.insert(present_);
    return false;
  }

  std::vector<int> freeTiles() const {
    std::vector<int> free;
    for (std::size_t i = 0; i < present_.size(); ++i) {
      if (present_[i] == '1' && isFree(neighbours_[i])) free.push_back(static_cast<int>(i));
    }
    return free;
  }

  bool isFree(const Neighbours& around) const {
    return !anyPresent(around.above) && (!anyPresent(around.left) || !anyPresent(around.right));
  }

  bool anyPresent(const std::vector<std::size_t>& tiles) const {
    return std::any_of(tiles.begin(), tiles.end(), [this](std::size_t i) { return present_[i] == '1'; });
  }

  void take(int a, int b) {
    order_.emplace_back(a, b);
    setPresent(order_.back(), '0');
  }

  void putBack() {
    setPresent(order_.back(), '1');
    order_.pop_back();
  }

  void setPresent(const SlotPair& pair, char flag) {
    present_[static_cast<std::size_t>(pair.first)] = flag;
    present_[static_cast<std::size_t>(pair.second)] = flag;
  }

  std::vector<Neighbours> neighbours_;
  std::string present_;  // the position, '1' or '0' for each tile; also its key in dead_
  std::vector<SlotPair> order_;
  std::unordered_set<std::string> dead_;  // positions with no solution
  std::uint32_t rng_;
};

std::vector<Slot> tilesOnTable(const std::vector<Slot>& slots, const std::vector<std::string>& faces) {
  std::vector<Slot> tiles;
  for (const Slot& slot : slots) {
    if (!faces[static_cast<std::size_t>(slot.id)].empty()) tiles.push_back(slot);
  }
  return tiles;
}

std::vector<SlotPair> slotIds(const std::vector<Slot>& tiles, std::vector<SlotPair> order) {
  for (auto& [a, b] : order) {
    a = tiles[static_cast<std::size_t>(a)].id;
    b = tiles[static_cast<std::size_t>(b)].id;
  }
  return order;
}

// The faces on the table grouped by match key. Groups and faces are in order of appearance.
std::vector<std::vector<std::string>> groupByKey(const std::vector<std::string>& faces) {
  std::map<std::string, std::size_t> groupOfKey;
  std::vector<std::vector<std::string>> groups;
  for (const std::string& face : faces) {
    if (face.empty()) continue;
    const auto [entry, isNew] = groupOfKey.try_emplace(matchKey(face), groups.size());
    if (isNew) groups.emplace_back();
    groups[entry->second].push_back(face);
  }
  return groups;
}

// The faces on the table as pairs. Pairs match, except those built from faces that have no partner in a
// damaged record.
std::vector<FacePair> pairsOnTable(const std::vector<std::string>& faces) {
  auto groups = groupByKey(faces);
  std::vector<std::string> leftOver;
  for (auto& group : groups) {
    if (group.size() % 2 == 0) continue;
    leftOver.push_back(group.back());
    group.pop_back();
  }
  groups.push_back(leftOver);

  std::vector<FacePair> pairs;
  for (const auto& group : groups) {
    for (std::size_t i = 1; i < group.size(); i += 2) pairs.emplace_back(group[i - 1], group[i]);
  }
  return pairs;
}

// Puts the k-th pair of faces on the k-th pair of slots, until either list ends.
void layFaces(const std::vector<SlotPair>& order, const std::vector<FacePair>& pairs,
              std::vector<std::string>& faces) {
  for (std::size_t k = 0; k < std::min(order.size(), pairs.size()); ++k) {
    faces[static_cast<std::size_t>(order[k].first)] = pairs[k].first;
    faces[static_cast<std::size_t>(order[k].second)] = pairs[k].second;
  }
}

}  // namespace

double nextFraction(std::uint32_t& state) {
  state += 0x6D2B79F5U;
  std::uint32_t t = state;
  t = (t ^ (t >> 15)) * (t | 1U);
  t ^= t + (t ^ (t >> 7)) * (t | 61U);
  return (t ^ (t >> 14)) * 0x1p-32;
}

Deal createDeal(const std::vector<Slot>& slots, std::uint32_t seed) {
  std::uint32_t state = seed;
  std::vector<FacePair> pairs = allPairs();
  shuffleInPlace(pairs, state);
  Dismantler search(slots, state);
  search.run();
  Deal deal{std::vector<std::string>(slots.size()), search.rng(), search.order()};
  layFaces(deal.order, pairs, deal.faces);
  return deal;
}

Deal reshufflePresent(const std::vector<Slot>& slots, const std::vector<std::string>& faces,
                      std::uint32_t state) {
  std::uint32_t shuffled = state;
  std::vector<FacePair> pairs = pairsOnTable(faces);
  shuffleInPlace(pairs, shuffled);
  const std::vector<Slot> tiles = tilesOnTable(slots, faces);
  Dismantler search(tiles, shuffled);
  if (!search.run()) return {faces, state, {}};
  Deal deal{faces, search.rng(), slotIds(tiles, search.order())};
  layFaces(deal.order, pairs, deal.faces);
  return deal;
}

}  // namespace mj
