// hand_cursor.h: shows the pointer as a hand over clickable things. Knows no screen.
#pragma once

#include "ui/handles.h"

namespace ui {

class HandCursor {
 public:
  // Does nothing if the display has no hand cursor. SDL must be running.
  void show(bool hand);

 private:
  SdlCursor cursor;  // created when first shown
  bool shown = false;
};

}  // namespace ui
