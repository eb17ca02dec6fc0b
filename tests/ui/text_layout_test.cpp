// How often pango lays a text out: each time one is given to a layout.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pango/pango.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "support/picture.h"
#include "ui/draw.h"
#include "ui/widgets.h"

namespace {

std::vector<std::string> given;  // in order, also those that pango gives to layouts of its own

}  // namespace

// Stands before pango's own function of that name, and calls it.
extern "C" void pango_layout_set_text(PangoLayout* layout, const char* text, int length) {
  static auto* const setText =
      reinterpret_cast<decltype(pango_layout_set_text)*>(dlsym(RTLD_NEXT, "pango_layout_set_text"));
  if (setText == nullptr) std::abort();
  given.emplace_back(length < 0 ? std::string(text) : std::string(text, static_cast<std::size_t>(length)));
  setText(layout, text, length);
}

namespace {

constexpr const char* kLabel = "Undo";

long layoutsOfLabel(const std::function<void(cairo_t*)>& draw) {
  support::makePicture(300, 80, [&](cairo_t* cr) {
    ui::drawText(cr, 0, 0, "before", {});
    given.clear();
    draw(cr);
  });
  return std::count(given.begin(), given.end(), kLabel);
}

TEST(TextLayouts, ALabelThatFitsIsLaidOutOnce) {
  const ui::TextStyle roomy = {.size = 14, .maxWidth = 280};
  EXPECT_EQ(layoutsOfLabel([&](cairo_t* cr) { ui::drawText(cr, 0, 0, kLabel, roomy); }), 1);
  EXPECT_EQ(layoutsOfLabel([&](cairo_t* cr) { ui::drawTextCentered(cr, 150, 40, kLabel, roomy); }), 1);
  EXPECT_EQ(layoutsOfLabel([&](cairo_t* cr) { ui::drawTextIn(cr, {0, 0, 280, 40}, kLabel, roomy); }), 1);
}

TEST(TextLayouts, ALabelThatIsMeasuredAndDrawnIsLaidOutOnce) {
  EXPECT_EQ(layoutsOfLabel([](cairo_t* cr) {
              ui::Ctx ctx;
              ctx.cr = cr;
              ui::actionButton(ctx, {10, 10, 200, 40}, ui::ActionIcon::Undo, kLabel, false);
            }),
            1);
}

TEST(TextLayouts, AnotherTextOrAnotherLookIsLaidOutAnew) {
  const auto drawn = [](double size, const std::string& text, bool measured) {
    return support::makePicture(300, 80, [&](cairo_t* cr) {
      double w = 0;
      double h = 0;
      if (measured) ui::measureText(cr, "Undo", {.size = 14}, w, h);
      ui::drawText(cr, 5, 5, text, {.size = size});
    });
  };
  for (const auto& [size, text] : {std::pair(14.0, "Redo"), {20.0, "Undo"}, {14.0, "Undo"}}) {
    EXPECT_TRUE(support::samePicture(drawn(size, text, true).get(), drawn(size, text, false).get())) << text;
  }
}

}  // namespace
