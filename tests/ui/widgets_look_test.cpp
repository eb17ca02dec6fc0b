// How the widgets look: compared with committed sheets, and in detail where numbers are known.
#include <gtest/gtest.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include "support/picture.h"
#include "ui/draw.h"
#include "ui/palette.h"
#include "ui/widget_scenes.h"
#include "ui/widgets.h"

namespace {

using support::channelDifference;
using support::looksLike;
using support::samePicture;
using test::hasColor;
using test::hold;
using test::hover;
using test::inkOf;
using test::kFelt;
using test::kMargin;
using test::over;
using test::paintSheet;
using test::PaintWidget;
using test::paintWidget;

namespace palette = ui::palette;

enum class Pointer { Away, Over, Down };

template <class Draw>
PaintWidget with(Pointer pointer, const Draw& draw) {
  return [pointer, draw](ui::Ctx& ctx, const ui::Rect& rect) {
    if (pointer == Pointer::Over) hover(ctx, rect);
    if (pointer == Pointer::Down) hold(ctx, rect);
    draw(ctx, rect);
  };
}

PaintWidget plaque(const ui::PlaqueOpts& opts, Pointer pointer = Pointer::Away,
                   std::string_view label = "New Game") {
  return with(pointer, [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::plaqueButton(ctx, rect, label, opts); });
}

PaintWidget header(bool disabled, Pointer pointer = Pointer::Away, std::string_view label = "Level 12") {
  return with(pointer,
              [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::headerButton(ctx, rect, label, disabled); });
}

PaintWidget back(Pointer pointer = Pointer::Away) {
  return with(pointer, [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::backButton(ctx, rect); });
}

PaintWidget action(ui::ActionIcon icon, std::string_view label, bool disabled = false,
                   Pointer pointer = Pointer::Away) {
  return with(pointer, [=](ui::Ctx& ctx, const ui::Rect& rect) {
    ui::actionButton(ctx, rect, icon, label, disabled);
  });
}

PaintWidget page(bool active, bool badge, Pointer pointer = Pointer::Away,
                 std::string_view label = "Jade Garden") {
  return with(pointer,
              [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::pageChip(ctx, rect, label, active, badge); });
}

PaintWidget chip(bool active, Pointer pointer = Pointer::Away) {
  return with(pointer, [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::chip(ctx, rect, "Deutsch", active); });
}

PaintWidget plain(bool disabled, Pointer pointer = Pointer::Away, std::string_view label = "Statistics") {
  return with(pointer,
              [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::plainButton(ctx, rect, label, disabled); });
}

PaintWidget danger(Pointer pointer = Pointer::Away, std::string_view label = "Delete all") {
  return with(pointer, [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::dangerButton(ctx, rect, label); });
}

PaintWidget slider(double value) {
  return [value](ui::Ctx& ctx, const ui::Rect& rect) { ui::slider(ctx, rect, value); };
}

PaintWidget toggle(bool on, std::string_view label = "Sound") {
  return [=](ui::Ctx& ctx, const ui::Rect& rect) { ui::toggleRow(ctx, rect, label, on); };
}

PaintWidget scrollbar(double contentHeight, double scroll) {
  return [=](const ui::Ctx& ctx, const ui::Rect& rect) { ui::scrollbar(ctx, rect, contentHeight, scroll); };
}

// --- plaque ---

constexpr ui::PlaqueOpts kDark{};
constexpr ui::PlaqueOpts kPrimary{.primary = true};

TEST(Plaque, LooksAsItAlwaysDid) {
  std::vector<PaintWidget> states;
  for (const bool primary : {false, true}) {
    const ui::PlaqueOpts opts{.primary = primary};
    states.push_back(plaque(opts));
    states.push_back(plaque(opts, Pointer::Over));
    states.push_back(plaque(opts, Pointer::Down));
    states.push_back(plaque({.primary = primary, .disabled = true}));
    states.push_back(plaque({.primary = primary, .fontSize = 26}, Pointer::Away, "Gesamtstatistik"));
  }
  EXPECT_TRUE(looksLike(paintSheet({.w = 220, .h = 56, .columns = 5}, states).get(), "widget_plaque"));
}

PaintWidget shining(bool primary, double time, int index = 2, int active = 2) {
  return [=](ui::Ctx& ctx, const ui::Rect& rect) {
    ctx.time = time;
    ui::plaqueButton(ctx, rect, "New Game", {.primary = primary, .shineIndex = index, .shineActive = active});
  };
}

TEST(Plaque, ShineLooksAsItAlwaysDid) {
  std::vector<PaintWidget> moments;
  for (const bool primary : {false, true})
    for (const double time : {0.5, 0.9, 1.4, 4.9}) moments.push_back(shining(primary, time));
  EXPECT_TRUE(looksLike(paintSheet({.w = 220, .h = 56, .columns = 4}, moments).get(), "widget_plaque_shine"));
}

ui::CairoSurface plaquePicture(const PaintWidget& widget) { return paintWidget(220, 56, widget); }

TEST(Plaque, ShineCrossesInTwoSecondsAndSixTenths) {
  const auto still = plaquePicture(plaque(kDark));
  constexpr double kMiddleX = 1.3;  // the time at which the beam is in the middle
  EXPECT_TRUE(hasColor(plaquePicture(shining(false, kMiddleX)).get(), kMargin + 110, kMargin + 12,
                       over(palette::kDarkPlaque, 0xFFF7D7, 0.35)));
  EXPECT_TRUE(hasColor(plaquePicture(shining(true, kMiddleX)).get(), kMargin + 110, kMargin + 12,
                       over(palette::kGold, palette::kWhite, 0.35)));
  // It comes once in three seconds and is gone before the sweep ends.
  EXPECT_TRUE(samePicture(plaquePicture(shining(false, kMiddleX + 3)).get(),
                          plaquePicture(shining(false, kMiddleX)).get()));
  for (const double time : {0.0, 2.55, 2.7, 2.95, 3.0})
    EXPECT_TRUE(samePicture(plaquePicture(shining(false, time)).get(), still.get())) << time;
}

TEST(Plaque, ShineIsThatOfTheOneWhoseTurnItIs) {
  const auto still = plaquePicture(plaque(kDark));
  EXPECT_TRUE(samePicture(plaquePicture(shining(false, 1.3, 1, 2)).get(), still.get()));
  EXPECT_TRUE(samePicture(plaquePicture(shining(false, 1.3, -1, -1)).get(), still.get()));
  EXPECT_FALSE(samePicture(plaquePicture(shining(false, 1.3, 0, 0)).get(), still.get()));
}

TEST(Plaque, ShineStaysWithinItsRoundedRectangle) {
  for (double time = 0; time < 2.6; time += 0.1) {
    const auto lit = plaquePicture(shining(true, time));
    const auto ink = inkOf(lit.get());
    EXPECT_GE(ink.left, kMargin - 1) << time;
    EXPECT_LE(ink.right, kMargin + 221) << time;
    EXPECT_GE(ink.top, kMargin - 1) << time;
    EXPECT_LE(ink.bottom, kMargin + 57) << time;
    for (const int x : {kMargin, kMargin + 219}) EXPECT_TRUE(hasColor(lit.get(), x, kMargin, kFelt)) << time;
  }
}

TEST(Plaque, IsDarkGreenOrGoldAndFaintWhenHeldOrDisabled) {
  struct State {
    PaintWidget widget;
    std::uint32_t color;
  };
  const State states[] = {
      {plaque(kDark), palette::kDarkPlaque},
      {plaque(kPrimary), palette::kGold},
      {plaque(kDark, Pointer::Over), over(palette::kDarkPlaque, palette::kWhite, 0.06)},
      {plaque(kPrimary, Pointer::Over), over(palette::kGold, palette::kWhite, 0.06)},
      {plaque(kDark, Pointer::Down), over(kFelt, palette::kDarkPlaque, 0.78)},
      {plaque(kPrimary, Pointer::Down), over(kFelt, palette::kGold, 0.78)},
      {plaque({.disabled = true}), over(kFelt, palette::kDarkPlaque, 0.45)},
      {plaque({.primary = true, .disabled = true}), over(kFelt, palette::kGold, 0.45)},
  };
  for (const State& state : states)
    EXPECT_TRUE(hasColor(plaquePicture(state.widget).get(), kMargin + 30, kMargin + 28, state.color));
}

TEST(Plaque, HasBracketsInItsCorners) {
  const auto picture = plaquePicture(plaque(kDark));
  for (const int along : {8, 17}) {
    EXPECT_TRUE(hasColor(picture.get(), kMargin + along, kMargin + 7, palette::kGold)) << along;
    EXPECT_TRUE(hasColor(picture.get(), kMargin + 6, kMargin + along, palette::kGold)) << along;
    EXPECT_TRUE(hasColor(picture.get(), kMargin + 219 - along, kMargin + 48, palette::kGold)) << along;
    EXPECT_TRUE(hasColor(picture.get(), kMargin + 213, kMargin + 55 - along, palette::kGold)) << along;
  }
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 18, kMargin + 7, palette::kDarkPlaque));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 6, kMargin + 18, palette::kDarkPlaque));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 12, kMargin + 8, palette::kDarkPlaque));
}

// A line one pixel wide on whole coordinates is shared by two rows.
TEST(Plaque, HasAFrameFourPixelsWithin) {
  const auto picture = plaquePicture(plaque(kPrimary));
  const std::uint32_t half = test::opaque(over(palette::kGold, palette::kDarkBrown, 0.35 / 2));
  for (const int row : {3, 4})
    EXPECT_LE(channelDifference(support::pixelAt(picture.get(), kMargin + 110, kMargin + row), half), 4);
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 110, kMargin + 5, palette::kGold));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 110, kMargin + 2, palette::kGold));
}

// The box of what stands on a plate of 220 x 56, more than `inset` inside its edges.
test::Ink inkOn(std::uint32_t plate, int inset, const PaintWidget& widget) {
  const auto picture = plaquePicture(widget);
  test::Ink ink{1000, 1000, 0, 0};
  for (int x = kMargin + inset; x < kMargin + 220 - inset; ++x) {
    for (int y = kMargin + inset; y < kMargin + 56 - inset; ++y) {
      if (hasColor(picture.get(), x, y, plate)) continue;
      ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
             std::max(ink.bottom, y + 1)};
    }
  }
  return ink;
}

TEST(Plaque, ShrinksItsLabelToLeaveTwentyTwoPixelsOnEitherSide) {
  const auto widthOf = [](std::string_view label) {
    return inkOn(palette::kGold, 20, plaque({.primary = true, .fontSize = 22}, Pointer::Away, label)).w();
  };
  EXPECT_LE(widthOf("Einstellungen Ton"), 220 - 44);
  EXPECT_GE(widthOf("Einstellungen Ton"), 165);
  EXPECT_LE(widthOf("Ton"), 60);
}

// --- buttons of the header and the game ---

TEST(HeaderButtons, LookAsTheyAlwaysDid) {
  const std::vector<PaintWidget> states = {header(false), header(false, Pointer::Over), header(true), back(),
                                           back(Pointer::Over)};
  EXPECT_TRUE(looksLike(paintSheet({.w = 120, .h = 42, .columns = 5}, states).get(), "widget_header"));
}

TEST(HeaderButtons, BackArrowFollowsTheShorterSide) {
  const std::vector<PaintWidget> square = {back(), back(Pointer::Over)};
  EXPECT_TRUE(looksLike(paintSheet({.w = 42, .h = 42, .columns = 2}, square).get(), "widget_back"));
  const auto picture = paintWidget(60, 40, back());
  // The arrow is centred on (32, 20) with a = 12.8: the shaft spans 44.8 to 19.2, with round ends.
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 20, kMargin + 19, palette::kLightText));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 44, kMargin + 19, palette::kLightText));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 16, kMargin + 19, palette::kPanel));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 47, kMargin + 19, palette::kPanel));
}

TEST(ActionButton, LooksAsItAlwaysDid) {
  using ui::ActionIcon;
  const std::vector<PaintWidget> states = {
      action(ActionIcon::Hint, "Hint"),       action(ActionIcon::Shuffle, "Shuffle", false, Pointer::Over),
      action(ActionIcon::Undo, "Undo", true), action(ActionIcon::Shuffle, "Neu mischen"),
      action(ActionIcon::ZoomIn, ""),         action(ActionIcon::ZoomOut, "", false, Pointer::Over),
      action(ActionIcon::Fit, "", true),      action(ActionIcon::Card, ""),
  };
  EXPECT_TRUE(looksLike(paintSheet({.w = 132, .h = 48, .columns = 4}, states).get(), "widget_action"));
}

TEST(ActionButton, StandsInTheMiddleWithAndWithoutALabel) {
  // The icon's square is three quarters of its side of 28 wide, with lines of 0.11 of the side: it reaches
  // 12.04 from the middle.
  const test::Ink alone = inkOn(palette::kPanel, 5, action(ui::ActionIcon::Fit, ""));
  EXPECT_EQ(alone.centreX(), kMargin + 110);
  EXPECT_EQ(alone.centreY(), kMargin + 28);
  EXPECT_EQ(alone.w(), 26);
  const test::Ink labelled = inkOn(palette::kPanel, 5, action(ui::ActionIcon::Fit, "WHHW"));
  EXPECT_NEAR(labelled.centreX(), kMargin + 110, 3);
  EXPECT_GE(labelled.w(), 22 + 8 + 40);
}

// --- chips ---

TEST(PageChip, LooksAsItAlwaysDid) {
  const std::vector<PaintWidget> states = {page(false, false),
                                           page(false, false, Pointer::Over),
                                           page(false, true),
                                           page(true, false),
                                           page(true, false, Pointer::Over),
                                           page(true, true),
                                           page(false, true, Pointer::Away, "Himmelspagode")};
  EXPECT_TRUE(looksLike(paintSheet({.w = 132, .h = 44, .columns = 4}, states).get(), "widget_page_chip"));
}

TEST(PageChip, IsGoldenWhenActiveAndHasNoGlowThen) {
  const auto at = [](const PaintWidget& widget, std::uint32_t color) {
    return hasColor(paintWidget(132, 44, widget).get(), kMargin + 66, kMargin + 10, color);
  };
  EXPECT_TRUE(at(page(false, false), palette::kDarkPlaque));
  EXPECT_TRUE(at(page(false, false, Pointer::Over), over(palette::kDarkPlaque, palette::kWhite, 0.06)));
  EXPECT_TRUE(at(page(true, false), palette::kGold));
  EXPECT_TRUE(at(page(true, false, Pointer::Over), palette::kGold));
}

TEST(PageChip, HasBracketsAndABadgeInItsCorners) {
  const auto bare = paintWidget(132, 44, page(false, false));
  EXPECT_TRUE(hasColor(bare.get(), kMargin + 13, kMargin + 5, palette::kGold));
  EXPECT_TRUE(hasColor(bare.get(), kMargin + 14, kMargin + 5, palette::kDarkPlaque));
  EXPECT_TRUE(hasColor(bare.get(), kMargin + 123, kMargin + 8, palette::kDarkPlaque));
  const auto badged = paintWidget(132, 44, page(false, true));
  EXPECT_TRUE(hasColor(badged.get(), kMargin + 123, kMargin + 8, palette::kGold));
  EXPECT_TRUE(hasColor(badged.get(), kMargin + 120, kMargin + 8, palette::kGold));
  EXPECT_TRUE(hasColor(badged.get(), kMargin + 117, kMargin + 8, palette::kDarkPlaque));
}

// A dot alone would get lost in the gold of the brackets.
TEST(PageChip, IsRingedWithGoldWhereThePlayerIsAtHome) {
  const auto badged = paintWidget(56, 40, page(false, true, Pointer::Away, "1–10"));
  const auto bare = paintWidget(56, 40, page(false, false, Pointer::Away, "1–10"));
  const auto across = {std::pair{28, 0}, {28, 39}, {0, 20}, {55, 20}};
  for (const auto& [x, y] : across) {
    EXPECT_TRUE(hasColor(badged.get(), kMargin + x, kMargin + y, palette::kGold)) << x << ' ' << y;
    EXPECT_FALSE(hasColor(bare.get(), kMargin + x, kMargin + y, palette::kGold)) << x << ' ' << y;
  }
  EXPECT_TRUE(hasColor(badged.get(), kMargin + 5, kMargin + 6, palette::kDarkPlaque)) << "no bracket";
  EXPECT_FALSE(hasColor(bare.get(), kMargin + 5, kMargin + 6, palette::kDarkPlaque));
}

TEST(Chip, LooksAsItAlwaysDid) {
  const std::vector<PaintWidget> states = {chip(false), chip(false, Pointer::Over), chip(true),
                                           chip(true, Pointer::Over)};
  EXPECT_TRUE(looksLike(paintSheet({.w = 110, .h = 34, .columns = 4}, states).get(), "widget_chip"));
}

TEST(Chip, IsAPillAndGoldenWhenActive) {
  const auto inactive = paintWidget(110, 34, chip(false));
  const auto lit = paintWidget(110, 34, chip(false, Pointer::Over));
  const auto active = paintWidget(110, 34, chip(true));
  EXPECT_TRUE(hasColor(inactive.get(), kMargin + 55, kMargin + 4, palette::kPanel));
  EXPECT_TRUE(hasColor(lit.get(), kMargin + 55, kMargin + 4, over(palette::kPanel, palette::kGold, 0.1)));
  EXPECT_TRUE(hasColor(active.get(), kMargin + 55, kMargin + 4, palette::kGold));
  EXPECT_TRUE(hasColor(active.get(), kMargin + 3, kMargin + 17, palette::kGold));
  EXPECT_TRUE(hasColor(active.get(), kMargin + 3, kMargin + 3, kFelt));
  EXPECT_TRUE(samePicture(paintWidget(110, 34, chip(true, Pointer::Over)).get(), active.get()));
}

// --- plain and dangerous ---

TEST(PlainAndDangerButtons, LookAsTheyAlwaysDid) {
  const std::vector<PaintWidget> states = {plain(false),
                                           plain(false, Pointer::Over),
                                           plain(true),
                                           plain(false, Pointer::Away, "Alle Spielstände sichern"),
                                           danger(),
                                           danger(Pointer::Over),
                                           danger(Pointer::Away, "Alle Spielstände löschen")};
  EXPECT_TRUE(looksLike(paintSheet({.w = 160, .h = 42, .columns = 4}, states).get(), "widget_plain_danger"));
}

TEST(PlateLook, HaveTheirColoursInEachState) {
  struct State {
    PaintWidget widget;
    std::uint32_t color;
  };
  const std::uint32_t red = over(kFelt, palette::kDanger, 0.12);
  const State states[] = {
      {header(false), palette::kPanel},
      {header(false, Pointer::Over), over(palette::kPanel, palette::kGold, 0.1)},
      {header(true), over(kFelt, palette::kPanel, 0.4)},
      {back(), palette::kPanel},
      {back(Pointer::Over), over(palette::kPanel, palette::kGold, 0.1)},
      {action(ui::ActionIcon::Undo, "Undo"), palette::kPanel},
      {action(ui::ActionIcon::Undo, "Undo", false, Pointer::Over),
       over(palette::kPanel, palette::kGold, 0.1)},
      {action(ui::ActionIcon::Undo, "Undo", true), over(kFelt, palette::kPanel, 0.4)},
      {plain(false), palette::kPanel},
      {plain(false, Pointer::Over), over(palette::kPanel, palette::kGold, 0.1)},
      {plain(true), over(kFelt, palette::kPanel, 0.45)},
      {danger(), red},
      {danger(Pointer::Over), over(red, palette::kDanger, 0.1)},
  };
  for (const State& state : states) {
    const auto picture = paintWidget(160, 42, state.widget);
    EXPECT_TRUE(hasColor(picture.get(), kMargin + 80, kMargin + 4, state.color));
  }
}

constexpr double kPlateW = 160;
constexpr double kPlateH = 44;

// Counts pixels near the upper left corner where exactly one of the pictures shows bare felt.
int silhouettesDiffer(cairo_surface_t* a, cairo_surface_t* b) {
  int count = 0;
  for (int y = 0; y < kMargin + 22; ++y) {
    for (int x = 0; x < kMargin + 22; ++x) {
      const bool bareA = support::pixelAt(a, x, y) == test::opaque(kFelt);
      const bool bareB = support::pixelAt(b, x, y) == test::opaque(kFelt);
      if (bareA != bareB) ++count;
    }
  }
  return count;
}

// The radius of the rounded rectangle most similar to the plate.
int radiusOf(const PaintWidget& plate, double edgeWidth = 1) {
  const auto picture = paintWidget(kPlateW, kPlateH, plate);
  int best = 0;
  int least = 1000000;
  for (int radius = 0; radius <= 22; ++radius) {
    const auto rounded = paintWidget(kPlateW, kPlateH, [&](const ui::Ctx& ctx, const ui::Rect& rect) {
      ui::fillRoundedRect(ctx.cr, rect, radius, palette::kPanel, 1);
      ui::strokeRoundedRect(ctx.cr, rect, radius, edgeWidth, palette::kPanelEdge, 1);
    });
    const int different = silhouettesDiffer(picture.get(), rounded.get());
    if (different < least) {
      least = different;
      best = radius;
    }
  }
  return best;
}

TEST(PlateLook, HasItsRadius) {
  EXPECT_EQ(radiusOf(header(false)), 8);
  EXPECT_EQ(radiusOf(back()), 8);
  EXPECT_EQ(radiusOf(action(ui::ActionIcon::Hint, "Hint")), 10);
  EXPECT_EQ(radiusOf(plain(false)), 10);
  EXPECT_EQ(radiusOf(danger()), 10);
  EXPECT_EQ(radiusOf(plaque(kDark), 1.5), 12);
  EXPECT_EQ(radiusOf(page(false, false), 1.5), 12);
  EXPECT_EQ(radiusOf(chip(false)), kPlateH / 2);
}

// --- slider, switch, scrollbar ---

TEST(Slider, LooksAsItAlwaysDid) {
  const std::vector<PaintWidget> states = {slider(0),   slider(0.01), slider(0.4),
                                           slider(1.0), slider(1.3),  slider(-0.2)};
  EXPECT_TRUE(looksLike(paintSheet({.w = 200, .h = 30}, states).get(), "widget_slider"));
}

TEST(Slider, ShowsItsValueAlongTheTrack) {
  const auto picture = paintWidget(200, 30, slider(0.4));
  const int cy = kMargin + 15;
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 80, cy, palette::kPanel));      // the knob
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 80 + 10, cy, palette::kGold));  // its outline
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 80 + 13, cy, palette::kPanelEdge));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 40, cy - 3, palette::kGold));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 40, cy + 2, palette::kGold));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 40, cy - 4, kFelt));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 40, cy + 3, kFelt));
  EXPECT_TRUE(hasColor(picture.get(), kMargin + 150, cy - 3, palette::kPanelEdge));
}

TEST(Slider, ShowsValuesOutOfRangeAtItsEnds) {
  EXPECT_TRUE(samePicture(paintWidget(200, 30, slider(1.3)).get(), paintWidget(200, 30, slider(1)).get()));
  EXPECT_TRUE(samePicture(paintWidget(200, 30, slider(-2)).get(), paintWidget(200, 30, slider(0)).get()));
  EXPECT_TRUE(
      samePicture(paintWidget(200, 30, slider(std::nan(""))).get(), paintWidget(200, 30, slider(0)).get()));
}

TEST(Toggle, LooksAsItAlwaysDid) {
  const std::vector<PaintWidget> states = {toggle(true), toggle(false),
                                           toggle(true, "Hinweise während des Spiels")};
  EXPECT_TRUE(looksLike(paintSheet({.w = 240, .h = 44, .columns = 3}, states).get(), "widget_toggle"));
}

TEST(Toggle, ShowsItsKnobAtTheEndOfItsState) {
  const int cy = kMargin + 22;
  const auto on = paintWidget(240, 44, toggle(true));
  const auto off = paintWidget(240, 44, toggle(false));
  const int left = kMargin + 240 - 52;
  EXPECT_TRUE(hasColor(on.get(), left + 48 - 13, cy, palette::kPanel));
  EXPECT_TRUE(hasColor(on.get(), left + 13, cy, palette::kGold));
  EXPECT_TRUE(hasColor(off.get(), left + 13, cy, palette::kPanel));
  EXPECT_TRUE(hasColor(off.get(), left + 48 - 13, cy, palette::kPanelEdge));
  for (const int y : {cy - 13, cy + 12}) EXPECT_TRUE(hasColor(on.get(), left + 24, y, palette::kGold)) << y;
  for (const int y : {cy - 14, cy + 13}) EXPECT_TRUE(hasColor(on.get(), left + 24, y, kFelt)) << y;
}

TEST(Scrollbar, LooksAsItAlwaysDid) {
  const std::vector<PaintWidget> states = {scrollbar(400, 0), scrollbar(400, 100), scrollbar(400, 200),
                                           scrollbar(8000, 3900)};
  EXPECT_TRUE(looksLike(paintSheet({.w = 40, .h = 200, .columns = 4}, states).get(), "widget_scrollbar"));
}

TEST(Scrollbar, HasAThumbAsLongAsWhatIsSeenOfTheContent) {
  struct Case {
    double contentHeight;
    double scroll;
    int top;
    int bottom;
  };
  const Case cases[] = {{400, 0, 0, 100},
                        {400, 200, 100, 200},
                        {400, 100, 50, 150},
                        {20000, 0, 0, 40},
                        {20000, 19800, 160, 200}};
  for (const Case& c : cases) {
    const auto ink = inkOf(paintWidget(40, 200, scrollbar(c.contentHeight, c.scroll)).get());
    EXPECT_EQ(ink.top, kMargin + c.top) << c.contentHeight << ' ' << c.scroll;
    EXPECT_EQ(ink.bottom, kMargin + c.bottom) << c.contentHeight << ' ' << c.scroll;
    EXPECT_EQ(ink.left, kMargin + 33);
    EXPECT_EQ(ink.right, kMargin + 37);
  }
  EXPECT_TRUE(hasColor(paintWidget(40, 200, scrollbar(400, 0)).get(), kMargin + 35, kMargin + 50,
                       over(kFelt, palette::kMutedText, 0.35)));
}

TEST(Scrollbar, IsMissingWhereEverythingFits) {
  for (const double contentHeight : {0.0, 150.0, 200.0, -5.0})
    EXPECT_TRUE(inkOf(paintWidget(40, 200, scrollbar(contentHeight, 0)).get()).empty()) << contentHeight;
}

// --- footer ---

TEST(Footer, LooksAsItAlwaysDid) {
  const auto picture = test::paintScene(test::Path::Cairo, {.w = 300, .h = 60},
                                        [](const ui::Ctx& ctx) { ui::footer(ctx, 56); });
  EXPECT_TRUE(looksLike(picture.get(), "widget_footer"));
}

TEST(Footer, StandsInTheMiddleAboveItsBottom) {
  const auto picture = test::paintScene(test::Path::Cairo, {.w = 300, .h = 100},
                                        [](const ui::Ctx& ctx) { ui::footer(ctx, 90); });
  const auto ink = inkOf(picture.get());
  EXPECT_NEAR(ink.centreX(), 150, 2);
  EXPECT_GE(ink.top, 90 - 32);
  EXPECT_LT(ink.top, 90 - 26);
  EXPECT_GT(ink.bottom, 90 - 8);
  EXPECT_LE(ink.bottom, 90);
}

}  // namespace
