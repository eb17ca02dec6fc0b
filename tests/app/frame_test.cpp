#include "app/frame.h"

#include <SDL.h>
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "support/gpu_window.h"
#include "support/picture.h"

namespace {

int liveTextures = 0;

}  // namespace

// Replaces SDL's function in this program.
SDL_Texture* SDL_CreateTexture(SDL_Renderer* renderer, Uint32 format, int access, int w, int h) {
  static auto* const create =
      reinterpret_cast<decltype(SDL_CreateTexture)*>(dlsym(RTLD_NEXT, "SDL_CreateTexture"));
  SDL_Texture* texture = create(renderer, format, access, w, h);
  if (texture != nullptr) ++liveTextures;
  return texture;
}
void SDL_DestroyTexture(SDL_Texture* texture) {
  static auto* const destroy =
      reinterpret_cast<decltype(SDL_DestroyTexture)*>(dlsym(RTLD_NEXT, "SDL_DestroyTexture"));
  if (texture != nullptr) --liveTextures;
  destroy(texture);
}

namespace {

using support::pixelAt;

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

void fill(cairo_t* cr, double x, double y, double w, double h) {
  cairo_set_source_rgb(cr, 0, 0, 1);
  cairo_rectangle(cr, x, y, w, h);
  cairo_fill(cr);
}

// The canvas's current surface.
cairo_surface_t* surfaceOf(ui::FrameCanvas& canvas) { return cairo_get_target(canvas.begin(1).get()); }

// Marks the surface, to notice whether it is replaced.
cairo_user_data_key_t markKey;
void mark(ui::FrameCanvas& canvas) {
  static int anything;
  cairo_surface_set_user_data(surfaceOf(canvas), &markKey, &anything, nullptr);
}
bool isMarked(ui::FrameCanvas& canvas) {
  return cairo_surface_get_user_data(surfaceOf(canvas), &markKey) != nullptr;
}

TEST(FrameCanvas, LiesOverWhatTheRendererHolds) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(8, 4);
  fill(canvas.begin(1).get(), 0, 0, 4, 4);
  window.clear(0xFF0000);
  canvas.flush();
  canvas.upload();
  const ui::CairoSurface picture = window.picture();
  EXPECT_EQ(pixelAt(picture.get(), 3, 3), kBlue);
  EXPECT_EQ(pixelAt(picture.get(), 4, 3), kRed);
}

TEST(FrameCanvas, BeginsEachFrameTransparent) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(8, 4);
  fill(canvas.begin(1).get(), 0, 0, 8, 4);
  canvas.flush();
  canvas.upload();
  canvas.begin(1);
  window.clear(0xFF0000);
  canvas.flush();
  canvas.upload();
  EXPECT_EQ(pixelAt(window.picture().get(), 2, 2), kRed);
}

// Must look as if the whole surface were cleared, uploaded and copied each time.
TEST(FrameCanvas, ShowsWhateverWasDrawnAndNothingOfTheFramesBefore) {
  constexpr int kPictureW = 90;
  constexpr int kPictureH = 10 * ui::FrameCanvas::kBandRows + 7;
  const support::GpuWindow window(kPictureW, kPictureH);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(kPictureW, kPictureH);
  std::mt19937 random(7);
  const auto below = [&random](int end) {
    return static_cast<double>(random() % static_cast<unsigned>(end));
  };
  for (int frame = 0; frame < 300; ++frame) {
    struct Shape {
      double x, y, w, h, alpha;
    };
    std::vector<Shape> shapes;
    for (unsigned i = random() % 4; i > 0; --i) {
      shapes.push_back({below(kPictureW), below(kPictureH), below(kPictureW) + 1,
                        below(i == 1 ? 3 : kPictureH) + 0.5, below(256) / 255});
    }
    const auto draw = [&shapes](cairo_t* cr) {
      for (const Shape& shape : shapes) {
        cairo_set_source_rgba(cr, 0.25, 0.75, 1, shape.alpha);
        cairo_rectangle(cr, shape.x, shape.y, shape.w, shape.h);
        cairo_fill(cr);
      }
    };
    draw(canvas.begin(1).get());
    if (frame % 7 == 3) continue;  // a frame that is never shown
    window.clear(0xFF0000);
    canvas.flush();
    canvas.upload();
    const ui::CairoSurface expected = support::makePicture(kPictureW, kPictureH, [&](cairo_t* cr) {
      cairo_set_source_rgb(cr, 1, 0, 0);
      cairo_paint(cr);
      cairo_push_group(cr);
      draw(cr);
      cairo_pop_group_to_source(cr);
      cairo_paint(cr);
    });
    ASSERT_TRUE(support::samePicture(window.picture().get(), expected.get(), 2)) << frame;
  }
}

// A texture of the whole window at 3840 x 2160 takes 33 MB.
TEST(FrameCanvas, HasTexturesOfWhatItShowsAlone) {
  constexpr int kPictureH = 10 * ui::FrameCanvas::kBandRows + 7;
  const support::GpuWindow window(64, kPictureH);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(64, kPictureH);
  const int before = liveTextures;
  const auto texturesAfter = [&](double top, double h) {
    fill(canvas.begin(1).get(), 0, top, 64, h);
    canvas.flush();
    canvas.upload();
    return liveTextures - before;
  };
  EXPECT_EQ(texturesAfter(0, 0), 0);
  EXPECT_EQ(texturesAfter(40, 40), 2);
  EXPECT_EQ(texturesAfter(0, kPictureH), 11);
  EXPECT_EQ(texturesAfter(kPictureH - 1, 1), 1);
  EXPECT_EQ(texturesAfter(0, 0), 0);
}

TEST(FrameCanvas, IsDrawnOnInLogicalPixels) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(8, 4);
  fill(canvas.begin(2).get(), 1, 0, 1, 1);
  window.clear(0xFF0000);
  canvas.flush();
  canvas.upload();
  const ui::CairoSurface picture = window.picture();
  EXPECT_EQ(pixelAt(picture.get(), 1, 0), kRed);
  EXPECT_EQ(pixelAt(picture.get(), 2, 0), kBlue);
  EXPECT_EQ(pixelAt(picture.get(), 3, 1), kBlue);
  EXPECT_EQ(pixelAt(picture.get(), 4, 1), kRed);
  EXPECT_EQ(pixelAt(picture.get(), 3, 2), kRed);
}

TEST(FrameCanvas, KeepsItsSurfaceWhileTheSizeStays) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(8, 4);
  mark(canvas);
  canvas.resize(8, 4);
  EXPECT_TRUE(isMarked(canvas));
}

TEST(FrameCanvas, MakesANewSurfaceForANewSize) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  canvas.resize(8, 4);
  mark(canvas);
  canvas.resize(8, 5);
  EXPECT_FALSE(isMarked(canvas));
  EXPECT_EQ(cairo_image_surface_get_width(surfaceOf(canvas)), 8);
  EXPECT_EQ(cairo_image_surface_get_height(surfaceOf(canvas)), 5);
}

TEST(FrameCanvas, WithoutTextureLeavesTheTexturesOfTheFrame) {
  const support::GpuWindow window(8, 4);
  ui::FrameCanvas canvas(window.renderer());
  window.clear(0xFF0000);
  canvas.resize(1000000, 1);  // more than cairo and SDL can make
  fill(canvas.begin(1).get(), 0, 0, 8, 4);
  canvas.flush();
  canvas.upload();
  EXPECT_EQ(pixelAt(window.picture().get(), 2, 2), kRed);
  canvas.resize(8, 4);
  fill(canvas.begin(1).get(), 0, 0, 8, 4);
  canvas.flush();
  canvas.upload();
  EXPECT_EQ(pixelAt(window.picture().get(), 2, 2), kBlue);
}

}  // namespace
