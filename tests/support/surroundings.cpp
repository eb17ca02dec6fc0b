// surroundings.cpp: linked into every test program. Sets the fonts that all pictures are painted with and the
// sanitizers' options, also for processes that the program starts. So a test sees the same environment by
// hand as in ctest.

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

// This program's own sanitizers ask for these before any of its code runs.
// NOLINTBEGIN(bugprone-reserved-identifier): the sanitizers' names for them
extern "C" const char* __lsan_default_options() { return kLeakOptions; }
extern "C" const char* __ubsan_default_options() { return kUndefinedOptions; }
// NOLINTEND(bugprone-reserved-identifier)
