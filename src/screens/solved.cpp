#include <algorithm>
#include <memory>

#include "app/app.h"
#include "rules/table_themes.h"
#include "screens/screens.h"
#include "storage/storage.h"
#include "ui/felt.h"

namespace screens {
namespace {

// After a win: goes on to the next level, dealt with its own number. The last level follows itself.
class Solved : public ui::Screen {
 public:
  explicit Solved(const ui::GameState& descriptor)
      : nextLevel(std::min(descriptor.level + 1, store::kLastLevel)) {}

  void update(ui::Ctx& ctx) override {
    ui::drawFelt(ctx, mj::tableThemeForLevel(nextLevel), true);
    ui::Game::instance().replace(
        {.kind = ui::ScreenKind::Playing, .level = nextLevel, .deal = static_cast<std::uint32_t>(nextLevel)});
  }

 private:
  int nextLevel;
};

}  // namespace

std::unique_ptr<ui::Screen> makeSolved(const ui::GameState& descriptor) {
  return std::make_unique<Solved>(descriptor);
}

}  // namespace screens
