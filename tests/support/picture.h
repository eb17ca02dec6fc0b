// picture.h: paints pictures, reads their pixels and compares them with committed ones. Units: device pixels.
// A pixel is 0xAARRGGBB, premultiplied, as in cairo.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "ui/handles.h"

namespace support {

ui::CairoSurface makePicture(int w, int h);
// A transparent picture with something painted on it.
ui::CairoSurface makePicture(int w, int h, const std::function<void(cairo_t*)>& paint);
// The same, painted in a forked process; transparent if that fails. Pango finds its fonts in a thread, which
// a forked process does not have. So a test program that forks and draws text there must never have drawn
// text itself.
ui::CairoSurface makePictureApart(int w, int h, const std::function<void(cairo_t*)>& paint);

// Reads many pixels of a picture. Do not paint on the picture meanwhile.
class Pixels {
 public:
  explicit Pixels(cairo_surface_t* picture);

  // The pixel; it must lie inside the picture.
  std::uint32_t at(int x, int y) const;

 private:
  const unsigned char* data = nullptr;
  int stride;
  std::uint32_t missingAlpha;
};

// Reads a single pixel.
std::uint32_t pixelAt(cairo_surface_t* picture, int x, int y);

// The largest channel difference between two pixels.
int channelDifference(std::uint32_t a, std::uint32_t b);

// Whether every channel of every pixel differs by at most `tolerance`. A failure reports the largest
// difference and its place.
testing::AssertionResult samePicture(cairo_surface_t* a, cairo_surface_t* b, int tolerance = 0);

// Whether two pictures look the same, allowing for differences between machines: each channel may differ by
// 2. FreeType releases render the rims of letters slightly differently, so one pixel in 10,000 may differ by
// up to 1/24 of the contrast around it.
testing::AssertionResult sameLook(cairo_surface_t* seen, cairo_surface_t* expected);

// Compares with the committed picture NAME.png in the test program's folder `pictures`. If they differ,
// writes NAME.seen.png and NAME.difference.png (red: the difference, times eight) to the working directory.
// With the environment variable VESKARA_UPDATE_PICTURES it replaces the committed picture instead, and the
// test fails so that such a run is never green. Review the picture, then run again without the variable.
testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name);

// How a committed picture is stored if not pixel by pixel, for the looksLike below.
struct Keeping {
  // On failure prints the reason on standard error and returns false.
  bool (*save)(cairo_surface_t* picture, const std::string& path);
  // The seen picture as it would be stored for comparison with the committed one. Both have the same size.
  ui::CairoSurface (*asKept)(cairo_surface_t* seen, cairo_surface_t* committed);
};
testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name, const Keeping& keeping);

}  // namespace support
