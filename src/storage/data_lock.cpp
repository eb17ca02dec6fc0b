#include "storage/data_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "storage/paths.h"
#include "storage/storage.h"

namespace store {
namespace {

using Clock = std::chrono::steady_clock;

// An operation takes a fraction of a millisecond, more on a busy machine.
constexpr std::chrono::milliseconds kLongestWait(50);
constexpr std::chrono::microseconds kBetweenTries(50);

int openDirectory(Access access) {
  if (access == Access::Change) paths::ensureDir(dataDir());
  return open(dataDir().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// Locks the directory until it is closed, or gives up after kLongestWait.
void lock(int directory, Access access) {
  const int kind = access == Access::Read ? LOCK_SH : LOCK_EX;
  const Clock::time_point end = Clock::now() + kLongestWait;
  while (flock(directory, kind | LOCK_NB) != 0 && errno == EWOULDBLOCK && Clock::now() < end) {
    std::this_thread::sleep_for(kBetweenTries);
  }
}

}  // namespace

DataLock::DataLock(Access access) : directory(openDirectory(access)) {
  if (directory >= 0) lock(directory, access);
}

DataLock::~DataLock() {
  if (directory >= 0) close(directory);
}

}  // namespace store
