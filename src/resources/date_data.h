// date_data.h: the names of weekdays and months and the long date format of each language. Only for i18n.cpp;
// all other code uses i18n.h.
#pragma once

#include <array>

#include "resources/i18n_data.h"

namespace date_data {

struct Names {
  const char* code;
  const char* pattern;                  // {W} stands for the weekday, {M} for the month, {D} for the day
  std::array<const char*, 7> weekdays;  // from Sunday
  std::array<const char*, 12> months;   // from January, in the grammatical form that the pattern needs
};

// In the order of the catalogues.
extern const Names kNames[i18n_data::kCatalogCount];

}  // namespace date_data
