// title.h: two animated titles: a glowing golden word with a wave running through its letters, and a word on
// small tiles that drop in one after another and then bob, sway and shimmer. Knows no screen and no language.
// Units: logical pixels, seconds, colours 0xRRGGBB.
//
// Each letter is its own picture. With a renderer it is painted once and then copied; without one it is drawn
// with cairo. Texts are UTF-8. Nothing is drawn if the text is empty or the size is not positive.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "ui/context.h"

namespace ui {

// Draws the glowing word about cx; the letters' boxes begin at `top`. The halo reaches about an eighth of
// `size` beyond the boxes, and the crest of the wave lifts a letter by 2. Letters are placed one by one from
// left to right, which does not suit combining marks, joined scripts or right-to-left text.
void drawGlowTitle(const Ctx& ctx, double cx, double top, std::string_view text, double size);

// Draws the word on tiles of width `tileW` about cx, resting at `top`. The first tile begins to drop 0.15
// after `startTime`, each other one 0.11 after the one before. A drop takes 0.46 and begins nine tenths of a
// tile height above. Returns the tiles' height, even while nothing is visible. Letters are placed as above.
double drawTileTitle(const Ctx& ctx, double cx, double top, std::string_view text, double tileW,
                     double startTime);
double tileTitleWidth(std::string_view text, double tileW);

// Splits the text into code points, which point into it. Looks only at first bytes: broken UTF-8 gives broken
// pieces, and a character cut off at the end stays short.
std::vector<std::string_view> chars(std::string_view text);

// `color` blended towards the glow's highlight by `t`, clamped to 0…1.
std::uint32_t mixColor(std::uint32_t color, double t);

}  // namespace ui
