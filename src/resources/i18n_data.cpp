#include "resources/i18n_data.h"

namespace i18n_data {

constinit const Catalog kCatalogs[] = {
    {"de", "Deutsch", "German", false, kEntries_de, kEntryCount},
    {"en", "English", "English", false, kEntries_en, kEntryCount},
    {"fr", "Français", "French", false, kEntries_fr, kEntryCount, "\u00A0: "},
    {"es", "Español", "Spanish", false, kEntries_es, kEntryCount},
    {"it", "Italiano", "Italian", false, kEntries_it, kEntryCount},
    {"pt", "Português", "Portuguese", false, kEntries_pt, kEntryCount},
    {"nl", "Nederlands", "Dutch", false, kEntries_nl, kEntryCount},
    {"pl", "Polski", "Polish", false, kEntries_pl, kEntryCount},
    {"cs", "Čeština", "Czech", false, kEntries_cs, kEntryCount},
    {"hu", "Magyar", "Hungarian", false, kEntries_hu, kEntryCount},
    {"ro", "Română", "Romanian", false, kEntries_ro, kEntryCount},
    {"sv", "Svenska", "Swedish", false, kEntries_sv, kEntryCount},
    {"da", "Dansk", "Danish", false, kEntries_da, kEntryCount},
    {"fi", "Suomi", "Finnish", false, kEntries_fi, kEntryCount},
    {"el", "Ελληνικά", "Greek", false, kEntries_el, kEntryCount},
    {"tr", "Türkçe", "Turkish", false, kEntries_tr, kEntryCount},
    {"ru", "Русский", "Russian", false, kEntries_ru, kEntryCount},
    {"ja", "日本語", "Japanese", false, kEntries_ja, kEntryCount, "："},
    {"zh", "中文", "Chinese (Simplified)", false, kEntries_zh, kEntryCount, "："},
    {"ko", "한국어", "Korean", false, kEntries_ko, kEntryCount},
    {"ar", "العربية", "Arabic", true, kEntries_ar, kEntryCount},
    {"he", "עברית", "Hebrew", true, kEntries_he, kEntryCount},
};

}  // namespace i18n_data
