// Checks how long screens claim that their picture stays the same, in all states of the gallery program.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>

#include "gallery/states.h"
#include "gallery/studio.h"
#include "support/data_home.h"
#include "support/picture.h"
#include "ui/fonts.h"

namespace {

using gallery::State;

constexpr gallery::Window kWindow = {640, 480, 1};
// Seconds; longer than any movement before the picture rests.
constexpr double kLongestLook = 30;
constexpr int kMoments = 10;

class Still : public testing::TestWithParam<State> {
 protected:
  static const gallery::Studio& studio() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    static const gallery::Studio instance;
    static const bool fonts = ui::registerBundledFonts();
    EXPECT_TRUE(fonts);
    return instance;
  }

  support::DataHome data;
};

std::string nameOf(const testing::TestParamInfo<State>& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(State, Still, testing::ValuesIn(gallery::states().begin(), gallery::states().end()),
                         nameOf);

// Whether the picture stops moving if the player waits.
bool comesToRest(const std::string& name) {
  for (const char* moving : {"splash", "menu", "solved", "attract", "selected", "won"})
    if (name.starts_with(moving)) return false;
  return true;
}

TEST_P(Still, PicturesStayAsLongAsTheScreenSays) {
  const State& state = GetParam();
  gallery::Sitting sitting(studio(), kWindow, state.make());
  state.reach(sitting);
  int rests = 0;
  for (const double pause : {0.0, 0.9, 0.7, 0.6, 1.0}) {
    const ui::CairoSurface before = sitting.picture(pause);
    ASSERT_TRUE(before);
    const double stays = std::min(sitting.stillUntil() - sitting.time(), kLongestLook);
    if (stays <= 0) continue;
    ++rests;
    // Not at the very end, when the clock already shows the next second.
    for (int i = 1; i < kMoments; ++i) {
      ASSERT_TRUE(support::samePicture(sitting.picture(stays / kMoments).get(), before.get()))
          << "after " << i * stays / kMoments << " s";
    }
  }
  EXPECT_EQ(rests > 0, comesToRest(state.name));
}

}  // namespace
