// data_lock.h: keeps two running programs from interfering with each other in one data directory. Knows none
// of its files. Only for src/storage.
#pragma once

namespace store {

enum class Access { Read, Change };

// Held for a whole operation: shared for reading, exclusive for changing. The lock is on the directory
// itself, so there is no lock file, and the system releases it when the process dies. A game waits 50 ms at
// most. If the directory is missing or cannot be locked, or another process holds the lock for longer, the
// operation goes on without the lock. Hold only one at a time: a second one in the same process waits for the
// first.
class DataLock {
 public:
  // With Access::Change the directory is created if it is missing.
  explicit DataLock(Access access);
  DataLock(const DataLock&) = delete;
  DataLock& operator=(const DataLock&) = delete;
  ~DataLock();

 private:
  int directory;  // file descriptor; negative if it could not be opened
};

}  // namespace store
