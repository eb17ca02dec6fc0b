// Work that must not be repeated in each frame: laying out texts, which pango does when a layout gets a text,
// and stroking the rings of a shadow.

#include <cairo.h>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pango/pango.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "resources/i18n.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/widgets.h"

namespace {

std::vector<std::string> given;  // texts set, in order; also those that pango sets in its own layouts

int rings = 0;

// The library's own function of this name.
template <typename Function>
Function* next(const char* name) {
  auto* function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  if (function == nullptr) std::abort();
  return function;
}

}  // namespace

extern "C" void cairo_stroke_preserve(cairo_t* cr) {
  static auto* const stroke = next<decltype(cairo_stroke_preserve)>("cairo_stroke_preserve");
  ++rings;
  stroke(cr);
}

extern "C" void pango_layout_set_text(PangoLayout* layout, const char* text, int length) {
  static auto* const setText = next<decltype(pango_layout_set_text)>("pango_layout_set_text");
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

const std::string kMessage(600, 'm');

ui::CairoSurface question(const std::string& title, const std::string& message, double scale = 1) {
  return support::makePicture(900, 700, [&](cairo_t* cr) {
    cairo_scale(cr, scale, scale);
    ui::Ctx ctx;
    ctx.cr = cr;
    ctx.w = 640;
    ctx.h = 480;
    ctx.in.mx = -1;
    ui::confirmDialog(ctx, title, message, "Yes", "No");
  });
}

TEST(Question, IsStrokedAndLaidOutInItsFirstFrameAlone) {
  const auto first = question("Really?", kMessage);
  EXPECT_GT(rings, 0);
  EXPECT_GT(std::count(given.begin(), given.end(), kMessage), 0);
  rings = 0;
  given.clear();
  const auto second = question("Really?", kMessage);
  EXPECT_EQ(rings, 0);
  EXPECT_EQ(std::count(given.begin(), given.end(), kMessage), 0);
  EXPECT_TRUE(support::samePicture(first.get(), second.get()));
}

TEST(Question, IsPaintedAnewWhenItLooksDifferent) {
  const auto differs = [](const ui::CairoSurface& a, const ui::CairoSurface& b) {
    return !support::samePicture(a.get(), b.get());
  };
  const auto first = question("Really?", "All is lost.");
  EXPECT_TRUE(differs(question("Really", "All is lost."), first));
  EXPECT_TRUE(differs(question("Really?", "All is lost!"), first));
  EXPECT_TRUE(differs(question("Really?", "All is lost.", 1.25), first));
  EXPECT_FALSE(differs(question("Really?", "All is lost."), first));
}

TEST(Question, IsPaintedAnewInAnotherLanguage) {
  question("Really?", kMessage);
  i18n::setLanguage("ja");
  given.clear();
  question("Really?", kMessage);
  EXPECT_GT(std::count(given.begin(), given.end(), kMessage), 0);
}

}  // namespace
