#include <memory>
#include <optional>

#include "app/app.h"
#include "screens/screens.h"
#include "screens/title_block.h"
#include "ui/felt.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kShownTime = 2.4;
constexpr double kWordShare = 0.11;  // of the window's height
constexpr double kTileShare = 0.1;
constexpr double kTaglineGap = 14;
constexpr double kTaglineH = 6;  // less than its real height: it is faint and hardly counts for the centring
constexpr double kRaise = 10;    // slightly above the middle looks centred

// The first screen: shows the title for a moment, then opens the menu.
class Splash : public ui::Screen {
 public:
  void update(ui::Ctx& ctx) override {
    if (!startedAt) startedAt = ctx.time;
    ui::drawFelt(ctx, nullptr, false);
    drawTitle(ctx);
    ui::footer(ctx, ctx.h - ui::kFooterGap);
    if (isOver(ctx)) ui::Game::instance().replace({.kind = ui::ScreenKind::Menu});
  }

 private:
  void drawTitle(const ui::Ctx& ctx) const {
    const TitleBlock title = TitleBlock::fitting(ctx.w, kWordShare * ctx.h, kTileShare * ctx.h);
    const double height = title.height() + kTaglineGap + kTaglineH;
    const double top = (ctx.h - height) / 2 - kRaise;
    drawTitleBlock(ctx, title, top, *startedAt);
    drawTagline(ctx, top + title.height() + kTaglineGap, 16);
  }

  bool isOver(const ui::Ctx& ctx) const {
    return ctx.in.clicked || !ctx.in.keys.empty() || ctx.time - *startedAt > kShownTime;
  }

  std::optional<double> startedAt;
};

}  // namespace

std::unique_ptr<ui::Screen> makeSplash() { return std::make_unique<Splash>(); }

}  // namespace screens
