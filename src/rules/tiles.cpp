#include "rules/tiles.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstddef>
#include <string_view>
#include <system_error>

namespace mj {
namespace {

constexpr std::array<std::string_view, 3> kNumberSuits = {"dot", "bam", "wan"};
constexpr std::array<std::string_view, 4> kDirections = {"E", "S", "W", "N"};
constexpr std::array<std::string_view, 3> kDragonNames = {"Red", "Green", "White"};

constexpr std::array<const char*, 9> kWanNumerals = {"一", "二", "三", "四", "五", "六", "七", "八", "九"};
constexpr std::array<const char*, 4> kWindGlyphs = {"東", "南", "西", "北"};
constexpr std::array<const char*, 3> kDragonGlyphs = {"中", "發", ""};  // the white dragon is a frame

bool startsWith(std::string_view s, std::string_view prefix) { return s.substr(0, prefix.size()) == prefix; }

// The decimal number that starts at `pos`. 0 without a digit, INT_MAX if it does not fit an int.
int tailNumber(const std::string& s, std::size_t pos) {
  if (pos >= s.size() || s[pos] < '0' || s[pos] > '9') return 0;
  int number = 0;
  const auto result = std::from_chars(s.data() + pos, s.data() + s.size(), number);
  return result.ec == std::errc() ? number : INT_MAX;
}

FaceInfo wanInfo(const std::string& face) {
  const int rank = tailNumber(face, 3);
  const bool known = rank >= 1 && rank <= 9;
  return {kCharacters, rank, known ? kWanNumerals[static_cast<std::size_t>(rank - 1)] : ""};
}

// Winds and dragons: the word after the four-letter prefix gives rank and glyph. Unknown words get rank 0 and
// no glyph.
template <std::size_t N>
FaceInfo wordInfo(Suit suit, std::string_view word, const std::array<std::string_view, N>& words,
                  const std::array<const char*, N>& glyphs) {
  const auto found = static_cast<std::size_t>(std::find(words.begin(), words.end(), word) - words.begin());
  if (found == N) return {suit, 0, ""};
  return {suit, static_cast<int>(found), glyphs[found]};
}

}  // namespace

std::vector<FacePair> allPairs() {
  std::vector<FacePair> pairs;
  const auto addTwice = [&pairs](const std::string& face) { pairs.insert(pairs.end(), 2, {face, face}); };
  for (const std::string_view suit : kNumberSuits) {
    for (int number = 1; number <= 9; ++number) addTwice(std::string(suit) + std::to_string(number));
  }
  for (const std::string_view direction : kDirections) addTwice("wind" + std::string(direction));
  for (const std::string_view dragon : kDragonNames) addTwice("drag" + std::string(dragon));
  pairs.insert(
      pairs.end(),
      {{"flower1", "flower2"}, {"flower3", "flower4"}, {"season1", "season2"}, {"season3", "season4"}});
  return pairs;
}

std::string matchKey(const std::string& face) {
  if (startsWith(face, "flower")) return "flowerGroup";
  if (startsWith(face, "season")) return "seasonGroup";
  return face;
}

FaceInfo faceInfo(const std::string& face) {
  const std::string_view name = face;
  if (startsWith(name, "dot")) return {kDots, tailNumber(face, 3), ""};
  if (startsWith(name, "bam")) return {kBamboos, tailNumber(face, 3), ""};
  if (startsWith(name, "wan")) return wanInfo(face);
  if (startsWith(name, "wind")) return wordInfo(kWinds, name.substr(4), kDirections, kWindGlyphs);
  if (startsWith(name, "drag")) return wordInfo(kDragons, name.substr(4), kDragonNames, kDragonGlyphs);
  // Flowers and seasons are numbered from 1 but ranked from 0.
  if (startsWith(name, "flower")) return {kFlowers, tailNumber(face, 6) - 1, ""};
  if (startsWith(name, "season")) return {kSeasons, tailNumber(face, 6) - 1, ""};
  return {kDots, 1, ""};
}

}  // namespace mj
