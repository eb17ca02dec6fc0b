#include "window/table.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "app/geometry.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/playing.h"
#include "support/glyph_font.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/tile.h"

namespace window {
namespace {

// Differences are means over the channels of a pixel, 0 to 255.
// The window's renderer puts tiles on whole pixels, scales ready pictures when zoomed, and the one without
// premultiplied blending darkens edges: all that costs a tile eleven in the mean. A veil more or less, a tile
// too many or too few, a flight, a flash or a selection costs thirty and more.
constexpr double kSameTile = 20;
// A pixel that differs by more is ink where there ought to be none, or none where there ought to be. Edges
// alone make that a twentieth of a tile's pixels, another face a tenth and more; a few faces are too alike.
constexpr double kOtherInk = 50;
constexpr double kSameInk = 0.07;
// The cloth is one picture, drawn as it is.
constexpr double kSameCloth = 2;
// A tile of which less than this part can be seen is taken for hidden: its neighbours' edges are all there
// is.
constexpr double kLeastShare = 0.125;
// A selection's pulse at its weakest brings more red than this.
constexpr double kSelectedRed = 20;
// A veil that hides the board takes more light than this from it, from blocked tiles too.
constexpr double kHiddenLight = -60;

// Who is to be judged by a pixel, besides tiles.
constexpr int kNobody = -1;
constexpr int kCloth = -2;

// The tiles' characters are painted here as in the game: with its own font.
void useBundledFont() {
  static const bool registered = support::registerGlyphFont();
  if (!registered) throw std::runtime_error("no glyph font");
}

struct PixelRect {
  int left;
  int top;
  int right;
  int bottom;
};

// The whole pixels inside of both.
PixelRect pixelsInside(const ui::Rect& rect, const ui::Rect& bounds) {
  return {static_cast<int>(std::ceil(std::max(rect.x, bounds.x))),
          static_cast<int>(std::ceil(std::max(rect.y, bounds.y))),
          static_cast<int>(std::floor(std::min(rect.x + rect.w, bounds.x + bounds.w))),
          static_cast<int>(std::floor(std::min(rect.y + rect.h, bounds.y + bounds.h)))};
}

// Pixels to one of the units that the game counts in.
double growthIn(Size windowSize) { return ui::windowGrowth(windowSize.w, windowSize.h); }

ui::Rect inPixels(const ui::Rect& rect, double growth) {
  return {rect.x * growth, rect.y * growth, rect.w * growth, rect.h * growth};
}

int channel(std::uint32_t pixel, int shift) { return static_cast<int>(pixel >> shift & 0xFF); }

}  // namespace

bool Table::Look::isSame() const { return difference <= kSameTile && otherInk <= kSameInk; }
bool Table::Look::isDarkened() const { return light < kHiddenLight; }
bool Table::Look::isSelected() const { return red > kSelectedRed; }

void Table::Look::add(std::uint32_t seen, std::uint32_t wanted) {
  const int redder = channel(seen, 16) - channel(wanted, 16);
  const int greener = channel(seen, 8) - channel(wanted, 8);
  const int bluer = channel(seen, 0) - channel(wanted, 0);
  const double distance = (std::abs(redder) + std::abs(greener) + std::abs(bluer)) / 3.0;
  ++pixels;
  difference += distance;
  light += (redder + greener + bluer) / 3.0;
  red += redder - (greener + bluer) / 2.0;
  if (distance > kOtherInk) ++otherInk;
}

Table::Look Table::Look::means() const {
  const double count = std::max(pixels, 1);
  return {pixels, difference / count, light / count, red / count, otherInk / count};
}

Table::Table(int levelNumber, std::uint32_t deal)
    : game(mj::createGame(mj::levelToConfig(levelNumber).slots, deal)), level(levelNumber) {}

ui::Rect Table::boardIn(Size windowSize) const {
  const double growth = growthIn(windowSize);
  return screens::playingLayout(windowSize.w / growth, windowSize.h / growth).board;
}

Point Table::spotOn(int tile, Size windowSize) const {
  const double growth = growthIn(windowSize);
  const ui::Rect board = boardIn(windowSize);
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, view.fit);
  const ui::Rect rect =
      ui::BoardView(board, view).toScreen(geom.place(game.slots[static_cast<std::size_t>(tile)]));
  constexpr int kTries = 8;
  // The middle first, then wherever the tile is not hidden.
  for (int i = 0; i < kTries * kTries; ++i) {
    const int column = (i + kTries / 2) % kTries;
    const int row = (i / kTries + kTries / 2) % kTries;
    const Point spot = {static_cast<int>(growth * (rect.x + rect.w * (column + 0.5) / kTries)),
                        static_cast<int>(growth * (rect.y + rect.h * (row + 0.5) / kTries))};
    if (ui::hitTestTile(game, board, view, spot.x / growth, spot.y / growth) == tile) return spot;
  }
  throw std::runtime_error("the tile cannot be seen");
}

int Table::blockedTile() const {
  const auto isBlocked = [&](const mj::Slot& slot) { return !mj::isFree(game, slot.id); };
  // The upper layers come last, and of them enough is seen.
  return std::find_if(game.slots.rbegin(), game.slots.rend(), isBlocked)->id;
}

ui::CairoSurface Table::painted(Size windowSize) const {
  useBundledFont();
  return support::makePictureApart(windowSize.w, windowSize.h, [&](cairo_t* cr) {
    const double growth = growthIn(windowSize);
    cairo_scale(cr, growth, growth);
    ui::Ctx ctx;
    ctx.cr = cr;
    ctx.w = windowSize.w / growth;
    ctx.h = windowSize.h / growth;
    ui::drawFelt(ctx, mj::tableThemeForLevel(level), true);
    ui::drawBoard(ctx, game, boardIn(windowSize), view, nullptr);
  });
}

// For each pixel of the window the slot to be judged by it: the tile that shows there, or an empty slot where
// only the cloth does.
std::vector<int> Table::owners(Size windowSize) const {
  const double growth = growthIn(windowSize);
  const ui::Rect board = boardIn(windowSize);
  const ui::Rect boardPixels = inPixels(board, growth);
  const ui::BoardView boardView(board, view);
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, view.fit);
  std::vector<int> owner(static_cast<std::size_t>(windowSize.w * windowSize.h), kNobody);
  const auto give = [&](const ui::Rect& place, int id) {
    const PixelRect rect = pixelsInside(place, boardPixels);
    for (int y = rect.top; y < rect.bottom; ++y) {
      for (int x = rect.left; x < rect.right; ++x) owner[static_cast<std::size_t>(y * windowSize.w + x)] = id;
    }
  };
  const auto placeOf = [&](const mj::Slot& slot) {
    return inPixels(boardView.toScreen(geom.place(slot)), growth);
  };
  const auto giveSlot = [&](const mj::Slot& slot) { give(placeOf(slot), slot.id); };

  give(boardPixels, kCloth);
  for (const mj::Slot& slot : game.slots) {
    // A tile may come to lie a pixel beside its place.
    give(ui::insetRect(placeOf(slot), -2), kNobody);
  }
  for (const mj::Slot& slot : game.slots) {
    if (game.faces[static_cast<std::size_t>(slot.id)].empty()) giveSlot(slot);
  }
  for (const int id : ui::paintOrder(game)) giveSlot(game.slots[static_cast<std::size_t>(id)]);
  return owner;
}

const Table::Sight& Table::sightIn(Size windowSize) const {
  const bool isNew =
      !lastSight || lastSight->windowSize != windowSize || lastSight->game != game || lastSight->view != view;
  if (isNew) {
    lastSight =
        std::make_shared<const Sight>(Sight{windowSize, game, view, painted(windowSize), owners(windowSize)});
  }
  return *lastSight;
}

Table::Comparison Table::compare(cairo_surface_t* picture) const {
  const Size windowSize = sizeOf(picture);
  const Sight& expected = sightIn(windowSize);
  const support::Pixels seenPixels(picture);
  const support::Pixels expectedPixels(expected.picture.get());
  std::vector<Look> sums(game.slots.size());
  Look cloth;
  for (int y = 0; y < windowSize.h; ++y) {
    for (int x = 0; x < windowSize.w; ++x) {
      const int id = expected.owner[static_cast<std::size_t>(y * windowSize.w + x)];
      if (id == kNobody) continue;
      Look& look = id == kCloth ? cloth : sums[static_cast<std::size_t>(id)];
      look.add(seenPixels.at(x, y), expectedPixels.at(x, y));
    }
  }
  const ui::BoardGeom geom = ui::boardGeometry(game.slots, boardIn(windowSize), view.fit);
  const double enlarged = view.zoom * growthIn(windowSize);
  const double leastPixels = kLeastShare * geom.tileW * geom.tileH * enlarged * enlarged;
  for (Look& look : sums) look = look.pixels < leastPixels ? Look{} : look.means();
  return {sums, cloth.means().difference};
}

testing::AssertionResult Table::isShownIn(cairo_surface_t* picture, const std::set<int>& except) const {
  if (picture == nullptr) return testing::AssertionFailure() << "no picture";
  const Comparison seen = compare(picture);
  testing::AssertionResult result = testing::AssertionFailure()
                                    << "cloth differs by " << seen.clothDifference;
  bool same = seen.clothDifference <= kSameCloth;
  for (const mj::Slot& slot : game.slots) {
    const Look& look = seen.tiles[static_cast<std::size_t>(slot.id)];
    if (look.isSame() || except.contains(slot.id)) continue;
    same = false;
    result << ", slot " << slot.id << " by " << look.difference << " and ink " << look.otherInk;
  }
  return same ? testing::AssertionSuccess() : result;
}

int Table::tilesShownIn(cairo_surface_t* picture) const {
  if (picture == nullptr) return 0;
  const std::vector<Look> looks = compare(picture).tiles;
  const std::vector<int> tiles = ui::paintOrder(game);
  return static_cast<int>(std::count_if(tiles.begin(), tiles.end(), [&](int id) {
    const Look& look = looks[static_cast<std::size_t>(id)];
    return look.pixels > 0 && look.isSame();
  }));
}

bool Table::isHiddenIn(cairo_surface_t* picture) const {
  if (picture == nullptr) return false;
  const std::vector<Look> looks = compare(picture).tiles;
  const auto count = [&](auto question) { return std::count_if(looks.begin(), looks.end(), question); };
  // Words and buttons may lie over the darkness.
  return count([](const Look& look) { return look.isDarkened(); }) * 2 >
         count([](const Look& look) { return look.pixels > 0; });
}

bool Table::isSelectedIn(cairo_surface_t* picture, int tile) const {
  return picture != nullptr && compare(picture).tiles[static_cast<std::size_t>(tile)].isSelected();
}

}  // namespace window
