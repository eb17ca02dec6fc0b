// table.h: what the game's window ought to show: one game on its table, at a zoom and a pan. It is played
// along with the real game, by the same rules, and painted here with cairo alone; pictures of the window are
// compared with that. It also tells the player where to click. Units: pixels of the window.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <vector>

#include "rules/engine.h"
#include "ui/board.h"
#include "ui/handles.h"
#include "window/desktop.h"

namespace window {

class Table {
 public:
  // The game as it is dealt.
  explicit Table(int level = 1, std::uint32_t deal = 1);

  // To be played along.
  mj::GameState game;
  // To be zoomed and panned along.
  ui::BoardOpts view;

  // A place in a window of that size where a click means this tile.
  Point spotOn(int tile, Size windowSize) const;
  // A pair that can be taken; a tile that cannot be, and that can be seen.
  mj::SlotPair pair() const { return mj::findHint(game); }
  int blockedTile() const;

  // Whether the picture shows the board at rest: every tile where it lies, free or veiled, and the bare cloth
  // between and around them. Tiles in `except` are not looked at: those under the pulse of a selection.
  testing::AssertionResult isShownIn(cairo_surface_t* picture, const std::set<int>& except = {}) const;
  // How many of the tiles on the table the picture shows.
  int tilesShownIn(cairo_surface_t* picture) const;
  // Whether the board is covered by darkness, as in a pause.
  bool isHiddenIn(cairo_surface_t* picture) const;
  // Whether the picture shows the tile as selected.
  bool isSelectedIn(cairo_surface_t* picture, int tile) const;

 private:
  // How one tile's place looks beside how it ought to, over the pixels that show it; none if it is hidden.
  struct Look {
    int pixels = 0;
    double difference = 0;  // 0 to 255; sums over the pixels at first, then means, as those below
    double light = 0;       // by how much brighter than expected
    double red = 0;         // by how much redder
    double otherInk = 0;    // pixels that have an altogether different colour

    void add(std::uint32_t seen, std::uint32_t wanted);
    Look means() const;
    bool isSame() const;
    bool isDarkened() const;
    bool isSelected() const;
  };
  struct Comparison {
    std::vector<Look> tiles;     // by slot id
    double clothDifference = 0;  // of the board's cloth around the tiles
  };

  // How a window of that size ought to show the game in this view.
  struct Sight {
    Size windowSize;
    mj::GameState game;
    ui::BoardOpts view;
    ui::CairoSurface picture;
    std::vector<int> owner;  // for each pixel the slot to be judged by it
  };

  const Sight& sightIn(Size windowSize) const;
  ui::CairoSurface painted(Size windowSize) const;
  std::vector<int> owners(Size windowSize) const;
  Comparison compare(cairo_surface_t* picture) const;
  ui::Rect boardIn(Size windowSize) const;

  int level;
  mutable std::shared_ptr<const Sight> lastSight;  // whoever waits for it looks many times
};

}  // namespace window
