// solve_picture.h: reads the picture of a solved board from its file. The file may have become anything since
// it was written. Knows no record and no screen.
#pragma once

#include <string>

#include "ui/handles.h"

namespace screens {

// The side of the pictures that the game writes, in their pixels.
inline constexpr int kSolvePictureSide = 640;

// Larger pictures than this, in either direction, are not ours and are not even decoded.
inline constexpr int kLargestPicture = 4096;

// The picture made smaller, where it is larger, to fit a square of `side` device pixels. Null without a
// regular file that is a whole PNG of a sensible size.
ui::CairoSurface loadSolvePicture(const std::string& path, int side);

}  // namespace screens
