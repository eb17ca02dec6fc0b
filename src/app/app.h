// app.h: the stack of screens. Only the top screen exists; it is built from its descriptor and destroyed at
// every change of the stack. Knows no particular screen: main passes in the factory. Main thread only.
#pragma once

#include <memory>
#include <vector>

#include "storage/storage.h"
#include "ui/context.h"
#include "ui/focus.h"

namespace ui {

// Returns a new screen in its initial state. Null for an unknown kind; the window then stays empty.
using ScreenFactory = std::unique_ptr<Screen> (*)(const GameState& descriptor);

class Game {
 public:
  // Starts with the descriptor of the splash screen.
  explicit Game(ScreenFactory factory);

  // The program's stack, created on first use and destroyed at exit together with its screen. Set the factory
  // before the first frame.
  static Game& instance();
  void setFactory(ScreenFactory factory);
  // The player's preferences, read from disk on first use and changed in place. They outlive every screen.
  static store::Settings& settings();
  // Writes them to disk.
  static void persistSettings();

  // Request a change of the stack. It is carried out after the current frame's update. Of several requests in
  // one frame only the last counts. The last descriptor is never popped; its screen is rebuilt instead.
  void push(const GameState& descriptor);
  void pop();
  void replace(const GameState& descriptor);
  // Replaces the whole stack by this descriptor.
  void resetTo(const GameState& descriptor);

  // Runs one frame: builds the top screen if needed, updates it and carries out its request. A screen sees
  // only button events that began on it. It does not see a button that was down before its first frame, nor
  // the release of that button. In its first second it also does not see clicks that follow a click on an
  // earlier screen as quickly as a double click. The same holds for Enter and Space.
  void update(Ctx& ctx);
  // Whether the next frame is the first of its screen.
  bool beginsScreen() const { return !screen; }

  // Which of the live screen's controls has the keyboard focus.
  const Focus& keyboard() const { return focus; }

  // The descriptors, bottom first; never empty.
  const std::vector<GameState>& descriptors() const { return stack; }

 private:
  enum class Operation { None, Push, Pop, Replace, Reset };
  struct Request {
    Operation operation = Operation::None;
    GameState descriptor;
  };

  // Which screen the held left button was pressed on.
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
  Focus focus;  // in the live screen
  Hold hold = Hold::None;
  double shownSince = 0;     // when the screen was first shown, in the context's time
  bool foreignRun = false;   // the last click belonged to an earlier screen, and so do quick ones after it
  double lastPress = -10;    // of Enter or Space, in the context's time
  bool foreignKeys = false;  // like foreignRun, for Enter and Space
};

}  // namespace ui
