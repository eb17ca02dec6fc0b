// palette.h: compares large pictures with committed ones that are reduced to few colours to keep files small.
// For smaller pictures use picture.h. Units: device pixels.
#pragma once

#include <gtest/gtest.h>

#include <cairo.h>

#include <string>

namespace support {

// Like looksLike, but the committed picture has a palette of 256 colours chosen for it. A pixel looks the
// same if its committed colour is the nearest palette colour to the seen one, or nearly so. So a pixel seen
// in nearly a palette colour must be committed in nearly that colour.
testing::AssertionResult looksLikeInFewColors(cairo_surface_t* seen, const std::string& name);

}  // namespace support
