// i18n.h: every text that the game shows, by its key, in the current language; long dates likewise. The
// catalogues are built in. Knows nothing of where a text is shown or of the settings. Main thread only.
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

// All 22, in the order in which they are offered.
const std::vector<Language>& languages();

// The first language that the environment asks for and that we have; "en" if there is none. LANGUAGE is
// asked first, then LC_ALL, LC_MESSAGES and LANG.
std::string detectSystemLanguage();

// Makes the language current: an empty code means the system's, an unknown one English.
void setLanguage(const std::string& code);
// The code of the current language, English before any call of setLanguage.
std::string currentLanguage();
bool currentIsRtl();

// The text; the key itself when there is none.
std::string tr(const std::string& key);
// The text with every {{name}} replaced by the value given for that name, one name after the other. What no
// name is given for stays as it is.
std::string tr(const std::string& key, std::initializer_list<std::pair<const char*, std::string>> params);

// A label and its value with the current language's own colon between them: "Time: 12:34".
std::string labelled(const std::string& label, const std::string& value);

// Weekday, day and month as the current language writes them, without the year. `month` 1 to 12, `weekday` 0
// (Sunday) to 6; others are brought into range.
std::string formatLongDate(int year, int month, int day, int weekday);

}  // namespace i18n
