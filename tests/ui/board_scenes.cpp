#include "ui/board_scenes.h"

#include <algorithm>
#include <cmath>

#include "support/gpu_window.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/gpu.h"

namespace test {
namespace {

ui::Ctx contextOf(cairo_t* cr, const Frame& frame) {
  ui::Ctx ctx;
  ctx.cr = cr;
  ctx.w = frame.w;
  ctx.h = frame.h;
  ctx.time = frame.time;
  return ctx;
}

int deviceSize(double length, const Frame& frame) {
  return static_cast<int>(std::lround(length * frame.scale));
}

}  // namespace

std::string nameOf(Path path) { return path == Path::Cairo ? "cairo" : "textures"; }

std::string pathName(const testing::TestParamInfo<Path>& variant) { return nameOf(variant.param); }

ui::CairoSurface paintScene(Path path, const Frame& frame, const std::function<void(ui::Ctx&)>& draw) {
  const int w = deviceSize(frame.w, frame);
  const int h = deviceSize(frame.h, frame);
  if (path == Path::Textures) {
    const support::GpuWindow window(w, h);
    ui::gpuSetScale(frame.scale);
    window.clear(kFelt);
    ui::gpuBeginFrame();
    const ui::CairoSurface overlay = support::makePicture(w, h, [&](cairo_t* cr) {
      cairo_scale(cr, frame.scale, frame.scale);
      ui::Ctx ctx = contextOf(cr, frame);
      draw(ctx);
    });
    EXPECT_TRUE(support::samePicture(overlay.get(), support::makePicture(w, h).get())) << "drawn with cairo";
    return window.picture();
  }
  ui::gpuShutdown();
  return support::makePicture(w, h, [&](cairo_t* cr) {
    cairo_scale(cr, frame.scale, frame.scale);
    ui::fillRect(cr, {0, 0, static_cast<double>(frame.w), static_cast<double>(frame.h)}, kFelt, 1);
    ui::Ctx ctx = contextOf(cr, frame);
    draw(ctx);
  });
}

Ink inkOf(cairo_surface_t* picture) {
  const int w = cairo_image_surface_get_width(picture);
  const int h = cairo_image_surface_get_height(picture);
  Ink ink{w, h, 0, 0};
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      if (support::pixelAt(picture, x, y) == (0xFF000000U | kFelt)) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
             std::max(ink.bottom, y + 1)};
    }
  }
  return ink.right == 0 ? Ink{} : ink;
}

bool isCached(const std::string& key, int w, int h) {
  bool painted = false;
  const auto paint = [](cairo_t*, void* user) { *static_cast<bool*>(user) = true; };
  EXPECT_NE(ui::gpuTexture(key, w, h, paint, &painted), nullptr);
  return !painted;
}

int opacityOf(SDL_Texture* texture) {
  Uint8 alpha = 0;
  EXPECT_EQ(SDL_GetTextureAlphaMod(texture, &alpha), 0);
  return alpha;
}

void expectRect(const ui::Rect& rect, double x, double y, double w, double h) {
  EXPECT_NEAR(rect.x, x, 1e-9);
  EXPECT_NEAR(rect.y, y, 1e-9);
  EXPECT_NEAR(rect.w, w, 1e-9);
  EXPECT_NEAR(rect.h, h, 1e-9);
}

}  // namespace test
