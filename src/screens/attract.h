// attract.h: the demo. It plays random deals by itself, pair by pair, at a pace that a watcher can follow,
// until somebody touches the mouse's buttons or wheel or a key, or two minutes have passed. It saves nothing.
// Units: logical pixels; seconds of the frame clock.
#pragma once

#include <cstdint>
#include <optional>

#include "rules/engine.h"
#include "ui/board.h"
#include "ui/board_fx.h"
#include "ui/context.h"

namespace screens {

// Where everything lies, for any size of the window. A wide window has all captions in one row below the
// board; a tall one, where the board leaves height to spare, has them above and below it.
struct AttractLayout {
  ui::Rect board;
  ui::Rect title;  // as wide as its pill may become
  ui::Rect tilesLeft;
  ui::Rect invitation;
};
AttractLayout attractLayout(double w, double h);

class Attract : public ui::Screen {
 public:
  // What it begins with; random levels and deals follow.
  Attract(int firstLevel, std::uint32_t firstDeal);

  void update(ui::Ctx& ctx) override;

  int currentLevel() const { return level; }
  const mj::GameState& table() const { return game; }
  // How the board was drawn in the last frame: the pair that will go is picked.
  const ui::BoardOpts& boardOptions() const { return options; }
  const ui::BoardFx& effects() const { return fx; }

 private:
  void deal(int newLevel, std::uint32_t newDeal);
  void begin(double now);
  bool isLeft(const ui::Ctx& ctx) const;
  void play(double now, const ui::Rect& board);
  void step(double now, const ui::Rect& board);
  bool choosePair(double now);
  void takePair(double now, const ui::Rect& board);
  void celebrate(double now);
  void drawTable(ui::Ctx& ctx, const ui::Rect& board);
  void drawCaptions(const ui::Ctx& ctx, const AttractLayout& layout) const;

  int level = 1;
  mj::GameState game;
  ui::BoardFx fx;
  ui::BoardOpts options;

  int phase = 0;  // of the step by which a pair is chosen, shown, taken, and its burst watched
  int pairA = -1;
  int pairB = -1;
  std::optional<double> startedAt;
  double stepAt = 0;
  std::optional<double> celebrateAt;
};

}  // namespace screens
