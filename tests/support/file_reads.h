// file_reads.h: how often a file is opened. Knows nothing of who opens it.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

namespace support {

// Counts from its making on.
class FileReads {
 public:
  // The file must be there, and is not to be replaced meanwhile.
  explicit FileReads(const std::string& path) : queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // An event like the one before it would be dropped: closing comes in between.
    if (inotify_add_watch(queue, path.c_str(), IN_OPEN | IN_CLOSE) < 0)
      throw std::runtime_error("cannot watch " + path);
  }
  FileReads(const FileReads&) = delete;
  FileReads& operator=(const FileReads&) = delete;
  ~FileReads() { close(queue); }

  // Since it was asked last.
  int count() const {
    int opened = 0;
    std::array<inotify_event, 64> events;
    for (ssize_t got = 0; (got = read(queue, events.data(), sizeof events)) > 0;) {
      // Watched by its own path, a file has events without a name, all of one size.
      for (std::size_t i = 0; i < static_cast<std::size_t>(got) / sizeof(inotify_event); ++i) {
        if ((events[i].mask & IN_OPEN) != 0) ++opened;
      }
    }
    return opened;
  }

 private:
  int queue;
};

}  // namespace support
