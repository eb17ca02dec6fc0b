// Compares each state of the gallery program with committed pictures: in the default window in English, and
// in the smallest one in German.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "app/app.h"
#include "gallery/states.h"
#include "gallery/studio.h"
#include "resources/i18n.h"
#include "screens/environment.h"
#include "screens/list_screen.h"
#include "support/data_home.h"
#include "support/glyph_font.h"
#include "support/palette.h"

namespace {

struct Shown {
  gallery::Window window;
  const char* language;
};
constexpr Shown kUsual = {{1100, 760, 1}, "en"};
constexpr Shown kSmall = {{640, 480, 1}, "de"};

using Case = std::tuple<gallery::State, Shown>;

std::string lookOf(const Case& shown) {
  const auto& [state, in] = shown;
  return std::string(state.name) + "_" + nameOf(in.window) + "_" + in.language;
}

class StateLook : public support::WithGlyphFont, public testing::WithParamInterface<Case> {
 protected:
  static const gallery::Studio& studio() {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    static const gallery::Studio instance;
    return instance;
  }

  StateLook() { tzset(); }
  ~StateLook() override { i18n::setLanguage("en"); }

  const test::Environment zone = {"TZ", "UTC"};  // for the dates on the gallery's cards
  support::DataHome data;
};

// The settings name languages in letters that the tests' fonts lack, and pango's releases draw the boxes in
// their place differently.
std::vector<gallery::State> statesInKnownLetters() {
  std::vector<gallery::State> states(gallery::states().begin(), gallery::states().end());
  std::erase_if(states,
                [](const auto& state) { return std::string_view(state.name).starts_with("settings"); });
  return states;
}

INSTANTIATE_TEST_SUITE_P(Of, StateLook,
                         testing::Combine(testing::ValuesIn(statesInKnownLetters()),
                                          testing::Values(kUsual, kSmall)),
                         [](const auto& shown) { return lookOf(shown.param); });

TEST_P(StateLook, IsAsPainted) {
  const auto& [state, in] = GetParam();
  i18n::setLanguage(in.language);
  ui::Game::settings() = {};
  screens::chosenPages() = {};
  gallery::Sitting sitting(studio(), in.window, state.make());
  state.reach(sitting);
  const ui::CairoSurface picture = sitting.picture(0.1);
  ASSERT_TRUE(picture);
  EXPECT_TRUE(support::looksLikeInFewColors(picture.get(), lookOf(GetParam())));
}

}  // namespace
