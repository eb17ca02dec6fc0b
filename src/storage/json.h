// json.h: the documents that the game keeps on disk: a value, a lenient parser, a compact writer, and a file
// written so that the old one is lost only when the new one is whole. Knows nothing of what the documents
// mean.
//
// What is lenient: text after the first value is ignored, numbers are whatever C's strtod reads in the "C"
// locale (a leading plus, hexadecimal, inf and nan), raw control bytes and invalid UTF-8 in strings pass
// untouched. Nothing here throws or runs out of stack, however deep a document is nested. Otherwise RFC 8259
// is the format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace js {

// One value, held by value. Only the field of its kind has a meaning; the others stay empty. Documents are
// built by assigning kind and fields.
struct Value {
  enum Kind : std::int32_t { Null, Bool, Number, String, Array, Object };

  Value() = default;
  Value(const Value& other);
  Value(Value&& other) noexcept = default;
  // `other` may have been a part of this value.
  Value& operator=(Value other) noexcept;
  ~Value();

  // A number rounded half up: 2.5 gives 3, -2.5 gives -2. Beyond the range of int, and for nan, the smallest
  // int. `def` for every other kind.
  int asInt(int def) const;
  // The element or member; a null value where there is none, so that look-ups can be chained.
  const Value& operator[](std::size_t i) const;
  const Value& operator[](const std::string& key) const;
  bool has(const std::string& key) const;
  // Elements of an array, members of an object, 0 otherwise.
  std::size_t size() const;
  // The text: one line without blanks, members in the byte order of their keys. nan and inf come out as such,
  // which is no JSON but is read back.
  std::string dump() const;

  Kind kind = Null;
  bool b = false;
  double n = 0;  // integers too
  std::string s;
  std::vector<Value> a;
  std::map<std::string, Value> o;
};

// The value at the start of the text; null where the text is not valid.
Value parse(const std::string& text);

// Whether the file could be read. If so, `out` is what its text parses to; otherwise it is left alone.
bool parseFile(const std::string& path, Value* out);

// The name under which writeFileAtomic prepares the new contents of `path`.
std::string temporaryPath(const std::string& path);

// Whether something under the temporary name may be such contents: a plain file, or what cannot be found out.
// Nothing else there is ours, a link least of all.
bool hasTemporary(const std::string& path);

// Writes `v` to the temporary file, made anew whatever was there, and then puts it in the place of the old
// one, which is renamed to `keepOldAs`, or removed if that is empty.
// False when that fails; the old file is touched only after the new one was written completely. Killed at any
// moment, it leaves the old or the new one under `path`, or, that missing, the new one under the temporary
// name; so does a renaming that fails.
bool writeFileAtomic(const std::string& path, const Value& v, const std::string& keepOldAs = "");

}  // namespace js
