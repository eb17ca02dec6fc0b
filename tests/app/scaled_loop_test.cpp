// Tests the frame loop on displays with several device pixels per logical pixel: what a screen is told and
// where its drawing appears. Also tests how the statistics attribute a frame's work, and passes that draw
// nothing.

#include <SDL.h>
#include <cairo.h>
#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <string>

#include "app/app.h"
#include "app/fake_screens.h"
#include "app/frame_loop.h"
#include "support/data_home.h"
#include "support/picture.h"
#include "ui/gpu.h"

namespace {

// The window's size in device pixels.
constexpr int kPixelW = 640;
constexpr int kPixelH = 480;

// Device pixels per unit of SDL's window size.
double displayScale = 1;
double fixedTime = 0;
// Seconds that presenting a frame takes.
double presentTime = 0;

double fixedClock() { return fixedTime; }

template <typename Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

// Replaces SDL's function in this program.
void SDL_GetWindowSize(SDL_Window* window, int* w, int* h) {
  static auto* const ask = next<decltype(SDL_GetWindowSize)>("SDL_GetWindowSize");
  ask(window, w, h);
  for (int* length : {w, h})
    if (length != nullptr) *length = static_cast<int>(std::lround(*length / displayScale));
}

void SDL_RenderPresent(SDL_Renderer* renderer) {
  static auto* const present = next<decltype(SDL_RenderPresent)>("SDL_RenderPresent");
  fixedTime += presentTime;
  present(renderer);
}

namespace {

class ScaledLoop : public testing::Test {
 protected:
  ScaledLoop()
      : window(SDL_CreateWindow("test", 0, 0, kPixelW, kPixelH, SDL_WINDOW_RESIZABLE)),
        renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE)) {
    fake::script() = {};
    fixedTime = 100;
    ui::Game::instance().setFactory(fake::make);
    ui::gpuInit(renderer.get());
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }
  ~ScaledLoop() override {
    fake::script().onUpdate = nullptr;
    displayScale = 1;
    presentTime = 0;
    ui::gpuShutdown();
    ui::gpuSetScale(1);
  }

  static void SetUpTestSuite() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
  }
  static void TearDownTestSuite() { SDL_Quit(); }

  bool pass(ui::FrameLoop& loop, const std::function<void(ui::Ctx&)>& act = {}) {
    fake::script().onUpdate = act;
    return loop.pass();
  }
  // Whether the next pass draws. Afterwards the picture is declared still.
  bool draws(ui::FrameLoop& loop) {
    bool drawn = false;
    pass(loop, [&drawn](ui::Ctx& ctx) {
      drawn = true;
      ctx.stillUntil = ui::kForever;
    });
    return drawn;
  }
  void settle(ui::FrameLoop& loop) {
    for (int i = 0; i < 10 && draws(loop); ++i) continue;
  }
  ui::CairoSurface shown() {
    ui::CairoSurface picture = support::makePicture(kPixelW, kPixelH);
    EXPECT_EQ(SDL_RenderReadPixels(renderer.get(), nullptr, SDL_PIXELFORMAT_ARGB8888,
                                   cairo_image_surface_get_data(picture.get()),
                                   cairo_image_surface_get_stride(picture.get())),
              0);
    cairo_surface_mark_dirty(picture.get());
    return picture;
  }

  support::DataHome data;
  ui::SdlWindow window;
  ui::SdlRenderer renderer;
};

class AtScale : public ScaledLoop, public testing::WithParamInterface<double> {
 protected:
  AtScale() { displayScale = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Scale, AtScale, testing::Values(1, 1.25, 2), [](const auto& scale) {
  return std::to_string(static_cast<int>(100 * scale.param)) + "Percent";
});

TEST_P(AtScale, ScreenIsToldTheSizeInLogicalPixels) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](const ui::Ctx& ctx) {
    EXPECT_EQ(ctx.w, kPixelW / GetParam());
    EXPECT_EQ(ctx.h, kPixelH / GetParam());
    EXPECT_EQ(ui::gpuScale(), GetParam());
  });
}

TEST_P(AtScale, MouseIsWhereSdlSaysInTheWindow) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_WarpMouseInWindow(window.get(), 101, 57);
  pass(loop, [](const ui::Ctx& ctx) {
    EXPECT_EQ(ctx.in.mx, 101);
    EXPECT_EQ(ctx.in.my, 57);
  });
}

void paintRed(cairo_t* cr, void* /*user*/) {
  cairo_set_source_rgb(cr, 1, 0, 0);
  cairo_paint(cr);
}

constexpr std::uint32_t kBlack = 0xFF000000;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

// A rectangle whose corners lie on whole device pixels at each of the scales.
constexpr ui::Rect kPlace = {40, 80, 120, 60};

// Expects the rectangle to be filled with the colour, and nothing around it.
void expectFilled(cairo_surface_t* picture, double scale, std::uint32_t color) {
  const ui::Rect& rect = kPlace;
  const auto pixel = [scale](double length) { return static_cast<int>(length * scale); };
  const int left = pixel(rect.x);
  const int top = pixel(rect.y);
  const int right = pixel(rect.x + rect.w);
  const int bottom = pixel(rect.y + rect.h);
  EXPECT_EQ(support::pixelAt(picture, left, top), color);
  EXPECT_EQ(support::pixelAt(picture, right - 1, bottom - 1), color);
  EXPECT_EQ(support::pixelAt(picture, left - 1, top), kBlack);
  EXPECT_EQ(support::pixelAt(picture, left, top - 1), kBlack);
  EXPECT_EQ(support::pixelAt(picture, right, bottom - 1), kBlack);
  EXPECT_EQ(support::pixelAt(picture, right - 1, bottom), kBlack);
}

TEST_P(AtScale, WhatCairoDrawsLandsWhereItLies) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](const ui::Ctx& ctx) {
    cairo_set_source_rgb(ctx.cr, 0, 0, 1);
    cairo_rectangle(ctx.cr, kPlace.x, kPlace.y, kPlace.w, kPlace.h);
    cairo_fill(ctx.cr);
  });
  expectFilled(shown().get(), GetParam(), kBlue);
}

TEST_P(AtScale, WhatIsCopiedLandsWhereItLies) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](const ui::Ctx&) {
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintRed, nullptr), kPlace.x, kPlace.y, kPlace.w, kPlace.h, 1);
  });
  expectFilled(shown().get(), GetParam(), kRed);
}

TEST_P(AtScale, PictureIsPaintedInDevicePixelsAndDrawnInLogicalOnes) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](const ui::Ctx& ctx) {
    ui::gpuPicture(ctx.cr, "red", kPlace, [](cairo_t* cr, double w, double h) {
      EXPECT_EQ(w, kPlace.w);
      EXPECT_EQ(h, kPlace.h);
      EXPECT_EQ(cairo_image_surface_get_width(cairo_get_target(cr)), kPlace.w * GetParam());
      paintRed(cr, nullptr);
    });
  });
  expectFilled(shown().get(), GetParam(), kRed);
}

TEST_P(AtScale, ClipCutsCopiesAtItsLogicalEdges) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](const ui::Ctx& ctx) {
    const ui::GpuClip clip(kPlace);
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintRed, nullptr), 0, 0, ctx.w, ctx.h, 1);
  });
  expectFilled(shown().get(), GetParam(), kRed);
}

TEST_P(AtScale, ScaleOfAFrameIsThatOfItsWindowNow) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop);
  displayScale = 2.5;  // dragged to another display
  pass(loop, [](const ui::Ctx& ctx) {
    EXPECT_EQ(ctx.w, kPixelW / 2.5);
    EXPECT_EQ(ui::gpuScale(), 2.5);
  });
}

// --- the reported times ---

TEST_F(ScaledLoop, UpdatingIsTheProcessorsTimeAndShowingTheDisplays) {
  setenv("VESKARA_STATS", "", 1);
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  unsetenv("VESKARA_STATS");
  presentTime = 0.0625;
  testing::internal::CaptureStderr();
  fixedTime = 101;
  pass(loop, [](const ui::Ctx&) { fixedTime += 0.015625; });
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[stats]   1 fps   CPU  15.6 ms   GPU  62.5 ms   0 Kopien  640x480 \n");
}

// --- passes that draw nothing ---

TEST_F(ScaledLoop, WindowsSizeIsSavedInAPassThatDrawsNothing) {
  const auto isSaved = [this](int w) {
    return data.text("settings.json").find("\"windowW\":" + std::to_string(w)) != std::string::npos;
  };
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_SetWindowSize(window.get(), 700, 500);
  settle(loop);
  fixedTime += 1;
  SDL_SetWindowSize(window.get(), 720, 500);
  settle(loop);
  EXPECT_TRUE(isSaved(700)) << "720 comes only a second later, too soon for another write";
  fixedTime += 1.5;
  EXPECT_FALSE(draws(loop));
  EXPECT_TRUE(isSaved(720));
}

TEST_F(ScaledLoop, WindowClosedInAPassThatDrawsNothingEndsIt) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  settle(loop);
  SDL_Event closed = {};
  closed.type = SDL_QUIT;
  fake::script().onUpdate = nullptr;
  EXPECT_TRUE(loop.pass());
  SDL_AddTimer(
      20,
      [](Uint32, void* event) -> Uint32 {
        SDL_PushEvent(static_cast<SDL_Event*>(event));
        return 0;
      },
      &closed);
  EXPECT_FALSE(loop.pass());
}

}  // namespace
