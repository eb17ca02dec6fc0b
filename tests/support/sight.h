// sight.h: how alike two pictures look from some way off, to eyes of several kinds. Units: device pixels;
// channels from 0 to 255.
#pragma once

#include <cairo.h>

#include <vector>

namespace support {

enum class Sight { Full, Protanopia, Deuteranopia, Tritanopia, Grey };
inline constexpr Sight kSights[] = {Sight::Full, Sight::Protanopia, Sight::Deuteranopia, Sight::Tritanopia,
                                    Sight::Grey};

// Red, green and blue of each sample, one after the other.
using Samples = std::vector<float>;

// An opaque picture whose pixels run into each other by a Gaussian of this many pixels, sampled about as
// densely.
Samples blurred(cairo_surface_t* picture, double blur);

// The same as this eye sees it.
Samples seenBy(Sight sight, const Samples& samples);

// The mean difference of a channel, or anything above `enough` where it is more than that.
double meanDifference(const Samples& a, const Samples& b, double enough);

}  // namespace support
