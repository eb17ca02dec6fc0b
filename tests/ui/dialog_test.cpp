#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "support/heard.h"
#include "support/picture.h"
#include "support/screen_harness.h"
#include "ui/palette.h"
#include "ui/widget_scenes.h"
#include "ui/widgets.h"

namespace {

using support::heard;
using support::looksLike;
using support::ScreenHarness;
using test::hasColor;
using test::kFelt;
using test::over;

namespace palette = ui::palette;

constexpr std::string_view kTitle = "Delete progress?";
constexpr std::string_view kMessage =
    "All stars, times and pictures of the gallery are lost. This cannot be undone.";

// In a window of 640 x 480 the panel is 420 x 230 at (110, 125). Its buttons span y 293 to 335.
constexpr int kLeftX = 110;
constexpr int kTop = 125;
constexpr ui::Rect kCancel{130, 293, 180, 42};
constexpr ui::Rect kConfirm{330, 293, 180, 42};

int ask(ui::Ctx& ctx, std::string_view title = kTitle, std::string_view message = kMessage,
        std::string_view confirm = "Delete", std::string_view cancel = "Cancel") {
  return ui::confirmDialog(ctx, title, message, confirm, cancel);
}

class ConfirmDialog : public testing::Test {
 protected:
  void SetUp() override { heard().clear(); }

  int answer = 7;
  bool belowClicked = false;
  ScreenHarness harness{[this](ui::Ctx& ctx) {
    answer = ask(ctx);
    belowClicked = ui::plainButton(ctx, {0, 0, 640, 480}, "below", false);
  }};
};

TEST_F(ConfirmDialog, WaitsForAnAnswer) {
  harness.moveTo(200, 310);
  EXPECT_EQ(answer, 0);
  harness.press(200, 310);
  EXPECT_EQ(answer, 0);
  EXPECT_TRUE(heard().empty());
}

TEST_F(ConfirmDialog, IsConfirmedOrCancelledByItsButtonsWithASound) {
  harness.click(200, 310);
  EXPECT_EQ(answer, -1);
  EXPECT_EQ(heard(), std::vector{audio::Sfx::Click});
  harness.click(420, 310);
  EXPECT_EQ(answer, 1);
  EXPECT_EQ(heard().size(), 2U);
}

TEST_F(ConfirmDialog, HasItsButtonsWhereTheyAreDrawn) {
  for (const auto& [rect, expected] : {std::pair{kCancel, -1}, {kConfirm, 1}}) {
    harness.click(rect.x, rect.y);
    EXPECT_EQ(answer, expected);
    harness.click(rect.x + rect.w - 0.1, rect.y + rect.h - 0.1);
    EXPECT_EQ(answer, expected);
    harness.click(rect.x - 0.1, rect.y);
    EXPECT_EQ(answer, 0);
    harness.click(rect.x, rect.y - 0.1);
    EXPECT_EQ(answer, 0);
    harness.click(rect.x + rect.w, rect.y);
    EXPECT_EQ(answer, 0);
    harness.click(rect.x, rect.y + rect.h);
    EXPECT_EQ(answer, 0);
  }
}

TEST_F(ConfirmDialog, IsCancelledByEscapeSilently) {
  harness.key(SDLK_ESCAPE);
  EXPECT_EQ(answer, -1);
  EXPECT_TRUE(heard().empty());
  harness.key(SDLK_RETURN);
  EXPECT_EQ(answer, 0);
}

TEST_F(ConfirmDialog, IsCancelledByEscapeEvenIfConfirmWasClicked) {
  harness.next().keys = {SDLK_SPACE, SDLK_ESCAPE};
  harness.click(420, 310);
  EXPECT_EQ(answer, -1);
  EXPECT_EQ(heard().size(), 1U);
}

TEST_F(ConfirmDialog, LeavesNoClickToWhatComesLater) {
  harness.click(20, 20);
  EXPECT_EQ(answer, 0);
  EXPECT_FALSE(belowClicked);
  harness.click(420, 310);
  EXPECT_FALSE(belowClicked);
  harness.frame();
  EXPECT_TRUE(harness.clickTaken());
  EXPECT_EQ(heard().size(), 1U);
}

TEST(ConfirmDialogClick, IsNotTakenFromAWidgetThatCameFirst) {
  int answer = 7;
  bool clicked = false;
  ScreenHarness harness([&](ui::Ctx& ctx) {
    clicked = ui::plainButton(ctx, kConfirm, "first", false);
    answer = ask(ctx);
  });
  harness.click(420, 310);
  EXPECT_TRUE(clicked);
  EXPECT_EQ(answer, 0);
}

// --- its look ---

ui::CairoSurface dialog(int w, int h, const test::PaintWidget& draw) {
  return test::paintScene(test::Path::Cairo, {.w = w, .h = h}, [&](ui::Ctx& ctx) {
    ctx.in.mx = -1000;
    draw(ctx, {});
  });
}

ui::CairoSurface dialog(std::string_view message, int w = 640, int h = 480) {
  return dialog(w, h, [&](ui::Ctx& ctx, const ui::Rect&) { ask(ctx, kTitle, message); });
}

constexpr std::string_view kLongMessage =
    "Alle Sterne, Bestzeiten und Bilder der Galerie gehen unwiderruflich verloren, ebenso das angefangene "
    "Spiel "
    "mit seinen Tipps und Mischungen. Die Einstellungen bleiben erhalten. Dieser Schritt kann nicht "
    "rückgängig "
    "gemacht werden, auch nicht durch eine erneute Installation des Spiels auf demselben Gerät. Wer seine "
    "Erfolge "
    "behalten möchte, sichert vorher den Ordner mit den Spielständen.";

TEST(ConfirmDialogLook, IsAsItAlwaysWas) {
  EXPECT_TRUE(looksLike(dialog(kMessage).get(), "dialog"));
  const auto lit = dialog(640, 480, [](ui::Ctx& ctx, const ui::Rect&) {
    test::hover(ctx, kConfirm);
    ask(ctx);
  });
  EXPECT_TRUE(looksLike(lit.get(), "dialog_confirm_lit"));
}

TEST(ConfirmDialogLook, FitsANarrowWindowAndALongMessage) {
  EXPECT_TRUE(looksLike(dialog(kMessage, 320, 300).get(), "dialog_narrow"));
  EXPECT_TRUE(looksLike(dialog(kLongMessage).get(), "dialog_long"));
}

TEST(ConfirmDialogLook, IsCentredInRightToLeftLanguagesToo) {
  const auto hebrew = dialog(640, 480, [](ui::Ctx& ctx, const ui::Rect&) {
    ask(ctx, "למחוק את ההתקדמות?",
        "כל הכוכבים, הזמנים והתמונות יימחקו. לא ניתן לבטל פעולה זו. ההגדרות נשמרות.", "מחיקה", "ביטול");
  });
  EXPECT_TRUE(looksLike(hebrew.get(), "dialog_hebrew"));
}

TEST(ConfirmDialogLook, VeilsTheWholeScreen) {
  const auto picture = dialog(kMessage);
  const std::uint32_t veiled = over(kFelt, palette::kVeil, 0.72);
  for (const int x : {0, 639})
    for (const int y : {0, 479}) EXPECT_TRUE(hasColor(picture.get(), x, y, veiled)) << x << ' ' << y;
}

TEST(ConfirmDialogLook, PutsThePanelIntoTheMiddle) {
  const auto picture = dialog("");
  const std::uint32_t veiled = over(kFelt, palette::kVeil, 0.72);
  // The edge is two pixels wide. Its outer half lies outside the panel, on the shadow.
  EXPECT_TRUE(hasColor(picture.get(), kLeftX, kTop + 115, over(palette::kPanel, palette::kGold, 0.6)));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 419, kTop + 115, over(palette::kPanel, palette::kGold, 0.6)));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 210, kTop, over(palette::kPanel, palette::kGold, 0.6)));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 210, kTop + 229, over(palette::kPanel, palette::kGold, 0.6)));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 210, kTop + 100, palette::kPanel));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 210, kTop - 3, veiled));
  // The shadow lies below the panel.
  EXPECT_FALSE(hasColor(picture.get(), kLeftX + 210, kTop + 233, veiled));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 210, kTop + 248, veiled));
  // The brackets are 9 from the edge and 14 long.
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 22, kTop + 9, palette::kGold));
  EXPECT_TRUE(hasColor(picture.get(), kLeftX + 23, kTop + 9, palette::kPanel));
}

TEST(ConfirmDialogLook, HasADarkRedConfirmButton) {
  const auto picture = dialog(kMessage);
  EXPECT_TRUE(hasColor(picture.get(), 420, 297, palette::kConfirm));
  EXPECT_TRUE(hasColor(picture.get(), 220, 297, palette::kPanel));
  const auto lit = dialog(640, 480, [](ui::Ctx& ctx, const ui::Rect&) {
    test::hover(ctx, kConfirm);
    ask(ctx);
  });
  EXPECT_TRUE(hasColor(lit.get(), 420, 297, over(palette::kConfirm, palette::kWhite, 0.07)));
}

// The last row between title and buttons that shows more than bare panel.
int lastRowOfMessage(cairo_surface_t* picture) {
  for (int y = 291; y > kTop + 58; --y) {
    for (int x = kLeftX + 24; x < kLeftX + 396; ++x) {
      if (!hasColor(picture, x, y, palette::kPanel)) return y;
    }
  }
  return 0;
}

TEST(ConfirmDialogLook, KeepsALongMessageAboveTheButtons) {
  std::string message;
  for (int sentences = 1; sentences <= 8; ++sentences) {
    message += "Nothing of what was won so far will be left, and it cannot be undone. ";
    const int last = lastRowOfMessage(dialog(message).get());
    EXPECT_GT(last, kTop + 58) << sentences;
    EXPECT_LE(last, 293 - 8) << sentences;
  }
}

TEST(ConfirmDialogLook, SurvivesTinyWindows) {
  for (const int side : {1, 10, 40, 41, 60, 100, 140}) {
    dialog(kLongMessage, side, side);  // fails if the context ends in an error
    dialog("", side, side);
  }
}

}  // namespace
