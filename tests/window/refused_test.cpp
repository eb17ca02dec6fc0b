// What happens if SDL refuses a window or a renderer, and where the first window opens.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "window/session.h"
#include "window/witness.h"

namespace {

using testing::IsEmpty;
using window::Child;
using window::Desktop;
using window::Environment;
using window::kFirstWindow;
using window::kScreen;
using window::Session;
using window::waitFor;

class Refused : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(By, Refused, testing::Values("SDL_CreateWindow", "SDL_CreateRenderer"),
                         [](const auto& function) { return std::string(function.param); });

TEST_P(Refused, EndsTheProgramWithAMessage) {
  const Desktop desktop;
  Environment environment = window::changed(desktop.environment(), preloading(desktop, VESKARA_WITNESS));
  environment[window::kRefuseVariable] = GetParam();
  Child child({VESKARA_PROGRAM}, environment);
  EXPECT_EQ(child.waitForEnd(), 1);
  EXPECT_EQ(child.errors(), std::string(GetParam()) + ": refused by a test\n");
  EXPECT_THAT(child.output(), IsEmpty());
}

TEST(FirstWindow, StandsInTheMiddleOfTheScreen) {
  // How far the window manager's frame may shift the window.
  constexpr int kFrame = 30;
  const Session session({.screen = kScreen, .toTable = false});
  ASSERT_TRUE(session.hasSize(kFirstWindow));
  EXPECT_TRUE(waitFor([&] {
    const window::Point place = session.game.position();
    return std::abs(place.x - (kScreen.w - kFirstWindow.w) / 2) <= kFrame &&
           std::abs(place.y - (kScreen.h - kFirstWindow.h) / 2) <= kFrame;
  })) << session.game.position().x
      << ", " << session.game.position().y;
}

}  // namespace
