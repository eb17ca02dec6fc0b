// Random real mouse and key events in a real window, for VESKARA_MONKEY_SECONDS. The program ends only when
// told to, and then properly; its files stay whole, and a saved game goes only by a win, a click or a key
// that works a control. VESKARA_MONKEY_SEED sets the seed.

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

constexpr int kMostSteps = 4;  // wheel steps at once

class WindowMonkey {
 public:
  explicit WindowMonkey(unsigned seed) : random(seed), hand(desktop.environment().at("DISPLAY")) { start(); }

  void act();
  // Closes the window. The test then checks what the game has saved.
  void end();

  int acts() const { return actCount; }
  int starts() const { return startCount; }
  std::string dataHome() const { return desktop.environment().at("XDG_DATA_HOME"); }

 private:
  struct Act {
    int weight;
    void (WindowMonkey::*run)();
  };

  // What identifies a saved game; level 0 means that there is none.
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
  Kept kept;           // at the last look
  int passBefore = 0;  // of this start's loop, before the last look
  int solves = 0;
  int solvesBefore = 0;  // before the kept game was first seen
  int actCount = 0;
  int startCount = 0;
};

void WindowMonkey::start() {
  // Every other start the game plays by itself, so that it reaches the end of a level.
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
  // A click on the game's own button may have ended it.
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

// From outside the test cannot tell which screen received a click, nor whether the click was meant for it;
// the monkey without a window checks that. But a game that goes without a win must go in the pass of the loop
// that receives a click or a key that works a control. Other keys, the wheel, other buttons and the window
// must not make it go.
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

// Looks again, because the file may just have been replaced.
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

// As fast as a hand or faster.
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

// Changes the screen while the button is held.
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

// Clicks beside the window would go to the desktop, so this waits until the window is back.
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

// Inside the window, because its title bar has the window manager's buttons.
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
