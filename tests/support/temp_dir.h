// temp_dir.h: a directory of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace support {

// Makes a file, its directories too.
inline void writeFile(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

// An empty directory, removed with all that came into it when the object goes.
class TempDir {
 public:
  TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "veskara-test-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    root = name;
  }
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;
  ~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(root, ignored);
  }

  std::string path(const std::string& below = "") const { return below.empty() ? root : root + "/" + below; }

  // Makes a directory with its ancestors, and gives back its path.
  std::string makeDir(const std::string& below) const {
    std::filesystem::create_directories(path(below));
    return path(below);
  }

  // Makes a file, its directories too, and gives back its path.
  std::string makeFile(const std::string& below, const std::string& bytes) const {
    writeFile(path(below), bytes);
    return path(below);
  }

 private:
  std::string root;
};

// A whole file, empty if there is none.
inline std::string readAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace support
