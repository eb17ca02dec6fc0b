// monkey.h: somebody who does with the program whatever can be done with mouse, keys and window, without
// sense most of the time, and with just enough of it at others to get to every screen. It knows what it
// meant: a saved game that goes otherwise is a failure. What it does follows from its seed and from the
// screens it comes to.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <random>
#include <vector>

#include "monkey/unseen_program.h"
#include "storage/storage.h"
#include "ui/context.h"

namespace test {

inline constexpr std::size_t kScreenKinds = 10;

class Monkey {
 public:
  // The program must outlive it.
  Monkey(UnseenProgram& toPlayWith, std::uint32_t seed) : program(toPlayWith), random(seed) {}

  // One frame with some input or none. A program that was told to end is started again at once.
  void frame();
  // Some frames: to the menu, in English, in a window of 640 x 480 that is nothing special, and there it
  // waits.
  void goHome();

  // Some more: every screen in every language, and the demo for so long that its caption has had all its
  // sizes. From then on the libraries' caches of fonts and glyphs are as full as they get.
  void seeEverything();

  // Frames that each kind of screen has had so far.
  const std::array<int, kScreenKinds>& framesOn() const { return seen; }

 private:
  enum class Mood { Wild, Tourist, Player, Dreamer };
  struct Spot {
    double x;
    double y;
    Uint8 button = SDL_BUTTON_LEFT;
  };
  struct Drag {
    Spot from;
    Spot to;
    int frames;
    int done = 0;
  };
  struct Act;

  void changeMood();
  void pass(double dt);
  void accountForGame(const ui::GameState& before);
  bool heardMeant() const { return program.heardMeantClick() || program.heardMeantPress(); }

  void beWild();
  void seeSights();
  void playOn();
  void dream();

  void wander();
  void clickSomewhere();
  void pressSomewhere();
  void letGo();
  void doubleClick();
  void pressAcross();
  void otherButton();
  void startDrag();
  void turnWheel();
  void knownKey();
  void strangeKey();
  void holdModifiers();
  void otherSize();
  void otherScale();
  void loseFocus();
  void minimise();
  void letTimePass();
  void everythingAtOnce();
  void endProgram();

  void moveDragged();
  void keepPromise();
  void point(const Spot& spot);
  void click(const Spot& spot);
  // Places in the controls of the screen that is open; none where it has none.
  std::vector<Spot> sights();
  Spot anywhere();
  Spot somewhereIn(const ui::Rect& rect);

  // 0 to n - 1, all alike.
  int below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
  bool oneIn(int n) { return below(n) == 0; }
  template <class Table>
  const auto& oneOf(const Table& table) {
    return table[static_cast<std::size_t>(below(static_cast<int>(std::size(table))))];
  }

  UnseenProgram& program;
  std::mt19937 random;
  std::array<int, kScreenKinds> seen = {};
  Mood mood = Mood::Tourist;
  int moodLeft = 0;  // frames
  double frameTime = 1.0 / 60;
  std::optional<Drag> drag;
  // A click, or the end of one, that comes so many frames later.
  struct Promise {
    Spot spot;
    bool press;
    int frames;
  };
  std::optional<Promise> promise;
  store::SavedGame saved;  // as the program left it after the last frame
  bool minimised = false;
};

}  // namespace test
