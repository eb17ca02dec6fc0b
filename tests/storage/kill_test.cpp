// Kills a saving process at random moments. The last saved state must be there, or the one being saved.

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>

#include "states.h"
#include "support/data_home.h"

namespace {

using test::Kind;

// A tenth under sanitizers, as with the deals.
constexpr int kKills = VESKARA_TEST_DEALS * 5 / 2;

// Progress of the saving process, shared with the one that kills it.
struct Saves {
  std::atomic<int> begun = 0;
  std::atomic<int> done = 0;
};

Saves& sharedSaves() {
  void* const memory =
      mmap(nullptr, sizeof(Saves), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("no shared memory");
  return *new (memory) Saves;
}

[[noreturn]] void saveForEver(const Kind& kind, Saves& saves) {
  for (int n = saves.done + 1;; ++n) {
    saves.begun = n;
    kind.save(n);
    saves.done = n;
  }
}

// Lets a process save until it has saved once, and for the time `more` after that. Then kills it.
void killWhileSaving(const Kind& kind, Saves& saves, std::chrono::microseconds more) {
  const int before = saves.done;
  const pid_t child = fork();
  ASSERT_GE(child, 0);
  if (child == 0) saveForEver(kind, saves);
  int status = 0;
  while (saves.done == before) {
    ASSERT_EQ(waitpid(child, &status, WNOHANG), 0) << "the process ended by itself, status " << status;
    std::this_thread::sleep_for(std::chrono::microseconds(50));
  }
  std::this_thread::sleep_for(more);
  ASSERT_EQ(kill(child, SIGKILL), 0);
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status)) << status;
}

class Killed : public testing::TestWithParam<Kind> {};

TEST_P(Killed, AtRandomMomentsLosesNothing) {
  const support::DataHome home;
  Saves& saves = sharedSaves();
  const unsigned seed = std::random_device()();
  std::mt19937 random(seed);
  std::uniform_int_distribution<int> microseconds(0, 400);
  int torn = 0;
  for (int i = 0; i < kKills; ++i) {
    killWhileSaving(GetParam(), saves, std::chrono::microseconds(microseconds(random)));
    if (HasFatalFailure()) return;
    torn += std::filesystem::exists(home.path(GetParam().file) + std::string(".tmp")) ? 1 : 0;
    const int found = GetParam().load();
    ASSERT_GE(found, saves.done) << "seed " << seed << ", kill " << i;
    ASSERT_LE(found, saves.begun) << "seed " << seed << ", kill " << i;
    saves.done = found;
  }
  std::printf("seed %u: %d kills, %d of them left a temporary file; %d states\n", seed, kKills, torn,
              saves.done.load());
  EXPECT_EQ(munmap(&saves, sizeof saves), 0);
}

INSTANTIATE_TEST_SUITE_P(Saving, Killed, testing::ValuesIn(test::kinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
