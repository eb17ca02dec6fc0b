// Compares the whole Playing screen with committed pictures, and counts how often it is painted.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

#include "screens/playing_layout.h"
#include "screens/sitting.h"
#include "support/glyph_font.h"
#include "support/picture.h"
#include "support/sight.h"
#include "ui/gpu.h"

namespace {

using test::Sitting;

class PlayingLook : public support::WithGlyphFont, public testing::WithParamInterface<std::pair<int, int>> {
 protected:
  void sitDown(const ui::GameState& descriptor) {
    sitting.emplace(descriptor, support::Drawing::Cairo, GetParam().first, GetParam().second);
    sitting->waitForIntro();
  }
  void expectLook(const std::string& name) {
    sitting->harness.moveTo(0, 0);
    sitting->harness.frame(2);
    EXPECT_TRUE(support::looksLike(sitting->harness.picture().get(),
                                   "playing_" + name + "_" + std::to_string(GetParam().first)));
  }

  std::optional<Sitting> sitting;
};

TEST_P(PlayingLook, Fresh) {
  sitDown({.kind = ui::ScreenKind::Playing, .level = 91, .deal = 91});
  expectLook("fresh");
}

TEST_P(PlayingLook, NoMoves) {
  sitDown(test::kSoonStuck);
  sitting->take(test::lowestPair(sitting->game()));
  expectLook("no_moves");
}

TEST_P(PlayingLook, Paused) {
  sitDown(test::kFirstLevel);
  sitting->harness.key(SDLK_SPACE);
  expectLook("paused");
}

INSTANTIATE_TEST_SUITE_P(Window, PlayingLook, testing::Values(std::pair(640, 480), std::pair(1100, 760)),
                         [](const auto& param) { return std::to_string(param.param.first); });

class Clock : public testing::TestWithParam<support::Drawing> {};

TEST_P(Clock, StandsOutFromEveryCloth) {
  constexpr double kLegible = 3;
  for (const auto& [w, h] : {std::pair(640, 480), std::pair(1100, 760)}) {
    for (int level = 1; level <= 100; level += 10) {
      Sitting sitting({.kind = ui::ScreenKind::Playing, .level = level, .deal = 1}, GetParam(), w, h);
      sitting.waitForIntro();
      const auto picture = sitting.harness.picture();
      const ui::Rect clock = screens::playingLayout(w, h).time;
      const double middle = clock.y + clock.h / 2;
      const double right = clock.x + clock.w;
      const double letters = support::lightest(picture.get(), clock.x, middle - 8, right, middle + 8);
      const double below =
          support::lightest(picture.get(), clock.x + 10, middle - 12, right - 10, middle - 10);
      EXPECT_GE(support::contrast(letters, below), kLegible) << level << ", " << w << " x " << h;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Renderer, Clock,
                         testing::Values(support::Drawing::Cairo, support::Drawing::Textures));

// How many of the next `all` frames paint a picture for the texture cache.
int framesThatPaint(Sitting& sitting, int all) {
  int frames = 0;
  for (int i = 0; i < all; ++i) {
    sitting.harness.frame();
    if (ui::gpuPaints() > 0) ++frames;
  }
  return frames;
}

TEST(Textures, AreAllPaintedInTheFirstFrameOfATableAtRest) {
  const support::DataHome data;
  const ui::GameState largest = {.kind = ui::ScreenKind::Playing, .level = 91, .deal = 91};
  {
    const Sitting left(largest, test::Files::Kept);
  }
  Sitting sitting(largest, test::Files::Kept);
  EXPECT_GT(ui::gpuPaints(), 0);
  EXPECT_EQ(framesThatPaint(sitting, 600), 0);
}

TEST(Textures, ArePaintedOnceForWhatIsNew) {
  Sitting sitting;
  sitting.waitForIntro();
  for (const int code : {SDLK_h, SDLK_PLUS}) {
    sitting.harness.key(code);
    sitting.harness.run(0.2);  // so that not all paint in the same frame
    EXPECT_EQ(framesThatPaint(sitting, 150), 0) << code;
  }
  sitting.click(test::topTile(sitting.game()));
  sitting.harness.frame();
  EXPECT_GT(ui::gpuPaints(), 0) << "the tile and its glow";
  EXPECT_EQ(framesThatPaint(sitting, 150), 0);
}

}  // namespace
