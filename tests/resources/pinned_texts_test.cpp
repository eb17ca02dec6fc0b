// Compares the texts with a second copy: English and German word by word, all languages by a digest each. So
// no text changes by accident.

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>

#include "resources/date_data.h"
#include "resources/expected_texts.h"
#include "resources/i18n_data.h"

namespace {

using i18n_data::Catalog;
using i18n_data::kCatalogs;
using test::kExpectedTexts;

constexpr std::size_t kGermanRow = 0;
constexpr std::size_t kEnglishRow = 1;

void expectTexts(const Catalog& catalog, const char* test::ExpectedText::* text) {
  ASSERT_EQ(catalog.count, kExpectedTexts.size());
  for (std::size_t i = 0; i < kExpectedTexts.size(); ++i) {
    EXPECT_STREQ(catalog.entries[i].key, kExpectedTexts[i].key);
    EXPECT_STREQ(catalog.entries[i].text, kExpectedTexts[i].*text) << kExpectedTexts[i].key;
  }
}

TEST(PinnedTexts, AreTheEnglishOnes) { expectTexts(kCatalogs[kEnglishRow], &test::ExpectedText::english); }

TEST(PinnedTexts, AreTheGermanOnes) { expectTexts(kCatalogs[kGermanRow], &test::ExpectedText::german); }

template <std::size_t N>
void expectNames(const std::array<const char*, N>& names, const std::array<const char*, N>& expected) {
  for (std::size_t i = 0; i < N; ++i) EXPECT_STREQ(names[i], expected[i]);
}

TEST(PinnedTexts, AreTheEnglishAndTheGermanDates) {
  expectNames(date_data::kNames[kEnglishRow].weekdays, test::kEnglishWeekdays);
  expectNames(date_data::kNames[kEnglishRow].months, test::kEnglishMonths);
  EXPECT_STREQ(date_data::kNames[kEnglishRow].pattern, "{W}, {D} {M}");
  expectNames(date_data::kNames[kGermanRow].weekdays, test::kGermanWeekdays);
  expectNames(date_data::kNames[kGermanRow].months, test::kGermanMonths);
  EXPECT_STREQ(date_data::kNames[kGermanRow].pattern, "{W}, {D}. {M}");
}

// 64-bit FNV-1a digest of texts, each followed by a line feed.
class Digest {
 public:
  void add(const std::string& text) {
    for (const char c : text + '\n') value = (value ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  }
  std::string hex() const {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(value));
    return digits;
  }

 private:
  std::uint64_t value = 0xCBF29CE484222325U;
};

// The digest of everything specific to a language.
std::string digestOf(std::size_t language) {
  const Catalog& catalog = kCatalogs[language];
  const date_data::Names& dates = date_data::kNames[language];
  Digest digest;
  for (const char* text : {catalog.code, catalog.nativeName, catalog.englishName, catalog.colon})
    digest.add(text);
  for (std::size_t i = 0; i < catalog.count; ++i) {
    digest.add(catalog.entries[i].key);
    digest.add(catalog.entries[i].text);
  }
  digest.add(dates.pattern);
  for (const char* name : dates.weekdays) digest.add(name);
  for (const char* name : dates.months) digest.add(name);
  return digest.hex();
}

// With the environment variable VESKARA_UPDATE_TEXTS the file is rewritten, and the test fails so that such a
// run is never green. Review the changes in the file, then run again without the variable.
TEST(PinnedTexts, AreThoseOfAllLanguages) {
  if (std::getenv("VESKARA_UPDATE_TEXTS") != nullptr) {
    std::ofstream file(VESKARA_TEXT_DIGESTS);
    for (std::size_t i = 0; i < i18n_data::kCatalogCount; ++i)
      file << kCatalogs[i].code << ' ' << digestOf(i) << '\n';
    FAIL() << VESKARA_TEXT_DIGESTS << " was rewritten: review the changes";
  }
  std::map<std::string, std::string> pinned;
  std::ifstream file(VESKARA_TEXT_DIGESTS);
  for (std::string code, digest; file >> code >> digest;) pinned[code] = digest;
  EXPECT_EQ(pinned.size(), i18n_data::kCatalogCount);
  for (std::size_t i = 0; i < i18n_data::kCatalogCount; ++i) {
    EXPECT_EQ(pinned[kCatalogs[i].code], digestOf(i))
        << "texts of " << kCatalogs[i].code
        << " have changed; if this is intended, run with VESKARA_UPDATE_TEXTS=1";
  }
}

}  // namespace
