// Real mouse and key events in a real window, at random, for VESKARA_MONKEY_SECONDS: the program ends only
// when it is told to, and then well; its files stay whole, and a saved game goes by a win or by a click.
// VESKARA_MONKEY_SEED sets the seed.

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "monkey/hand.h"
#include "monkey/no_opener.h"
#include "monkey/seed.h"
#include "monkey/whole_files.h"
#include "support/own_process.h"
#include "window/data_files.h"
#include "window/desktop.h"
#include "window/witness.h"

namespace {

using test::Hand;
using window::Desktop;
using window::Game;
using window::Point;
using window::Size;

constexpr unsigned kEscape = 9;
constexpr unsigned kShift = 50;
constexpr unsigned kControl = 37;
constexpr unsigned kQ = 24;
// h, m, u, +, -, 0, space, Escape, F11, Enter, Tab, the keypad's Enter, the arrows, page keys, Delete.
constexpr unsigned kKnownKeys[] = {43, 58,  30,  21,  20,  19,  65,  kEscape, 95,  36,  36,
                                   23, 104, 111, 113, 114, 116, 110, 112,     115, 117, 119};
// All keys of a common keyboard.
constexpr unsigned kFirstKey = kEscape;
constexpr unsigned kLastKey = 119;

constexpr int kMostSteps = 4;  // of the wheel at once

class WindowMonkey {
 public:
  explicit WindowMonkey(unsigned seed) : random(seed), hand(desktop.environment().at("DISPLAY")) { start(); }

  void act();
  // Closes the window. What the game has kept is looked at by the test.
  void end();

  int acts() const { return actCount; }
  int starts() const { return startCount; }
  std::string dataHome() const { return desktop.environment().at("XDG_DATA_HOME"); }

 private:
  struct Act {
    int weight;
    void (WindowMonkey::*run)();
  };

  // A game that is kept, by what tells it from others; level 0 is none.
  struct Kept {
    int level = 0;
    double deal = 0;

    bool operator==(const Kept&) const = default;
  };

  void start();
  void expectGoodEnd();
  void accountForGame();
  bool isStillThere() const;
  static Kept keptIn(const window::DataFiles& files);

  void wander() { hand.move(anywhere()); }
  void click() { clickWith(1); }
  void otherButton() { clickWith(2 + static_cast<unsigned>(below(2))); }
  void doubleClick();
  void drag();
  void pressAcross();
  void turnWheel();
  void knownKey() { type(kKnownKeys[below(static_cast<int>(std::size(kKnownKeys)))]); }
  void anyKey();
  void resize() { hand.resize({640 + below(700), 480 + below(500)}); }
  void moveWindow() { game->moveTo({below(600), below(500)}); }
  void maximise() { game->setMaximised(below(2) == 0); }
  void minimise();
  void loseFocus();
  void quit();

  void clickWith(unsigned button);
  void type(unsigned key);
  Point anywhere();
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

  std::mt19937 random;
  Desktop desktop{window::kLatinKeyboard, window::kScreen};
  Hand hand;
  support::TempDir scratch;
  const std::string witness = scratch.path("witness");
  std::optional<Game> game;
  Kept kept;           // when it was looked at last
  int passBefore = 0;  // of this start's loop, before it was looked at
  int solves = 0;
  int solvesBefore = 0;  // before the kept game was first seen
  int actCount = 0;
  int startCount = 0;
};

void WindowMonkey::start() {
  // Every other time the game plays itself, so that it comes to the end of a level.
  const char* pace = ++startCount % 2 == 0 ? "" : "0.02";
  passBefore = 0;
  std::filesystem::remove(witness);
  game.emplace(desktop, std::vector<std::string>{},
               window::changed(window::preloading(desktop, VESKARA_WITNESS),
                               {{"VESKARA_AUTOPLAY", pace}, {window::kWitnessVariable, witness}}));
  hand.takeWindow();
}

void WindowMonkey::act() {
  static constexpr Act kActs[] = {
      {300, &WindowMonkey::wander},     {250, &WindowMonkey::click},    {40, &WindowMonkey::otherButton},
      {40, &WindowMonkey::doubleClick}, {40, &WindowMonkey::drag},      {20, &WindowMonkey::pressAcross},
      {60, &WindowMonkey::turnWheel},   {60, &WindowMonkey::knownKey},  {60, &WindowMonkey::anyKey},
      {6, &WindowMonkey::resize},       {6, &WindowMonkey::moveWindow}, {6, &WindowMonkey::maximise},
      {3, &WindowMonkey::minimise},     {3, &WindowMonkey::loseFocus},  {2, &WindowMonkey::quit}};
  static const int kAllWeights = [] {
    int sum = 0;
    for (const Act& act : kActs) sum += act.weight;
    return sum;
  }();
  int choice = below(kAllWeights);
  const Act* act = kActs;
  while (choice >= act->weight) choice -= (act++)->weight;
  (this->*act->run)();
  ++actCount;
  accountForGame();
  // A click on the game's own button ends it, too.
  if (!game->process().hasEnded()) return;
  expectGoodEnd();
  accountForGame();
  start();
}

void WindowMonkey::end() {
  game->close();
  expectGoodEnd();
  accountForGame();
}

// From outside nobody can tell to which screen a click came, nor whether it was meant for it: that is what
// the monkey of frames knows. But a game that goes without a win goes in the very pass of the loop in which a
// click, or a key that works a control, is heard of: by another key, by the wheel, by another button or with
// the window none may go.
void WindowMonkey::accountForGame() {
  const int pass = window::testimonyIn(witness).passes;
  const window::DataFiles files(desktop.dataPath());
  const Kept now = keptIn(files);
  if (now != kept && kept.level != 0 && !isStillThere()) {
    const window::Testimony heard = window::testimonyIn(witness);
    const bool worked = std::max(heard.releasePass, heard.pressPass) >= passBefore;
    const bool won = window::DataFiles(desktop.dataPath()).totalSolves() > solvesBefore;
    EXPECT_TRUE(worked || won) << "the game of level " << kept.level << " went after " << actCount << " acts";
  }
  if (now != kept) solvesBefore = solves;
  kept = now;
  passBefore = pass;
  solves = files.totalSolves();
}

// It may have been looked for while its file was being replaced.
bool WindowMonkey::isStillThere() const {
  constexpr std::chrono::seconds kReplacing{1};
  return window::waitFor([this] { return keptIn(window::DataFiles(desktop.dataPath())) == kept; },
                         kReplacing);
}

WindowMonkey::Kept WindowMonkey::keptIn(const window::DataFiles& files) {
  return {files.game()["level"].asInt(0), files.game()["seed"].n};
}

void WindowMonkey::expectGoodEnd() {
  const std::optional<int> status = game->process().waitForEnd();
  EXPECT_EQ(status, 0) << "after " << actCount << " acts: " << game->process().errors();
}

// As fast as a hand, or faster.
void WindowMonkey::doubleClick() {
  click();
  std::this_thread::sleep_for(std::chrono::milliseconds(below(200)));
  hand.button(1, true);
  hand.button(1, false);
}

void WindowMonkey::clickWith(unsigned button) {
  wander();
  hand.button(button, true);
  hand.button(button, false);
}

void WindowMonkey::drag() {
  wander();
  hand.button(1, true);
  for (int steps = below(6); steps > 0; --steps) wander();
  hand.button(1, false);
}

// Goes to another screen with the button held.
void WindowMonkey::pressAcross() {
  wander();
  hand.button(1, true);
  type(kEscape);
  std::this_thread::sleep_for(std::chrono::milliseconds(below(200)));
  wander();
  hand.button(1, false);
}

void WindowMonkey::turnWheel() {
  const auto way = static_cast<unsigned>(4 + below(4));
  for (int steps = below(kMostSteps); steps >= 0; --steps) {
    hand.button(way, true);
    hand.button(way, false);
  }
}

void WindowMonkey::type(unsigned key) {
  hand.key(key, true);
  hand.key(key, false);
}

void WindowMonkey::anyKey() {
  const unsigned key = kFirstKey + static_cast<unsigned>(below(kLastKey - kFirstKey + 1));
  const unsigned modifier = below(2) == 0 ? kShift : kControl;
  const bool held = below(3) == 0;
  if (held) hand.key(modifier, true);
  type(key);
  if (held) hand.key(modifier, false);
}

// What is clicked beside the window would be the desktop's: so nothing is until it is back.
void WindowMonkey::minimise() {
  hand.minimise();
  window::waitFor([this] { return !hand.isShown() || game->process().hasEnded(); });
  hand.raise();
  window::waitFor([this] { return hand.isShown() || game->process().hasEnded(); });
}

void WindowMonkey::loseFocus() {
  hand.dropFocus();
  for (int keys = below(4); keys > 0; --keys) knownKey();
  hand.raise();
}

void WindowMonkey::quit() {
  switch (below(3)) {
    case 0:
      return game->close();
    case 1:
      return game->process().send(SIGTERM);
    default:
      hand.key(kControl, true);
      type(kQ);
      hand.key(kControl, false);
  }
}

// Inside the window: the bar above it has buttons of the window manager's.
Point WindowMonkey::anywhere() {
  const Point place = game->position();
  const Size size = game->size();
  return {place.x + below(std::max(size.w, 1)), place.y + below(std::max(size.h, 1))};
}

TEST(WindowMonkey, IsSurvivedAndLeavesWholeFiles) {
  const test::NoOpener opener;
  const unsigned seed = test::firstSeed();
  const std::chrono::seconds time(test::numberFrom("VESKARA_MONKEY_SECONDS", 20));
  std::printf("monkey of seed %u, %ld seconds\n", seed, static_cast<long>(time.count()));
  std::fflush(stdout);
  WindowMonkey monkey(seed);
  const auto limit = std::chrono::steady_clock::now() + time;
  while (std::chrono::steady_clock::now() < limit && !HasFailure()) {
    monkey.act();
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  monkey.end();
  std::printf("  %d acts, %d starts\n", monkey.acts(), monkey.starts());
  EXPECT_EQ(support::inOwnProcess([&] {
              setenv("XDG_DATA_HOME", monkey.dataHome().c_str(), 1);
              return test::problemsOfFiles();
            }),
            "");
}

}  // namespace
