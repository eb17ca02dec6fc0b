#include "storage/paths.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

namespace paths {

namespace {

bool isDir(const std::string& path) {
  struct stat info = {};
  return !path.empty() && stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

std::vector<std::string> assetRootCandidates() {
  constexpr const char* kInstalled = "/usr/share/veskara";
  const std::string exe = exeDir();
  std::vector<std::string> roots;
  for (const char* packageRoot : {"SNAP", "APPDIR"}) {
    if (const std::string root = envOr(packageRoot); !root.empty()) roots.push_back(root + kInstalled);
  }
  if (const std::string root = envOr("VESKARA_ASSET_DIR"); !root.empty()) roots.push_back(root);
  roots.insert(roots.end(),
               {exe + "/../share/veskara", kInstalled, "/app/share/veskara", exe, exe + "/..", "."});
  return roots;
}

std::string findAssetDir() {
  for (const std::string& root : assetRootCandidates()) {
    if (isDir(root + "/assets/fonts") && isDir(root + "/assets/audio")) return root;
  }
  return exeDir();
}

}  // namespace

std::string envOr(const char* name, const std::string& fallback) {
  const char* value = std::getenv(name);
  return value != nullptr && *value != '\0' ? value : fallback;
}

std::string exeDir() {
  std::array<char, 4096> buffer = {};
  const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
  if (length <= 0) return ".";
  const std::string path(buffer.data(), static_cast<std::size_t>(length));
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "." : path.substr(0, slash);
}

std::string assetDir() {
  static const std::string& root =
      *new std::string(findAssetDir());  // never destroyed: it is still used at exit
  return root;
}

std::string asset(const std::string& name) { return assetDir() + "/assets/" + name; }

void ensureDir(const std::string& path) {
  for (std::size_t end = 0; end <= path.size(); ++end) {
    if (end < path.size() && path[end] != '/' && path[end] != '\\') continue;
    const std::string prefix = path.substr(0, end);
    if (!prefix.empty() && prefix != ".") mkdir(prefix.c_str(), 0755);
  }
}

bool isFile(const std::string& path) {
  std::error_code error;
  return std::filesystem::is_regular_file(path, error);
}

std::optional<std::string> readFile(const std::string& path) {
  if (!isFile(path)) return std::nullopt;
  std::ifstream file(path, std::ios::binary);
  std::string bytes;
  std::array<char, 65536> chunk;
  while (file.read(chunk.data(), chunk.size()) || file.gcount() > 0) {
    bytes.append(chunk.data(), static_cast<std::size_t>(file.gcount()));
  }
  // The file could not be opened or not be read to its end.
  if (!file.eof()) return std::nullopt;
  return bytes;
}

bool removePipe(const std::string& path) {
  std::error_code error;
  return !std::filesystem::is_fifo(path, error) || std::filesystem::remove(path, error);
}

}  // namespace paths
