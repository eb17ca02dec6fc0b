// documents.h: what all records need of their documents: reading and writing them by bare file name in the
// data directory, making values, and taking integers out of them. For this folder alone; knows no record.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <type_traits>

#include "storage/json.h"

namespace store {

// Null when there is no such file, or none that makes sense. A program that was killed between removing the
// old file and renaming the new one has left the new one under its temporary name; that one is read then.
js::Value readFile(const std::string& name);

// The same for a change that keeps part of what it reads: nothing when the file is there but cannot be read,
// as it must not be replaced then. That is said on standard error.
std::optional<js::Value> readFileToChange(const std::string& name);

// Makes the directory too. False on a failure, which is said on standard error.
bool writeFile(const std::string& name, const js::Value& doc);

js::Value valueOf(const std::string& s);
js::Value valueOf(bool b);
// Integers are exact up to 2^53, which as milliseconds is 285,000 years.
template <class Number>
requires std::is_arithmetic_v<Number> js::Value valueOf(Number n) {
  js::Value v;
  v.kind = js::Value::Number;
  v.n = static_cast<double>(n);
  return v;
}
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
