// Whatever settings.json holds, the settings are within their ranges, and saving keeps them.

#include <cassert>
#include <cstddef>
#include <cstdint>

#include "fuzz/data_file.h"
#include "storage/storage.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::putFile("settings.json", data, size);
  const store::Settings settings = store::loadSettings();
  assert(0 <= settings.musicVolume && settings.musicVolume <= 1);
  assert(0 <= settings.sfxVolume && settings.sfxVolume <= 1);
  assert(settings.windowW >= store::kMinWindowW && settings.windowH >= store::kMinWindowH);

  store::saveSettings(settings);
  assert(store::loadSettings() == settings);
  return 0;
}
