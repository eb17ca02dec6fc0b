#include "app/frame_loop.h"

#include <dlfcn.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "app/app.h"
#include "app/fake_screens.h"
#include "app/signals.h"
#include "support/data_home.h"
#include "support/picture.h"
#include "ui/gpu.h"

namespace {

using support::pixelAt;
using testing::ElementsAre;
using testing::IsEmpty;

// The loop's clock, in seconds.
double fixedTime = 0;
double fixedClock() { return fixedTime; }
// Seconds that flushing a surface takes.
double flushTime = 0;
// Whether the window has the keyboard focus. The dummy driver never gives it one.
bool watched = true;
// The longest wait that the loop requested, in milliseconds, and the seconds that each wait adds to the
// clock.
int longestWait = 0;
double waitTime = 0;
// How often the pointer was set to a hand, and how often to the default.
int hands = 0;
int arrows = 0;

constexpr int kW = 320;
constexpr int kH = 240;

SDL_Event keyDown(SDL_Keycode sym, SDL_Scancode scancode) {
  SDL_Event event = {};
  event.type = SDL_KEYDOWN;
  event.key.keysym.sym = sym;
  event.key.keysym.scancode = scancode;
  return event;
}

// Starts SDL with the dummy video driver. It stays up for all tests.
bool startVideo() {
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  return SDL_Init(SDL_INIT_VIDEO) == 0;
}

}  // namespace

// Replaces SDL's function in this program.
Uint32 SDL_GetWindowFlags(SDL_Window* window) {
  static auto* const ask =
      reinterpret_cast<decltype(SDL_GetWindowFlags)*>(dlsym(RTLD_NEXT, "SDL_GetWindowFlags"));
  return (ask(window) & ~Uint32{SDL_WINDOW_MOUSE_FOCUS | SDL_WINDOW_INPUT_FOCUS}) |
         (watched ? Uint32{SDL_WINDOW_INPUT_FOCUS} : 0U);
}

// Records the requested timeout, advances the clock and then really waits.
int SDL_WaitEventTimeout(SDL_Event* event, int timeout) {
  static auto* const wait =
      reinterpret_cast<decltype(SDL_WaitEventTimeout)*>(dlsym(RTLD_NEXT, "SDL_WaitEventTimeout"));
  longestWait = std::max(longestWait, timeout);
  fixedTime += waitTime;
  return wait(event, timeout);
}

// The dummy video driver has no pointer.
SDL_Cursor* SDL_CreateSystemCursor(SDL_SystemCursor id) {
  return id == SDL_SYSTEM_CURSOR_HAND ? reinterpret_cast<SDL_Cursor*>(&hands) : nullptr;
}
void SDL_FreeCursor(SDL_Cursor* /*cursor*/) {}
SDL_Cursor* SDL_GetDefaultCursor(void) { return nullptr; }
void SDL_SetCursor(SDL_Cursor* cursor) { ++(cursor != nullptr ? hands : arrows); }

// Replaces cairo's function in this program.
void cairo_surface_flush(cairo_surface_t* surface) {
  static auto* const flush =
      reinterpret_cast<decltype(cairo_surface_flush)*>(dlsym(RTLD_NEXT, "cairo_surface_flush"));
  fixedTime += flushTime;
  flush(surface);
}

namespace {

class FrameLoopTest : public testing::Test {
 protected:
  FrameLoopTest()
      : window(SDL_CreateWindow("test", 0, 0, kW, kH, SDL_WINDOW_RESIZABLE)),
        renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE)) {
    fake::script() = {};
    fixedTime = 100;
    ui::Game::settings() = {};
    ui::Game::instance().setFactory(fake::make);
    ui::gpuInit(renderer.get());
    SDL_FlushEvents(SDL_FIRSTEVENT, SDL_LASTEVENT);
  }
  ~FrameLoopTest() override {
    fake::script().onUpdate = nullptr;
    ui::Game::settings() = {};
    ui::gpuShutdown();
  }

  static void SetUpTestSuite() { ASSERT_TRUE(startVideo()) << SDL_GetError(); }
  static void TearDownTestSuite() { SDL_Quit(); }

  void SetUp() override {
    ASSERT_TRUE(window) << SDL_GetError();
    ASSERT_TRUE(renderer) << SDL_GetError();
  }

  // Runs one pass in which the screen calls `act`. False after the last pass.
  bool pass(ui::FrameLoop& loop, const std::function<void(ui::Ctx&)>& act = {}) {
    fake::script().onUpdate = act;
    return loop.pass();
  }
  // The context that the screen sees in the next pass.
  ui::Ctx frameOf(ui::FrameLoop& loop) {
    ui::Ctx seen;
    pass(loop, [&seen](ui::Ctx& ctx) { seen = ctx; });
    return seen;
  }
  ui::CairoSurface shown() {
    ui::CairoSurface picture = support::makePicture(kW, kH);
    EXPECT_EQ(SDL_RenderReadPixels(renderer.get(), nullptr, SDL_PIXELFORMAT_ARGB8888,
                                   cairo_image_surface_get_data(picture.get()),
                                   cairo_image_surface_get_stride(picture.get())),
              0);
    cairo_surface_mark_dirty(picture.get());
    return picture;
  }

  bool savedWidthIs(int w) const {
    return data.text("settings.json").find("\"windowW\":" + std::to_string(w)) != std::string::npos;
  }

  support::DataHome data;
  ui::SdlWindow window;
  ui::SdlRenderer renderer;
};

void paintWhole(cairo_t* cr, void*) {
  cairo_set_source_rgb(cr, 1, 0, 0);
  cairo_paint(cr);
}

TEST_F(FrameLoopTest, ShowsCairoOverTextures) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](ui::Ctx& ctx) {
    cairo_set_source_rgb(ctx.cr, 0, 0, 1);
    cairo_rectangle(ctx.cr, 0, 0, 100, 100);
    cairo_fill(ctx.cr);
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintWhole, nullptr), 50, 0, 100, 100, 1);
  });
  const ui::CairoSurface picture = shown();
  EXPECT_EQ(pixelAt(picture.get(), 20, 20), 0xFF0000FF);
  EXPECT_EQ(pixelAt(picture.get(), 80, 20), 0xFF0000FF);
  EXPECT_EQ(pixelAt(picture.get(), 120, 20), 0xFFFF0000);
  EXPECT_EQ(pixelAt(picture.get(), 200, 20), 0xFF000000);
}

TEST_F(FrameLoopTest, NothingOfTheFrameBeforeStays) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](ui::Ctx& ctx) {
    cairo_set_source_rgb(ctx.cr, 0, 0, 1);
    cairo_rectangle(ctx.cr, 0, 0, 100, 100);
    cairo_fill(ctx.cr);
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintWhole, nullptr), 0, 0, kW, kH, 1);
  });
  pass(loop);
  const ui::CairoSurface picture = shown();
  EXPECT_EQ(pixelAt(picture.get(), 20, 20), 0xFF000000);
  EXPECT_EQ(pixelAt(picture.get(), 200, 20), 0xFF000000);
}

TEST_F(FrameLoopTest, ScreenSeesTheTimeOfTheClockAndTheSizeOfTheWindow) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  fixedTime = 100.0625;
  const ui::Ctx frame = frameOf(loop);
  EXPECT_EQ(frame.time, 100.0625);
  EXPECT_EQ(frame.dt, 0.0625);
  EXPECT_EQ(frame.w, kW);
  EXPECT_EQ(frame.h, kH);
}

TEST_F(FrameLoopTest, FrameTimeIsThatSinceTheFrameBefore) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  fixedTime = 100.5;
  pass(loop);
  fixedTime = 100.53125;
  EXPECT_EQ(frameOf(loop).dt, 0.03125);
  EXPECT_EQ(frameOf(loop).dt, 0);
}

TEST_F(FrameLoopTest, FrameTimeIsNeverMoreThanATenth) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  fixedTime = 107;
  const ui::Ctx frame = frameOf(loop);
  EXPECT_EQ(frame.time, 107);
  EXPECT_EQ(frame.dt, 0.1);
}

TEST_F(FrameLoopTest, DrawsOnTheSameSurfaceWhileTheSizeStays) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  cairo_user_data_key_t key;
  int mark = 0;
  bool marked = false;
  const auto look = [&](ui::Ctx& ctx) {
    marked = cairo_surface_get_user_data(cairo_get_target(ctx.cr), &key) != nullptr;
  };
  pass(loop,
       [&](ui::Ctx& ctx) { cairo_surface_set_user_data(cairo_get_target(ctx.cr), &key, &mark, nullptr); });
  pass(loop, look);
  EXPECT_TRUE(marked);
  SDL_SetWindowSize(window.get(), kW + 10, kH + 20);
  pass(loop, look);
  EXPECT_FALSE(marked);
  const ui::Ctx frame = frameOf(loop);
  EXPECT_EQ(frame.w, kW + 10);
  EXPECT_EQ(frame.h, kH + 20);
}

TEST_F(FrameLoopTest, RemembersTheSizeOfTheResizedWindow) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_SetWindowSize(window.get(), 700, 500);
  pass(loop);
  EXPECT_EQ(ui::Game::settings().windowW, 700);
  EXPECT_EQ(ui::Game::settings().windowH, 500);
}

TEST_F(FrameLoopTest, KeysReachTheScreenInTheFrameTheyArriveIn) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_Event key = keyDown(SDLK_h, SDL_SCANCODE_H);
  SDL_PushEvent(&key);
  EXPECT_THAT(frameOf(loop).in.keys, ElementsAre(SDLK_h));
  EXPECT_THAT(frameOf(loop).in.keys, IsEmpty());
}

TEST_F(FrameLoopTest, MouseReachesTheScreen) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_WarpMouseInWindow(window.get(), 40, 50);
  pass(loop);
  SDL_WarpMouseInWindow(window.get(), 43, 48);
  const ui::Ctx frame = frameOf(loop);
  EXPECT_EQ(frame.in.mx, 43);
  EXPECT_EQ(frame.in.my, 48);
  EXPECT_EQ(frame.in.dx, 3);
  EXPECT_EQ(frame.in.dy, -2);
}

TEST_F(FrameLoopTest, ClickIsFreeToBeTakenInEveryFrame) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](ui::Ctx& ctx) { ctx.clickTaken = true; });
  EXPECT_FALSE(frameOf(loop).clickTaken);
}

TEST_F(FrameLoopTest, GoesOnWhileNobodyEndsIt) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  EXPECT_TRUE(pass(loop));
  EXPECT_TRUE(pass(loop));
}

TEST_F(FrameLoopTest, EndsWhenAScreenSaysSo) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  EXPECT_FALSE(pass(loop, [](ui::Ctx& ctx) { ctx.quit = true; }));
  EXPECT_FALSE(pass(loop));
}

TEST_F(FrameLoopTest, EndsAfterTheFrameInWhichTheWindowIsClosed) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_Event quit = {};
  quit.type = SDL_QUIT;
  SDL_PushEvent(&quit);
  bool ran = false;
  EXPECT_FALSE(pass(loop, [&ran](ui::Ctx&) { ran = true; }));
  EXPECT_TRUE(ran);
}

TEST_F(FrameLoopTest, EndsOnCtrlQ) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_Event key = keyDown(SDLK_q, SDL_SCANCODE_Q);
  key.key.keysym.mod = KMOD_RCTRL;
  SDL_PushEvent(&key);
  EXPECT_FALSE(pass(loop));
}

TEST_F(FrameLoopTest, EndsAfterTheFrameOfATerminationSignal) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  const auto passAfterSignal = [&] {
    ui::installTerminationHandler(nullptr);
    raise(SIGTERM);
    bool ran = false;
    const bool goesOn = pass(loop, [&ran](ui::Ctx&) { ran = true; });
    std::_Exit(ran && !goesOn ? 0 : 1);
  };
  EXPECT_EXIT(passAfterSignal(), testing::ExitedWithCode(0), "");
}

// Uses hidden windows because the dummy driver cannot minimise one.
TEST_F(FrameLoopTest, HiddenWindowRunsNoScreenButStillEndsWhenClosed) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_HideWindow(window.get());
  bool ran = false;
  const auto note = [&ran](ui::Ctx&) { ran = true; };
  EXPECT_TRUE(pass(loop, note));
  SDL_Event quit = {};
  quit.type = SDL_QUIT;
  SDL_PushEvent(&quit);
  EXPECT_FALSE(pass(loop, note));
  EXPECT_FALSE(ran);
}

TEST_F(FrameLoopTest, WindowClosedWhileTheLoopWaitsEndsItInThatPass) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_HideWindow(window.get());
  pass(loop);
  SDL_AddTimer(
      1,
      [](Uint32, void*) -> Uint32 {
        SDL_Event quit = {};
        quit.type = SDL_QUIT;
        SDL_PushEvent(&quit);
        return 0;
      },
      nullptr);
  bool goesOn = true;
  for (int i = 0; i < 100 && goesOn; ++i) goesOn = pass(loop);
  EXPECT_FALSE(goesOn);
}

TEST_F(FrameLoopTest, HiddenWindowEndsOnASignal) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_HideWindow(window.get());
  const auto passAfterSignal = [&] {
    ui::installTerminationHandler(nullptr);
    raise(SIGTERM);
    std::_Exit(pass(loop) ? 1 : 0);
  };
  EXPECT_EXIT(passAfterSignal(), testing::ExitedWithCode(0), "");
}

TEST_F(FrameLoopTest, HiddenWindowCostsNoProcessor) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_HideWindow(window.get());
  for (int i = 0; i < 3; ++i) pass(loop);  // handles the events from hiding
  std::vector<Uint64> waits;
  for (int i = 0; i < 5; ++i) {
    const Uint64 before = SDL_GetTicks64();
    pass(loop);
    waits.push_back(SDL_GetTicks64() - before);
  }
  EXPECT_THAT(waits, testing::Each(testing::Ge(50U)));
  EXPECT_THAT(waits, testing::Contains(testing::Lt(250U))) << "signals and clicks would be noticed too late";
}

TEST_F(FrameLoopTest, TimeOfTheScreensStandsWhileTheWindowIsHidden) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  fixedTime = 101;
  pass(loop);
  SDL_HideWindow(window.get());
  for (const double time : {110, 120, 3700}) {
    fixedTime = time;
    pass(loop);
  }
  SDL_ShowWindow(window.get());
  fixedTime = 3700.0625;
  const ui::Ctx frame = frameOf(loop);
  EXPECT_EQ(frame.time, 101.0625);
  EXPECT_EQ(frame.dt, 0.0625);
}

TEST_F(FrameLoopTest, KeysTypedAtAHiddenWindowAreForgotten) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_HideWindow(window.get());
  SDL_Event key = keyDown(SDLK_h, SDL_SCANCODE_H);
  SDL_PushEvent(&key);
  pass(loop);
  SDL_ShowWindow(window.get());
  EXPECT_THAT(frameOf(loop).in.keys, IsEmpty());
}

TEST_F(FrameLoopTest, LostPicturesArePaintedAnew) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  cairo_user_data_key_t key;
  int mark = 0;
  int paints = 0;
  bool marked = false;
  const auto draw = [&](ui::Ctx& ctx) {
    ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintWhole, nullptr), 0, 0, kW, kH, 1);
    ui::gpuRenderTarget("target", 8, 8, [](void* count) { ++*static_cast<int*>(count); }, &paints, false);
    paints += ui::gpuPaints();
    marked = cairo_surface_get_user_data(cairo_get_target(ctx.cr), &key) != nullptr;
    cairo_surface_set_user_data(cairo_get_target(ctx.cr), &key, &mark, nullptr);
  };
  pass(loop, draw);
  pass(loop, draw);
  EXPECT_EQ(paints, 2);
  EXPECT_TRUE(marked);
  for (const Uint32 type : {SDL_RENDER_TARGETS_RESET, SDL_RENDER_DEVICE_RESET}) {
    SDL_Event lost = {};
    lost.type = type;
    SDL_PushEvent(&lost);
    paints = 0;
    pass(loop, draw);
    EXPECT_EQ(paints, 2);
    EXPECT_FALSE(marked) << "the frame's own surface was kept";
    pass(loop, draw);
    EXPECT_EQ(paints, 2);
    EXPECT_EQ(pixelAt(shown().get(), 20, 20), 0xFFFF0000);
  }
}

// --- a picture that stays ---

class StillPicture : public FrameLoopTest {
 protected:
  StillPicture() { longestWait = 0; }
  ~StillPicture() override {
    watched = true;
    waitTime = 0;
  }

  // Whether the screen runs in the next pass. It then declares its picture still for `stays` seconds.
  bool paints(double stays = ui::kForever) {
    bool ran = false;
    pass(loop, [&](ui::Ctx& ctx) {
      ran = true;
      ctx.stillUntil = ctx.time + stays;
    });
    return ran;
  }
  // Runs passes until all initial events are handled and shown.
  void settle(double stays = ui::kForever) {
    for (int i = 0; i < 10 && paints(stays); ++i) continue;
  }

  ui::FrameLoop loop{window.get(), renderer.get(), fixedClock};
};

TEST_F(StillPicture, IsNotPaintedAgain) {
  settle();
  for (int i = 0; i < 3; ++i) {
    fixedTime += 1;
    EXPECT_FALSE(paints());
  }
}

TEST_F(StillPicture, IsPaintedAgainAtTheEndOfItsTime) {
  settle(1);
  const double painted = fixedTime;
  for (const double later : {0.2, 0.5, 0.9375}) {
    fixedTime = painted + later;
    EXPECT_FALSE(paints(1)) << later;
  }
  fixedTime = painted + 1;
  EXPECT_TRUE(paints(1));
}

TEST_F(StillPicture, OfAScreenThatSaysNothingIsPaintedAtOnce) {
  settle();
  for (int i = 0; i < 3; ++i) {
    bool ran = false;
    SDL_WarpMouseInWindow(window.get(), 10 + i, 10);
    pass(loop, [&ran](ui::Ctx&) { ran = true; });
    EXPECT_TRUE(ran);
    ran = false;
    pass(loop, [&ran](ui::Ctx&) { ran = true; });
    EXPECT_TRUE(ran);
  }
}

TEST_F(StillPicture, ShowsEveryInputInItsOwnFrameAndWhatFollowsFromIt) {
  SDL_Event wheel = {};
  wheel.type = SDL_MOUSEWHEEL;
  wheel.wheel.y = 1;
  SDL_Event motion = {};
  motion.type = SDL_MOUSEMOTION;
  SDL_Event exposed = {};
  exposed.type = SDL_WINDOWEVENT;
  exposed.window.event = SDL_WINDOWEVENT_EXPOSED;
  SDL_Event focus = exposed;
  focus.window.event = SDL_WINDOWEVENT_FOCUS_LOST;
  SDL_Event resized = exposed;
  resized.window.event = SDL_WINDOWEVENT_RESIZED;
  SDL_Event lost = {};
  lost.type = SDL_RENDER_TARGETS_RESET;
  SDL_Event press = {};
  press.type = SDL_MOUSEBUTTONDOWN;
  press.button.button = SDL_BUTTON_LEFT;
  SDL_Event right = press;
  right.button.button = SDL_BUTTON_RIGHT;
  SDL_Event release = press;
  release.type = SDL_MOUSEBUTTONUP;
  for (SDL_Event event : {keyDown(SDLK_h, SDL_SCANCODE_H), wheel, motion, exposed, focus, resized, lost,
                          press, release, right}) {
    settle();
    ASSERT_FALSE(paints());
    SDL_PushEvent(&event);
    EXPECT_TRUE(paints()) << event.type;
    EXPECT_TRUE(paints()) << event.type;
    EXPECT_FALSE(paints()) << event.type;
  }
}

TEST_F(StillPicture, IsPaintedInAnotherSize) {
  settle();
  SDL_SetWindowSize(window.get(), kW + 10, kH + 20);
  EXPECT_TRUE(paints());
}

TEST_F(StillPicture, GivesWayToAnotherScreensAtOnce) {
  settle();
  SDL_Event key = keyDown(SDLK_h, SDL_SCANCODE_H);
  SDL_PushEvent(&key);
  pass(loop, [](ui::Ctx& ctx) {
    ctx.stillUntil = ui::kForever;
    ui::Game::instance().resetTo({});
  });
  EXPECT_TRUE(paints());
}

TEST_F(StillPicture, IsPaintedUntilNothingStandsInForAnother) {
  settle();
  int frames = 0;
  const auto zoomed = [&frames](ui::Ctx& ctx) {
    ++frames;
    for (const char size : {'1', '2'}) {
      if (size == '2' && frames == 1) break;
      for (char name = 'a'; name <= 't'; ++name) {
        const std::string family = std::string(1, name) + '|';
        ui::gpuTextureOrStandIn(family + size, family, 2, 2, paintWhole, nullptr);
      }
    }
    ctx.stillUntil = ui::kForever;
  };
  SDL_Event key = keyDown(SDLK_PLUS, SDL_SCANCODE_KP_PLUS);
  SDL_PushEvent(&key);
  for (int i = 0; i < 20; ++i) pass(loop, zoomed);
  EXPECT_EQ(frames, 1 + (20 + ui::kMostPaints - 1) / ui::kMostPaints);
}

// Otherwise the play clock would run slow.
TEST_F(StillPicture, CountsTheWholeWaitAsTimeOfTheNextFrame) {
  settle(0.5);
  const double painted = fixedTime;
  // The loop waits in several parts, each of which takes a tenth of a second.
  waitTime = 0.1;
  ui::Ctx seen;
  for (int i = 0; i < 10 && seen.time == 0; ++i) seen = frameOf(loop);
  EXPECT_GE(seen.dt, 0.5);
  EXPECT_DOUBLE_EQ(seen.dt, seen.time - painted);
}

TEST_F(StillPicture, CountsOfAStallATenth) {
  settle();
  fixedTime += 5;
  SDL_Event key = keyDown(SDLK_h, SDL_SCANCODE_H);
  SDL_PushEvent(&key);
  EXPECT_EQ(frameOf(loop).dt, 0.1);
}

TEST_F(StillPicture, EndsOnASignalWithinAQuarterOfASecond) {
  settle();
  const auto passAfterSignal = [&] {
    ui::installTerminationHandler(nullptr);
    raise(SIGTERM);
    std::_Exit(loop.pass() ? 1 : 0);
  };
  EXPECT_EXIT(passAfterSignal(), testing::ExitedWithCode(0), "");
  longestWait = 0;
  loop.pass();
  EXPECT_GT(longestWait, 0);
  EXPECT_LT(longestWait, 250);
}

TEST_F(StillPicture, IsPaintedAllTheSameForStatistics) {
  setenv("VESKARA_STATS", "1", 1);
  ui::FrameLoop measured(window.get(), renderer.get(), fixedClock);
  unsetenv("VESKARA_STATS");
  longestWait = 0;
  for (int i = 0; i < 5; ++i) {
    bool ran = false;
    pass(measured, [&ran](ui::Ctx& ctx) {
      ran = true;
      ctx.stillUntil = ui::kForever;
    });
    EXPECT_TRUE(ran);
  }
  EXPECT_EQ(longestWait, 0);
}

// --- the pace ---

TEST_F(StillPicture, ThatMovesIsPacedToTheDisplay) {
  settle(0);
  longestWait = 0;
  EXPECT_TRUE(paints(0));
  EXPECT_GE(longestWait, 13) << "60 frames per second, minus a fifth for a renderer with vsync";
  EXPECT_LE(longestWait, 17);
}

TEST_F(StillPicture, ThatMovesUnwatchedDoesSoTenTimesASecond) {
  settle(0);
  watched = false;
  longestWait = 0;
  EXPECT_TRUE(paints(0));
  EXPECT_EQ(longestWait, 100);
}

// As on a machine where another program runs for longer than a frame.
TEST_F(StillPicture, ThatMovesBearsAClockThatJumpsFromLookToLook) {
  ui::FrameLoop jumpy(window.get(), renderer.get(), [] { return fixedTime += 0.05; });
  for (int i = 0; i < 5; ++i) EXPECT_TRUE(pass(jumpy));
}

// --- input for a screen that is not visible yet ---

SDL_Event buttonEvent(Uint32 type) {
  SDL_Event event = {};
  event.type = type;
  event.button.button = SDL_BUTTON_LEFT;
  return event;
}

TEST_F(FrameLoopTest, ClickWhileAScreensFirstFrameIsDrawnIsNotHeardOf) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](ui::Ctx&) { ui::Game::instance().resetTo({}); });
  pass(loop, [](ui::Ctx&) {
    for (const Uint32 type : {SDL_MOUSEBUTTONDOWN, SDL_MOUSEBUTTONUP}) {
      SDL_Event event = buttonEvent(type);
      SDL_PushEvent(&event);
    }
    SDL_Event key = keyDown(SDLK_h, SDL_SCANCODE_H);
    SDL_PushEvent(&key);
  });
  const ui::Ctx frame = frameOf(loop);
  EXPECT_FALSE(frame.in.pressed || frame.in.clicked);
  EXPECT_THAT(frame.in.keys, ElementsAre(SDLK_h)) << "only button events are dropped";
}

TEST_F(FrameLoopTest, KeyTypedWhileAScreensFirstFrameIsDrawnIsNoFreshOne) {
  ui::Game::instance().resetTo({});
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop);
  pass(loop, [](ui::Ctx&) {
    SDL_Event event = keyDown(SDLK_RETURN, SDL_SCANCODE_RETURN);
    SDL_PushEvent(&event);
  });
  const ui::Ctx second = frameOf(loop);
  EXPECT_THAT(second.in.keys, ElementsAre(SDLK_RETURN));
  EXPECT_THAT(second.in.freshKeys, IsEmpty());
}

TEST_F(FrameLoopTest, PointerIsAHandWhileTheScreenSaysSo) {
  hands = arrows = 0;
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop);
  EXPECT_EQ(hands, 0);
  for (int i = 0; i < 3; ++i) pass(loop, [](ui::Ctx& ctx) { ctx.hand = true; });
  EXPECT_EQ(hands, 1);
  EXPECT_EQ(arrows, 0);
  for (int i = 0; i < 3; ++i) pass(loop);
  EXPECT_EQ(hands, 1);
  EXPECT_EQ(arrows, 1);
}

TEST_F(FrameLoopTest, F11MakesTheWindowFullScreenAndBackWithoutForgettingItsSize) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  const auto isFullScreen = [this] {
    return (SDL_GetWindowFlags(window.get()) & SDL_WINDOW_FULLSCREEN_DESKTOP) ==
           SDL_WINDOW_FULLSCREEN_DESKTOP;
  };
  SDL_Event key = keyDown(SDLK_F11, SDL_SCANCODE_F11);
  SDL_PushEvent(&key);
  pass(loop);
  EXPECT_TRUE(isFullScreen());
  pass(loop);
  EXPECT_EQ(ui::Game::settings().windowW, 1100);
  EXPECT_EQ(ui::Game::settings().windowH, 760);
  SDL_PushEvent(&key);
  pass(loop);
  EXPECT_FALSE(isFullScreen());
}

TEST_F(FrameLoopTest, F11IsSavedAtOnce) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_Event key = keyDown(SDLK_F11, SDL_SCANCODE_F11);
  SDL_PushEvent(&key);
  std::string savedBeforeTheFrame;
  pass(loop, [&](ui::Ctx&) { savedBeforeTheFrame = data.text("settings.json"); });
  EXPECT_THAT(savedBeforeTheFrame, testing::HasSubstr("\"fullscreen\":true"));
}

TEST_F(FrameLoopTest, GeometryIsSavedNoMoreOftenThanEveryTwoSeconds) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  const auto resizeAt = [&](double time, int w) {
    fixedTime = time;
    SDL_SetWindowSize(window.get(), w, 500);
    pass(loop);
  };
  resizeAt(100, 700);
  EXPECT_TRUE(savedWidthIs(700));
  resizeAt(101, 710);
  resizeAt(102, 720);
  EXPECT_TRUE(savedWidthIs(700));
  fixedTime = 102.001;
  pass(loop);
  EXPECT_TRUE(savedWidthIs(720));
}

TEST_F(FrameLoopTest, NothingIsSavedWhileTheGeometryStays) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  for (int half = 0; half < 20; ++half) {
    fixedTime = 100 + half * 0.5;
    pass(loop);
  }
  EXPECT_FALSE(data.has("settings.json"));
}

TEST_F(FrameLoopTest, FirstTwoSecondsSaveNoGeometry) {
  // The loop starts at time 0. Placing the window must not cause a write.
  fixedTime = 0;
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  SDL_SetWindowSize(window.get(), 700, 500);
  fixedTime = 2;
  pass(loop);
  EXPECT_FALSE(data.has("settings.json"));
  fixedTime = 2.001;
  pass(loop);
  EXPECT_TRUE(savedWidthIs(700));
}

TEST_F(FrameLoopTest, FullScreenAskedForByAScreenComesWithTheNextFrame) {
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  pass(loop, [](ui::Ctx&) { ui::Game::settings().fullscreen = true; });
  EXPECT_EQ(SDL_GetWindowFlags(window.get()) & SDL_WINDOW_FULLSCREEN, 0U);
  pass(loop);
  EXPECT_NE(SDL_GetWindowFlags(window.get()) & SDL_WINDOW_FULLSCREEN, 0U);
}

TEST_F(FrameLoopTest, WritesAStatisticsLineEachSecondWhenAskedTo) {
  setenv("VESKARA_STATS", "", 1);
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  unsetenv("VESKARA_STATS");
  testing::internal::CaptureStderr();
  for (const double time : {100.5, 100.9, 101.0, 101.5, 102.5}) {
    fixedTime = time;
    pass(loop,
         [](ui::Ctx&) { ui::gpuBlit(ui::gpuTexture("red", 8, 8, paintWhole, nullptr), 0, 0, 10, 10, 1); });
  }
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "[stats]   3 fps   CPU   0.0 ms   GPU   0.0 ms   1 Kopien  320x240 \n"
            "[stats]   2 fps   CPU   0.0 ms   GPU   0.0 ms   1 Kopien  320x240 \n");
}

TEST_F(FrameLoopTest, FlushingWhatCairoDrewIsTimeOfTheUpdate) {
  setenv("VESKARA_STATS", "", 1);
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  unsetenv("VESKARA_STATS");
  fixedTime = 101;
  testing::internal::CaptureStderr();
  flushTime = 0.0625;
  pass(loop);
  flushTime = 0;
  EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("CPU  62.5 ms   GPU   0.0 ms"));
}

TEST_F(FrameLoopTest, IsSilentWithoutStatistics) {
  unsetenv("VESKARA_STATS");
  ui::FrameLoop loop(window.get(), renderer.get(), fixedClock);
  testing::internal::CaptureStderr();
  fixedTime = 105;
  pass(loop);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

}  // namespace
