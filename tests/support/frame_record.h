// frame_record.h: what a frame says and shows: each text, icon and cached picture drawn in it, in order. The
// calls that draw are redirected in the linker (tests/CMakeLists.txt), so the game knows nothing of it.
// Units: logical pixels of the window, where nothing scales its context.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/context.h"
#include "ui/icons.h"

namespace support {

struct DrawnText {
  std::string words;  // of a column: all its lines
  ui::Rect box;
  double size;  // of its letters
  bool bold;
  std::uint32_t color;  // 0xRRGGBB
};

struct DrawnIcon {
  ui::ActionIcon icon;
  double x;  // of its middle
  double y;
  double size;
};

// A picture of the texture cache.
struct DrawnPicture {
  std::string key;
  ui::Rect rect;
};

struct FrameRecord {
  std::vector<DrawnText> texts;
  std::vector<DrawnIcon> icons;
  std::vector<DrawnPicture> pictures;

  // The words of the texts whose middle lies in the rectangle.
  std::vector<std::string> wordsIn(const ui::Rect& rect) const;
  // The icon whose middle lies in it; the test fails unless there is just one.
  ui::ActionIcon iconIn(const ui::Rect& rect) const;
  bool says(std::string_view words) const;
  // The keys that begin so, without that beginning and what follows the next '|'.
  std::vector<std::string> picturesOf(std::string_view kind) const;
};

// Of all that is drawn during `act`. Texts in cached pictures are among them when those are painted: in the
// first frame with textures, in each frame that cairo draws alone. Pictures are among them by their keys; but
// for those of gpuPicture only with textures.
FrameRecord recordOf(const std::function<void()>& act);

}  // namespace support
