// Every text of every screen fits its place in all languages: it is drawn at its intended size or slightly
// smaller. Uses the machine's own fonts: a letter missing from the fonts has no meaningful width.

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "gallery/states.h"
#include "gallery/studio.h"
#include "resources/i18n.h"
#include "support/data_home.h"
#include "ui/felt.h"

namespace {

// The library's real function of this name.
template <typename Function>
Function* next(const char* name) {
  auto* function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  if (function == nullptr) std::abort();
  return function;
}

std::map<const PangoLayout*, double> sizes;    // the layout's current font size
std::map<const PangoLayout*, double> meant;    // its font size when it was given its text
std::map<std::string, double> meantOfWrapped;  // by text: a wrapped text shrinks from layout to layout
std::map<std::string, double> shrunk;          // by text: drawn size relative to the intended one

struct Span {
  std::string text;
  double left;
  double right;
};
std::vector<Span> spans;  // horizontal extents of all texts drawn, in pixels

bool isWrapped(PangoLayout* layout) { return pango_layout_get_width(layout) >= 0; }

void noteDrawn(PangoLayout* layout) {
  const std::string text = pango_layout_get_text(layout);
  const double part = sizes[layout] / (isWrapped(layout) ? meantOfWrapped[text] : meant[layout]);
  const auto noted = shrunk.emplace(text, part).first;
  noted->second = std::min(noted->second, part);
}

void notePlace(cairo_t* cr, PangoLayout* layout) {
  double x = 0;
  double y = 0;
  cairo_get_current_point(cr, &x, &y);
  PangoRectangle ink;
  pango_layout_get_pixel_extents(layout, &ink, nullptr);
  spans.push_back({pango_layout_get_text(layout), x + ink.x, x + ink.x + ink.width});
}

}  // namespace

extern "C" void pango_layout_set_font_description(PangoLayout* layout, const PangoFontDescription* font) {
  static auto* const setFont =
      next<decltype(pango_layout_set_font_description)>("pango_layout_set_font_description");
  sizes[layout] = pango_font_description_get_size(font);
  setFont(layout, font);
}

extern "C" void pango_layout_set_text(PangoLayout* layout, const char* text, int length) {
  static auto* const setText = next<decltype(pango_layout_set_text)>("pango_layout_set_text");
  setText(layout, text, length);
  meant[layout] = sizes[layout];
  double& largest = meantOfWrapped[pango_layout_get_text(layout)];
  if (isWrapped(layout)) largest = std::max(largest, sizes[layout]);
}

extern "C" void pango_cairo_show_layout(cairo_t* cr, PangoLayout* layout) {
  static auto* const show = next<decltype(pango_cairo_show_layout)>("pango_cairo_show_layout");
  noteDrawn(layout);
  notePlace(cr, layout);
  show(cr, layout);
}

namespace {

// These states take long to reach and show no text that others do not.
const std::set<std::string> kNothingNew = {"midgame", "selected", "refused", "hint", "zoomed", "won"};

// Suffix of the states that only add a focus ring or a cursor.
constexpr std::string_view kFocus = "_focus";

// The label of a page chip. It shrinks in the smallest window and is the same in every language.
constexpr const char* kLastPage = "91–100";

struct Room {
  gallery::Window window;
  double least;  // how far a text may shrink, relative to its size
};

// Draws a state for a player without files and records its texts.
void draw(const gallery::Studio& studio, const gallery::Window& window, const gallery::State& state) {
  const support::DataHome noFiles;
  shrunk.clear();
  spans.clear();
  gallery::Sitting sitting(studio, window, state.make());
  state.reach(sitting);
}

class Texts : public testing::TestWithParam<Room> {};

TEST_P(Texts, FitWhereTheyStandInEveryLanguage) {
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  const gallery::Studio studio;
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    for (const gallery::State& state : gallery::states()) {
      if (kNothingNew.contains(state.name) || std::string_view(state.name).ends_with(kFocus)) continue;
      draw(studio, GetParam().window, state);
      EXPECT_FALSE(shrunk.empty()) << state.name;
      shrunk.erase(kLastPage);
      for (const auto& [text, part] : shrunk)
        EXPECT_GE(part, GetParam().least) << language.code << " " << state.name << ": " << text;
    }
  }
  i18n::setLanguage("en");
}

// In the smallest window the longest of these texts barely fits between the middle and the frame.
TEST(SolvedScreen, TellsNothingCloseToTheFrame) {
  constexpr gallery::Window kSmallest = {640, 480, 1};
  constexpr double kFrameLine = 6;  // distance of the frame's inner line from the margin
  constexpr double kClear = 6;
  const double clear = ui::feltFrameMargin(kSmallest.w, kSmallest.h) + kFrameLine + kClear;
  setenv("SDL_VIDEODRIVER", "dummy", 1);
  const gallery::Studio studio;
  const auto states = gallery::states();
  const auto solved = std::find_if(states.begin(), states.end(), [](const gallery::State& state) {
    return std::string(state.name) == "solved_one";
  });
  ASSERT_NE(solved, states.end());
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    draw(studio, kSmallest, *solved);
    for (const Span& span : spans) {
      EXPECT_GE(span.left, clear) << language.code << ": " << span.text;
      EXPECT_LE(span.right, kSmallest.w - clear) << language.code << ": " << span.text;
    }
  }
  i18n::setLanguage("en");
}

INSTANTIATE_TEST_SUITE_P(Window, Texts, testing::Values(Room{{1100, 760, 1}, 0.8}, Room{{640, 480, 1}, 0.7}),
                         [](const auto& param) { return std::to_string(param.param.window.w); });

}  // namespace
