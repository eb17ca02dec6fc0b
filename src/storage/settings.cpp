#include "storage/storage.h"

#include <algorithm>
#include <cmath>

#include "storage/documents.h"

namespace store {
namespace {

constexpr const char* kSettingsFile = "settings.json";

void read(const js::Value& doc, const char* key, std::string& field) {
  if (doc[key].kind == js::Value::String) field = doc[key].s;
}

void read(const js::Value& doc, const char* key, bool& field) {
  if (doc[key].kind == js::Value::Bool) field = doc[key].b;
}

void read(const js::Value& doc, const char* key, int& field) { field = doc[key].asInt(field); }

void readVolume(const js::Value& doc, const char* key, double& field) {
  if (doc[key].kind == js::Value::Number && !std::isnan(doc[key].n)) field = std::clamp(doc[key].n, 0.0, 1.0);
}

}  // namespace

Settings loadSettings() {
  Settings settings;
  const js::Value doc = readDocument(kSettingsFile);
  read(doc, "language", settings.language);
  read(doc, "soundOn", settings.soundOn);
  readVolume(doc, "musicVolume", settings.musicVolume);
  readVolume(doc, "sfxVolume", settings.sfxVolume);
  read(doc, "fullscreen", settings.fullscreen);
  read(doc, "maximized", settings.maximized);
  read(doc, "windowX", settings.windowX);
  read(doc, "windowY", settings.windowY);
  read(doc, "windowW", settings.windowW);
  read(doc, "windowH", settings.windowH);
  settings.windowW = std::max(settings.windowW, kMinWindowW);
  settings.windowH = std::max(settings.windowH, kMinWindowH);
  return settings;
}

void saveSettings(const Settings& settings) {
  FileChange(kSettingsFile)
      .writeFile(objectOf({{"language", valueOf(settings.language)},
                           {"soundOn", valueOf(settings.soundOn)},
                           {"musicVolume", valueOf(settings.musicVolume)},
                           {"sfxVolume", valueOf(settings.sfxVolume)},
                           {"fullscreen", valueOf(settings.fullscreen)},
                           {"maximized", valueOf(settings.maximized)},
                           {"windowX", valueOf(settings.windowX)},
                           {"windowY", valueOf(settings.windowY)},
                           {"windowW", valueOf(settings.windowW)},
                           {"windowH", valueOf(settings.windowH)}}));
}

}  // namespace store
