// sight.h: how alike two pictures look from some way off, to eyes of several kinds, and how well a colour
// stands out from another. Units: device pixels; channels from 0 to 255.
#pragma once

#include <cairo.h>

#include <cstdint>
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

// How bright a colour 0xRRGGBB is, 0 to 1, and how well two of such a brightness are told apart, 1 to 21,
// both as the Web Content Accessibility Guidelines reckon it.
double luminance(std::uint32_t color);
double contrast(double a, double b);

// The brightness of the lightest pixel within these bounds.
double lightest(cairo_surface_t* picture, double x0, double y0, double x1, double y1);

}  // namespace support
