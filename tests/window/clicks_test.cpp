// Clicks that began on one screen, in a real window: what lies in the same place on the next is not meant.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "screens/playing_layout.h"
#include "window/data_files.h"
#include "window/session.h"

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

// The middle of what the two have in common.
Point inBoth(const ui::Rect& a, const ui::Rect& b) {
  const double left = std::max(a.x, b.x);
  const double top = std::max(a.y, b.y);
  const double right = std::min(a.x + a.w, b.x + b.w);
  const double bottom = std::min(a.y + a.h, b.y + b.h);
  EXPECT_TRUE(left < right && top < bottom) << "they lie apart";
  return {static_cast<int>((left + right) / 2), static_cast<int>((top + bottom) / 2)};
}

TEST(DoubleClick, OnExitBeginsNoNewGame) {
  using std::chrono::milliseconds;
  using Clock = std::chrono::steady_clock;
  constexpr milliseconds kDoubleClick{300};
  Session session;
  session.takePair();
  for (const milliseconds gap : {milliseconds(0), milliseconds(30), milliseconds(60), milliseconds(150)}) {
    ASSERT_TRUE(session.showsTable());
    const Size size = session.game.size();
    const Point both = inBoth(screens::pausePanel(size.w, size.h).second, newGamePlaque(size));
    session.game.type(window::Key::Space);
    ASSERT_TRUE(waitFor([&] { return session.table.isHiddenIn(session.game.picture().get()); }));
    session.game.moveMouse(both);
    const Clock::time_point begun = Clock::now();
    session.game.click(both);
    std::this_thread::sleep_for(gap);
    // A machine too busy for that makes it two clicks.
    if (Clock::now() - begun < kDoubleClick) session.game.click(both);
    ASSERT_TRUE(session.showsMenu());
    // However late the program hears of the second click, one of these is slow enough to count.
    ASSERT_TRUE(waitFor([&] {
      std::this_thread::sleep_for(2 * kDoubleClick);
      const bool gone = !isMenuShownIn(session.game.picture().get());
      if (!gone)
        session.game.click(middleOf(screens::menuLayout(size.w, size.h).plaque(MenuEntry::Continue)));
      return gone;
    }));
  }
  EXPECT_TRUE(session.showsTable()) << "the pair is still taken";
}

}  // namespace
