#include "app/frame.h"

#include <gtest/gtest.h>

#include "support/gpu_window.h"
#include "support/picture.h"

namespace {

using support::pixelAt;

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

void fill(cairo_t* cr, double x, double y, double w, double h) {
  cairo_set_source_rgb(cr, 0, 0, 1);
  cairo_rectangle(cr, x, y, w, h);
  cairo_fill(cr);
}

// The surface that the canvas draws on now.
cairo_surface_t* surfaceOf(ui::FrameCanvas& canvas) { return cairo_get_target(canvas.begin(1).get()); }

// A mark that lives as long as the surface.
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
