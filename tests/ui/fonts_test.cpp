#include "ui/fonts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "resources/assets.h"
#include "support/own_process.h"
#include "support/temp_dir.h"
#include "ui/handles.h"

namespace {

using support::inOwnProcess;
using support::TempDir;
using testing::EndsWith;

constexpr double kSize = 1000;  // pixels, so that rounding to a pixel costs a thousandth of the glyph

const char* const kCharacters[] = {"一", "二", "三", "四", "五", "六", "七", "八",
                                   "九", "東", "南", "西", "北", "中", "發", "萬"};

// Laid out with its own font map: one that other tests used would remember their fonts.
class Glyph {
 public:
  explicit Glyph(const std::string& text)
      : fonts(pango_cairo_font_map_new()),
        context(pango_font_map_create_context(fonts.get())),
        layout(pango_layout_new(context.get())) {
    const ui::FontDescription font(pango_font_description_new());
    pango_font_description_set_family(font.get(), ui::kGlyphFamily);
    pango_font_description_set_absolute_size(font.get(), kSize * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), text.c_str(), -1);
    pango_layout_get_extents(layout.get(), &ink, &box);
  }

  // The font that pango chose.
  std::string family() const {
    const auto* run =
        static_cast<const PangoLayoutRun*>(pango_layout_get_line_readonly(layout.get(), 0)->runs->data);
    const ui::FontDescription font(pango_font_describe(run->item->analysis.font));
    return pango_font_description_get_family(font.get());
  }
  bool missing() const { return pango_layout_get_unknown_glyphs_count(layout.get()) > 0; }

  double width() const { return pixels(box.width); }
  double height() const { return pixels(box.height); }
  // How far the middle of the ink lies right of and below the middle of the line box.
  double inkRight() const { return pixels(ink.x + ink.width / 2 - box.x - box.width / 2); }
  double inkBelow() const { return pixels(ink.y + ink.height / 2 - box.y - box.height / 2); }

 private:
  static double pixels(int units) { return static_cast<double>(units) / PANGO_SCALE; }

  std::unique_ptr<PangoFontMap, ui::ReleaseWith<g_object_unref>> fonts;
  std::unique_ptr<PangoContext, ui::ReleaseWith<g_object_unref>> context;
  ui::TextLayout layout;
  PangoRectangle ink = {};
  PangoRectangle box = {};
};

class GlyphFont : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const TempDir cache;  // until the process ends: fontconfig keeps the path
    setenv("XDG_CACHE_HOME", cache.path().c_str(), 1);
    unsetenv("VESKARA_ASSET_DIR");
    ASSERT_TRUE(ui::registerBundledFonts());
  }
};

// The standard error of registerBundledFonts in a process with this cache directory, then its result.
std::string registerWithCache(const std::string& base) {
  return inOwnProcess([&] {
    setenv("XDG_CACHE_HOME", base.c_str(), 1);
    unsetenv("VESKARA_ASSET_DIR");
    testing::internal::CaptureStderr();
    const bool registered = ui::registerBundledFonts();
    return testing::internal::GetCapturedStderr() + (registered ? "true" : "false");
  });
}

TEST_F(GlyphFont, IsTheOneThatPangoTakesForEveryCharacterOfTheTiles) {
  for (const char* character : kCharacters) {
    const Glyph glyph(character);
    EXPECT_EQ(glyph.family(), ui::kGlyphFamily) << character;
    EXPECT_FALSE(glyph.missing()) << character;
  }
}

TEST_F(GlyphFont, HoldsNothingElse) { EXPECT_NE(Glyph("A").family(), ui::kGlyphFamily); }

TEST_F(GlyphFont, FillsASquareLineBox) {
  for (const char* character : kCharacters) {
    const Glyph glyph(character);
    EXPECT_DOUBLE_EQ(glyph.width(), kSize) << character;
    EXPECT_DOUBLE_EQ(glyph.height(), kSize) << character;
  }
}

// The ink of the north wind itself lies off the middle.
TEST_F(GlyphFont, CentresWindsAndDragonsInTheLineBox) {
  for (const char* character : {"東", "南", "西", "北", "中", "發"}) {
    const Glyph glyph(character);
    EXPECT_NEAR(glyph.inkBelow(), 0, kSize * (character == std::string("北") ? 0.09 : 0.01)) << character;
    EXPECT_NEAR(glyph.inkRight(), 0, kSize * 0.025) << character;
  }
}

TEST_F(GlyphFont, HoldsNumeralsAndTheMarkBelowThemApart) {
  for (const char* character : {"一", "二", "三", "四", "五", "六", "七", "八", "九"}) {
    const Glyph glyph(character);
    EXPECT_NEAR(glyph.inkBelow(), -kSize * 0.08, kSize * 0.04) << character;
    EXPECT_NEAR(glyph.inkRight(), 0, kSize * 0.025) << character;
  }
  const Glyph mark("萬");
  EXPECT_NEAR(mark.inkBelow(), kSize * 0.05, kSize * 0.01);
  EXPECT_NEAR(mark.inkRight(), 0, kSize * 0.025);
}

TEST(RegisterBundledFonts, ReportsAFontThatCouldNotBeWritten) {
  const TempDir dir;
  const std::string base = dir.makeFile("file", "");
  const std::string font = base + "/veskara/fonts/QuenlockMahjongGlyphs.ttf";
  EXPECT_THAT(registerWithCache(base),
              EndsWith("[assets] cannot write " + font + "\n[fonts] could not register " + font + "\nfalse"));
}

TEST(RegisterBundledFonts, ReportsAFileThatIsNoFont) {
  const TempDir dir;
  const std::string sameSize(assets::blob("fonts/QuenlockMahjongGlyphs.ttf").size(), 'x');
  const std::string font = dir.makeFile("veskara/fonts/QuenlockMahjongGlyphs.ttf", sameSize);
  EXPECT_THAT(registerWithCache(dir.path()), EndsWith("[fonts] could not register " + font + "\nfalse"));
}

TEST(RegisterBundledFonts, SaysNothingWhenAllIsWell) {
  const TempDir dir;
  EXPECT_EQ(registerWithCache(dir.path()), "true");
}

}  // namespace
