// painted_screen.h: how a screen should look in the window: the real screen, run without a window on a copy
// of the player's files, at rest and drawn with cairo only. Units: pixels of the window.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/screen_harness.h"
#include "ui/context.h"
#include "ui/handles.h"
#include "window/desktop.h"

namespace window {

// The player's input to a screen without a window.
using Act = std::function<void(support::ScreenHarness&)>;

// The screen at rest, with the pointer at this place and after `act`. A missing `dataDir` means a new player.
ui::CairoSurface paintedScreen(const std::string& dataDir, const ui::GameState& descriptor, Size windowSize,
                               Point pointer = {}, const Act& act = {});

// Whether two pictures of the same size match in this rectangle, apart from rounding.
testing::AssertionResult sameIn(const ui::Rect& rect, cairo_surface_t* seen, cairo_surface_t* wanted);

}  // namespace window
