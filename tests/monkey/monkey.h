// monkey.h: plays with the program at random, by mouse, keys and window, and at times with just enough sense
// to reach every screen. It knows which clicks and keys were meant for a screen, and fails the test if the
// saved game goes in another way. Its acts depend only on its seed and on the screens that it reaches.
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
  // The program must outlive the monkey.
  Monkey(UnseenProgram& toPlayWith, std::uint32_t seed) : program(toPlayWith), random(seed) {}

  // Plays one frame, with or without input. If the program was told to end, starts it again at once.
  void frame();
  // Goes to the menu and waits there, in English, in an ordinary window of 640 x 480. Takes some frames.
  void goHome();

  // Shows every screen in every language, and the demo until its caption has had all its sizes. Afterwards
  // the libraries' caches of fonts and glyphs are full.
  void seeEverything();

  // The number of frames of each kind of screen so far.
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
  // Returns places in the controls of the open screen.
  std::vector<Spot> sights();
  Spot anywhere();
  Spot somewhereIn(const ui::Rect& rect);

  // Uniform, from 0 to n - 1.
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
  // A click, or its release, that follows some frames later.
  struct Promise {
    Spot spot;
    bool press;
    int frames;
  };
  std::optional<Promise> promise;
  store::SavedGame saved;  // after the last frame
  bool minimised = false;
};

}  // namespace test
