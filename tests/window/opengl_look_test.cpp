// What OpenGL makes of the screens: pictures with premultiplied pixels, which the software renderer of all
// other pictures cannot blend.

#include <SDL.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "gallery/states.h"
#include "gallery/studio.h"
#include "support/data_home.h"
#include "support/glyph_font.h"
#include "support/palette.h"
#include "ui/gpu.h"
#include "window/desktop.h"

namespace {

// A display for SDL in this process.
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

class OpenGlLook : public support::WithGlyphFont, public testing::WithParamInterface<const char*> {};

// A board painted by the renderer and faded, tiles that glow, bursts below a light, a veil.
INSTANTIATE_TEST_SUITE_P(Of, OpenGlLook, testing::Values("menu", "selected", "won", "paused"),
                         [](const auto& state) { return std::string(state.param); });

TEST_P(OpenGlLook, IsAsPainted) {
  const support::DataHome data;
  const ShownHere display;
  const gallery::Studio studio;
  SDL_RendererInfo info = {};
  ASSERT_EQ(SDL_GetRendererInfo(studio.target(), &info), 0) << SDL_GetError();
  ASSERT_STREQ(info.name, "opengl");
  const auto& state =
      *std::find_if(gallery::states().begin(), gallery::states().end(),
                    [](const gallery::State& each) { return each.name == std::string(GetParam()); });
  gallery::Sitting sitting(studio, {640, 480, 1}, state.make());
  state.reach(sitting);
  const ui::CairoSurface picture = sitting.picture(0.1);
  ASSERT_TRUE(picture);
  EXPECT_TRUE(ui::gpuIsPremultiplied());
  EXPECT_TRUE(support::looksLikeInFewColors(picture.get(), std::string("opengl_") + GetParam()));
}

}  // namespace
