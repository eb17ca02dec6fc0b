#include "support/palette.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "support/picture.h"

namespace support {
namespace {

using Color = std::uint32_t;  // 0xRRGGBB

constexpr std::size_t kColors = 256;

int channel(Color color, int place) { return static_cast<int>(color >> (8 * place) & 0xFFU); }

int squaredDistance(Color a, Color b) {
  int sum = 0;
  for (int place = 0; place < 3; ++place) {
    const int difference = channel(a, place) - channel(b, place);
    sum += difference * difference;
  }
  return sum;
}

// Finds the nearest of a set of colours. Caches each answer because pictures have few colours for their size.
class Palette {
 public:
  explicit Palette(std::vector<Color> all) : colors(std::move(all)) {}

  std::size_t nearest(Color color) {
    const auto [known, isNew] = found.try_emplace(color, 0);
    if (isNew) {
      const auto closer = [color](Color a, Color b) {
        return squaredDistance(a, color) < squaredDistance(b, color);
      };
      const auto best = std::min_element(colors.begin(), colors.end(), closer);
      known->second = static_cast<std::size_t>(best - colors.begin());
    }
    return known->second;
  }
  double distance(Color color) { return std::sqrt(squaredDistance(colors[nearest(color)], color)); }

 private:
  std::vector<Color> colors;
  std::unordered_map<Color, std::size_t> found;
};

int pixelsAcross(cairo_surface_t* picture) { return cairo_image_surface_get_width(picture); }
int pixelsDown(cairo_surface_t* picture) { return cairo_image_surface_get_height(picture); }

template <class Look>
void forEachPixel(cairo_surface_t* picture, const Look& look) {
  const Pixels pixels(picture);
  for (int y = 0; y < pixelsDown(picture); ++y)
    for (int x = 0; x < pixelsAcross(picture); ++x) look(x, y, pixels.at(x, y) & 0xFFFFFF);
}

struct Counted {
  Color color;
  int pixels;
};

using Counts = std::vector<Counted>;

Counts countsOf(cairo_surface_t* picture) {
  std::map<Color, int> counts;
  forEachPixel(picture, [&](int, int, Color color) { ++counts[color]; });
  Counts all;
  all.reserve(counts.size());
  for (const auto& [color, pixels] : counts) all.push_back({color, pixels});
  return all;
}

// --- choosing colours: the box with the highest cost is halved until there are enough ---

struct Box {
  Counts counts;
  int longest = 0;  // the channel with the widest range
  double cost = 0;  // error if one colour replaced them all
};

Color meanOf(const Counts& counts) {
  std::array<double, 3> sums = {};
  double pixels = 0;
  for (const Counted& counted : counts) {
    for (int place = 0; place < 3; ++place)
      sums[static_cast<std::size_t>(place)] += 1.0 * counted.pixels * channel(counted.color, place);
    pixels += counted.pixels;
  }
  Color mean = 0;
  for (int place = 0; place < 3; ++place)
    mean |= static_cast<Color>(std::lround(sums[static_cast<std::size_t>(place)] / pixels)) << (8 * place);
  return mean;
}

Box boxOf(Counts counts) {
  Box box;
  const Color mean = meanOf(counts);
  double largest = -1;
  for (int place = 0; place < 3; ++place) {
    double spread = 0;
    for (const Counted& counted : counts)
      spread += counted.pixels * std::pow(channel(counted.color, place) - channel(mean, place), 2);
    box.cost += spread;
    if (spread > largest) box.longest = place;
    largest = std::max(largest, spread);
  }
  box.counts = std::move(counts);
  return box;
}

void halve(std::vector<Box>& boxes, std::size_t index) {
  Counts low = std::move(boxes[index].counts);
  const int place = boxes[index].longest;
  const int mean = channel(meanOf(low), place);
  const auto middle = std::partition(
      low.begin(), low.end(), [&](const Counted& counted) { return channel(counted.color, place) <= mean; });
  Counts high(middle, low.end());
  low.erase(middle, low.end());
  boxes[index] = boxOf(std::move(low));
  boxes.push_back(boxOf(std::move(high)));
}

std::vector<Color> chooseColors(cairo_surface_t* picture) {
  std::vector<Box> boxes = {boxOf(countsOf(picture))};
  while (boxes.size() < kColors) {
    const auto worst = std::max_element(boxes.begin(), boxes.end(),
                                        [](const Box& a, const Box& b) { return a.cost < b.cost; });
    if (worst->counts.size() < 2) break;
    halve(boxes, static_cast<std::size_t>(worst - boxes.begin()));
  }
  std::vector<Color> colors;
  colors.reserve(boxes.size());
  for (const Box& box : boxes) colors.push_back(meanOf(box.counts));
  return colors;
}

// --- the file ---

void appendNumber(std::string& bytes, unsigned long number) {
  for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(number >> shift & 0xFFU);
}

void appendChunk(std::string& png, const std::string& name, const std::string& data) {
  const std::string named = name + data;
  appendNumber(png, data.size());
  png += named;
  appendNumber(png, crc32(0, reinterpret_cast<const Bytef*>(named.data()), static_cast<uInt>(named.size())));
}

std::string packed(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string result(size, '\0');
  compress2(reinterpret_cast<Bytef*>(result.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
            bytes.size(), Z_BEST_COMPRESSION);
  result.resize(size);
  return result;
}

std::string paletteChunk(const std::vector<Color>& colors) {
  std::string bytes;
  for (const Color color : colors)
    for (int place = 2; place >= 0; --place) bytes += static_cast<char>(channel(color, place));
  return bytes;
}

// Each row begins with its filter type, 0 for none.
std::string rowsOf(cairo_surface_t* picture, const std::vector<Color>& colors) {
  Palette palette(colors);
  std::string rows;
  forEachPixel(picture, [&](int x, int, Color color) {
    if (x == 0) rows += '\0';
    rows += static_cast<char>(palette.nearest(color));
  });
  return rows;
}

bool saveInFewColors(cairo_surface_t* picture, const std::string& path) {
  const std::vector<Color> colors = chooseColors(picture);
  std::string header;
  appendNumber(header, static_cast<unsigned long>(pixelsAcross(picture)));
  appendNumber(header, static_cast<unsigned long>(pixelsDown(picture)));
  header += std::string("\x08\x03\0\0\0", 5);  // eight bits per pixel, indexed colour
  std::string png = "\x89PNG\r\n\x1a\n";
  appendChunk(png, "IHDR", header);
  appendChunk(png, "PLTE", paletteChunk(colors));
  appendChunk(png, "IDAT", packed(rowsOf(picture, colors)));
  appendChunk(png, "IEND", "");
  std::ofstream file(path, std::ios::binary);
  if (file.write(png.data(), static_cast<std::streamsize>(png.size())).flush()) return true;
  std::fprintf(stderr, "%s cannot be written\n", path.c_str());
  return false;
}

// --- the comparison ---

std::vector<Color> colorsOf(cairo_surface_t* picture) {
  std::unordered_set<Color> colors;
  Color last = 0;
  forEachPixel(picture, [&](int, int, Color color) {
    if (color == last && !colors.empty()) return;
    last = color;
    colors.insert(color);
  });
  return {colors.begin(), colors.end()};
}

// The seen picture. Each pixel takes its committed colour if that colour is within the tolerance or is the
// nearest of the palette, or nearly so. A pixel that is off by the tolerance of sameLook comes nearer to
// another colour by at most twice that much.
ui::CairoSurface inItsColors(cairo_surface_t* seen, cairo_surface_t* committed) {
  constexpr int kTolerance = 2;
  const double twiceTheTolerance = 2 * std::sqrt(3 * kTolerance * kTolerance);
  Palette palette(colorsOf(committed));
  const auto isNear = [&](Color color, Color kept) {
    if (channelDifference(color, kept) <= kTolerance) return true;
    return std::sqrt(squaredDistance(color, kept)) <= palette.distance(color) + twiceTheTolerance;
  };
  const Pixels expected(committed);
  ui::CairoSurface result = makePicture(pixelsAcross(seen), pixelsDown(seen));
  unsigned char* data = cairo_image_surface_get_data(result.get());
  const int stride = cairo_image_surface_get_stride(result.get());
  forEachPixel(seen, [&](int x, int y, Color color) {
    const Color kept = expected.at(x, y) & 0xFFFFFF;
    const std::uint32_t pixel = 0xFF000000U | (isNear(color, kept) ? kept : color);
    std::memcpy(data + y * stride + 4 * x, &pixel, sizeof pixel);
  });
  cairo_surface_mark_dirty(result.get());
  return result;
}

}  // namespace

testing::AssertionResult looksLikeInFewColors(cairo_surface_t* seen, const std::string& name) {
  return looksLike(seen, name, {saveInFewColors, inItsColors});
}

}  // namespace support
