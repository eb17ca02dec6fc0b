#include "rules/deal.h"

#include <algorithm>
#include <map>
#include <unordered_set>

#include "rules/tiles.h"

namespace mj {
namespace {

// Which slots keep a slot from being free, found once a search instead of once a question.
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

// Looks for an order in which tiles can be taken away two free ones at a time: depth first, trials in an
// order drawn from its generator. Faces play no part. Every deal depends on the exact order of trials and
// draws.
//
// It needs no limit. A tile once free stays free, so a trial only ever fails where one free tile lies on top
// of all that is left, and that can be avoided while there are as many free tiles at the table as layers
// above it. Levels have four layers at most: a position without a way out is a small knot there, and the
// search leaves it within a few steps. Of 45,000 remainders of honest play none made it visit more than two
// positions beyond one a pair; of as many with random holes, as damaged records have them, none more than
// ten. Holes that were sought out to be hard came to 84, which is still nothing. Only an odd number of tiles
// has no way out while many are free, and visiting every subset of them would take for ever; it is turned
// away unsearched.
class Dismantler {
 public:
  Dismantler(const std::vector<Slot>& tiles, std::uint32_t state)
      : neighbours_(neighboursOf(tiles)), present_(tiles.size(), '1'), rng_(state) {}

  bool run() { return present_.size() % 2 == 0 && rec(present_.size()); }
  // Pairs of indexes into the tiles; empty when the search failed.
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
  std::string present_;  // '1' or '0' for each tile: the position, and its key among the dead ones
  std::vector<SlotPair> order_;
  std::unordered_set<std::string> dead_;  // positions known to lead nowhere
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

// The faces on the table by match key, keys and faces in order of appearance.
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

// The faces on the table two by two, each pair matching but for those that a damaged record left without a
// partner.
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

// Gives the k-th pair of slots the k-th pair of faces, as far as both reach.
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
