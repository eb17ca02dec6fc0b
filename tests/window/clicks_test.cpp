// Clicks in a real window that began on one screen do not work controls in the same place on the next.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>

#include "screens/playing_layout.h"
#include "window/data_files.h"
#include "window/session.h"
#include "window/witness.h"

namespace {

using screens::MenuEntry;
using support::readAll;
using support::writeFile;
using window::isMenuShownIn;
using window::kPatience;
using window::middleOf;
using window::Point;
using window::Session;
using window::Size;
using window::waitFor;

ui::Rect newGamePlaque(Size size) { return screens::menuLayout(size.w, size.h).plaque(MenuEntry::NewGame); }

TEST(Demo, EndedByAClickOverNewGameLeavesTheSavedGame) {
  Session session({.toTable = false});
  const std::string path = session.desktop.dataPath("save.json");
  const std::string saved = window::savedGame(5);
  writeFile(path, saved);
  ASSERT_TRUE(session.showsMenu());
  ASSERT_TRUE(waitFor([&] { return !isMenuShownIn(session.game.picture().get()); }, 2 * kPatience));

  session.game.moveMouse(middleOf(newGamePlaque(session.game.size())));
  session.game.pressButton();
  ASSERT_TRUE(session.showsMenu());
  session.game.releaseButton();
  quit(session.game);
  EXPECT_EQ(readAll(path), saved);
}

// The middle of the intersection. Fails the test if there is none.
Point inBoth(const ui::Rect& a, const ui::Rect& b) {
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.w, b.x + b.w);
  const double bottom = std::min(a.y + a.h, b.y + b.h);
  EXPECT_TRUE(left < right && top < bottom) << "they lie apart";
  return {static_cast<int>((left + right) / 2), static_cast<int>((top + bottom) / 2)};
}

class DoubleClick : public testing::TestWithParam<int> {
 protected:
  // Takes a pair on level 1, double-clicks on "Exit" in the pause and quits from the menu.
  static void playAndExit(Session& session, const std::string& witness) {
    session.takePair();
    const Size size = session.game.size();
    const Point both = inBoth(screens::pausePanel(size.w, size.h).second, newGamePlaque(size));
    session.game.type(window::Key::Space);
    ASSERT_TRUE(waitFor([&] { return session.table.isHiddenIn(session.game.picture().get()); }));
    const int heard = window::testimonyIn(witness).releases;
    session.game.doubleClick(both, std::chrono::milliseconds(GetParam()));
    ASSERT_TRUE(waitFor([&] { return window::testimonyIn(witness).releases == heard + 2; }));
    ASSERT_TRUE(session.showsMenu());
    quit(session.game);
  }
};
INSTANTIATE_TEST_SUITE_P(Milliseconds, DoubleClick, testing::Values(1, 30, 60, 150),
                         [](const auto& gap) { return std::to_string(gap.param); });

TEST_P(DoubleClick, OnExitBeginsNoNewGame) {
  constexpr double kSeconds = 0.3;
  const support::TempDir scratch;
  const std::string witness = scratch.path("witness");
  ASSERT_TRUE(waitFor([&] {
    Session session({.environment = {{window::kWitnessVariable, witness}}, .preload = VESKARA_WITNESS});
    playAndExit(session, witness);
    if (HasFatalFailure()) return true;
    // On a slow machine the program may have seen two single clicks. Then the test is repeated.
    if (window::testimonyIn(witness).sinceRelease >= kSeconds) return false;
    const window::DataFiles files(session.desktop.dataPath());
    EXPECT_EQ(files.game()["history"].size(), 1U) << "the pair is still taken";
    return true;
  }));
}

}  // namespace
