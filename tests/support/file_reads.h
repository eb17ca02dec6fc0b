// file_reads.h: counts how often a file is opened, by any process.
#pragma once

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>

namespace support {

// Counts from construction.
class FileReads {
 public:
  // The file must exist and must not be replaced meanwhile.
  explicit FileReads(const std::string& path) : queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
    // inotify merges an event with an identical predecessor. Watching IN_CLOSE too keeps successive opens
    // apart.
    if (inotify_add_watch(queue, path.c_str(), IN_OPEN | IN_CLOSE) < 0)
      throw std::runtime_error("cannot watch " + path);
  }
  FileReads(const FileReads&) = delete;
  FileReads& operator=(const FileReads&) = delete;
  ~FileReads() { close(queue); }

  // Number of opens since the last call.
  int count() const {
    int opened = 0;
    std::array<inotify_event, 64> events;
    for (ssize_t got = 0; (got = read(queue, events.data(), sizeof events)) > 0;) {
      // A file watched by its own path has events without a name, so all have the same size.
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
