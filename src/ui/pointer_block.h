// pointer_block.h: hides the player's input from the parts of a screen that must not react to it.
#pragma once

#include <utility>

#include "ui/context.h"

namespace ui {

// While it lives, the frame has no pointer and no clicks. Restores the input afterwards.
class PointerBlock {
 public:
  // Blocks nothing if `blocked` is false.
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

// The same for controls under a dialog: hides the keys and the keyboard's focus as well.
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
