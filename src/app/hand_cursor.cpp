#include "app/hand_cursor.h"

namespace ui {

void HandCursor::show(bool hand) {
  if (hand == shown) return;
  shown = hand;
  if (!cursor) cursor.reset(SDL_CreateSystemCursor(SDL_SYSTEM_CURSOR_HAND));
  if (cursor) SDL_SetCursor(hand ? cursor.get() : SDL_GetDefaultCursor());
}

}  // namespace ui
