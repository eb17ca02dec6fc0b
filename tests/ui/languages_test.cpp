// The fonts that ./play installs contain every letter the game shows, in the shape the reader expects. This
// program uses the machine's own fonts.

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <string>

#include "resources/date_data.h"
#include "resources/i18n.h"
#include "resources/i18n_data.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/handles.h"
#include "ui/title.h"

namespace {

constexpr int kW = 400;
constexpr int kH = 60;

int unknownGlyphs(const std::string& text) {
  int unknown = 0;
  support::makePicture(kW, kH, [&](cairo_t* cr) {
    const ui::TextLayout layout(pango_cairo_create_layout(cr));
    const ui::FontDescription font(pango_font_description_from_string("sans 14"));
    pango_layout_set_font_description(layout.get(), font.get());
    pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
    unknown = pango_layout_get_unknown_glyphs_count(layout.get());
  });
  return unknown;
}

ui::CairoSurface drawn(const std::string& text) {
  return support::makePicture(
      kW, kH, [&](cairo_t* cr) { ui::drawText(cr, 10, 5, text, {.size = 40, .color = 0xFFFFFF}); });
}

TEST(Fonts, HoldEveryLetterOfEveryText) {
  for (const i18n_data::Catalog& catalog : i18n_data::kCatalogs) {
    for (std::size_t i = 0; i < catalog.count; ++i) {
      EXPECT_EQ(unknownGlyphs(catalog.entries[i].text), 0) << catalog.code << " " << catalog.entries[i].key;
    }
  }
}

TEST(Fonts, HoldEveryNativeNameAndDate) {
  for (const i18n::Language& language : i18n::languages()) {
    EXPECT_EQ(unknownGlyphs(language.nativeName), 0) << language.code;
    i18n::setLanguage(language.code);
    for (int month = 1; month <= 12; ++month) {
      for (int weekday = 0; weekday < 7; ++weekday) {
        const std::string date = i18n::formatLongDate(2024, month, 28, weekday);
        EXPECT_EQ(unknownGlyphs(date), 0) << date;
      }
    }
  }
}

TEST(Titles, LookTheSameInEveryLanguage) {
  const auto title = [](const std::string& language) {
    i18n::setLanguage(language);
    return support::makePicture(kW, kH, [](cairo_t* cr) {
      ui::Ctx ctx;
      ctx.cr = cr;
      ui::drawGlowTitle(ctx, kW / 2.0, 5, "Quenlock's", 40);
    });
  };
  const ui::CairoSurface english = title("en");
  for (const i18n::Language& language : i18n::languages())
    EXPECT_TRUE(support::samePicture(title(language.code).get(), english.get())) << language.code;
}

TEST(Fonts, LackALetterThatNoneHas) { EXPECT_GT(unknownGlyphs("\U0010FFFD"), 0); }

TEST(Text, TakesTheShapesOfTheReadersLanguage) {
  const std::string han = "直骨角";
  i18n::setLanguage("ja");
  const ui::CairoSurface japanese = drawn(han);
  i18n::setLanguage("zh");
  EXPECT_FALSE(support::samePicture(drawn(han).get(), japanese.get(), 60));
  i18n::setLanguage("ja");
  EXPECT_TRUE(support::samePicture(drawn(han).get(), japanese.get(), 0));
}

struct Size {
  double w;
  double h;
};

Size sizeOf(const std::string& text) {
  Size size = {};
  support::makePicture(8, 8, [&](cairo_t* cr) { ui::measureText(cr, text, {}, size.w, size.h); });
  return size;
}

double wrappedHeight(double width, const std::string& text) {
  double height = 0;
  support::makePicture(8, 8, [&](cairo_t* cr) { height = ui::wrappedTextHeight(cr, width, text, {}); });
  return height;
}

// The column has room for a word and the first syllables of the next.
TEST(WrappedText, BreaksKoreanBetweenWords) {
  const std::string word = "마작패를";
  const double column = 1.7 * sizeOf(word).w;
  const double line = sizeOf(word).h;
  i18n::setLanguage("ko");
  EXPECT_NEAR(wrappedHeight(column, word + " " + word + " " + word), 3 * line, 1);
  i18n::setLanguage("ja");
  EXPECT_NEAR(wrappedHeight(column, word + " " + word + " " + word), 2 * line, 1);
}

// Even a single word is broken if it is wider than its column.
TEST(WrappedText, BreaksAKoreanWordThatIsWiderThanItsColumn) {
  i18n::setLanguage("ko");
  const std::string word = "마작패를";
  EXPECT_NEAR(wrappedHeight(0.6 * sizeOf(word).w, word), 2 * sizeOf(word).h, 1);
}

}  // namespace
