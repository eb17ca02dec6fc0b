// glyph_font.h: the built-in glyph font for tests that paint tiles.
#pragma once

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <cstdlib>
#include <string>

#include "support/temp_dir.h"
#include "ui/draw.h"
#include "ui/fonts.h"
#include "ui/handles.h"

namespace support {

// The font family that pango picks for this text if asked for the glyph font.
inline std::string familyTakenFor(const std::string& text) {
  const ui::CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
  const ui::CairoContext cr(cairo_create(surface.get()));
  const ui::TextLayout layout(pango_cairo_create_layout(cr.get()));
  const ui::FontDescription wanted(pango_font_description_new());
  pango_font_description_set_family(wanted.get(), ui::kGlyphFamily);
  pango_layout_set_font_description(layout.get(), wanted.get());
  pango_layout_set_text(layout.get(), text.c_str(), -1);
  const auto* run =
      static_cast<const PangoLayoutRun*>(pango_layout_get_line_readonly(layout.get(), 0)->runs->data);
  const ui::FontDescription taken(pango_font_describe(run->item->analysis.font));
  return pango_font_description_get_family(taken.get());
}

// Text drawing reuses its layout, and with it the fonts known at that time, until it draws on another
// context. This draws on two.
inline void startNewTextLayout() {
  const ui::CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1));
  const ui::CairoContext one(cairo_create(surface.get()));
  const ui::CairoContext other(cairo_create(surface.get()));
  for (cairo_t* cr : {one.get(), other.get()}) {
    double w = 0;
    double h = 0;
    ui::measureText(cr, "A", {}, w, h);
  }
}

// Registers the glyph font in a cache directory of its own.
inline bool registerGlyphFont() {
  static const TempDir cache;  // until the process ends: fontconfig keeps the path
  setenv("XDG_CACHE_HOME", cache.path().c_str(), 1);
  unsetenv("VESKARA_ASSET_DIR");
  // A font map that earlier texts used still remembers the old fonts.
  pango_cairo_font_map_set_default(nullptr);
  if (!ui::registerBundledFonts()) return false;
  startNewTextLayout();
  return true;
}

// Base of tests that paint tiles with the glyph font. Fails if the font is not used.
class WithGlyphFont : public testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const bool registered = registerGlyphFont();
    ASSERT_TRUE(registered);
    for (const char* text : {"萬", "一", "東", "中", "發"}) ASSERT_EQ(familyTakenFor(text), ui::kGlyphFamily);
  }
};

}  // namespace support
