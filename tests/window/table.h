// table.h: a model of a game on its table with zoom and pan. The tests play it along with the real game, by
// the same rules. It is painted with cairo only, and pictures of the window are compared with that. It also
// tells where to click. Units: pixels of the window.
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
  // The game right after its deal.
  explicit Table(int level = 1, std::uint32_t deal = 1);

  // Play it along with the real game.
  mj::GameState game;
  // Zoom and pan it along with the real game.
  ui::BoardOpts view;

  // A place in a window of this size where a click hits this tile. Throws std::runtime_error if the tile is
  // hidden.
  Point spotOn(int tile, Size windowSize) const;
  // A pair that can be taken, and a visible tile that cannot.
  mj::SlotPair pair() const { return mj::findHint(game); }
  int blockedTile() const;

  // Whether the picture shows the board at rest: every tile in its place, free or veiled, and bare cloth
  // between and around them. Ignores the tiles in `except`, for example a selected tile, which pulses.
  testing::AssertionResult isShownIn(cairo_surface_t* picture, const std::set<int>& except = {}) const;
  // How many of the tiles on the table the picture shows.
  int tilesShownIn(cairo_surface_t* picture) const;
  // Whether the board is darkened, as in a pause.
  bool isHiddenIn(cairo_surface_t* picture) const;
  // Whether the picture shows the tile as selected.
  bool isSelectedIn(cairo_surface_t* picture, int tile) const;

 private:
  // The difference between one slot's visible pixels and the expected ones. `pixels` is 0 if the slot is
  // hidden.
  struct Look {
    int pixels = 0;
    double difference = 0;  // 0 to 255; first the sum over the pixels, then the mean, like those below
    double light = 0;       // how much brighter than expected
    double red = 0;         // how much redder
    double otherInk = 0;    // pixels of a completely different colour

    void add(std::uint32_t seen, std::uint32_t wanted);
    Look means() const;
    bool isSame() const;
    bool isDarkened() const;
    bool isSelected() const;
  };
  struct Comparison {
    std::vector<Look> tiles;     // by slot id
    double clothDifference = 0;  // of the bare cloth around the tiles
  };

  // How the game should look at this view in a window of this size.
  struct Sight {
    Size windowSize;
    mj::GameState game;
    ui::BoardOpts view;
    ui::CairoSurface picture;
    std::vector<int> owner;  // by pixel: the slot it belongs to, or a negative constant
  };

  const Sight& sightIn(Size windowSize) const;
  ui::CairoSurface painted(Size windowSize) const;
  std::vector<int> owners(Size windowSize) const;
  Comparison compare(cairo_surface_t* picture) const;
  ui::Rect boardIn(Size windowSize) const;

  int level;
  mutable std::shared_ptr<const Sight> lastSight;  // cached, because waiting tests compare many times
};

}  // namespace window
