// Every text of every screen finds room where it stands, in all languages: it is drawn at the size it was
// meant to have, or nearly so. Sees the machine's own fonts, for a letter of a missing one has no width to
// speak of.

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

// The library's own function of that name.
template <typename Function>
Function* next(const char* name) {
  auto* function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  if (function == nullptr) std::abort();
  return function;
}

std::map<const PangoLayout*, double> sizes;    // as the layout's font has it now
std::map<const PangoLayout*, double> meant;    // as it was when the layout was given its text
std::map<std::string, double> meantOfWrapped;  // a wrapped text shrinks from one layout to the next
std::map<std::string, double> shrunk;          // to which part of its size, of every text that was drawn

struct Span {
  std::string text;
  double left;
  double right;
};
std::vector<Span> spans;  // of every text that was drawn, in pixels

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

// States that show no text that another one does not, and take long to reach.
const std::set<std::string> kNothingNew = {"midgame", "selected", "refused", "hint", "zoomed", "won"};

// So end those that have a ring or a cursor besides.
constexpr std::string_view kFocus = "_focus";

// On a chip of the pages in the smallest window. It is the same in every language.
constexpr const char* kLastPage = "91–100";

struct Room {
  gallery::Window window;
  double least;  // part of its size to which a text may shrink
};

// Draws a state as a new player sees it, and notes the texts.
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

// The longest of what is told there just fits between the middle of the smallest window and the frame.
TEST(SolvedScreen, TellsNothingCloseToTheFrame) {
  constexpr gallery::Window kSmallest = {640, 480, 1};
  constexpr double kFrameLine = 6;  // the inner one of two lies so far within the margin
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
