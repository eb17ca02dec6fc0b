#include "window/painted_screen.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "app/app.h"
#include "resources/i18n.h"
#include "screens/screens.h"
#include "support/picture.h"
#include "support/temp_dir.h"

namespace window {
namespace {

namespace fs = std::filesystem;

// Seconds; longer than any screen's opening animation.
constexpr double kUntilRest = 5;
// The window's renderer blends the drawing over the cloth and rounds again.
constexpr int kRounding = 2;

// Sets up what the screens look up once in a process, as it is in the program under test.
void becomeGame(const std::string& dataHome) {
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "TZ"}) unsetenv(name);
  setenv("LANG", cleanEnvironment("").at("LANG").c_str(), 1);
  setenv("XDG_DATA_HOME", dataHome.c_str(), 1);
  i18n::setLanguage(ui::Game::settings().language);
}

ui::CairoSurface cutOut(cairo_surface_t* picture, const ui::Rect& rect) {
  const auto pixels = [](double length) { return static_cast<int>(std::lround(length)); };
  return support::makePicture(pixels(rect.w), pixels(rect.h), [&](cairo_t* cr) {
    cairo_set_source_surface(cr, picture, -pixels(rect.x), -pixels(rect.y));
    cairo_paint(cr);
  });
}

}  // namespace

ui::CairoSurface paintedScreen(const std::string& dataDir, const ui::GameState& descriptor, Size windowSize,
                               Point pointer, const Act& act) {
  const support::TempDir home;
  return support::makePictureApart(windowSize.w, windowSize.h, [&](cairo_t* cr) {
    if (fs::exists(dataDir)) fs::copy(dataDir, home.path("veskara"), fs::copy_options::recursive);
    becomeGame(home.path());
    support::ScreenHarness harness([](ui::Ctx& ctx) { ui::Game::instance().update(ctx); }, windowSize.w,
                                   windowSize.h);
    ui::Game::instance().setFactory(screens::make);
    ui::Game::instance().resetTo(descriptor);
    harness.frame(0);
    harness.moveTo(pointer.x, pointer.y);
    if (act) act(harness);
    harness.frame(kUntilRest);
    const ui::CairoSurface shown = harness.picture();
    cairo_set_source_surface(cr, shown.get(), 0, 0);
    cairo_paint(cr);
  });
}

testing::AssertionResult sameIn(const ui::Rect& rect, cairo_surface_t* seen, cairo_surface_t* wanted) {
  return support::samePicture(cutOut(seen, rect).get(), cutOut(wanted, rect).get(), kRounding);
}

}  // namespace window
