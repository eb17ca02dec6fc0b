#include "ui/fonts.h"

#include <fontconfig/fontconfig.h>

#include <cstdio>
#include <string>

#include "resources/assets.h"

namespace ui {

bool registerBundledFonts() {
  FcConfig* config = FcConfigGetCurrent();
  if (config == nullptr) return false;
  const std::string dir = assets::materializeFonts();
  if (dir.empty()) return false;
  const std::string file = dir + "/QuenlockMahjongGlyphs.ttf";
  if (FcConfigAppFontAddFile(config, reinterpret_cast<const FcChar8*>(file.c_str())) == FcFalse) {
    std::fprintf(stderr, "[fonts] could not register %s\n", file.c_str());
    return false;
  }
  return true;
}

}  // namespace ui
