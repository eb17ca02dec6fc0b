// documents.h: what all records need of their documents: reading and changing them by bare file name in the
// data directory, building values, and extracting integers. Knows no record. Only for src/storage.
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

// The document in the file; null if the file is missing, unreadable or not valid JSON. A program killed
// between removing the old file and renaming the new one leaves the new one under its temporary name. That
// file is read then.
js::Value readDocument(const std::string& name);

// One change of a file: reads the old document, then writes the new one. The data directory stays locked in
// between.
class FileChange {
 public:
  explicit FileChange(const std::string& fileName);

  // The document before the change, as readDocument returns it.
  const js::Value& old() const { return document; }
  // Returns false and prints a line on standard error if writing fails. An old file that could not be read is
  // not lost: it is renamed to a free name, and another line reports that name.
  bool writeFile(const js::Value& doc) const;
  // What is stored now. After a failed write this may be the old document or the new one.
  js::Value stored() const;

 private:
  DataLock lock{Access::Change};
  std::string path;
  js::Value document;
  bool isReadable;
};

// For booleans and numbers. Integers are exact up to 2^53, which is 285,000 years in milliseconds.
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

// The number without its fraction, clamped to the range of Int. 0 for nan and for every other kind.
template <class Int>
Int truncated(const js::Value& v) {
  using Limits = std::numeric_limits<Int>;
  if (v.kind != js::Value::Number || std::isnan(v.n)) return 0;
  // The largest 64-bit integer is not a double. It becomes the next larger double, which is already out of
  // range.
  if (v.n >= static_cast<double>(Limits::max())) return Limits::max();
  if (v.n <= static_cast<double>(Limits::min())) return Limits::min();
  return static_cast<Int>(v.n);
}

// Wall-clock time, milliseconds since the Unix epoch.
std::int64_t nowMs();

}  // namespace store
