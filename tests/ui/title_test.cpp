#include "ui/title.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

#include "support/picture.h"
#include "ui/board_scenes.h"
#include "ui/draw.h"
#include "ui/gpu.h"

namespace {

using support::channelDifference;
using support::looksLike;
using support::pixelAt;
using support::samePicture;
using test::Frame;
using test::Ink;
using test::inkOf;
using test::isCached;
using test::opacityOf;
using test::paintScene;
using test::Path;

// --- letters and colours ---

using Pieces = std::vector<std::string_view>;

TEST(TitleChars, AreOneToFourBytesLong) {
  EXPECT_EQ(ui::chars("Vé東🀄s"), (Pieces{"V", "é", "東", "🀄", "s"}));
  EXPECT_EQ(ui::chars("Quenlock's").size(), 10U);
  EXPECT_EQ(ui::chars(""), Pieces{});
}

TEST(TitleChars, GoByTheFirstByteAlone) {
  EXPECT_EQ(ui::chars("\xC0..\xDF.."), (Pieces{"\xC0.", ".", "\xDF.", "."}));
  EXPECT_EQ(ui::chars("\xE0...\xEF.."), (Pieces{"\xE0..", ".", "\xEF.."}));
  EXPECT_EQ(ui::chars("\xF0...\xF7..."), (Pieces{"\xF0...", "\xF7..."}));
  EXPECT_EQ(ui::chars("\x80\xBF\xF8\xFF"), (Pieces{"\x80", "\xBF", "\xF8", "\xFF"}));
}

TEST(TitleChars, AreAsShortAsTheEndOfTheTextLeavesThem) {
  EXPECT_EQ(ui::chars("a\xC3"), (Pieces{"a", "\xC3"}));
  EXPECT_EQ(ui::chars("a\xE6\x9D"), (Pieces{"a", "\xE6\x9D"}));
  EXPECT_EQ(ui::chars("a\xF0\x9F\x80"), (Pieces{"a", "\xF0\x9F\x80"}));
}

TEST(TitleColour, GoesFromItselfToTheHighlight) {
  EXPECT_EQ(ui::mixColor(0xE8C44D, 0), 0xE8C44DU);
  EXPECT_EQ(ui::mixColor(0xE8C44D, 1), 0xFFF7DFU);
  EXPECT_EQ(ui::mixColor(0xB8860B, 0.5), 0xDBBE75U);  // 219.5, 190.5, 117: truncated, not rounded
  EXPECT_EQ(ui::mixColor(0xFFFFFF, 0.5), 0xFFFBEFU);  // also when it falls
  EXPECT_EQ(ui::mixColor(0xE8C44D, -3), 0xE8C44DU);
  EXPECT_EQ(ui::mixColor(0xE8C44D, 7), 0xFFF7DFU);
}

// --- both titles, on both paths ---

class GlowTitle : public testing::TestWithParam<Path> {};
class TileTitle : public testing::TestWithParam<Path> {};
INSTANTIATE_TEST_SUITE_P(By, GlowTitle, testing::Values(Path::Cairo, Path::Textures), test::pathName);
INSTANTIATE_TEST_SUITE_P(By, TileTitle, testing::Values(Path::Cairo, Path::Textures), test::pathName);

const Frame kTitleFrame{.w = 420, .h = 160};

Frame at(double time, Frame frame = kTitleFrame) {
  frame.time = time;
  return frame;
}

ui::CairoSurface glow(Path path, const Frame& frame, const std::string& text, double size) {
  return paintScene(path, frame,
                    [&](ui::Ctx& ctx) { ui::drawGlowTitle(ctx, frame.w / 2.0, 40, text, size); });
}

ui::CairoSurface tiles(Path path, const Frame& frame, const std::string& text, double tileW,
                       double startTime) {
  return paintScene(path, frame,
                    [&](ui::Ctx& ctx) { ui::drawTileTitle(ctx, frame.w / 2.0, 40, text, tileW, startTime); });
}

// The number of copies in a frame at `time`.
template <typename Draw>
int copiesOf(double time, const Draw& draw) {
  int copies = 0;
  paintScene(Path::Textures, at(time), [&](ui::Ctx& ctx) {
    draw(ctx);
    copies = ui::gpuDrawCalls();
  });
  return copies;
}

// The texture under a key used earlier in this window. Fails if it is not cached.
SDL_Texture* known(const std::string& key, int w, int h) {
  const auto notPainted = [](cairo_t*, void*) { ADD_FAILURE() << "was not there"; };
  return ui::gpuTexture(key, w, h, notPainted, nullptr);
}

// --- the glowing word ---

// The time at which the crest is on letter i of n.
double crestOn(int i, int n) { return 2.8 * (i + 2.5) / (n + 5); }

TEST_P(GlowTitle, LooksAsBefore) {
  const std::string path = test::nameOf(GetParam());
  EXPECT_TRUE(looksLike(glow(GetParam(), at(0), "Quenlock's", 56).get(), "glow_title_rest_" + path));
  EXPECT_TRUE(
      looksLike(glow(GetParam(), at(crestOn(2, 10)), "Quenlock's", 56).get(), "glow_title_crest_" + path));
}

TEST_P(GlowTitle, OfNoTextOrNoSizeIsNothing) {
  EXPECT_TRUE(inkOf(glow(GetParam(), at(1), "", 40).get()).empty());
  EXPECT_TRUE(inkOf(glow(GetParam(), at(1), "VESKARA", 0).get()).empty());
  EXPECT_TRUE(inkOf(glow(GetParam(), at(1), "VESKARA", -3).get()).empty());
}

TEST_P(GlowTitle, BearsABrokenText) {
  EXPECT_FALSE(inkOf(glow(GetParam(), at(1), "A\xE6\x9D", 40).get()).empty());
  EXPECT_FALSE(inkOf(glow(GetParam(), at(1), "\xFF\xCC\x81", 40).get()).empty());
}

TEST_P(GlowTitle, StandsAboutItsCentreWithItsBoxesAtTheTop) {
  const Ink ink = inkOf(glow(GetParam(), at(0), "OHO", 60).get());
  EXPECT_NEAR(ink.centreX(), 210, 1.5);
  // DejaVu's capitals span 0.2 to 0.93 of the size below the top of the box.
  EXPECT_NEAR(ink.centreY(), 40 + 0.565 * 60, 3);
}

TEST_P(GlowTitle, LiftsALetterByTwoAndGrowsItByASixteenthAtTheCrest) {
  const Frame frame{.w = 300, .h = 360};
  const Ink rest = inkOf(glow(GetParam(), at(0, frame), "O", 160).get());
  const Ink lifted = inkOf(glow(GetParam(), at(crestOn(0, 1), frame), "O", 160).get());
  EXPECT_NEAR(static_cast<double>(lifted.w()) / rest.w(), 1.06, 0.015);
  EXPECT_NEAR(static_cast<double>(lifted.h()) / rest.h(), 1.06, 0.015);
  EXPECT_NEAR(lifted.centreX(), rest.centreX(), 1);
  // The letter grows about the middle of its box, which is not quite its own middle.
  const double boxMiddle = 40 + 160 * 1.164 / 2;
  EXPECT_NEAR(lifted.centreY(), boxMiddle + (rest.centreY() - boxMiddle) * 1.06 - 2, 1);
}

TEST_P(GlowTitle, HasItsWaveAgainEveryTwoPointEightSeconds) {
  const double crest = crestOn(1, 3);
  const auto seen = glow(GetParam(), at(crest), "OHO", 60);
  EXPECT_TRUE(samePicture(glow(GetParam(), at(crest + 2.8), "OHO", 60).get(), seen.get(), 2));
  EXPECT_TRUE(samePicture(glow(GetParam(), at(crest + 28), "OHO", 60).get(), seen.get(), 2));
  EXPECT_FALSE(samePicture(glow(GetParam(), at(crest + 0.28), "OHO", 60).get(), seen.get(), 40));
}

TEST_P(GlowTitle, RestsWhileTheCrestIsBeyondItsEnds) {
  const auto rest = glow(GetParam(), at(0), "OHO", 60);
  // The wave reaches 1.6 letters from its crest, so it touches the first letter once the crest has moved 0.9
  // letters.
  const double felt = 2.8 * 0.9 / 8;
  EXPECT_TRUE(samePicture(glow(GetParam(), at(felt - 0.01), "OHO", 60).get(), rest.get()));
  EXPECT_FALSE(samePicture(glow(GetParam(), at(felt + 0.1), "OHO", 60).get(), rest.get(), 10));
  EXPECT_TRUE(samePicture(glow(GetParam(), at(2.79), "OHO", 60).get(), rest.get()));
}

TEST(GlowTitleColour, RunsFromGoldToTheHighlight) {
  const Frame frame{.w = 200, .h = 280};
  // The stem of an I is in its middle.
  const auto middleAt = [&](double time) {
    return pixelAt(glow(Path::Cairo, at(time, frame), "I", 160).get(), 100, 130);
  };
  EXPECT_EQ(middleAt(0), 0xFFE8C44DU);
  EXPECT_LE(channelDifference(middleAt(crestOn(0, 1)), 0xFFFFF7DFU), 1);
  const double half = crestOn(0, 1) - 0.8 * 2.8 / 6;  // the crest is 0.8 letters away
  EXPECT_LE(channelDifference(middleAt(half), 0xFFF3DD96U), 1);
}

TEST_P(GlowTitle, GivesALetterItsOwnWidthWhereverItStands) {
  const auto width = [](const char* text) { return inkOf(glow(GetParam(), at(0), text, 40).get()).w(); };
  EXPECT_NEAR(width("WIIIW") - width("WW"), 3 * (width("II") - width("I")), 1);
}

TEST(GlowTitleTextures, AreOneCopyALetterAndASecondWhereTheWaveIs) {
  const auto oho = [](ui::Ctx& ctx) { ui::drawGlowTitle(ctx, 210, 40, "OHO", 60); };
  EXPECT_EQ(copiesOf(0, oho), 3);
  EXPECT_EQ(copiesOf(crestOn(1, 3), oho), 6);
  EXPECT_EQ(copiesOf(crestOn(0, 3), oho), 5);
  // Only a wave above 0.01 takes a second copy.
  EXPECT_EQ(copiesOf(crestOn(0, 3) - 1.59 * 2.8 / 8, oho), 3);
  EXPECT_EQ(copiesOf(crestOn(0, 3) - 1.58 * 2.8 / 8, oho), 4);
}

TEST(GlowTitleTextures, AreKeptByLetterSizeAndColour) {
  paintScene(Path::Textures, {.w = 300, .h = 120, .scale = 2}, [](ui::Ctx& ctx) {
    ui::drawGlowTitle(ctx, 150, 20, "A東", 40.3);
    EXPECT_TRUE(isCached("glow|A|161|e8c44d", 154, 170));  // 153.14 x 169.26
    EXPECT_TRUE(isCached("glow|東|161|e8c44d", 154, 170));
    EXPECT_FALSE(isCached("glow|A|161|fff7df", 154, 170));
    ctx.time = crestOn(0, 2);
    ui::drawGlowTitle(ctx, 150, 20, "A東", 40.3);
    EXPECT_TRUE(isCached("glow|東|161|fff7df", 154, 170));
  });
}

TEST(GlowTitleTextures, ShineAsMuchAsTheWaveIsFelt) {
  paintScene(Path::Textures, at(crestOn(1, 4)), [](ui::Ctx& ctx) {
    ui::drawGlowTitle(ctx, 210, 40, "ABCD", 40);
    EXPECT_EQ(opacityOf(known("glow|A|160|fff7df", 76, 84)), 96);  // 1 - 1 / 1.6
    EXPECT_EQ(opacityOf(known("glow|B|160|fff7df", 76, 84)), 255);
    EXPECT_EQ(opacityOf(known("glow|C|160|fff7df", 76, 84)), 96);
    EXPECT_FALSE(isCached("glow|D|160|fff7df", 76, 84));
    EXPECT_EQ(opacityOf(known("glow|B|160|e8c44d", 76, 84)), 255);
  });
}

TEST(GlowTitleTextures, AreNotPaintedAgain) {
  paintScene(Path::Textures, at(crestOn(0, 2)), [](ui::Ctx& ctx) {
    const auto pictures = [] {
      std::vector<SDL_Texture*> result;
      for (const char* key :
           {"glow|A|160|e8c44d", "glow|A|160|fff7df", "glow|B|160|e8c44d", "glow|B|160|fff7df"})
        result.push_back(known(key, 76, 84));
      return result;
    };
    ui::drawGlowTitle(ctx, 210, 40, "AB", 40);
    const std::vector<SDL_Texture*> first = pictures();
    for (; ctx.time < 6; ctx.time += 0.1) ui::drawGlowTitle(ctx, 210, 40, "AB", 40);
    EXPECT_EQ(pictures(), first);
  });
}

// A letter and its halo lie entirely inside their picture, even the widest Latin ones.
TEST(GlowTitleTextures, CutNothingOff) {
  for (const char* text : {"W", "Ắ", "j", "@", "Щ", "東"}) {
    const Frame frame{.w = 900, .h = 300};
    const Ink copied = inkOf(glow(Path::Textures, frame, text, 100).get());
    const Ink painted = inkOf(glow(Path::Cairo, frame, text, 100).get());
    EXPECT_NEAR(copied.left, painted.left, 2) << text;
    EXPECT_NEAR(copied.right, painted.right, 2) << text;
    EXPECT_NEAR(copied.top, painted.top, 2) << text;
    EXPECT_NEAR(copied.bottom, painted.bottom, 2) << text;
  }
}

// --- the word on tiles ---

constexpr double kAtRest = -100;  // a start long ago

TEST_P(TileTitle, LooksAsBefore) {
  const std::string path = test::nameOf(GetParam());
  EXPECT_TRUE(
      looksLike(tiles(GetParam(), at(10.55), "VESKARA", 48, 10).get(), "tile_title_dropping_" + path));
  EXPECT_TRUE(looksLike(tiles(GetParam(), at(4.2), "VESKARA", 48, kAtRest).get(), "tile_title_rest_" + path));
}

TEST_P(TileTitle, ShowsNothingBeforeItsStartAndStillTellsItsHeight) {
  for (const double startTime : {5.0, 1.0 - 0.1499}) {
    const auto seen = paintScene(GetParam(), at(1), [&](ui::Ctx& ctx) {
      EXPECT_EQ(ui::drawTileTitle(ctx, 210, 40, "VESKARA", 48, startTime), 64);
      EXPECT_EQ(ui::drawTileTitle(ctx, 210, 40, "VESKARA", 50, startTime), 67);
    });
    EXPECT_TRUE(inkOf(seen.get()).empty()) << startTime;
  }
}

TEST_P(TileTitle, OfNoTextOrNoWidthIsNothing) {
  EXPECT_TRUE(inkOf(tiles(GetParam(), at(1), "", 48, kAtRest).get()).empty());
  EXPECT_TRUE(inkOf(tiles(GetParam(), at(1), "VESKARA", 0, kAtRest).get()).empty());
  EXPECT_TRUE(inkOf(tiles(GetParam(), at(1), "VESKARA", -8, kAtRest).get()).empty());
}

TEST(TileTitleWidth, CountsOneTileALetter) {
  EXPECT_DOUBLE_EQ(ui::tileTitleWidth("MAHJONG", 50), 7 * 1.12 * 50);
  EXPECT_DOUBLE_EQ(ui::tileTitleWidth("東", 50), 56);
  EXPECT_DOUBLE_EQ(ui::tileTitleWidth("東南é", 50), 168);
  EXPECT_EQ(ui::tileTitleWidth("", 50), 0);
}

// At time 0 the first tile does not bob, sway or shimmer: its phases begin there.
Frame still(int w, int h) { return {.w = w, .h = h, .time = 0}; }

TEST_P(TileTitle, StandsAboutItsCentre) {
  for (const char* text : {"I", "東", "AB", "東西南"}) {
    const Ink ink = inkOf(tiles(GetParam(), still(600, 260), text, 100, kAtRest).get());
    EXPECT_NEAR(ink.centreX(), 300, 1) << text;
    // The outermost tiles leave half a gap at either end; the outline takes half a pixel of it.
    EXPECT_NEAR(ink.w(), ui::tileTitleWidth(text, 100) - 12, 3) << text;
  }
  const Ink one = inkOf(tiles(GetParam(), still(600, 260), "I", 100, kAtRest).get());
  EXPECT_NEAR(one.top, 40, 1);
  EXPECT_NEAR(one.bottom, 174, 1);
}

TEST_P(TileTitle, BobsByATwentiethOfItsHeight) {
  const auto middleAt = [&](double time) {
    return inkOf(tiles(GetParam(), at(time, {.w = 300, .h = 360}), "I", 180, kAtRest).get()).centreY();
  };
  const double up = 3 * std::numbers::pi / 2 / 1.7;
  const double down = std::numbers::pi / 2 / 1.7;
  EXPECT_NEAR(middleAt(0), 40 + 120.5, 1);
  EXPECT_NEAR(middleAt(down), 40 + 120.5 + 12.05, 1);
  EXPECT_NEAR(middleAt(up), 40 + 120.5 - 12.05, 1);
}

TEST_P(TileTitle, BobsTileAfterTile) {
  // The second tile is at its lowest, and in the middle of the picture.
  const double time = (std::numbers::pi / 2 - 0.55) / 1.7;
  const auto seen = paintScene(GetParam(), at(time, {.w = 300, .h = 360}), [](ui::Ctx& ctx) {
    ui::drawTileTitle(ctx, 150 - 0.56 * 180, 40, "II", 180, kAtRest);
  });
  EXPECT_EQ(pixelAt(seen.get(), 150, 40 + 241 + 12 + 2), 0xFF000000U | test::kFelt);
  EXPECT_NE(pixelAt(seen.get(), 150, 40 + 241 + 12 - 3), 0xFF000000U | test::kFelt);
}

TEST_P(TileTitle, SwaysAsIfTurnedByFiveDegrees) {
  const auto widthAt = [&](double time) {
    return inkOf(tiles(GetParam(), at(time, {.w = 900, .h = 1200}), "I", 800, kAtRest).get()).w();
  };
  const double turned = std::numbers::pi / 2 / 1.2;
  EXPECT_NEAR(widthAt(0) - widthAt(turned), 800 * (1 - std::cos(5 * std::numbers::pi / 180)), 1);
}

// The time at which letter i has dropped by `progress`, 0 to 1, after a start at 10.
double dropTime(int i, double progress) { return 10 + 0.15 + 0.11 * i + 0.46 * progress; }

TEST_P(TileTitle, DropsEachLetterByItsCurve) {
  struct Step {
    double progress;
    double arrived;  // 1 + (q - 1)^2 (2.4 (q - 1) + 1.4), by hand
  };
  const Frame frame{.w = 200, .h = 360};
  for (const Step step : {Step{0.1, 0.3844}, {0.2, 0.6672}, {0.5, 1.05}, {0.75, 1.05}}) {
    const double time = dropTime(0, step.progress);
    const Ink ink = inkOf(paintScene(GetParam(), at(time, frame), [](ui::Ctx& ctx) {
                            ui::drawTileTitle(ctx, 100, 140, "I", 100, 10);
                          }).get());
    const double scale = 0.82 + 0.18 * step.arrived;
    const double bob = step.arrived * std::sin(1.7 * time) * 134 * 0.05;
    EXPECT_NEAR(ink.w(), 100 * scale, 2) << step.progress;
    EXPECT_NEAR(ink.h(), 134 * scale, 2) << step.progress;
    EXPECT_NEAR(ink.centreY(), 140 + 67 - (1 - step.arrived) * 134 * 0.9 + bob, 1) << step.progress;
  }
}

TEST(TileTitleWithoutRenderer, FadesInWhileItDrops) {
  // One second later than in the other tests, so that no light is on the tile.
  const auto seen = paintScene(Path::Cairo, at(1 + dropTime(0, 0.2), {.w = 200, .h = 360}),
                               [](ui::Ctx& ctx) { ui::drawTileTitle(ctx, 100, 140, "I", 100, 11); });
  // In the face's corner, away from the letter: the body at 0.6672 on the felt, and the face at 0.6672 on
  // that.
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 70, 140), 0xFFD3D2BAU), 1);
}

TEST(TileTitleTextures, FadeInWhileTheyDrop) {
  const auto opacityAt = [](double progress) {
    int opacity = 0;
    paintScene(Path::Textures, at(dropTime(0, progress)), [&](ui::Ctx& ctx) {
      ui::drawTileTitle(ctx, 210, 40, "I", 48, 10);
      opacity = opacityOf(known("ttl|I|192|b91c1c|0", 48, 64));
    });
    return opacity;
  };
  EXPECT_EQ(opacityAt(0.1), 98);   // 0.3844
  EXPECT_EQ(opacityAt(0.2), 170);  // 0.6672
  EXPECT_EQ(opacityAt(0.5), 255);  // 1.05
}

TEST_P(TileTitle, OfFiveLettersBeginsItsLastOneAfterPointFourFour) {
  const auto lastAt = [&](double time) {
    const auto seen = tiles(GetParam(), at(time, {.w = 420, .h = 160}), "VESKA", 48, 10);
    return inkOf(seen.get()).right > 210 + 1.5 * 1.12 * 48 + 10;
  };
  EXPECT_FALSE(lastAt(10.589));
  EXPECT_TRUE(lastAt(10.60));
}

TEST_P(TileTitle, OfFiveLettersHasDroppedAfterOnePointOhFive) {
  const Frame frame = at(11.05 + 1e-9);
  const auto rest = tiles(GetParam(), frame, "VESKA", 48, kAtRest);
  EXPECT_TRUE(samePicture(tiles(GetParam(), frame, "VESKA", 48, 10).get(), rest.get()));
  EXPECT_FALSE(samePicture(tiles(GetParam(), frame, "VESKA", 48, 10.15).get(), rest.get(), 20));
}

TEST(TileTitleTextures, AppearOneAfterTheOther) {
  const auto veska = [](ui::Ctx& ctx) { ui::drawTileTitle(ctx, 210, 40, "VESKA", 48, 10); };
  // The light is never on a tile as it appears, which would take one more copy.
  for (int i = 0; i < 5; ++i) {
    EXPECT_EQ(copiesOf(dropTime(i, -0.001), veska), i) << i;
    EXPECT_EQ(copiesOf(dropTime(i, 0.001), veska), i + 1) << i;
  }
}

TEST(TileTitleTextures, AreKeptByLetterWidthAndInk) {
  paintScene(Path::Textures, {.w = 420, .h = 120, .scale = 2}, [](ui::Ctx& ctx) {
    ctx.time = 1.5 / 1.4;  // the light is on the first tile
    ui::drawTileTitle(ctx, 210, 20, "VESKA東", 48.3, kAtRest);
    EXPECT_TRUE(isCached("ttl|V|193|b91c1c|0", 97, 130));  // 96.6 x 130
    EXPECT_TRUE(isCached("ttl|E|193|1e3a8a|0", 97, 130));
    EXPECT_TRUE(isCached("ttl|S|193|15803d|0", 97, 130));
    EXPECT_TRUE(isCached("ttl|K|193|8a6d1d|0", 97, 130));
    EXPECT_TRUE(isCached("ttl|A|193|b91c1c|0", 97, 130));
    EXPECT_TRUE(isCached("ttl|東|193|1e3a8a|0", 97, 130));
    EXPECT_TRUE(isCached("ttl||193|000000|1", 97, 130));
  });
}

TEST(TileTitleTextures, AreNotPaintedAgain) {
  paintScene(Path::Textures, at(1.5 / 1.4), [](ui::Ctx& ctx) {
    const auto pictures = [] {
      return std::vector{known("ttl|A|192|b91c1c|0", 48, 64), known("ttl|B|192|1e3a8a|0", 48, 64),
                         known("ttl||192|000000|1", 48, 64)};
    };
    ui::drawTileTitle(ctx, 210, 40, "AB", 48, kAtRest);
    const std::vector<SDL_Texture*> first = pictures();
    for (; ctx.time < 8; ctx.time += 0.1) ui::drawTileTitle(ctx, 210, 40, "AB", 48, kAtRest);
    EXPECT_EQ(pictures(), first);
  });
}

// The time at which the light is on letter i.
double lightOn(double i) { return (i + 1.5) / 1.4; }

TEST(TileTitleTextures, ShimmerWhereTheLightIs) {
  const auto shineAt = [](double time, const char* text) {
    int opacity = 0;
    paintScene(Path::Textures, at(time), [&](ui::Ctx& ctx) {
      ui::drawTileTitle(ctx, 210, 40, text, 48, kAtRest);
      opacity = opacityOf(known("ttl||192|000000|1", 48, 64));
    });
    return opacity;
  };
  EXPECT_EQ(shineAt(lightOn(0), "I"), 140);   // 0.55
  EXPECT_EQ(shineAt(lightOn(0.4), "I"), 84);  // 0.55 * 0.6
  EXPECT_EQ(shineAt(lightOn(-0.4), "I"), 84);
  EXPECT_EQ(shineAt(lightOn(0) + 4 / 1.4, "I"), 140);  // it returns every n + 3 letters
  EXPECT_EQ(copiesOf(lightOn(1.1), [](ui::Ctx& ctx) { ui::drawTileTitle(ctx, 210, 40, "I", 48, kAtRest); }),
            1);
  EXPECT_EQ(copiesOf(lightOn(0.5), [](ui::Ctx& ctx) { ui::drawTileTitle(ctx, 210, 40, "III", 48, kAtRest); }),
            5);
}

TEST(TileTitleWithoutRenderer, ShimmersOnTheFaceAlone) {
  const auto seen = tiles(Path::Cairo, at(lightOn(0), {.w = 200, .h = 200}), "I", 100, kAtRest);
  const double bob = std::sin(1.7 * lightOn(0)) * 6.7;
  const int y = static_cast<int>(40 + 20 + bob);
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 65, y), 0xFFFAF0CEU), 1);  // 0.55 of the way to FFF3C4
  EXPECT_LE(channelDifference(pixelAt(seen.get(), 145, y + 20), 0xFFC9B98FU), 1);  // the body
}

TEST(TileTitleWithoutRenderer, LeavesTheContextAsItWas) {
  ui::gpuShutdown();
  support::makePicture(200, 200, [](cairo_t* cr) {
    cairo_scale(cr, 2, 2);
    ui::Ctx ctx;
    ctx.cr = cr;
    ui::drawTileTitle(ctx, 50, 20, "I", 30, kAtRest);
    ui::drawGlowTitle(ctx, 50, 20, "I", 30);
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    EXPECT_EQ(matrix.xx, 2);
    EXPECT_EQ(matrix.x0, 0);
  });
}

}  // namespace
