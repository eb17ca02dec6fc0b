#include "monkey/own_life.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include "monkey/whole_files.h"
#include "support/own_process.h"

namespace test {
namespace {

// One process writes it, the other reads it.
class SharedNumber {
 public:
  SharedNumber()
      : page(mmap(nullptr, sizeof(std::atomic<long>), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1,
                  0)) {
    if (page == MAP_FAILED) throw std::bad_alloc();
  }
  SharedNumber(const SharedNumber&) = delete;
  SharedNumber& operator=(const SharedNumber&) = delete;
  ~SharedNumber() { munmap(page, sizeof(std::atomic<long>)); }

  std::atomic<long>& value() { return *static_cast<std::atomic<long>*>(page); }

 private:
  void* page;
};

[[noreturn]] void runAndEnd(const std::string& home, const OwnLife::Run& run, std::atomic<long>& frame) {
  setenv("XDG_DATA_HOME", home.c_str(), 1);
  setenv("XDG_CACHE_HOME", (home + "/cache").c_str(), 1);
  try {
    run(frame);
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what();
  }
  std::exit(testing::Test::HasFailure() ? 1 : 0);
}

}  // namespace

void OwnLife::live(const std::string& name, const Run& run) const {
  SharedNumber frame;
  std::printf("%s\n", name.c_str());
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) runAndEnd(home.path(), run, frame.value());
  int status = 0;
  const bool ended = child > 0 && waitpid(child, &status, 0) == child;
  EXPECT_TRUE(ended && status == 0) << name << " ended in frame " << frame.value() << " with status "
                                    << status;
}

void OwnLife::expectWholeFiles() const {
  const std::string problems = support::inOwnProcess([this] {
    setenv("XDG_DATA_HOME", home.path().c_str(), 1);
    return problemsOfFiles();
  });
  EXPECT_EQ(problems, "");
}

}  // namespace test
