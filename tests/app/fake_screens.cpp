#include "app/fake_screens.h"

#include <memory>
#include <utility>

#include "screens/screens.h"

namespace fake {
namespace {

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
  // Never destroyed: the program's own stack ends after the tests, and its screen notes even that.
  static auto& instance = *new Script;
  return instance;
}

}  // namespace fake

namespace screens {

std::unique_ptr<ui::Screen> makeSplash() { return std::make_unique<fake::FakeScreen>("Splash"); }
std::unique_ptr<ui::Screen> makeMenu() { return std::make_unique<fake::FakeScreen>("Menu"); }
std::unique_ptr<ui::Screen> makeLevelSelect() { return std::make_unique<fake::FakeScreen>("LevelSelect"); }
std::unique_ptr<ui::Screen> makeGallery() { return std::make_unique<fake::FakeScreen>("Gallery"); }
std::unique_ptr<ui::Screen> makeSettings() { return std::make_unique<fake::FakeScreen>("Settings"); }
std::unique_ptr<ui::Screen> makeAbout() { return std::make_unique<fake::FakeScreen>("About"); }
std::unique_ptr<ui::Screen> makeLicenses() { return std::make_unique<fake::FakeScreen>("Licenses"); }
std::unique_ptr<ui::Screen> makeAttract() { return std::make_unique<fake::FakeScreen>("Attract"); }

std::unique_ptr<ui::Screen> makePlaying(const ui::GameState& descriptor) {
  fake::script().descriptor = descriptor;
  return std::make_unique<fake::FakeScreen>("Playing");
}

std::unique_ptr<ui::Screen> makeSolved(const ui::GameState& descriptor) {
  fake::script().descriptor = descriptor;
  return std::make_unique<fake::FakeScreen>("Solved");
}

}  // namespace screens
