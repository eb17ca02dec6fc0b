#include "window/data_files.h"

#include <cairo.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/storage.h"
#include "support/own_process.h"
#include "support/temp_dir.h"
#include "ui/handles.h"

namespace window {
namespace {

namespace fs = std::filesystem;
using js::Value;

const std::map<std::string, Value::Kind> kDocuments = {{"settings.json", Value::Object},
                                                       {"progress.json", Value::Object},
                                                       {"save.json", Value::Object},
                                                       {"solves.json", Value::Array}};

Value readDocument(const std::string& path) {
  Value document;
  if (!js::parseFile(path, &document)) js::parseFile(js::temporaryPath(path), &document);
  return document;
}

bool isWholeDocument(const fs::path& path, Value::Kind kind) {
  Value document;
  return js::parseFile(path, &document) && document.kind == kind;
}

bool isWholePicture(const fs::path& path) {
  const ui::CairoSurface picture(cairo_image_surface_create_from_png(path.c_str()));
  return cairo_surface_status(picture.get()) == CAIRO_STATUS_SUCCESS;
}

bool isWholeFile(const fs::path& path) {
  const auto document = kDocuments.find(path.filename());
  if (document != kDocuments.end()) return isWholeDocument(path, document->second);
  if (path.extension() == ".png") return isWholePicture(path);
  return path.filename() == "solves" && fs::is_directory(path);
}

}  // namespace

DataFiles::DataFiles(const std::string& directory)
    : settings(readDocument(directory + "/settings.json")),
      progress(readDocument(directory + "/progress.json")),
      save(readDocument(directory + "/save.json")),
      solves(readDocument(directory + "/solves.json")) {}

testing::AssertionResult areWhole(const std::string& directory) {
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (!isWholeFile(entry.path())) {
      return testing::AssertionFailure()
             << entry.path() << " holds \"" << support::readAll(entry.path()).substr(0, 200) << "\"";
    }
  }
  return testing::AssertionSuccess();
}

std::string writtenFile(const std::string& name, const std::function<void()>& write) {
  const support::TempDir home;
  return support::inOwnProcess([&] {
    setenv("XDG_DATA_HOME", home.path().c_str(), 1);
    write();
    return support::readAll(home.path("veskara/" + name));
  });
}

std::string savedGame(int pairsLeft) {
  store::SavedGame saved = {
      .valid = true, .level = 1, .seed = 1, .game = mj::createGame(mj::levelToConfig(1).slots, 1)};
  mj::GameState& game = saved.game;
  while (static_cast<int>(game.slots.size()) - game.removed > 2 * pairsLeft) {
    const auto [a, b] = mj::findHint(game);
    mj::applyMatch(game, a, b);
  }
  saved.elapsedMs = 60000;
  return writtenFile("save.json", [&] { store::saveGame(saved); });
}

std::string solvedLevels(int last) {
  return writtenFile("solves.json", [last] {
    for (int level = 1; level <= last; ++level) {
      const std::string id = std::to_string(level) + "_1";
      store::recordSolve({.id = id,
                          .level = level,
                          .tiles = 36,
                          .seed = 1,
                          .elapsedMs = 60000,
                          .shot = id + ".png",
                          .stars = 3});
    }
  });
}

std::string progressAfterLevel1() {
  return writtenFile("progress.json", [] {
    store::advanceLevel(1);
    store::recordBest(1, {.stars = 3, .aids = 0, .elapsedMs = 60000});
  });
}

}  // namespace window
