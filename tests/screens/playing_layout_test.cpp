#include "screens/playing_layout.h"

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "resources/i18n.h"
#include "screens/rects.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/felt.h"

namespace {

using test::inside;
using test::overlap;
using ui::Rect;

double rightOf(const Rect& rect) { return rect.x + rect.w; }
double bottomOf(const Rect& rect) { return rect.y + rect.h; }
double middleYOf(const Rect& rect) { return rect.y + rect.h / 2; }

class PlayingLayout : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  std::vector<Rect> headerParts() const {
    std::vector<Rect> parts = {layout.back, layout.label};
    parts.insert(parts.end(), layout.counters.begin(), layout.counters.end());
    parts.push_back(layout.time);
    parts.push_back(layout.pause);
    return parts;
  }
  std::vector<Rect> actionParts() const { return {layout.buttons.begin(), layout.buttons.end()}; }

  const double w = GetParam().first;
  const double h = GetParam().second;
  const screens::PlayingLayout layout = screens::playingLayout(w, h);
};

// Each part ends before the next begins, so none overlap.
void expectInARow(const std::vector<Rect>& parts, const Rect& bar) {
  for (std::size_t i = 0; i < parts.size(); ++i) {
    EXPECT_GT(parts[i].w, 0) << i;
    EXPECT_TRUE(inside(parts[i], bar)) << i;
    EXPECT_EQ(middleYOf(parts[i]), middleYOf(bar)) << i;
    if (i > 0) {
      EXPECT_LE(rightOf(parts[i - 1]), parts[i].x) << i;
    }
  }
}

TEST_P(PlayingLayout, HasLowerBarsInANarrowWindow) {
  EXPECT_EQ(layout.header.h, w < 780 ? 46 : 54);
  EXPECT_EQ(layout.actions.h, w < 780 ? 54 : 64);
}

TEST_P(PlayingLayout, HasTheBoardBetweenTheBars) {
  EXPECT_EQ(layout.board.y, bottomOf(layout.header));
  EXPECT_EQ(bottomOf(layout.board), layout.actions.y);
  EXPECT_EQ(layout.board.x + layout.board.w / 2, w / 2);
  EXPECT_GT(layout.board.h, 200);
}

TEST_P(PlayingLayout, KeepsClearOfTheGoldenFrameAndItsCorners) {
  const double margin = ui::feltFrameMargin(w, h) + 6;
  const Rect within = {margin, margin, w - 2 * margin, h - 2 * margin};
  for (const Rect& rect : {layout.header, layout.board, layout.actions}) EXPECT_TRUE(inside(rect, within));
  EXPECT_GE(layout.header.x, margin + ui::feltCornerSize(w, h));
}

TEST_P(PlayingLayout, HasTheSameMarginsAboveAndBelow) {
  for (const Rect& bar : {layout.header, layout.actions}) EXPECT_DOUBLE_EQ(bar.x, w - rightOf(bar));
  EXPECT_EQ(layout.header.x, layout.actions.x);
  EXPECT_EQ(layout.back.x, layout.header.x);
  EXPECT_DOUBLE_EQ(rightOf(layout.pause), rightOf(layout.header));
  EXPECT_EQ(layout.buttons.front().x, layout.actions.x);
  EXPECT_DOUBLE_EQ(rightOf(layout.buttons.back()), rightOf(layout.actions));
}

TEST_P(PlayingLayout, HasTheHeadersPartsInARow) { expectInARow(headerParts(), layout.header); }

TEST_P(PlayingLayout, HasTheActionsInARowAndAlike) {
  expectInARow(actionParts(), layout.actions);
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_DOUBLE_EQ(layout.buttons[i].w, layout.buttons[i < 3 ? 0 : 3].w) << i;
    EXPECT_EQ(layout.buttons[i].h, layout.buttons[0].h) << i;
  }
}

TEST_P(PlayingLayout, GivesTheHeadersPartsTheirSizes) {
  EXPECT_EQ(layout.back.w, 44);
  EXPECT_EQ(layout.back.h, 40);
  EXPECT_EQ(layout.pause.w, 44);
  EXPECT_EQ(layout.pause.h, 40);
  EXPECT_DOUBLE_EQ(layout.label.x, layout.header.x + 52);
  EXPECT_GE(layout.label.w, 120);
  for (const Rect& counter : layout.counters) EXPECT_EQ(counter.w, 62);
  for (std::size_t i = 1; i < 3; ++i)
    EXPECT_DOUBLE_EQ(layout.counters[i].x, rightOf(layout.counters[i - 1])) << i;
}

TEST_P(PlayingLayout, HasThePanelOfNoMovesInTheBoardsMiddle) {
  for (const int answers : {1, 2}) {
    const screens::PanelLayout panel = screens::noMovesPanel(w, layout.board, answers);
    EXPECT_EQ(panel.panel.w, 340);
    EXPECT_EQ(panel.panel.h, 120);
    EXPECT_TRUE(inside(panel.panel, layout.board));
    EXPECT_DOUBLE_EQ(middleYOf(panel.panel), middleYOf(layout.board));
    EXPECT_DOUBLE_EQ(panel.panel.x, w - rightOf(panel.panel));
    EXPECT_TRUE(inside(panel.second, panel.panel));
    EXPECT_LT(panel.titleTop + 24, panel.second.y) << "the title has a line of its own";
  }
}

TEST_P(PlayingLayout, HasTheAnswersToNoMovesSideBySideOrAloneInTheMiddle) {
  const screens::PanelLayout two = screens::noMovesPanel(w, layout.board, 2);
  EXPECT_TRUE(inside(two.first, two.panel));
  EXPECT_FALSE(overlap(two.first, two.second));
  EXPECT_EQ(two.first.y, two.second.y);
  EXPECT_DOUBLE_EQ(two.first.x - two.panel.x, rightOf(two.panel) - rightOf(two.second));
  const screens::PanelLayout one = screens::noMovesPanel(w, layout.board, 1);
  EXPECT_DOUBLE_EQ(one.second.x - one.panel.x, rightOf(one.panel) - rightOf(one.second));
}

TEST_P(PlayingLayout, HasThePanelOfThePauseInTheWindowsMiddle) {
  const screens::PanelLayout panel = screens::pausePanel(w, h);
  EXPECT_DOUBLE_EQ(panel.panel.x, w - rightOf(panel.panel));
  EXPECT_DOUBLE_EQ(panel.panel.y, h - bottomOf(panel.panel));
  EXPECT_TRUE(inside(panel.first, panel.panel));
  EXPECT_TRUE(inside(panel.second, panel.panel));
  EXPECT_FALSE(overlap(panel.first, panel.second));
  EXPECT_LT(panel.titleTop + 24, panel.first.y);
}

INSTANTIATE_TEST_SUITE_P(Window, PlayingLayout,
                         testing::Values(std::pair(640, 480), std::pair(779, 600), std::pair(780, 600),
                                         std::pair(1100, 760), std::pair(1920, 1080), std::pair(3840, 2160)),
                         [](const auto& param) { return std::to_string(param.param.first); });

TEST(NoMovesPanel, KeepsTwentyPixelsBesideItInATinyWindow) {
  const Rect panel = screens::noMovesPanel(300, {0, 0, 300, 200}, 2).panel;
  EXPECT_EQ(panel.x, 20);
  EXPECT_EQ(panel.w, 260);
}

// --- texts, in the smallest window ---

// A text with its style and the room it has.
struct Place {
  std::string text;
  ui::TextStyle style;
  double fittedTo;  // width it is shrunk to
  double room;      // widest it may be
};

std::vector<Place> placesOfTexts() {
  const screens::PlayingLayout layout = screens::playingLayout(640, 480);
  const screens::PanelLayout stuck = screens::noMovesPanel(640, layout.board, 2);
  const screens::PanelLayout pause = screens::pausePanel(640, 480);
  const ui::TextStyle label = {.size = 17, .bold = true};
  const ui::TextStyle title = {.size = 19, .bold = true};
  const ui::TextStyle button = {.size = 14, .bold = true};
  // A few pixels stay free on either side of icon and text. Letters are placed on whole pixels, so a shrunk
  // text may be slightly wider than requested.
  constexpr double kIconAndGap = 20 + 8;
  constexpr double kLeastInset = 4;
  const auto action = [&](const char* key, const Rect& rect) -> Place {
    return {i18n::tr(key), button, rect.w - 42, rect.w - kIconAndGap - 2 * kLeastInset};
  };
  const auto alone = [](const std::string& text, const ui::TextStyle& style, double room) -> Place {
    return {text, style, room, room};
  };
  return {
      alone(i18n::tr("playing.levelLabel", {{"n", "100"}}), label, layout.label.w),
      action("playing.hint", layout.buttons[0]),
      action("playing.shuffle", layout.buttons[1]),
      action("playing.undo", layout.buttons[2]),
      alone(i18n::tr("playing.noMoves"), title, stuck.panel.w - 40),
      alone(i18n::tr("playing.undo"), button, stuck.first.w - 16),
      alone(i18n::tr("playing.shuffle"), button, stuck.second.w - 16),
      alone(i18n::tr("playing.paused"), title, pause.panel.w - 40),
      alone(i18n::tr("playing.resume"), button, pause.first.w - 16),
      alone(i18n::tr("playing.exit"), button, pause.second.w - 16),
  };
}

// Whether the tests' only font has all the letters. Otherwise the width means nothing.
bool canBeMeasured(cairo_t* cr, const std::string& text) {
  const ui::TextLayout layout(pango_cairo_create_layout(cr));
  const ui::FontDescription font(pango_font_description_from_string("sans 14"));
  pango_layout_set_font_description(layout.get(), font.get());
  pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
  return pango_layout_get_unknown_glyphs_count(layout.get()) == 0;
}

double drawnWidth(cairo_t* cr, const Place& place) {
  ui::TextStyle style = place.style;
  style.maxWidth = place.fittedTo;
  double width = 0;
  double height = 0;
  ui::measureText(cr, place.text, style, width, height);
  return width;
}

// An upper bound for scripts whose letters are at most squares, such as Han, kana and hangul.
double widthOfSquares(const Place& place) {
  const auto letters = std::count_if(place.text.begin(), place.text.end(), [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
  });
  return static_cast<double>(letters) * place.style.size;
}

TEST(PlayingTexts, OfTheActionsAreHardlyShrunkInAnyLanguage) {
  support::makePicture(1, 1, [&](cairo_t* cr) {
    for (const i18n::Language& language : i18n::languages()) {
      i18n::setLanguage(language.code);
      for (const char* key : {"playing.hint", "playing.shuffle", "playing.undo"}) {
        double width = 0;
        double height = 0;
        ui::measureText(cr, i18n::tr(key), {.size = 14, .bold = true}, width, height);
        EXPECT_LE(0.8 * width, screens::playingLayout(640, 480).buttons[0].w - 42)
            << language.code << ' ' << key;
      }
    }
  });
}

TEST(PlayingTexts, FitTheirPlacesInEveryLanguage) {
  std::vector<std::string> unmeasured;
  support::makePicture(1, 1, [&](cairo_t* cr) {
    for (const i18n::Language& language : i18n::languages()) {
      i18n::setLanguage(language.code);
      const bool measured = canBeMeasured(cr, i18n::tr("playing.noMoves"));
      if (!measured) unmeasured.push_back(language.code);
      for (const Place& place : placesOfTexts()) {
        EXPECT_LE(measured ? drawnWidth(cr, place) : widthOfSquares(place), place.room)
            << language.code << ' ' << place.text;
      }
    }
  });
  EXPECT_EQ(unmeasured, (std::vector<std::string>{"ja", "zh", "ko"}));
}

}  // namespace
