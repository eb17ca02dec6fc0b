// Tests that the fonts of ever new text sizes, as in a window that is being resized, are not kept for ever.

#include <gtest/gtest.h>

#include "support/memory.h"
#include "support/picture.h"
#include "ui/draw.h"

namespace {

// The fonts that pango and cairo keep by themselves would take eight megabytes more.
TEST(FontMemory, DoesNotGrowWithTheSizesOfTexts) {
  if (!support::kMemoryIsSeen) GTEST_SKIP() << "the sanitizers have allocators of their own";
  const auto picture = support::makePicture(8, 8);
  const ui::CairoContext cr(cairo_create(picture.get()));
  const auto drawSizes = [&](double from) {
    for (int i = 0; i < 400; ++i) {
      ui::drawText(cr.get(), 0, 0, "Bamboo", {.size = from + i / 400.0});
      cairo_scale(cr.get(), 1.0001, 1.0001);
      ui::drawWrappedText(cr.get(), 0, 0, 100, "Circles", {.size = from + i / 400.0});
    }
    return support::liveBytes();
  };
  const long first = drawSizes(10);
  EXPECT_LT(drawSizes(11) - first, 3000000);
}

}  // namespace
