// attract.h: the demo. It plays random deals pair by pair, slowly enough to follow. It ends after two minutes
// or when the player presses a mouse button or a key or turns the wheel. It saves nothing. Units: logical
// pixels; seconds of the frame clock.
#pragma once

#include <cstdint>
#include <optional>

#include "rules/engine.h"
#include "ui/board.h"
#include "ui/board_fx.h"
#include "ui/context.h"

namespace screens {

// The layout for any window size. A wide window has all captions in one row below the board. A tall one,
// where the board leaves spare height, has them above and below it.
struct AttractLayout {
  ui::Rect board;
  ui::Rect title;  // as wide as the pill may become
  ui::Rect tilesLeft;
  ui::Rect invitation;
};
AttractLayout attractLayout(double w, double h);

class Attract : public ui::Screen {
 public:
  // The first deal; random levels and deals follow.
  Attract(int firstLevel, std::uint32_t firstDeal);

  void update(ui::Ctx& ctx) override;

  int currentLevel() const { return level; }
  const mj::GameState& table() const { return game; }
  // How the board was drawn in the last frame. Tests read the picked pair from it.
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

  int phase = 0;  // within a step: first tile, second tile, removal, pause
  int pairA = -1;
  int pairB = -1;
  std::optional<double> startedAt;
  double stepAt = 0;
  std::optional<double> celebrateAt;
};

}  // namespace screens
