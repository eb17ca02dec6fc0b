// Tests what happens when the lock on the player's files is not available. two_programs_test.cpp tests that
// it keeps two programs apart.

#include "storage/data_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <string>

#include "storage/storage.h"
#include "support/data_home.h"

namespace {

using support::DataHome;

// A lock on the directory held by another program.
class Other {
 public:
  explicit Other(const std::string& directory) : fd(open(directory.c_str(), O_RDONLY | O_CLOEXEC)) {}
  Other(const Other&) = delete;
  Other& operator=(const Other&) = delete;
  ~Other() { close(fd); }

  bool takes(int kind) const { return flock(fd, kind | LOCK_NB) == 0; }

 private:
  int fd;
};

TEST(DataLock, IsFreeAgainAfterEachOperation) {
  const DataHome home;
  store::saveProgress({7, 12});
  store::loadProgress();
  EXPECT_TRUE(Other(home.path()).takes(LOCK_EX));
}

TEST(DataLock, IsHeldAgainstEverybodyByAChangeAndAgainstChangesByAReader) {
  const DataHome home;
  store::ensureDataDirs();
  {
    const store::DataLock lock(store::Access::Change);
    EXPECT_FALSE(Other(home.path()).takes(LOCK_SH));
  }
  const store::DataLock lock(store::Access::Read);
  EXPECT_FALSE(Other(home.path()).takes(LOCK_EX));
  EXPECT_TRUE(Other(home.path()).takes(LOCK_SH));
}

// The bound is far above the game's 50 ms because the machine may be busy.
TEST(DataLock, ThatNobodyLetsGoOfIsDoneWithout) {
  using Clock = std::chrono::steady_clock;
  const DataHome home;
  store::ensureDataDirs();
  const Other stuck(home.path());
  ASSERT_TRUE(stuck.takes(LOCK_EX));
  const Clock::time_point begun = Clock::now();
  store::saveProgress({7, 12});
  EXPECT_EQ(store::loadProgress(), (store::Progress{7, 12}));
  EXPECT_LT(Clock::now() - begun, std::chrono::seconds(2));
}

TEST(DataLock, ToReadMakesNoDirectory) {
  const DataHome home;
  EXPECT_EQ(store::loadProgress(), store::Progress());
  EXPECT_FALSE(home.has(""));
}

TEST(DataLock, LeavesNothingInTheDirectory) {
  const DataHome home;
  store::saveProgress({7, 12});
  for (const auto& entry : std::filesystem::directory_iterator(home.path())) {
    EXPECT_EQ(entry.path().filename(), "progress.json");
  }
}

}  // namespace
