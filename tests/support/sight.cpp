#include "support/sight.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "support/picture.h"

namespace support {
namespace {

constexpr int kChannels = 3;

// Matrices for linear red, green and blue, by rows. The three kinds of colour blindness are those of Machado,
// Oliveira and Fernandes (2009) at full severity.
constexpr double kSeen[][kChannels][kChannels] = {
    {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}},
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}},
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}},
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}},
    {{0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}, {0.2126, 0.7152, 0.0722}},
};

double toLinear(double channel) {
  const double v = channel / 255;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double fromLinear(double light) {
  const double v = std::clamp(light, 0.0, 1.0);
  return 255 * (v <= 0.0031308 ? 12.92 * v : 1.055 * std::pow(v, 1 / 2.4) - 0.055);
}

std::vector<double> gaussian(double sigma) {
  const int reach = static_cast<int>(std::ceil(3 * sigma));
  std::vector<double> weights;
  double sum = 0;
  for (int i = -reach; i <= reach; ++i) {
    weights.push_back(std::exp(-i * i / (2 * sigma * sigma)));
    sum += weights.back();
  }
  for (double& weight : weights) weight /= sum;
  return weights;
}

// Blurs one line of `count` pixels, `stride` apart, and writes every `step`th one. Beyond its ends the line
// repeats its first and last pixel.
void blurLine(const float* line, int count, int stride, const std::vector<double>& weights, int step,
              float* out, int outStride) {
  const int reach = static_cast<int>(weights.size()) / 2;
  for (int at = 0; at < count; at += step) {
    double sum = 0;
    for (int i = -reach; i <= reach; ++i) {
      sum += weights[static_cast<std::size_t>(i + reach)] * line[std::clamp(at + i, 0, count - 1) * stride];
    }
    *out = static_cast<float>(sum);
    out += outStride;
  }
}

Samples samplesOf(cairo_surface_t* picture, int w, int h) {
  const Pixels pixels(picture);
  Samples samples;
  for (int y = 0; y < h; ++y) {
    for (int x = 0; x < w; ++x) {
      const std::uint32_t pixel = pixels.at(x, y);
      for (const int shift : {16, 8, 0}) samples.push_back(static_cast<float>(pixel >> shift & 0xFF));
    }
  }
  return samples;
}

}  // namespace

Samples blurred(cairo_surface_t* picture, double blur) {
  const int w = cairo_image_surface_get_width(picture);
  const int h = cairo_image_surface_get_height(picture);
  const int step = std::max(1, static_cast<int>(blur));
  const int columns = (w + step - 1) / step;
  const int rows = (h + step - 1) / step;
  const std::vector<double> weights = gaussian(blur);
  const Samples sharp = samplesOf(picture, w, h);
  Samples wide(static_cast<std::size_t>(columns * h * kChannels));
  for (int y = 0; y < h; ++y) {
    for (int c = 0; c < kChannels; ++c) {
      blurLine(&sharp[static_cast<std::size_t>(y * w * kChannels + c)], w, kChannels, weights, step,
               &wide[static_cast<std::size_t>(y * columns * kChannels + c)], kChannels);
    }
  }
  const int line = columns * kChannels;
  Samples result(static_cast<std::size_t>(line * rows));
  for (int i = 0; i < line; ++i) {
    blurLine(&wide[static_cast<std::size_t>(i)], h, line, weights, step, &result[static_cast<std::size_t>(i)],
             line);
  }
  return result;
}

Samples seenBy(Sight sight, const Samples& samples) {
  if (sight == Sight::Full) return samples;
  const auto& matrix = kSeen[static_cast<int>(sight)];
  Samples seen;
  seen.reserve(samples.size());
  for (std::size_t i = 0; i < samples.size(); i += kChannels) {
    const double red = toLinear(samples[i]);
    const double green = toLinear(samples[i + 1]);
    const double blue = toLinear(samples[i + 2]);
    for (const auto& row : matrix) {
      seen.push_back(static_cast<float>(fromLinear(row[0] * red + row[1] * green + row[2] * blue)));
    }
  }
  return seen;
}

double meanDifference(const Samples& a, const Samples& b, double enough) {
  const auto count = static_cast<double>(a.size());
  double sum = 0;
  for (std::size_t i = 0; i < a.size() && sum <= enough * count; ++i) sum += std::abs(a[i] - b[i]);
  return sum / count;
}

double luminance(std::uint32_t color) {
  return 0.2126 * toLinear(color >> 16 & 0xFF) + 0.7152 * toLinear(color >> 8 & 0xFF) +
         0.0722 * toLinear(color & 0xFF);
}

double contrast(double a, double b) { return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05); }

double lightest(cairo_surface_t* picture, double x0, double y0, double x1, double y1) {
  const Pixels pixels(picture);
  double most = 0;
  for (int y = static_cast<int>(y0); y < static_cast<int>(y1); ++y) {
    for (int x = static_cast<int>(x0); x < static_cast<int>(x1); ++x) {
      most = std::max(most, luminance(pixels.at(x, y)));
    }
  }
  return most;
}

}  // namespace support
