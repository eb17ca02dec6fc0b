// frame_record.h: records each text, icon and cached picture that a frame draws, in order. The linker
// redirects the drawing calls (tests/CMakeLists.txt), so the game does not know. Units: logical pixels of the
// window, unless the context is scaled.
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
  std::string words;  // for a column: all its lines
  ui::Rect box;
  double size;  // font size
  bool bold;
  std::uint32_t color;  // 0xRRGGBB
};

struct DrawnIcon {
  ui::ActionIcon icon;
  double x;  // centre
  double y;
  double size;
};

// A picture from the texture cache.
struct DrawnPicture {
  std::string key;
  ui::Rect rect;
};

struct FrameRecord {
  std::vector<DrawnText> texts;
  std::vector<DrawnIcon> icons;
  std::vector<DrawnPicture> pictures;

  // The words of the texts whose centre lies in the rectangle.
  std::vector<std::string> wordsIn(const ui::Rect& rect) const;
  // The icon whose centre lies in the rectangle. Fails the test unless there is exactly one.
  ui::ActionIcon iconIn(const ui::Rect& rect) const;
  bool says(std::string_view words) const;
  // The keys that begin with `kind`, without that prefix and without everything from the next '|'.
  std::vector<std::string> picturesOf(std::string_view kind) const;
};

// Records everything drawn during `act`. Texts inside cached pictures are recorded when the picture is
// painted: in the first frame with textures, in every frame when cairo draws alone. Pictures are recorded by
// key; those of gpuPicture only with textures.
FrameRecord recordOf(const std::function<void()>& act);

}  // namespace support
