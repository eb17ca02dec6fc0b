// i18n_data.h: the built-in catalogues, one source file per language in catalogues/. Only for i18n.cpp; all
// other code uses i18n.h.
#pragma once

#include <cstddef>

namespace i18n_data {

// UTF-8. {{name}} in a text is a placeholder for the caller's value.
struct Entry {
  const char* key;
  const char* text;
};

struct Catalog {
  const char* code;
  const char* nativeName;
  const char* englishName;
  bool rtl;
  const Entry* entries;  // sorted by key; every catalogue has the same keys
  std::size_t count;
  const char* colon = ": ";  // between a label and its value
};

inline constexpr std::size_t kCatalogCount = 22;
inline constexpr std::size_t kEntryCount = 55;

extern const Entry kEntries_de[kEntryCount];
extern const Entry kEntries_en[kEntryCount];
extern const Entry kEntries_fr[kEntryCount];
extern const Entry kEntries_es[kEntryCount];
extern const Entry kEntries_it[kEntryCount];
extern const Entry kEntries_pt[kEntryCount];
extern const Entry kEntries_nl[kEntryCount];
extern const Entry kEntries_pl[kEntryCount];
extern const Entry kEntries_cs[kEntryCount];
extern const Entry kEntries_hu[kEntryCount];
extern const Entry kEntries_ro[kEntryCount];
extern const Entry kEntries_sv[kEntryCount];
extern const Entry kEntries_da[kEntryCount];
extern const Entry kEntries_fi[kEntryCount];
extern const Entry kEntries_el[kEntryCount];
extern const Entry kEntries_tr[kEntryCount];
extern const Entry kEntries_ru[kEntryCount];
extern const Entry kEntries_ja[kEntryCount];
extern const Entry kEntries_zh[kEntryCount];
extern const Entry kEntries_ko[kEntryCount];
extern const Entry kEntries_ar[kEntryCount];
extern const Entry kEntries_he[kEntryCount];

// In the order shown to the player.
extern const Catalog kCatalogs[kCatalogCount];

}  // namespace i18n_data
