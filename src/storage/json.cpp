#include "storage/json.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "storage/paths.h"

namespace js {
namespace {

const Value& nullValue() {
  static const auto& kNull = *new Value;
  return kNull;
}

bool isContainer(const Value& v) { return !v.a.empty() || !v.o.empty(); }

// Moves the child containers of a value to `pending` and drops its other children.
void takeChildren(Value& v, std::vector<Value>& pending) {
  for (Value& element : v.a) {
    if (isContainer(element)) pending.push_back(std::move(element));
  }
  for (auto& [key, member] : v.o) {
    if (isContainer(member)) pending.push_back(std::move(member));
  }
  v.a.clear();
  v.o.clear();
}

// --- reading ---

constexpr unsigned kHighSurrogate = 0xD800;
constexpr unsigned kLowSurrogate = 0xDC00;
constexpr unsigned kSurrogateEnd = 0xE000;
constexpr std::size_t kEscapeLength = 6;  // characters of \u0000

// Any other byte counts as 0: a damaged escape costs one character, not the whole file.
unsigned hexDigit(char c) {
  if ('0' <= c && c <= '9') return static_cast<unsigned>(c - '0');
  if ('a' <= c && c <= 'f') return static_cast<unsigned>(c - 'a') + 10;
  if ('A' <= c && c <= 'F') return static_cast<unsigned>(c - 'A') + 10;
  return 0;
}

// UTF-8 (RFC 3629), except that lone surrogates are encoded like any other code point.
void appendUtf8(std::string& out, unsigned code) {
  const auto byte = [&out](unsigned value) { out.push_back(static_cast<char>(value)); };
  const auto tail = [&byte, code](unsigned shift) { byte(0x80U | ((code >> shift) & 0x3FU)); };
  if (code < 0x80) {
    byte(code);
  } else if (code < 0x800) {
    byte(0xC0U | (code >> 6));
    tail(0);
  } else if (code < 0x10000) {
    byte(0xE0U | (code >> 12));
    tail(6);
    tail(0);
  } else {
    byte(0xF0U | (code >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

// Reads with a decimal point in every locale. Only if no memory is left for the "C" locale does the process's
// own locale apply.
double readNumber(const char* text, char** end) {
  static const locale_t kPlain = newlocale(LC_NUMERIC_MASK, "C", nullptr);
  return kPlain != nullptr ? strtod_l(text, end, kPlain) : std::strtod(text, end);
}

// Keeps the open containers on the heap, so that deep nesting cannot exhaust the stack.
class Parser {
 public:
  explicit Parser(const std::string& document) : text(document) {}

  // Null if the text is not valid.
  Value run() {
    for (;;) {
      Value v;
      if (!begin(v)) return {};
      if (opened) continue;
      switch (attach(v)) {
        case Next::Value:
          break;
        case Next::Done:
          return v;
        case Next::Error:
          return {};
      }
    }
  }

 private:
  struct Container {
    Value value;
    std::string key;  // of the next member
  };
  enum class Next { Value, Done, Error };

  bool atEnd() const { return pos >= text.size(); }
  void skipSpace() { pos = std::min(text.find_first_not_of(" \t\n\r", pos), text.size()); }

  // Skips white space, then consumes the next byte if it is `c`.
  bool take(char c) {
    skipSpace();
    if (atEnd() || text[pos] != c) return false;
    ++pos;
    return true;
  }

  // Reads a scalar or an empty container into `v`, or opens a container and sets `opened`. False on an error.
  bool begin(Value& v) {
    opened = false;
    skipSpace();
    if (atEnd()) return false;
    switch (text[pos]) {
      case '[':
        return openContainer(v, Value::Array, ']');
      case '{':
        return openContainer(v, Value::Object, '}');
      case '"':
        v.kind = Value::String;
        return readString(v.s);
      case 't':
      case 'f':
        v.kind = Value::Bool;
        v.b = text[pos] == 't';
        return readLiteral(v.b ? "true" : "false");
      case 'n':
        if (readLiteral("null")) return true;
        [[fallthrough]];  // dump() writes nan as such
      default:
        v.kind = Value::Number;
        return readNumberInto(v.n);
    }
  }

  bool openContainer(Value& v, Value::Kind kind, char close) {
    ++pos;
    if (take(close)) {
      v.kind = kind;
      return true;
    }
    open.emplace_back().value.kind = kind;
    opened = true;
    return kind == Value::Array || readKey();
  }

  // Adds a finished value to the innermost open container and closes every container that ends here.
  Next attach(Value& v) {
    while (!open.empty()) {
      Container& top = open.back();
      const bool array = top.value.kind == Value::Array;
      if (array) {
        top.value.a.push_back(std::move(v));
      } else {
        top.value.o[top.key] = std::move(v);
      }
      if (take(',')) return array || readKey() ? Next::Value : Next::Error;
      if (!take(array ? ']' : '}')) return Next::Error;
      v = std::move(top.value);
      open.pop_back();
    }
    return Next::Done;
  }

  bool readKey() {
    skipSpace();
    std::string& key = open.back().key;
    key.clear();
    return readString(key) && take(':');
  }

  bool readLiteral(std::string_view word) {
    if (text.compare(pos, word.size(), word) != 0) return false;
    pos += word.size();
    return true;
  }

  bool readNumberInto(double& n) {
    // strtod would also skip white space that JSON does not allow.
    if (static_cast<unsigned char>(text[pos]) <= 0x20) return false;
    const char* const start = text.c_str() + pos;
    char* end = nullptr;
    n = readNumber(start, &end);
    pos += static_cast<std::size_t>(end - start);
    return end != start;
  }

  bool readString(std::string& out) {
    if (atEnd() || text[pos] != '"') return false;
    ++pos;
    while (!atEnd()) {
      const char c = text[pos++];
      if (c == '"') return true;
      if (c != '\\') {
        out.push_back(c);
      } else if (!readEscape(out)) {
        return false;
      }
    }
    return false;
  }

  bool readEscape(std::string& out) {
    static constexpr std::string_view kLetters = "\"\\/bfnrt";
    static constexpr std::string_view kBytes = "\"\\/\b\f\n\r\t";
    if (atEnd()) return false;
    const char c = text[pos++];
    if (c == 'u') return readCode(out);
    const std::size_t found = kLetters.find(c);
    if (found == std::string_view::npos) return false;
    out.push_back(kBytes[found]);
    return true;
  }

  // The code from the four hexadecimal digits at `at`.
  unsigned codeAt(std::size_t at) const {
    unsigned code = 0;
    for (std::size_t i = at; i < at + 4; ++i) code = code * 16 + hexDigit(text[i]);
    return code;
  }

  bool readCode(std::string& out) {
    if (text.size() - pos < 4) return false;
    const unsigned code = codeAt(pos);
    pos += 4;
    if (kHighSurrogate <= code && code < kLowSurrogate && text.size() - pos >= kEscapeLength &&
        text[pos] == '\\' && text[pos + 1] == 'u') {
      const unsigned low = codeAt(pos + 2);
      if (kLowSurrogate <= low && low < kSurrogateEnd) {
        pos += kEscapeLength;
        appendUtf8(out, 0x10000 + ((code - kHighSurrogate) << 10) + (low - kLowSurrogate));
        return true;
      }
    }
    appendUtf8(out, code);
    return true;
  }

  const std::string& text;
  std::size_t pos = 0;
  std::vector<Container> open;
  bool opened = false;
};

// --- writing ---

// Integers below this magnitude are written without exponent or point.
constexpr double kIntegerLimit = 1e15;

void appendNumber(std::string& out, double n) {
  std::array<char, 40> digits{};
  char* const first = digits.data();
  char* const last = first + digits.size();
  const bool integral = std::floor(n) == n && std::abs(n) < kIntegerLimit;
  const auto result = integral ? std::to_chars(first, last, static_cast<long long>(n))
                               : std::to_chars(first, last, n, std::chars_format::general, 17);
  out.append(first, result.ptr);
}

void appendString(std::string& out, const std::string& s) {
  out.push_back('"');
  for (const char c : s) {
    switch (c) {
      case '"':
      case '\\':
        out.push_back('\\');
        out.push_back(c);
        break;
      case '\t':
        out += "\\t";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\r':
        out += "\\r";
        break;
      default:
        if (static_cast<unsigned char>(c) < 0x20) {
          std::array<char, 8> escape{};
          std::snprintf(escape.data(), escape.size(), "\\u%04x", static_cast<unsigned>(c));
          out += escape.data();
        } else {
          out.push_back(c);
        }
    }
  }
  out.push_back('"');
}

void appendScalar(std::string& out, const Value& v) {
  switch (v.kind) {
    case Value::Bool:
      out += v.b ? "true" : "false";
      break;
    case Value::Number:
      appendNumber(out, v.n);
      break;
    case Value::String:
      appendString(out, v.s);
      break;
    default:
      out += "null";
  }
}

// A container that is being written.
struct Writing {
  explicit Writing(const Value& value) : container(&value), member(value.o.begin()) {}

  bool isArray() const { return container->kind == Value::Array; }
  bool done() const { return isArray() ? element == container->a.size() : member == container->o.end(); }
  bool begun() const { return isArray() ? element > 0 : member != container->o.begin(); }
  // Writes the next child's key, if it has one, and returns the child.
  const Value& next(std::string& out) {
    if (isArray()) return container->a[element++];
    appendString(out, member->first);
    out.push_back(':');
    return (member++)->second;
  }

  const Value* container;
  std::size_t element = 0;
  std::map<std::string, Value>::const_iterator member;
};

// --- files ---

// If a write was interrupted between removing and renaming, the temporary file is the only whole copy. The
// next write would remove it first and, if interrupted as well, leave nothing. So this renames it to `path`.
// False if that fails.
bool finishCutOffWrite(const std::string& temporary, const std::string& path) {
  std::error_code error;
  if (std::filesystem::exists(path, error)) return true;
  if (error) return false;
  if (!hasTemporary(path)) return true;
  // A temporary file that does not parse, from a full disk for example, is not a copy and is dropped.
  if (Value left; parseFile(temporary, &left) && left.kind == Value::Null) return true;
  std::filesystem::rename(temporary, path, error);
  return !error || error == std::errc::no_such_file_or_directory;
}

// Creates the file anew, so that nothing is written through a link or into a pipe.
bool writeNewFile(const std::string& path, const std::string& text) {
  std::remove(path.c_str());
  std::FILE* const file = std::fopen(path.c_str(), "wbx");
  if (file == nullptr) return false;
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  // A full disk may only show now, when the buffer is flushed.
  return std::fclose(file) == 0 && written;
}

}  // namespace

Value::Value(const Value& other) {
  std::vector<std::pair<Value*, const Value*>> pending = {{this, &other}};
  while (!pending.empty()) {
    const auto [to, from] = pending.back();
    pending.pop_back();
    to->kind = from->kind;
    to->b = from->b;
    to->n = from->n;
    to->s = from->s;
    to->a.resize(from->a.size());
    for (std::size_t i = 0; i < from->a.size(); ++i) pending.emplace_back(&to->a[i], &from->a[i]);
    for (const auto& [key, member] : from->o) pending.emplace_back(&to->o[key], &member);
  }
}

Value& Value::operator=(Value other) noexcept {
  std::swap(kind, other.kind);
  std::swap(b, other.b);
  std::swap(n, other.n);
  s.swap(other.s);
  a.swap(other.a);
  o.swap(other.o);
  return *this;
}

Value::~Value() {
  if (!isContainer(*this)) return;
  std::vector<Value> pending;
  takeChildren(*this, pending);
  while (!pending.empty()) {
    Value v = std::move(pending.back());
    pending.pop_back();
    takeChildren(v, pending);
  }
}

int Value::asInt(int def) const {
  using Limits = std::numeric_limits<int>;
  if (kind != Number) return def;
  const double rounded = std::floor(n + 0.5);
  const bool fits = Limits::min() <= rounded && rounded <= Limits::max();
  return fits ? static_cast<int>(rounded) : Limits::min();
}

const Value& Value::operator[](std::size_t i) const {
  return kind == Array && i < a.size() ? a[i] : nullValue();
}

const Value& Value::operator[](const std::string& key) const {
  if (kind != Object) return nullValue();
  const auto found = o.find(key);
  return found == o.end() ? nullValue() : found->second;
}

bool Value::has(const std::string& key) const { return kind == Object && o.count(key) != 0; }

std::size_t Value::size() const {
  if (kind == Array) return a.size();
  return kind == Object ? o.size() : 0;
}

std::string Value::dump() const {
  std::string out;
  std::vector<Writing> open;
  const auto write = [&](const Value& v) {
    if (v.kind != Array && v.kind != Object) return appendScalar(out, v);
    open.emplace_back(v);
    out.push_back(v.kind == Array ? '[' : '{');
  };
  write(*this);
  while (!open.empty()) {
    Writing& top = open.back();
    if (top.done()) {
      out.push_back(top.isArray() ? ']' : '}');
      open.pop_back();
      continue;
    }
    if (top.begun()) out.push_back(',');
    write(top.next(out));
  }
  return out;
}

Value parse(const std::string& text) { return Parser(text).run(); }

bool parseFile(const std::string& path, Value* out) {
  const std::optional<std::string> text = paths::readFile(path);
  if (text) *out = parse(*text);
  return text.has_value();
}

std::string temporaryPath(const std::string& path) { return path + ".tmp"; }

bool hasTemporary(const std::string& path) {
  using std::filesystem::file_type;
  std::error_code error;
  const file_type type = std::filesystem::symlink_status(temporaryPath(path), error).type();
  return type == file_type::regular || type == file_type::none;
}

bool writeFileAtomic(const std::string& path, const Value& v, const std::string& keepOldAs) {
  const std::string temporary = temporaryPath(path);
  if (!finishCutOffWrite(temporary, path) || !writeNewFile(temporary, v.dump())) return false;
  if (keepOldAs.empty()) {
    std::remove(path.c_str());
  } else if (std::rename(path.c_str(), keepOldAs.c_str()) != 0) {
    return false;
  }
  return std::rename(temporary.c_str(), path.c_str()) == 0;
}

}  // namespace js
