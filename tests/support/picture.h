// picture.h: pictures in tests: painting them, reading their pixels, comparing them with committed ones.
// Units: device pixels; a pixel is 0xAARRGGBB, premultiplied, as cairo keeps it.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <string>

#include "ui/handles.h"

namespace support {

// A transparent picture.
ui::CairoSurface makePicture(int w, int h);
// A transparent picture with something painted on it.
ui::CairoSurface makePicture(int w, int h, const std::function<void(cairo_t*)>& paint);
// The same, painted in a process of its own; transparent if that fails. Pango finds its fonts in a thread,
// which a forked process does not have: a test that forks and draws texts there must never have drawn one
// itself.
ui::CairoSurface makePictureApart(int w, int h, const std::function<void(cairo_t*)>& paint);

// A picture's pixels, for loops over many. Nothing may be painted on it meanwhile.
class Pixels {
 public:
  explicit Pixels(cairo_surface_t* picture);

  // The pixel, which must lie inside.
  std::uint32_t at(int x, int y) const;

 private:
  const unsigned char* data = nullptr;
  int stride;
  std::uint32_t missingAlpha;
};

// The same for a single one.
std::uint32_t pixelAt(cairo_surface_t* picture, int x, int y);

// The largest difference of a channel between two pixels.
int channelDifference(std::uint32_t a, std::uint32_t b);

// Whether no channel of no pixel differs by more than `tolerance`. Says where it differs most.
testing::AssertionResult samePicture(cairo_surface_t* a, cairo_surface_t* b, int tolerance = 0);

// Whether two pictures look the same on every machine: no channel of a pixel differs by more than 2.
// FreeType's releases do not cover the rims of letters quite alike, so one pixel in 10,000 may differ by up
// to a 24th of the contrast around it.
testing::AssertionResult sameLook(cairo_surface_t* seen, cairo_surface_t* expected);

// Compares with the committed picture NAME.png of the test program's folder `pictures`. Where they differ,
// NAME.seen.png and NAME.difference.png are left in the working directory (red: how much, eightfold).
// With the environment variable VESKARA_UPDATE_PICTURES the committed picture is replaced by the seen one
// instead, and the test fails, so that such a run is never green: look at the picture, then run again without
// it.
testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name);

// The same for committed pictures that are not kept pixel by pixel.
struct Keeping {
  // False after it has said on standard error why not.
  bool (*save)(cairo_surface_t* picture, const std::string& path);
  // What was seen as it would be kept beside the committed one, which has its size.
  ui::CairoSurface (*asKept)(cairo_surface_t* seen, cairo_surface_t* committed);
};
testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name, const Keeping& keeping);

}  // namespace support
