#include "window/painted_screen.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "app/app.h"
#include "resources/i18n.h"
#include "support/own_process.h"
#include "support/picture.h"
#include "support/temp_dir.h"

namespace window {
namespace {

namespace fs = std::filesystem;

// Longer than any screen's opening.
constexpr double kUntilRest = 5;
// The window's renderer lays what is drawn over its cloth, and rounds anew.
constexpr int kRounding = 2;

// The game's screens, and what they look up once in a process, as the program under test has them.
void becomeGame(const std::string& dataHome) {
  for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "TZ"}) unsetenv(name);
  setenv("LANG", cleanEnvironment("").at("LANG").c_str(), 1);
  setenv("XDG_DATA_HOME", dataHome.c_str(), 1);
  i18n::setLanguage(ui::Game::settings().language);
}

std::string bytesOf(cairo_surface_t* picture) {
  cairo_surface_flush(picture);
  const std::size_t rowBytes = 4 * static_cast<std::size_t>(cairo_image_surface_get_width(picture));
  const unsigned char* row = cairo_image_surface_get_data(picture);
  std::string bytes;
  for (int y = 0; y < cairo_image_surface_get_height(picture); ++y) {
    bytes.append(reinterpret_cast<const char*>(row), rowBytes);
    row += cairo_image_surface_get_stride(picture);
  }
  return bytes;
}

ui::CairoSurface pictureOf(const std::string& bytes, Size size) {
  ui::CairoSurface picture = support::makePicture(size.w, size.h);
  const std::size_t rowBytes = 4 * static_cast<std::size_t>(size.w);
  if (bytes.size() != rowBytes * static_cast<std::size_t>(size.h)) return picture;
  unsigned char* row = cairo_image_surface_get_data(picture.get());
  for (std::size_t at = 0; at < bytes.size(); at += rowBytes) {
    std::memcpy(row, bytes.data() + at, rowBytes);
    row += cairo_image_surface_get_stride(picture.get());
  }
  cairo_surface_mark_dirty(picture.get());
  return picture;
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
  const std::string bytes = support::inOwnProcess([&] {
    if (fs::exists(dataDir)) fs::copy(dataDir, home.path("veskara"), fs::copy_options::recursive);
    becomeGame(home.path());
    support::ScreenHarness harness([](ui::Ctx& ctx) { ui::Game::instance().update(ctx); }, windowSize.w,
                                   windowSize.h);
    ui::Game::instance().resetTo(descriptor);
    harness.frame(0);
    harness.moveTo(pointer.x, pointer.y);
    if (act) act(harness);
    harness.frame(kUntilRest);
    return bytesOf(harness.picture().get());
  });
  return pictureOf(bytes, windowSize);
}

testing::AssertionResult sameIn(const ui::Rect& rect, cairo_surface_t* seen, cairo_surface_t* wanted) {
  return support::samePicture(cutOut(seen, rect).get(), cutOut(wanted, rect).get(), kRounding);
}

}  // namespace window
