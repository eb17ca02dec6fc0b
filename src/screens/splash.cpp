#include <memory>

#include "app/app.h"
#include "rules/table_themes.h"
#include "screens/screens.h"
#include "ui/felt.h"

namespace screens {
namespace {

// The program's first screen: shows the table for a frame and goes on to the first level.
class Splash : public ui::Screen {
 public:
  void update(ui::Ctx& ctx) override {
    ui::drawFelt(ctx, mj::tableThemeForLevel(1), true);
    ui::Game::instance().replace({.kind = ui::ScreenKind::Playing, .level = 1, .deal = 1});
  }
};

}  // namespace

std::unique_ptr<ui::Screen> makeSplash() { return std::make_unique<Splash>(); }

}  // namespace screens
