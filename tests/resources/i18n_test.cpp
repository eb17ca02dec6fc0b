#include "resources/i18n.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "support/own_process.h"

namespace {

using i18n::formatLongDate;
using i18n::tr;
using support::inOwnProcess;

// Sets the current language for its lifetime, then English.
class InLanguage {
 public:
  explicit InLanguage(const std::string& code) { i18n::setLanguage(code); }
  InLanguage(const InLanguage&) = delete;
  InLanguage& operator=(const InLanguage&) = delete;
  ~InLanguage() { i18n::setLanguage("en"); }
};

using Variables = std::initializer_list<std::pair<const char*, const char*>>;

// The result of `act` in a process in which only these language variables are set.
template <class Act>
std::string withVariables(Variables variables, const Act& act) {
  return inOwnProcess([&] {
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) unsetenv(name);
    for (const auto& [name, value] : variables) setenv(name, value, 1);
    return act();
  });
}

std::string detectedWith(Variables variables) {
  return withVariables(variables, [] { return i18n::detectSystemLanguage(); });
}

struct Row {
  const char* code;
  const char* nativeName;
  const char* englishName;
  const char* continueWith;
  const char* fifthOfMarch;
};

const std::array kRows = std::to_array<Row>({
    {"de", "Deutsch", "German", "Weiter mit Level {{n}}", "Dienstag, 5. März"},
    {"en", "English", "English", "Continue with level {{n}}", "Tuesday, 5 March"},
    {"fr", "Français", "French", "Continuer au niveau {{n}}", "mardi 5 mars"},
    {"es", "Español", "Spanish", "Continuar con el nivel {{n}}", "martes, 5 de marzo"},
    {"it", "Italiano", "Italian", "Continua al livello {{n}}", "martedì 5 marzo"},
    {"pt", "Português", "Portuguese", "Continuar com o nível {{n}}", "terça-feira, 5 de março"},
    {"nl", "Nederlands", "Dutch", "Doorgaan met niveau {{n}}", "dinsdag 5 maart"},
    {"pl", "Polski", "Polish", "Kontynuuj poziom {{n}}", "wtorek, 5 marca"},
    {"cs", "Čeština", "Czech", "Pokračovat na úrovni {{n}}", "úterý 5. března"},
    {"hu", "Magyar", "Hungarian", "Folytatás a {{n}}. szinten", "március 5., kedd"},
    {"ro", "Română", "Romanian", "Continuă cu nivelul {{n}}", "marți, 5 martie"},
    {"sv", "Svenska", "Swedish", "Fortsätt med nivå {{n}}", "tisdag 5 mars"},
    {"da", "Dansk", "Danish", "Fortsæt på niveau {{n}}", "tirsdag 5. marts"},
    {"fi", "Suomi", "Finnish", "Jatka tasolla {{n}}", "tiistai 5. maaliskuuta"},
    {"el", "Ελληνικά", "Greek", "Συνέχεια στο επίπεδο {{n}}", "Τρίτη, 5 Μαρτίου"},
    {"tr", "Türkçe", "Turkish", "Seviye {{n}} ile devam et", "5 Mart Salı"},
    {"ru", "Русский", "Russian", "Продолжить уровень {{n}}", "вторник, 5 марта"},
    {"ja", "日本語", "Japanese", "レベル{{n}}を続ける", "3月5日 火曜日"},
    {"zh", "中文", "Chinese (Simplified)", "继续第 {{n}} 关", "3月5日 星期二"},
    {"ko", "한국어", "Korean", "{{n}}레벨 계속", "3월 5일 화요일"},
    {"ar", "العربية", "Arabic", "متابعة المستوى {{n}}", "الثلاثاء، 5 مارس"},
    {"he", "עברית", "Hebrew", "המשך לשלב {{n}}", "יום שלישי, 5 במרץ"},
});

TEST(Languages, AreOfferedInAFixedOrderUnderTheirOwnNames) {
  ASSERT_EQ(i18n::languages().size(), kRows.size());
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    const i18n::Language& language = i18n::languages()[i];
    EXPECT_EQ(language.code, kRows[i].code);
    EXPECT_EQ(language.nativeName, kRows[i].nativeName);
    EXPECT_EQ(language.englishName, kRows[i].englishName);
  }
}

TEST(Languages, StayAtOneAddress) { EXPECT_EQ(&i18n::languages(), &i18n::languages()); }

TEST(Languages, RunFromRightToLeftInArabicAndHebrewAlone) {
  for (const i18n::Language& language : i18n::languages()) {
    const InLanguage current(language.code);
    const bool expected = language.code == "ar" || language.code == "he";
    EXPECT_EQ(language.rtl, expected) << language.code;
    EXPECT_EQ(i18n::currentIsRtl(), expected) << language.code;
  }
}

TEST(DetectSystemLanguage, TakesTheFirstOfTheListedLanguages) {
  EXPECT_EQ(detectedWith({{"LANGUAGE", "fr:de"}, {"LANG", "de_DE.UTF-8"}}), "fr");
}

TEST(DetectSystemLanguage, GoesOnAfterALanguageThatWeLack) {
  EXPECT_EQ(detectedWith({{"LANGUAGE", "xx:it_IT:de"}}), "it");
  EXPECT_EQ(detectedWith({{"LANGUAGE", "xx"}, {"LANG", "es_ES"}}), "es");
  EXPECT_EQ(detectedWith({{"LC_ALL", "C.UTF-8"}, {"LANG", "pl_PL.UTF-8"}}), "pl");
}

TEST(DetectSystemLanguage, IsEnglishWhereNothingIsKnown) {
  EXPECT_EQ(detectedWith({}), "en");
  EXPECT_EQ(detectedWith({{"LANG", "C"}}), "en");
  EXPECT_EQ(detectedWith({{"LANG", "POSIX"}}), "en");
  EXPECT_EQ(detectedWith({{"LANGUAGE", ":"}, {"LANG", "xx_XX"}}), "en");
}

TEST(DetectSystemLanguage, AsksTheVariablesInTheirOrder) {
  EXPECT_EQ(detectedWith({{"LANGUAGE", "fr"}, {"LC_ALL", "it"}, {"LC_MESSAGES", "nl"}, {"LANG", "de"}}),
            "fr");
  EXPECT_EQ(detectedWith({{"LC_ALL", "it"}, {"LC_MESSAGES", "nl"}, {"LANG", "de"}}), "it");
  EXPECT_EQ(detectedWith({{"LC_MESSAGES", "nl"}, {"LANG", "de"}}), "nl");
  EXPECT_EQ(detectedWith({{"LANG", "de"}}), "de");
}

TEST(DetectSystemLanguage, PassesOverAnEmptyVariable) {
  EXPECT_EQ(detectedWith({{"LANGUAGE", ""}, {"LC_ALL", ""}, {"LANG", "sv_SE"}}), "sv");
}

TEST(DetectSystemLanguage, LooksAtTheLanguageOfALocaleOnly) {
  for (const char* locale : {"pt_BR.UTF-8", "pt-BR", "pt.UTF-8", "pt@euro", "PT_br", "Pt"}) {
    EXPECT_EQ(detectedWith({{"LANG", locale}}), "pt") << locale;
  }
}

TEST(DetectSystemLanguage, SkipsALocaleWithoutALanguage) {
  for (const char* list : {":da", "_DE:da", ".UTF-8:da", "@euro:da", "-:da", "::da:"}) {
    EXPECT_EQ(detectedWith({{"LANGUAGE", list}}), "da") << list;
  }
}

TEST(DetectSystemLanguage, TakesNoPartOfACodeForTheWhole) {
  for (const char* locale : {"d", "deu", "de DE", " de", "ger"}) {
    EXPECT_EQ(detectedWith({{"LANG", locale}}), "en") << locale;
  }
}

TEST(CurrentLanguage, IsEnglishBeforeAnyIsSet) {
  EXPECT_EQ(tr("menu.newGame"), "New game");
  EXPECT_EQ(i18n::currentLanguage(), "en");
  EXPECT_FALSE(i18n::currentIsRtl());
}

TEST(SetLanguage, ChangesEveryText) {
  const InLanguage german("de");
  EXPECT_EQ(i18n::currentLanguage(), "de");
  EXPECT_EQ(tr("menu.newGame"), "Neues Spiel");
  i18n::setLanguage("en");
  EXPECT_EQ(i18n::currentLanguage(), "en");
  EXPECT_EQ(tr("menu.newGame"), "New game");
}

TEST(SetLanguage, TakesEnglishForAnUnknownCode) {
  for (const char* code : {"zz", "DE", "de_DE", " "}) {
    const InLanguage german("de");
    i18n::setLanguage(code);
    EXPECT_EQ(i18n::currentLanguage(), "en") << code;
    EXPECT_EQ(tr("menu.newGame"), "New game") << code;
  }
}

TEST(SetLanguage, FollowsTheEnvironmentForAnEmptyCode) {
  const auto followed = [] {
    i18n::setLanguage("");
    return i18n::currentLanguage() + ": " + tr("common.cancel");
  };
  EXPECT_EQ(withVariables({{"LANG", "de_DE.UTF-8"}}, followed), "de: Abbrechen");
  EXPECT_EQ(withVariables({{"LANG", "C"}}, followed), "en: Cancel");
}

TEST(Tr, GivesAnUnknownKeyBack) {
  EXPECT_EQ(tr("menu.none"), "menu.none");
  EXPECT_EQ(tr(""), "");
}

TEST(Tr, AnswersWhileTheProcessEnds) {
  const auto endAfterATextWasAskedFor = [] {
    std::atexit([] { std::fprintf(stderr, "%s", tr("menu.newGame").c_str()); });
    i18n::setLanguage("de");
    std::exit(0);
  };
  EXPECT_EXIT(endAfterATextWasAskedFor(), testing::ExitedWithCode(0), "Neues Spiel");
}

TEST(TrWithParameters, PutsTheNumberWhereTheLanguageWantsIt) {
  EXPECT_EQ(tr("menu.continue", {{"n", "7"}}), "Continue with level 7");
  const InLanguage turkish("tr");
  EXPECT_EQ(tr("menu.continue", {{"n", "7"}}), "Seviye 7 ile devam et");
}

TEST(TrWithParameters, FillsEachName) {
  EXPECT_EQ(tr("solved.aidsLine", {{"shuffles", "2"}, {"hints", "13"}}), "Hints: 13 · Shuffles: 2");
}

TEST(TrWithParameters, FillsANameWhereverItStands) {
  EXPECT_EQ(tr("{{n}} of {{n}}{{n}}", {{"n", "7"}}), "7 of 77");
  EXPECT_EQ(tr("{{n}} of {{n}}", {{"n", ""}}), " of ");
}

TEST(TrWithParameters, LeavesNamesWithoutAValue) {
  EXPECT_EQ(tr("menu.continue", {}), "Continue with level {{n}}");
  EXPECT_EQ(tr("menu.continue", {{"N", "7"}, {"", "7"}}), "Continue with level {{n}}");
  EXPECT_EQ(tr("solved.aidsLine", {{"hints", "3"}}), "Hints: 3 · Shuffles: {{shuffles}}");
}

TEST(TrWithParameters, DoesNotSearchAValueForItsOwnName) {
  EXPECT_EQ(tr("menu.continue", {{"n", "{{n}}{{n}}"}}), "Continue with level {{n}}{{n}}");
}

TEST(TrWithParameters, FillsOneNameAfterTheOther) {
  EXPECT_EQ(tr("solved.aidsLine", {{"hints", "{{shuffles}}"}, {"shuffles", "2"}}), "Hints: 2 · Shuffles: 2");
  EXPECT_EQ(tr("solved.aidsLine", {{"shuffles", "{{hints}}"}, {"hints", "3"}}), "Hints: 3 · Shuffles: 3");
}

TEST(Translations, OfferToContinueInEveryLanguage) {
  for (const Row& row : kRows) {
    const InLanguage current(row.code);
    EXPECT_EQ(tr("menu.continue"), row.continueWith);
  }
}

TEST(Labelled, JoinsLabelAndValueByTheColonOfTheLanguage) {
  for (const i18n::Language& language : i18n::languages()) {
    const InLanguage current(language.code);
    const bool full = language.code == "ja" || language.code == "zh";
    const std::string colon = full ? "：" : language.code == "fr" ? "\u00A0: " : ": ";
    EXPECT_EQ(i18n::labelled("A", "1"), "A" + colon + "1") << language.code;
  }
}

TEST(FormatLongDate, FollowsTheCustomOfEveryLanguage) {
  for (const Row& row : kRows) {
    const InLanguage current(row.code);
    EXPECT_EQ(formatLongDate(2024, 3, 5, 2), row.fifthOfMarch) << row.code;
  }
}

TEST(FormatLongDate, DeclinesWhatTheLanguageDeclines) {
  struct Dates {
    const char* code;
    const char* firstOfJanuary;
    const char* fifteenthOfAugust;
  };
  const std::array kDates = std::to_array<Dates>({
      {"de", "Sonntag, 1. Januar", "Donnerstag, 15. August"},
      {"en", "Sunday, 1 January", "Thursday, 15 August"},
      {"fr", "dimanche 1 janvier", "jeudi 15 août"},
      {"es", "domingo, 1 de enero", "jueves, 15 de agosto"},
      {"it", "domenica 1 gennaio", "giovedì 15 agosto"},
      {"pt", "domingo, 1 de janeiro", "quinta-feira, 15 de agosto"},
      {"nl", "zondag 1 januari", "donderdag 15 augustus"},
      {"pl", "niedziela, 1 stycznia", "czwartek, 15 sierpnia"},
      {"cs", "neděle 1. ledna", "čtvrtek 15. srpna"},
      {"hu", "január 1., vasárnap", "augusztus 15., csütörtök"},
      {"ro", "duminică, 1 ianuarie", "joi, 15 august"},
      {"sv", "söndag 1 januari", "torsdag 15 augusti"},
      {"da", "søndag 1. januar", "torsdag 15. august"},
      {"fi", "sunnuntai 1. tammikuuta", "torstai 15. elokuuta"},
      {"el", "Κυριακή, 1 Ιανουαρίου", "Πέμπτη, 15 Αυγούστου"},
      {"tr", "1 Ocak Pazar", "15 Ağustos Perşembe"},
      {"ru", "воскресенье, 1 января", "четверг, 15 августа"},
      {"ja", "1月1日 日曜日", "8月15日 木曜日"},
      {"zh", "1月1日 星期日", "8月15日 星期四"},
      {"ko", "1월 1일 일요일", "8월 15일 목요일"},
      {"ar", "الأحد، 1 يناير", "الخميس، 15 أغسطس"},
      {"he", "יום ראשון, 1 בינואר", "יום חמישי, 15 באוגוסט"},
  });
  ASSERT_EQ(kDates.size(), kRows.size());
  for (const Dates& dates : kDates) {
    const InLanguage current(dates.code);
    EXPECT_EQ(formatLongDate(2023, 1, 1, 0), dates.firstOfJanuary);
    EXPECT_EQ(formatLongDate(2024, 8, 15, 4), dates.fifteenthOfAugust);
  }
}

TEST(FormatLongDate, RunsFromSundayInJanuaryToSaturdayInDecember) {
  EXPECT_EQ(formatLongDate(2023, 1, 1, 0), "Sunday, 1 January");
  EXPECT_EQ(formatLongDate(2022, 12, 31, 6), "Saturday, 31 December");
}

TEST(FormatLongDate, BringsMonthAndWeekdayIntoRange) {
  EXPECT_EQ(formatLongDate(2024, 0, 5, -1), "Sunday, 5 January");
  EXPECT_EQ(formatLongDate(2024, 13, 5, 7), "Saturday, 5 December");
  EXPECT_EQ(formatLongDate(2024, INT_MIN, 5, INT_MIN), "Sunday, 5 January");
  EXPECT_EQ(formatLongDate(2024, INT_MAX, 5, INT_MAX), "Saturday, 5 December");
}

TEST(FormatLongDate, PrintsTheDayAsItIs) {
  EXPECT_EQ(formatLongDate(2024, 3, 0, 2), "Tuesday, 0 March");
  EXPECT_EQ(formatLongDate(2024, 3, -44, 2), "Tuesday, -44 March");
}

}  // namespace
