#include "resources/assets.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <optional>
#include <utility>

#include "resources/assets_data.h"
#include "resources/scramble.h"
#include "storage/paths.h"

namespace assets {

namespace {

// Never destroyed: the mixer's thread may still read these bytes at exit.
std::map<std::string, std::string>& cache() {
  static auto& blobs = *new std::map<std::string, std::string>;
  return blobs;
}

const std::string& noBytes() {
  static const auto& none = *new std::string;
  return none;
}

const assets_data::Entry* findEntry(const std::string& name) {
  const auto* end = assets_data::kEntries + assets_data::kEntryCount;
  const auto* found =
      std::find_if(assets_data::kEntries, end, [&](const auto& row) { return row.name == name; });
  return found == end ? nullptr : found;
}

// Drops the pages of the executable that hold nothing but these bytes. Nobody reads them again.
void forgetPages(const assets_data::Entry& entry) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(entry.data) % page) % page;
  if (entry.size < before + page) return;
  // On failure the pages just stay in memory.
  madvise(const_cast<unsigned char*>(entry.data) + before, (entry.size - before) / page * page,
          MADV_DONTNEED);
}

std::string unscrambled(const assets_data::Entry& entry) {
  std::string bytes(reinterpret_cast<const char*>(entry.data), entry.size);
  assets_data::scramble(bytes);
  forgetPages(entry);
  return bytes;
}

// The file from VESKARA_ASSET_DIR. Nothing if it does not exist or cannot be read.
std::optional<std::string> readOverride(const std::string& name) {
  const std::string root = paths::envOr("VESKARA_ASSET_DIR");
  if (root.empty()) return std::nullopt;
  return paths::readFile(root + "/assets/" + name);
}

std::string fontDir() {
  const std::string home = paths::envOr("HOME", ".");
  return paths::envOr("XDG_CACHE_HOME", home + "/.cache") + "/veskara/fonts";
}

bool hasSize(const std::string& path, std::size_t size) {
  struct stat info = {};
  return stat(path.c_str(), &info) == 0 && static_cast<std::uint64_t>(info.st_size) == size;
}

bool writeFile(const std::string& path, const std::string& bytes) {
  if (!paths::removePipe(path)) return false;
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << bytes;
  file.close();
  return !file.fail();
}

}  // namespace

bool has(const std::string& name) { return findEntry(name) != nullptr; }

const std::string& blob(const std::string& name) {
  if (const auto cached = cache().find(name); cached != cache().end()) return cached->second;
  std::optional<std::string> bytes = readOverride(name);
  if (!bytes) {
    const assets_data::Entry* entry = findEntry(name);
    if (entry == nullptr) {
      std::fprintf(stderr, "[assets] unknown asset: %s\n", name.c_str());
      return noBytes();
    }
    bytes = unscrambled(*entry);
  }
  return cache().emplace(name, std::move(*bytes)).first->second;
}

std::string materializeFonts() {
  std::string dir = fontDir();
  paths::ensureDir(dir);
  const std::string target = dir + "/" + kGlyphFont;
  const std::string asset = std::string("fonts/") + kGlyphFont;
  const std::string& bytes = blob(asset);
  if (!hasSize(target, bytes.size()) && !writeFile(target, bytes)) {
    std::fprintf(stderr, "[assets] cannot write %s\n", target.c_str());
  }
  return dir;
}

}  // namespace assets
