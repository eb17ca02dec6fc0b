#include "screens/about.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

#include "app/app.h"
#include "resources/i18n.h"
#include "screens/card.h"
#include "screens/list_screen.h"
#include "screens/screens.h"
#include "ui/draw.h"
#include "ui/focus.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/tile.h"
#include "ui/widgets.h"

namespace screens {
namespace {

// --- the column ---

constexpr double kMaxColumnW = 660;
constexpr double kScrollbarRoom = 15;  // from the column to the far edge of the scrollbar

// --- about ---

enum class Wording { Fixed, Key, Version };

constexpr const char* kMail = "mailto:";
constexpr const char* kWeb = "https://";

struct LineLook {
  double gap;  // above the line, in a large window
  Wording wording;
  const char* text;
  double size;
  std::uint32_t color;
  bool bold = false;
  const char* scheme = nullptr;  // for links: turns the text into an address
};

constexpr double kGroupGap = 24;
constexpr std::array<LineLook, kAboutLines> kLines = {{
    {8, Wording::Fixed, "Quenlock's Mahjong", 26, ui::palette::kGold, true},
    {2, Wording::Version, "", 15, ui::palette::kMutedText},
    {kGroupGap, Wording::Key, "about.dev", 13, ui::palette::kMutedText},
    {2, Wording::Fixed, "The Quenlock team", 21, ui::palette::kLightText, true},
    {0, Wording::Fixed, "Quenlock Software", 16, ui::palette::kLightText},
    {2, Wording::Fixed, "GPL 3 or later · © 2026", 14, ui::palette::kMutedText},
    {10, Wording::Fixed, "hello@quenlock.example", 16, ui::palette::kCream, false, kMail},
    {2, Wording::Fixed, "quenlock.example", 16, ui::palette::kCream, false, kWeb},
    {kGroupGap, Wording::Key, "about.music", 13, ui::palette::kMutedText},
    {2, Wording::Fixed, "The Quenlock team", 15, ui::palette::kLightText},
    {2, Wording::Fixed, "quenlock.example/music", 14, ui::palette::kCream, false, kWeb},
}};

constexpr double kCompactBelowW = 620;
constexpr double kCompactBelowH = 580;
constexpr double kCompactGaps = 0.4;  // relative to the gaps in a large window
constexpr double kButtonW = 280;
constexpr double kButtonH = 44;
constexpr double kCompactButtonH = 40;

double lineHeight(double size) { return std::round(1.25 * size); }

std::string textOf(const LineLook& look) {
  switch (look.wording) {
    case Wording::Key:
      return i18n::tr(look.text);
    case Wording::Version:
      return ui::versionText();
    default:
      return look.text;
  }
}

double widthOf(const ui::Ctx& ctx) { return columnLayout(ctx.w, ctx.h).w; }

// Draws a line of text centred at x, with its top at y. Returns the line's height.
double line(ui::Ctx& ctx, double x, double y, const std::string& text, double size, unsigned colour,
            bool bold) {
  const double w = widthOf(ctx);
  const double h = lineHeight(size);
  ui::drawTextIn(ctx.cr, {x - w / 2, y, w, h}, text,
                 {.size = size, .bold = bold, .color = colour, .align = ui::Align::Center, .maxWidth = w});
  return h;
}

// Like line(), for a clickable text. Returns true when it was clicked.
bool linkLine(ui::Ctx& ctx, double x, double y, const std::string& text, double size) {
  constexpr double kUnderline = 1;
  const double h = line(ctx, x, y, text, size, ui::palette::kCream, false);
  double textW = 0;
  double textH = 0;
  ui::measureText(ctx.cr, text, {.size = size, .maxWidth = widthOf(ctx)}, textW, textH);
  const ui::Rect rect = {x - textW / 2, y, textW, h};
  if (ctx.hover(rect)) {
    ui::fillRect(ctx.cr, {rect.x, y + h - kUnderline, textW, kUnderline}, ui::palette::kCream, 1);
    ctx.hand = true;
  }
  // The focus ring stays clear of the lines above and below.
  constexpr double kAside = 5;
  constexpr double kAbove = 3;
  constexpr double kBelow = 2;
  const ui::Rect ringed = {rect.x - kAside, y + kAbove, textW + 2 * kAside, h - kAbove - kBelow};
  return ui::isWorkedByKey(ctx, ringed) || ctx.takeClick(rect);
}

// Asks the desktop to open the address and does not wait for the result. The shell gets the address
// unescaped, so pass only constants.
void openUri(const std::string& uri) {
  const std::string command = "xdg-open '" + uri + "' >/dev/null 2>&1 &";
  if (std::system(command.c_str()) != 0) std::fprintf(stderr, "[about] could not open %s\n", uri.c_str());
}

class About : public ui::Screen {
 public:
  void update(ui::Ctx& ctx) override {
    const bool left = listFrame(ctx, nullptr, i18n::tr("about.headline"), false, [&] { body(ctx); });
    if (left) ui::Game::instance().pop();
  }

 private:
  void body(ui::Ctx& ctx) {
    const AboutLayout layout = aboutLayout(ctx.w, ctx.h);
    scrolledList(ctx, layout.column.view, layout.contentHeight, scroll, [&] {
      drawFan(ctx, layout.fan.y - scroll, layout.fanTileW);
      lines(ctx, layout, scroll);
      licensesButton(ctx, layout, scroll);
    });
    ui::footer(ctx, ctx.h - ui::kFooterGap);
  }

  static void lines(ui::Ctx& ctx, const AboutLayout& layout, double up) {
    for (std::size_t i = 0; i < kAboutLines; ++i) {
      const LineLook& look = kLines[i];
      const double y = layout.lines[i].y - up;
      const std::string text = textOf(look);
      if (look.scheme == nullptr) {
        line(ctx, ctx.w / 2, y, text, look.size, look.color, look.bold);
      } else if (linkLine(ctx, ctx.w / 2, y, text, look.size)) {
        openUri(look.scheme + text);
      }
    }
  }

  static void licensesButton(ui::Ctx& ctx, const AboutLayout& layout, double up) {
    ui::Rect rect = layout.button;
    rect.y -= up;
    if (ui::plainButton(ctx, rect, i18n::tr("licenses.ossButton"), false))
      ui::Game::instance().push({.kind = ui::ScreenKind::Licenses});
  }

  double scroll = 0;
};

// --- licences ---

struct Component {
  const char* name;
  const char* licence;
  const char* web;
};

constexpr std::array<Component, 12> kComponents = {{
    {"SDL2", "zlib licence", "libsdl.org"},
    {"SDL2_mixer", "zlib licence", "github.com/libsdl-org/SDL_mixer"},
    {"cairo", "LGPL 2.1 / MPL 1.1", "cairographics.org"},
    {"Pango", "LGPL 2.1", "pango.gnome.org"},
    {"GLib / GObject", "LGPL 2.1", "gitlab.gnome.org/GNOME/glib"},
    {"fontconfig", "MIT-style", "fontconfig.org"},
    {"FreeType", "FTL / GPL 2", "freetype.org"},
    {"libpng / zlib", "libpng licence / zlib", "libpng.org / zlib.net"},
    {"libogg / libvorbis", "BSD-3", "xiph.org"},
    {"Noto Serif CJK — 17-glyph subset", "SIL Open Font License 1.1", "github.com/notofonts/noto-cjk"},
    {"Calm music by The Quenlock team", "CC BY 4.0", "quenlock.example/music"},
    {"Sound effects by The Quenlock team", "CC0 1.0", "quenlock.example/music"},
}};

constexpr double kCardStep = 68;
constexpr double kCardGap = 8;
constexpr double kCardInset = 16;
constexpr double kNameTop = 9;
constexpr double kTermsTop = 33;

void paintCard(cairo_t* cr, const ui::Rect& card, const Component& component) {
  const double w = card.w - 2 * kCardInset;
  const auto text = [&](double top, std::string_view words, ui::TextStyle style) {
    style.maxWidth = w;
    ui::drawTextIn(cr, {card.x + kCardInset, card.y + top, w, lineHeight(style.size)}, words, style);
  };
  drawCardPlate(cr, card);
  text(kNameTop, component.name, {.size = 16, .bold = true, .color = ui::palette::kLightText});
  text(kTermsTop, std::string(component.licence) + " · " + component.web,
       {.size = 13, .color = ui::palette::kMutedText});
}

class Licenses : public ui::Screen {
 public:
  void update(ui::Ctx& ctx) override {
    const bool left = listFrame(ctx, nullptr, i18n::tr("licenses.title"), false, [&] { body(ctx); });
    if (left) ui::Game::instance().pop();
  }

 private:
  void body(ui::Ctx& ctx) {
    constexpr double kContentH = kComponents.size() * kCardStep - kCardGap;
    const ColumnLayout column = columnLayout(ctx.w, ctx.h);
    scrolledList(ctx, column.view, kContentH, scroll, [&] { cards(ctx, column); });
    ui::footer(ctx, ctx.h - ui::kFooterGap);
  }

  void cards(const ui::Ctx& ctx, const ColumnLayout& column) const {
    ui::Rect card = {column.x, column.view.y - scroll, column.w, kCardStep - kCardGap};
    for (const Component& component : kComponents) {
      if (isInView(card, column.view)) drawCard(ctx, card, component);
      card.y += kCardStep;
    }
  }

  static void drawCard(const ui::Ctx& ctx, const ui::Rect& card, const Component& component) {
    const std::string key = std::string("licence|") + component.name + "|" + i18n::currentLanguage();
    ui::gpuPicture(ctx.cr, key, card,
                   [&](cairo_t* cr, double w, double h) { paintCard(cr, {0, 0, w, h}, component); });
  }

  double scroll = 0;
};

}  // namespace

ColumnLayout columnLayout(double w, double h) {
  const double columnW = std::min(w - 2 * kColumnMargin, kMaxColumnW);
  const double x = (w - columnW) / 2;
  ui::Rect view = listView(w, h);
  view.x = x - kScrollbarRoom;
  view.w = columnW + 2 * kScrollbarRoom;
  return {.view = view, .x = x, .w = columnW};
}

AboutLayout aboutLayout(double w, double h) {
  const bool compact = w < kCompactBelowW || h < kCompactBelowH;
  const double gaps = compact ? kCompactGaps : 1;
  AboutLayout layout;
  layout.column = columnLayout(w, h);
  layout.fanTileW = compact ? 38 : 46;
  const auto& [view, x, columnW] = layout.column;
  double y = 0;
  layout.fan = {x, y, columnW, std::round(ui::kTileFanH * layout.fanTileW)};
  y += layout.fan.h;
  for (std::size_t i = 0; i < kAboutLines; ++i) {
    y += std::round(gaps * kLines[i].gap);
    layout.lines[i] = {x, y, columnW, lineHeight(kLines[i].size)};
    y += layout.lines[i].h;
  }
  y += std::round(gaps * kGroupGap);
  const double buttonW = std::min(columnW, kButtonW);
  layout.button = {(w - buttonW) / 2, y, buttonW, compact ? kCompactButtonH : kButtonH};
  layout.contentHeight = y + layout.button.h;

  const double top = view.y + std::round(std::max(0.0, (view.h - layout.contentHeight) / 2));
  layout.fan.y += top;
  for (ui::Rect& rect : layout.lines) rect.y += top;
  layout.button.y += top;
  return layout;
}

std::unique_ptr<ui::Screen> makeAbout() { return std::make_unique<About>(); }

std::unique_ptr<ui::Screen> makeLicenses() { return std::make_unique<Licenses>(); }

}  // namespace screens
