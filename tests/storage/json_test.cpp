#include "storage/json.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <algorithm>
#include <bit>
#include <climits>
#include <clocale>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <random>
#include <string>

#include "support/own_process.h"
#include "support/temp_dir.h"

namespace {

using js::Value;

constexpr int kDeep = 1000000;
// The depth of documents that are built, not only parsed. The sanitizers' allocator is slow, and even a tenth
// overflows the stack if anything recurses.
#ifdef __SANITIZE_ADDRESS__
constexpr int kDeepValue = kDeep / 10;
#else
constexpr int kDeepValue = kDeep;
#endif

// Sets the usual stack limit of a desktop, whatever this machine's is.
void limitStack() {
  rlimit stack = {};
  ASSERT_EQ(getrlimit(RLIMIT_STACK, &stack), 0);
  stack.rlim_cur = std::min<rlim_t>(8U << 20U, stack.rlim_max);
  ASSERT_EQ(setrlimit(RLIMIT_STACK, &stack), 0);
}

Value number(double n) {
  Value v;
  v.kind = Value::Number;
  v.n = n;
  return v;
}

Value string(std::string s) {
  Value v;
  v.kind = Value::String;
  v.s = std::move(s);
  return v;
}

// The value of a text that must parse.
Value valid(const std::string& text) {
  Value v = js::parse(text);
  EXPECT_NE(v.kind, Value::Null) << text;
  return v;
}

// Whether writing succeeds ("0" or "1") in a process that may not write a single byte to a file.
std::string writtenWithoutRoom(const std::string& path, const Value& v) {
  return support::inOwnProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit nothing = {};
    setrlimit(RLIMIT_FSIZE, &nothing);
    return std::to_string(js::writeFileAtomic(path, v));
  });
}

std::string textOf(const std::string& text) { return valid('"' + text + '"').s; }

bool isValid(const std::string& text) { return js::parse(text).kind != Value::Null; }

// --- parsing ---

TEST(JsonParse, ReadsEveryKind) {
  const Value v =
      valid(R"( { "n" : null , "t":true,"f":false,"x":-1.5e2,"s":"a","a":[1,[],{}],"o":{"k":2} } )");
  EXPECT_EQ(v.size(), 7U);
  EXPECT_TRUE(v.has("n"));
  EXPECT_EQ(v["n"].kind, Value::Null);
  EXPECT_TRUE(v["t"].b);
  EXPECT_EQ(v["f"].kind, Value::Bool);
  EXPECT_FALSE(v["f"].b);
  EXPECT_EQ(v["x"].n, -150);
  EXPECT_EQ(v["s"].s, "a");
  EXPECT_EQ(v["a"].size(), 3U);
  EXPECT_EQ(v["a"][1].kind, Value::Array);
  EXPECT_EQ(v["a"][2].kind, Value::Object);
  EXPECT_EQ(v["o"]["k"].asInt(0), 2);
}

class JsonError : public testing::TestWithParam<const char*> {};

TEST_P(JsonError, GivesNull) { EXPECT_FALSE(isValid(GetParam())) << GetParam(); }

INSTANTIATE_TEST_SUITE_P(In, JsonError,
                         testing::Values("", " \t\r\n", "nul", "tru", "fals", "True", "[1,]", "[1 2]", "[1",
                                         "[", "[,1]", "]", "{", "{\"a\"", "{\"a\":", "{\"a\":1", "{\"a\":1,}",
                                         "{\"a\" 1}", "{a:1}", "{1:1}", "{\"a\":1 \"b\":2}", "[1}",
                                         "{\"a\":1]", "\"", "\"a", "\"\\", "\"\\\"", "\"\\x\"", "\"\\u12",
                                         "\"\\u12\"", "-", "+", ".", "x", "\v1", "\f1", "[\v1]", "\x01",
                                         "[1,\f2]", "{\"a\":\v1}"));

TEST(JsonParse, IgnoresWhatFollowsTheFirstValue) {
  EXPECT_EQ(valid("{}\x01\xff garbage").size(), 0U);
  EXPECT_EQ(valid("12abc").n, 12);
  EXPECT_TRUE(valid("truex").b);
}

TEST(JsonParse, LastOfRepeatedKeysWins) {
  const Value v = valid(R"({"a":1,"a":2})");
  EXPECT_EQ(v["a"].n, 2);
  EXPECT_EQ(v.size(), 1U);
}

TEST(JsonParse, TakesNumbersAsStrtodDoes) {
  EXPECT_EQ(valid("+5").n, 5);
  EXPECT_EQ(valid("007").n, 7);
  EXPECT_EQ(valid("0x1p4").n, 16);
  EXPECT_EQ(valid(".5").n, 0.5);
  EXPECT_EQ(valid("1e999").n, HUGE_VAL);
  EXPECT_TRUE(std::isinf(valid("-inf").n));
  EXPECT_TRUE(std::isnan(valid("nan").n));
  EXPECT_TRUE(std::isnan(valid("[-nan]")[0].n));
}

// Regression: in locales with a decimal comma the settings' volumes came back as 0.
TEST(JsonParse, AndDumpKeepTheDecimalPointInACountryOfCommas) {
  const support::TempDir locales;
  const std::string german = locales.path("de_DE.UTF-8");
  ASSERT_EQ(std::system(("localedef -i de_DE -f UTF-8 " + german).c_str()), 0);
  EXPECT_EQ(support::inOwnProcess([&] {
              setenv("LOCPATH", locales.path().c_str(), 1);
              if (std::setlocale(LC_NUMERIC, "de_DE.UTF-8") == nullptr) return std::string("no such locale");
              return std::to_string(0.5) + " " + number(0.25).dump() + " " +
                     number(js::parse("0.25").n * 4).dump();
            }),
            "0,500000 0.25 1");
}

TEST(JsonParse, ReadsEscapes) {
  EXPECT_EQ(textOf(R"(\"\\\/\b\f\n\r\t)"), "\"\\/\b\f\n\r\t");
  EXPECT_EQ(textOf(R"(\u0041\u00e9\u20AC)"), "A\u00e9\u20ac");
  EXPECT_EQ(textOf(R"(a\u0000b)"), std::string("a\0b", 3));
}

TEST(JsonParse, TakesABadHexadecimalDigitAsZero) { EXPECT_EQ(textOf(R"(\u4x41)"), "\u4041"); }

TEST(JsonParse, JoinsSurrogatesAndKeepsLoneOnes) {
  EXPECT_EQ(textOf(R"(\uD83D\uDE00)"), "\xF0\x9F\x98\x80");
  EXPECT_EQ(textOf(R"(\uD83D)"), "\xED\xA0\xBD");
  EXPECT_EQ(textOf(R"(\uD83Dx)"), "\xED\xA0\xBDx");
  EXPECT_EQ(textOf(R"(\uD83D\u0041)"),
            "\xED\xA0\xBD"
            "A");
  EXPECT_EQ(textOf(R"(\uDE00)"), "\xED\xB8\x80");
  EXPECT_EQ(textOf(R"(\uD83D\uD83D\uDE00)"), "\xED\xA0\xBD\xF0\x9F\x98\x80");
}

TEST(JsonParse, LetsRawBytesPass) {
  const std::string bytes("\x01\x7f\x80\xff\n\0", 6);
  EXPECT_EQ(textOf(bytes), bytes);
}

TEST(JsonParse, TakesAZeroByteForNoPartOfAnyToken) {
  EXPECT_FALSE(isValid(std::string("\0", 1)));
  EXPECT_FALSE(isValid(std::string("[\0]", 3)));
  EXPECT_FALSE(isValid(std::string("[1\0]", 4)));
  EXPECT_FALSE(isValid(std::string("tr\0ue", 5)));
  EXPECT_EQ(valid(std::string("1\0002", 3)).n, 1);
}

TEST(JsonParse, SkipsMegabytesOfWhiteSpace) {
  EXPECT_EQ(valid(std::string(4000000, '\n') + "[" + std::string(4000000, ' ') + "1]")[0].n, 1);
}

std::string openingBraces(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "{\"\":";
  return text;
}

TEST(JsonParse, SurvivesAMillionOpeningBrackets) {
  limitStack();
  EXPECT_FALSE(isValid(std::string(kDeep, '[')));
  EXPECT_FALSE(isValid(openingBraces(kDeep)));
}

TEST(JsonValue, OfAnyDepthIsParsedCopiedDumpedAndDestroyed) {
  limitStack();
  for (const std::string& text : {std::string(kDeepValue, '[') + "1" + std::string(kDeepValue, ']'),
                                  openingBraces(kDeepValue) + "1" + std::string(kDeepValue, '}')}) {
    const Value v = valid(text);
    const Value copy = v;  // NOLINT(performance-unnecessary-copy-initialization): the copy is the point
    EXPECT_EQ(copy.dump(), text);
  }
}

TEST(JsonParse, OfAnyPrefixOfADocumentIsAllOrNothing) {
  const std::string text = R"({"a":[1,2.5,"x\u00e9\n"],"b":{"c":null,"d":true}})";
  for (std::size_t n = 0; n < text.size(); ++n) EXPECT_FALSE(isValid(text.substr(0, n))) << n;
  EXPECT_TRUE(isValid(text));
}

TEST(JsonParse, SurvivesRandomBytes) {
  std::mt19937 random(1);
  const std::string alphabet = "[]{}\",:\\u0123truefalsn-+.e \n\x01\xff";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (int i = 0; i < 40; ++i) text.push_back(alphabet[random() % alphabet.size()]);
    const Value v = js::parse(text);
    // Writing and reading again changes nothing.
    EXPECT_EQ(js::parse(v.dump()).dump(), v.dump()) << text;
  }
}

// --- values ---

TEST(JsonValue, IsNullAtFirst) { EXPECT_EQ(Value().kind, Value::Null); }

TEST(JsonValue, LooksUpWhatIsNotThereAsNull) {
  const Value v = valid(R"({"a":[1]})");
  EXPECT_EQ(v["b"].kind, Value::Null);
  EXPECT_EQ(v["a"][1].kind, Value::Null);
  EXPECT_EQ(v[0].kind, Value::Null);
  EXPECT_EQ(v["a"]["x"].kind, Value::Null);
  EXPECT_EQ(v["b"]["c"][7].asInt(42), 42);
  EXPECT_FALSE(v["a"].has("a"));
  EXPECT_EQ(number(1).size(), 0U);
}

TEST(JsonValue, RoundsHalfUpToAnInteger) {
  EXPECT_EQ(number(2.5).asInt(0), 3);
  EXPECT_EQ(number(-2.5).asInt(0), -2);
  EXPECT_EQ(number(-2.6).asInt(0), -3);
  EXPECT_EQ(number(2147483647).asInt(0), INT_MAX);
}

TEST(JsonValue, GivesTheSmallestIntegerForNumbersBeyondTheRange) {
  for (const double n : {2147483648.0, 2147483647.5, -2147483649.0, 1e300, -1e300, HUGE_VAL, -HUGE_VAL,
                         std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(number(n).asInt(0), INT_MIN) << n;
  }
}

TEST(JsonValue, ConvertsNothingButNumbers) {
  EXPECT_EQ(string("3").asInt(7), 7);
  EXPECT_EQ(valid("true").asInt(7), 7);
  EXPECT_EQ(Value().asInt(7), 7);
}

TEST(JsonValue, CanBeAssignedAPartOfItself) {
  Value v = valid(R"([[1,2],3])");
  v = v[0];
  EXPECT_EQ(v.dump(), "[1,2]");
}

// Regression: moving into a vector destroys its own elements first, and the moved part was one of them.
TEST(JsonValue, CanBeMovedAPartOfItself) {
  Value v = valid(R"([{"a":[1,2],"b":"a text that is stored on the heap"},3])");
  v = std::move(v.a[0]);
  EXPECT_EQ(v.dump(), R"({"a":[1,2],"b":"a text that is stored on the heap"})");
  v = std::move(v.o["a"]);
  EXPECT_EQ(v.dump(), "[1,2]");
}

TEST(JsonValue, CopiesAreIndependent) {
  const Value v = valid(R"({"a":[1]})");
  Value copy = v;
  copy.o["a"].a[0] = number(2);
  EXPECT_EQ(v.dump(), R"({"a":[1]})");
  EXPECT_EQ(copy.dump(), R"({"a":[2]})");
}

// --- writing ---

TEST(JsonDump, WritesNumbersShortWhereTheyAreWhole) {
  EXPECT_EQ(number(3.0).dump(), "3");
  EXPECT_EQ(number(-0.0).dump(), "0");
  EXPECT_EQ(number(-1000000).dump(), "-1000000");
  EXPECT_EQ(number(999999999999999).dump(), "999999999999999");
  EXPECT_EQ(number(1e15).dump(), "1000000000000000");
  EXPECT_EQ(number(1e17).dump(), "1e+17");
  EXPECT_EQ(number(0.1).dump(), "0.10000000000000001");
  EXPECT_EQ(number(1e300).dump(), "1.0000000000000001e+300");
  EXPECT_EQ(number(HUGE_VAL).dump(), "inf");
  EXPECT_EQ(number(-HUGE_VAL).dump(), "-inf");
  EXPECT_EQ(number(std::numeric_limits<double>::quiet_NaN()).dump(), "nan");
}

TEST(JsonDump, WritesEveryNumberSoThatItIsReadBackToTheLastBit) {
  std::mt19937_64 random(1);
  const auto readBack = [](double n) { return js::parse(number(n).dump()).n; };
  for (int round = 0; round < 20000; ++round) {
    const auto n = std::bit_cast<double>(random());  // any magnitude
    if (std::isfinite(n)) {
      EXPECT_EQ(readBack(n), n);
    }
    const double part = std::generate_canonical<double, 53>(random);  // like a volume
    EXPECT_EQ(readBack(part), part);
  }
}

TEST(JsonDump, EscapesNoMoreThanItMust) {
  EXPECT_EQ(string("\x01").dump(), R"("\u0001")");
  EXPECT_EQ(string("\b\f\t\n\r\"\\/").dump(), R"("\u0008\u000c\t\n\r\"\\/")");
  EXPECT_EQ(string("\x7f\x80\xff\u00e9").dump(), "\"\x7f\x80\xff\u00e9\"");
  EXPECT_EQ(string(std::string("\0", 1)).dump(), R"("\u0000")");
}

TEST(JsonDump, SortsMembersByTheirBytes) {
  Value v;
  v.kind = Value::Object;
  v.o["b"] = number(1);
  v.o["a"] = Value();
  v.o["B"] = string("x");
  v.o["\xc3\xa9"] = valid("[true,false,{}]");
  EXPECT_EQ(v.dump(), "{\"B\":\"x\",\"a\":null,\"b\":1,\"\xc3\xa9\":[true,false,{}]}");
}

// --- files ---

TEST(JsonFile, ThatIsMissingLeavesTheValueAlone) {
  const support::TempDir dir;
  Value v = number(5);
  EXPECT_FALSE(js::parseFile(dir.path("none.json"), &v));
  EXPECT_EQ(v.n, 5);
}

TEST(JsonFile, ThatIsNoDocumentReadsAsNull) {
  const support::TempDir dir;
  dir.makeFile("a.json", "{\"a\":");
  Value v = number(5);
  EXPECT_TRUE(js::parseFile(dir.path("a.json"), &v));
  EXPECT_EQ(v.kind, Value::Null);
}

// Regression: the game ended with an exception at start-up.
TEST(JsonFile, ThatIsADirectoryIsNotRead) {
  const support::TempDir dir;
  Value v = number(5);
  EXPECT_FALSE(js::parseFile(dir.makeDir("a.json"), &v));
  EXPECT_EQ(v.n, 5);
}

TEST(JsonFile, ThatIsAPipeIsNotWaitedFor) {
  const support::TempDir dir;
  ASSERT_EQ(mkfifo(dir.path("a.json").c_str(), 0600), 0);
  Value v = number(5);
  EXPECT_FALSE(js::parseFile(dir.path("a.json"), &v));
  EXPECT_EQ(v.n, 5);
}

TEST(JsonFile, ReplacesAPipeUnderItsNameOrTheTemporaryOne) {
  for (const char* name : {"a.json", "a.json.tmp"}) {
    const support::TempDir dir;
    ASSERT_EQ(mkfifo(dir.path(name).c_str(), 0600), 0);
    EXPECT_TRUE(js::writeFileAtomic(dir.path("a.json"), number(5))) << name;
    EXPECT_EQ(support::readAll(dir.path("a.json")), "5") << name;
    EXPECT_FALSE(std::filesystem::exists(dir.path("a.json.tmp"))) << name;
  }
}

TEST(JsonFile, ThatIsEmptyReadsAsNull) {
  const support::TempDir dir;
  Value v = number(5);
  EXPECT_TRUE(js::parseFile(dir.makeFile("a.json", ""), &v));
  EXPECT_EQ(v.kind, Value::Null);
}

TEST(JsonFile, IsReadToItsEnd) {
  const support::TempDir dir;
  const std::string path = dir.makeFile("a.json", '"' + std::string(1000000, 'x') + '"');
  Value v;
  EXPECT_TRUE(js::parseFile(path, &v));
  EXPECT_EQ(v.s.size(), 1000000U);
}

TEST(JsonFile, ReplacesTheOldOneAndLeavesNoTemporary) {
  const support::TempDir dir;
  const std::string path = dir.makeFile("a.json", "old");
  EXPECT_TRUE(js::writeFileAtomic(path, valid(R"({"a":1})")));
  EXPECT_EQ(support::readAll(path), R"({"a":1})");
  EXPECT_FALSE(std::filesystem::exists(path + ".tmp"));
}

TEST(JsonFile, InAMissingDirectoryIsNotWritten) {
  const support::TempDir dir;
  EXPECT_FALSE(js::writeFileAtomic(dir.path("none/a.json"), number(1)));
  EXPECT_FALSE(std::filesystem::exists(dir.path("none")));
}

// Regression: a small document stays in the stream's buffer, so a full disk was noticed only after the old
// file was gone.
TEST(JsonFile, StaysAsItWasWhenTheDiskIsFull) {
  const support::TempDir dir;
  const std::string path = dir.makeFile("a.json", "old");
  EXPECT_EQ(writtenWithoutRoom(path, number(1)), "0");
  EXPECT_EQ(support::readAll(path), "old");
}

TEST(JsonFile, IsNotWrittenThroughALinkUnderTheTemporaryName) {
  const support::TempDir dir;
  const std::string others = dir.makeFile("others", "kept");
  const std::string path = dir.makeFile("a.json", "old");
  std::filesystem::create_symlink(others, path + ".tmp");
  EXPECT_TRUE(js::writeFileAtomic(path, number(1)));
  EXPECT_EQ(support::readAll(path), "1");
  EXPECT_FALSE(std::filesystem::is_symlink(path));
  EXPECT_EQ(support::readAll(others), "kept");
}

// Regression: a bad link or an empty directory there stopped all saving.
TEST(JsonFile, IsWrittenWhateverStandsUnderTheTemporaryName) {
  const support::TempDir dir;
  const std::string path = dir.path("a.json");
  const std::string temporary = path + ".tmp";
  for (const char* target : {"/dev/full", "/dev/zero", "nowhere/file", "a.json.tmp"}) {
    std::filesystem::create_symlink(target, temporary);
    EXPECT_TRUE(js::writeFileAtomic(path, string(target))) << target;
    EXPECT_EQ(support::readAll(path), string(target).dump());
    std::filesystem::remove(path);
  }
  std::filesystem::create_directory(temporary);
  EXPECT_TRUE(js::writeFileAtomic(path, number(1)));
  EXPECT_EQ(support::readAll(path), "1");
}

TEST(JsonFile, IsKeptUnderTheNameGivenForIt) {
  const support::TempDir dir;
  const std::string path = dir.makeFile("a.json", "old");
  EXPECT_TRUE(js::writeFileAtomic(path, number(1), dir.path("kept")));
  EXPECT_EQ(support::readAll(path), "1");
  EXPECT_EQ(support::readAll(dir.path("kept")), "old");
  EXPECT_FALSE(js::writeFileAtomic(path, number(2), dir.path("none/kept")));
  EXPECT_EQ(support::readAll(path), "1");
}

// Regression: an empty file replaced the one that could not be written.
TEST(JsonFile, IsNotWhatAFailedFirstWriteHasLeft) {
  const support::TempDir dir;
  dir.makeFile("a.json.tmp", "{\"half\":");
  const std::string path = dir.path("a.json");
  EXPECT_EQ(writtenWithoutRoom(path, number(5)), "0");
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_TRUE(js::writeFileAtomic(path, number(5)));
  EXPECT_EQ(support::readAll(path), "5");
}

// Regression: killed between removing and renaming, and again during its next write, the program lost both
// files.
TEST(JsonFile, WrittenAfterACutOffWriteIsNotLostByAFailure) {
  const support::TempDir dir;
  const std::string path = dir.path("a.json");
  dir.makeFile("a.json.tmp", "1");
  EXPECT_EQ(writtenWithoutRoom(path, number(2)), "0");
  EXPECT_EQ(support::readAll(path), "1");
  EXPECT_TRUE(js::writeFileAtomic(path, number(3)));
  EXPECT_EQ(support::readAll(path), "3");
}

}  // namespace
