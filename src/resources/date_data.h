// date_data.h: the names of weekdays and months, and how each language puts a long date together. Everybody
// but i18n.cpp asks i18n.h instead.
#pragma once

#include <array>

#include "resources/i18n_data.h"

namespace date_data {

struct Names {
  const char* code;
  const char* pattern;                  // {W} stands for the weekday, {M} for the month, {D} for the day
  std::array<const char*, 7> weekdays;  // from Sunday
  std::array<const char*, 12> months;   // from January, in the form that the pattern needs
};

// In the order of the catalogues.
extern const Names kNames[i18n_data::kCatalogCount];

}  // namespace date_data
