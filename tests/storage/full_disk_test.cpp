// Saving on full disks and in directories without write permission.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "states.h"
#include "support/data_home.h"
#include "support/own_process.h"

namespace {

using support::DataHome;
using support::inOwnProcess;
using test::Kind;

constexpr std::size_t kPage = 4096;
constexpr uid_t kNobody = 65534;

// What saving the state prints on standard error, captured by a pipe because the disk may be full.
std::string save(const Kind& kind, int n) {
  return inOwnProcess([&] {
    std::array<int, 2> ends = {};
    if (pipe(ends.data()) != 0 || dup2(ends[1], STDERR_FILENO) < 0) return std::string("no pipe");
    kind.save(n);
    close(ends[1]);
    close(STDERR_FILENO);
    std::string said(1000, '\0');
    said.resize(static_cast<std::size_t>(std::max<ssize_t>(read(ends[0], said.data(), said.size()), 0)));
    return said;
  });
}

class Disk : public testing::TestWithParam<Kind> {
 protected:
  const Kind& kind = GetParam();
};

TEST_P(Disk, ThatBreaksOffAnywhereKeepsTheOldState) {
  const DataHome home;
  kind.save(1);
  kind.save(2);
  const std::string old = home.text(kind.file);
  // The margin of 4 bytes allows for a slightly shorter next state.
  for (rlim_t limit = 0; limit + 4 < old.size(); limit += 1 + old.size() / 10) {
    const std::string said = inOwnProcess([&] {
      std::signal(SIGXFSZ, SIG_IGN);
      const rlimit bytes = {limit, limit};
      setrlimit(RLIMIT_FSIZE, &bytes);
      return save(kind, 3);
    });
    EXPECT_EQ(said, home.failureOf(kind.file)) << limit;
    EXPECT_EQ(home.text(kind.file), old) << limit;
  }
  EXPECT_EQ(save(kind, 3), "");
  EXPECT_EQ(kind.load(), 3);
}

// Mounts a small disk in a private mount namespace of this process. False if that is not permitted.
bool mountSmallDisk(const std::string& at) {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("tmpfs", at.c_str(), "tmpfs", 0, "size=256k") == 0;
}

void fillBut(const std::string& path, std::uintmax_t room) {
  std::ofstream file(path, std::ios::binary);
  while (std::filesystem::space(std::filesystem::path(path).parent_path()).available > room) {
    file << std::string(kPage, 'x') << std::flush;
  }
}

TEST_P(Disk, ThatIsFullKeepsTheOldStateUntilThereIsRoomAgain) {
  const DataHome home;
  std::filesystem::create_directories(home.path());
  const std::string told = inOwnProcess([&]() -> std::string {
    if (!mountSmallDisk(home.path())) return "no mount";
    kind.save(1);
    for (const std::uintmax_t room : {std::size_t{0}, kPage}) {
      fillBut(home.path("filler"), room);
      std::string said = save(kind, 2);
      const int found = kind.load();
      if (found != (said.empty() ? 2 : 1)) return "state " + std::to_string(found) + " and " + said;
      if (!said.empty() && said != home.failureOf(kind.file)) return said;
      if (room == 0 && said.empty()) return "the disk was not full";
      std::filesystem::remove(home.path("filler"));
    }
    kind.save(2);
    return std::to_string(kind.load());
  });
  if (told == "no mount") GTEST_SKIP() << "mounting is not permitted here";
  EXPECT_EQ(told, "2");
}

// Runs `act` as a user for whom permissions count, so not as root. That user may create the data directory.
std::string asNobody(const DataHome& home, const std::function<std::string()>& act) {
  const std::string above = std::filesystem::path(home.path()).parent_path().string();
  if (geteuid() == 0 && chown(above.c_str(), kNobody, kNobody) != 0) return "no chown";
  return inOwnProcess([&] {
    if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return std::string("still root");
    return act();
  });
}

TEST_P(Disk, WithADirectoryThatMayNotBeWrittenKeepsTheOldState) {
  using std::filesystem::perms;
  const DataHome home;
  EXPECT_EQ(asNobody(home,
                     [&] {
                       kind.save(1);
                       std::filesystem::permissions(home.path(), perms(0555));
                       std::string told = save(kind, 2);
                       told += std::to_string(kind.load());
                       std::filesystem::permissions(home.path(), perms(0755));
                       told += save(kind, 2);
                       return told + std::to_string(kind.load());
                     }),
            home.failureOf(kind.file) + "12");
}

// Regression: such a file stopped all saving of its kind, or was lost.
TEST_P(Disk, WithAFileThatMayNotBeReadSetsItAsideAndSaves) {
  using std::filesystem::perms;
  const DataHome home;
  const std::string aside = home.path(kind.file) + std::string(".unread1");
  EXPECT_EQ(asNobody(home,
                     [&] {
                       kind.save(1);
                       std::filesystem::permissions(home.path(kind.file), perms(0));
                       std::string said = save(kind, 2);
                       std::filesystem::permissions(aside, perms(0644));
                       said += save(kind, 3);
                       if (!std::filesystem::exists(home.path(kind.file))) said += "not saved";
                       std::filesystem::rename(aside, home.path(kind.file));
                       return said + std::to_string(kind.load());
                     }),
            "[store] konnte " + home.path(kind.file) + " nicht lesen, aufgehoben als " + aside + "\n1");
}

INSTANTIATE_TEST_SUITE_P(Saving, Disk, testing::ValuesIn(test::kinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

}  // namespace
