// Long runs of random input: the program goes on, its files stay whole, its memory does not grow.
// VESKARA_MONKEY_FRAMES sets the frames of all seeds together, VESKARA_MONKEY_SEED the first seed.

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "monkey/monkey.h"
#include "monkey/no_opener.h"
#include "monkey/own_life.h"
#include "monkey/seed.h"
#include "storage/storage.h"
#include "support/memory.h"
#include "support/picture.h"
#include "ui/draw.h"

namespace {

using support::kGrowthPart;
using test::kScreenKinds;
using test::Monkey;
using test::NoOpener;
using test::OwnLife;
using test::UnseenProgram;

constexpr int kRuns = 4;
constexpr const char* kScreenNames[kScreenKinds] = {"Splash",   "Menu",    "LevelSelect", "Playing",
                                                    "Solved",   "Gallery", "Settings",    "About",
                                                    "Licenses", "Attract"};

long allFrames() { return test::numberFrom("VESKARA_MONKEY_FRAMES", VESKARA_MONKEY_FRAMES); }
unsigned seedOf(int run) { return test::firstSeed() + static_cast<unsigned>(run); }

std::string nameOf(unsigned seed, long frames) {
  return "monkey of seed " + std::to_string(seed) + ", " + std::to_string(frames) + " frames";
}

// Half of the monkeys start with all levels open.
void openLevels(unsigned seed) {
  if (seed % 2 == 0) store::saveProgress({.currentLevel = store::kLastLevel, .totalSolves = 0});
}

// A shorter run may miss a screen.
constexpr long kFramesToBeEverywhere = 5000;

void expectWasEverywhere(const Monkey& monkey, long frames) {
  for (std::size_t kind = 0; kind < kScreenKinds; ++kind) {
    std::printf("  %s %d", kScreenNames[kind], monkey.framesOn()[kind]);
    if (frames < kFramesToBeEverywhere) continue;
    EXPECT_GT(monkey.framesOn()[kind], 0) << kScreenNames[kind];
  }
  std::printf("\n");
}

class MonkeyRun : public testing::TestWithParam<int> {
 protected:
  NoOpener opener;
  OwnLife life;
};

INSTANTIATE_TEST_SUITE_P(Nr, MonkeyRun, testing::Range(0, kRuns));

TEST_P(MonkeyRun, IsSurvivedAndLeavesWholeFiles) {
  const unsigned seed = seedOf(GetParam());
  const long frames = allFrames() / kRuns;
  life.live(nameOf(seed, frames), [&](std::atomic<long>& frame) {
    openLevels(seed);
    UnseenProgram program;
    Monkey monkey(program, seed);
    for (frame = 0; frame < frames; ++frame) monkey.frame();
    expectWasEverywhere(monkey, frames);
  });
  life.expectWholeFiles();
}

// Measured over a tenth of the frames.
struct Memory {
  long bytes = 0;    // the median of the measurements at home
  int textures = 0;  // the maximum at any time
};

constexpr int kHomecomings = 5;  // in a tenth of the frames

// The game keeps some megabytes of fonts for a while, more or fewer by chance. This draws texts in so many
// sizes that the game forgets them.
void makeFontsForgotten() {
  const auto picture = support::makePicture(8, 8);
  const ui::CairoContext cr(cairo_create(picture.get()));
  PangoFontMap* kept = PANGO_FONT_MAP(g_object_ref(pango_cairo_font_map_get_default()));
  for (int i = 0; i < 400 && pango_cairo_font_map_get_default() == kept; ++i)
    ui::drawText(cr.get(), 0, 0, "Bamboo", {.size = 5 + i / 400.0});
  EXPECT_NE(pango_cairo_font_map_get_default(), kept);
  g_object_unref(kept);
}

// Returns the live bytes without the pixels of textures, which depend on the window's size. Cairo keeps the
// last fonts; after three rounds they are those of the texts drawn here. A thread of pango's may hold a
// round's memory a moment longer, so the minimum of several rounds counts.
long bytesWithoutFonts() {
  constexpr int kRounds = 6;
  long least = std::numeric_limits<long>::max();
  for (int round = 1; round <= kRounds; ++round) {
    makeFontsForgotten();
    if (round > 3) least = std::min(least, support::liveBytes() - test::liveTextures().bytes);
  }
  return least;
}

Memory playTenth(Monkey& monkey, long frames, std::atomic<long>& frame) {
  Memory memory;
  std::vector<long> bytes;
  for (int home = 0; home < kHomecomings; ++home) {
    for (long i = 0; i < frames / 10 / kHomecomings; ++i, ++frame) {
      monkey.frame();
      memory.textures = std::max(memory.textures, test::liveTextures().count);
    }
    monkey.goHome();
    bytes.push_back(bytesWithoutFonts());
  }
  std::sort(bytes.begin(), bytes.end());
  memory.bytes = bytes[kHomecomings / 2];
  std::printf("  up to frame %ld: %ld bytes (%ld to %ld), %d textures at most\n", frame.load(), memory.bytes,
              bytes.front(), bytes.back(), memory.textures);
  std::fflush(stdout);
  return memory;
}

// Pango and cairo cache each size of letters until they have met some hundred sizes.
constexpr long kLeastFrames = 200000;

TEST(MonkeyMemory, DoesNotGrow) {
  if (!support::kMemoryIsSeen) GTEST_SKIP() << "the sanitizers have allocators of their own";
  if (allFrames() < kLeastFrames) GTEST_SKIP() << "tells nothing below " << kLeastFrames << " frames";
  const NoOpener opener;
  const OwnLife life;
  const unsigned seed = seedOf(0);
  const long frames = allFrames();
  life.live(nameOf(seed, frames), [&](std::atomic<long>& frame) {
    // Use fonts with all letters: pango never frees some of the boxes that it draws for missing ones.
    setenv("FONTCONFIG_FILE", VESKARA_PLAYER_FONTS, 1);
    openLevels(seed);
    UnseenProgram program;
    Monkey monkey(program, seed);
    monkey.seeEverything();
    const Memory first = playTenth(monkey, frames, frame);
    Memory last;
    for (int tenth = 1; tenth < 10; ++tenth) last = playTenth(monkey, frames, frame);
    EXPECT_LE(last.bytes, first.bytes + first.bytes / kGrowthPart);
    EXPECT_LE(last.textures, first.textures + first.textures / kGrowthPart);
  });
}

}  // namespace
