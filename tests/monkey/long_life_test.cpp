// Solves many levels in a row; VESKARA_LEVELS sets how many. The files must agree with an independent count,
// and files and memory must stay small.

#include <SDL_keycode.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "app/app.h"
#include "monkey/own_life.h"
#include "monkey/seed.h"
#include "monkey/unseen_program.h"
#include "rules/levels.h"
#include "screens/menu_layout.h"
#include "screens/solved_layout.h"
#include "storage/storage.h"
#include "support/memory.h"

namespace {

using support::kGrowthPart;
using test::UnseenProgram;
using ui::ScreenKind;

constexpr std::size_t kMostSolves = 200;
constexpr int kMostFrames = 2000;    // per level
constexpr double kFrameTime = 0.33;  // longer than a chosen pair stays: a pair goes every other frame
constexpr std::uintmax_t kMostFileBytes = 64 * 1024;

const ui::GameState& top() { return ui::Game::instance().descriptors().back(); }

// What the files should hold, counted without reading them.
class Count {
 public:
  void solved(const ui::GameState& result) {
    ++solves;
    const int aids = result.hints + result.shuffles;
    const int stars = aids == 0 ? 3 : aids <= 2 ? 2 : 1;
    const auto [best, isNew] = bests.try_emplace(result.level, store::LevelBest{stars, aids, result.timeMs});
    best->second.stars = std::max(best->second.stars, stars);
    best->second.aids = std::min(best->second.aids, aids);
    best->second.elapsedMs = std::min(best->second.elapsedMs, result.timeMs);
    store::SolveEntry entry;
    entry.level = result.level;
    entry.tiles = result.tiles;
    entry.seed = result.deal;
    entry.elapsedMs = result.timeMs;
    entry.stars = stars;
    entry.aids = aids;
    record(entry);
  }

  void expectInFiles() const {
    const store::Progress progress = store::loadProgress();
    EXPECT_EQ(progress.totalSolves, solves);
    EXPECT_EQ(progress.currentLevel, std::min(bests.rbegin()->first + 1, store::kLastLevel));
    for (const auto& [level, best] : bests) EXPECT_EQ(store::bestFor(level), best) << level;
    expectRecords();
  }

 private:
  static auto worth(const store::SolveEntry& entry) {
    return std::tuple(-entry.stars, entry.elapsedMs, entry.aids);
  }

  void record(const store::SolveEntry& entry) {
    const auto old = std::find_if(records.begin(), records.end(),
                                  [&](const store::SolveEntry& other) { return other.level == entry.level; });
    if (old != records.end()) {
      if (worth(entry) >= worth(*old)) return;
      records.erase(old);
    }
    records.insert(records.begin(), entry);
  }

  void expectRecords() const {
    std::vector<store::SolveEntry> written = store::listSolves();
    EXPECT_LE(written.size(), kMostSolves);
    ASSERT_EQ(written.size(), records.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
      // Its name and the time of the solve are unpredictable.
      written[i].id.clear();
      written[i].shot.clear();
      written[i].solvedAt = 0;
      EXPECT_TRUE(written[i] == records[i]) << "record " << i << " of level " << written[i].level;
    }
  }

  int solves = 0;
  std::map<int, store::LevelBest> bests;
  std::vector<store::SolveEntry> records;  // newest first
};

void require(bool holds, const std::string& what) {
  if (!holds) throw std::runtime_error(what);
}

class Player {
 public:
  explicit Player(std::atomic<long>& frameNumber) : frame(frameNumber) {}

  void solve(long levels) {
    // Skips the splash screen.
    pass(0);
    pass(3);
    newGame();
    for (long nr = 0; nr < levels; ++nr) {
      solveLevel(nr);
      const bool last = (nr + 1) % store::kLastLevel == 0 || nr + 1 == levels;
      if (!last) {
        next();
        continue;
      }
      toMenu();
      look(nr + 1);
      newGame();
    }
  }

 private:
  void pass(double dt) {
    ++frame;
    require(program.pass(dt), "the program ended");
  }
  void click(const ui::Rect& rect) {
    pass(1);  // the screen must have been shown before a click
    program.moveMouse(static_cast<int>(rect.x + rect.w / 2), static_cast<int>(rect.y + rect.h / 2));
    program.button(SDL_BUTTON_LEFT, true);
    program.button(SDL_BUTTON_LEFT, false);
    pass(0.1);
  }
  void newGame() {
    require(top().kind == ScreenKind::Menu, "this is not the menu");
    click(screens::menuLayout(program.size().w, program.size().h).plaque(screens::MenuEntry::NewGame));
  }
  ui::Rect solvedButton(std::size_t which) const {
    const screens::SolvedLayout layout = screens::solvedLayout(program.size().w, program.size().h);
    return screens::solvedButtons(layout.buttons, layout.wide)[which];
  }
  void next() { click(solvedButton(0)); }
  void toMenu() { click(solvedButton(2)); }

  // Some levels take more aids or more time than others, differently in each round.
  void solveLevel(long nr) {
    const int level = static_cast<int>(nr % store::kLastLevel) + 1;
    require(top().kind == ScreenKind::Playing && top().level == level,
            "this is not level " + std::to_string(level));
    const long round = nr / store::kLastLevel;
    pass(20);
    for (long hints = (7 * level + 3 * round) % 5; hints > 0; --hints) {
      program.key(SDLK_h);
      pass(0.1);
    }
    for (long idle = (level + 2 * round) % 4; idle > 0; --idle) pass(0.05);
    for (int frames = 0; top().kind == ScreenKind::Playing && frames < kMostFrames; ++frames)
      pass(kFrameTime);
    require(top().kind == ScreenKind::Solved, "not solved: level " + std::to_string(level));
    count.solved(top());
    // The second of these frames makes the picture.
    for (int frames = 0; frames < 3; ++frames) pass(0.5);
  }

  // Measures at rest in the menu.
  void look(long solved) {
    for (int frames = 0; frames < 10; ++frames) pass(0.1);
    count.expectInFiles();
    const std::string dir = store::dataDir();
    for (const char* file : {"/progress.json", "/solves.json", "/save.json"}) {
      EXPECT_LT(std::filesystem::file_size(dir + file), kMostFileBytes) << file;
    }
    lookAtMemory(solved);
  }

  void lookAtMemory(long solved) {
    const test::LiveTextures textures = test::liveTextures();
    const long bytes = support::liveBytes() - textures.bytes;
    std::printf("  after %ld levels and %ld frames: %ld bytes and %d textures of %ld\n", solved, frame.load(),
                bytes, textures.count, textures.bytes);
    if (!support::kMemoryIsSeen) return;
    if (firstBytes == 0) firstBytes = bytes;
    EXPECT_LE(bytes, firstBytes + firstBytes / kGrowthPart) << "after " << solved << " levels";
  }

  UnseenProgram program;
  Count count;
  std::atomic<long>& frame;
  long firstBytes = 0;
};

TEST(LongLife, IsCountedRightAndLeavesNothingBehind) {
  const test::OwnLife life;
  const long levels = test::numberFrom("VESKARA_LEVELS", VESKARA_LEVELS);
  life.live(std::to_string(levels) + " levels", [&](std::atomic<long>& frame) {
    setenv("VESKARA_AUTOPLAY", "0.02", 1);
    Player(frame).solve(levels);
  });
  life.expectWholeFiles();
}

}  // namespace
