#include "ui/tile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "rules/tiles.h"
#include "support/glyph_font.h"
#include "support/gpu_window.h"
#include "support/picture.h"
#include "support/sight.h"
#include "ui/board_scenes.h"
#include "ui/draw.h"
#include "ui/fonts.h"
#include "ui/gpu.h"

namespace {

using support::channelDifference;
using support::GpuWindow;
using support::looksLike;
using support::makePicture;
using support::pixelAt;
using support::samePicture;
using test::isCached;
using test::paintScene;
using test::Path;

class Tile : public support::WithGlyphFont {};
class TileTexture : public support::WithGlyphFont {};

// All 42 faces in the order of the set.
std::vector<std::string> allFaces() {
  std::vector<std::string> faces;
  std::set<std::string> seen;
  for (const auto& [a, b] : mj::allPairs()) {
    for (const std::string& face : {a, b}) {
      if (seen.insert(face).second) faces.push_back(face);
    }
  }
  return faces;
}

double heightOf(double w) { return std::round(w * ui::kTileAspect); }

ui::CairoSurface onFelt(int w, int h, const std::function<void(cairo_t*)>& paint) {
  return paintScene(Path::Cairo, {.w = w, .h = h}, [&](ui::Ctx& ctx) { paint(ctx.cr); });
}

// One tile, with room for its halo.
ui::CairoSurface tile(double w, const std::string& face, const ui::TileVisual& visual) {
  const int margin = 8;
  return onFelt(static_cast<int>(w) + 2 * margin, static_cast<int>(heightOf(w)) + 2 * margin,
                [&](cairo_t* cr) { ui::drawTile(cr, {margin, margin, w, heightOf(w)}, face, visual); });
}

// The face's picture alone, on the cream of a tile's face.
ui::CairoSurface picture(double w, const std::string& face) {
  const ui::Rect rect = ui::tileFaceRect({0, 0, w, heightOf(w)});
  return makePicture(static_cast<int>(rect.w), static_cast<int>(rect.h), [&](cairo_t* cr) {
    ui::fillRect(cr, rect, 0xF5EEDC, 1);
    ui::drawTileFace(cr, rect, face);
  });
}

// --- measures ---

TEST(TileMetrics, GrowWithTheTileInWholePixels) {
  EXPECT_EQ(ui::tileBevel(100), 10);
  EXPECT_EQ(ui::tileRadius(100), 16);
  EXPECT_EQ(ui::tileBevel(56), 6);   // 5.6
  EXPECT_EQ(ui::tileRadius(56), 9);  // 8.96
  EXPECT_EQ(ui::tileBevel(34), 3);   // 3.4
  EXPECT_EQ(ui::tileRadius(34), 5);  // 5.44
  EXPECT_EQ(ui::tileBevel(35), 4);   // 3.5
}

TEST(TileMetrics, HaveTheirLeastValuesAtTwentyPixels) {
  EXPECT_EQ(ui::tileBevel(20), 3);
  EXPECT_EQ(ui::tileRadius(20), 4);
  EXPECT_EQ(ui::tileBevel(6), 3);
  EXPECT_EQ(ui::tileRadius(6), 4);
}

void expectExactRect(const ui::Rect& rect, double x, double y, double w, double h) {
  EXPECT_DOUBLE_EQ(rect.x, x);
  EXPECT_DOUBLE_EQ(rect.y, y);
  EXPECT_DOUBLE_EQ(rect.w, w);
  EXPECT_DOUBLE_EQ(rect.h, h);
}

TEST(TileMetrics, LeaveTheFaceAtTheTopLeft) {
  expectExactRect(ui::tileFaceRect({10, 20, 50, 67}), 10, 20, 45, 62);
  expectExactRect(ui::tileFaceRect({0, 0, 20, 27}), 0, 0, 17, 24);
}

TEST(TileMetrics, ScaleAndInsetAboutTheCentre) {
  expectExactRect(ui::scaledRect({10, 20, 40, 60}, 1.5), 0, 5, 60, 90);
  expectExactRect(ui::insetRect({10, 20, 40, 60}, 2), 12, 22, 36, 56);
}

// --- pulses ---

constexpr double kTurn = 2 * 3.14159265358979323846;

TEST(TilePulse, OfTheHintSwellsAndShinesTogether) {
  constexpr double kPeriod = kTurn / 4.83321946706122;
  EXPECT_NEAR(ui::hintGrowth(0), 1.035, 1e-12);
  EXPECT_NEAR(ui::hintAlpha(0), 0.725, 1e-12);
  EXPECT_NEAR(ui::hintGrowth(kPeriod / 4), 1.07, 1e-12);
  EXPECT_NEAR(ui::hintAlpha(kPeriod / 4), 1, 1e-12);
  EXPECT_NEAR(ui::hintGrowth(kPeriod * 3 / 4), 1, 1e-12);
  EXPECT_NEAR(ui::hintAlpha(kPeriod * 3 / 4), 0.45, 1e-12);
}

TEST(TilePulse, OfTheSelectionNeverFallsBelowHalf) {
  constexpr double kPeriod = kTurn / 7.306029426953008;
  EXPECT_NEAR(ui::selectAlpha(0), 0.75, 1e-12);
  EXPECT_NEAR(ui::selectAlpha(kPeriod / 4), 1, 1e-12);
  EXPECT_NEAR(ui::selectAlpha(kPeriod * 3 / 4), 0.5, 1e-12);
}

TEST(TilePulse, OfARefusalFlickersTwiceInEachTurn) {
  constexpr double kPeriod = kTurn / 29.919930034188507;
  EXPECT_NEAR(ui::mismatchAlpha(0), 0.15, 1e-12);
  EXPECT_NEAR(ui::mismatchAlpha(kPeriod / 4), 1, 1e-12);
  EXPECT_NEAR(ui::mismatchAlpha(kPeriod / 2), 0.15, 1e-12);
  EXPECT_NEAR(ui::mismatchAlpha(kPeriod * 3 / 4), 1, 1e-12);
}

// --- faces ---

constexpr double kWidths[] = {24, 56, 96};
constexpr double kTileWidths[] = {16, 24, 40, 56, 96};

ui::CairoSurface contactSheet(double w, bool selected) {
  constexpr int kColumns = 7;
  constexpr int kGap = 6;
  const int stepX = static_cast<int>(w) + kGap;
  const int stepY = static_cast<int>(heightOf(w)) + kGap;
  const std::vector<std::string> faces = allFaces();
  const int rows = static_cast<int>(faces.size()) / kColumns;
  return onFelt(kColumns * stepX + kGap, rows * stepY + kGap, [&](cairo_t* cr) {
    auto face = faces.begin();
    for (int y = kGap; face != faces.end(); y += stepY) {
      for (int x = kGap; x < kColumns * stepX; x += stepX) {
        const ui::Rect rect{static_cast<double>(x), static_cast<double>(y), w, heightOf(w)};
        ui::drawTileBase(cr, rect, *face++, {.selected = selected});
      }
    }
  });
}

TEST_F(Tile, FacesLookAsTheyAlwaysDid) {
  ASSERT_EQ(allFaces().size(), 42U);
  for (const double w : kWidths) {
    const std::string name = "tiles_" + std::to_string(static_cast<int>(w));
    EXPECT_TRUE(looksLike(contactSheet(w, false).get(), name));
    EXPECT_TRUE(looksLike(contactSheet(w, true).get(), name + "_selected"));
  }
}

// Counts the pixels that differ by more than a slightly moved smooth edge does.
int clearlyDifferent(cairo_surface_t* a, cairo_surface_t* b) {
  constexpr int kClearDifference = 24;
  int count = 0;
  for (int y = 0; y < cairo_image_surface_get_height(a); ++y) {
    for (int x = 0; x < cairo_image_surface_get_width(a); ++x) {
      if (channelDifference(pixelAt(a, x, y), pixelAt(b, x, y)) > kClearDifference) ++count;
    }
  }
  return count;
}

struct ClosestFaces {
  int pixels = 1000000;
  std::string names;
};

// The most similar two faces among those that match each other.
ClosestFaces closestMatchingFaces(double w) {
  const std::vector<std::string> faces = allFaces();
  std::vector<ui::CairoSurface> pictures;
  for (const std::string& face : faces) pictures.push_back(picture(w, face));
  ClosestFaces closest;
  for (std::size_t i = 0; i < faces.size(); ++i) {
    for (std::size_t j = i + 1; j < faces.size(); ++j) {
      if (mj::matchKey(faces[i]) != mj::matchKey(faces[j])) continue;
      const int pixels = clearlyDifferent(pictures[i].get(), pictures[j].get());
      if (pixels < closest.pixels) closest = {pixels, faces[i] + " and " + faces[j]};
    }
  }
  return closest;
}

// These faces match each other, so a small number is enough.
TEST_F(Tile, BonusFacesOfOneKindDifferByTheirNumber) {
  for (const double w : kWidths) {
    const ui::Rect face = ui::tileFaceRect({0, 0, w, heightOf(w)});
    const ClosestFaces closest = closestMatchingFaces(w);
    EXPECT_GE(closest.pixels, 0.004 * face.w * face.h) << w << ": " << closest.names;
  }
}

// --- telling faces apart ---

// A tile that fills the picture, blocked or free.
ui::CairoSurface wholeTile(double w, const std::string& face, bool dim) {
  return onFelt(static_cast<int>(w), static_cast<int>(heightOf(w)),
                [&](cairo_t* cr) { ui::drawTile(cr, {0, 0, w, heightOf(w)}, face, {.dim = dim}); });
}

bool isSign(const std::string& face) {
  const mj::FaceInfo info = mj::faceInfo(face);
  return !info.glyph.empty();
}

struct Likeness {
  double difference = 255;
  std::string names;
};

struct Likenesses {
  Likeness signs;  // of a face with a sign and any other face
  Likeness pips;   // of two faces without a sign
};

// The most similar faces that do not match, as seen by the eye that sees the least difference.
Likenesses mostAlike(double w, bool dim) {
  const std::vector<std::string> faces = allFaces();
  std::vector<support::Samples> pictures;
  for (const std::string& face : faces) {
    pictures.push_back(support::blurred(wholeTile(w, face, dim).get(), w / 40));
  }
  Likenesses least;
  for (const support::Sight sight : support::kSights) {
    std::vector<support::Samples> seen;
    for (const support::Samples& picture : pictures) seen.push_back(support::seenBy(sight, picture));
    for (std::size_t i = 0; i < faces.size(); ++i) {
      for (std::size_t j = i + 1; j < faces.size(); ++j) {
        if (mj::matchKey(faces[i]) == mj::matchKey(faces[j])) continue;
        Likeness& best = isSign(faces[i]) || isSign(faces[j]) ? least.signs : least.pips;
        const double difference = support::meanDifference(seen[i], seen[j], best.difference);
        if (difference >= best.difference) continue;
        best = {difference,
                faces[i] + " and " + faces[j] + ", sight " + std::to_string(static_cast<int>(sight))};
      }
    }
  }
  return least;
}

// Among the pips, the one of dots and the one of bamboos are most alike, in grey: two small marks in the same
// place.
TEST_F(Tile, FacesThatDoNotMatchAreToldApartAtAnySizeByAnyEye) {
  struct Least {
    double w;
    double signs;
    double signsBlocked;
    double pips;
    double pipsBlocked;
  };
  constexpr Least kLeast[] = {
      {16, 2.25, 1.25, 1.0, 0.55}, {24, 2.7, 1.5, 0.72, 0.4},  {40, 2.9, 1.6, 0.8, 0.44},
      {56, 2.9, 1.55, 0.78, 0.42}, {96, 2.9, 1.6, 0.75, 0.41},
  };
  for (const Least& least : kLeast) {
    for (const bool dim : {false, true}) {
      const Likenesses found = mostAlike(least.w, dim);
      EXPECT_GE(found.signs.difference, dim ? least.signsBlocked : least.signs)
          << least.w << (dim ? " blocked: " : " free: ") << found.signs.names;
      EXPECT_GE(found.pips.difference, dim ? least.pipsBlocked : least.pips)
          << least.w << (dim ? " blocked: " : " free: ") << found.pips.names;
    }
  }
}

// Rows of a face that show ink of one colour.
struct Rows {
  int first = 1000;
  int last = -1;
};

// The colour of the ink that stains a pixel of the cream face.
enum class Stain { Blue, Red };
Rows rowsOf(cairo_surface_t* picture, Stain stain) {
  constexpr int kTinge = 40;
  Rows rows;
  for (int y = 0; y < cairo_image_surface_get_height(picture); ++y) {
    for (int x = 0; x < cairo_image_surface_get_width(picture); ++x) {
      const std::uint32_t pixel = pixelAt(picture, x, y);
      // How much less red and blue the pixel has than the face's 0xF5EEDC.
      const int lessRed = 0xF5 - static_cast<int>(pixel >> 16 & 0xFF);
      const int lessBlue = 0xDC - static_cast<int>(pixel & 0xFF);
      if ((stain == Stain::Blue ? lessRed - lessBlue : lessBlue - lessRed) < kTinge) continue;
      rows.first = std::min(rows.first, y);
      rows.last = std::max(rows.last, y);
    }
  }
  return rows;
}

TEST_F(Tile, NumeralStandsClearOfTheMarkBelowIt) {
  for (const double w : kTileWidths) {
    for (int rank = 1; rank <= 9; ++rank) {
      const auto face = picture(w, "wan" + std::to_string(rank));
      EXPECT_LT(rowsOf(face.get(), Stain::Blue).last + std::floor(w / 24),
                rowsOf(face.get(), Stain::Red).first)
          << w << ": " << rank;
    }
  }
}

// Cairo cuts off what reaches farther right than the font's widest advance.
TEST_F(Tile, SignsArePaintedWhole) {
  const ui::TextStyle style{.family = ui::kGlyphFamily, .size = 100};
  for (const std::string& face : allFaces()) {
    const std::string glyph = mj::faceInfo(face).glyph;
    const auto painted =
        makePicture(160, 160, [&](cairo_t* cr) { ui::drawTextCentered(cr, 80, 80, glyph, style); });
    const auto filled = makePicture(160, 160, [&](cairo_t* cr) {
      ui::textPathCentered(cr, 80, 80, glyph, style);
      cairo_fill(cr);
    });
    EXPECT_TRUE(samePicture(painted.get(), filled.get(), 60)) << face;
  }
}

// The numbers of flowers and seasons do not count as signs: they stand in the corner, on the frame.
TEST_F(Tile, SignsKeepWithinTheFrameOfTheFace) {
  for (const double w : kTileWidths) {
    const ui::Rect face = ui::tileFaceRect({0, 0, w, heightOf(w)});
    const auto bare = picture(w, "windX");
    for (const std::string& name : allFaces()) {
      if (!isSign(name)) continue;
      const auto seen = picture(w, name);
      for (int y = 0; y < static_cast<int>(face.h); ++y) {
        for (int x = 0; x < static_cast<int>(face.w); ++x) {
          if (std::abs(x + 0.5 - face.w / 2) < 0.42 * face.w &&
              std::abs(y + 0.5 - face.h / 2) < 0.43 * face.h) {
            continue;
          }
          ASSERT_LE(channelDifference(pixelAt(seen.get(), x, y), pixelAt(bare.get(), x, y)), 24)
              << w << ' ' << name << ' ' << x << ' ' << y;
        }
      }
    }
  }
}

TEST_F(Tile, WithAnUnknownFaceIsAOneOfDots) {
  EXPECT_TRUE(samePicture(picture(56, "joker").get(), picture(56, "dot1").get()));
}

TEST_F(Tile, OfASuitWithoutARankShowsNinePips) {
  for (const char* rank : {"", "0", "10", "99"}) {
    EXPECT_TRUE(samePicture(picture(56, std::string("dot") + rank).get(), picture(56, "dot9").get()));
    EXPECT_TRUE(samePicture(picture(56, std::string("bam") + rank).get(), picture(56, "bam9").get()));
  }
}

TEST_F(Tile, WithoutAGlyphShowsWhatIsLeftOfItsFace) {
  const auto bare = picture(56, "windX");
  EXPECT_EQ(clearlyDifferent(bare.get(), onFelt(50, 69,
                                                [](cairo_t* cr) {
                                                  ui::setColor(cr, 0xF5EEDC, 1);
                                                  cairo_paint(cr);
                                                })
                                             .get()),
            0);
  EXPECT_TRUE(samePicture(picture(56, "wan0").get(), picture(56, "wan12").get()));
  EXPECT_GT(clearlyDifferent(picture(56, "wan0").get(), bare.get()), 50);  // the mark
}

TEST_F(Tile, PipsOfDotsAreAllTheSame) {
  const auto nine = picture(103, "dot9");  // a face of 93 x 128
  const ui::Rect face = ui::tileFaceRect({0, 0, 103, heightOf(103)});
  for (const double x : {0.25, 0.5, 0.75}) {
    for (const double y : {0.25, 0.5, 0.75}) {
      const std::uint32_t middle =
          pixelAt(nine.get(), static_cast<int>(x * face.w), static_cast<int>(y * face.h));
      EXPECT_LE(channelDifference(middle, 0xFF3B82F6), 60) << x << ' ' << y;
    }
  }
}

// --- the block ---

TEST_F(Tile, WithoutAFaceIsBlank) {
  const auto blank = tile(100, "", {});
  EXPECT_TRUE(samePicture(blank.get(), tile(100, "windX", {}).get()));
  EXPECT_EQ(pixelAt(blank.get(), 8 + 45, 8 + 62), 0xFFF5EEDCU);       // the face
  EXPECT_EQ(pixelAt(blank.get(), 8 + 95, 8 + 67), 0xFFB6A578U);       // the body to its right
  EXPECT_EQ(pixelAt(blank.get(), 8 + 45, 8 + 129), 0xFFB6A578U);      // and below
  EXPECT_EQ(pixelAt(blank.get(), 4, 62), 0xFF000000U | test::kFelt);  // nothing beside it
}

TEST_F(Tile, IsGoldenWhenSelected) {
  const auto picked =
      onFelt(100, 134, [](cairo_t* cr) { ui::drawTileBase(cr, {0, 0, 100, 134}, "", {.selected = true}); });
  EXPECT_EQ(pixelAt(picked.get(), 45, 62), 0xFFFFE49BU);
  EXPECT_EQ(pixelAt(picked.get(), 95, 67), 0xFFE0A93AU);
}

// Fading each stroke on its own would show the lower ones where strokes overlap.
TEST_F(Tile, PictureFadesAsOneLayer) {
  constexpr int kW = 100;
  constexpr int kH = 134;
  const auto blank = onFelt(kW, kH, [](cairo_t* cr) { ui::drawStaticTile(cr, {0, 0, kW, kH}, "", 0.5); });
  for (const char* face : {"dot5", "bam7", "flower2", "wan4"}) {
    const auto faded =
        onFelt(kW, kH, [&](cairo_t* cr) { ui::drawStaticTile(cr, {0, 0, kW, kH}, face, 0.5); });
    const auto layer = makePicture(kW, kH, [&](cairo_t* cr) { ui::drawTileFace(cr, {0, 0, 90, 124}, face); });
    const auto expected = makePicture(kW, kH, [&](cairo_t* cr) {
      cairo_set_source_surface(cr, blank.get(), 0, 0);
      cairo_paint(cr);
      cairo_set_source_surface(cr, layer.get(), 0, 0);
      cairo_paint_with_alpha(cr, 0.5);
    });
    EXPECT_TRUE(samePicture(faded.get(), expected.get(), 1)) << face;
    EXPECT_FALSE(samePicture(faded.get(), blank.get(), 20)) << face;
  }
}

TEST_F(Tile, ThatIsStaticShowsNoStateAndLeavesTheContextAsItWas) {
  const auto still = onFelt(72, 91, [](cairo_t* cr) {
    cairo_set_line_width(cr, 7);
    ui::drawStaticTile(cr, {8, 8, 56, 75}, "bam3", 1);
    EXPECT_EQ(cairo_get_line_width(cr), 7);
    EXPECT_FALSE(cairo_has_current_point(cr));
  });
  EXPECT_TRUE(samePicture(still.get(), tile(56, "bam3", {}).get()));
}

// --- overlays ---

TEST_F(Tile, OverlaysLookAsTheyAlwaysDid) {
  const ui::TileVisual visuals[] = {
      {},
      {.dim = true},
      {.hint = true, .time = 0.1},
      {.hint = true, .time = 0.9},
      {.selected = true, .time = 0.2},
      {.selected = true, .time = 0.65},
      {.mismatch = true, .time = 0.05},
      {.mismatch = true, .time = 0.1},
      {.selected = true, .mismatch = true, .time = 0.05},
      {.hint = true, .dim = true, .time = 0.3},
      {.selected = true, .hint = true, .dim = true, .mismatch = true, .alpha = 0.5, .time = 0.05},
  };
  for (const double w : kWidths) {
    const double stepX = w + 14;
    const int sheetW = static_cast<int>(stepX * static_cast<double>(std::size(visuals)) + 14);
    const auto sheet = onFelt(sheetW, static_cast<int>(heightOf(w)) + 28, [&](cairo_t* cr) {
      double x = 14;
      for (const ui::TileVisual& visual : visuals) {
        ui::drawTile(cr, {x, 14, w, heightOf(w)}, "wan7", visual);
        x += stepX;
      }
    });
    EXPECT_TRUE(looksLike(sheet.get(), "tile_overlays_" + std::to_string(static_cast<int>(w))));
  }
}

TEST_F(Tile, HintHaloReachesBeyondTheTile) {
  const auto hinted = tile(100, "", {.hint = true, .time = 0.325});  // at its largest: 3.5 beyond each side
  EXPECT_GT(channelDifference(pixelAt(hinted.get(), 4, 75), 0xFF000000U | test::kFelt), 60);
}

TEST_F(Tile, ThatIsDimIsVeiledAllOver) {
  const auto dim = tile(100, "", {.dim = true});
  // 0x061C14 at 0.45 over the face's 0xF5EEDC and the body's 0xB6A578.
  EXPECT_LE(channelDifference(pixelAt(dim.get(), 8 + 45, 8 + 62), 0xFF898F82U), 1);
  EXPECT_LE(channelDifference(pixelAt(dim.get(), 8 + 95, 8 + 67), 0xFF67674BU), 1);
}

TEST_F(Tile, FanLooksAsItAlwaysDidAndSaysItsHeight) {
  double height = 0;
  const auto fan = onFelt(360, 200, [&](cairo_t* cr) { height = ui::drawTileFan(cr, 180, 170, 80); });
  EXPECT_NEAR(height, 1.32 * 1.34 * 80, 1e-9);
  EXPECT_TRUE(looksLike(fan.get(), "tile_fan"));
}

TEST_F(Tile, FanIsPaintedAnewForAnotherSize) {
  onFelt(360, 200, [&](cairo_t* cr) { ui::drawTileFan(cr, 180, 170, 38); });
  const auto fan = onFelt(360, 200, [&](cairo_t* cr) { ui::drawTileFan(cr, 180, 170, 80); });
  EXPECT_TRUE(looksLike(fan.get(), "tile_fan"));
}

TEST_F(Tile, FanWithoutAWidthIsNone) {
  const auto bare = onFelt(100, 100, [](cairo_t*) {});
  const auto none = onFelt(100, 100, [](cairo_t* cr) { EXPECT_EQ(ui::drawTileFan(cr, 50, 90, 0), 0); });
  EXPECT_TRUE(samePicture(bare.get(), none.get()));
}

// --- the cached picture ---

TEST_F(TileTexture, IsKeptByFaceStateAndDeviceSize) {
  const GpuWindow window(10, 10);
  ui::gpuSetScale(1.5);
  ASSERT_NE(ui::tileTexture("windE", 33, 44, false), nullptr);
  ASSERT_NE(ui::tileTexture("dot3", 20.1, 27, true), nullptr);
  EXPECT_TRUE(isCached("tile|windE|50x66", 50, 66));
  EXPECT_TRUE(isCached("tileSel|dot3|31x41", 31, 41));
  EXPECT_FALSE(isCached("tileSel|windE|50x66", 50, 66));
  EXPECT_FALSE(isCached("tile|dot3|31x41", 31, 41));
}

TEST_F(TileTexture, IsPaintedAnewForAnotherZoom) {
  const GpuWindow window(10, 10);
  SDL_Texture* small = ui::tileTexture("bam1", 30, 40, false);
  SDL_Texture* large = ui::tileTexture("bam1", 45, 60, false);
  EXPECT_NE(small, large);
  EXPECT_EQ(ui::tileTexture("bam1", 30, 40, false), small);
  EXPECT_EQ(ui::tileTexture("bam1", 45, 60, false), large);
}

TEST_F(TileTexture, IsNullWithoutARenderer) {
  ui::gpuShutdown();
  EXPECT_EQ(ui::tileTexture("bam1", 30, 40, false), nullptr);
}

// The half transparent pixels of a tile's corners are rounded twice: when they become straight, and when SDL
// blends them.
TEST_F(TileTexture, ShowsWhatCairoPaints) {
  for (const bool selected : {false, true}) {
    for (const std::string& face : allFaces()) {
      const auto painted = onFelt(
          56, 75, [&](cairo_t* cr) { ui::drawTileBase(cr, {0, 0, 56, 75}, face, {.selected = selected}); });
      const auto copied = paintScene(Path::Textures, {.w = 56, .h = 75}, [&](ui::Ctx&) {
        ui::gpuBlit(ui::tileTexture(face, 56, 75, selected), 0, 0, 56, 75, 1);
      });
      for (int y = 0; y < 75; ++y) {
        for (int x = 0; x < 56; ++x) {
          const bool corner = (x < 9 || x >= 47) && (y < 9 || y >= 66);
          ASSERT_LE(channelDifference(pixelAt(copied.get(), x, y), pixelAt(painted.get(), x, y)),
                    corner ? 3 : 0)
              << face << x << ' ' << y;
        }
      }
    }
  }
}

}  // namespace
