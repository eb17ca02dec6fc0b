#include "storage/documents.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include "storage/paths.h"
#include "storage/storage.h"

namespace store {
namespace {

std::string filePath(const std::string& name) { return dataDir() + "/" + name; }

void sayNotWritten(const std::string& path) {
  std::fprintf(stderr, "[store] konnte %s nicht schreiben\n", path.c_str());
}

// Whether no document is there, nor anything that may hold one: not so when it cannot be found out. A pipe
// holds nothing, and is replaced like a file.
bool isMissing(const std::string& path) {
  std::error_code error;
  const std::filesystem::file_type type = std::filesystem::status(path, error).type();
  return type == std::filesystem::file_type::not_found || type == std::filesystem::file_type::fifo;
}

// Nothing when the document is there but cannot be read.
std::optional<js::Value> tryRead(const std::string& path) {
  js::Value doc;
  if (js::parseFile(path, &doc)) return doc;
  if (!isMissing(path)) return std::nullopt;
  const std::string temporary = js::temporaryPath(path);
  if (js::parseFile(temporary, &doc) || isMissing(temporary)) return doc;
  return std::nullopt;
}

}  // namespace

js::Value readFile(const std::string& name) { return tryRead(filePath(name)).value_or(js::Value()); }

std::optional<js::Value> readFileToChange(const std::string& name) {
  std::optional<js::Value> doc = tryRead(filePath(name));
  if (!doc) sayNotWritten(filePath(name));
  return doc;
}

bool writeFile(const std::string& name, const js::Value& doc) {
  paths::ensureDir(dataDir());
  const std::string path = filePath(name);
  const bool written = js::writeFileAtomic(path, doc);
  if (!written) sayNotWritten(path);
  return written;
}

js::Value valueOf(const std::string& s) {
  js::Value v;
  v.kind = js::Value::String;
  v.s = s;
  return v;
}

js::Value valueOf(bool b) {
  js::Value v;
  v.kind = js::Value::Bool;
  v.b = b;
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
