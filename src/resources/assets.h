// assets.h: the files built into the executable, by their path in assets/
// ("fonts/QuenlockMahjongGlyphs.ttf"). Knows nothing of their contents. Main thread only.
#pragma once

#include <string>

namespace assets {

inline constexpr const char* kGlyphFont = "QuenlockMahjongGlyphs.ttf";

// Whether a file of exactly this name, including case, is built in.
bool has(const std::string& name);

// The file's bytes, valid until the process ends. A plain file of that name in the assets/ folder of
// VESKARA_ASSET_DIR replaces the built-in one, even if it is empty. It is looked for only on the first call
// for a name. An unknown name gives an empty string, and each such call prints a line on standard error.
const std::string& blob(const std::string& name);

// Writes the glyph font to veskara/fonts in the user's cache directory, where fontconfig can load it, and
// returns that directory. An existing file of the right size is left alone. If writing fails, a line on
// standard error says so.
std::string materializeFonts();

}  // namespace assets
