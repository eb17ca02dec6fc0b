// data_lock.h: keeps two programs on one data directory from coming between each other's reading and writing.
// Knows no file in it. For this folder alone.
#pragma once

namespace store {

enum class Access { Read, Change };

// Held for a whole operation: others may read while it reads, and wait while it changes. What is locked is
// the directory itself, so nothing lies about, and the system unlocks it when its owner dies. A game waits no
// longer than a few frames: without a directory, where it cannot be locked, or while somebody never lets go
// of it, the operation goes on without. One at a time: a second one in a process waits for the first.
class DataLock {
 public:
  // To change something, the directory is made where it is missing.
  explicit DataLock(Access access);
  DataLock(const DataLock&) = delete;
  DataLock& operator=(const DataLock&) = delete;
  ~DataLock();

 private:
  int directory;  // below 0: it could not be opened
};

}  // namespace store
