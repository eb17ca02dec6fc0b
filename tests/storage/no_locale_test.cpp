// A C library that has no "C" locale to give. It stands in a program of its own, as the game asks but once.

#include <gtest/gtest.h>

#include <clocale>

#include "storage/json.h"

// In the place of the library's.
extern "C" locale_t newlocale(int /*mask*/, const char* /*name*/, locale_t /*base*/) { return nullptr; }

namespace {

TEST(NoLocale, CostsNoNumber) {
  EXPECT_EQ(js::parse("[0.25]")[0].n, 0.25);
  EXPECT_EQ(js::parse("-12e2 ").n, -1200);
}

}  // namespace
