// The screens drawn with OpenGL, with premultiplied textures. The other picture tests use the software
// renderer, which cannot blend those.

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "app/app.h"
#include "gallery/states.h"
#include "gallery/studio.h"
#include "support/data_home.h"
#include "support/glyph_font.h"
#include "support/palette.h"
#include "support/picture.h"
#include "ui/gpu.h"
#include "window/desktop.h"

namespace {

// Connects this process's SDL to a display.
class ShownHere {
 public:
  ShownHere() {
    for (const char* name : kNames) setenv(name, environment.at(name).c_str(), 1);
  }
  ShownHere(const ShownHere&) = delete;
  ShownHere& operator=(const ShownHere&) = delete;
  ~ShownHere() {
    for (const char* name : kNames) unsetenv(name);
  }

 private:
  static constexpr const char* kNames[] = {"DISPLAY", "SDL_VIDEODRIVER", "LIBGL_ALWAYS_SOFTWARE",
                                           "LP_NUM_THREADS", "MESA_SHADER_CACHE_DIR"};

  const window::Desktop desktop;
  const window::Environment environment = desktop.environment();
};

// What this renderer shows of a state.
ui::CairoSurface shownBy(const char* renderer, const gallery::State& state) {
  const support::DataHome data;
  ui::Game::settings() = {};
  setenv("SDL_RENDER_DRIVER", renderer, 1);
  const gallery::Studio studio;
  unsetenv("SDL_RENDER_DRIVER");
  SDL_RendererInfo info = {};
  EXPECT_EQ(SDL_GetRendererInfo(studio.target(), &info), 0) << SDL_GetError();
  EXPECT_STREQ(info.name, renderer);
  gallery::Sitting sitting(studio, {640, 480, 1}, state.make());
  state.reach(sitting);
  return sitting.picture(0.1);
}

class OpenGlLook : public support::WithGlyphFont, public testing::WithParamInterface<const char*> {};

// These states cover a board that is painted by the renderer and faded, glowing tiles, bursts under a light,
// and a veil.
INSTANTIATE_TEST_SUITE_P(Of, OpenGlLook, testing::Values("menu", "selected", "won", "paused"),
                         [](const auto& state) { return std::string(state.param); });

TEST_P(OpenGlLook, IsAsPainted) {
  const ShownHere display;
  const auto& state =
      *std::find_if(gallery::states().begin(), gallery::states().end(),
                    [](const gallery::State& each) { return each.name == std::string(GetParam()); });
  const ui::CairoSurface picture = shownBy("opengl", state);
  ASSERT_TRUE(picture);
  EXPECT_TRUE(ui::gpuIsPremultiplied());
  EXPECT_TRUE(support::looksLikeInFewColors(picture.get(), std::string("opengl_") + GetParam()));
}

// The picture reduced to the mean colours of its 8 x 8 blocks.
ui::CairoSurface inBlocks(cairo_surface_t* picture) {
  constexpr int kSide = 8;
  const int w = cairo_image_surface_get_width(picture) / kSide;
  const int h = cairo_image_surface_get_height(picture) / kSide;
  const support::Pixels pixels(picture);
  const auto mean = [&](int blockX, int blockY, int shift) {
    int sum = 0;
    for (int i = 0; i < kSide * kSide; ++i) {
      const std::uint32_t pixel = pixels.at(blockX * kSide + i % kSide, blockY * kSide + i / kSide);
      sum += static_cast<int>(pixel >> shift & 0xFFU);
    }
    return sum / (255.0 * kSide * kSide);
  };
  return support::makePicture(w, h, [&](cairo_t* cr) {
    for (int y = 0; y < h; ++y) {
      for (int x = 0; x < w; ++x) {
        cairo_set_source_rgb(cr, mean(x, y, 16), mean(x, y, 8), mean(x, y, 0));
        cairo_rectangle(cr, x, y, 1, 1);
        cairo_fill(cr);
      }
    }
  });
}

// Compares blocks, because the renderers sample scaled pictures differently, such as the board behind the
// menu. At edges a pixel may differ much and a block by up to 10. Wrong blending would change all pixels.
TEST(Renderers, ShowTheSame) {
  ASSERT_TRUE(support::registerGlyphFont());
  const ShownHere display;
  for (const gallery::State& state : gallery::states()) {
    const ui::CairoSurface opengl = shownBy("opengl", state);
    const ui::CairoSurface software = shownBy("software", state);
    ASSERT_TRUE(opengl && software) << state.name;
    const auto same = support::samePicture(inBlocks(opengl.get()).get(), inBlocks(software.get()).get(), 12);
    EXPECT_TRUE(same) << state.name;
  }
}

}  // namespace
