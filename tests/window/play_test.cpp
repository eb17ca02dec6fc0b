// Plays level 1 in a real window, once with Mesa's OpenGL and once with SDL's software renderer.

#include <gtest/gtest.h>

#include <ostream>

#include "screens/playing_layout.h"
#include "window/session.h"

namespace {

using window::Environment;
using window::Key;
using window::kFirstWindow;
using window::kScreen;
using window::kSmallestWindow;
using window::Point;
using window::Session;
using window::waitFor;

struct Renderer {
  const char* name;
  Environment environment;
};
void PrintTo(const Renderer& renderer, std::ostream* out) { *out << renderer.name; }

const Renderer kRenderers[] = {{"OpenGl", {}}, {"Software", window::kNoOpenGl}};

class Playing : public testing::TestWithParam<Renderer> {
 protected:
  Session session{{.environment = GetParam().environment, .screen = kScreen}};
};

INSTANTIATE_TEST_SUITE_P(With, Playing, testing::ValuesIn(kRenderers),
                         [](const auto& renderer) { return renderer.param.name; });

TEST_P(Playing, APairIsTakenByTwoClicksAndComesBackByUndo) {
  session.takePair();
  session.game.type(Key::U);
  mj::undo(session.table.game);
  EXPECT_TRUE(session.showsTable());
}

TEST_P(Playing, ABlockedTileIsRefusedAndTheSelectionKept) {
  ASSERT_TRUE(session.showsTable());
  const int blocked = session.table.blockedTile();
  const auto [a, b] = session.table.pair();

  session.tap(blocked);
  EXPECT_TRUE(session.pauseAndGoOn()) << "a blocked tile was tapped with none selected";
  session.tap(a);
  ASSERT_TRUE(session.showsSelected(a));
  session.tap(blocked);
  EXPECT_TRUE(session.pauseAndGoOn({a})) << "a blocked tile was tapped with another selected";
  EXPECT_TRUE(session.showsSelected(a));

  session.tap(b);
  mj::applyMatch(session.table.game, a, b);
  EXPECT_TRUE(session.showsTable());
}

TEST_P(Playing, TheBoardIsZoomedAndPannedAndComesBackAsItWas) {
  ASSERT_TRUE(session.showsTable());
  ui::BoardOpts& view = session.table.view;
  const Point hand = {kFirstWindow.w / 2 - 120, kFirstWindow.h / 2 - 60};
  session.game.moveMouse(hand);
  // The wheel zooms about the pointer.
  const auto turnWheel = [&] {
    const ui::Rect board = screens::playingLayout(kFirstWindow.w, kFirstWindow.h).board;
    const ui::BoardView before(board, view);
    session.game.turnWheel(1);
    view.zoom += 0.25;
    view.panX = hand.x - before.cx - (before.boardX(hand.x) - before.cx) * view.zoom;
    view.panY = hand.y - before.cy - (before.boardY(hand.y) - before.cy) * view.zoom;
  };

  turnWheel();
  EXPECT_TRUE(session.showsTable());
  session.game.type(Key::Equals);
  view.zoom = 1.85;
  EXPECT_TRUE(session.showsTable());
  session.game.type(Key::Minus);
  view.zoom = 1.25;
  EXPECT_TRUE(session.showsTable());

  // Turns the wheel while the button holds the board. When the zoom shows, the press has been handled.
  session.game.pressButton();
  turnWheel();
  EXPECT_TRUE(session.showsTable());
  session.game.moveMouse({hand.x + 60, hand.y - 40});
  view.panX += 60;
  view.panY -= 40;
  EXPECT_TRUE(session.showsTable());
  session.game.releaseButton();
  EXPECT_TRUE(session.pauseAndGoOn()) << "a drag was taken for a tap";

  const auto [a, b] = session.table.pair();
  session.tap(a);
  EXPECT_TRUE(session.showsSelected(a));
  session.tap(a);
  EXPECT_TRUE(session.showsTable());

  session.game.type(Key::Zero);
  view = {};
  EXPECT_TRUE(session.showsTable());
}

TEST_P(Playing, TheBoardFollowsTheWindow) {
  ASSERT_TRUE(session.hasSize(kFirstWindow));
  ASSERT_TRUE(session.showsTable());

  session.game.dragCorner(-300, -100);
  EXPECT_TRUE(session.hasSize({kFirstWindow.w - 300, kFirstWindow.h - 100}));
  EXPECT_TRUE(session.showsTable());
  session.game.dragCorner(-600, -500);
  EXPECT_TRUE(session.hasSize(kSmallestWindow));
  EXPECT_TRUE(session.showsTable());

  session.game.setMaximised(true);
  EXPECT_TRUE(waitFor([this] { return session.game.isMaximised() && session.game.size().w == kScreen.w; }));
  EXPECT_TRUE(session.showsTable());
  session.game.setMaximised(false);
  EXPECT_TRUE(session.hasSize(kSmallestWindow));

  session.game.type(Key::F11);
  EXPECT_TRUE(session.hasSize(kScreen));
  EXPECT_TRUE(session.game.isFullscreen());
  EXPECT_TRUE(session.showsTable());
  session.game.type(Key::F11);
  EXPECT_TRUE(session.hasSize(kSmallestWindow));
  EXPECT_TRUE(session.showsTable());
}

TEST(LargeScreen, APairIsTakenByMouseWhereAllThingsHaveGrown) {
  constexpr window::Size kLargeScreen = {2560, 1440};
  Session session({.environment = window::kNoOpenGl, .screen = kLargeScreen});
  ASSERT_TRUE(session.showsTable());
  session.game.type(Key::F11);
  ASSERT_TRUE(session.hasSize(kLargeScreen));
  session.takePair();
}

}  // namespace
