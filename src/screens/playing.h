// playing.h: the screen that plays one deal of one level. Turns clicks and keys into moves. Times what is
// shown for a while: the fly-in, a chosen pair, a mismatch, a hint, the fade after the win. Units: logical
// pixels; seconds of the frame clock.
#pragma once

#include <cstdint>
#include <optional>

#include "rules/engine.h"
#include "screens/playing_layout.h"
#include "ui/board.h"
#include "ui/board_fx.h"
#include "ui/context.h"

namespace screens {

class Playing : public ui::Screen {
 public:
  // Resumes the saved game if it has the descriptor's level and deal; otherwise deals.
  explicit Playing(const ui::GameState& descriptor);
  // Saves the game, or records the win: the program may be ending, without a Solved screen.
  ~Playing() override;

  void update(ui::Ctx& ctx) override;

  // Handles a tap on a tile: selects it, unselects it, or tries it with the selected tile. A matching pair
  // goes after a moment, or as soon as another tile is tapped. A mismatch is cleared by the next tap on a
  // free tile. A blocked tile only plays the error sound. A solved game ignores taps.
  void tapTile(int tile, double now);
  // Sets the zoom about the board's centre, clamped to 1 to 3. The pan is limited so that the zoomed board
  // still fills its rectangle.
  void setZoom(double factor);

  const mj::GameState& table() const { return game; }
  double playTime() const { return elapsed; }
  bool isPaused() const { return paused; }
  // How the board was drawn in the last frame.
  const ui::BoardOpts& boardOptions() const { return options; }
  const ui::Rect& boardRect() const { return layout.board; }
  const ui::BoardFx& effects() const { return fx; }
  // The tile under the keyboard cursor as drawn in the last frame; empty if the cursor is hidden.
  std::optional<int> cursorTile() const { return cursorShown ? cursor : std::nullopt; }

 private:
  // A drag of the zoomed board, from press to release.
  struct Grab {
    double mouseX;
    double mouseY;
    double panX;
    double panY;
    bool moved;  // too far for a tap
  };

  // Two tiles shown together until a time of the frame clock.
  struct ShownPair {
    mj::SlotPair tiles;
    double until;
  };

  void drawTable(ui::Ctx& ctx) const;
  void begin(double now);
  void endIntro(double now);
  void advanceClock(double dt);
  void autosave(double dt);
  void removePair(double now);
  void forgetRefusal();
  void endWaits(double now);
  void header(ui::Ctx& ctx);
  void drawHeaderTexts(const ui::Ctx& ctx) const;
  void boardKeys(ui::Ctx& ctx);
  void cursorKey(ui::Ctx& ctx, int key);
  void tabCursor(ui::Ctx& ctx);
  void showCursorTile();
  void drawTiles(ui::Ctx& ctx);
  void drawCursor(cairo_t* cr) const;
  std::optional<PanelLayout> stuckPanel(const ui::Ctx& ctx) const;
  void noMoves(ui::Ctx& ctx, const PanelLayout& panel);
  void boardInput(ui::Ctx& ctx);
  void turnWheel(const ui::Input& in);
  void dragBoard(ui::Ctx& ctx);
  void actionBar(ui::Ctx& ctx);
  void pauseOverlay(ui::Ctx& ctx);
  void keys(ui::Ctx& ctx);
  void playKeys(const ui::Input& in, double now);
  void autoplayStep(double now);
  void winFade(ui::Ctx& ctx);
  void readyFlash(ui::Ctx& ctx);

  void takeHint(double now);
  void shuffle();
  void takeBack();
  void boundPan();
  void leave();
  void save() const;
  ui::GameState result() const;
  std::int64_t elapsedMs() const { return static_cast<std::int64_t>(1000 * elapsed); }
  bool won() const { return mj::isSolved(game); }
  void pause();
  double restTime() const;
  // Whether hints and shuffles are allowed. Not before the tiles have flown in.
  bool givesAid() const { return !introActive && !paused && !won(); }

  int level;
  std::uint32_t deal;
  mj::GameState game;
  ui::BoardFx fx;
  PlayingLayout layout;   // of the last frame
  ui::BoardOpts options;  // of the last frame

  bool resumed = false;
  bool started = false;
  bool introActive = false;
  bool paused = false;
  double elapsed = 0;
  double saveClock = 0;
  std::optional<double> winAt;
  std::optional<double> readyAt;

  std::optional<ShownPair> pending;  // a matching pair about to be removed
  std::optional<ShownPair> refused;
  std::optional<ShownPair> hint;

  double autoplay;  // seconds between automatic moves; 0 for none
  double lastAuto = 0;

  double zoom = 1;
  double panX = 0;
  double panY = 0;
  std::optional<Grab> grab;

  std::optional<int> cursor;  // tile under the keyboard cursor; reset when the mouse moves
  bool cursorShown = false;
};

}  // namespace screens
