// surroundings.cpp: linked into every test program, which so finds the same surroundings by hand as in ctest,
// and hands them on to what it starts: the fonts that all pictures are painted with, and what the sanitizers
// are told.

#include <cstdlib>

namespace {

constexpr const char* kLeakOptions = "suppressions=" VESKARA_LEAKS ":print_suppressions=0";
constexpr const char* kUndefinedOptions = "print_stacktrace=1";

[[maybe_unused]] const bool arranged = [] {
#ifdef VESKARA_FONTS
  setenv("FONTCONFIG_FILE", VESKARA_FONTS, 1);
#endif
  setenv("LSAN_OPTIONS", kLeakOptions, 1);
  setenv("UBSAN_OPTIONS", kUndefinedOptions, 1);
  return true;
}();

}  // namespace

// This program's own sanitizers ask before anything of it runs.
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' names for them
extern "C" const char* __lsan_default_options() { return kLeakOptions; }
extern "C" const char* __ubsan_default_options() { return kUndefinedOptions; }
// NOLINTEND(bugprone-reserved-identifier)
