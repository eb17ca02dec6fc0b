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

// Double-clicks "Exit" in a pause, where the menu has "New game". Whether the game was left alone; it is on
// the table again, with a pair taken.
bool exitLeavesTheGame(Session& session, std::chrono::milliseconds gap) {
  const Size size = session.game.size();
  const Point both = inBoth(screens::pausePanel(size.w, size.h).second, newGamePlaque(size));
  session.game.type(window::Key::Space);
  EXPECT_TRUE(waitFor([&] { return session.table.isHiddenIn(session.game.picture().get()); }));
  session.game.moveMouse(both);
  session.game.click(both);
  std::this_thread::sleep_for(gap);
  session.game.click(both);

  const auto showsFreshGame = [&] { return window::Table().isShownIn(session.game.picture().get()); };
  EXPECT_TRUE(waitFor([&] { return isMenuShownIn(session.game.picture().get()) || showsFreshGame(); }));
  // Longer than a double click: the next click counts, and what the second one did is seen.
  std::this_thread::sleep_for(std::chrono::seconds(1));
  if (isMenuShownIn(session.game.picture().get())) {
    session.game.click(middleOf(screens::menuLayout(size.w, size.h).plaque(MenuEntry::Continue)));
    return static_cast<bool>(session.showsTable());
  }
  session.table.game = window::Table().game;
  EXPECT_TRUE(session.showsTable());
  session.takePair();
  return false;
}

TEST(DoubleClick, OnExitBeginsNoNewGame) {
  using std::chrono::milliseconds;
  Session session;
  session.takePair();
  ASSERT_TRUE(session.showsTable());
  for (const milliseconds gap : {milliseconds(0), milliseconds(30), milliseconds(60), milliseconds(150)}) {
    // To a program that the machine gives no time the second click may come as one of its own; not every
    // time.
    EXPECT_TRUE(exitLeavesTheGame(session, gap) || exitLeavesTheGame(session, gap) ||
                exitLeavesTheGame(session, gap))
        << gap.count();
  }
}

}  // namespace
