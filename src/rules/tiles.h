// tiles.h: the 144 tiles of a game as face names, which faces match, and what a face shows. Knows no layout
// and no drawing. Face names are plain ASCII ("dot1", "windE", "dragRed", "flower3"). Saved games contain
// them, so they never change. An empty name means that the tile is gone.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace mj {

// Printed under the numeral of every character tile.
inline constexpr const char* kWanMark = "萬";

enum Suit : int { kDots, kBamboos, kCharacters, kWinds, kDragons, kFlowers, kSeasons };

// Ranks of dragons.
inline constexpr int kRedDragon = 0;
inline constexpr int kWhiteDragon = 2;

struct FaceInfo {
  int suit = kDots;
  int rank = 0;       // dots, bamboos, characters 1…9; winds ESWN 0…3; dragons RGW 0…2; flowers, seasons 0…3
  std::string glyph;  // UTF-8; empty if the face is drawn without text

  bool operator==(const FaceInfo&) const = default;
};

using FacePair = std::pair<std::string, std::string>;

// The whole set as 72 matching pairs: each ordinary face twice, then two flower pairs and two season pairs.
// Deals depend on this order: changing it changes every deal.
std::vector<FacePair> allPairs();

// Two tiles match if and only if their keys are equal. All flowers share one key and all seasons another.
// Every other name, known or not, is its own key.
std::string matchKey(const std::string& face);

// What to draw for a face name. The name may come from a damaged file: a rank may lie outside the ranges
// above (0 for a suit without a number, -1 for a bare flower or season, 12 for "wan12"), and a name of no
// suit is shown as the one of dots.
FaceInfo faceInfo(const std::string& face);

}  // namespace mj
