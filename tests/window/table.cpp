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

// Largest difference of a tile that is as expected: the mean over its pixels and channels, 0 to 255.
// Rendering differences amount to about eleven: the window's renderer puts tiles on whole pixels and scales
// pictures when zoomed, and without premultiplied blending it darkens edges. A missing or extra veil or tile,
// a flying tile, a flash or a selection gives thirty or more.
constexpr double kSameTile = 20;
// A pixel that differs by more than kOtherInk shows ink that should not be there, or lacks some. kSameInk is
// the largest share of such pixels. Edges alone give up to 0.074, in the smallest window; another face gives
// a tenth or more, except for a few faces that are very similar.
constexpr double kOtherInk = 50;
constexpr double kSameInk = 0.08;
// The cloth is a single picture, drawn without scaling.
constexpr double kSameCloth = 2;
// A tile with a smaller visible share than this counts as hidden: only its neighbours' edges would be
// compared.
constexpr double kLeastShare = 0.125;
// A selection's pulse adds more red than this even at its weakest.
constexpr double kSelectedRed = 20;
// The veil of a pause takes more light than this, from blocked tiles as well.
constexpr double kHiddenLight = -60;

// Owners of pixels other than tiles.
constexpr int kNobody = -1;
constexpr int kCloth = -2;

// Tile faces are painted with the game's own font, as in the game.
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

// The whole pixels inside both rectangles.
PixelRect pixelsInside(const ui::Rect& rect, const ui::Rect& bounds) {
  return {static_cast<int>(std::ceil(std::max(rect.x, bounds.x))),
          static_cast<int>(std::ceil(std::max(rect.y, bounds.y))),
          static_cast<int>(std::floor(std::min(rect.x + rect.w, bounds.x + bounds.w))),
          static_cast<int>(std::floor(std::min(rect.y + rect.h, bounds.y + bounds.h)))};
}

// Window pixels per logical pixel.
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
  // Tries the middle first, then the rest of the tile.
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
  // The search begins with the upper layers, whose tiles are visible enough.
  return std::find_if(game.slots.rbegin(), game.slots.rend(), isBlocked)->id;
}

// Draws the tiles where the renderer copies them: on whole pixels, and into whole ones.
ui::CairoSurface Table::painted(Size windowSize) const {
  useBundledFont();
  return support::makePictureApart(windowSize.w, windowSize.h, [&](cairo_t* cr) {
    const double growth = growthIn(windowSize);
    const ui::Rect board = boardIn(windowSize);
    const ui::BoardView boardView(board, view);
    const ui::BoardGeom geom = ui::boardGeometry(game.slots, board, view.fit);
    cairo_scale(cr, growth, growth);
    ui::Ctx ctx;
    ctx.cr = cr;
    ctx.w = windowSize.w / growth;
    ctx.h = windowSize.h / growth;
    ui::drawFelt(ctx, mj::tableThemeForLevel(level), true);
    cairo_rectangle(cr, board.x, board.y, board.w, board.h);
    cairo_clip(cr);
    const auto squeezed = [growth](double length) {
      return std::round(length * growth) / std::ceil(length * growth);
    };
    for (const int id : ui::paintOrder(game)) {
      const auto index = static_cast<std::size_t>(id);
      const ui::Rect rect = boardView.toScreen(geom.place(game.slots[index]));
      const ui::TileVisual visual{.selected = id == game.selected, .dim = !mj::isFree(game, id)};
      cairo_save(cr);
      cairo_translate(cr, std::round(rect.x * growth) / growth, std::round(rect.y * growth) / growth);
      cairo_scale(cr, squeezed(rect.w), squeezed(rect.h));
      ui::drawTile(cr, {0, 0, rect.w, rect.h}, game.faces[index], visual);
      cairo_restore(cr);
    }
  });
}

// For each pixel the slot that it belongs to: the visible tile, or an empty slot where only cloth shows.
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
    // Leaves out a margin, because a tile may be drawn a pixel off its place.
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
  // Half of the tiles is enough: texts and buttons may cover the rest.
  return count([](const Look& look) { return look.isDarkened(); }) * 2 >
         count([](const Look& look) { return look.pixels > 0; });
}

bool Table::isSelectedIn(cairo_surface_t* picture, int tile) const {
  return picture != nullptr && compare(picture).tiles[static_cast<std::size_t>(tile)].isSelected();
}

}  // namespace window
