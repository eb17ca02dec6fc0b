// home.h: a home directory and a copy of the program for a user without privileges. For tests of file
// permissions, which do not apply to root.
#pragma once

#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/temp_dir.h"
#include "window/child.h"

namespace window {

class Home {
 public:
  Home() {
    std::filesystem::permissions(
        dir.path(), std::filesystem::perms::owner_all | std::filesystem::perms::group_exec |
                        std::filesystem::perms::others_exec | std::filesystem::perms::group_read |
                        std::filesystem::perms::others_read);
    std::filesystem::create_directories(data());
    for (const char* file : {VESKARA_PROGRAM, VESKARA_KEEP_LIBRARIES, VESKARA_LEAKS}) {
      std::filesystem::copy_file(file, dir.path(std::filesystem::path(file).filename()));
    }
  }

  std::string path(const std::string& below) const { return dir.path(below); }
  std::string data() const { return dir.path("data/veskara"); }
  void write(const std::string& file, const std::string& text) const {
    support::writeFile(data() + "/" + file, text);
  }
  // Gives this home to the user nobody. Does nothing unless the test runs as root.
  void giveToNobody() const {
    if (geteuid() != 0) return;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(dir.path("data")))
      give(entry.path());
    give(dir.path("data"));
    give(dir.path());
  }
  // The command that runs the program as that user. `before` is an optional program that starts it, with its
  // arguments.
  std::vector<std::string> command(const std::vector<std::string>& before = {}) const {
    std::vector<std::string> command;
    if (geteuid() == 0) {
      command = {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups", "--pdeathsig=KILL"};
    }
    command.insert(command.end(), before.begin(), before.end());
    command.push_back(dir.path(std::filesystem::path(VESKARA_PROGRAM).filename()));
    return command;
  }
  Environment environment() const {
    Environment environment = {
        {"HOME", dir.path()}, {"XDG_DATA_HOME", dir.path("data")}, {"XDG_CACHE_HOME", dir.path("cache")}};
#ifdef __SANITIZE_ADDRESS__
    environment["LD_PRELOAD"] = dir.path(std::filesystem::path(VESKARA_KEEP_LIBRARIES).filename());
    environment["LSAN_OPTIONS"] =
        "suppressions=" + dir.path(std::filesystem::path(VESKARA_LEAKS).filename()) + ":print_suppressions=0";
#endif
    return environment;
  }

 private:
  static void give(const std::filesystem::path& path) {
    constexpr unsigned kNobody = 65534;
    if (lchown(path.c_str(), kNobody, kNobody) != 0) throw std::runtime_error("cannot give " + path.string());
  }

  support::TempDir dir;
};

}  // namespace window
