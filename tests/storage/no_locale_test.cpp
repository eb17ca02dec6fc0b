// Simulates a C library that cannot provide the "C" locale. A program of its own because the game asks only
// once.

#include <gtest/gtest.h>

#include <clocale>

#include "storage/json.h"

// Replaces the library's function.
extern "C" locale_t newlocale(int /*mask*/, const char* /*name*/, locale_t /*base*/) { return nullptr; }

namespace {

TEST(NoLocale, CostsNoNumber) {
  EXPECT_EQ(js::parse("[0.25]")[0].n, 0.25);
  EXPECT_EQ(js::parse("-12e2 ").n, -1200);
}

}  // namespace
