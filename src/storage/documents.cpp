#include "storage/documents.h"

#include <chrono>
#include <cstdio>
#include <utility>

#include "storage/paths.h"
#include "storage/storage.h"

namespace store {
namespace {

std::string filePath(const std::string& name) { return dataDir() + "/" + name; }

}  // namespace

js::Value readFile(const std::string& name) {
  js::Value doc;
  if (!js::parseFile(filePath(name), &doc)) js::parseFile(js::temporaryPath(filePath(name)), &doc);
  return doc;
}

void writeFile(const std::string& name, const js::Value& doc) {
  paths::ensureDir(dataDir());
  const std::string path = filePath(name);
  if (!js::writeFileAtomic(path, doc))
    std::fprintf(stderr, "[store] konnte %s nicht schreiben\n", path.c_str());
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
