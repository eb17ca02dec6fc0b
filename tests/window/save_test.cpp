// The player's actions and settings outlive the program, however it ends.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

#include "window/player_files.h"
#include "window/session.h"

namespace {

using testing::ContainerEq;
using window::Key;
using window::kFirstWindow;
using window::kScreen;
using window::Members;
using window::membersOf;
using window::Point;
using window::Session;
using window::Size;
using window::takeNumber;
using window::waitFor;

// --- the game on the table ---

struct WayOut {
  const char* name;
  std::function<void(Session&)> take;
};
void PrintTo(const WayOut& way, std::ostream* out) { *out << way.name; }

WayOut bySignal(const char* name, int signal) {
  return {name, [signal](Session& session) { session.game.process().send(signal); }};
}

const WayOut kWaysOut[] = {
    {"ControlQ", [](Session& session) { session.game.type(Key::LeftControl, Key::Q); }},
    {"ClosedWindow", [](Session& session) { session.game.close(); }},
    {"ClosedMinimisedWindow",
     [](Session& session) {
       session.game.minimise();
       session.game.close();
     }},
    {"EscapeAndControlQ",
     [](Session& session) {
       session.game.type(Key::Escape);
       EXPECT_TRUE(session.showsMenu());
       session.game.type(Key::LeftControl, Key::Q);
     }},
    bySignal("Sigterm", SIGTERM),
    bySignal("Sigint", SIGINT),
    bySignal("Sighup", SIGHUP),
};

class Leaving : public testing::TestWithParam<WayOut> {};
INSTANTIATE_TEST_SUITE_P(By, Leaving, testing::ValuesIn(kWaysOut),
                         [](const auto& way) { return way.param.name; });

TEST_P(Leaving, KeepsTheGameOnTheTable) {
  Session first;
  first.takePair();
  GetParam().take(first);
  ASSERT_TRUE(first.endsWith(0));

  Session second(first, {});
  EXPECT_TRUE(second.showsTable());
  second.game.type(Key::U);
  mj::undo(second.table.game);
  EXPECT_TRUE(second.showsTable());
}

TEST(Killed, GameIsBackAsItWasFiveSecondsBefore) {
  Session first;
  first.takePair();
  const std::string save = first.desktop.dataPath("save.json");
  std::filesystem::remove(save);
  ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(save); })) << "it is saved while it is played";
  first.game.process().send(SIGKILL);
  ASSERT_TRUE(first.endsWith(-SIGKILL));
  EXPECT_TRUE(Session(first, {}).showsTable());
}

// --- the window and its settings ---

TEST(Window, ComesBackWhereAndAsLargeAsItWas) {
  Session first({.screen = kScreen});
  ASSERT_TRUE(first.hasSize(kFirstWindow));
  first.game.dragCorner(-200, -100);
  const Size size = {kFirstWindow.w - 200, kFirstWindow.h - 100};
  ASSERT_TRUE(first.hasSize(size));
  const Point before = first.game.position();
  first.game.moveTo({70, 90});
  ASSERT_TRUE(waitFor([&] { return first.game.position() != before; }));
  const Point place = first.game.position();
  quit(first.game);

  Session second(first, {});
  EXPECT_TRUE(second.hasSize(size));
  EXPECT_TRUE(waitFor([&] { return second.game.position() == place; }))
      << second.game.position().x << ", " << second.game.position().y;
  quit(second.game);
  Session third(second, {});
  EXPECT_TRUE(third.hasSize(size));
  EXPECT_TRUE(waitFor([&] { return third.game.position() == place; })) << "it wanders";
}

TEST(Window, ComesBackMaximised) {
  Session first({.screen = kScreen});
  first.game.setMaximised(true);
  ASSERT_TRUE(waitFor([&] { return first.game.isMaximised() && first.game.size().w == kScreen.w; }));
  ASSERT_TRUE(first.showsTable());
  quit(first.game);
  Session second(first, {});
  EXPECT_TRUE(waitFor([&] { return second.game.isMaximised() && second.game.size().w == kScreen.w; }));
  second.game.setMaximised(false);
  EXPECT_TRUE(second.hasSize(kFirstWindow));
}

TEST(Window, IsFullScreenAgainEvenWhenTheProgramWasKilled) {
  Session first;
  ASSERT_TRUE(first.showsTable());
  first.game.type(Key::F11);
  ASSERT_TRUE(waitFor([&] { return first.game.isFullscreen(); }));
  first.game.process().send(SIGKILL);
  ASSERT_TRUE(first.endsWith(-SIGKILL));
  Session second(first, {});
  EXPECT_TRUE(waitFor([&] { return second.game.isFullscreen(); }));
}

TEST(CommandLine, ChoiceOfTheWindowLastsToTheNextStart) {
  Session first({.arguments = {"--fullscreen"}, .screen = kScreen});
  EXPECT_TRUE(first.hasSize(kScreen));
  quit(first.game);
  Session second(first, {});
  EXPECT_TRUE(second.hasSize(kScreen));
  quit(second.game);
  Session third(second, {.arguments = {"--windowed"}});
  EXPECT_TRUE(third.hasSize(kFirstWindow));
  quit(third.game);
  EXPECT_TRUE(Session(third, {}).hasSize(kFirstWindow));
}

// --- the files, read with another JSON parser ---

TEST(SettingsFile, HoldsItsTenMembers) {
  Session session({.screen = kScreen});
  ASSERT_TRUE(session.hasSize(kFirstWindow));
  const Point place = session.game.position();
  quit(session.game);
  EXPECT_THAT(membersOf(session.desktop.dataPath("settings.json")),
              ContainerEq(window::firstSettings(place)));
}

TEST(SaveFile, HoldsTheGame) {
  const auto started = std::chrono::system_clock::now();
  Session session;
  mj::GameState& game = session.table.game;
  session.takePair();
  session.takePair();
  session.game.type(Key::H);
  ++game.hints;
  session.game.type(Key::M);
  mj::shuffleBoard(game);
  EXPECT_TRUE(session.showsTable());
  const int selected = mj::freeIds(game).back();
  session.tap(selected);
  EXPECT_TRUE(session.showsSelected(selected));
  game.selected = selected;
  quit(session.game);
  const auto ended = std::chrono::system_clock::now();

  Members seen = membersOf(session.desktop.dataPath("save.json"));
  const auto sinceEpoch = [](const auto& time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
  };
  const std::int64_t savedAt = takeNumber(seen, ".current_mahjong.savedAt");
  EXPECT_LE(sinceEpoch(started), savedAt);
  EXPECT_LE(savedAt, sinceEpoch(ended));
  const std::int64_t elapsed = takeNumber(seen, ".current_mahjong.elapsedMs");
  EXPECT_GT(elapsed, 0);
  EXPECT_LT(elapsed, sinceEpoch(ended) - sinceEpoch(started));
  EXPECT_THAT(seen, ContainerEq(window::savedMembers(game, 1, 1)));
}

}  // namespace
