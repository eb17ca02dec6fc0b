// fonts.h: makes the built-in glyph font available to text drawing.
#pragma once

namespace ui {

// The font family of the characters on the tiles.
inline constexpr const char* kGlyphFamily = "Quenlock Mahjong Glyphs";

// Adds the font to fontconfig's current configuration, for this process only. Call it once, before any text
// is laid out: pango remembers fontconfig's answers. Returns false if the font is not available; the tiles
// then show the system's fonts. If fontconfig refuses the file, a line on standard error says so.
bool registerBundledFonts();

}  // namespace ui
