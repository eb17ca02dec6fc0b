// temp_dir.h: a temporary directory for a test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <system_error>

namespace support {

// Writes a file and creates its directories.
inline void writeFile(const std::string& path, const std::string& bytes) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

// An empty directory, removed with everything in it when the object is destroyed.
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

  // Creates a directory and its ancestors and returns its path.
  std::string makeDir(const std::string& below) const {
    std::filesystem::create_directories(path(below));
    return path(below);
  }

  // Writes a file, creates its directories and returns its path.
  std::string makeFile(const std::string& below, const std::string& bytes) const {
    writeFile(path(below), bytes);
    return path(below);
  }

 private:
  std::string root;
};

// The contents of a file; empty if there is none.
inline std::string readAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace support
