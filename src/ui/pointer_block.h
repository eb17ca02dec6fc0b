// pointer_block.h: what lies under a dialog is drawn without hearing of the mouse.
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

}  // namespace ui
