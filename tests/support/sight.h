// sight.h: how similar two pictures look from a distance to different kinds of eyes, and how well one colour
// stands out from another. Units: device pixels; channels from 0 to 255.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <vector>

namespace support {

enum class Sight { Full, Protanopia, Deuteranopia, Tritanopia, Grey };
inline constexpr Sight kSights[] = {Sight::Full, Sight::Protanopia, Sight::Deuteranopia, Sight::Tritanopia,
                                    Sight::Grey};

// Red, green and blue of each sample in turn.
using Samples = std::vector<float>;

// An opaque picture after a Gaussian blur of `blur` pixels, sampled about that densely.
Samples blurred(cairo_surface_t* picture, double blur);

// The samples as this eye sees them.
Samples seenBy(Sight sight, const Samples& samples);

// The mean difference per channel. If it exceeds `enough`, any value above `enough`.
double meanDifference(const Samples& a, const Samples& b, double enough);

// Luminance of a colour 0xRRGGBB, 0 to 1, and contrast between two luminances, 1 to 21, both as defined by
// the Web Content Accessibility Guidelines.
double luminance(std::uint32_t color);
double contrast(double a, double b);

// The luminance of the brightest pixel within these bounds.
double lightest(cairo_surface_t* picture, double x0, double y0, double x1, double y1);

}  // namespace support
