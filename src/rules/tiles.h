// tiles.h: the 144 tiles of a game as face names, which face matches which, and what a face shows.
// Knows no layout and no drawing. Face names are plain ASCII ("dot1", "windE", "dragRed", "flower3"); saved
// games hold the same names, so they never change. An empty name stands for a tile that is gone.
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
  std::string glyph;  // UTF-8; empty where the face is drawn without text

  bool operator==(const FaceInfo&) const = default;
};

using FacePair = std::pair<std::string, std::string>;

// The whole set as 72 matching pairs: each ordinary face twice in a row, then the two flower and the two
// season pairs. Deals are drawn from this order, so changing it would change every deal.
std::vector<FacePair> allPairs();

// Two tiles match exactly when their keys are equal. All flowers share one key and all seasons another; every
// other name, known or not, is its own key.
std::string matchKey(const std::string& face);

// What to draw for a face name. Outside text may reach it: ranks may then lie outside the ranges above (rank
// 0 for a suit without a number, -1 for a bare flower or season, 12 for "wan12"), and a name of no suit is a
// one of dots.
FaceInfo faceInfo(const std::string& face);

}  // namespace mj
