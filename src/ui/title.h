// title.h: two animated titles: a glowing golden word with a wave running through its letters, and a word on
// small tiles that drop in one after another and then bob, sway and shimmer. Knows no screen and no language.
// Units: logical pixels, seconds, colours 0xRRGGBB.
//
// Every letter is a picture of its own. With a renderer it is painted once and copied from then on; without
// one the letters are drawn with cairo. Texts are UTF-8. Nothing is drawn for an empty text or a size that is
// not positive.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "ui/context.h"

namespace ui {

// The glowing word about cx, its letters' boxes beginning at `top`. The halo reaches about an eighth of
// `size` beyond the boxes, and the crest of the wave lifts a letter by 2. The letters go from left to right,
// each on its own: no text for marks that combine, joined scripts or those from right to left.
void drawGlowTitle(const Ctx& ctx, double cx, double top, std::string_view text, double size);

// The word on tiles of `tileW` about cx, resting at `top`. The first tile begins to drop 0.15 after
// `startTime`, each of the others 0.11 after the one before; each takes 0.46 and comes from nine tenths of
// its height above. Returns the tiles' height, also while there is nothing to see. The letters go as above.
double drawTileTitle(const Ctx& ctx, double cx, double top, std::string_view text, double tileW,
                     double startTime);
double tileTitleWidth(std::string_view text, double tileW);

// The text's code points, pointing into it. Judged by their first bytes alone: a broken text gives broken
// pieces, and what its end cuts off is as short as it is.
std::vector<std::string_view> chars(std::string_view text);

// `color` moved towards the glow's highlight by `t`, which is held at 0 to 1.
std::uint32_t mixColor(std::uint32_t color, double t);

}  // namespace ui
