// Tests the comparison that all committed pictures go through: what counts as the same picture.

#include "support/picture.h"

#include <gtest/gtest.h>

#include "ui/draw.h"

namespace {

// A button like the game's, of which a test may change one property.
struct Button {
  double lineX = 20;
  std::uint32_t fill = 0x16523C;
  std::uint32_t line = 0xF6EFDD;
  double highlight = 0.12;
};

ui::CairoSurface paint(const Button& button) {
  return support::makePicture(200, 100, [&](cairo_t* cr) {
    ui::fillRoundedRect(cr, {10, 10, 180, 80}, 12, button.fill, 1);
    ui::fillRect(cr, {20, 14, 160, 2}, 0xFFFFFF, button.highlight);
    ui::fillRect(cr, {button.lineX, 20, 1, 60}, button.line, 1);
  });
}

// A picture of letters with `pixels` pixels of the paper below them darker by `darker`.
ui::CairoSurface paintLetters(int pixels, int darker) {
  return support::makePicture(200, 100, [&](cairo_t* cr) {
    ui::fillRect(cr, {0, 0, 200, 100}, 0xF0F0F0, 1);
    ui::fillRect(cr, {20, 20, 100, 10}, 0x404040, 1);
    const std::uint32_t grey = 0xF0U - static_cast<unsigned>(darker);
    ui::fillRect(cr, {20, 30, static_cast<double>(pixels), 1}, grey << 16 | grey << 8 | grey, 1);
  });
}

bool looksAsBefore(const Button& button) {
  return static_cast<bool>(support::sameLook(paint(button).get(), paint({}).get()));
}

bool lettersLookAsBefore(int pixels, int darker) {
  const auto expected = paintLetters(0, 0);
  return static_cast<bool>(support::sameLook(paintLetters(pixels, darker).get(), expected.get()));
}

TEST(SameLook, IsThatOfAPictureItself) { EXPECT_TRUE(looksAsBefore({})); }

TEST(SameLook, NoticesALineMovedByAPixel) { EXPECT_FALSE(looksAsBefore({.lineX = 21})); }

TEST(SameLook, NoticesALineMovedByATenthOfAPixel) { EXPECT_FALSE(looksAsBefore({.lineX = 20.1})); }

TEST(SameLook, NoticesAColourThatIsALittleOff) {
  EXPECT_FALSE(looksAsBefore({.fill = 0x1E523C}));
  EXPECT_FALSE(looksAsBefore({.line = 0xF6E7DD}));
}

TEST(SameLook, NoticesAHighlightThatIsMissing) { EXPECT_FALSE(looksAsBefore({.highlight = 0})); }

TEST(SameLook, NoticesAnotherSize) {
  EXPECT_FALSE(support::sameLook(support::makePicture(9, 9).get(), support::makePicture(9, 10).get()));
}

TEST(SameLook, LeavesTheRimsOfAFewLettersToFreeType) {
  EXPECT_TRUE(lettersLookAsBefore(2, 7));
  EXPECT_FALSE(lettersLookAsBefore(3, 7)) << "these are more than one pixel in 10,000";
  EXPECT_FALSE(lettersLookAsBefore(2, 8)) << "this is more than a 24th of the contrast";
}

TEST(SameLook, LeavesNoPixelAwayFromEdgesToAnybody) {
  const auto plain = support::makePicture(200, 100);
  const auto spot =
      support::makePicture(200, 100, [](cairo_t* cr) { ui::fillRect(cr, {50, 50, 1, 1}, 0, 0.02); });
  EXPECT_FALSE(support::sameLook(spot.get(), plain.get()));
}

}  // namespace
