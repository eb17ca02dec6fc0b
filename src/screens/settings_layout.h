// settings_layout.h: where everything lies on the settings screen, for any size of the window and in any
// language. Units: logical pixels.
#pragma once

#include <string>
#include <vector>

#include "ui/context.h"
#include "ui/draw.h"
#include "ui/palette.h"

namespace screens {

// Width of a tile of the fan above the rows, and the look of the help text.
inline constexpr double kSettingsFanTile = 34;
inline constexpr ui::TextStyle kSettingsHelp = {.size = 13, .color = ui::palette::kMutedText};

// A volume: its name, the slider, and its percentage.
struct VolumeRow {
  ui::Rect label;
  ui::Rect slider;
  ui::Rect number;
  ui::Rect grip;  // a press here is meant for the slider
};

struct LanguageChip {
  std::string code;  // empty for the system's language
  std::string name;  // the language's own
  ui::Rect rect;
};

// One centred column, each place given from the top of what scrolls.
struct SettingsLayout {
  ui::Rect fan;
  ui::Rect language;  // the name of the row
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

// The texts are measured as this context draws them.
SettingsLayout settingsLayout(cairo_t* cr, double w);
// Where it begins before anything is scrolled: in the middle of the view if all of it fits.
double settingsTop(const SettingsLayout& layout, const ui::Rect& view);

}  // namespace screens
