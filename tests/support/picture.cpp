#include "support/picture.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "support/own_process.h"

namespace support {
namespace {

int widthOf(cairo_surface_t* picture) { return cairo_image_surface_get_width(picture); }
int heightOf(cairo_surface_t* picture) { return cairo_image_surface_get_height(picture); }

bool isPicture(cairo_surface_t* surface) {
  return cairo_surface_status(surface) == CAIRO_STATUS_SUCCESS &&
         cairo_surface_get_type(surface) == CAIRO_SURFACE_TYPE_IMAGE;
}

bool save(cairo_surface_t* picture, const std::string& path) {
  const cairo_status_t status = cairo_surface_write_to_png(picture, path.c_str());
  if (status != CAIRO_STATUS_SUCCESS) std::cerr << path << ": " << cairo_status_to_string(status) << '\n';
  return status == CAIRO_STATUS_SUCCESS;
}

struct Comparison {
  int differing = 0;  // pixels beyond the tolerance
  int rims = 0;       // of these, pixels on an edge that differ by a small part of its contrast
  int largest = 0;    // difference of a channel, at (x, y)
  int x = 0;
  int y = 0;
};

// The largest channel difference between a pixel and its neighbours.
int contrastAround(const Pixels& pixels, int w, int h, int x, int y) {
  int contrast = 0;
  for (int v = std::max(y - 1, 0); v <= std::min(y + 1, h - 1); ++v) {
    for (int u = std::max(x - 1, 0); u <= std::min(x + 1, w - 1); ++u) {
      contrast = std::max(contrast, channelDifference(pixels.at(x, y), pixels.at(u, v)));
    }
  }
  return contrast;
}

// Both pictures must have the same size. Edges are those of `b`.
Comparison compare(cairo_surface_t* a, cairo_surface_t* b, int tolerance) {
  constexpr int kRimShare = 24;
  Comparison result;
  const Pixels pixelsOfA(a);
  const Pixels pixelsOfB(b);
  const int w = widthOf(a);
  const int h = heightOf(a);
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const int difference = channelDifference(pixelsOfA.at(x, y), pixelsOfB.at(x, y));
      if (difference > result.largest) {
        result.largest = difference;
        result.x = x;
        result.y = y;
      }
      if (difference <= tolerance) continue;
      ++result.differing;
      if (kRimShare * difference <= contrastAround(pixelsOfB, w, h, x, y)) ++result.rims;
    }
  }
  return result;
}

bool sameSize(cairo_surface_t* a, cairo_surface_t* b) {
  return widthOf(a) == widthOf(b) && heightOf(a) == heightOf(b);
}

testing::AssertionResult sizesDiffer(cairo_surface_t* a, cairo_surface_t* b) {
  return testing::AssertionFailure() << "sizes differ: " << widthOf(a) << " x " << heightOf(a) << " and "
                                     << widthOf(b) << " x " << heightOf(b);
}

void saveDifference(cairo_surface_t* a, cairo_surface_t* b, const std::string& path) {
  constexpr int kMagnified = 8;
  const ui::CairoSurface picture = makePicture(widthOf(a), heightOf(a), [&](cairo_t* cr) {
    for (int y = 0; y < heightOf(a); ++y) {
      for (int x = 0; x < widthOf(a); ++x) {
        const int difference = channelDifference(pixelAt(a, x, y), pixelAt(b, x, y));
        cairo_set_source_rgb(cr, std::min(255, kMagnified * difference) / 255.0, 0, 0);
        cairo_rectangle(cr, x, y, 1, 1);
        cairo_fill(cr);
      }
    }
  });
  save(picture.get(), path);
}

std::string describe(const Comparison& found) {
  return std::to_string(found.differing) + " pixels differ, most at (" + std::to_string(found.x) + ", " +
         std::to_string(found.y) + ") by " + std::to_string(found.largest);
}

ui::CairoSurface asSeen(cairo_surface_t* seen, cairo_surface_t* /*committed*/) {
  return ui::CairoSurface(cairo_surface_reference(seen));
}

constexpr Keeping kPixelByPixel = {save, asSeen};

testing::AssertionResult replaceCommitted(cairo_surface_t* seen, const std::string& path,
                                          const Keeping& keeping) {
  if (!keeping.save(seen, path)) return testing::AssertionFailure() << path << " could not be written";
  std::cout << "rewrote " << path << '\n';
  return testing::AssertionFailure() << path << " was rewritten: review it";
}

}  // namespace

ui::CairoSurface makePicture(int w, int h) {
  ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  EXPECT_EQ(cairo_surface_status(picture.get()), CAIRO_STATUS_SUCCESS);
  return picture;
}

ui::CairoSurface makePicture(int w, int h, const std::function<void(cairo_t*)>& paint) {
  ui::CairoSurface picture = makePicture(w, h);
  const ui::CairoContext context(cairo_create(picture.get()));
  paint(context.get());
  EXPECT_EQ(cairo_status(context.get()), CAIRO_STATUS_SUCCESS);
  return picture;
}

ui::CairoSurface makePictureApart(int w, int h, const std::function<void(cairo_t*)>& paint) {
  ui::CairoSurface picture = makePicture(w, h);
  const int stride = cairo_image_surface_get_stride(picture.get());
  const auto size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(h);
  const std::string bytes = inOwnProcess([&] {
    const ui::CairoSurface painted = makePicture(w, h, paint);
    cairo_surface_flush(painted.get());
    return std::string(reinterpret_cast<const char*>(cairo_image_surface_get_data(painted.get())), size);
  });
  if (bytes.size() != size) return picture;
  std::memcpy(cairo_image_surface_get_data(picture.get()), bytes.data(), size);
  cairo_surface_mark_dirty(picture.get());
  return picture;
}

// An opaque picture read from a file has no alpha channel.
Pixels::Pixels(cairo_surface_t* picture)
    : stride(cairo_image_surface_get_stride(picture)),
      missingAlpha(cairo_image_surface_get_format(picture) == CAIRO_FORMAT_RGB24 ? 0xFF000000U : 0) {
  cairo_surface_flush(picture);
  data = cairo_image_surface_get_data(picture);
}

std::uint32_t Pixels::at(int x, int y) const {
  std::uint32_t pixel = 0;
  std::memcpy(&pixel, data + y * stride + 4 * x, sizeof pixel);
  return pixel | missingAlpha;
}

std::uint32_t pixelAt(cairo_surface_t* picture, int x, int y) { return Pixels(picture).at(x, y); }

int channelDifference(std::uint32_t a, std::uint32_t b) {
  int largest = 0;
  for (int shift = 0; shift < 32; shift += 8) {
    const int difference = static_cast<int>((a >> shift) & 0xFFU) - static_cast<int>((b >> shift) & 0xFFU);
    largest = std::max(largest, std::abs(difference));
  }
  return largest;
}

testing::AssertionResult samePicture(cairo_surface_t* a, cairo_surface_t* b, int tolerance) {
  if (!sameSize(a, b)) return sizesDiffer(a, b);
  const Comparison found = compare(a, b, tolerance);
  if (found.differing == 0) return testing::AssertionSuccess() << "no pixel differs";
  return testing::AssertionFailure() << describe(found);
}

testing::AssertionResult sameLook(cairo_surface_t* seen, cairo_surface_t* expected) {
  constexpr int kTolerance = 2;
  constexpr int kPixelsPerRim = 10'000;
  if (!sameSize(seen, expected)) return sizesDiffer(seen, expected);
  const Comparison found = compare(seen, expected, kTolerance);
  const bool onlyRims = found.differing == found.rims;
  if (onlyRims && found.rims * kPixelsPerRim <= widthOf(seen) * heightOf(seen)) {
    return testing::AssertionSuccess() << "only " << found.rims << " pixels on rims differ";
  }
  return testing::AssertionFailure() << describe(found);
}

testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name) {
  return looksLike(seen, name, kPixelByPixel);
}

testing::AssertionResult looksLike(cairo_surface_t* seen, const std::string& name, const Keeping& keeping) {
  const std::string path = VESKARA_PICTURES_DIR "/" + name + ".png";
  if (std::getenv("VESKARA_UPDATE_PICTURES") != nullptr) return replaceCommitted(seen, path, keeping);

  const std::string seenPath = name + ".seen.png";
  const ui::CairoSurface committed(cairo_image_surface_create_from_png(path.c_str()));
  if (!isPicture(committed.get())) {
    save(seen, seenPath);
    return testing::AssertionFailure() << path << " cannot be read; what was seen is in " << seenPath;
  }
  const bool comparable = sameSize(seen, committed.get());
  const ui::CairoSurface kept = comparable ? keeping.asKept(seen, committed.get()) : asSeen(seen, nullptr);
  const testing::AssertionResult same = sameLook(kept.get(), committed.get());
  if (same) return same;
  save(seen, seenPath);
  if (comparable) saveDifference(kept.get(), committed.get(), name + ".difference.png");
  return testing::AssertionFailure() << path << ": " << same.message() << "; what was seen is in "
                                     << seenPath;
}

}  // namespace support
