#include "monkey/monkey.h"

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <utility>

#include "app/app.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "screens/about.h"
#include "screens/level_grid.h"
#include "screens/list_screen.h"
#include "screens/menu_layout.h"
#include "screens/playing_layout.h"
#include "screens/settings_layout.h"
#include "screens/solved_layout.h"
#include "support/picture.h"

namespace test {
namespace {

using ui::ScreenKind;

constexpr double kUsualFrame = 1.0 / 60;
constexpr const char* kAutoplay = "VESKARA_AUTOPLAY";
constexpr int kHandFrames = 15;           // longest time between the clicks of a double click
constexpr int kLongGame = 300;            // frames that the largest board takes
constexpr std::size_t kDeepestStack = 3;  // menu, level select or about, and one more

constexpr SDL_Keycode kKnownKeys[] = {
    SDLK_SPACE,  SDLK_h,    SDLK_m,      SDLK_u,        SDLK_PLUS, SDLK_MINUS,    SDLK_EQUALS, SDLK_0,
    SDLK_ESCAPE, SDLK_F11,  SDLK_RETURN, SDLK_KP_ENTER, SDLK_TAB,  SDLK_TAB,      SDLK_LEFT,   SDLK_RIGHT,
    SDLK_UP,     SDLK_DOWN, SDLK_DELETE, SDLK_END,      SDLK_HOME, SDLK_PAGEDOWN, SDLK_PAGEUP};
// The last ones are letters of other alphabets, and codes that no key sends.
constexpr SDL_Keycode kStrangeKeys[] = {SDLK_BACKSPACE,
                                        SDLK_INSERT,
                                        SDLK_KP_TAB,
                                        SDLK_RETURN2,
                                        SDLK_F1,
                                        SDLK_F4,
                                        SDLK_F12,
                                        SDLK_KP_PLUS,
                                        SDLK_KP_0,
                                        SDLK_PRINTSCREEN,
                                        SDLK_AUDIOMUTE,
                                        SDLK_CAPSLOCK,
                                        SDLK_MENU,
                                        SDLK_AC_BACK,
                                        SDLK_a,
                                        SDLK_q,
                                        SDLK_z,
                                        SDLK_9,
                                        SDLK_HASH,
                                        SDLK_LGUI,
                                        SDLK_LSHIFT,
                                        0xE4,
                                        0x444,
                                        0x5D0,
                                        0xAC00,
                                        SDLK_UNKNOWN,
                                        -1,
                                        0x7FFFFFFF};
constexpr Uint16 kModifiers[] = {KMOD_NONE,   KMOD_NONE,  KMOD_LCTRL, KMOD_RSHIFT, KMOD_CTRL,
                                 KMOD_LSHIFT, KMOD_SHIFT, KMOD_CAPS,  KMOD_ALT,    KMOD_LCTRL | KMOD_LSHIFT};

constexpr WindowSize kUsualSize = {640, 480};
// Sizes of screens, of phones, of half screens, and of windows that a window manager has squeezed.
constexpr WindowSize kSizes[] = {kUsualSize,  kUsualSize,  kUsualSize,  {1100, 760},  {800, 600},
                                 {1366, 700}, {640, 1000}, {1280, 480}, {1920, 1080}, {641, 481},
                                 {320, 240},  {90, 700},   {700, 40},   {1, 1}};
constexpr double kScales[] = {1, 1, 1, 1.25, 1.5, 2, 0.5};
// In seconds: a clock that stands still, a hitch, a minute of thought, an hour of sleep.
constexpr double kPauses[] = {0, 0, 0.1, 0.3, 1, 3, 7, 61, 3600, 1e6};
constexpr SDL_WindowEventID kFocusEvents[] = {SDL_WINDOWEVENT_FOCUS_LOST, SDL_WINDOWEVENT_FOCUS_GAINED,
                                              SDL_WINDOWEVENT_LEAVE,      SDL_WINDOWEVENT_ENTER,
                                              SDL_WINDOWEVENT_HIDDEN,     SDL_WINDOWEVENT_SHOWN,
                                              SDL_WINDOWEVENT_EXPOSED,    SDL_WINDOWEVENT_MAXIMIZED,
                                              SDL_WINDOWEVENT_RESTORED,   SDL_WINDOWEVENT_MOVED};

// The buttons of a dialog, from the middle of the window.
constexpr double kDialogButtonX = 100;
constexpr double kDialogButtonY = 115 - 62 + 21;

}  // namespace

struct Monkey::Act {
  int weight;
  void (Monkey::*run)();
};

void Monkey::frame() {
  if (moodLeft-- <= 0) changeMood();
  switch (mood) {
    case Mood::Wild:
      return beWild();
    case Mood::Tourist:
      return seeSights();
    case Mood::Player:
      return playOn();
    case Mood::Dreamer:
      return dream();
  }
}

void Monkey::changeMood() {
  constexpr Mood kMoods[] = {Mood::Wild,    Mood::Wild,    Mood::Wild,   Mood::Wild,
                             Mood::Tourist, Mood::Tourist, Mood::Player, Mood::Dreamer};
  mood = oneOf(kMoods);
  moodLeft = mood == Mood::Player ? kLongGame : 40 + below(160);
  letGo();
  program.holdModifiers(KMOD_NONE);
  program.setMinimised(minimised = false);
  // Frames of small windows are fast.
  if (!oneIn(4)) {
    program.setScale(1);
    program.resize(kUsualSize);
  }
  if (mood == Mood::Player || oneIn(6)) {
    setenv(kAutoplay, "0.02", 1);
  } else {
    unsetenv(kAutoplay);
  }
}

void Monkey::pass(double dt) {
  keepPromise();
  ++seen[static_cast<std::size_t>(UnseenProgram::screen())];
  const ui::GameState before = ui::Game::instance().descriptors().back();
  const bool goesOn = program.pass(dt);
  accountForGame(before);
  if (!goesOn) program.restart();
  EXPECT_LE(ui::Game::instance().descriptors().size(), kDeepestStack);
}

// The saved game may go only by a win, or by a new game or level that was meant. Otherwise it may only become
// the game in play.
void Monkey::accountForGame(const ui::GameState& before) {
  const store::SavedGame now = store::loadGame();
  const store::SavedGame last = std::exchange(saved, now);
  const ui::GameState& after = ui::Game::instance().descriptors().back();
  const bool begins = before.kind != ScreenKind::Playing && after.kind == ScreenKind::Playing;
  EXPECT_TRUE(!begins || heardMeant())
      << "a level was begun by no click or key of screen " << static_cast<int>(before.kind);
  if (!last.valid || (now.valid && now.level == last.level && now.seed == last.seed)) return;
  // A new game, a level's card, or "reset" in the settings.
  const bool chosen = (before.kind == ScreenKind::Menu || before.kind == ScreenKind::LevelSelect ||
                       before.kind == ScreenKind::Settings) &&
                      heardMeant();
  const bool won = before.kind == ScreenKind::Solved || after.kind == ScreenKind::Solved;
  const bool played =
      before.kind == ScreenKind::Playing && now.valid && now.level == before.level && now.seed == before.deal;
  EXPECT_TRUE(chosen || won || played)
      << "the game of level " << last.level << " went from screen " << static_cast<int>(before.kind);
}

// --- moods ---

void Monkey::beWild() {
  static constexpr Act kActs[] = {
      {30, &Monkey::wander},     {12, &Monkey::clickSomewhere}, {5, &Monkey::pressSomewhere},
      {5, &Monkey::letGo},       {8, &Monkey::doubleClick},     {4, &Monkey::pressAcross},
      {5, &Monkey::otherButton}, {4, &Monkey::startDrag},       {6, &Monkey::turnWheel},
      {16, &Monkey::knownKey},   {6, &Monkey::strangeKey},      {3, &Monkey::holdModifiers},
      {1, &Monkey::otherSize},   {1, &Monkey::otherScale},      {2, &Monkey::loseFocus},
      {1, &Monkey::minimise},    {3, &Monkey::letTimePass},     {1, &Monkey::everythingAtOnce}};
  static const int kAllWeights = [] {
    int sum = 0;
    for (const Act& act : kActs) sum += act.weight;
    return sum;
  }();
  moveDragged();
  for (int acts = below(3); acts > 0; --acts) {
    int choice = below(kAllWeights);
    const Act* act = kActs;
    while (choice >= act->weight) choice -= (act++)->weight;
    (this->*act->run)();
  }
  if (oneIn(400)) endProgram();
  pass(std::exchange(frameTime, kUsualFrame));
}

// Uses the screen's controls.
void Monkey::seeSights() {
  if (oneIn(3)) {
    const std::vector<Spot> known = sights();
    Spot spot = known.empty() || oneIn(8) ? anywhere() : oneOf(known);
    if (oneIn(6)) spot.button = SDL_BUTTON_RIGHT;
    click(spot);
    if (oneIn(3)) promise = {spot, true, 1 + below(kHandFrames)};
  } else if (oneIn(12)) {
    turnWheel();
  } else if (oneIn(12)) {
    knownKey();
  }
  pass(oneIn(20) ? 0.5 : kUsualFrame);
}

// Lets the game play by itself, looks at the result for a moment, and goes on.
void Monkey::playOn() {
  const ScreenKind screen = UnseenProgram::screen();
  if (screen == ScreenKind::Menu) {
    const screens::MenuLayout layout = screens::menuLayout(program.size().w, program.size().h);
    click(somewhereIn(layout.plaque(screens::MenuEntry::Continue)));
  } else if (screen == ScreenKind::Solved && oneIn(12)) {
    click(oneOf(sights()));
  } else if (screen == ScreenKind::Playing && oneIn(100)) {
    knownKey();
  } else if (screen != ScreenKind::Playing && screen != ScreenKind::Solved) {
    program.key(SDLK_ESCAPE);
  }
  pass(screen == ScreenKind::Playing ? 0.33 : 0.1);
}

// Waits at the menu until the demo runs, and watches some of it.
void Monkey::dream() {
  const ScreenKind screen = UnseenProgram::screen();
  const bool onTheWay = screen != ScreenKind::Menu && screen != ScreenKind::Attract;
  if (onTheWay) program.key(SDLK_ESCAPE);
  pass(onTheWay ? kUsualFrame : screen == ScreenKind::Menu ? 5 : 0.01 * below(60));
}

// --- acts ---

Monkey::Spot Monkey::anywhere() {
  constexpr int kBeyond = 60;
  const auto [w, h] = program.size();
  if (oneIn(10)) return {1.0 * below(w + 2 * kBeyond) - kBeyond, 1.0 * below(h + 2 * kBeyond) - kBeyond};
  return {1.0 * below(w + 1), 1.0 * below(h + 1)};
}

Monkey::Spot Monkey::somewhereIn(const ui::Rect& rect) {
  constexpr int kSteps = 100;
  return {rect.x + rect.w * below(kSteps) / kSteps, rect.y + rect.h * below(kSteps) / kSteps};
}

void Monkey::point(const Spot& spot) {
  program.moveMouse(static_cast<int>(spot.x), static_cast<int>(spot.y));
}

void Monkey::click(const Spot& spot) {
  point(spot);
  program.button(spot.button, true);
  program.button(spot.button, false);
}

void Monkey::wander() { point(anywhere()); }

void Monkey::clickSomewhere() { click(anywhere()); }

void Monkey::pressSomewhere() {
  wander();
  program.button(SDL_BUTTON_LEFT, true);
}

void Monkey::letGo() {
  drag.reset();
  promise.reset();
  program.button(SDL_BUTTON_LEFT, false);
}

// As fast as a hand or faster.
void Monkey::doubleClick() {
  const std::vector<Spot> known = sights();
  const Spot spot = known.empty() || oneIn(2) ? anywhere() : oneOf(known);
  click(spot);
  if (oneIn(4)) return click(spot);
  promise = {spot, true, 1 + below(kHandFrames)};
}

// Changes the screen while the button is held.
void Monkey::pressAcross() {
  const std::vector<Spot> known = sights();
  point(known.empty() || oneIn(2) ? anywhere() : oneOf(known));
  program.button(SDL_BUTTON_LEFT, true);
  program.key(SDLK_ESCAPE);
  promise = {anywhere(), false, 1 + below(kHandFrames)};
}

void Monkey::keepPromise() {
  if (!promise || --promise->frames > 0) return;
  point(promise->spot);
  if (promise->press) program.button(SDL_BUTTON_LEFT, true);
  program.button(SDL_BUTTON_LEFT, false);
  promise.reset();
}

void Monkey::otherButton() {
  constexpr Uint8 kButtons[] = {SDL_BUTTON_RIGHT, SDL_BUTTON_RIGHT, SDL_BUTTON_MIDDLE, SDL_BUTTON_X1, 8};
  Spot spot = anywhere();
  spot.button = oneOf(kButtons);
  click(spot);
}

void Monkey::startDrag() {
  drag = {anywhere(), anywhere(), 3 + below(12)};
  point(drag->from);
  program.button(SDL_BUTTON_LEFT, true);
}

void Monkey::moveDragged() {
  if (!drag) return;
  const double part = 1.0 * ++drag->done / drag->frames;
  point(
      {drag->from.x + part * (drag->to.x - drag->from.x), drag->from.y + part * (drag->to.y - drag->from.y)});
  if (drag->done == drag->frames) letGo();
}

void Monkey::turnWheel() { program.wheel(oneIn(20) ? 1000 - below(2000) : 3 - below(7)); }

void Monkey::knownKey() { program.key(oneOf(kKnownKeys)); }

void Monkey::strangeKey() { program.key(oneOf(kStrangeKeys), oneOf(kModifiers)); }

void Monkey::holdModifiers() { program.holdModifiers(oneOf(kModifiers)); }

void Monkey::otherSize() {
  const bool odd = oneIn(3);
  program.resize(odd ? WindowSize{640 + below(700), 480 + below(500)} : oneOf(kSizes));
}

void Monkey::otherScale() { program.setScale(oneOf(kScales)); }

void Monkey::loseFocus() { program.windowEvent(oneOf(kFocusEvents)); }

void Monkey::minimise() { program.setMinimised(minimised = !minimised); }

void Monkey::letTimePass() { frameTime = oneOf(kPauses); }

// Sends much input at once, as when a stuck program wakes up.
void Monkey::everythingAtOnce() {
  for (int i = 0; i < 30; ++i) {
    knownKey();
    strangeKey();
    clickSomewhere();
    otherButton();
    turnWheel();
  }
}

void Monkey::endProgram() {
  if (oneIn(2)) return program.closeWindow();
  program.key(SDLK_q, KMOD_LCTRL);
}

// --- places to click ---

namespace {

class Sights {
 public:
  explicit Sights(WindowSize size) : w(size.w), h(size.h) {}

  std::vector<ui::Rect> on(ScreenKind screen) {
    switch (screen) {
      case ScreenKind::Menu:
        for (const ui::Rect& plaque : screens::menuLayout(w, h).plaques) add(plaque);
        break;
      case ScreenKind::LevelSelect:
        for (int i = 0; i < screens::kLevelsPerPage; ++i) add(screens::levelGrid(w, h).card(i, 0));
        pages();
        break;
      case ScreenKind::Playing:
        playing();
        break;
      case ScreenKind::Solved: {
        const screens::SolvedLayout layout = screens::solvedLayout(w, h);
        for (const ui::Rect& button : screens::solvedButtons(layout.buttons, layout.wide)) add(button);
        break;
      }
      case ScreenKind::Gallery:
        cards();
        pages();
        dialog();
        break;
      case ScreenKind::Settings:
        settings();
        break;
      case ScreenKind::About:
        for (const ui::Rect& line : screens::aboutLayout(w, h).lines) add(line);
        add(screens::aboutLayout(w, h).button);
        back();
        break;
      case ScreenKind::Licenses:
        back();
        break;
      case ScreenKind::Splash:
      case ScreenKind::Attract:
        break;
    }
    return rects;
  }

 private:
  void add(const ui::Rect& rect) { rects.push_back(rect); }
  void back() { add({12, 10, 44, 40}); }
  void pages() {
    back();
    for (int page = 0; page < screens::kPages; ++page) add({w * page / screens::kPages, 64, w / 10, 40});
  }
  // At their places for the window's width.
  void cards() {
    const double top = screens::kPagedListTop;
    for (int i = 0; i < 4; ++i) add({0, top, w, h - top});
  }
  void dialog() {
    for (const double side : {-1, 1})
      add({w / 2 + side * kDialogButtonX - 10, h / 2 + kDialogButtonY - 10, 20, 20});
  }
  void playing() {
    const screens::PlayingLayout layout = screens::playingLayout(w, h);
    for (int i = 0; i < 20; ++i) add(layout.board);
    for (const ui::Rect& button : layout.buttons) add(button);
    add(layout.pause);
    add(layout.back);
    const screens::PanelLayout panels[] = {screens::pausePanel(w, h),
                                           screens::noMovesPanel(w, layout.board, 2)};
    for (const screens::PanelLayout& panel : panels) {
      add(panel.first);
      add(panel.second);
    }
  }
  void settings() {
    const ui::CairoSurface surface = support::makePicture(1, 1);
    const ui::CairoContext cr(cairo_create(surface.get()));
    const screens::SettingsLayout layout = screens::settingsLayout(cr.get(), w);
    const double top = screens::settingsTop(layout, screens::listView(w, h));
    const auto inside = [&](ui::Rect rect) {
      rect.y += top;
      add(rect);
    };
    for (const screens::LanguageChip& chip : layout.chips) inside(chip.rect);
    for (const ui::Rect& rect : {layout.music.grip, layout.effects.grip, layout.sound, layout.fullscreen,
                                 layout.reset, layout.quit}) {
      inside(rect);
    }
    dialog();
    back();
  }

  double w;
  double h;
  std::vector<ui::Rect> rects;
};

}  // namespace

std::vector<Monkey::Spot> Monkey::sights() {
  std::vector<Spot> spots;
  for (const ui::Rect& rect : Sights(program.size()).on(UnseenProgram::screen())) {
    spots.push_back(somewhereIn(rect));
  }
  return spots;
}

void Monkey::goHome() {
  letGo();
  program.holdModifiers(KMOD_NONE);
  program.setMinimised(minimised = false);
  program.setScale(1);
  store::Settings& settings = ui::Game::settings();
  settings.fullscreen = false;
  settings.language = "en";
  i18n::setLanguage(settings.language);
  pass(kUsualFrame);
  program.resize(kUsualSize);
  while (UnseenProgram::screen() != ScreenKind::Menu) {
    program.key(SDLK_ESCAPE);
    pass(kUsualFrame);
  }
  for (int i = 0; i < 30; ++i) pass(kUsualFrame);
  moodLeft = 0;
}

void Monkey::seeEverything() {
  constexpr int kDemoFrames = 600;
  const auto open = [this](ScreenKind kind) {
    ui::Game::instance().resetTo({.kind = kind, .level = 1, .deal = 1, .tiles = 36});
    pass(0);
  };
  for (const i18n::Language& language : i18n::languages()) {
    i18n::setLanguage(language.code);
    for (std::size_t kind = 0; kind < kScreenKinds; ++kind) {
      open(static_cast<ScreenKind>(kind));
      for (int i = 0; i < 3; ++i) pass(0.5);
    }
  }
  for (int level = 1; level <= store::kLastLevel; ++level) mj::levelToConfig(level);
  open(ScreenKind::Attract);
  for (int i = 0; i < kDemoFrames; ++i) pass(0.03);
  open(ScreenKind::Menu);  // a demo with no screen below it has no way out
}

}  // namespace test
