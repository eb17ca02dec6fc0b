#include "monkey/whole_files.h"

#include <cairo.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "storage/storage.h"
#include "support/temp_dir.h"
#include "ui/handles.h"

namespace test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr int kShotSize = 640;

class Files {
 public:
  std::string problems() {
    unknownFiles();
    settings();
    progress();
    savedGame();
    solves();
    return text;
  }

 private:
  void problem(const std::string& what) { text += what + "\n"; }
  void expect(bool holds, const std::string& what) {
    if (!holds) problem(what);
  }
  template <class Value>
  void expectSame(const json& written, const Value& read, const std::string& name) {
    expect(written == json(read), name + " is " + written.dump() + ", read as " + json(read).dump());
  }

  void unknownFiles() {
    const std::set<std::string> known = {"settings.json", "progress.json", "save.json", "solves.json",
                                         "solves"};
    for (const auto& entry : fs::directory_iterator(store::dataDir())) {
      expect(known.contains(entry.path().filename()), "unknown file " + entry.path().string());
    }
  }

  // Returns null for a missing file.
  json document(const char* file, json::value_t kind) {
    const std::string path = store::dataDir() + "/" + file;
    if (!fs::exists(path)) return nullptr;
    json parsed = json::parse(support::readAll(path), nullptr, false);
    if (parsed.type() == kind) return parsed;
    problem(path + " is no whole document");
    return nullptr;
  }

  void settings() {
    const json doc = document("settings.json", json::value_t::object);
    if (doc.is_null()) return problem("no settings");
    const store::Settings read = store::loadSettings();
    expectSame(doc["language"], read.language, "language");
    expectSame(doc["soundOn"], read.soundOn, "soundOn");
    expectSame(doc["musicVolume"], read.musicVolume, "musicVolume");
    expectSame(doc["sfxVolume"], read.sfxVolume, "sfxVolume");
    expectSame(doc["fullscreen"], read.fullscreen, "fullscreen");
    expectSame(doc["maximized"], read.maximized, "maximized");
    expectSame(doc["windowX"], read.windowX, "windowX");
    expectSame(doc["windowY"], read.windowY, "windowY");
    // A window manager may make the window smaller than the game ever opens it.
    expectSame(std::max(doc["windowW"].get<int>(), store::kMinWindowW), read.windowW, "windowW");
    expectSame(std::max(doc["windowH"].get<int>(), store::kMinWindowH), read.windowH, "windowH");
  }

  void progress() {
    const json doc = document("progress.json", json::value_t::object);
    if (doc.is_null()) return;
    const store::Progress read = store::loadProgress();
    expectSame(doc["currentLevel"], read.currentLevel, "currentLevel");
    expectSame(doc["totalSolves"], read.totalSolves, "totalSolves");
    for (const auto& [level, best] : doc["bests"].items()) {
      const store::LevelBest known = store::bestFor(std::stoi(level));
      expectSame(best["stars"], known.stars, "stars of level " + level);
      expectSame(best["aids"], known.aids, "aids of level " + level);
      expectSame(best["elapsedMs"], known.elapsedMs, "time of level " + level);
      expect(known.stars >= 1 && known.stars <= 3 && known.aids >= 0 && known.elapsedMs >= 0,
             "nonsense for level " + level);
    }
  }

  void savedGame() {
    const json doc = document("save.json", json::value_t::object);
    if (doc.is_null() || !doc.contains("current_mahjong")) return;
    const json& game = doc["current_mahjong"];
    const store::SavedGame read = store::loadGame();
    if (!read.valid) return problem("the saved game cannot be read");
    expectSame(game["level"], read.level, "level");
    expectSame(game["seed"], read.seed, "seed");
    expectSame(game["faces"], read.game.faces, "faces");
    expectSame(game["selectedId"], read.game.selected, "selectedId");
    expectSame(game["hintsUsed"], read.game.hints, "hintsUsed");
    expectSame(game["shufflesUsed"], read.game.shuffles, "shufflesUsed");
    expectSame(game["elapsedMs"], read.elapsedMs, "elapsedMs");
    expectSame(game["history"].size(), read.game.history.size(), "moves");
  }

  void solves() {
    const json doc = document("solves.json", json::value_t::array);
    const std::vector<store::SolveEntry> read = store::listSolves();
    expectSame(doc.size(), read.size(), "solves");
    std::set<std::string> shots;
    std::set<int> levels;
    for (const store::SolveEntry& entry : read) {
      expect(levels.insert(entry.level).second, "two solves of level " + std::to_string(entry.level));
      expect(shots.insert(entry.shot).second, "two solves with the picture " + entry.shot);
      picture(store::shotPath(entry));
    }
    if (!fs::exists(store::solvesDir())) return;
    for (const auto& entry : fs::directory_iterator(store::solvesDir())) {
      expect(shots.contains(entry.path().filename()), "a picture without a solve: " + entry.path().string());
    }
  }

  void picture(const std::string& path) {
    const ui::CairoSurface shot(cairo_image_surface_create_from_png(path.c_str()));
    expect(cairo_image_surface_get_width(shot.get()) == kShotSize &&
               cairo_image_surface_get_height(shot.get()) == kShotSize,
           "no picture " + path);
  }

  std::string text;
};

}  // namespace

std::string problemsOfFiles() { return Files().problems(); }

}  // namespace test
