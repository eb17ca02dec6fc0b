#include "app/fake_screens.h"

#include <array>
#include <utility>

namespace fake {
namespace {

// Indexed by kind.
constexpr std::array kNames = {"Splash",  "Menu",     "LevelSelect", "Playing",  "Solved",
                               "Gallery", "Settings", "About",       "Licenses", "Attract"};

class FakeScreen : public ui::Screen {
 public:
  explicit FakeScreen(std::string screenName) : name(std::move(screenName)) { note("made"); }
  FakeScreen(const FakeScreen&) = delete;
  FakeScreen& operator=(const FakeScreen&) = delete;
  ~FakeScreen() override { note("destroyed"); }

  void update(ui::Ctx& ctx) override {
    note("begins");
    if (script().onUpdate) script().onUpdate(ctx);
    note("ends");
  }

 private:
  void note(const char* what) const { script().events.push_back(name + " " + what); }

  std::string name;
};

}  // namespace

Script& script() {
  // Never destroyed: the program's stack is destroyed after the tests, and its screen still records that
  // event.
  static auto& instance = *new Script;
  return instance;
}

std::unique_ptr<ui::Screen> make(const ui::GameState& descriptor) {
  const auto kind = static_cast<std::size_t>(descriptor.kind);
  if (kind >= kNames.size()) return nullptr;
  script().descriptor = descriptor;
  return std::make_unique<FakeScreen>(kNames[kind]);
}

}  // namespace fake
