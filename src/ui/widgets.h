// widgets.h: the controls that all screens are made of. Each function is called once a frame: it draws the
// control and says at once what the player did with it; values and scroll offsets live with the caller. Knows
// no screen, no settings and no texts: labels come as they are to be read. Units: logical pixels.
//
// What can be clicked is clicked when it is not disabled, the frame has a click that nobody took, and that
// lies in the control's rectangle. It then takes the click, sounds, and returns true; so of two that overlap,
// the one called first. The keyboard works it in the same way, by the frame's focus. Under the pointer a
// control at most looks different; a golden chip and a switch do not. A rectangle without area draws nothing
// and is never clicked.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ui/context.h"
#include "ui/icons.h"

namespace ui {

struct PlaqueOpts {
  bool primary = false;   // the screen's main action: golden instead of dark green
  bool disabled = false;  // faint
  int shineIndex = -1;    // its number in a group through which a shine passes; -1: in none
  int shineActive = -1;   // the number in that group whose turn it is
  double fontSize = 18;
};

// Labels are shrunk to the width there is, to 0.6 of their size at most, but for those of headerButton and
// chip, which are as wide as they are.
bool plaqueButton(Ctx& ctx, const Rect& rect, std::string_view label, const PlaqueOpts& opts);
bool headerButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled);
bool backButton(Ctx& ctx, const Rect& rect);
// With an empty label the icon stands alone.
bool actionButton(Ctx& ctx, const Rect& rect, ActionIcon icon, std::string_view label, bool disabled);
// `badge` marks the page on which the player is at home: a dot in its corner and, while another page is
// shown, a golden ring about it.
bool pageChip(Ctx& ctx, const Rect& rect, std::string_view label, bool active, bool badge);
bool chip(Ctx& ctx, const Rect& rect, std::string_view label, bool active);
bool plainButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled);
bool dangerButton(Ctx& ctx, const Rect& rect, std::string_view label);

// The new value: where the pointer is, 0 to 1, while the button is held on the slider or a little beside it;
// else `value` as it came, even out of range. Not a number counts as 0. `dragX` is where a drag that began on
// this slider has come to: it follows that instead, however far beside it. With the focus on it Left and
// Right move it by 5 of 100.
double slider(Ctx& ctx, const Rect& rect, double value, std::optional<double> dragX = std::nullopt);

// A label and its switch; true when the row was clicked anywhere: the caller flips what it shows.
bool toggleRow(Ctx& ctx, const Rect& rect, std::string_view label, bool on);

// Moves the offset of what scrolls in `rect` by the wheel and keeps it within 0 and what does not fit.
void applyScroll(const Ctx& ctx, const Rect& rect, double contentHeight, double& scroll);
// Shows that offset at the right edge, unless everything fits.
void scrollbar(const Ctx& ctx, const Rect& rect, double contentHeight, double scroll);

// The plate on which a question or a message lies over the screen, with its shadow and its golden frame.
// Buttons stand out from the dark one.
enum class PanelLook { Green, Dark };
void drawPanel(cairo_t* cr, const Rect& panel, PanelLook look);

// A question over the whole screen: 1 confirmed, -1 cancelled (the Escape key does too, whatever was
// clicked, and Enter where nothing has the focus), 0 not answered yet. It takes the frame's click even where
// it has no button, so the screen below gets none if it comes later. A long message is broken into lines, and
// its letters shrink as far as 0.6 of their size.
int confirmDialog(Ctx& ctx, std::string_view title, std::string_view message, std::string_view confirmLabel,
                  std::string_view cancelLabel);

// "v", the version and the build, as it is shown wherever they are.
std::string versionText();
// The maker and the version, in two lines above `bottomY`, and how high they are. Where no golden frame is in
// the way they stand a little above the window's lower edge.
inline constexpr double kFooterHeight = 32;
inline constexpr double kFooterGap = 6;
void footer(const Ctx& ctx, double bottomY);

}  // namespace ui
