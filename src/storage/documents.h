// documents.h: what all records need of their documents: reading and changing them by bare file name in the
// data directory, making values, and taking integers out of them. For this folder alone; knows no record.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <type_traits>

#include "storage/data_lock.h"
#include "storage/json.h"

namespace store {

// Null when there is no such file, or none that makes sense. A program that was killed between removing the
// old file and renaming the new one has left the new one under its temporary name; that one is read then.
js::Value readDocument(const std::string& name);

// A file from the reading of its old document to the writing of the new one, while no other program comes in
// between.
class FileChange {
 public:
  explicit FileChange(const std::string& fileName);

  // As readDocument gives it.
  const js::Value& old() const { return document; }
  // False on a failure, which is said on standard error. An old file that could not be read is not lost: it
  // is set aside under a name of its own, which is said too.
  bool writeFile(const js::Value& doc) const;
  // What is stored now: after a failure that may be the old document or the new one.
  js::Value stored() const;

 private:
  DataLock lock{Access::Change};
  std::string path;
  js::Value document;
  bool isReadable;
};

// Booleans, and numbers: integers are exact up to 2^53, which as milliseconds is 285,000 years.
template <class Number>
  requires std::is_arithmetic_v<Number>
js::Value valueOf(Number n) {
  js::Value v;
  if constexpr (std::is_same_v<Number, bool>) {
    v.kind = js::Value::Bool;
    v.b = n;
  } else {
    v.kind = js::Value::Number;
    v.n = static_cast<double>(n);
  }
  return v;
}
js::Value valueOf(const std::string& s);
js::Value objectOf(std::map<std::string, js::Value> members);

// A number without its fraction, beyond Int's range the nearer end of it; 0 for nan and for every other kind.
template <class Int>
Int truncated(const js::Value& v) {
  using Limits = std::numeric_limits<Int>;
  if (v.kind != js::Value::Number || std::isnan(v.n)) return 0;
  // The upper end of 64 bits is no double: it becomes the next one, which is out of range already.
  if (v.n >= static_cast<double>(Limits::max())) return Limits::max();
  if (v.n <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<Int>(v.n);
}

// Wall-clock time, milliseconds since the Unix epoch.
std::int64_t nowMs();

}  // namespace store
