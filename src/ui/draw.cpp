#include "ui/draw.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "resources/i18n.h"
#include "ui/handles.h"

namespace ui {
namespace {

using std::numbers::pi;

double channel(std::uint32_t color, int shift) { return ((color >> shift) & 0xFFU) / 255.0; }

void circlePath(cairo_t* cr, double cx, double cy, double r) {
  cairo_new_sub_path(cr);
  cairo_arc(cr, cx, cy, r, 0, 2 * pi);
}

// Everything that selects a font in pango. The last four are the context's scale and rotation.
struct FontKey {
  std::string family;
  double size = 0;
  bool bold = false;
  bool italic = false;
  double xx = 1;
  double yx = 0;
  double xy = 0;
  double yy = 1;

  bool operator==(const FontKey&) const = default;
};

FontKey keyOf(cairo_t* cr, const TextStyle& style, double size) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  return {style.family, size, style.bold, style.italic, matrix.xx, matrix.yx, matrix.xy, matrix.yy};
}

FontDescription makeFont(const FontKey& key) {
  FontDescription font(pango_font_description_new());
  pango_font_description_set_family(font.get(), key.family.c_str());
  pango_font_description_set_absolute_size(font.get(), key.size * PANGO_SCALE);
  pango_font_description_set_weight(font.get(), key.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_style(font.get(), key.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
  return font;
}

// One layout and one font, shared by all texts of one line. For a run of labels in one style, only the text
// changes.
struct TextCache {
  TextLayout layout;
  cairo_t* madeFor = nullptr;  // only compared: it may already be destroyed
  FontDescription font;
  FontKey key;
  std::vector<FontKey> known;  // fonts requested since pango last dropped them
};

TextCache& textCache() {
  // Never destroyed: the process frees the layout and its font when it ends.
  static auto& cache = *new TextCache;
  return cache;
}

// Pango and cairo cache about twenty kilobytes for each size of a font. A window that is resized again and
// again would come to use a hundred megabytes, so they drop all fonts now and then. That is rare enough not
// to be noticed: all screens together need fewer fonts at one window size.
void forgetManyFonts(TextCache& cache) {
  constexpr std::size_t kMostFonts = 256;
  if (cache.known.size() < kMostFonts) return;
  cache.known.clear();
  cache.layout.reset();
  pango_cairo_font_map_set_default(nullptr);
}

void noteFont(TextCache& cache, const FontKey& key) {
  if (std::find(cache.known.begin(), cache.known.end(), key) == cache.known.end()) cache.known.push_back(key);
}

// The shapes of Han characters depend on the language. Fonts recognise mainland Chinese only by its country.
void useLanguage(PangoLayout* layout, const TextStyle& style) {
  const std::string code = style.language != nullptr ? style.language : i18n::currentLanguage();
  PangoLanguage* language = pango_language_from_string(code == "zh" ? "zh-cn" : code.c_str());
  PangoContext* context = pango_layout_get_context(layout);
  if (pango_context_get_language(context) == language) return;
  pango_context_set_language(context, language);
  pango_layout_context_changed(layout);
}

void useContext(TextCache& cache, cairo_t* cr, const TextStyle& style) {
  forgetManyFonts(cache);
  if (!cache.layout || cache.madeFor != cr) {
    cache.layout.reset(pango_cairo_create_layout(cr));
    cache.madeFor = cr;
    cache.font.reset();
  }
  // A new context may have the address of an old one, and the same one may have been scaled since.
  pango_cairo_update_layout(cr, cache.layout.get());
  useLanguage(cache.layout.get(), style);
}

void useFont(TextCache& cache, const FontKey& key) {
  if (cache.font && cache.key == key) return;
  cache.font = makeFont(key);
  pango_layout_set_font_description(cache.layout.get(), cache.font.get());
  noteFont(cache, key);
  cache.key = key;
}

// The size of a text that has only `part` of the room it needs. It is rounded down to steps too small to see,
// so that not every label needs its own font. The least size is not rounded.
double shrunkSize(const TextStyle& style, double part) {
  constexpr double kStep = 0.125;
  constexpr double kRounding = 1e-6;  // so that 0.8 * 20 gives 16
  const double least = std::min(style.minScale, 1.0) * style.size;
  return std::max({std::floor(part * style.size / kStep + kRounding) * kStep, least, kStep});
}

PangoLayout* layoutFor(cairo_t* cr, std::string_view text, const TextStyle& style, double size) {
  TextCache& cache = textCache();
  useContext(cache, cr, style);
  useFont(cache, keyOf(cr, style, size));
  PangoLayout* layout = cache.layout.get();
  // A label that was just measured is already laid out. Setting its text would lay it out again.
  if (text != pango_layout_get_text(layout))
    pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
  return layout;
}

struct TextSize {
  int w = 0;
  int h = 0;
};

TextSize sizeOf(PangoLayout* layout) {
  TextSize size;
  pango_layout_get_pixel_size(layout, &size.w, &size.h);
  return size;
}

PangoLayout* fittedLayout(cairo_t* cr, std::string_view text, const TextStyle& style) {
  PangoLayout* layout = layoutFor(cr, text, style, style.size);
  if (style.maxWidth <= 0) return layout;
  const int width = sizeOf(layout).w;
  if (style.maxWidth >= width || width < 1) return layout;
  return layoutFor(cr, text, style, shrunkSize(style, style.maxWidth / width));
}

// A font size of 0 would put the context into an error state for good.
bool isDrawable(std::string_view text, const TextStyle& style) { return !text.empty() && style.size > 0; }

bool isTurned(cairo_t* cr) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  return matrix.xy != 0 || matrix.yx != 0;
}

// Moves a point to the nearest corner of a device pixel.
void snapToPixel(cairo_t* cr, double& x, double& y) {
  cairo_surface_t* target = cairo_get_group_target(cr);
  double scaleX = 1;
  double scaleY = 1;
  cairo_surface_get_device_scale(target, &scaleX, &scaleY);
  cairo_user_to_device(cr, &x, &y);
  x = std::floor(x * scaleX + 0.5) / scaleX;
  y = std::floor(y * scaleY + 0.5) / scaleY;
  cairo_device_to_user(cr, &x, &y);
}

// Starts the text on a whole device pixel. Cairo before 1.18 always does. Later versions place letters at
// quarter pixels, which blurs them a little and differs from machine to machine. Rotated text is filled as
// outlines instead.
void showLayout(cairo_t* cr, double x, double y, PangoLayout* layout, const TextStyle& style) {
  setColor(cr, style.color, style.alpha);
  if (isTurned(cr)) {
    cairo_move_to(cr, x, y);
    pango_cairo_layout_path(cr, layout);
    cairo_fill(cr);
    return;
  }
  const double baseline = pango_units_to_double(pango_layout_get_baseline(layout));
  y += baseline;
  snapToPixel(cr, x, y);
  cairo_move_to(cr, x, y - baseline);
  pango_cairo_show_layout(cr, layout);
}

// In pango, left means where the text begins: on the right for right-to-left text.
PangoAlignment pangoAlignment(Align align, PangoDirection direction) {
  if (align == Align::Center) return PANGO_ALIGN_CENTER;
  const bool mirrored = direction == PANGO_DIRECTION_RTL;
  return (align == Align::Right) != mirrored ? PANGO_ALIGN_RIGHT : PANGO_ALIGN_LEFT;
}

// Pango would break a line between any two Korean syllables. Korean has spaces between words, so it should
// break there.
void keepWordsWhole(PangoLayout* layout, std::string_view text) {
  const TextAttributes attributes(pango_attr_list_new());
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find(' ', begin), text.size());
    PangoAttribute* whole = pango_attr_word_new();
    whole->start_index = static_cast<guint>(begin);
    whole->end_index = static_cast<guint>(end);
    pango_attr_list_insert(attributes.get(), whole);
    begin = end + 1;
  }
  pango_layout_set_attributes(layout, attributes.get());
}

// Uses its own layout, so that the cached one never wraps.
TextLayout wrappedLayout(cairo_t* cr, double width, std::string_view text, const TextStyle& style) {
  const FontKey key = keyOf(cr, style, style.size);
  TextCache& cache = textCache();
  forgetManyFonts(cache);
  noteFont(cache, key);
  TextLayout layout(pango_cairo_create_layout(cr));
  useLanguage(layout.get(), style);
  pango_layout_set_font_description(layout.get(), makeFont(key).get());
  // Pango would take a negative width as no limit.
  pango_layout_set_width(layout.get(), static_cast<int>(std::max(width, 1.0) * PANGO_SCALE));
  pango_layout_set_wrap(layout.get(), PANGO_WRAP_WORD_CHAR);
  pango_layout_set_text(layout.get(), text.data(), static_cast<int>(text.size()));
  if (i18n::currentLanguage() == "ko") keepWordsWhole(layout.get(), text);
  const PangoDirection direction = pango_layout_get_direction(layout.get(), 0);
  pango_layout_set_alignment(layout.get(), pangoAlignment(style.align, direction));
  return layout;
}

// Adds stops that rise smoothly over the first `share` of the gradient and fall over the last.
void addSoftEnds(cairo_pattern_t* pattern, double share, std::uint32_t color, double alpha) {
  constexpr int kSteps = 8;
  for (int i = 0; i <= kSteps; ++i) {
    const double t = 1.0 * i / kSteps;
    const double risen = alpha * t * t * (3 - 2 * t);
    addStop(pattern, share * t, color, risen);
    addStop(pattern, 1 - share * t, color, risen);
  }
}

}  // namespace

Rect insetRect(const Rect& rect, double inset) {
  return {rect.x + inset, rect.y + inset, rect.w - 2 * inset, rect.h - 2 * inset};
}

void setColor(cairo_t* cr, std::uint32_t color, double alpha) {
  cairo_set_source_rgba(cr, channel(color, 16), channel(color, 8), channel(color, 0), alpha);
}

void addStop(cairo_pattern_t* pattern, double offset, std::uint32_t color, double alpha) {
  cairo_pattern_add_color_stop_rgba(pattern, offset, channel(color, 16), channel(color, 8), channel(color, 0),
                                    alpha);
}

void fillRect(cairo_t* cr, const Rect& rect, std::uint32_t color, double alpha) {
  setColor(cr, color, alpha);
  cairo_rectangle(cr, rect.x, rect.y, rect.w, rect.h);
  cairo_fill(cr);
}

void roundedRectPath(cairo_t* cr, const Rect& rect, double radius) {
  const double r = std::max(0.0, std::min(radius, std::min(rect.w, rect.h) * 0.5));
  const double left = rect.x + r;
  const double right = rect.x + rect.w - r;
  const double top = rect.y + r;
  const double bottom = rect.y + rect.h - r;
  cairo_new_sub_path(cr);
  cairo_arc(cr, right, top, r, -pi / 2, 0);
  cairo_arc(cr, right, bottom, r, 0, pi / 2);
  cairo_arc(cr, left, bottom, r, pi / 2, pi);
  cairo_arc(cr, left, top, r, pi, 3 * pi / 2);
  cairo_close_path(cr);
}

void fillRoundedRect(cairo_t* cr, const Rect& rect, double radius, std::uint32_t color, double alpha) {
  roundedRectPath(cr, rect, radius);
  setColor(cr, color, alpha);
  cairo_fill(cr);
}

void strokeRoundedRect(cairo_t* cr, const Rect& rect, double radius, double lineWidth, std::uint32_t color,
                       double alpha) {
  roundedRectPath(cr, rect, radius);
  setColor(cr, color, alpha);
  cairo_set_line_width(cr, lineWidth);
  cairo_stroke(cr);
}

void fillCircle(cairo_t* cr, double cx, double cy, double r, std::uint32_t color, double alpha) {
  setColor(cr, color, alpha);
  circlePath(cr, cx, cy, r);
  cairo_fill(cr);
}

void strokeCircle(cairo_t* cr, double cx, double cy, double r, double lineWidth, std::uint32_t color,
                  double alpha) {
  setColor(cr, color, alpha);
  circlePath(cr, cx, cy, r);
  cairo_set_line_width(cr, lineWidth);
  cairo_stroke(cr);
}

void drawLine(cairo_t* cr, double x0, double y0, double x1, double y1, double lineWidth, std::uint32_t color,
              double alpha) {
  setColor(cr, color, alpha);
  cairo_set_line_width(cr, lineWidth);
  cairo_move_to(cr, x0, y0);
  cairo_line_to(cr, x1, y1);
  cairo_stroke(cr);
}

// A blur without an image filter: faint strokes along the edge, of shrinking width, one on top of the other.
// The shape is filled with each of them, so the shadow fades outwards.
void softShadowFromPath(cairo_t* cr, double dx, double dy, double blur, std::uint32_t color, double alpha) {
  const CairoPath path(cairo_copy_path(cr));
  // Appending a failed copy would break the context. The shadow can be missing.
  if (path->status != CAIRO_STATUS_SUCCESS) return;
  const int rings = std::max(2, static_cast<int>(blur));
  cairo_save(cr);
  cairo_translate(cr, dx, dy);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  setColor(cr, color, alpha / rings);
  for (int i = rings; i >= 1; --i) {
    cairo_new_path(cr);
    cairo_append_path(cr, path.get());
    cairo_set_line_width(cr, i * 2 * blur / rings);
    cairo_stroke_preserve(cr);
    cairo_fill(cr);
  }
  cairo_restore(cr);
  cairo_new_path(cr);
  cairo_append_path(cr, path.get());
}

void drawSoftPatch(cairo_t* cr, const Rect& rect, double reachX, double reachY, std::uint32_t color,
                   double alpha) {
  const Rect all{rect.x - reachX, rect.y - reachY, rect.w + 2 * reachX, rect.h + 2 * reachY};
  const CairoPattern across(cairo_pattern_create_linear(all.x, 0, all.x + all.w, 0));
  const CairoPattern down(cairo_pattern_create_linear(0, all.y, 0, all.y + all.h));
  addSoftEnds(across.get(), reachX / all.w, color, alpha);
  addSoftEnds(down.get(), reachY / all.h, color, 1);
  cairo_save(cr);
  cairo_rectangle(cr, all.x, all.y, all.w, all.h);
  cairo_clip(cr);
  cairo_set_source(cr, across.get());
  cairo_mask(cr, down.get());
  cairo_restore(cr);
}

void measureText(cairo_t* cr, std::string_view text, const TextStyle& style, double& width, double& height) {
  TextSize size;
  if (style.size > 0) size = sizeOf(fittedLayout(cr, text, style));
  width = size.w;
  height = size.h;
}

double inkBottom(cairo_t* cr, std::string_view text, const TextStyle& style) {
  if (!isDrawable(text, style)) return 0;
  PangoRectangle ink;
  pango_layout_get_extents(fittedLayout(cr, text, style), &ink, nullptr);
  return pango_units_to_double(ink.y + ink.height);
}

void drawText(cairo_t* cr, double x, double y, std::string_view text, const TextStyle& style) {
  if (!isDrawable(text, style)) return;
  PangoLayout* layout = fittedLayout(cr, text, style);
  const int width = sizeOf(layout).w;
  if (style.align == Align::Center) x -= width * 0.5;
  if (style.align == Align::Right) x -= width;
  showLayout(cr, x, y, layout, style);
}

void drawTextIn(cairo_t* cr, const Rect& rect, std::string_view text, const TextStyle& style) {
  if (!isDrawable(text, style)) return;
  TextStyle fitted = style;
  // A maxWidth of 0 or less would turn shrinking off.
  fitted.maxWidth = std::max(rect.w, 1.0);
  PangoLayout* layout = fittedLayout(cr, text, fitted);
  const TextSize size = sizeOf(layout);
  const double part = style.align == Align::Left ? 0 : style.align == Align::Center ? 0.5 : 1;
  showLayout(cr, rect.x + part * (rect.w - size.w), rect.y + (rect.h - size.h) * 0.5, layout, style);
}

void drawTextCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style) {
  if (!isDrawable(text, style)) return;
  PangoLayout* layout = fittedLayout(cr, text, style);
  const TextSize size = sizeOf(layout);
  showLayout(cr, cx - 0.5 * size.w, cy - 0.5 * size.h, layout, style);
}

void textPathCentered(cairo_t* cr, double cx, double cy, std::string_view text, const TextStyle& style) {
  if (!isDrawable(text, style)) return;
  PangoLayout* layout = fittedLayout(cr, text, style);
  const TextSize size = sizeOf(layout);
  cairo_move_to(cr, cx - 0.5 * size.w, cy - 0.5 * size.h);
  pango_cairo_layout_path(cr, layout);
}

void drawWrappedText(cairo_t* cr, double x, double y, double width, std::string_view text,
                     const TextStyle& style) {
  if (isDrawable(text, style)) showLayout(cr, x, y, wrappedLayout(cr, width, text, style).get(), style);
}

double wrappedTextHeight(cairo_t* cr, double width, std::string_view text, const TextStyle& style) {
  return isDrawable(text, style) ? sizeOf(wrappedLayout(cr, width, text, style).get()).h : 0;
}

}  // namespace ui
