#include "screens/settings_layout.h"

#include <algorithm>
#include <string_view>

#include "resources/i18n.h"
#include "screens/list_screen.h"

namespace screens {
namespace {

constexpr double kMaxColumnW = 620;
constexpr double kTop = 4;
constexpr double kBottom = 12;

// In tile widths. The outer tiles are tilted, so the fan is wider and higher than upright tiles would be.
constexpr double kFanW = 4.2;
constexpr double kFanH = 1.68;

constexpr double kLabelH = 22;
constexpr double kChipH = 32;
constexpr double kChipGap = 8;
constexpr double kChipText = 14;
constexpr double kChipPadding = 14;  // left and right of the text
constexpr double kGroupGap = 12;

// Distances from one row to the next.
constexpr double kRowStep = 42;
constexpr double kFullscreenStep = 50;
constexpr double kButtonStep = 56;

constexpr double kVolumeLabelW = 200;
constexpr double kNumberW = 36;
constexpr double kSwitchInset = 4;  // between a switch and the end of its row
constexpr double kSliderH = 28;
constexpr double kSliderGap = 22;  // left and right; the knob and the grip extend into it
constexpr double kSliderReach = 12;

constexpr double kHelpGap = 20;
constexpr double kButtonW = 280;
constexpr double kButtonH = 44;

double textWidth(cairo_t* cr, const std::string& text, const ui::TextStyle& style) {
  double w = 0;
  double h = 0;
  ui::measureText(cr, text, style, w, h);
  return w;
}

double chipWidth(cairo_t* cr, const std::string& name) {
  return textWidth(cr, name, {.size = kChipText}) + 2 * kChipPadding;
}

// The help text, wrapped to this width. Lines break only after the dots between keys, so that each key stays
// next to its meaning, even in scripts that can break after any letter.
std::string brokenHelp(cairo_t* cr, double width) {
  constexpr std::string_view kDot = " ·";
  // Not a paragraph break: in a right-to-left language, a paragraph that begins with a Latin key name would
  // run left to right.
  constexpr std::string_view kNewLine = "\u2028";
  std::string rest = i18n::tr("settings.keyboard");
  std::string lines;
  std::string line;
  while (!rest.empty()) {
    const std::size_t dot = rest.find(kDot);
    const std::string key = rest.substr(0, dot == std::string::npos ? dot : dot + kDot.size());
    rest.erase(0, key.size() + 1);
    const std::string longer = line.empty() ? key : line + " " + key;
    const bool fits = line.empty() || textWidth(cr, longer, kSettingsHelp) <= width;
    if (!fits) lines.append(line).append(kNewLine);
    line = fits ? longer : key;
  }
  return lines + line;
}

// The chips of the system's language and of all others, not yet placed.
std::vector<LanguageChip> languageChips(cairo_t* cr) {
  std::vector<LanguageChip> chips = {{"", i18n::tr("settings.languageSystem"), {}}};
  for (const i18n::Language& language : i18n::languages())
    chips.push_back({language.code, language.nativeName, {}});
  for (LanguageChip& chip : chips) chip.rect = {0, 0, chipWidth(cr, chip.name), kChipH};
  return chips;
}

// Places the chips in rows of this width. Returns the bottom of the last row.
double flow(std::vector<LanguageChip>& chips, double left, double top, double width) {
  double x = left;
  double y = top;
  for (LanguageChip& chip : chips) {
    if (x > left && x + chip.rect.w > left + width) {
      x = left;
      y += kChipH + kChipGap;
    }
    chip.rect.x = x;
    chip.rect.y = y;
    x += chip.rect.w + kChipGap;
  }
  return y + kChipH;
}

VolumeRow volumeRow(const ui::Rect& row) {
  const double labelW = std::min(kVolumeLabelW, row.w / 3);
  const double numberX = row.x + row.w - kSwitchInset - kNumberW;
  const double sliderX = row.x + labelW + kSliderGap;
  const double sliderW = numberX - kSliderGap - sliderX;
  return {{row.x, row.y, labelW, row.h},
          {sliderX, row.y + (row.h - kSliderH) / 2, sliderW, kSliderH},
          {numberX, row.y, kNumberW, row.h},
          {sliderX - kSliderReach, row.y, sliderW + 2 * kSliderReach, row.h}};
}

}  // namespace

SettingsLayout settingsLayout(cairo_t* cr, double w) {
  const double columnW = std::min(w - 2 * kColumnMargin, kMaxColumnW);
  const double x = (w - columnW) / 2;
  double y = kTop;
  // The next rectangle in the column; the following one begins `step` below its top.
  const auto place = [&](double h, double step) {
    const ui::Rect rect = {x, y, columnW, h};
    y += step;
    return rect;
  };
  const auto button = [&] {
    const double buttonW = std::min(kButtonW, columnW);
    return ui::Rect{(w - buttonW) / 2, place(kButtonH, kButtonStep).y, buttonW, kButtonH};
  };

  SettingsLayout layout = {};
  const double fanW = kFanW * kSettingsFanTile;
  const double fanH = kFanH * kSettingsFanTile;
  layout.fan = {(w - fanW) / 2, place(fanH, fanH + kGroupGap).y, fanW, fanH};
  layout.language = place(kLabelH, kLabelH + kChipGap);
  layout.chips = languageChips(cr);
  y = flow(layout.chips, x, y, columnW) + kGroupGap;
  layout.music = volumeRow(place(kRowStep, kRowStep));
  layout.effects = volumeRow(place(kRowStep, kRowStep));
  layout.sound = place(kRowStep, kRowStep);
  layout.fullscreen = place(kRowStep, kFullscreenStep);
  layout.helpText = brokenHelp(cr, columnW);
  const double helpH = ui::wrappedTextHeight(cr, columnW, layout.helpText, kSettingsHelp);
  layout.help = place(helpH, helpH + kHelpGap);
  layout.reset = button();
  layout.quit = button();
  layout.height = layout.quit.y + kButtonH + kBottom;
  return layout;
}

double settingsTop(const SettingsLayout& layout, const ui::Rect& view) {
  return view.y + std::max((view.h - layout.height) / 2, 0.0);
}

}  // namespace screens
