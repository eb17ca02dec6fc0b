#include "screens/solve_picture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "storage/paths.h"

namespace screens {
namespace {

// A PNG always begins with this signature and the length and name of its first chunk. Width and height
// follow.
constexpr std::string_view kPngStart("\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR", 16);
using PngHeader = std::array<char, kPngStart.size() + 8>;

std::uint32_t bigEndianAt(const PngHeader& header, std::size_t at) {
  std::uint32_t value = 0;
  for (std::size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<unsigned char>(header[i]);
  return value;
}

bool isSensibleLength(std::uint32_t pixels) { return pixels >= 1 && pixels <= kLargestPicture; }

bool isSensiblePng(const std::string& path) {
  // Opening a named pipe would block until somebody writes to it.
  if (!paths::isFile(path)) return false;
  PngHeader header{};
  std::ifstream file(path, std::ios::binary);
  if (!file.read(header.data(), header.size())) return false;
  return std::string_view(header.data(), kPngStart.size()) == kPngStart &&
         isSensibleLength(bigEndianAt(header, kPngStart.size())) &&
         isSensibleLength(bigEndianAt(header, kPngStart.size() + 4));
}

// Null if cairo is out of memory.
ui::CairoSurface reduced(cairo_surface_t* picture, int w, int h, double scale) {
  const auto length = [scale](int pixels) {
    return std::max(1, static_cast<int>(std::lround(pixels * scale)));
  };
  const int smallW = length(w);
  const int smallH = length(h);
  ui::CairoSurface small(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, smallW, smallH));
  const ui::CairoContext cr(cairo_create(small.get()));
  cairo_scale(cr.get(), 1.0 * smallW / w, 1.0 * smallH / h);
  cairo_set_source_surface(cr.get(), picture, 0, 0);
  // At the rim, samples repeat the edge pixels instead of transparency.
  cairo_pattern_set_extend(cairo_get_source(cr.get()), CAIRO_EXTEND_PAD);
  cairo_paint(cr.get());
  return cairo_status(cr.get()) == CAIRO_STATUS_SUCCESS ? std::move(small) : nullptr;
}

}  // namespace

ui::CairoSurface loadSolvePicture(const std::string& path, int side) {
  if (!isSensiblePng(path)) return nullptr;
  ui::CairoSurface picture(cairo_image_surface_create_from_png(path.c_str()));
  if (cairo_surface_status(picture.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  const int w = cairo_image_surface_get_width(picture.get());
  const int h = cairo_image_surface_get_height(picture.get());
  const double scale = 1.0 * side / std::max(w, h);
  return scale < 1 ? reduced(picture.get(), w, h, scale) : std::move(picture);
}

}  // namespace screens
