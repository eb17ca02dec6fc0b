// Tests that the texts of all languages have the same keys and placeholders.

#include "resources/i18n_data.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "resources/date_data.h"

namespace {

using i18n_data::Catalog;
using i18n_data::Entry;
using i18n_data::kCatalogs;
using testing::SizeIs;
using testing::StartsWith;

const Catalog& kEnglish = kCatalogs[1];

std::span<const Entry> entriesOf(const Catalog& catalog) { return {catalog.entries, catalog.count}; }

std::vector<std::string> keysOf(const Catalog& catalog) {
  std::vector<std::string> keys;
  for (const Entry& entry : entriesOf(catalog)) keys.emplace_back(entry.key);
  return keys;
}

std::string textOf(const Catalog& catalog, const std::string& key) {
  for (const Entry& entry : entriesOf(catalog)) {
    if (entry.key == key) return entry.text;
  }
  ADD_FAILURE() << catalog.code << " lacks " << key;
  return {};
}

std::vector<std::string> partsOf(const std::string& text, const std::string& separator) {
  std::vector<std::string> parts;
  std::size_t begin = 0;
  for (std::size_t end = 0; (end = text.find(separator, begin)) != std::string::npos;) {
    parts.push_back(text.substr(begin, end - begin));
    begin = end + separator.size();
  }
  parts.push_back(text.substr(begin));
  return parts;
}

// The names of all {{placeholders}}.
std::multiset<std::string> placeholdersOf(const std::string& text) {
  std::multiset<std::string> names;
  const std::vector<std::string> parts = partsOf(text, "{{");
  for (std::size_t i = 1; i < parts.size(); ++i) names.insert(parts[i].substr(0, parts[i].find("}}")));
  return names;
}

std::vector<gunichar> charactersOf(const std::string& text) {
  std::vector<gunichar> characters;
  for (const char* at = text.c_str(); *at != '\0'; at = g_utf8_next_char(at)) {
    characters.push_back(g_utf8_get_char(at));
  }
  return characters;
}

bool isComposed(const std::string& text) {
  const std::unique_ptr<char, decltype(&g_free)> composed(g_utf8_normalize(text.c_str(), -1, G_NORMALIZE_NFC),
                                                          &g_free);
  return composed != nullptr && composed.get() == text;
}

// Calls `look(text)` for every text in the tables: catalogues, language names and dates.
template <class Look>
void forEachText(const Look& look) {
  for (const Catalog& catalog : kCatalogs) {
    SCOPED_TRACE(catalog.code);
    look(std::string(catalog.nativeName));
    look(std::string(catalog.englishName));
    for (const Entry& entry : entriesOf(catalog)) look(std::string(entry.text));
  }
  for (const date_data::Names& names : date_data::kNames) {
    SCOPED_TRACE(names.code);
    look(std::string(names.pattern));
    for (const char* name : names.weekdays) look(std::string(name));
    for (const char* name : names.months) look(std::string(name));
  }
}

TEST(Catalogues, HaveTheSame55KeysInOrder) {
  const std::vector<std::string> keys = keysOf(kEnglish);
  ASSERT_THAT(keys, SizeIs(55));
  EXPECT_EQ(std::adjacent_find(keys.begin(), keys.end(), std::greater_equal<>()), keys.end());
  for (const Catalog& catalog : kCatalogs) EXPECT_EQ(keysOf(catalog), keys) << catalog.code;
}

TEST(Catalogues, HavePlaceholdersWhereEnglishHasThem) {
  ASSERT_EQ(placeholdersOf(textOf(kEnglish, "solved.aidsLine")),
            (std::multiset<std::string>{"hints", "shuffles"}));
  for (const Catalog& catalog : kCatalogs) {
    for (const Entry& entry : entriesOf(catalog)) {
      EXPECT_EQ(placeholdersOf(entry.text), placeholdersOf(textOf(kEnglish, entry.key)))
          << catalog.code << " " << entry.text;
    }
  }
}

TEST(Catalogues, HaveNoBraceOutsideAPlaceholder) {
  for (const Catalog& catalog : kCatalogs) {
    for (const Entry& entry : entriesOf(catalog)) {
      const std::string text = entry.text;
      const auto braces =
          std::count_if(text.begin(), text.end(), [](char c) { return c == '{' || c == '}'; });
      EXPECT_EQ(braces, 4 * std::ssize(placeholdersOf(text))) << catalog.code << " " << text;
    }
  }
}

TEST(Catalogues, TranslateEveryKey) {
  for (const Catalog& catalog : kCatalogs) {
    for (const Entry& entry : entriesOf(catalog)) {
      EXPECT_STRNE(entry.text, "") << catalog.code << " " << entry.key;
      EXPECT_STRNE(entry.text, entry.key) << catalog.code;
    }
  }
}

TEST(Catalogues, ShareWithEnglishOnlyTheWordsThatAreTheSame) {
  const std::map<std::string, std::set<std::string>> sharing = {
      {"attract.demo", {"de", "es", "it", "pt", "nl", "pl", "cs", "ro", "sv", "da", "fi", "tr"}},
      {"common.ok", {"de", "fr", "it", "pt", "nl", "pl", "cs", "hu", "ro", "sv", "da", "fi", "ja"}},
      {"playing.hint", {"nl"}},
      {"playing.levelLabel", {"de"}},
      {"settings.languageSystem", {"de", "sv", "da"}},
      {"settings.sound", {"de"}},
  };
  for (const Catalog& catalog : kCatalogs) {
    if (&catalog == &kEnglish) continue;
    for (const Entry& entry : entriesOf(catalog)) {
      const auto found = sharing.find(entry.key);
      if (found != sharing.end() && found->second.contains(catalog.code)) continue;
      EXPECT_NE(entry.text, textOf(kEnglish, entry.key)) << catalog.code << " " << entry.key;
    }
  }
}

TEST(Catalogues, NameTheKeysOfTheKeyboardAlike) {
  for (const Catalog& catalog : kCatalogs) {
    SCOPED_TRACE(catalog.code);
    const std::vector<std::string> parts = partsOf(textOf(catalog, "settings.keyboard"), " · ");
    ASSERT_THAT(parts, SizeIs(6));
    EXPECT_THAT(parts[0], testing::HasSubstr("H "));
    EXPECT_THAT(parts[1], StartsWith("M "));
    EXPECT_THAT(parts[2], StartsWith("U "));
    EXPECT_THAT(parts[4], StartsWith("+/− "));
    EXPECT_THAT(parts[5], StartsWith("F11 "));
  }
}

TEST(Catalogues, KeepTheirWordsForTheSameThing) {
  for (const Catalog& catalog : kCatalogs) {
    SCOPED_TRACE(catalog.code);
    EXPECT_EQ(textOf(catalog, "menu.gallery"), textOf(catalog, "gallery.headline"));
    EXPECT_EQ(textOf(catalog, "menu.levelSelect"), textOf(catalog, "levels.headline"));
    EXPECT_EQ(textOf(catalog, "menu.settings"), textOf(catalog, "settings.headline"));
    EXPECT_EQ(textOf(catalog, "menu.about"), textOf(catalog, "about.headline"));
    EXPECT_EQ(textOf(catalog, "settings.resetProgressConfirmNo"), textOf(catalog, "common.cancel"));
  }
}

TEST(Catalogues, TellTakingBackFromCancelling) {
  for (const Catalog& catalog : kCatalogs)
    EXPECT_NE(textOf(catalog, "playing.undo"), textOf(catalog, "common.cancel")) << catalog.code;
}

TEST(Texts, AreComposedUtf8) {
  forEachText([](const std::string& text) {
    ASSERT_TRUE(g_utf8_validate(text.c_str(), -1, nullptr)) << text;
    EXPECT_TRUE(isComposed(text)) << text;
  });
}

TEST(Texts, HaveNoControlCharacters) {
  forEachText([](const std::string& text) {
    for (const gunichar c : charactersOf(text)) {
      EXPECT_FALSE(g_unichar_iscntrl(c) || g_unichar_type(c) == G_UNICODE_FORMAT) << text;
    }
  });
}

TEST(Texts, NeitherBeginNorEndNorStumbleWithABlank) {
  forEachText([](const std::string& text) {
    const std::vector<gunichar> characters = charactersOf(text);
    ASSERT_FALSE(characters.empty());
    EXPECT_FALSE(g_unichar_isspace(characters.front())) << text;
    EXPECT_FALSE(g_unichar_isspace(characters.back())) << text;
    EXPECT_EQ(text.find("  "), std::string::npos) << text;
  });
}

TEST(DateNames, StandInTheOrderOfTheCatalogues) {
  for (std::size_t i = 0; i < i18n_data::kCatalogCount; ++i) {
    EXPECT_STREQ(date_data::kNames[i].code, kCatalogs[i].code);
  }
}

TEST(DateNames, TellDaysAndMonthsApart) {
  for (const date_data::Names& names : date_data::kNames) {
    EXPECT_THAT(std::set<std::string>(names.weekdays.begin(), names.weekdays.end()), SizeIs(7)) << names.code;
    EXPECT_THAT(std::set<std::string>(names.months.begin(), names.months.end()), SizeIs(12)) << names.code;
  }
}

TEST(DatePatterns, HaveEachPartOnce) {
  for (const date_data::Names& names : date_data::kNames) {
    for (const char* token : {"{W}", "{D}", "{M}"}) {
      EXPECT_THAT(partsOf(names.pattern, token), SizeIs(2)) << names.code << " " << token;
    }
  }
}

}  // namespace
