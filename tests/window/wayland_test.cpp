// The program as a client of a Wayland compositor. The compositor's screen is a window on the test's X
// display.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>

#include "screens/menu_layout.h"
#include "support/picture.h"
#include "window/desktop.h"
#include "window/menu.h"
#include "window/table.h"

namespace {

using testing::HasSubstr;
using window::Child;
using window::Game;
using window::Key;
using window::Point;
using window::Size;
using window::waitFor;

// The compositor's screen in points, and the size that the game chooses for its first window on it.
constexpr Size kOutput = {800, 600};
constexpr Size kGameWindow = {780, 540};
// The colour of the bare screen; nothing in the game has it.
constexpr std::uint32_t kBare = 0x00FF00;

constexpr const char* kWestonConfig = R"([core]
idle-time=0
[shell]
background-color=0xff00ff00
panel-position=none
animation=none
startup-animation=none
locking=false
binding-modifier=ctrl
)";

struct Area {
  Point from;
  Size size;
};

// The smallest rectangle around all pixels that are not bare.
Area coveredIn(cairo_surface_t* screen) {
  const support::Pixels pixels(screen);
  const Size size = window::sizeOf(screen);
  Point from = {size.w, size.h};
  Point to;
  for (int y = 0; y < size.h; ++y) {
    for (int x = 0; x < size.w; ++x) {
      if ((pixels.at(x, y) & 0xFFFFFF) == kBare) continue;
      from = {std::min(from.x, x), std::min(from.y, y)};
      to = {std::max(to.x, x + 1), y + 1};
    }
  }
  return {from, {std::max(to.x - from.x, 0), std::max(to.y - from.y, 0)}};
}

// The parameter is the compositor's scale: pixels per point.
class Wayland : public testing::TestWithParam<int> {
 protected:
  // The compositor's pointer moves by the same distances as the display's, but may have started elsewhere.
  // Moving to a corner aligns them.
  void SetUp() override {
    ASSERT_TRUE(waitFor([this] { return program.output().ends_with('\n'); })) << program.errors();
    screen.moveMouse({});
    moveMouseAside();
  }

  // The game's window at one pixel per point; null if there is none.
  ui::CairoSurface picture() const {
    const ui::CairoSurface shown = screen.picture();
    const Area area = coveredIn(shown.get());
    if (area.size.w < scale || area.size.h < scale) return nullptr;
    return support::makePicture(area.size.w / scale, area.size.h / scale, [&](cairo_t* cr) {
      cairo_scale(cr, 1.0 / scale, 1.0 / scale);
      cairo_set_source_surface(cr, shown.get(), -area.from.x, -area.from.y);
      cairo_paint(cr);
    });
  }
  Area area() const { return coveredIn(screen.picture().get()); }
  Point onScreen(Point inWindow) const {
    const Point from = area().from;
    return {from.x + scale * inWindow.x, from.y + scale * inWindow.y};
  }
  bool showsMenu() const {
    return waitFor([this] { return window::isMenuShownIn(picture().get()); });
  }
  testing::AssertionResult showsTable() const {
    testing::AssertionResult result = testing::AssertionFailure();
    waitFor([&] { return static_cast<bool>(result = table.isShownIn(picture().get())); });
    return result;
  }
  // Whether most of the tiles are in the right place, now or after a while. Small tiles, reduced by half, may
  // differ more than the table allows, so not all must match.
  bool showsTiles() const {
    const std::size_t left = ui::paintOrder(table.game).size();
    return waitFor([&] { return table.tilesShownIn(picture().get()) > static_cast<int>(left / 2); });
  }
  // Whether the window gets this size in points, with `scale` pixels per point.
  testing::AssertionResult hasSize(Size points) const {
    const Size wanted = {scale * points.w, scale * points.h};
    Size seen;
    if (waitFor([&] { return (seen = area().size) == wanted; })) return testing::AssertionSuccess();
    return testing::AssertionFailure() << "it has " << seen.w << " x " << seen.h << " pixels";
  }
  // The compositor draws its own pointer. This moves it where it neither extends the window nor covers what
  // is compared.
  void moveMouseAside() const {
    screen.moveMouse({scale * (kOutput.w - kGameWindow.w), scale * kOutput.h / 2});
  }
  // Clicks, waits for the answer and moves the mouse away. False if the answer does not come.
  bool click(Point inWindow, const std::function<bool()>& answered) const {
    screen.click(onScreen(inWindow));
    const bool seen = waitFor(answered);
    moveMouseAside();
    return seen;
  }
  void takePair() {
    const auto [a, b] = table.pair();
    const auto selected = [this, tile = a] { return table.isSelectedIn(picture().get(), tile); };
    EXPECT_TRUE(click(table.spotOn(a, kGameWindow), selected));
    EXPECT_TRUE(click(table.spotOn(b, kGameWindow), [&] { return !selected(); }));
    mj::applyMatch(table.game, a, b);
  }

  const int scale = GetParam();
  const support::TempDir runtime;
  window::Desktop desktop{
      window::kLatinKeyboard, {scale * kOutput.w, scale* kOutput.h}, "<fullscreen>yes</fullscreen>"};
  const Game screen{
      {"weston", "--backend=x11-backend.so", "--use-pixman", "--socket=wayland", "--log=/dev/stdout",
       "--config=" + runtime.makeFile("weston.ini", kWestonConfig), "--scale=" + std::to_string(scale),
       "--width=" + std::to_string(kOutput.w), "--height=" + std::to_string(kOutput.h)},
      desktop,
      {{"XDG_RUNTIME_DIR", runtime.path()}},
      "Weston Compositor - screen0"};
  Child program{window::gameCommand({}),
                window::changed(desktop.environment(), {{"XDG_RUNTIME_DIR", runtime.path()},
                                                        {"WAYLAND_DISPLAY", "wayland"},
                                                        {"WAYLAND_DEBUG", "client"},
                                                        {"SDL_VIDEODRIVER", "wayland"},
                                                        {"VESKARA_STATS", "1"}})};
  window::Table table;
};
INSTANTIATE_TEST_SUITE_P(Scale, Wayland, testing::Values(1, 2), testing::PrintToStringParamName());

TEST_P(Wayland, WindowIsPlayedInResizedAndFillsTheScreen) {
  ASSERT_TRUE(showsMenu());
  EXPECT_TRUE(hasSize(kGameWindow));
  EXPECT_THAT(program.output(), HasSubstr("Treiber wayland"));
  EXPECT_THAT(program.errors(), HasSubstr(".set_app_id(\"example.quenlock.Veskara\")"));
  const std::string pixels =
      std::to_string(scale * kGameWindow.w) + "x" + std::to_string(scale * kGameWindow.h);
  EXPECT_TRUE(
      waitFor([&] { return program.errors().find(" Kopien  " + pixels + " ") != std::string::npos; }));

  const ui::Rect plaque =
      screens::menuLayout(kGameWindow.w, kGameWindow.h).plaque(screens::MenuEntry::Continue);
  ASSERT_TRUE(click(window::middleOf(plaque), [this] { return !window::isMenuShownIn(picture().get()); }));
  ASSERT_TRUE(showsTable());
  takePair();
  EXPECT_TRUE(showsTable());

  const Size smaller = window::kSmallestWindow;
  const Point grip = {kGameWindow.w - 20, kGameWindow.h - 20};
  screen.dragRight(Key::LeftControl, onScreen(grip),
                   onScreen({grip.x + smaller.w - kGameWindow.w, grip.y + smaller.h - kGameWindow.h}));
  moveMouseAside();
  EXPECT_TRUE(hasSize(smaller));
  EXPECT_TRUE(showsTiles());

  screen.type(Key::F11);
  EXPECT_TRUE(hasSize(kOutput));
  EXPECT_TRUE(showsTiles());
  screen.type(Key::F11);
  EXPECT_TRUE(hasSize(smaller));
  EXPECT_TRUE(showsTiles());

  screen.type(Key::LeftControl, Key::Q);
  EXPECT_EQ(program.waitForEnd(), 0) << program.errors();
}

}  // namespace
