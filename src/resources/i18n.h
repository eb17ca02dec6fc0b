// i18n.h: every text that the game shows, by key, in the current language, and long dates. The catalogues are
// built in. Knows nothing of the settings or of where a text is shown. Main thread only.
#pragma once

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

namespace i18n {

struct Language {
  std::string code;  // two lower-case letters
  std::string nativeName;
  std::string englishName;
  bool rtl;  // written right to left
};

// All 22 languages, in the order shown to the player.
const std::vector<Language>& languages();

// The first supported language that the environment asks for, searching LANGUAGE, LC_ALL, LC_MESSAGES and
// LANG in this order. "en" if there is none.
std::string detectSystemLanguage();

// Sets the current language. An empty code means the system's language, an unknown code English.
void setLanguage(const std::string& code);
// The code of the current language. English before the first call of setLanguage.
std::string currentLanguage();
bool currentIsRtl();

// The text for a key, or the key itself if there is none.
std::string tr(const std::string& key);
// The text with every {{name}} replaced by the value of that name, in the order of `params`. Names without a
// value stay as they are.
std::string tr(const std::string& key, std::initializer_list<std::pair<const char*, std::string>> params);

// A label and its value, joined by the current language's colon: "Time: 12:34".
std::string labelled(const std::string& label, const std::string& value);

// Weekday, day and month as the current language writes them, without the year. `month` is 1 to 12, `weekday`
// is 0 (Sunday) to 6; both are clamped.
std::string formatLongDate(int year, int month, int day, int weekday);

}  // namespace i18n
