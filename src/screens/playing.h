// playing.h: the screen on which one deal of one level is played. Turns clicks and keys into moves, and keeps
// the times of what is shown: the fly-in, a chosen pair before it goes, a refused pair, a hint, the fade
// after the win. Units: logical pixels; seconds of the frame clock.
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
  // Goes on with the saved game if it is one of the descriptor's level and deal; otherwise deals.
  explicit Playing(const ui::GameState& descriptor);
  // Saves the game, or writes the win down: the program may end here and show nothing more of it.
  ~Playing() override;

  void update(ui::Ctx& ctx) override;

  // The player's hand on a tile: selects it, unselects it, or tries it with the selected one. A matching pair
  // goes a moment later, or as soon as another tile is tapped; a refused one is forgotten by the next tap. A
  // blocked tile and a solved game change nothing.
  void tapTile(int tile, double now);
  // Zoom about the board's centre, kept between 1 and 3; the pan stays where the zoomed board still fills its
  // place.
  void setZoom(double factor);

  const mj::GameState& table() const { return game; }
  double playTime() const { return elapsed; }
  bool isPaused() const { return paused; }
  // How the board was drawn in the last frame.
  const ui::BoardOpts& boardOptions() const { return options; }
  const ui::Rect& boardRect() const { return layout.board; }
  const ui::BoardFx& effects() const { return fx; }
  // The tile under the keyboard's cursor, as it was drawn in the last frame.
  std::optional<int> cursorTile() const { return cursorShown ? cursor : std::nullopt; }

 private:
  // A drag of the zoomed board, from the press of the button to its release.
  struct Grab {
    double mouseX;
    double mouseY;
    double panX;
    double panY;
    bool moved;  // far enough to be no tap
  };

  // Two tiles that are shown together until a moment of the frame clock.
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
  // Whether a hint or a shuffle may be asked for: not before the tiles have flown in.
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

  std::optional<ShownPair> pending;  // matches, and is about to go
  std::optional<ShownPair> refused;
  std::optional<ShownPair> hint;

  double autoplay;  // seconds between moves of its own, 0 for none
  double lastAuto = 0;

  double zoom = 1;
  double panX = 0;
  double panY = 0;
  std::optional<Grab> grab;

  std::optional<int> cursor;  // the keyboard's, on a free tile; forgotten when the mouse is used
  bool cursorShown = false;
};

}  // namespace screens
