// painted_screen.h: what the window ought to show of a screen: the screen itself, run without a window on a
// copy of the player's files, at rest, and drawn with cairo alone. Units: pixels of the window.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "support/screen_harness.h"
#include "ui/context.h"
#include "ui/handles.h"
#include "window/desktop.h"

namespace window {

// What the player does on a screen, without a window.
using Act = std::function<void(support::ScreenHarness&)>;

// As it comes with the pointer at this place, and then after `act`. A directory that is not there is a new
// player's.
ui::CairoSurface paintedScreen(const std::string& dataDir, const ui::GameState& descriptor, Size windowSize,
                               Point pointer = {}, const Act& act = {});

// Whether two pictures of the same size show the same in this rectangle, but for rounding.
testing::AssertionResult sameIn(const ui::Rect& rect, cairo_surface_t* seen, cairo_surface_t* wanted);

}  // namespace window
