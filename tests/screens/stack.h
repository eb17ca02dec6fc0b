// stack.h: runs the program's stack of screens without a window.
#pragma once

#include <gmock/gmock.h>

#include "app/app.h"
#include "support/data_home.h"
#include "support/screen_harness.h"

namespace test {

// A screen to stack the tested one on.
inline constexpr ui::GameState kBelow = {.kind = ui::ScreenKind::Playing, .level = 1, .deal = 1};

struct Stack {
  // Shows this screen alone, in its initial state, for a player without files. It has not run a frame yet.
  explicit Stack(const ui::GameState& first, int w = 640, int h = 480);

  static const ui::GameState& top() { return ui::Game::instance().descriptors().back(); }
  static std::size_t depth() { return ui::Game::instance().descriptors().size(); }

  support::DataHome data;
  support::ScreenHarness harness;
};

MATCHER_P3(Shows, kind, level, deal, "") {
  return arg.kind == kind && arg.level == level && arg.deal == static_cast<std::uint32_t>(deal);
}

}  // namespace test
