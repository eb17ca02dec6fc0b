#include "storage/documents.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "storage/storage.h"

namespace store {
namespace {

std::string filePath(const std::string& name) { return dataDir() + "/" + name; }

void sayNotWritten(const std::string& path) {
  std::fprintf(stderr, "[store] konnte %s nicht schreiben\n", path.c_str());
}

void saySetAside(const std::string& path, const std::string& name) {
  std::fprintf(stderr, "[store] konnte %s nicht lesen, aufgehoben als %s\n", path.c_str(), name.c_str());
}

// Whether there is no document at `path`. A pipe holds none and is replaced like a file. False if the status
// cannot be determined: there may be a document.
bool isMissing(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_type type = std::filesystem::status(path, error).type();
  return type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::fifo;
}

// False if the document exists but cannot be read. `document` stays null if there is none.
bool tryRead(const std::string& path, js::Value& document) {
  if (js::parseFile(path, &document)) return true;
  if (!isMissing(path)) return false;
  return !js::hasTemporary(path) || js::parseFile(js::temporaryPath(path), &document);
}

// Tries twice: another program may have disturbed the first attempt. A second failure is final.
bool read(const std::string& path, js::Value& document) {
  if (tryRead(path, document)) return true;
  return tryRead(path, document);
}

// An unused file name next to the file. Empty if the directory cannot be searched.
std::string freeName(const std::string& path) {
  for (int n = 1;; ++n) {
    std::string name = path + ".unread" + std::to_string(n);
    std::error_code error;
    const auto type = std::filesystem::symlink_status(name, error).type();
    if (type == std::filesystem::file_type::not_found) return name;
    if (type == std::filesystem::file_type::none) return "";
  }
}

}  // namespace

js::Value readDocument(const std::string& name) {
  const DataLock lock(Access::Read);
  js::Value document;
  read(filePath(name), document);
  return document;
}

FileChange::FileChange(const std::string& fileName)
    : path(filePath(fileName)), isReadable(read(path, document)) {}

bool FileChange::writeFile(const js::Value& doc) const {
  const std::string aside = isReadable ? "" : freeName(path);
  const bool written = (isReadable || !aside.empty()) && js::writeFileAtomic(path, doc, aside);
  if (!written) sayNotWritten(path);
  if (written && !isReadable) saySetAside(path, aside);
  return written;
}

js::Value FileChange::stored() const {
  js::Value now;
  read(path, now);
  return now;
}

js::Value valueOf(const std::string& s) {
  js::Value v;
  v.kind = js::Value::String;
  v.s = s;
  return v;
}

js::Value objectOf(std::map<std::string, js::Value> members) {
  js::Value v;
  v.kind = js::Value::Object;
  v.o = std::move(members);
  return v;
}

std::int64_t nowMs() {
  using namespace std::chrono;
  return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

}  // namespace store
