// app.h: the stack of screens. Only the top one lives; it is built from its descriptor and thrown away at
// every change of the stack. Knows no particular screen: who starts the program hands over what makes them.
// Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "storage/storage.h"
#include "ui/context.h"
#include "ui/focus.h"

namespace ui {

// Returns a new screen in its initial state, or null for a kind that has none; the window then stays empty.
using ScreenFactory = std::unique_ptr<Screen> (*)(const GameState& descriptor);

class Game {
 public:
  // Begins with the splash screen's descriptor as the only one.
  explicit Game(ScreenFactory factory);

  // The program's own stack, built on first use and destroyed at exit, its live screen with it. It is given
  // its factory before its first frame.
  static Game& instance();
  void setFactory(ScreenFactory factory);
  // The player's preferences, read from disk on first use, to be changed in place. They outlive every screen.
  static store::Settings& settings();
  // Writes them to disk.
  static void persistSettings();

  // Ask for a change of the stack. It is carried out when the current frame's update has returned; of several
  // requests in one frame the last one counts. The last descriptor is never popped: its screen is built anew.
  void push(const GameState& descriptor);
  void pop();
  void replace(const GameState& descriptor);
  // Leaves this descriptor as the only one.
  void resetTo(const GameState& descriptor);

  // One frame: builds the top screen if need be, updates it, carries out its request. A screen hears of a
  // mouse button only what began on it: not of one that was down before its first frame, nor of its release,
  // nor, in its first second, of clicks that follow one on an earlier screen as fast as the second of a
  // double click. Of Enter and Space it hears as of a button.
  void update(Ctx& ctx);
  // Whether the next frame will be the first of its screen.
  bool beginsScreen() const { return !screen; }

  // Which of the live screen's controls the keyboard works.
  const Focus& keyboard() const { return focus; }

  // The descriptors, bottom first; never empty.
  const std::vector<GameState>& descriptors() const { return stack; }

 private:
  enum class Operation { None, Push, Pop, Replace, Reset };
  struct Request {
    Operation operation = Operation::None;
    GameState descriptor;
  };

  // Whose the left button is that is held.
  enum class Hold { None, Earlier, Own };

  void ensureScreen();
  void forgetEarlierButtons(Ctx& ctx);
  void keepOwnButtons(Ctx& ctx);
  void keepOwnKeys(Ctx& ctx);
  bool followsPress(double now) const;
  void showScreen(Ctx& ctx);
  void carryOut(const Request& request);

  ScreenFactory makeScreen;
  std::vector<GameState> stack;
  std::unique_ptr<Screen> screen;
  unsigned builtVersion = 0xFFFFFFFF;
  unsigned stackVersion = 0;
  Request pendingRequest;
  Focus focus;  // on the live screen
  Hold hold = Hold::None;
  double shownSince = 0;     // the screen; in the context's time
  bool foreignRun = false;   // the last click was not this screen's, and one that follows fast belongs to it
  double lastPress = -10;    // of Enter or Space; in the context's time
  bool foreignKeys = false;  // the same of them
};

}  // namespace ui
