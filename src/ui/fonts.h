// fonts.h: makes the built-in glyph font known to the text drawing.
#pragma once

namespace ui {

// The family under which text drawing finds the characters that stand on the tiles.
inline constexpr const char* kGlyphFamily = "Quenlock Mahjong Glyphs";

// Adds the font to fontconfig's current configuration, for this process only. Called once, before any text is
// laid out: pango asks fontconfig once and remembers the answer. False, with a line on standard error where
// fontconfig refuses the file, means that the tiles show whatever font the system has for their characters.
bool registerBundledFonts();

}  // namespace ui
