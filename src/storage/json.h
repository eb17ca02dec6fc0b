// json.h: JSON documents on disk: a value type, a lenient parser, a compact writer, and safe replacement of a
// file: the old contents go only after the new contents are complete. Knows nothing of what the documents
// mean.
//
// The format is RFC 8259 with these exceptions. Text after the first value is ignored. Numbers are whatever
// C's strtod reads in the "C" locale, including a leading plus, hexadecimal, inf and nan. Raw control bytes
// and invalid UTF-8 in strings pass unchanged. Nothing here throws or exhausts the stack, however deeply a
// document is nested.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace js {

// One JSON value; it owns its children. Only the field for its kind has a meaning; the others stay empty.
// Documents are built by assigning kind and fields.
struct Value {
  enum Kind : std::int32_t { Null, Bool, Number, String, Array, Object };

  Value() = default;
  Value(const Value& other);
  Value(Value&& other) noexcept = default;
  // Safe if `other` was made from a part of this value.
  Value& operator=(Value other) noexcept;
  ~Value();

  // The number rounded half up: 2.5 gives 3, -2.5 gives -2. Numbers outside the range of int, and nan, give
  // the smallest int. Every other kind gives `def`.
  int asInt(int def) const;
  // The element or member. A null value if there is none, so that look-ups can be chained.
  const Value& operator[](std::size_t i) const;
  const Value& operator[](const std::string& key) const;
  bool has(const std::string& key) const;
  // Number of elements of an array or members of an object; 0 otherwise.
  std::size_t size() const;
  // The value as text: one line without spaces, members sorted by the bytes of their keys. nan and inf are
  // written as such: not valid JSON, but parse() reads them.
  std::string dump() const;

  Kind kind = Null;
  bool b = false;
  double n = 0;  // integers too
  std::string s;
  std::vector<Value> a;
  std::map<std::string, Value> o;
};

// The value at the start of the text. Null if the text is not valid.
Value parse(const std::string& text);

// Reads a file and parses it into `out`. Returns false and leaves `out` alone if the file cannot be read.
// Invalid text gives a null value and true.
bool parseFile(const std::string& path, Value* out);

// The name under which writeFileAtomic prepares the new contents of `path`.
std::string temporaryPath(const std::string& path);

// Whether the temporary name may hold such contents: a plain file, or something whose type cannot be
// determined. Anything else there is not the game's, least of all a link.
bool hasTemporary(const std::string& path);

// Writes `v` to a newly created temporary file, then moves it to `path`. The old file is renamed to
// `keepOldAs`, or removed if that is empty. Returns false on failure. The old file is touched only after the
// new one is complete. If the process is killed at any moment, or the last renaming fails, `path` holds the
// old or the new contents; or `path` is missing and the temporary file holds the new contents.
bool writeFileAtomic(const std::string& path, const Value& v, const std::string& keepOldAs = "");

}  // namespace js
