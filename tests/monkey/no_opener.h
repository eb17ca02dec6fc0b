// no_opener.h: puts an xdg-open that opens nothing first in the path.
#pragma once

#include <sys/stat.h>

#include <cstdlib>
#include <string>

#include "support/temp_dir.h"

namespace test {

class NoOpener {
 public:
  NoOpener() {
    chmod(dir.makeFile("xdg-open", "#!/bin/sh\n").c_str(), S_IRWXU);
    setenv("PATH", (dir.path() + ":" + before).c_str(), 1);
  }
  NoOpener(const NoOpener&) = delete;
  NoOpener& operator=(const NoOpener&) = delete;
  ~NoOpener() { setenv("PATH", before.c_str(), 1); }

 private:
  support::TempDir dir;
  std::string before = std::getenv("PATH");
};

}  // namespace test
