// hand_cursor.h: the pointer as a hand over what can be clicked. Knows no screen.
#pragma once

#include "ui/handles.h"

namespace ui {

class HandCursor {
 public:
  // Where the display has no hand the pointer stays as it is. SDL must be running.
  void show(bool hand);

 private:
  SdlCursor cursor;  // made when it is first shown
  bool shown = false;
};

}  // namespace ui
