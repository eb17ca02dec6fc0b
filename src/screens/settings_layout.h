// settings_layout.h: the layout of the settings screen for any window size and language. Units: logical
// pixels.
#pragma once

#include <string>
#include <vector>

#include "ui/context.h"
#include "ui/draw.h"
#include "ui/palette.h"

namespace screens {

// The tile width of the fan above the rows, and the style of the help text.
inline constexpr double kSettingsFanTile = 34;
inline constexpr ui::TextStyle kSettingsHelp = {.size = 13, .color = ui::palette::kMutedText};

// A volume's name, slider and percentage.
struct VolumeRow {
  ui::Rect label;
  ui::Rect slider;
  ui::Rect number;
  ui::Rect grip;  // a press here grabs the slider
};

struct LanguageChip {
  std::string code;  // empty for the system's language
  std::string name;  // in the language itself
  ui::Rect rect;
};

// One centred column. Positions are relative to the top of the scrolling content.
struct SettingsLayout {
  ui::Rect fan;
  ui::Rect language;  // the row's name
  std::vector<LanguageChip> chips;
  VolumeRow music;
  VolumeRow effects;
  ui::Rect sound;
  ui::Rect fullscreen;
  ui::Rect help;
  std::string helpText;  // broken into lines
  ui::Rect reset;
  ui::Rect quit;
  double height;
};

// `cr` is used to measure the texts.
SettingsLayout settingsLayout(cairo_t* cr, double w);
// The top of the content at a scroll of 0. It is centred in the view if it fits.
double settingsTop(const SettingsLayout& layout, const ui::Rect& view);

}  // namespace screens
