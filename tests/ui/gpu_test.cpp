#include "ui/gpu.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>

#include "support/gpu_window.h"
#include "support/picture.h"
#include "ui/draw.h"

namespace {

using support::GpuWindow;
using support::pixelAt;
using ui::Rect;

constexpr std::uint32_t kBlack = 0xFF000000;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

class Gpu : public testing::Test {
 protected:
  GpuWindow window{100, 80};
};

using GpuEviction = Gpu;
using GpuTarget = Gpu;
using GpuBlit = Gpu;

void countPaint(cairo_t* cr, void* user) {
  ++*static_cast<int*>(user);
  ui::setColor(cr, 0xFFFFFF, 1);
  cairo_paint(cr);
}

SDL_Texture* whitePicture(const std::string& key = "white", int w = 4, int h = 4) {
  int painted = 0;
  return ui::gpuTexture(key, w, h, countPaint, &painted);
}

// Requests the picture and returns whether it had to be painted because it was not cached.
bool isPainted(const std::string& key, int w = 1, int h = 1) {
  int painted = 0;
  EXPECT_NE(ui::gpuTexture(key, w, h, countPaint, &painted), nullptr);
  return painted > 0;
}

struct TextureSize {
  int w = 0;
  int h = 0;
};

TextureSize sizeOf(SDL_Texture* texture) {
  TextureSize size;
  EXPECT_EQ(SDL_QueryTexture(texture, nullptr, nullptr, &size.w, &size.h), 0);
  return size;
}

// --- pictures ---

TEST_F(Gpu, PaintsAPictureOnceForAllItsUses) {
  int painted = 0;
  SDL_Texture* first = ui::gpuTexture("a", 8, 6, countPaint, &painted);
  ASSERT_NE(first, nullptr);
  EXPECT_EQ(ui::gpuTexture("a", 8, 6, countPaint, &painted), first);
  EXPECT_EQ(painted, 1);
  EXPECT_EQ(sizeOf(first).w, 8);
  EXPECT_EQ(sizeOf(first).h, 6);
}

TEST_F(Gpu, RefusesAPictureWithoutPixelsAndKeepsNothing) {
  int painted = 0;
  for (const auto& [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {5, -1}})
    EXPECT_EQ(ui::gpuTexture("a", w, h, countPaint, &painted), nullptr) << w << ' ' << h;
  EXPECT_EQ(painted, 0);
  EXPECT_TRUE(isPainted("a", 5, 5));
}

TEST_F(Gpu, RefusesAPictureThatCairoCannotMake) {
  int painted = 0;
  EXPECT_EQ(ui::gpuTexture("wide", 40000, 1, countPaint, &painted), nullptr);
  EXPECT_EQ(painted, 0);
}

TEST_F(Gpu, ForgetsAPictureWhosePaintingFailed) {
  const auto broken = [](cairo_t* cr, void*) { cairo_scale(cr, 0, 0); };
  EXPECT_EQ(ui::gpuTexture("a", 4, 4, broken, nullptr), nullptr);
  EXPECT_TRUE(isPainted("a", 4, 4));
}

TEST_F(Gpu, ReplacesAPictureOfAnotherSize) {
  EXPECT_TRUE(isPainted("a", 10, 10));
  EXPECT_EQ(sizeOf(whitePicture("a", 20, 10)).w, 20);
  EXPECT_FALSE(isPainted("a", 20, 10));
  EXPECT_TRUE(isPainted("a", 10, 10));
}

// --- many new pictures at once ---

// Requests a picture of the family and returns whether it had to be painted.
bool isPaintedOrStoodIn(const std::string& family, int size, SDL_Texture** shown = nullptr) {
  int painted = 0;
  SDL_Texture* texture =
      ui::gpuTextureOrStandIn(family + std::to_string(size), family, size, size, countPaint, &painted);
  EXPECT_NE(texture, nullptr);
  if (shown != nullptr) *shown = texture;
  return painted > 0;
}

// Paints as many new pictures as a frame may.
void paintTheMost() {
  for (int i = 0; i < ui::kMostPaints; ++i) EXPECT_TRUE(isPaintedOrStoodIn("other|" + std::to_string(i), 4));
}

TEST_F(Gpu, LetsThePictureUsedLastStandInWhereAFrameHasPaintedEnough) {
  whitePicture("a|7", 7, 7);
  whitePicture("a|9", 9, 9);
  ui::gpuBeginFrame();
  whitePicture("a|7", 7, 7);
  ui::gpuBeginFrame();
  paintTheMost();
  EXPECT_FALSE(ui::gpuOwesPictures());
  SDL_Texture* shown = nullptr;
  EXPECT_FALSE(isPaintedOrStoodIn("a|", 8, &shown));
  EXPECT_EQ(sizeOf(shown).w, 7);
  EXPECT_TRUE(ui::gpuOwesPictures());

  ui::gpuBeginFrame();
  EXPECT_FALSE(ui::gpuOwesPictures());
  EXPECT_TRUE(isPaintedOrStoodIn("a|", 8, &shown));
  EXPECT_EQ(sizeOf(shown).w, 8);
  EXPECT_FALSE(ui::gpuOwesPictures());
}

TEST_F(Gpu, PaintsWhatNothingCanStandInFor) {
  whitePicture("ab|7", 7, 7);
  ui::gpuBeginFrame();
  paintTheMost();
  EXPECT_TRUE(isPaintedOrStoodIn("a|", 8));
  EXPECT_FALSE(ui::gpuOwesPictures());
}

TEST_F(Gpu, OwesNoPictureThatIsThere) {
  whitePicture("a|8", 8, 8);
  whitePicture("a|7", 7, 7);
  ui::gpuBeginFrame();
  paintTheMost();
  SDL_Texture* shown = nullptr;
  EXPECT_FALSE(isPaintedOrStoodIn("a|", 8, &shown));
  EXPECT_EQ(sizeOf(shown).w, 8);
  EXPECT_FALSE(ui::gpuOwesPictures());
}

TEST_F(Gpu, PaintsInLogicalUnits) {
  ui::gpuSetScale(1.5);
  // 30 device pixels are 20 units at this scale.
  const auto paint = [](cairo_t* cr, void*) { ui::fillRect(cr, {0, 0, 10, 20}, 0xFF0000, 1); };
  SDL_Texture* texture = ui::gpuTexture("a", 30, 30, paint, nullptr);
  ui::gpuBlit(texture, 0, 0, 20, 20, 1);
  const auto seen = window.picture();
  EXPECT_EQ(pixelAt(seen.get(), 14, 29), kRed);
  EXPECT_EQ(pixelAt(seen.get(), 15, 29), kBlack);
}

TEST_F(Gpu, ForgetsItsPicturesWhenItIsShutDown) {
  isPainted("a");
  ui::gpuShutdown();
  EXPECT_EQ(ui::gpuRenderer(), nullptr);
  ui::gpuInit(window.renderer());
  EXPECT_EQ(ui::gpuRenderer(), window.renderer());
  EXPECT_TRUE(isPainted("a"));
}

TEST_F(Gpu, ForgetsItsPicturesForAnotherRenderer) {
  isPainted("a");
  ui::gpuInit(window.renderer());
  EXPECT_TRUE(isPainted("a"));
}

TEST_F(Gpu, DropsPicturesOfOneKindButForOneEnding) {
  for (const char* key :
       {"felt|a|10x10", "felt|b|10x10", "felt|a|110x10", "felt|c", "fel", "feltish", "frame|10x20"})
    isPainted(key);
  ui::gpuDropTextures("felt|", "|10x10");
  for (const char* key : {"felt|a|10x10", "felt|b|10x10", "fel", "feltish", "frame|10x20"})
    EXPECT_FALSE(isPainted(key)) << key;
  for (const char* key : {"felt|a|110x10", "felt|c"}) EXPECT_TRUE(isPainted(key)) << key;
}

// --- drawn or copied ---

// Fills its area with red and counts its paints.
struct RedPicture {
  int painted = 0;

  ui::PaintPicture paint() {
    return [this](cairo_t* cr, double w, double h) {
      ++painted;
      ui::fillRect(cr, {0, 0, w, h}, 0xFF0000, 1);
    };
  }
};

ui::CairoSurface drawnPicture(const Rect& rect) {
  RedPicture red;
  return support::makePicture(100, 80, [&](cairo_t* cr) {
    cairo_paint(cr);
    cairo_scale(cr, ui::gpuScale(), ui::gpuScale());
    ui::gpuPicture(cr, "red", rect, red.paint());
  });
}

TEST_F(Gpu, CopiesAPictureThatItHasPaintedOnce) {
  RedPicture red;
  const ui::CairoSurface paper = support::makePicture(100, 80, [&](cairo_t* cr) {
    ui::gpuPicture(cr, "red", {10, 20, 30, 40}, red.paint());
    ui::gpuPicture(cr, "red", {60, 20, 30, 40}, red.paint());
  });
  EXPECT_EQ(red.painted, 1);
  EXPECT_TRUE(support::samePicture(paper.get(), support::makePicture(100, 80).get()))
      << "cairo draws nothing";
  const ui::CairoSurface seen = window.picture();
  for (const int x : {10, 39, 60, 89}) EXPECT_EQ(pixelAt(seen.get(), x, 20), kRed) << x;
  for (const int x : {9, 40, 59, 90}) EXPECT_EQ(pixelAt(seen.get(), x, 20), kBlack) << x;
}

TEST_F(Gpu, PaintsAPictureAnewForAnotherSizeOrScaleAndForgetsTheOldSize) {
  RedPicture red;
  const auto paintsFor = [&](double w) {
    red.painted = 0;
    ui::gpuPicture(nullptr, "red", {0, 0, w, 10}, red.paint());
    return red.painted;
  };
  EXPECT_EQ(paintsFor(20), 1);
  EXPECT_EQ(paintsFor(30), 1);
  EXPECT_EQ(paintsFor(30), 0);
  EXPECT_EQ(paintsFor(20), 1);
  ui::gpuSetScale(2);
  EXPECT_EQ(paintsFor(10), 1) << "as large, but drawn larger";
}

TEST_F(Gpu, LaysAPictureOnWholePixelsWhetherItIsCopiedOrDrawn) {
  for (const double scale : {1.0, 1.25, 1.5}) {
    ui::gpuInit(window.renderer());
    ui::gpuSetScale(scale);
    window.clear(0);
    const Rect rect = {7.3, 9.6, 21.4, 30.7};
    RedPicture red;
    ui::gpuPicture(nullptr, "red", rect, red.paint());
    const ui::CairoSurface copied = window.picture();
    ui::gpuShutdown();
    EXPECT_TRUE(support::samePicture(copied.get(), drawnPicture(rect).get())) << scale;
  }
}

TEST(GpuWithoutRenderer, DrawsAPictureEachTime) {
  RedPicture red;
  const ui::CairoSurface paper = support::makePicture(20, 20, [&](cairo_t* cr) {
    for (const double x : {2.0, 12.0}) ui::gpuPicture(cr, "red", {x, 2, 4, 4}, red.paint());
  });
  EXPECT_EQ(red.painted, 2);
  for (const int x : {2, 5, 12, 15}) EXPECT_EQ(pixelAt(paper.get(), x, 2), kRed) << x;
  for (const int x : {1, 6, 11, 16}) EXPECT_EQ(pixelAt(paper.get(), x, 2), 0U) << x;
}

TEST(GpuWithoutRenderer, AnswersNullAndDrawsNothing) {
  ui::gpuShutdown();
  const auto paint = [](cairo_t*, void*) { ADD_FAILURE() << "painted"; };
  const auto paintTarget = [](void*) { ADD_FAILURE() << "painted"; };
  EXPECT_EQ(ui::gpuRenderer(), nullptr);
  EXPECT_EQ(ui::gpuTexture("a", 4, 4, paint, nullptr), nullptr);
  EXPECT_EQ(ui::gpuRenderTarget("a", 4, 4, paintTarget, nullptr, true), nullptr);
  ui::gpuDropTextures("", "");
  ui::gpuBeginFrame();
  ui::gpuBlit(nullptr, 0, 0, 4, 4, 1);
  ui::gpuBlitRotated(nullptr, 0, 0, 4, 4, 45, 1);
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
}

TEST(GpuWithoutRenderer, IgnoresATextureThatIsStillHeld) {
  GpuWindow window(20, 20);
  const ui::SdlTexture texture(
      SDL_CreateTexture(window.renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STATIC, 4, 4));
  ui::gpuShutdown();
  ui::gpuBeginFrame();
  ui::gpuBlit(texture.get(), 0, 0, 4, 4, 1);
  ui::gpuBlitRotated(texture.get(), 0, 0, 4, 4, 45, 1);
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
}

TEST(GpuWithoutRenderer, MayBeStartedWithNoneAndEndedTwice) {
  ui::gpuInit(nullptr);
  EXPECT_EQ(whitePicture(), nullptr);
  ui::gpuShutdown();
  ui::gpuShutdown();
  EXPECT_EQ(ui::gpuRenderer(), nullptr);
}

// --- blending ---

// SDL's software renderer does not support premultiplied blending.
TEST_F(Gpu, SaysOnceThatItCannotBlendPremultiplied) {
  testing::internal::CaptureStderr();
  ui::gpuInit(window.renderer());
  SDL_Texture* texture = whitePicture();
  whitePicture("another");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[gpu] kein vormultipliziertes Mischen — nehme das normale\n");
  SDL_BlendMode mode = SDL_BLENDMODE_NONE;
  ASSERT_EQ(SDL_GetTextureBlendMode(texture, &mode), 0);
  EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
}

TEST_F(Gpu, GivesRenderTargetsTheSameBlending) {
  SDL_Texture* target = ui::gpuRenderTarget("t", 4, 4, [](void*) {}, nullptr, false);
  SDL_BlendMode mode = SDL_BLENDMODE_NONE;
  ASSERT_EQ(SDL_GetTextureBlendMode(target, &mode), 0);
  EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
}

// --- scale ---

TEST_F(Gpu, HasAScaleOfOneWhenItIsNotPositive) {
  ui::gpuSetScale(2);
  EXPECT_EQ(ui::gpuScale(), 2);
  for (const double none : {0.0, -1.5}) {
    ui::gpuSetScale(2);
    ui::gpuSetScale(none);
    EXPECT_EQ(ui::gpuScale(), 1) << none;
  }
}

TEST_F(Gpu, KeepsItsPicturesWhenTheScaleChanges) {
  isPainted("a");
  ui::gpuSetScale(2);
  EXPECT_FALSE(isPainted("a"));
}

TEST_F(Gpu, RoundsPicturesUpToWholePixels) {
  ui::gpuSetScale(1.25);
  EXPECT_EQ(ui::gpuPixels(40), 50);
  EXPECT_EQ(ui::gpuPixels(41), 52);
  EXPECT_EQ(ui::gpuPixels(0), 0);
}

TEST_F(Gpu, MakesAWindowsPictureExactlyAsLargeAsTheWindow) {
  for (int windowW = 640; windowW <= 1700; ++windowW) {
    const int deviceW = windowW * 5 / 4;
    ui::gpuSetScale(static_cast<double>(deviceW) / windowW);
    EXPECT_EQ(ui::gpuPixels(deviceW / ui::gpuScale()), deviceW) << windowW;
  }
}

// --- eviction ---

std::string numbered(int i) {
  std::array<char, 16> key{};
  std::snprintf(key.data(), key.size(), "k%03d", i);
  return key.data();
}

// Requests the pictures from .. to - 1 and returns how many had to be painted.
int paintedOf(int from, int to) {
  int painted = 0;
  for (int i = from; i < to; ++i) painted += isPainted(numbered(i)) ? 1 : 0;
  return painted;
}

TEST_F(GpuEviction, SparesFourHundred) {
  paintedOf(0, 400);
  ui::gpuBeginFrame();
  isPainted("new");
  EXPECT_EQ(paintedOf(0, 400), 0);
}

TEST_F(GpuEviction, DropsTheOldestThirdOfFourHundredAndOne) {
  for (int i = 400; i >= 0; --i) {  // so that age and key order differ
    ui::gpuBeginFrame();
    isPainted(numbered(i));
  }
  ui::gpuBeginFrame();
  isPainted("new");
  EXPECT_EQ(paintedOf(0, 268), 0);
  EXPECT_EQ(paintedOf(268, 400), 132);  // one more would evict again
  EXPECT_TRUE(isPainted(numbered(400)));
}

TEST_F(GpuEviction, GoesByKeyWithinAFrame) {
  for (int i = 400; i >= 0; --i) isPainted(numbered(i));
  isPainted("new");
  ui::gpuBeginFrame();
  EXPECT_EQ(paintedOf(133, 401), 0);
  EXPECT_EQ(paintedOf(0, 133), 133);
}

TEST_F(GpuEviction, SparesWhatThisFrameUsed) {
  paintedOf(0, 401);
  ui::gpuBeginFrame();
  paintedOf(0, 200);
  isPainted("new");
  EXPECT_EQ(paintedOf(0, 200), 0);
  EXPECT_EQ(paintedOf(333, 401), 0);
  EXPECT_EQ(paintedOf(200, 332), 132);
}

// A refused picture must not stay in the cache, where it would take the room of others.
TEST_F(GpuEviction, IsNotCausedByRefusedPictures) {
  const auto broken = [](cairo_t* cr, void*) { cairo_scale(cr, 0, 0); };
  const auto paintNothing = [](void*) {};
  EXPECT_TRUE(isPainted("old"));
  ui::gpuBeginFrame();
  for (int i = 0; i < 401; ++i) {
    EXPECT_EQ(ui::gpuTexture(numbered(i), 0, 5, broken, nullptr), nullptr);
    EXPECT_EQ(ui::gpuTexture(numbered(i), 40000, 1, broken, nullptr), nullptr);
    EXPECT_EQ(ui::gpuTexture(numbered(i), 4, 4, broken, nullptr), nullptr);
    EXPECT_EQ(ui::gpuRenderTarget(numbered(i), 4, -1, paintNothing, nullptr, false), nullptr);
  }
  EXPECT_TRUE(isPainted("new"));
  EXPECT_FALSE(isPainted("old"));
}

TEST_F(GpuEviction, IsNotCausedByAPictureThatIsThere) {
  paintedOf(0, 401);
  EXPECT_FALSE(isPainted(numbered(5)));
  EXPECT_EQ(paintedOf(0, 401), 0);
}

TEST_F(GpuEviction, IsNotCausedByAPictureThatReplacesAnother) {
  paintedOf(0, 401);
  EXPECT_TRUE(isPainted(numbered(400), 2, 2));
  EXPECT_EQ(paintedOf(0, 400), 0);
}

// --- render targets ---

struct TargetJob {
  SDL_Texture* picture = nullptr;
  int painted = 0;
};

void paintTargetJob(void* user) {
  auto& job = *static_cast<TargetJob*>(user);
  ++job.painted;
  ui::gpuBlit(job.picture, 2, 2, 4, 4, 1);
}

TEST_F(GpuTarget, IsPaintedByTheRendererOnATransparentGround) {
  TargetJob job = {whitePicture()};
  SDL_Texture* target = ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(SDL_GetRenderTarget(window.renderer()), nullptr);
  window.clear(0xFF0000);
  ui::gpuBlit(target, 10, 10, 8, 8, 1);
  const auto seen = window.picture();
  EXPECT_EQ(pixelAt(seen.get(), 3, 3), kRed) << "painted into the window";
  EXPECT_EQ(pixelAt(seen.get(), 11, 11), kRed) << "not transparent";
  EXPECT_EQ(pixelAt(seen.get(), 12, 12), kWhite);
  EXPECT_EQ(pixelAt(seen.get(), 15, 15), kWhite);
  EXPECT_EQ(pixelAt(seen.get(), 16, 16), kRed);
}

TEST_F(GpuTarget, IsPaintedAgainOnlyWhenAsked) {
  TargetJob job = {whitePicture()};
  SDL_Texture* target = ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  EXPECT_EQ(ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false), target);
  EXPECT_EQ(job.painted, 1);
  EXPECT_EQ(ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, true), target);
  EXPECT_EQ(job.painted, 2);
}

TEST_F(GpuTarget, IsClearedBeforeItIsPaintedAgain) {
  TargetJob job = {whitePicture()};
  ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  SDL_Texture* target = ui::gpuRenderTarget("t", 8, 8, [](void*) {}, nullptr, true);
  ui::gpuBlit(target, 10, 10, 8, 8, 1);
  EXPECT_EQ(pixelAt(window.picture().get(), 13, 13), kBlack);
}

TEST_F(GpuTarget, IsReplacedByOneOfAnotherSize) {
  TargetJob job = {whitePicture()};
  ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  EXPECT_EQ(sizeOf(ui::gpuRenderTarget("t", 8, 9, paintTargetJob, &job, false)).h, 9);
  EXPECT_EQ(job.painted, 2);
}

TEST_F(GpuTarget, OfNoPixelsOrTooManyIsRefused) {
  TargetJob job;
  for (const auto& [w, h] : {std::pair{0, 5}, {5, 0}, {-1, 5}, {INT_MAX, 1}})
    EXPECT_EQ(ui::gpuRenderTarget("t", w, h, paintTargetJob, &job, true), nullptr) << w << ' ' << h;
  EXPECT_EQ(job.painted, 0);
}

TEST_F(GpuTarget, MayBePaintedFromWithinAnother) {
  const auto paintOuter = [](void* user) {
    ui::gpuRenderTarget("inner", 4, 4, paintTargetJob, user, false);
    ui::gpuBlit(static_cast<TargetJob*>(user)->picture, 0, 0, 8, 8, 1);
  };
  TargetJob job = {whitePicture()};
  ui::gpuBlit(ui::gpuRenderTarget("outer", 8, 8, paintOuter, &job, false), 10, 10, 8, 8, 1);
  const auto seen = window.picture();
  EXPECT_EQ(pixelAt(seen.get(), 17, 17), kWhite);
  EXPECT_EQ(pixelAt(seen.get(), 1, 1), kBlack) << "the outer one was painted into the window";
}

TEST_F(GpuTarget, AgesEvenWhenItIsUsed) {
  TargetJob job = {whitePicture()};
  ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  ui::gpuBeginFrame();
  paintedOf(0, 399);  // with the two others, the most that fit without an eviction
  ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  ASSERT_EQ(job.painted, 1);
  isPainted("new");
  job.picture = whitePicture();
  ui::gpuRenderTarget("t", 8, 8, paintTargetJob, &job, false);
  EXPECT_EQ(job.painted, 2);
}

// Painting a board requests tiles, which may evict entries, but never the texture being painted.
TEST_F(GpuTarget, SurvivesAnEvictionDuringItsPainting) {
  const auto paintNewPictures = [](void*) {
    isPainted("new");
    ui::gpuBlit(whitePicture(), 0, 0, 8, 8, 1);
  };
  ui::gpuRenderTarget("t", 8, 8, [](void*) {}, nullptr, false);
  ui::gpuBeginFrame();
  paintedOf(0, 400);
  SDL_Texture* target = ui::gpuRenderTarget("t", 8, 8, paintNewPictures, nullptr, true);
  ASSERT_NE(target, nullptr);
  ui::gpuBlit(target, 20, 20, 8, 8, 1);
  EXPECT_EQ(pixelAt(window.picture().get(), 27, 27), kWhite);
  EXPECT_EQ(pixelAt(window.picture().get(), 7, 7), kBlack) << "painted into the window";
  EXPECT_TRUE(isPainted(numbered(0))) << "nothing was evicted";
}

// --- blits ---

struct Box {
  int left = INT_MAX;
  int top = INT_MAX;
  int right = -1;  // the last white column
  int bottom = -1;
};

Box whiteBox(const GpuWindow& window) {
  const auto seen = window.picture();
  Box box;
  for (int y = 0; y < cairo_image_surface_get_height(seen.get()); ++y) {
    for (int x = 0; x < cairo_image_surface_get_width(seen.get()); ++x) {
      if (pixelAt(seen.get(), x, y) != kWhite) continue;
      box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x), std::max(box.bottom, y)};
    }
  }
  return box;
}

TEST_F(Gpu, AClipWithinAnotherLeavesTheOuterOneAsItWas) {
  SDL_Texture* white = whitePicture("large", 100, 80);
  {
    const ui::GpuClip outer({10, 10, 60, 40});
    {
      const ui::GpuClip inner({20, 20, 10, 10});
      ui::gpuBlit(white, 0, 0, 100, 80, 1);
      EXPECT_EQ(pixelAt(window.picture().get(), 29, 29), kWhite);
      EXPECT_EQ(pixelAt(window.picture().get(), 30, 30), kBlack);
    }
    ui::gpuBlit(white, 0, 0, 100, 80, 1);
    EXPECT_EQ(pixelAt(window.picture().get(), 10, 10), kWhite);
    EXPECT_EQ(pixelAt(window.picture().get(), 69, 49), kWhite);
    EXPECT_EQ(pixelAt(window.picture().get(), 9, 9), kBlack);
    EXPECT_EQ(pixelAt(window.picture().get(), 70, 50), kBlack);
  }
  ui::gpuBlit(white, 0, 0, 100, 80, 1);
  EXPECT_EQ(pixelAt(window.picture().get(), 99, 79), kWhite);
}

TEST_F(GpuBlit, RoundsPlaceAndSizeEachOnItsOwn) {
  ui::gpuSetScale(1.5);
  // 10.3 and 5.4 become 15.45 and 8.1; 2.2 and 3.6 become 3.3 and 5.4. Rounding the far edges instead would
  // round up.
  ui::gpuBlit(whitePicture(), 10.3, 2.2, 5.4, 3.6, 1);
  const Box seen = whiteBox(window);
  EXPECT_EQ(seen.left, 15);
  EXPECT_EQ(seen.right, 15 + 8 - 1);
  EXPECT_EQ(seen.top, 3);
  EXPECT_EQ(seen.bottom, 3 + 5 - 1);
}

TEST_F(GpuBlit, RoundsAHalfAwayFromZero) {
  ui::gpuBlit(whitePicture(), 10.5, 20.5, 3.5, 4.5, 1);
  const Box seen = whiteBox(window);
  EXPECT_EQ(seen.left, 11);
  EXPECT_EQ(seen.right, 11 + 4 - 1);
  EXPECT_EQ(seen.top, 21);
  EXPECT_EQ(seen.bottom, 21 + 5 - 1);
}

// Straight pixels fade by alpha alone; premultiplied ones would need their colour modulated too.
TEST_F(GpuBlit, FadesByTheAlphaAlone) {
  constexpr std::array<std::pair<double, int>, 8> kModulations = {
      {{-0.5, 0}, {0, 0}, {0.001, 0}, {0.002, 1}, {0.2, 51}, {0.5, 128}, {1, 255}, {7, 255}}};
  SDL_Texture* texture = whitePicture();
  for (const auto& [alpha, expected] : kModulations) {
    ui::gpuBlit(texture, 0, 0, 4, 4, alpha);
    Uint8 a = 1;
    Uint8 r = 1;
    Uint8 g = 1;
    Uint8 b = 1;
    ASSERT_EQ(SDL_GetTextureAlphaMod(texture, &a), 0);
    ASSERT_EQ(SDL_GetTextureColorMod(texture, &r, &g, &b), 0);
    EXPECT_EQ(a, expected) << alpha;
    EXPECT_EQ(r, 255) << alpha;
    EXPECT_EQ(g, 255) << alpha;
    EXPECT_EQ(b, 255) << alpha;
  }
}

// Left half red, right half blue.
SDL_Texture* twoColours() {
  const auto paint = [](cairo_t* cr, void*) {
    ui::fillRect(cr, {0, 0, 20, 20}, 0xFF0000, 1);
    ui::fillRect(cr, {20, 0, 20, 20}, 0x0000FF, 1);
  };
  return ui::gpuTexture("two", 40, 20, paint, nullptr);
}

TEST_F(GpuBlit, TurnsClockwiseAboutTheMiddle) {
  ui::gpuBlitRotated(twoColours(), 50, 40, 40, 20, 90, 1);
  const auto seen = window.picture();
  EXPECT_EQ(pixelAt(seen.get(), 50, 25), kRed);
  EXPECT_EQ(pixelAt(seen.get(), 50, 55), kBlue);
  EXPECT_EQ(pixelAt(seen.get(), 35, 40), kBlack);
  EXPECT_EQ(pixelAt(seen.get(), 65, 40), kBlack);
}

TEST_F(GpuBlit, CentresAPictureThatIsNotTurned) {
  ui::gpuSetScale(1.5);
  // The corner (30 - 5.15, 20 - 3.1) and size 10.3 × 6.2 become (37.275, 25.35) and 15.45 × 9.3 at 1.5.
  ui::gpuBlitRotated(whitePicture(), 30, 20, 10.3, 6.2, 0, 1);
  const Box seen = whiteBox(window);
  EXPECT_EQ(seen.left, 37);
  EXPECT_EQ(seen.right, 37 + 15 - 1);
  EXPECT_EQ(seen.top, 25);
  EXPECT_EQ(seen.bottom, 25 + 9 - 1);
}

TEST_F(Gpu, CountsThePicturesPaintedSinceTheFramesBeginning) {
  ui::gpuBeginFrame();
  whitePicture("a");
  whitePicture("b");
  whitePicture("a");
  EXPECT_EQ(ui::gpuPaints(), 2);
  ui::gpuBeginFrame();
  whitePicture("a");
  EXPECT_EQ(ui::gpuPaints(), 0);
}

TEST_F(GpuBlit, FadesATurnedPictureToo) {
  SDL_Texture* texture = whitePicture();
  ui::gpuBlitRotated(texture, 20, 20, 4, 4, 30, 0.5);
  Uint8 a = 1;
  ASSERT_EQ(SDL_GetTextureAlphaMod(texture, &a), 0);
  EXPECT_EQ(a, 128);
}

TEST_F(GpuBlit, IsCountedFromTheFramesBeginning) {
  SDL_Texture* texture = whitePicture();
  ui::gpuBeginFrame();
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
  ui::gpuBlit(texture, 0, 0, 4, 4, 1);
  ui::gpuBlitRotated(texture, 0, 0, 4, 4, 10, 1);
  ui::gpuBlit(nullptr, 0, 0, 4, 4, 1);
  ui::gpuBlitRotated(nullptr, 0, 0, 4, 4, 10, 1);
  EXPECT_EQ(ui::gpuDrawCalls(), 2);
  ui::gpuBeginFrame();
  EXPECT_EQ(ui::gpuDrawCalls(), 0);
}

}  // namespace
