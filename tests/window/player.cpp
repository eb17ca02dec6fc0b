#include "window/player.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "resources/i18n.h"
#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "support/picture.h"
#include "ui/draw.h"

namespace window {
namespace {

namespace fs = std::filesystem;

constexpr Size kDialog = {420, 230};
constexpr double kDialogCorner = 16;  // round: the screen below is seen there
// Of its buttons, from the window's middle.
constexpr Point kNo = {-100, 74};
constexpr Point kYes = {100, 74};

}  // namespace

void Player::sitDown(const Environment& changes) {
  Setup setup = {.environment = environment(), .toTable = false};
  for (const auto& [name, value] : changes) setup.environment[name] = value;
  sitting = sitting ? std::make_unique<Session>(*sitting, setup) : std::make_unique<Session>(setup);
}

// The window's texts are compared with some that are painted here: with the same fonts.
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

void Player::answer(bool yes) const {
  const Size size = game().size();
  const Point place = yes ? kYes : kNo;
  game().click({size.w / 2 + place.x, size.h / 2 + place.y});
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

ui::Rect Player::setting(const std::function<ui::Rect(const screens::SettingsLayout&)>& what,
                         const std::string& language) const {
  i18n::setLanguage(language);
  const Size size = game().size();
  const ui::CairoSurface paper = support::makePicture(1, 1);
  const ui::CairoContext cr(cairo_create(paper.get()));
  const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), size.w);
  const ui::Rect view = screens::listView(size.w, size.h);
  ui::Rect rect = what(layout);
  rect.y += view.y + std::max((view.h - layout.height) / 2, 0.0);
  return rect;
}

ui::Rect Player::galleryCard(int index) const {
  const Size size = game().size();
  return screens::galleryGrid(size.w, size.h, screens::kPagedListTop).card(index, 0);
}

}  // namespace window
