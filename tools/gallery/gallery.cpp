// Paints the screens in their states, in several window sizes and languages, to be looked at.
// Run: cmake --build build/release --target gallery && build/release/tools/gallery DIRECTORY [WORD...]
// A word is a state, a language or a size. By default it paints all states and sizes, and the languages that
// differ most. Without a display: xvfb-run -a build/release/tools/gallery DIRECTORY

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "app/app.h"
#include "gallery/states.h"
#include "gallery/studio.h"
#include "resources/i18n.h"
#include "support/temp_dir.h"
#include "ui/fonts.h"

namespace {

using gallery::State;
using gallery::Window;

// The smallest size, one just below roomier bars, a high one, the usual one, half and all of a common
// display, two in which everything grows, and one with more pixels per point.
constexpr std::array kWindows = {Window{640, 480, 1},   Window{779, 600, 1},   Window{760, 1000, 1},
                                 Window{1100, 760, 1},  Window{1280, 720, 1},  Window{960, 1080, 1},
                                 Window{1920, 1080, 1}, Window{2560, 1440, 1}, Window{3840, 2160, 1},
                                 Window{1100, 760, 2}};
const std::vector<std::string> kUsualLanguages = {"en", "de", "el", "ru", "ja", "he", "ar"};

std::string name(const State& state) { return state.name; }
std::string name(const Window& window) { return nameOf(window); }

using Words = std::vector<std::string>;

// Returns those that are named, or all if none is. Removes their names from `words`.
template <class Things>
auto chosen(const Things& things, Words& words) {
  std::vector<typename Things::value_type> found;
  for (const auto& thing : things)
    if (std::erase(words, name(thing)) > 0) found.push_back(thing);
  return found.empty() ? std::vector<typename Things::value_type>(things.begin(), things.end()) : found;
}

std::vector<std::string> chosenLanguages(Words& words) {
  std::vector<std::string> found;
  for (const i18n::Language& language : i18n::languages())
    if (std::erase(words, language.code) > 0) found.push_back(language.code);
  return found.empty() ? kUsualLanguages : found;
}

struct Plan {
  std::vector<State> states;
  std::vector<std::string> languages;
  std::vector<Window> windows;
};

// Paints a frame after the longest time step of the game.
void save(gallery::Sitting& sitting, const std::string& path) {
  const ui::CairoSurface picture = sitting.picture(0.1);
  if (!picture || cairo_surface_write_to_png(picture.get(), path.c_str()) != CAIRO_STATUS_SUCCESS)
    std::fprintf(stderr, "no picture %s\n", path.c_str());
}

void paint(const gallery::Studio& studio, const Plan& plan, const std::string& directory,
           const support::TempDir& files) {
  for (const State& state : plan.states) {
    for (const std::string& language : plan.languages) {
      i18n::setLanguage(language);
      ui::Game::settings().language = language;
      for (const Window& window : plan.windows) {
        std::filesystem::remove_all(files.path("veskara"));
        gallery::Sitting sitting(studio, window, state.make());
        state.reach(sitting);
        save(sitting, directory + "/" + state.name + "_" + language + "_" + nameOf(window) + ".png");
      }
    }
  }
}

}  // namespace

// Without a temporary directory the program can only end.
// NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
  Words words(argv + std::min(argc, 2), argv + argc);
  const Plan plan = {chosen(gallery::states(), words), chosenLanguages(words), chosen(kWindows, words)};
  if (argc < 2 || !words.empty()) {
    std::fputs("usage: gallery DIRECTORY [STATE|LANGUAGE|SIZE]...\n", stderr);
    for (const std::string& word : words) std::fprintf(stderr, "nothing is called %s\n", word.c_str());
    return 1;
  }
  const support::TempDir files;
  setenv("XDG_DATA_HOME", files.path().c_str(), 1);
  setenv("TZ", "UTC", 1);
  ui::registerBundledFonts();
  const gallery::Studio studio;
  if (!studio.isOpen()) return 1;
  std::filesystem::create_directories(argv[1]);
  paint(studio, plan, argv[1], files);
  return 0;
}
