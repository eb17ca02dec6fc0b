#include "app/events.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

SDL_Event keyEvent(Uint32 type, SDL_Keycode sym, SDL_Scancode scancode, Uint16 mod = KMOD_NONE) {
  SDL_Event event = {};
  event.type = type;
  event.key.keysym = {.scancode = scancode, .sym = sym, .mod = mod, .unused = 0};
  return event;
}

SDL_Event buttonEvent(Uint32 type, int button) {
  SDL_Event event = {};
  event.type = type;
  event.button.button = static_cast<Uint8>(button);
  return event;
}

SDL_Event windowEvent(Uint8 what, int data1 = 0, int data2 = 0) {
  SDL_Event event = {};
  event.type = SDL_WINDOWEVENT;
  event.window.event = what;
  event.window.data1 = data1;
  event.window.data2 = data2;
  return event;
}

SDL_Event wheelEvent(int x, int y) {
  SDL_Event event = {};
  event.type = SDL_MOUSEWHEEL;
  event.wheel.x = x;
  event.wheel.y = y;
  return event;
}

// The characters that the keys of the current layout produce without Shift.
const std::u32string kLatin = U"abcdefghijklmnopqrstuvwxyz0123456789-=;'/";
std::u32string layout = kLatin;

}  // namespace

// Replaces SDL's function in this program. Only matters whether such a key exists.
SDL_Scancode SDL_GetScancodeFromKey(SDL_Keycode code) {
  const bool carried = layout.find(static_cast<char32_t>(code)) != std::u32string::npos;
  return carried ? SDL_SCANCODE_A : SDL_SCANCODE_UNKNOWN;
}

namespace {

// Feeds events frame by frame.
class Events : public testing::Test {
 protected:
  ~Events() override { layout = kLatin; }

  void take(const SDL_Event& event) { reader.handle(event, windowFlags, now, ctx); }
  void press(SDL_Keycode sym, SDL_Scancode scancode, Uint16 mod = KMOD_NONE) {
    take(keyEvent(SDL_KEYDOWN, sym, scancode, mod));
  }
  // A left release in its own frame at this time.
  void releaseAt(double time) {
    reader.beginFrame(ctx);
    now = time;
    take(buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT));
  }
  int codeOf(SDL_Keycode sym, SDL_Scancode scancode, Uint16 mod = KMOD_NONE) {
    return ui::keyCode({.scancode = scancode, .sym = sym, .mod = mod, .unused = 0});
  }

  store::Settings settings;
  ui::EventReader reader{settings};
  ui::Ctx ctx;
  Uint32 windowFlags = SDL_WINDOW_SHOWN | SDL_WINDOW_RESIZABLE;
  double now = 0;
};

TEST_F(Events, NewFrameForgetsTheInputButNotTheWishToQuit) {
  press(SDLK_h, SDL_SCANCODE_H);
  take(buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT));
  take(buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT));
  take(buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT));
  take(buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT));
  take(wheelEvent(0, 3));
  reader.readMouse(50, 60, 1, SDL_BUTTON_LMASK, static_cast<SDL_Keymod>(KMOD_LCTRL | KMOD_RSHIFT), ctx);
  ctx.clickTaken = true;
  ctx.quit = true;
  reader.beginFrame(ctx);
  EXPECT_THAT(ctx.in.keys, IsEmpty());
  EXPECT_FALSE(ctx.in.down || ctx.in.pressed || ctx.in.clicked || ctx.in.doubleClicked ||
               ctx.in.rightClicked);
  EXPECT_FALSE(ctx.in.ctrl || ctx.in.shift);
  for (const double value : {ctx.in.mx, ctx.in.my, ctx.in.dx, ctx.in.dy, ctx.in.wheel}) EXPECT_EQ(value, 0);
  EXPECT_FALSE(ctx.clickTaken);
  EXPECT_TRUE(ctx.quit);
}

TEST_F(Events, ClosedWindowEndsTheProgram) {
  EXPECT_FALSE(reader.quitRequested());
  SDL_Event event = {};
  event.type = SDL_QUIT;
  take(event);
  EXPECT_TRUE(reader.quitRequested());
}

TEST_F(Events, KeysComeInOrderOfArrivalWithRepeats) {
  press(SDLK_m, SDL_SCANCODE_M);
  press(SDLK_h, SDL_SCANCODE_H);
  SDL_Event repeat = keyEvent(SDL_KEYDOWN, SDLK_h, SDL_SCANCODE_H);
  repeat.key.repeat = 1;
  take(repeat);
  press(SDLK_ESCAPE, SDL_SCANCODE_ESCAPE);
  EXPECT_THAT(ctx.in.keys, ElementsAre(SDLK_m, SDLK_h, SDLK_h, SDLK_ESCAPE));
  EXPECT_THAT(ctx.in.freshKeys, ElementsAre(SDLK_m, SDLK_h, SDLK_ESCAPE));
}

TEST_F(Events, KeyUpAndTextAreIgnored) {
  take(keyEvent(SDL_KEYUP, SDLK_h, SDL_SCANCODE_H));
  SDL_Event text = {};
  text.type = SDL_TEXTINPUT;
  text.text.text[0] = 'h';
  take(text);
  EXPECT_THAT(ctx.in.keys, IsEmpty());
}

TEST_F(Events, F11TogglesFullScreenAndReachesNoScreen) {
  press(SDLK_F11, SDL_SCANCODE_F11);
  EXPECT_TRUE(settings.fullscreen);
  press(SDLK_F11, SDL_SCANCODE_F11);
  EXPECT_FALSE(settings.fullscreen);
  EXPECT_THAT(ctx.in.keys, IsEmpty());
}

TEST_F(Events, TurnOfTheFullScreenSwitchIsToldOnce) {
  EXPECT_FALSE(reader.takeFullscreenToggle());
  press(SDLK_F11, SDL_SCANCODE_F11);
  EXPECT_TRUE(reader.takeFullscreenToggle());
  EXPECT_FALSE(reader.takeFullscreenToggle());
}

TEST_F(Events, CtrlQEndsTheProgramAndReachesNoScreen) {
  for (const auto ctrl : {KMOD_LCTRL, KMOD_RCTRL}) {
    ui::EventReader fresh(settings);
    fresh.handle(keyEvent(SDL_KEYDOWN, SDLK_q, SDL_SCANCODE_Q, static_cast<Uint16>(ctrl | KMOD_NUM)), 0, 0,
                 ctx);
    EXPECT_TRUE(fresh.quitRequested());
  }
  EXPECT_THAT(ctx.in.keys, IsEmpty());
}

TEST_F(Events, QWithoutCtrlIsAKeyLikeAnyOther) {
  press(SDLK_q, SDL_SCANCODE_Q);
  press(SDLK_q, SDL_SCANCODE_Q, KMOD_LSHIFT);
  press(SDLK_q, SDL_SCANCODE_Q, KMOD_LALT);
  EXPECT_THAT(ctx.in.keys, ElementsAre(SDLK_q, SDLK_q, SDLK_q));
  EXPECT_FALSE(reader.quitRequested());
}

constexpr const char32_t* kCyrillic = U"йцукенгшщзфывапролджячсмить0123456789-=";
constexpr const char32_t* kGreek = U";ςερτυθιοπασδφγηξκλζχψωβνμ0123456789-=,./'";
constexpr const char32_t* kHebrew = U"/'קראטוןםפשדגכעיחלךףזסבהנמצתץ0123456789-=.,;";
// The keys without Shift as SDL reports them.
constexpr const char32_t* kFrench = U"1234567890)=azertyuiop^$qsdfghjklmù*<wxcvbn,;:!";
constexpr const char32_t* kCzech = U"1234567890=qwertzuiopú)asdfghjklů§yxcvbnm,.-";
constexpr const char32_t* kTurkish = U"qwertyuıopğüasdfghjklşizxcvbnmöç1234567890*-,.";
constexpr const char32_t* kJapanese = U"abcdefghijklmnopqrstuvwxyz0123456789-^@[;:],./";

TEST_F(Events, CyrillicLettersActAsTheLatinOnesOfTheirKeys) {
  layout = kCyrillic;
  press(0x0440, SDL_SCANCODE_H);  // р
  press(0x044C, SDL_SCANCODE_M);  // ь
  press(0x0433, SDL_SCANCODE_U);  // г
  EXPECT_THAT(ctx.in.keys, ElementsAre(SDLK_h, SDLK_m, SDLK_u));
}

TEST_F(Events, CtrlWithTheQKeyEndsTheProgramOnEveryLayoutWithoutLatinLetters) {
  struct Layout {
    const char32_t* keys;
    SDL_Keycode onQ;
  };
  for (const Layout& other : {Layout{kCyrillic, 0x0439}, Layout{kGreek, ';'}, Layout{kHebrew, '/'}}) {
    layout = other.keys;
    ui::EventReader fresh(settings);
    fresh.handle(keyEvent(SDL_KEYDOWN, other.onQ, SDL_SCANCODE_Q, KMOD_LCTRL), 0, 0, ctx);
    EXPECT_TRUE(fresh.quitRequested());
  }
  EXPECT_THAT(ctx.in.keys, IsEmpty());
}

TEST_F(Events, KeysBesideTheLettersKeepTheirCodes) {
  EXPECT_EQ(codeOf(0x00F6, SDL_SCANCODE_SEMICOLON), 0x00F6);  // ö
  EXPECT_EQ(codeOf(SDLK_PLUS, SDL_SCANCODE_RIGHTBRACKET), SDLK_PLUS);
  layout = kCyrillic;
  EXPECT_EQ(codeOf(0x0436, SDL_SCANCODE_SEMICOLON), 0x0436);  // ж
}

TEST_F(Events, KeysOfALatinLayoutKeepTheirCodesWhereverTheyLie) {
  EXPECT_EQ(codeOf(SDLK_z, SDL_SCANCODE_Y), SDLK_z);
  EXPECT_EQ(codeOf(SDLK_m, SDL_SCANCODE_SEMICOLON), SDLK_m);
  EXPECT_EQ(codeOf(SDLK_q, SDL_SCANCODE_A), SDLK_q);
  // Dvorak's ' must not act as q, nor Turkish ı as i.
  EXPECT_EQ(codeOf(SDLK_QUOTE, SDL_SCANCODE_Q), SDLK_QUOTE);
  EXPECT_EQ(codeOf(0x0131, SDL_SCANCODE_I), 0x0131);
}

TEST_F(Events, PlusAndMinusAmongFrenchAndCzechDigitsAreFound) {
  EXPECT_EQ(codeOf(SDLK_1, SDL_SCANCODE_1), SDLK_1);
  EXPECT_EQ(codeOf(SDLK_6, SDL_SCANCODE_6), SDLK_6);
  layout = kFrench;
  EXPECT_EQ(codeOf(SDLK_6, SDL_SCANCODE_6), SDLK_MINUS);
  EXPECT_EQ(codeOf(SDLK_1, SDL_SCANCODE_1), SDLK_1);
  layout = kCzech;
  EXPECT_EQ(codeOf(SDLK_1, SDL_SCANCODE_1), SDLK_PLUS);
  EXPECT_EQ(codeOf(SDLK_1, SDL_SCANCODE_1, KMOD_LSHIFT), SDLK_1);
  EXPECT_EQ(codeOf(SDLK_6, SDL_SCANCODE_6), SDLK_6);
}

TEST_F(Events, PlusThatNeedsShiftOnAKeyWithoutEqualsIsFound) {
  layout = kTurkish;
  EXPECT_EQ(codeOf(SDLK_4, SDL_SCANCODE_4, KMOD_RSHIFT), SDLK_PLUS);
  EXPECT_EQ(codeOf(SDLK_4, SDL_SCANCODE_4), SDLK_4);
  EXPECT_EQ(codeOf(SDLK_MINUS, SDL_SCANCODE_EQUALS), SDLK_MINUS);
  layout = kJapanese;
  EXPECT_EQ(codeOf(SDLK_SEMICOLON, SDL_SCANCODE_SEMICOLON, KMOD_LSHIFT), SDLK_PLUS);
  EXPECT_EQ(codeOf(SDLK_CARET, SDL_SCANCODE_EQUALS), SDLK_PLUS);
}

TEST_F(Events, ShiftMakesNoPlusWhereAKeyHasIt) {
  EXPECT_EQ(codeOf(SDLK_4, SDL_SCANCODE_4, KMOD_LSHIFT), SDLK_4);
  EXPECT_EQ(codeOf(SDLK_SEMICOLON, SDL_SCANCODE_SEMICOLON, KMOD_LSHIFT), SDLK_SEMICOLON);
}

TEST_F(Events, FunctionKeysKeepTheirCodes) {
  EXPECT_EQ(codeOf(SDLK_F1, SDL_SCANCODE_F1), SDLK_F1);
  EXPECT_EQ(codeOf(SDLK_LEFT, SDL_SCANCODE_LEFT), SDLK_LEFT);
  // Also if it is remapped onto a letter's key.
  EXPECT_EQ(codeOf(SDLK_F1, SDL_SCANCODE_H), SDLK_F1);
}

TEST_F(Events, LeftButtonPressesAndClicks) {
  take(buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_LEFT));
  EXPECT_TRUE(ctx.in.pressed);
  EXPECT_FALSE(ctx.in.clicked);
  take(buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_LEFT));
  EXPECT_TRUE(ctx.in.clicked);
  EXPECT_FALSE(ctx.in.rightClicked);
}

TEST_F(Events, RightButtonClicksWhenItGoesDown) {
  take(buttonEvent(SDL_MOUSEBUTTONDOWN, SDL_BUTTON_RIGHT));
  EXPECT_TRUE(ctx.in.rightClicked);
  reader.beginFrame(ctx);
  take(buttonEvent(SDL_MOUSEBUTTONUP, SDL_BUTTON_RIGHT));
  EXPECT_FALSE(ctx.in.rightClicked || ctx.in.pressed || ctx.in.clicked);
}

TEST_F(Events, OtherButtonsAreIgnored) {
  for (const int button : {SDL_BUTTON_MIDDLE, SDL_BUTTON_X1, SDL_BUTTON_X2}) {
    take(buttonEvent(SDL_MOUSEBUTTONDOWN, button));
    take(buttonEvent(SDL_MOUSEBUTTONUP, button));
  }
  EXPECT_FALSE(ctx.in.pressed || ctx.in.clicked || ctx.in.doubleClicked || ctx.in.rightClicked);
}

TEST_F(Events, ReleasesLessThanThreeTenthsApartAreADoubleClick) {
  releaseAt(5);
  releaseAt(5.29);
  EXPECT_TRUE(ctx.in.clicked);
  EXPECT_TRUE(ctx.in.doubleClicked);
}

TEST_F(Events, ReleasesFurtherApartAreNone) {
  releaseAt(5);
  releaseAt(5.31);
  EXPECT_TRUE(ctx.in.clicked);
  EXPECT_FALSE(ctx.in.doubleClicked);
}

TEST_F(Events, VeryFirstReleaseIsNoDoubleClick) {
  releaseAt(0);
  EXPECT_TRUE(ctx.in.clicked);
  EXPECT_FALSE(ctx.in.doubleClicked);
}

TEST_F(Events, EachReleaseCountsFromTheOneBefore) {
  releaseAt(5);
  releaseAt(5.2);
  releaseAt(5.4);
  EXPECT_TRUE(ctx.in.doubleClicked);
  releaseAt(5.8);
  EXPECT_FALSE(ctx.in.doubleClicked);
}

TEST_F(Events, WheelStepsAddUpAndSidewaysOnesDoNotCount) {
  take(wheelEvent(0, 2));
  take(wheelEvent(5, -3));
  take(wheelEvent(0, -1));
  EXPECT_EQ(ctx.in.wheel, -2);
}

TEST_F(Events, MouseMovementIsTheDifferenceToTheFrameBefore) {
  reader.readMouse(30, 40, 1, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.dx, 30);
  EXPECT_EQ(ctx.in.dy, 40);
  reader.beginFrame(ctx);
  reader.readMouse(25, 47, 1, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.mx, 25);
  EXPECT_EQ(ctx.in.my, 47);
  EXPECT_EQ(ctx.in.dx, -5);
  EXPECT_EQ(ctx.in.dy, 7);
  reader.beginFrame(ctx);
  reader.readMouse(25, 47, 1, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.dx, 0);
  EXPECT_EQ(ctx.in.dy, 0);
}

TEST_F(Events, MouseIsWhereItsPointLiesInAWindowWhoseThingsHaveGrown) {
  reader.readMouse(300, 40, 1.25, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.mx, 240);
  EXPECT_EQ(ctx.in.my, 32);
  reader.beginFrame(ctx);
  reader.readMouse(305, 30, 1.25, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.dx, 4);
  EXPECT_EQ(ctx.in.dy, -8);
}

TEST_F(Events, MouseThatRestsDoesNotMoveWhenTheWindowGrows) {
  reader.readMouse(300, 40, 1, 0, KMOD_NONE, ctx);
  reader.beginFrame(ctx);
  reader.readMouse(300, 40, 2, 0, KMOD_NONE, ctx);
  EXPECT_EQ(ctx.in.mx, 150);
  EXPECT_EQ(ctx.in.dx, 0);
  EXPECT_EQ(ctx.in.dy, 0);
}

TEST_F(Events, HeldButtonIsTheLeftOneAlone) {
  reader.readMouse(0, 0, 1, SDL_BUTTON_RMASK | SDL_BUTTON_MMASK, KMOD_NONE, ctx);
  EXPECT_FALSE(ctx.in.down);
  reader.readMouse(0, 0, 1, SDL_BUTTON_RMASK | SDL_BUTTON_LMASK, KMOD_NONE, ctx);
  EXPECT_TRUE(ctx.in.down);
}

TEST_F(Events, EitherCtrlAndEitherShiftCount) {
  for (const SDL_Keymod key : {KMOD_LCTRL, KMOD_RCTRL}) {
    reader.readMouse(0, 0, 1, 0, key, ctx);
    EXPECT_TRUE(ctx.in.ctrl);
    EXPECT_FALSE(ctx.in.shift);
  }
  for (const SDL_Keymod key : {KMOD_LSHIFT, KMOD_RSHIFT}) {
    reader.readMouse(0, 0, 1, 0, key, ctx);
    EXPECT_FALSE(ctx.in.ctrl);
    EXPECT_TRUE(ctx.in.shift);
  }
  reader.readMouse(0, 0, 1, 0, static_cast<SDL_Keymod>(KMOD_CAPS | KMOD_ALT), ctx);
  EXPECT_FALSE(ctx.in.ctrl || ctx.in.shift);
}

TEST_F(Events, WindowsSizeAndPositionAreRemembered) {
  take(windowEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 900, 700));
  take(windowEvent(SDL_WINDOWEVENT_MOVED, -50, 33));
  EXPECT_EQ(settings.windowW, 900);
  EXPECT_EQ(settings.windowH, 700);
  EXPECT_EQ(settings.windowX, -50);
  EXPECT_EQ(settings.windowY, 33);
}

// The stored size and position must not become those of the whole screen.
void expectGeometryKept(const store::Settings& settings) {
  const store::Settings first;
  EXPECT_EQ(settings.windowW, first.windowW);
  EXPECT_EQ(settings.windowH, first.windowH);
  EXPECT_EQ(settings.windowX, first.windowX);
  EXPECT_EQ(settings.windowY, first.windowY);
}

TEST_F(Events, SizeOfAMaximisedFullScreenOrMinimisedWindowIsNotRemembered) {
  for (const SDL_WindowFlags state :
       {SDL_WINDOW_FULLSCREEN, SDL_WINDOW_FULLSCREEN_DESKTOP, SDL_WINDOW_MINIMIZED, SDL_WINDOW_MAXIMIZED}) {
    windowFlags = SDL_WINDOW_SHOWN | state;
    take(windowEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 1920, 1080));
    take(windowEvent(SDL_WINDOWEVENT_MOVED, 0, 0));
    expectGeometryKept(settings);
  }
}

TEST_F(Events, SizeIsNotRememberedWhileFullScreenIsWanted) {
  settings.fullscreen = true;
  take(windowEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 1920, 1080));
  take(windowEvent(SDL_WINDOWEVENT_MOVED, 0, 0));
  expectGeometryKept(settings);
}

TEST_F(Events, MaximisedStateIsRememberedWhateverTheWindowsState) {
  for (const Uint32 state : {Uint32{SDL_WINDOW_MAXIMIZED}, Uint32{0}}) {
    windowFlags = state;
    take(windowEvent(SDL_WINDOWEVENT_MAXIMIZED));
    EXPECT_TRUE(settings.maximized);
    take(windowEvent(SDL_WINDOWEVENT_RESTORED));
    EXPECT_FALSE(settings.maximized);
  }
}

TEST_F(Events, MaximisedWindowThatWasMinimisedIsStillMaximised) {
  settings.maximized = true;
  take(windowEvent(SDL_WINDOWEVENT_MINIMIZED));
  now = 3600;
  // The sequence that SDL sends on X11.
  for (const Uint8 what : {SDL_WINDOWEVENT_RESTORED, SDL_WINDOWEVENT_MAXIMIZED, SDL_WINDOWEVENT_RESTORED})
    take(windowEvent(what));
  EXPECT_TRUE(settings.maximized);
  EXPECT_TRUE(reader.isReturning(now));
  now = 3601;
  EXPECT_FALSE(reader.isReturning(now));
  take(windowEvent(SDL_WINDOWEVENT_RESTORED));
  EXPECT_FALSE(settings.maximized) << "the player un-maximised it";
}

TEST_F(Events, MaximisedWindowIsStillMaximisedBehindTheFullScreen) {
  settings.maximized = true;
  settings.fullscreen = true;
  take(windowEvent(SDL_WINDOWEVENT_RESTORED));
  settings.fullscreen = false;
  reader.windowReturns(now);
  take(windowEvent(SDL_WINDOWEVENT_RESTORED));
  EXPECT_TRUE(settings.maximized);
}

TEST_F(Events, GeometryIsDirtyFromAChangeUntilItIsSaved) {
  EXPECT_FALSE(reader.geometryDirty());
  for (const Uint8 what : {SDL_WINDOWEVENT_SIZE_CHANGED, SDL_WINDOWEVENT_MOVED, SDL_WINDOWEVENT_MAXIMIZED,
                           SDL_WINDOWEVENT_RESTORED}) {
    take(windowEvent(what, 700, 500));
    EXPECT_TRUE(reader.geometryDirty());
    reader.geometrySaved();
    EXPECT_FALSE(reader.geometryDirty());
  }
}

TEST_F(Events, GeometryThatIsNotRememberedIsNotDirty) {
  windowFlags = SDL_WINDOW_MAXIMIZED;
  take(windowEvent(SDL_WINDOWEVENT_SIZE_CHANGED, 1920, 1080));
  take(windowEvent(SDL_WINDOWEVENT_MOVED, 0, 0));
  EXPECT_FALSE(reader.geometryDirty());
}

TEST_F(Events, OtherWindowEventsChangeNothing) {
  settings.maximized = true;
  for (const Uint8 what : {SDL_WINDOWEVENT_RESIZED, SDL_WINDOWEVENT_EXPOSED, SDL_WINDOWEVENT_MINIMIZED,
                           SDL_WINDOWEVENT_FOCUS_LOST}) {
    take(windowEvent(what, 1, 2));
  }
  expectGeometryKept(settings);
  EXPECT_TRUE(settings.maximized);
  EXPECT_FALSE(reader.quitRequested());
  EXPECT_FALSE(reader.geometryDirty());
}

}  // namespace
