// Writes one of each of the player's files. read_back.py knows their expected contents.

#include "rules/engine.h"
#include "rules/levels.h"
#include "storage/storage.h"

namespace {

void writeSettings() {
  store::Settings settings;
  settings.language = "zh-TW";
  settings.soundOn = false;
  settings.musicVolume = 0.1;
  settings.fullscreen = true;
  settings.windowW = 801;
  settings.windowH = 602;
  settings.windowX = -5;
  store::saveSettings(settings);
}

void writeProgress() {
  store::saveProgress({.currentLevel = 12, .totalSolves = 34});
  store::recordBest(2, {.stars = 3, .aids = 0, .elapsedMs = 61234});
  store::recordBest(10, {.stars = 1, .aids = 7, .elapsedMs = 5000000000});
}

void writeGame() {
  store::SavedGame saved;
  saved.level = 1;
  saved.seed = 4294967295;
  saved.game = mj::createGame(mj::levelToConfig(1).slots, saved.seed);
  for (int i = 0; i < 2; ++i) {
    const auto [a, b] = mj::findHint(saved.game);
    mj::applyMatch(saved.game, a, b);
  }
  saved.game.selected = 5;
  saved.game.rng = 4000000000;
  saved.game.hints = 2;
  saved.game.shuffles = 1;
  saved.elapsedMs = 123456;
  store::saveGame(saved);
}

void writeSolves() {
  store::SolveEntry entry;
  entry.id = "1718000000123_4821";
  entry.level = 3;
  entry.tiles = 36;
  entry.seed = 4294967295;
  entry.elapsedMs = 61234;
  entry.solvedAt = 1718000000123;
  entry.shot = "a \"picture\"\\ \t\x01 \xc3\xa9.png";
  entry.stars = 2;
  entry.aids = 1;
  store::recordSolve(entry);
  store::SolveEntry newer;
  newer.id = "b";
  newer.level = 4;
  store::recordSolve(newer);
}

}  // namespace

int main() {
  writeSettings();
  writeProgress();
  writeGame();
  writeSolves();
  return 0;
}
