// assets.h: the files built into the executable, by their name below assets/
// ("fonts/QuenlockMahjongGlyphs.ttf"). Knows nothing of what is in them. Called from the main thread only.
#pragma once

#include <string>

namespace assets {

inline constexpr const char* kGlyphFont = "QuenlockMahjongGlyphs.ttf";

// Whether a file of exactly this name, case included, is built in.
bool has(const std::string& name);

// The file's bytes, valid until the process ends. A plain file of that name below assets/ in the directory
// VESKARA_ASSET_DIR replaces the built-in one, an empty file too; looked for at the first call for the name
// only. An unknown name gives an empty string, and a line on standard error at each call.
const std::string& blob(const std::string& name);

// Writes the glyph font to veskara/fonts in the user's cache directory, where fontconfig can load it, and
// returns that directory. A file of the right size is left alone. A failure costs a line on standard
// error.
std::string materializeFonts();

}  // namespace assets
