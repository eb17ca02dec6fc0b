// Tests of the keyboard's focus, on screens made of rectangles.
#include "ui/focus.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/heard.h"
#include "support/picture.h"
#include "support/screen_harness.h"
#include "ui/pointer_block.h"
#include "ui/widgets.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::Rect;

// Two rows of three controls, and a wide one below.
const std::vector<Rect> kRows = {{20, 20, 60, 30},  {100, 20, 60, 30}, {180, 20, 60, 30}, {20, 70, 60, 30},
                                 {100, 70, 60, 30}, {180, 70, 60, 30}, {20, 120, 220, 30}};
constexpr Rect kQuestion = {300, 300, 80, 30};
constexpr Rect kView = {0, 200, 640, 100};

class FocusTest : public testing::Test {
 protected:
  FocusTest() { support::heard().clear(); }

  // Runs one frame of the screen below.
  void update(ui::Ctx& ctx) {
    worked.clear();
    discarded.clear();
    focus.frame(ctx, spaceWorks, [&] { screen(ctx); });
  }
  void screen(ui::Ctx& ctx) {
    body(ctx);
    if (asking) answer = ui::confirmDialog(ctx, "Title", "Message", "Yes", "No");
  }
  void body(ui::Ctx& ctx) {
    const ui::InputBlock question(ctx, asking);
    if (main) ui::nameMain(ctx, controls[*main]);
    for (std::size_t i = 0; i < controls.size(); ++i) {
      if (ui::isWorked(ctx, controls[i])) worked.push_back(i);
      if (ui::isDiscarded(ctx, controls[i])) discarded.push_back(i);
    }
    if (slider) value = ui::slider(ctx, *slider, value);
  }

  void key(int code) { harness.key(code); }
  void keys(const std::vector<int>& codes) {
    harness.next().keys = codes;
    harness.next().freshKeys = codes;
    harness.frame();
  }
  void backTab() {
    harness.next().shift = true;
    key(SDLK_TAB);
  }
  // Index of the control inside the ring, or -1.
  int ringed() const {
    const auto ring = focus.ring();
    for (std::size_t i = 0; ring && i < controls.size(); ++i) {
      if (ring->contains(controls[i].x, controls[i].y) &&
          ring->contains(controls[i].x + controls[i].w, controls[i].y + controls[i].h)) {
        return static_cast<int>(i);
      }
    }
    return -1;
  }
  int ringedAfter(int code) {
    key(code);
    return ringed();
  }

  std::vector<Rect> controls = kRows;
  std::optional<std::size_t> main;
  std::optional<Rect> slider;
  double value = 0.5;
  bool asking = false;
  bool spaceWorks = true;
  int answer = 0;
  std::vector<std::size_t> worked;
  std::vector<std::size_t> discarded;

  ui::Focus focus;
  support::ScreenHarness harness{[this](ui::Ctx& ctx) { update(ctx); }};
};

TEST_F(FocusTest, NothingIsRingedUntilAKeyIsUsed) {
  for (int i = 0; i < 3; ++i) harness.frame();
  EXPECT_FALSE(focus.ring());
  key(SDLK_h);
  EXPECT_FALSE(focus.ring());
  key(SDLK_TAB);
  EXPECT_TRUE(focus.ring());
}

TEST_F(FocusTest, TabGoesThroughAllInTheirOrderAndBegins) {
  harness.frame();
  for (const int expected : {0, 1, 2, 3, 4, 5, 6, 0}) EXPECT_EQ(ringedAfter(SDLK_TAB), expected);
}

TEST_F(FocusTest, ShiftTabGoesBack) {
  harness.frame();
  for (const int expected : {6, 5, 4, 3, 2, 1, 0, 6}) {
    backTab();
    EXPECT_EQ(ringed(), expected);
  }
}

TEST_F(FocusTest, ArrowsGoToTheNearestInTheirDirection) {
  harness.frame();
  EXPECT_EQ(ringedAfter(SDLK_RIGHT), 0) << "the first one shows where it begins";
  EXPECT_EQ(ringedAfter(SDLK_RIGHT), 1);
  EXPECT_EQ(ringedAfter(SDLK_DOWN), 4);
  EXPECT_EQ(ringedAfter(SDLK_RIGHT), 5);
  EXPECT_EQ(ringedAfter(SDLK_DOWN), 6);
  EXPECT_EQ(ringedAfter(SDLK_UP), 4) << "of three alike the middle one";
  EXPECT_EQ(ringedAfter(SDLK_LEFT), 3);
  EXPECT_EQ(ringedAfter(SDLK_UP), 0);
}

TEST_F(FocusTest, ArrowWithNothingAheadStays) {
  harness.frame();
  key(SDLK_DOWN);
  EXPECT_EQ(ringedAfter(SDLK_UP), 0);
  EXPECT_EQ(ringedAfter(SDLK_LEFT), 0);
  key(SDLK_RIGHT);
  key(SDLK_RIGHT);
  EXPECT_EQ(ringedAfter(SDLK_RIGHT), 2);
}

TEST_F(FocusTest, ArrowsGoStraightRatherThanAside) {
  controls = {{200, 200, 40, 40}, {245, 250, 40, 40}, {300, 200, 40, 40}};
  harness.frame();
  key(SDLK_RIGHT);
  EXPECT_EQ(ringedAfter(SDLK_RIGHT), 2);
}

TEST_F(FocusTest, SeveralKeysOfAFrameCountOneAfterTheOther) {
  harness.frame();
  keys({SDLK_TAB, SDLK_TAB, SDLK_DOWN, SDLK_RETURN});
  EXPECT_THAT(worked, ElementsAre(4U));
}

TEST_F(FocusTest, EnterAndSpaceWorkTheOneThatIsRinged) {
  harness.frame();
  key(SDLK_TAB);
  key(SDLK_TAB);
  for (const int code : {SDLK_RETURN, SDLK_KP_ENTER, SDLK_SPACE}) {
    key(code);
    EXPECT_THAT(worked, ElementsAre(1U));
    harness.frame();
    EXPECT_THAT(worked, IsEmpty()) << "once";
  }
}

TEST_F(FocusTest, SpaceWorksNothingWhereItMeansSomethingElse) {
  spaceWorks = false;
  harness.frame();
  key(SDLK_TAB);
  key(SDLK_SPACE);
  EXPECT_THAT(worked, IsEmpty());
  key(SDLK_RETURN);
  EXPECT_THAT(worked, ElementsAre(0U));
}

TEST_F(FocusTest, HeldKeyWorksOnceButMovesOn) {
  harness.frame();
  key(SDLK_TAB);
  for (const int code : {SDLK_RETURN, SDLK_SPACE, SDLK_DELETE}) {
    harness.next().keys = {code};
    harness.frame();
    EXPECT_THAT(worked, IsEmpty());
    EXPECT_THAT(discarded, IsEmpty());
  }
  harness.next().keys = {SDLK_TAB};
  harness.frame();
  EXPECT_EQ(ringed(), 1);
}

TEST_F(FocusTest, EnterWithoutARingWorksTheMainAction) {
  main = 5;
  harness.frame();
  key(SDLK_SPACE);
  EXPECT_THAT(worked, IsEmpty());
  key(SDLK_RETURN);
  EXPECT_THAT(worked, ElementsAre(5U));
  EXPECT_FALSE(focus.ring());
  key(SDLK_TAB);
  key(SDLK_RETURN);
  EXPECT_THAT(worked, ElementsAre(0U));
}

TEST_F(FocusTest, EnterWithoutARingAndAMainActionWorksNothing) {
  harness.frame();
  key(SDLK_RETURN);
  EXPECT_THAT(worked, IsEmpty());
}

TEST_F(FocusTest, ArrowsBeginAtTheMainAction) {
  main = 4;
  harness.frame();
  EXPECT_EQ(ringedAfter(SDLK_DOWN), 4);
}

TEST_F(FocusTest, RingIsGoneWithTheNextMovementOfTheMouse) {
  main = 6;
  harness.frame();
  key(SDLK_TAB);
  harness.moveTo(500, 400);
  EXPECT_FALSE(focus.ring());
  key(SDLK_RETURN);
  EXPECT_THAT(worked, ElementsAre(6U));
  EXPECT_EQ(ringedAfter(SDLK_TAB), 0) << "from the beginning";
}

TEST_F(FocusTest, ClickWorksAsEver) {
  harness.click(110, 30);
  EXPECT_THAT(worked, ElementsAre(1U));
}

TEST_F(FocusTest, ClickAndKeyOfOneFrameWorkOneControl) {
  harness.frame();
  key(SDLK_TAB);
  harness.next().keys = {SDLK_RETURN};
  harness.next().freshKeys = {SDLK_RETURN};
  harness.next().mx = 110;
  harness.next().my = 30;
  harness.frame();
  harness.moveTo(110, 30);
  key(SDLK_TAB);
  harness.next().keys = {SDLK_RETURN};
  harness.next().freshKeys = {SDLK_RETURN};
  harness.next().clicked = true;
  harness.frame();
  EXPECT_EQ(worked.size(), 1U);
}

TEST_F(FocusTest, DeleteDiscardsTheOneThatIsRinged) {
  harness.frame();
  key(SDLK_DELETE);
  EXPECT_THAT(discarded, IsEmpty());
  key(SDLK_TAB);
  key(SDLK_TAB);
  key(SDLK_DELETE);
  EXPECT_THAT(discarded, ElementsAre(1U));
  harness.rightClick(30, 80);
  EXPECT_THAT(discarded, ElementsAre(3U));
}

// A control that becomes disabled is gone in this sense.
TEST_F(FocusTest, ControlThatIsGoneIsNotRingedAndItsNeighboursAreNext) {
  harness.frame();
  for (int i = 0; i < 3; ++i) key(SDLK_TAB);
  controls.erase(controls.begin() + 2);
  harness.frame();
  EXPECT_FALSE(focus.ring());
  key(SDLK_RETURN);
  EXPECT_THAT(worked, IsEmpty());
  EXPECT_EQ(ringedAfter(SDLK_TAB), 2) << "the one that came after it";
  controls = kRows;
  EXPECT_EQ(ringedAfter(SDLK_TAB), 4);
}

TEST_F(FocusTest, RingFollowsItsControlToAnotherPlace) {
  harness.frame();
  for (int i = 0; i < 5; ++i) key(SDLK_TAB);
  for (Rect& control : controls) control.x += 200;
  harness.frame();
  EXPECT_EQ(ringed(), 4);
}

TEST_F(FocusTest, SliderTakesLeftAndRightInStepsOfFive) {
  slider = Rect{300, 100, 100, 28};
  controls = {{300, 20, 100, 30}, {420, 100, 60, 28}, {300, 180, 100, 30}};
  harness.frame();
  backTab();
  EXPECT_EQ(value, 0.5);
  key(SDLK_RIGHT);
  EXPECT_DOUBLE_EQ(value, 0.55);
  keys({SDLK_LEFT, SDLK_LEFT});
  EXPECT_DOUBLE_EQ(value, 0.45);
  value = 0.98;
  key(SDLK_RIGHT);
  EXPECT_DOUBLE_EQ(value, 1);
  value = 0.02;
  key(SDLK_LEFT);
  EXPECT_DOUBLE_EQ(value, 0);
  EXPECT_EQ(ringedAfter(SDLK_UP), 0);
  key(SDLK_LEFT);
  EXPECT_DOUBLE_EQ(value, 0) << "only with the focus on it";
}

TEST_F(FocusTest, QuestionHasTheKeyboardAndEnterCancels) {
  main = 0;
  harness.frame();
  asking = true;
  harness.frame();
  key(SDLK_RETURN);
  EXPECT_EQ(answer, -1);
  EXPECT_THAT(worked, IsEmpty());
}

TEST_F(FocusTest, QuestionsButtonsAreRingedOneAfterTheOther) {
  harness.frame();
  key(SDLK_TAB);
  asking = true;
  harness.frame();
  EXPECT_FALSE(focus.ring()) << "what is covered has none";
  key(SDLK_TAB);
  const auto cancel = focus.ring();
  key(SDLK_TAB);
  const auto confirm = focus.ring();
  ASSERT_TRUE(cancel && confirm);
  EXPECT_LT(cancel->x, confirm->x);
  EXPECT_EQ(cancel->y, confirm->y);
  key(SDLK_TAB);
  EXPECT_EQ(focus.ring()->x, cancel->x);
  key(SDLK_RIGHT);
  key(SDLK_RETURN);
  EXPECT_EQ(answer, 1);
  asking = false;
  harness.frame();
  EXPECT_EQ(ringed(), 0) << "back where it was";
}

TEST_F(FocusTest, RingIsGoldAndDarkAboutTheControl) {
  harness.frame();
  key(SDLK_TAB);
  const Rect ring = *focus.ring();
  EXPECT_LT(ring.x, 20);
  EXPECT_GT(ring.x + ring.w, 80);
  const int middle = 35;
  EXPECT_EQ(harness.colorAt(static_cast<int>(ring.x) + 2, middle), 0xE8B84BU);
  EXPECT_EQ(harness.colorAt(25, middle), 0U) << "nothing within";
}

// A list of rows, 40 high with gaps of 10, in a view 100 high.
class FocusInList : public testing::Test {
 protected:
  static constexpr int kRowsInList = 10;

  void update(ui::Ctx& ctx) {
    focus.frame(ctx, true, [&] {
      if (ui::isWorked(ctx, kQuestion)) worked = -2;
      const double before = scroll;
      scroll += ctx.focus->hiddenPart(kView);
      ui::applyScroll(ctx, kView, kRowsInList * 50 - 10, scroll);
      ctx.focus->follow(kView, scroll - before);
      ctx.focus->beginView(kView);
      for (int i = 0; i < kRowsInList; ++i)
        if (ui::isWorked(ctx, row(i))) worked = i;
      ctx.focus->endView();
    });
  }
  Rect row(int i) const { return {100, kView.y + 50 * i - scroll, 200, 40}; }
  bool isWhole(int i) const { return row(i).y >= kView.y && row(i).y + row(i).h <= kView.y + kView.h; }

  double scroll = 0;
  int worked = -1;
  ui::Focus focus;
  support::ScreenHarness harness{[this](ui::Ctx& ctx) { update(ctx); }};
};

TEST_F(FocusInList, ShowsEachRowWholeOnTheWayDownAndUp) {
  harness.frame();
  harness.key(SDLK_TAB);
  for (int i = 0; i < kRowsInList; ++i) {
    harness.key(SDLK_TAB);
    EXPECT_TRUE(isWhole(i)) << i;
    EXPECT_TRUE(focus.ring()->contains(row(i).x, row(i).y)) << i;
  }
  for (int i = kRowsInList - 2; i >= 0; --i) {
    harness.key(SDLK_UP);
    EXPECT_TRUE(isWhole(i)) << i;
  }
  harness.key(SDLK_DOWN);
  harness.key(SDLK_RETURN);
  EXPECT_EQ(worked, 1);
}

TEST_F(FocusInList, WorksTheRowThatTheSameFrameScrolls) {
  harness.frame();
  harness.next().keys = {SDLK_TAB, SDLK_TAB, SDLK_TAB, SDLK_TAB, SDLK_TAB, SDLK_RETURN};
  harness.next().freshKeys = harness.next().keys;
  harness.frame();
  EXPECT_EQ(worked, 3);
}

TEST_F(FocusInList, RingLiesAboutWhatIsSeenOfARow) {
  harness.frame();
  harness.key(SDLK_TAB);
  harness.key(SDLK_TAB);
  harness.next().mx = 150;
  harness.next().my = 250;
  harness.frame();
  harness.key(SDLK_TAB);
  harness.key(SDLK_TAB);
  harness.next().wheel = -0.5;
  harness.frame();
  ASSERT_EQ(scroll, 30);
  ASSERT_TRUE(focus.ring());
  EXPECT_GT(focus.ring()->y, kView.y - 10);
  EXPECT_LT(focus.ring()->h, 30);
  harness.next().wheel = -5;
  harness.frame();
  EXPECT_FALSE(focus.ring()) << "nothing is seen of it";
}

TEST_F(FocusInList, ArrowFromBesideComesToARowThatIsSeen) {
  harness.frame();
  harness.key(SDLK_TAB);
  harness.key(SDLK_UP);
  harness.key(SDLK_RETURN);
  EXPECT_EQ(worked, 1) << "the lower one of those in view";
}

}  // namespace
