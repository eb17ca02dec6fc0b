#include "ui/fonts.h"

#include <fontconfig/fontconfig.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>

#include "resources/assets.h"

namespace ui {

bool registerBundledFonts() {
  FcConfig* config = FcConfigGetCurrent();
  if (config == nullptr) return false;
  const std::string dir = assets::materializeFonts();
  if (dir.empty()) return false;
  const std::string file = dir + "/" + assets::kGlyphFont;
  // If the font could not be written over a pipe of that name, fontconfig would wait for a writer.
  std::error_code error;
  const bool isFile = std::filesystem::is_regular_file(file, error);
  if (!isFile || FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str())) == FcFalse) {
    std::fprintf(stderr, "[fonts] could not register %s\n", file.c_str());
    return false;
  }
  return true;
}

}  // namespace ui
