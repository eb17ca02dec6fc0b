// gallery_card.h: paints a solved board's card: level, time, stars and day above its picture. Knows no window
// and no input. Units: logical pixels.
#pragma once

#include <cairo.h>

#include "rules/engine.h"
#include "storage/storage.h"
#include "ui/handles.h"

namespace screens {

// The longer side of what a card of this size shows as its picture, in device pixels.
int cardPictureSide(double cardW, double cardH);

// What a card shows: the picture, or where that is null the board as it was dealt.
struct CardPicture {
  cairo_surface_t* picture = nullptr;
  const mj::GameState* board = nullptr;
};

// Fills (0, 0, cardW, cardH).
void paintCard(cairo_t* cr, double cardW, double cardH, const store::SolveEntry& entry,
               const CardPicture& shown);

}  // namespace screens
