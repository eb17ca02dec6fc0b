// solve_picture.h: reads the picture of a solved board from its file. The file may hold anything: others may
// have changed it. Knows no record and no screen.
#pragma once

#include <string>

#include "ui/handles.h"

namespace screens {

// The side of the pictures that the game writes, in pixels.
inline constexpr int kSolvePictureSide = 640;

// Pictures larger than this in either direction are not the game's; they are not decoded.
inline constexpr int kLargestPicture = 4096;

// The picture, reduced if needed to fit a square of `side` device pixels. Null unless the path is a regular
// file with a valid PNG of at most kLargestPicture.
ui::CairoSurface loadSolvePicture(const std::string& path, int side);

}  // namespace screens
