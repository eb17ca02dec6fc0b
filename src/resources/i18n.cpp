#include "resources/i18n.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <map>
#include <sstream>

#include "resources/date_data.h"
#include "resources/i18n_data.h"
#include "storage/paths.h"

namespace i18n {

namespace {

using i18n_data::Catalog;
using i18n_data::kCatalogs;

constexpr int kEnglish = 1;

struct State {
  int index = kEnglish;   // of the current catalogue
  std::string requested;  // empty for the system's language
  std::map<std::string, std::string> lookup;
};

// Never destroyed: a screen may ask for a text at exit.
State& state() {
  static auto& instance = *new State;
  return instance;
}

const Catalog& currentCatalog() { return kCatalogs[state().index]; }

// Index of the language's catalogue, or -1.
int findCatalog(const std::string& code) {
  const auto* found = std::find_if(std::begin(kCatalogs), std::end(kCatalogs),
                                   [&](const Catalog& catalog) { return catalog.code == code; });
  return found == std::end(kCatalogs) ? -1 : static_cast<int>(found - std::begin(kCatalogs));
}

void buildLookup() {
  auto& lookup = state().lookup;
  const Catalog& catalog = currentCatalog();
  lookup.clear();
  for (std::size_t i = 0; i < catalog.count; ++i) {
    lookup.emplace(catalog.entries[i].key, catalog.entries[i].text);
  }
}

// Not std::tolower, which depends on the locale.
char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// "de" of "de_DE.UTF-8", "pt" of "pt-BR".
std::string languageOf(const std::string& locale) {
  std::string code = locale.substr(0, locale.find_first_of("-.@_"));
  std::transform(code.begin(), code.end(), code.begin(), lowerCase);
  return code;
}

// The code of the first locale whose language has a catalogue; empty if there is none. `locales` are
// separated by colons.
std::string firstKnownLanguage(const std::string& locales) {
  std::istringstream items(locales);
  for (std::string item; std::getline(items, item, ':');) {
    if (std::string code = languageOf(item); findCatalog(code) >= 0) return code;
  }
  return {};
}

void replaceAll(std::string& text, const std::string& token, const std::string& value) {
  std::size_t at = 0;
  while ((at = text.find(token, at)) != std::string::npos) {
    text.replace(at, token.size(), value);
    at += value.size();
  }
}

void replaceFirst(std::string& text, const std::string& token, const std::string& value) {
  if (const std::size_t at = text.find(token); at != std::string::npos) text.replace(at, token.size(), value);
}

const date_data::Names& currentNames() {
  const auto* found =
      std::find_if(std::begin(date_data::kNames), std::end(date_data::kNames),
                   [](const date_data::Names& names) { return names.code == currentLanguage(); });
  return found == std::end(date_data::kNames) ? date_data::kNames[0] : *found;
}

}  // namespace

const std::vector<Language>& languages() {
  static const auto& list = *new std::vector<Language>([] {
    std::vector<Language> all;
    for (const Catalog& row : kCatalogs) all.push_back({row.code, row.nativeName, row.englishName, row.rtl});
    return all;
  }());
  return list;
}

std::string detectSystemLanguage() {
  for (const char* variable : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (std::string code = firstKnownLanguage(paths::envOr(variable)); !code.empty()) return code;
  }
  return kCatalogs[kEnglish].code;
}

void setLanguage(const std::string& code) {
  State& s = state();
  s.requested = code;
  const int found = findCatalog(s.requested.empty() ? detectSystemLanguage() : s.requested);
  s.index = found >= 0 ? found : kEnglish;
  buildLookup();
}

std::string currentLanguage() { return currentCatalog().code; }

bool currentIsRtl() { return currentCatalog().rtl; }

std::string tr(const std::string& key) {
  const auto& lookup = state().lookup;
  if (lookup.empty()) buildLookup();
  const auto found = lookup.find(key);
  return found == lookup.end() ? key : found->second;
}

std::string tr(const std::string& key, std::initializer_list<std::pair<const char*, std::string>> params) {
  std::string text = tr(key);
  for (const auto& [name, value] : params) replaceAll(text, "{{" + std::string(name) + "}}", value);
  return text;
}

std::string labelled(const std::string& label, const std::string& value) {
  return label + currentCatalog().colon + value;
}

std::string formatLongDate(int /*year*/, int month, int day, int weekday) {
  const date_data::Names& names = currentNames();
  std::string date = names.pattern;
  replaceFirst(date, "{W}", names.weekdays[static_cast<std::size_t>(std::clamp(weekday, 0, 6))]);
  replaceFirst(date, "{M}", names.months[static_cast<std::size_t>(std::clamp(month, 1, 12) - 1)]);
  replaceFirst(date, "{D}", std::to_string(day));
  return date;
}

}  // namespace i18n
