#include "window/player.h"

#include <cstdlib>
#include <filesystem>

#include "ui/draw.h"

namespace window {
namespace {

namespace fs = std::filesystem;

constexpr Size kDialog = {420, 230};
constexpr double kDialogCorner = 16;  // leaves out the round corners, where the screen below shows

}  // namespace

void Player::sitDown(const Environment& changes) {
  const Setup setup = {.environment = changed(environment(), changes), .screen = kScreen, .toTable = false};
  sitting = sitting ? std::make_unique<Session>(*sitting, setup) : std::make_unique<Session>(setup);
}

// The tests paint texts to compare with the window's, so the program uses the same fonts.
Environment Player::environment() const {
  const std::string opener =
      desk.makeFile("bin/xdg-open", "#!/bin/sh\nprintf '%s\\n' \"$@\" >>'" + desk.path("opened") + "'\n");
  fs::permissions(opener, fs::perms::owner_all);
  Environment environment = {{"PATH", desk.path("bin") + ":" + std::getenv("PATH")}};
  if (const char* fonts = std::getenv("FONTCONFIG_FILE")) environment["FONTCONFIG_FILE"] = fonts;
  return environment;
}

ui::Rect Player::question() const {
  const Size size = game().size();
  return ui::insetRect({(size.w - kDialog.w) / 2.0, (size.h - kDialog.h) / 2.0, kDialog.w, kDialog.h},
                       kDialogCorner);
}

ui::CairoSurface Player::painted(const ui::GameState& descriptor, const Act& act) const {
  return paintedScreen(dataPath(), descriptor, game().size(), game().mouse(), act);
}

testing::AssertionResult Player::shows(const ui::GameState& descriptor, const Act& act) const {
  const Size size = game().size();
  return shows(painted(descriptor, act).get(), {0, 0, 1.0 * size.w, 1.0 * size.h});
}

testing::AssertionResult Player::shows(cairo_surface_t* wanted, const ui::Rect& rect) const {
  testing::AssertionResult result = testing::AssertionFailure();
  waitFor([&] {
    const ui::CairoSurface seen = game().picture();
    return seen && (result = sameIn(rect, seen.get(), wanted));
  });
  return result;
}

testing::AssertionResult Player::hasFiles() const {
  PlayerFiles seen;
  if (waitFor([&] { return (seen = readPlayerFiles(dataPath())) == files; }))
    return testing::AssertionSuccess();
  return testing::AssertionFailure() << differences(seen, files);
}

}  // namespace window
