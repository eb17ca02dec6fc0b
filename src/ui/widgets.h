// widgets.h: the controls that all screens are made of. Each function is called once a frame: it draws the
// control and returns what the player did with it. Values and scroll offsets live with the caller. Knows no
// screen and no settings; labels come translated. Units: logical pixels.
//
// A control is clicked if it is not disabled and the frame has a click in its rectangle that nothing has
// taken. It then takes the click, plays a sound and returns true, so of two overlapping controls the one
// called first wins. The keyboard works it the same way, through the frame's focus. Hovering changes at most
// its look; golden chips, sliders and switches do not change. A rectangle without area draws nothing and is
// never clicked.
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
  int shineIndex = -1;    // index in a group of buttons that shine in turn; -1: in none
  int shineActive = -1;   // index in that group whose turn it is
  double fontSize = 18;
};

// Labels shrink to fit, down to 0.6 of their size. Those of headerButton and chip never shrink.
bool plaqueButton(Ctx& ctx, const Rect& rect, std::string_view label, const PlaqueOpts& opts);
bool headerButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled);
bool backButton(Ctx& ctx, const Rect& rect);
// With an empty label, the icon stands alone.
bool actionButton(Ctx& ctx, const Rect& rect, ActionIcon icon, std::string_view label, bool disabled);
// `badge` marks the page with the player's level: a dot in its corner and, unless it is active, a golden
// ring.
bool pageChip(Ctx& ctx, const Rect& rect, std::string_view label, bool active, bool badge);
bool chip(Ctx& ctx, const Rect& rect, std::string_view label, bool active);
bool plainButton(Ctx& ctx, const Rect& rect, std::string_view label, bool disabled);
bool dangerButton(Ctx& ctx, const Rect& rect, std::string_view label);

// Returns the new value: the pointer's position, 0 to 1, while the button is held on the slider or a little
// beside it; otherwise `value` unchanged, even out of range. NaN counts as 0. If a drag began on this slider,
// `dragX` is where it has come to: the value follows it, however far beside the slider. With the focus on it,
// Left and Right change it by 0.05.
double slider(Ctx& ctx, const Rect& rect, double value, std::optional<double> dragX = std::nullopt);

// A label and its switch. Returns true if the row was clicked anywhere; the caller changes the value.
bool toggleRow(Ctx& ctx, const Rect& rect, std::string_view label, bool on);

// Moves the scroll offset by the wheel if the pointer is over `rect`. Keeps it between 0 and the height that
// does not fit.
void applyScroll(const Ctx& ctx, const Rect& rect, double contentHeight, double& scroll);
// Shows the scroll offset at the right edge, unless everything fits.
void scrollbar(const Ctx& ctx, const Rect& rect, double contentHeight, double scroll);

// The panel of a dialog or message, with its shadow and golden frame. Buttons stand out from the dark one.
enum class PanelLook { Green, Dark };
void drawPanel(cairo_t* cr, const Rect& panel, PanelLook look);

// A question over the whole screen. Returns 1 if confirmed, -1 if cancelled, 0 if not answered yet. Escape
// cancels, whatever was clicked; Enter does if nothing has the focus. Always takes the frame's click, so a
// screen drawn later does not get it. A long message is broken into lines, and its letters shrink down to 0.6
// of their size.
int confirmDialog(Ctx& ctx, std::string_view title, std::string_view message, std::string_view confirmLabel,
                  std::string_view cancelLabel);

// The version and build as shown to the player: "v", the version, " Build ", the number.
std::string versionText();
// Copyright and version in two lines, together kFooterHeight high, above `bottomY`. Screens without a golden
// frame leave kFooterGap below them.
inline constexpr double kFooterHeight = 32;
inline constexpr double kFooterGap = 6;
void footer(const Ctx& ctx, double bottomY);

}  // namespace ui
