// pointer_block.h: what must not hear of the player's input is drawn without it.
#pragma once

#include <utility>

#include "ui/context.h"

namespace ui {

// While it lives the frame has no pointer anywhere and no click; what the mouse did is there again
// afterwards.
class PointerBlock {
 public:
  // `blocked` false blocks nothing.
  PointerBlock(Ctx& frame, bool blocked) : ctx(frame), kept(frame.in) {
    if (!blocked) return;
    ctx.in = {};
    ctx.in.mx = kNowhere;
    ctx.in.my = kNowhere;
    ctx.in.keys = kept.keys;
    ctx.in.freshKeys = kept.freshKeys;
  }
  PointerBlock(const PointerBlock&) = delete;
  PointerBlock& operator=(const PointerBlock&) = delete;
  ~PointerBlock() { ctx.in = std::move(kept); }

 private:
  static constexpr double kNowhere = -1e9;

  Ctx& ctx;
  Input kept;
};

// The same for what lies under a question: it hears of no key either, and the keyboard works none of it.
class InputBlock {
 public:
  InputBlock(Ctx& frame, bool blocked) : pointer(frame, blocked), ctx(frame), kept(frame.focus) {
    if (!blocked) return;
    ctx.in.keys.clear();
    ctx.in.freshKeys.clear();
    ctx.focus = nullptr;
  }
  InputBlock(const InputBlock&) = delete;
  InputBlock& operator=(const InputBlock&) = delete;
  ~InputBlock() { ctx.focus = kept; }

 private:
  PointerBlock pointer;
  Ctx& ctx;
  Focus* kept;
};

}  // namespace ui
