#include "ui/widgets.h"

#include <SDL_keycode.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <utility>

#include "resources/audio.h"
#include "resources/i18n.h"
#include "ui/draw.h"
#include "ui/focus.h"
#include "ui/handles.h"
#include "ui/palette.h"
#include "version.h"

namespace ui {
namespace {

struct Paint {
  std::uint32_t color;
  double alpha;
};

// --- plates ---

// The background of a control.
struct PlateLook {
  double radius;
  Paint fill;
  Paint edge;
  double edgeWidth;
  Paint glow = {};           // drawn over it under the pointer
  double disabledAlpha = 1;  // opacity of the whole control while disabled
};

constexpr double kPill = 1e6;  // a radius that rounds any plate's ends

constexpr PlateLook greenPlate(double radius, double disabledAlpha) {
  return {radius, {palette::kPanel, 1}, {palette::kPanelEdge, 1}, 1, {palette::kGold, 0.1}, disabledAlpha};
}
constexpr PlateLook kHeaderPlate = greenPlate(8, 0.4);
constexpr PlateLook kActionPlate = greenPlate(10, 0.4);
constexpr PlateLook kPlainPlate = greenPlate(10, 0.45);
constexpr PlateLook kChipPlate = greenPlate(kPill, 1);
constexpr PlateLook kActiveChipPlate{kPill, {palette::kGold, 1}, {palette::kGold, 1}, 1};
constexpr PlateLook kDangerPlate{
    10, {palette::kDanger, 0.12}, {palette::kDanger, 1}, 1, {palette::kDanger, 0.1}};
constexpr PlateLook kConfirmPlate{
    10, {palette::kConfirm, 1}, {palette::kConfirmEdge, 1}, 1, {palette::kWhite, 0.07}};
constexpr PlateLook kPanelPlate{16, {palette::kPanel, 1}, {palette::kGold, 0.6}, 2};
constexpr PlateLook kDarkPanelPlate{16, {palette::kDarkPlaque, 1}, {palette::kGold, 0.6}, 2};

constexpr double kHeldAlpha = 0.78;  // of a plaque that is being pressed

// Also true if a size is NaN.
bool isEmpty(const Rect& rect) { return !(rect.w > 0) || !(rect.h > 0); }

double middleX(const Rect& rect) { return rect.x + rect.w / 2; }
double middleY(const Rect& rect) { return rect.y + rect.h / 2; }

void drawPlate(cairo_t* cr, const Rect& rect, const PlateLook& look, double alpha, bool glowing) {
  fillRoundedRect(cr, rect, look.radius, look.fill.color, look.fill.alpha * alpha);
  strokeRoundedRect(cr, rect, look.radius, look.edgeWidth, look.edge.color, look.edge.alpha * alpha);
  if (glowing) fillRoundedRect(cr, rect, look.radius, look.glow.color, look.glow.alpha * alpha);
}

// --- cached pictures ---

// A box of a surface's pixels.
struct PixelBox {
  int left;
  int top;
  int right;
  int bottom;
};

// The pixels that the rectangle touches. The context may be scaled and moved, but not rotated.
PixelBox pixelsOf(const cairo_matrix_t& matrix, const Rect& rect) {
  const auto down = [](double place) { return static_cast<int>(std::floor(place)); };
  const auto up = [](double place) { return static_cast<int>(std::ceil(place)); };
  return {down(matrix.xx * rect.x + matrix.x0), down(matrix.yy * rect.y + matrix.y0),
          up(matrix.xx * (rect.x + rect.w) + matrix.x0), up(matrix.yy * (rect.y + rect.h) + matrix.y0)};
}

// A picture that is costly to draw and rarely changes: painted once, then copied until it must look
// different. Cairo copies it, because a texture would lie below the veil.
class KeptPicture {
 public:
  // `look` names what `paint` draws within `bounds`.
  void draw(cairo_t* cr, const std::string& look, const Rect& bounds,
            const std::function<void(cairo_t*)>& paint);

 private:
  std::string key;  // everything the pixels depend on
  CairoSurface picture;
};

std::string keyOf(const std::string& look, const Rect& bounds, const cairo_matrix_t& matrix) {
  std::string key = look;
  for (const double number :
       {bounds.x, bounds.y, bounds.w, bounds.h, matrix.xx, matrix.yy, matrix.x0, matrix.y0})
    key += '|' + std::to_string(number);
  return key;
}

// Returns null if cairo fails.
CairoSurface painted(const cairo_matrix_t& matrix, const PixelBox& box,
                     const std::function<void(cairo_t*)>& paint) {
  CairoSurface picture(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, box.right - box.left, box.bottom - box.top));
  if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  const CairoContext cr(cairo_create(picture.get()));
  cairo_translate(cr.get(), -box.left, -box.top);
  cairo_transform(cr.get(), &matrix);
  paint(cr.get());
  return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(picture) : nullptr;
}

void KeptPicture::draw(cairo_t* cr, const std::string& look, const Rect& bounds,
                       const std::function<void(cairo_t*)>& paint) {
  cairo_matrix_t matrix;
  cairo_get_matrix(cr, &matrix);
  const PixelBox box = pixelsOf(matrix, bounds);
  std::string wanted = keyOf(look, bounds, matrix);
  if (wanted != key) {
    picture = painted(matrix, box, paint);
    key = std::move(wanted);
  }
  if (!picture) return paint(cr);
  cairo_save(cr);
  cairo_identity_matrix(cr);
  cairo_set_source_surface(cr, picture.get(), box.left, box.top);
  cairo_paint(cr);
  cairo_restore(cr);
}

// --- frames within plates ---

struct FrameLook {
  double inset;
  double radius;
  double bracketInset;
  double bracketArm;
};
constexpr FrameLook kPlaqueFrame{4, 8, 7, 11};
constexpr FrameLook kPageChipFrame{3, 8, 5, 9};
constexpr FrameLook kPanelFrame{5, 12, 9, 14};

// Marks each corner of the rectangle, shrunk by `inset`, with two strokes along its edges.
void cornerBrackets(cairo_t* cr, const Rect& rect, double inset, double arm, double alpha,
                    std::uint32_t color) {
  const Rect inner = insetRect(rect, inset);
  if (isEmpty(inner)) return;
  for (const double sx : {1.0, -1.0}) {
    for (const double sy : {1.0, -1.0}) {
      const double x = sx > 0 ? inner.x : inner.x + inner.w;
      const double y = sy > 0 ? inner.y : inner.y + inner.h;
      cairo_move_to(cr, x, y);
      cairo_line_to(cr, x + sx * arm, y);
      cairo_move_to(cr, x, y);
      cairo_line_to(cr, x, y + sy * arm);
    }
  }
  setColor(cr, color, alpha);
  cairo_set_line_width(cr, 2);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
  cairo_stroke(cr);
}

void drawFrame(cairo_t* cr, const Rect& rect, const FrameLook& look, Paint line, double bracketAlpha) {
  const Rect inner = insetRect(rect, look.inset);
  if (isEmpty(inner)) return;
  strokeRoundedRect(cr, inner, look.radius, 1, line.color, line.alpha);
  cornerBrackets(cr, rect, look.bracketInset, look.bracketArm, bracketAlpha, line.color);
}

// --- labels ---

struct LabelLook {
  double size;
  bool bold;
  std::uint32_t color;
};
constexpr LabelLook kHeaderLabel{17, true, palette::kLightText};
constexpr LabelLook kButtonLabel{14, true, palette::kLightText};
constexpr LabelLook kDangerLabel{14, true, palette::kDangerText};
constexpr LabelLook kConfirmLabel{15, true, palette::kConfirmText};
constexpr LabelLook kChipLabel{14, false, palette::kLightText};
constexpr LabelLook kActiveChipLabel{14, false, palette::kChipText};
constexpr LabelLook kRowLabel{15, false, palette::kLightText};
constexpr LabelLook kDialogTitle{19, true, palette::kGold};
constexpr LabelLook kDialogMessage{14, false, palette::kLightText};
constexpr LabelLook kFooterLine{12, false, palette::kMutedText};

TextStyle labelStyle(const LabelLook& look, double alpha = 1) {
  return {.size = look.size, .bold = look.bold, .color = look.color, .alpha = alpha};
}

// Lets the label shrink to `width`, down to its least scale. The width is at least 1, because 0 or less would
// turn shrinking off.
TextStyle fitted(TextStyle style, double width) {
  style.maxWidth = std::max(width, 1.0);
  return style;
}

void drawLabel(cairo_t* cr, const Rect& rect, std::string_view label, const TextStyle& style) {
  drawTextCentered(cr, middleX(rect), middleY(rect), label, style);
}

struct Size {
  double w = 0;
  double h = 0;
};

Size textSize(cairo_t* cr, std::string_view text, const TextStyle& style) {
  Size size;
  measureText(cr, text, style, size.w, size.h);
  return size;
}

// --- buttons ---

// `ringed` is the rectangle inside the keyboard's ring.
bool isPressed(Ctx& ctx, const Rect& rect, const Rect& ringed) {
  if (!isWorkedByKey(ctx, ringed) && !ctx.takeClick(rect)) return false;
  audio::play(audio::Sfx::Click);
  return true;
}

bool isPressed(Ctx& ctx, const Rect& rect) { return isPressed(ctx, rect, rect); }

bool labelledButton(Ctx& ctx, const Rect& rect, const PlateLook& plate, std::string_view label,
                    TextStyle style, bool disabled = false) {
  if (isEmpty(rect)) return false;
  style.alpha = disabled ? plate.disabledAlpha : 1;
  drawPlate(ctx.cr, rect, plate, style.alpha, !disabled && ctx.hover(rect));
  drawLabel(ctx.cr, rect, label, style);
  return !disabled && isPressed(ctx, rect);
}

// The colours of a plaque or a page chip, dark green or gold.
struct PlaqueLook {
  PlateLook plate;
  Paint frame;
  std::uint32_t label;
};
constexpr PlaqueLook kDarkPlaque{
    {12, {palette::kDarkPlaque, 1}, {palette::kGold, 0.55}, 1.5, {palette::kWhite, 0.06}, 0.45},
    {palette::kGold, 0.3},
    palette::kCream};
constexpr PlaqueLook kGoldPlaque{
    {12, {palette::kGold, 1}, {palette::kDarkGold, 1}, 1.5, {palette::kWhite, 0.06}, 0.45},
    {palette::kDarkBrown, 0.35},
    palette::kDarkBrown};

void drawPlaque(cairo_t* cr, const Rect& rect, const PlaqueLook& look, const FrameLook& frame, double alpha,
                bool glowing) {
  drawPlate(cr, rect, look.plate, alpha, glowing);
  drawFrame(cr, rect, frame, {look.frame.color, look.frame.alpha * alpha}, alpha);
}

// A golden ring instead of the thin frame and its brackets, in which the corner dot would get lost.
void drawRingedPlate(cairo_t* cr, const Rect& rect, const PlateLook& look, bool glowing) {
  constexpr double kRing = 3;
  drawPlate(cr, rect, look, 1, glowing);
  const double inset = (kRing - look.edgeWidth) / 2;  // aligns its outer side with the edge's
  const Rect ring = insetRect(rect, inset);
  if (!isEmpty(ring)) strokeRoundedRect(cr, ring, look.radius - inset, kRing, palette::kGold, 1);
}

// A slanted beam crosses the plaque, then pauses.
constexpr double kShinePeriod = 3;
constexpr double kShineSweep = 2.6;
constexpr double kShineTilt = 0.3141592653589793;
constexpr double kShineAlpha = 0.35;       // the label stays readable below it
constexpr double kShineFringeAlpha = 0.2;  // on either side

void drawShine(const Ctx& ctx, const Rect& rect, const PlaqueLook& look, std::uint32_t color, double alpha) {
  constexpr std::uint32_t kFringe = 0xFFF2CD;
  const double u = std::fmod(ctx.time, kShinePeriod) / kShineSweep;
  if (u < 0 || u > 1) return;
  const double top = -1.5 * rect.h;
  const double h = 3 * rect.h;
  cairo_save(ctx.cr);
  roundedRectPath(ctx.cr, rect, look.plate.radius);
  cairo_clip(ctx.cr);
  cairo_translate(ctx.cr, rect.x + (2.4 * u - 0.7) * rect.w, middleY(rect));
  cairo_rotate(ctx.cr, kShineTilt);
  fillRect(ctx.cr, {-27, top, 17, h}, kFringe, kShineFringeAlpha * alpha);
  fillRect(ctx.cr, {-10, top, 20, h}, color, kShineAlpha * alpha);
  fillRect(ctx.cr, {10, top, 17, h}, kFringe, kShineFringeAlpha * alpha);
  cairo_restore(ctx.cr);
}

void drawBackArrow(cairo_t* cr, const Rect& rect) {
  const double a = 0.32 * std::min(rect.w, rect.h);
  const double cx = middleX(rect) + 2;  // balances the arrow's head
  const double cy = middleY(rect);
  const double tip = cx - a;
  cairo_save(cr);
  setColor(cr, palette::kLightText, 1);
  cairo_set_line_width(cr, 2.2);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  cairo_move_to(cr, cx + a, cy);
  cairo_line_to(cr, tip, cy);
  cairo_move_to(cr, tip + 0.75 * a, cy - 0.7 * a);
  cairo_line_to(cr, tip, cy);
  cairo_line_to(cr, tip + 0.75 * a, cy + 0.7 * a);
  cairo_stroke(cr);
  cairo_restore(cr);
}

// The icon and its label, side by side in the middle.
void drawIconAndLabel(cairo_t* cr, const Rect& rect, ActionIcon icon, std::string_view label, double alpha) {
  constexpr double kGap = 8;
  const double side = std::min(rect.h / 2, 22.0);
  const TextStyle style = fitted(labelStyle(kButtonLabel, alpha), rect.w - side - 22);
  const double left = middleX(rect) - (side + kGap + textSize(cr, label, style).w) / 2;
  drawActionIcon(cr, icon, left + side / 2, middleY(rect), side, palette::kLightText, alpha);
  drawTextIn(cr, {left + side + kGap, rect.y, rect.w - side - 22, rect.h}, label, style);
}

// --- the dialog ---

constexpr double kDialogWidth = 420;
constexpr double kDialogHeight = 230;
constexpr double kDialogMessageTop = 58;
constexpr double kDialogButtonsTop = kDialogHeight - 62;

// The panel has a fixed size, so the letters of a long message shrink.
TextStyle messageStyle(cairo_t* cr, double width, std::string_view message) {
  constexpr double kGap = 8;  // between the last line and the buttons
  constexpr double kRoom = kDialogButtonsTop - kGap - kDialogMessageTop;
  TextStyle style = labelStyle(kDialogMessage);
  style.align = Align::Center;
  for (int percent = 100; percent >= 60; percent -= 5) {
    style.size = kDialogMessage.size * percent / 100;
    if (wrappedTextHeight(cr, width, message, style) <= kRoom) break;
  }
  return style;
}

constexpr double kShadowDrop = 8;
constexpr double kShadowBlur = 8;

// The panel with its shadow.
Rect panelBounds(const Rect& panel) { return insetRect(panel, -(kShadowDrop + kShadowBlur)); }

void drawDialogTexts(cairo_t* cr, const Rect& panel, std::string_view title, std::string_view message) {
  TextStyle style = fitted(labelStyle(kDialogTitle), panel.w - 40);
  style.align = Align::Center;
  drawText(cr, middleX(panel), panel.y + 22, title, style);
  const double width = panel.w - 44;
  drawWrappedText(cr, panel.x + 22, panel.y + kDialogMessageTop, width, message,
                  messageStyle(cr, width, message));
}

void drawDialogPanel(cairo_t* cr, const Rect& panel, std::string_view title, std::string_view message) {
  static auto& kept = *new KeptPicture;  // never destroyed, like the texts' layout
  std::string look = i18n::currentLanguage();
  for (const std::string_view text : {title, message}) (look += '|') += text;
  kept.draw(cr, look, panelBounds(panel), [&](cairo_t* picture) {
    drawPanel(picture, panel, PanelLook::Green);
    drawDialogTexts(picture, panel, title, message);
  });
}

}  // namespace

void drawPanel(cairo_t* cr, const Rect& panel, PanelLook look) {
  if (isEmpty(panel)) return;
  roundedRectPath(cr, panel, kPanelPlate.radius);
  softShadowFromPath(cr, 0, kShadowDrop, kShadowBlur, palette::kBlack, 0.4);
  cairo_new_path(cr);
  drawPlate(cr, panel, look == PanelLook::Dark ? kDarkPanelPlate : kPanelPlate, 1, false);
  drawFrame(cr, panel, kPanelFrame, {palette::kGold, 0.3}, 1);
}

bool plaqueButton(Ctx& ctx, const Rect& rect, std::string_view label, const PlaqueOpts& opts) {
  if (isEmpty(rect)) return false;
  const PlaqueLook& look = opts.primary ? kGoldPlaque : kDarkPlaque;
  const bool lit = !opts.disabled && ctx.hover(rect);
  const bool held = lit && ctx.in.down;
  const double alpha = opts.disabled ? look.plate.disabledAlpha : held ? kHeldAlpha : 1;
  drawPlaque(ctx.cr, rect, look, kPlaqueFrame, alpha, lit && !held);
  drawLabel(ctx.cr, rect, label, fitted(labelStyle({opts.fontSize, true, look.label}, alpha), rect.w - 44));
  if (opts.shineIndex >= 0 && opts.shineIndex == opts.shineActive)
    drawShine(ctx, rect, look, opts.primary ? palette::kWhite : 0xFFF7D7, alpha);
  return !opts.disabled && isPressed(ctx, rect);
}

bool headerButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled) {
  return labelledButton(ctx, rect, kHeaderPlate, label, labelStyle(kHeaderLabel), disabled);
}

bool backButton(Ctx& ctx, const Rect& rect) {
  if (isEmpty(rect)) return false;
  drawPlate(ctx.cr, rect, kHeaderPlate, 1, ctx.hover(rect));
  drawBackArrow(ctx.cr, rect);
  return isPressed(ctx, rect);
}

bool actionButton(Ctx& ctx, const Rect& rect, ActionIcon icon, std::string_view label, bool disabled) {
  if (isEmpty(rect)) return false;
  const double alpha = disabled ? kActionPlate.disabledAlpha : 1;
  drawPlate(ctx.cr, rect, kActionPlate, alpha, !disabled && ctx.hover(rect));
  if (label.empty()) {
    const double side = std::min(rect.w, rect.h) * 0.5;
    drawActionIcon(ctx.cr, icon, middleX(rect), middleY(rect), side, palette::kLightText, alpha);
  } else {
    drawIconAndLabel(ctx.cr, rect, icon, label, alpha);
  }
  return !disabled && isPressed(ctx, rect);
}

bool pageChip(Ctx& ctx, const Rect& rect, std::string_view label, bool active, bool badge) {
  if (isEmpty(rect)) return false;
  const PlaqueLook& look = active ? kGoldPlaque : kDarkPlaque;
  const bool lit = !active && ctx.hover(rect);
  if (badge && !active) {
    drawRingedPlate(ctx.cr, rect, look.plate, lit);
  } else {
    drawPlaque(ctx.cr, rect, look, kPageChipFrame, 1, lit);
  }
  drawLabel(ctx.cr, rect, label, fitted(labelStyle({kButtonLabel.size, true, look.label}), rect.w - 18));
  if (badge) {
    fillCircle(ctx.cr, rect.x + rect.w - 9, rect.y + 8, 4, palette::kGold, 1);
    strokeCircle(ctx.cr, rect.x + rect.w - 9, rect.y + 8, 4, 1, palette::kBlack, 0.3);
  }
  return isPressed(ctx, rect);
}

bool chip(Ctx& ctx, const Rect& rect, std::string_view label, bool active) {
  return labelledButton(ctx, rect, active ? kActiveChipPlate : kChipPlate, label,
                        labelStyle(active ? kActiveChipLabel : kChipLabel));
}

bool plainButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled) {
  return labelledButton(ctx, rect, kPlainPlate, label, fitted(labelStyle(kButtonLabel), rect.w - 16),
                        disabled);
}

bool dangerButton(Ctx& ctx, const Rect& rect, std::string_view label) {
  return labelledButton(ctx, rect, kDangerPlate, label, fitted(labelStyle(kDangerLabel), rect.w - 16));
}

double slider(Ctx& ctx, const Rect& rect, double value, std::optional<double> dragX) {
  constexpr double kTrackHeight = 6;
  constexpr double kKeyStep = 5;  // percent
  if (std::isnan(value)) value = 0;
  if (isEmpty(rect)) return value;
  const double filled = std::clamp(value, 0.0, 1.0) * rect.w;
  const double top = middleY(rect) - kTrackHeight / 2;
  fillRoundedRect(ctx.cr, {rect.x, top, rect.w, kTrackHeight}, kTrackHeight / 2, palette::kPanelEdge, 1);
  fillRoundedRect(ctx.cr, {rect.x, top, filled, kTrackHeight}, kTrackHeight / 2, palette::kGold, 1);
  fillCircle(ctx.cr, rect.x + filled, middleY(rect), 11, palette::kPanel, 1);
  strokeCircle(ctx.cr, rect.x + filled, middleY(rect), 11, 2, palette::kGold, 1);

  const Rect reach{rect.x - 12, rect.y - 6, rect.w + 24, rect.h + 12};
  if (!dragX && ctx.in.down && ctx.hover(reach)) dragX = ctx.in.mx;
  const int steps = ctx.focus != nullptr ? ctx.focus->offerSlider({reach.x, rect.y, reach.w, rect.h}) : 0;
  if (dragX) return std::clamp((*dragX - rect.x) / rect.w, 0.0, 1.0);
  return steps != 0 ? std::clamp((std::round(100 * value) + kKeyStep * steps) / 100, 0.0, 1.0) : value;
}

bool toggleRow(Ctx& ctx, const Rect& rect, std::string_view label, bool on) {
  if (isEmpty(rect)) return false;
  drawTextIn(ctx.cr, {rect.x, rect.y, rect.w - 80, rect.h}, label, labelStyle(kRowLabel));
  const Rect track{rect.x + rect.w - 52, middleY(rect) - 13, 48, 26};
  fillRoundedRect(ctx.cr, track, 13, on ? palette::kGold : palette::kPanelEdge, 1);
  fillCircle(ctx.cr, on ? track.x + track.w - 13 : track.x + 13, middleY(rect), 10, palette::kPanel, 1);
  // The ring stays clear of the label, the next row and a scrollbar.
  return isPressed(ctx, rect, {rect.x - 8, rect.y + 3, rect.w + 12, rect.h - 6});
}

void applyScroll(const Ctx& ctx, const Rect& rect, double contentHeight, double& scroll) {
  constexpr double kWheelStep = 60;
  const double most = std::max(0.0, contentHeight - rect.h);
  if (most > 0 && ctx.hover(rect)) scroll -= kWheelStep * ctx.in.wheel;
  scroll = std::clamp(scroll, 0.0, most);
}

void scrollbar(const Ctx& ctx, const Rect& rect, double contentHeight, double scroll) {
  constexpr double kLeastThumb = 40;
  if (isEmpty(rect) || contentHeight <= rect.h) return;
  const double thumb = std::max(kLeastThumb, rect.h / contentHeight * rect.h);
  const double top = rect.y + (rect.h - thumb) * scroll / (contentHeight - rect.h);
  fillRoundedRect(ctx.cr, {rect.x + rect.w - 7, top, 4, thumb}, 2, palette::kMutedText, 0.35);
}

int confirmDialog(Ctx& ctx, std::string_view title, std::string_view message, std::string_view confirmLabel,
                  std::string_view cancelLabel) {
  constexpr double kButtonH = 42;
  fillRect(ctx.cr, {0, 0, ctx.w, ctx.h}, palette::kVeil, 0.72);
  coverControls(ctx);
  const double w = std::min(ctx.w - 40, kDialogWidth);
  const Rect panel{(ctx.w - w) / 2, (ctx.h - kDialogHeight) / 2, w, kDialogHeight};
  if (!isEmpty(panel)) drawDialogPanel(ctx.cr, panel, title, message);

  const double buttonW = (w - 60) / 2;
  const double y = panel.y + kDialogButtonsTop;
  int answer = 0;
  const Rect cancel{panel.x + 20, y, buttonW, kButtonH};
  nameMain(ctx, cancel);
  if (plainButton(ctx, cancel, cancelLabel, false)) answer = -1;
  if (labelledButton(ctx, {panel.x + 40 + buttonW, y, buttonW, kButtonH}, kConfirmPlate, confirmLabel,
                     fitted(labelStyle(kConfirmLabel), buttonW - 16)))
    answer = 1;
  if (ctx.in.hasKey(SDLK_ESCAPE)) answer = -1;
  ctx.clickTaken = true;
  return answer;
}

std::string versionText() { return std::string("v") + kVersion + " Build " + std::to_string(kBuildNumber); }

void footer(const Ctx& ctx, double bottomY) {
  TextStyle style = labelStyle(kFooterLine);
  style.align = Align::Center;
  drawText(ctx.cr, ctx.w / 2, bottomY - kFooterHeight, "© 2026 Quenlock Software", style);
  drawText(ctx.cr, ctx.w / 2, bottomY - 17, versionText(), style);
}

}  // namespace ui
