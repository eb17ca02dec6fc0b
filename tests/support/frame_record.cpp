#include "support/frame_record.h"

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "ui/gpu.h"

namespace {

support::FrameRecord* recording = nullptr;
// Keys of the requested textures. A destroyed texture is requested again before it is drawn again.
std::map<SDL_Texture*, std::string> keys;

std::uint32_t colorOf(cairo_t* cr) {
  double r = 0;
  double g = 0;
  double b = 0;
  double a = 0;
  cairo_pattern_get_rgba(cairo_get_source(cr), &r, &g, &b, &a);
  const auto channel = [](double value) { return static_cast<std::uint32_t>(std::lround(255 * value)); };
  return channel(r) << 16 | channel(g) << 8 | channel(b);
}

// The layout's top left corner is the context's current point.
void recordText(cairo_t* cr, PangoLayout* layout) {
  if (recording == nullptr) return;
  ui::Rect box;
  cairo_get_current_point(cr, &box.x, &box.y);
  int w = 0;
  int h = 0;
  pango_layout_get_pixel_size(layout, &w, &h);
  box.w = w;
  box.h = h;
  cairo_user_to_device(cr, &box.x, &box.y);
  cairo_user_to_device_distance(cr, &box.w, &box.h);
  const PangoFontDescription* font = pango_layout_get_font_description(layout);
  recording->texts.push_back({.words = pango_layout_get_text(layout),
                              .box = box,
                              .size = 1.0 * pango_font_description_get_size(font) / PANGO_SCALE,
                              .bold = pango_font_description_get_weight(font) == PANGO_WEIGHT_BOLD,
                              .color = colorOf(cr)});
}

void recordPicture(const std::string& key, const ui::Rect& rect) {
  if (recording != nullptr) recording->pictures.push_back({key, rect});
}

}  // namespace

// The linker redirects calls of a wrapped function to `__wrap_` plus its mangled name. The original is
// `__real_` plus that name.
// clang-format off
#define GPU_TEXTURE(prefix) prefix##_ZN2ui10gpuTextureERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEEiiPFvP6_cairoPvESA_
#define GPU_STAND_IN(prefix) prefix##_ZN2ui19gpuTextureOrStandInERKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEESt17basic_string_viewIcS3_EiiPFvP6_cairoPvESC_
#define GPU_PICTURE(prefix) prefix##_ZN2ui10gpuPictureEP6_cairoRKNSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEERKNS_4RectERKSt8functionIFvS1_ddEE
#define GPU_BLIT(prefix) prefix##_ZN2ui7gpuBlitEP11SDL_Textureddddd
#define ACTION_ICON(prefix) prefix##_ZN2ui14drawActionIconEP6_cairoNS_10ActionIconEdddjd
// clang-format on

extern "C" {

decltype(pango_cairo_show_layout) __real_pango_cairo_show_layout;
void __wrap_pango_cairo_show_layout(cairo_t* cr, PangoLayout* layout) {
  recordText(cr, layout);
  __real_pango_cairo_show_layout(cr, layout);
}

// Text drawn as a path counts as text too.
decltype(pango_cairo_layout_path) __real_pango_cairo_layout_path;
void __wrap_pango_cairo_layout_path(cairo_t* cr, PangoLayout* layout) {
  recordText(cr, layout);
  __real_pango_cairo_layout_path(cr, layout);
}

decltype(ui::gpuTexture) GPU_TEXTURE(__real_);
SDL_Texture* GPU_TEXTURE(__wrap_)(const std::string& key, int w, int h, void (*paint)(cairo_t*, void*),
                                  void* user) {
  SDL_Texture* texture = GPU_TEXTURE(__real_)(key, w, h, paint, user);
  if (texture != nullptr) keys[texture] = key;
  return texture;
}

// A stand-in is recorded as the picture that it stands for.
decltype(ui::gpuTextureOrStandIn) GPU_STAND_IN(__real_);
SDL_Texture* GPU_STAND_IN(__wrap_)(const std::string& key, std::string_view family, int w, int h,
                                   void (*paint)(cairo_t*, void*), void* user) {
  SDL_Texture* texture = GPU_STAND_IN(__real_)(key, family, w, h, paint, user);
  if (texture != nullptr) keys[texture] = key;
  return texture;
}

decltype(ui::gpuBlit) GPU_BLIT(__real_);
void GPU_BLIT(__wrap_)(SDL_Texture* texture, double x, double y, double w, double h, double alpha) {
  if (const auto found = keys.find(texture); found != keys.end()) recordPicture(found->second, {x, y, w, h});
  GPU_BLIT(__real_)(texture, x, y, w, h, alpha);
}

decltype(ui::gpuPicture) GPU_PICTURE(__real_);
void GPU_PICTURE(__wrap_)(cairo_t* cr, const std::string& key, const ui::Rect& rect,
                          const ui::PaintPicture& paint) {
  recordPicture(key, rect);
  GPU_PICTURE(__real_)(cr, key, rect, paint);
}

decltype(ui::drawActionIcon) ACTION_ICON(__real_);
void ACTION_ICON(__wrap_)(cairo_t* cr, ui::ActionIcon icon, double cx, double cy, double size,
                          std::uint32_t color, double alpha) {
  if (recording != nullptr) {
    support::DrawnIcon drawn = {.icon = icon, .x = cx, .y = cy, .size = size};
    cairo_user_to_device(cr, &drawn.x, &drawn.y);
    recording->icons.push_back(drawn);
  }
  ACTION_ICON(__real_)(cr, icon, cx, cy, size, color, alpha);
}

}  // extern "C"

namespace support {

std::vector<std::string> FrameRecord::wordsIn(const ui::Rect& rect) const {
  std::vector<std::string> words;
  for (const DrawnText& text : texts) {
    if (rect.contains(text.box.x + text.box.w / 2, text.box.y + text.box.h / 2)) words.push_back(text.words);
  }
  return words;
}

ui::ActionIcon FrameRecord::iconIn(const ui::Rect& rect) const {
  std::vector<ui::ActionIcon> found;
  for (const DrawnIcon& icon : icons)
    if (rect.contains(icon.x, icon.y)) found.push_back(icon.icon);
  EXPECT_EQ(found.size(), 1U) << "icons at " << rect.x << ", " << rect.y;
  return found.empty() ? ui::ActionIcon() : found.front();
}

bool FrameRecord::says(std::string_view words) const {
  return std::any_of(texts.begin(), texts.end(), [&](const DrawnText& text) { return text.words == words; });
}

std::vector<std::string> FrameRecord::picturesOf(std::string_view kind) const {
  std::vector<std::string> names;
  for (const DrawnPicture& picture : pictures) {
    if (!picture.key.starts_with(kind)) continue;
    const std::string rest = picture.key.substr(kind.size());
    names.push_back(rest.substr(0, rest.find('|')));
  }
  return names;
}

FrameRecord recordOf(const std::function<void()>& act) {
  FrameRecord record;
  recording = &record;
  act();
  recording = nullptr;
  return record;
}

}  // namespace support
