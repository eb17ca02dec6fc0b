#include <array>
#include <cmath>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "screens/list_screen.h"
#include "screens/screens.h"
#include "screens/settings_layout.h"
#include "ui/draw.h"
#include "ui/palette.h"
#include "ui/pointer_block.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr double kLeastMove = 0.001;

constexpr ui::TextStyle kRowLabel = {.size = 15, .color = ui::palette::kLightText};
constexpr ui::TextStyle kNumber = {.size = 15, .color = ui::palette::kMutedText, .align = ui::Align::Right};

struct Volume {
  const char* label;
  double store::Settings::* value;
  void (*apply)(double);
  VolumeRow SettingsLayout::* row;
};
constexpr std::array<Volume, 2> kVolumes = {{
    {"settings.musicVolume", &store::Settings::musicVolume, audio::setMusicVolume, &SettingsLayout::music},
    {"settings.sfxVolume", &store::Settings::sfxVolume, audio::setSfxVolume, &SettingsLayout::effects},
}};

// Whether `code` is the chosen language; empty means the system's. If the stored code is unknown, the game is
// in English, and English counts as chosen.
bool isChosen(const std::string& code, const store::Settings& settings) {
  if (code.empty() || settings.language.empty()) return code == settings.language;
  return code == i18n::currentLanguage();
}

ui::Rect below(double top, ui::Rect rect) {
  rect.y += top;
  return rect;
}

class Settings : public ui::Screen {
 public:
  // Saves a volume that is still being dragged.
  ~Settings() override {
    if (volumeDirty) persist();
  }

  void update(ui::Ctx& ctx) override;

 private:
  void beginFrame(const ui::Ctx& ctx);
  void leave();
  void body(ui::Ctx& ctx);
  void drawBody(ui::Ctx& ctx, double top, store::Settings& settings);
  void languageRow(ui::Ctx& ctx, double top, store::Settings& settings);
  void volumeRow(ui::Ctx& ctx, double top, std::size_t index, store::Settings& settings);
  void toggles(ui::Ctx& ctx, double top, store::Settings& settings);
  void buttons(ui::Ctx& ctx, double top);
  void askReset(ui::Ctx& ctx);
  void persist();

  bool confirmOpen = false;  // asking before a reset
  double scroll = 0;
  bool volumeDirty = false;         // changed and not yet saved
  std::optional<std::size_t> held;  // index of the volume whose slider is being dragged
  double pointerX = 0;              // of this frame; only the dragged slider sees it
  SettingsLayout layout = {};       // of this frame
};

void Settings::update(ui::Ctx& ctx) {
  beginFrame(ctx);
  const bool asking = confirmOpen;
  bool left = false;
  {
    // During a drag nothing else reacts to the pointer.
    const ui::PointerBlock dragging(ctx, held.has_value());
    left = listFrame(ctx, nullptr, i18n::tr("settings.headline"), asking, [&] { body(ctx); });
  }
  if (asking) askReset(ctx);
  if (left) return leave();
  if (ctx.in.down) return;
  held.reset();
  if (volumeDirty) persist();
}

// A slider follows its drag up to the place of the release, which may be far from the previous frame's
// pointer.
void Settings::beginFrame(const ui::Ctx& ctx) {
  pointerX = ctx.in.mx;
  if (ctx.in.pressed || !(ctx.in.down || ctx.in.clicked)) held.reset();
}

void Settings::leave() {
  persist();
  ui::Game::instance().pop();
}

void Settings::persist() {
  volumeDirty = false;
  ui::Game::persistSettings();
}

void Settings::body(ui::Ctx& ctx) {
  const ui::Rect view = listView(ctx.w, ctx.h);
  layout = settingsLayout(ctx.cr, ctx.w);
  scrolledList(ctx, view, layout.height, scroll,
               [&] { drawBody(ctx, settingsTop(layout, view) - scroll, ui::Game::settings()); });
  ui::footer(ctx, ctx.h - ui::kFooterGap);
}

void Settings::drawBody(ui::Ctx& ctx, double top, store::Settings& settings) {
  drawFan(ctx, top + layout.fan.y, kSettingsFanTile);
  languageRow(ctx, top, settings);
  for (std::size_t i = 0; i < kVolumes.size(); ++i) volumeRow(ctx, top, i, settings);
  toggles(ctx, top, settings);
  ui::drawWrappedText(ctx.cr, layout.help.x, top + layout.help.y, layout.help.w, layout.helpText,
                      kSettingsHelp);
  buttons(ctx, top);
}

void Settings::languageRow(ui::Ctx& ctx, double top, store::Settings& settings) {
  ui::drawTextIn(ctx.cr, below(top, layout.language), i18n::tr("settings.language"), kRowLabel);
  for (const auto& [code, name, rect] : layout.chips) {
    if (!ui::chip(ctx, below(top, rect), name, isChosen(code, settings))) continue;
    settings.language = code;
    i18n::setLanguage(code);
    persist();
  }
}

void Settings::volumeRow(ui::Ctx& ctx, double top, std::size_t index, store::Settings& settings) {
  const Volume& volume = kVolumes[index];
  const VolumeRow& row = layout.*volume.row;
  double& value = settings.*volume.value;
  ui::drawTextIn(ctx.cr, below(top, row.label), i18n::tr(volume.label), kRowLabel);
  if (ctx.in.pressed && ctx.hover(below(top, row.grip))) held = index;
  const bool mine = held == index;
  const ui::PointerBlock block(ctx, !mine);
  const double moved =
      ui::slider(ctx, below(top, row.slider), value, mine ? std::optional(pointerX) : std::nullopt);
  if (std::abs(moved - value) > kLeastMove) {
    value = moved;
    volume.apply(moved);
    volumeDirty = true;
  }
  ui::drawTextIn(ctx.cr, below(top, row.number), std::to_string(std::lround(100 * value)), kNumber);
}

void Settings::toggles(ui::Ctx& ctx, double top, store::Settings& settings) {
  if (ui::toggleRow(ctx, below(top, layout.sound), i18n::tr("settings.sound"), settings.soundOn)) {
    settings.soundOn = !settings.soundOn;
    audio::setEnabled(settings.soundOn);
    if (settings.soundOn) audio::startMusic();
    persist();
  }
  if (ui::toggleRow(ctx, below(top, layout.fullscreen), i18n::tr("settings.fullscreen"),
                    settings.fullscreen)) {
    settings.fullscreen = !settings.fullscreen;
    persist();
  }
}

void Settings::buttons(ui::Ctx& ctx, double top) {
  if (ui::dangerButton(ctx, below(top, layout.reset), i18n::tr("settings.resetProgress"))) confirmOpen = true;
  if (ui::plainButton(ctx, below(top, layout.quit), i18n::tr("settings.quit"), false)) ctx.quit = true;
}

void Settings::askReset(ui::Ctx& ctx) {
  const int answer = ui::confirmDialog(
      ctx, i18n::tr("settings.resetProgressConfirmTitle"), i18n::tr("settings.resetProgressConfirmBody"),
      i18n::tr("settings.resetProgressConfirmYes"), i18n::tr("settings.resetProgressConfirmNo"));
  if (answer == 0) return;
  confirmOpen = false;
  if (answer < 0) return;
  store::clearGame();
  store::resetProgress();
  store::clearAllSolves();
}

}  // namespace

std::unique_ptr<ui::Screen> makeSettings() { return std::make_unique<Settings>(); }

}  // namespace screens
