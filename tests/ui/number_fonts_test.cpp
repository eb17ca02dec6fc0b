// The numbers of flowers and seasons in every font of the machine. This is a separate program because it
// changes the meaning of "sans".

#include <cairo.h>
#include <fontconfig/fontconfig.h>
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <cmath>
#include <memory>
#include <set>
#include <string>

#include "support/glyph_font.h"
#include "support/picture.h"
#include "ui/draw.h"
#include "ui/handles.h"
#include "ui/tile.h"

namespace {

// All font families that have digits.
std::set<std::string> families() {
  const std::unique_ptr<FcPattern, ui::ReleaseWith<FcPatternDestroy>> digits(
      FcNameParse(reinterpret_cast<const FcChar8*>(":charset=31-34:scalable=true")));
  const std::unique_ptr<FcObjectSet, ui::ReleaseWith<FcObjectSetDestroy>> wanted(
      FcObjectSetBuild(FC_FAMILY, nullptr));
  const std::unique_ptr<FcFontSet, ui::ReleaseWith<FcFontSetDestroy>> fonts(
      FcFontList(nullptr, digits.get(), wanted.get()));
  std::set<std::string> names;
  for (int i = 0; i < fonts->nfont; ++i) {
    FcChar8* family = nullptr;
    if (FcPatternGetString(fonts->fonts[i], FC_FAMILY, 0, &family) == FcResultMatch) {
      names.insert(reinterpret_cast<const char*>(family));
    }
  }
  return names;
}

// Makes every text use this family. Fontconfig's last rule wins.
void useEverywhere(const std::string& family) {
  const std::string rule =
      "<fontconfig><match target=\"pattern\"><edit name=\"family\" mode=\"assign_replace\" "
      "binding=\"strong\"><string>" +
      family + "</string></edit></match></fontconfig>";
  ASSERT_TRUE(FcConfigParseAndLoadFromMemory(FcConfigGetCurrent(),
                                             reinterpret_cast<const FcChar8*>(rule.c_str()), FcTrue));
  pango_cairo_font_map_set_default(nullptr);
  support::startNewTextLayout();
}

// How much ink lies outside the face, in pixels.
double inkBeside(const std::string& name, double w) {
  constexpr int kRoom = 20;
  const ui::Rect tile{kRoom, kRoom, w, std::round(w * ui::kTileAspect)};
  const ui::Rect face = ui::tileFaceRect(tile);
  const int side = static_cast<int>(tile.h) + 2 * kRoom;
  const auto picture = support::makePicture(side, side, [&](cairo_t* cr) {
    ui::drawTileFace(cr, face, name);
    cairo_set_operator(cr, CAIRO_OPERATOR_DEST_OUT);
    ui::fillRoundedRect(cr, face, ui::tileRadius(w), 0, 1);
  });
  double ink = 0;
  for (int y = 0; y < side; ++y) {
    for (int x = 0; x < side; ++x) ink += (support::pixelAt(picture.get(), x, y) >> 24) / 255.0;
  }
  return ink;
}

TEST(NumbersOfFlowersAndSeasons, StayOnTheFaceInAnyFont) {
  for (const std::string& family : families()) {
    useEverywhere(family);
    for (const double w : {16, 24, 40, 56, 96}) {
      for (const char* face : {"flower1", "flower2", "season3", "season4"}) {
        EXPECT_LE(inkBeside(face, w), 0.5) << family << ' ' << w << ' ' << face;
      }
    }
  }
}

}  // namespace
