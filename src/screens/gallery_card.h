// gallery_card.h: paints the card of a solved board: level, time, stars and date above its picture. Knows no
// window and no input. Units: logical pixels.
#pragma once

#include <cairo.h>

#include "rules/engine.h"
#include "storage/storage.h"
#include "ui/handles.h"

namespace screens {

// The side of the square picture on a card of this size, in device pixels.
int cardPictureSide(double cardW, double cardH);

// What a card shows: the picture or, if that is null, the board as it was dealt.
struct CardPicture {
  cairo_surface_t* picture = nullptr;
  const mj::GameState* board = nullptr;
};

// Fills the rectangle (0, 0, cardW, cardH).
void paintCard(cairo_t* cr, double cardW, double cardH, const store::SolveEntry& entry,
               const CardPicture& shown);

}  // namespace screens
