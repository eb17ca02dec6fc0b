// Tests the loop in windows larger than 1920 x 1080, where a logical pixel is longer than a point.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <ostream>

#include "app/app.h"
#include "app/fake_screens.h"
#include "app/frame_loop.h"
#include "support/data_home.h"
#include "ui/gpu.h"

namespace {

constexpr std::uint32_t kOfCairo = 0xFF0000FF;
constexpr std::uint32_t kOfTexture = 0xFFFF0000;
constexpr std::uint32_t kOfNothing = 0xFF000000;

struct Large {
  int w;
  int h;
  double growth;
};
void PrintTo(const Large& window, std::ostream* out) { *out << window.w << " x " << window.h; }

class LargeWindow : public testing::TestWithParam<Large> {
 protected:
  LargeWindow()
      : window(SDL_CreateWindow("test", 0, 0, GetParam().w, GetParam().h, SDL_WINDOW_RESIZABLE)),
        renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE)) {
    fake::script() = {};
    ui::Game::settings() = {};
    ui::Game::instance().setFactory(fake::make);
    ui::gpuInit(renderer.get());
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }
  ~LargeWindow() override {
    fake::script().onUpdate = nullptr;
    ui::Game::settings() = {};
    ui::gpuShutdown();
  }

  static void SetUpTestSuite() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
  }
  static void TearDownTestSuite() { SDL_Quit(); }

  // The context that the screen sees in the next pass, in which it calls `act`.
  ui::Ctx frame(const std::function<void(ui::Ctx&)>& act = [](ui::Ctx&) {}) {
    ui::Ctx seen;
    fake::script().onUpdate = [&](ui::Ctx& ctx) {
      act(ctx);
      seen = ctx;
    };
    loop.pass();
    return seen;
  }
  std::uint32_t pixelAt(int x, int y) const {
    std::uint32_t pixel = 0;
    const SDL_Rect place = {x, y, 1, 1};
    EXPECT_EQ(SDL_RenderReadPixels(renderer.get(), &place, SDL_PIXELFORMAT_ARGB8888, &pixel, sizeof pixel),
              0);
    return pixel;
  }

  support::DataHome data;
  ui::SdlWindow window;
  ui::SdlRenderer renderer;
  ui::FrameLoop loop{window.get(), renderer.get(), [] { return 100.0; }};
};

INSTANTIATE_TEST_SUITE_P(Of, LargeWindow,
                         testing::Values(Large{2560, 1440, 4.0 / 3}, Large{3840, 2160, 2},
                                         Large{3000, 1200, 10.0 / 9}));

TEST_P(LargeWindow, GivesItsScreenTheRoomOfFullHdAndWhatIsLeftOver) {
  const ui::Ctx seen = frame();
  EXPECT_NEAR(seen.w, GetParam().w / GetParam().growth, 1e-9);
  EXPECT_NEAR(seen.h, GetParam().h / GetParam().growth, 1e-9);
  EXPECT_DOUBLE_EQ(ui::gpuScale(), GetParam().growth);
}

TEST_P(LargeWindow, ShowsWhatIsDrawnAtTheMouseUnderTheMouse) {
  constexpr int kPointX = 1500;
  constexpr int kPointY = 900;
  constexpr int kBeside = 40;  // more than half of either square
  SDL_WarpMouseInWindow(window.get(), kPointX, kPointY);
  const auto paintRed = [](cairo_t* cr, void*) {
    cairo_set_source_rgb(cr, 1, 0, 0);
    cairo_paint(cr);
  };
  frame([&](ui::Ctx& ctx) {
    const ui::Input& in = ctx.in;
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintRed, nullptr), in.mx - 15, in.my - 15, 30, 30, 1);
    cairo_set_source_rgb(ctx.cr, 0, 0, 1);
    cairo_rectangle(ctx.cr, in.mx - 5, in.my - 5, 10, 10);
    cairo_fill(ctx.cr);
  });
  EXPECT_EQ(pixelAt(kPointX, kPointY), kOfCairo);
  for (const int side : {-1, 1}) {
    EXPECT_EQ(pixelAt(kPointX + side * 13, kPointY), kOfTexture);
    EXPECT_EQ(pixelAt(kPointX, kPointY + side * 13), kOfTexture);
    EXPECT_EQ(pixelAt(kPointX + side * kBeside, kPointY), kOfNothing);
    EXPECT_EQ(pixelAt(kPointX, kPointY + side * kBeside), kOfNothing);
  }
}

TEST_P(LargeWindow, MovesWhatIsDraggedAsFarAsTheMouse) {
  SDL_WarpMouseInWindow(window.get(), 500, 600);
  frame();
  SDL_WarpMouseInWindow(window.get(), 530, 590);
  const ui::Ctx seen = frame();
  EXPECT_DOUBLE_EQ(seen.in.dx * GetParam().growth, 30);
  EXPECT_DOUBLE_EQ(seen.in.dy * GetParam().growth, -10);
}

TEST_P(LargeWindow, ShrinksToOneOfThePlainScaleAndGrowsAgain) {
  frame();
  SDL_SetWindowSize(window.get(), 1100, 760);
  SDL_WarpMouseInWindow(window.get(), 500, 600);
  const ui::Ctx small = frame();
  EXPECT_EQ(small.w, 1100);
  EXPECT_EQ(small.h, 760);
  EXPECT_EQ(small.in.mx, 500);
  EXPECT_EQ(ui::gpuScale(), 1);
  SDL_SetWindowSize(window.get(), GetParam().w, GetParam().h);
  EXPECT_NEAR(frame().h, GetParam().h / GetParam().growth, 1e-9);
}

}  // namespace
