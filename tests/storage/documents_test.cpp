#include "storage/documents.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ValueOf, TakesEachKindForWhatItIs) {
  EXPECT_EQ(store::valueOf(true).dump(), "true");
  EXPECT_EQ(store::valueOf(7).dump(), "7");
  EXPECT_EQ(store::valueOf(0.5).dump(), "0.5");
  EXPECT_EQ(store::valueOf(std::string("text")).dump(), "\"text\"");
}

// Regression: the literal's pointer was converted to true.
TEST(ValueOf, TakesALiteralForAText) { EXPECT_EQ(store::valueOf("text").dump(), "\"text\""); }

}  // namespace
