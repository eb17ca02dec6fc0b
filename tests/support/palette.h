// palette.h: large pictures in few colours, as committed files are small: what picture.h offers for smaller
// ones. Units: device pixels.
#pragma once

#include <gtest/gtest.h>

#include <cairo.h>

#include <string>

namespace support {

// As looksLike, with a committed picture of 256 colours that were chosen for it: a pixel looks the same if of
// these colours the committed one is nearest to what is seen, or nearly so. What is seen nearly in its own
// colour elsewhere has to be seen so here.
testing::AssertionResult looksLikeInFewColors(cairo_surface_t* seen, const std::string& name);

}  // namespace support
