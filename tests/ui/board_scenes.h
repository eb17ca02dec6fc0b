// board_scenes.h: tiles and boards painted for tests by either of the two paths, on the same opaque felt.
// Units: sizes in logical pixels, times in seconds.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ui/context.h"
#include "ui/handles.h"

namespace test {

constexpr unsigned kFelt = 0x1F5A41;

enum class Path { Cairo, Textures };
std::string nameOf(Path path);
// Names the variants of a test that runs by either path.
std::string pathName(const testing::TestParamInfo<Path>& variant);

// What one frame of a scene shows. `scale` is device pixels per logical pixel.
struct Frame {
  int w = 0;
  int h = 0;
  double time = 0;
  double scale = 1;
};
// On the texture path the picture shows the copies alone, as the renderer has them; anything drawn with cairo
// there fails the test.
ui::CairoSurface paintScene(Path path, const Frame& frame, const std::function<void(ui::Ctx&)>& draw);

// Box of the pixels that are not bare felt, in device pixels; empty for bare felt.
struct Ink {
  int left = 0;
  int top = 0;
  int right = 0;  // one beyond
  int bottom = 0;

  int w() const { return right - left; }
  int h() const { return bottom - top; }
  bool empty() const { return w() == 0; }
  double centreX() const { return (left + right) / 2.0; }
  double centreY() const { return (top + bottom) / 2.0; }
};
Ink inkOf(cairo_surface_t* picture);

// Whether the texture cache holds a picture under this key. Where it does not, an empty one is put there.
bool isCached(const std::string& key, int w, int h);

// How opaque copies of the texture are, 0 to 255.
int opacityOf(SDL_Texture* texture);

// Up to rounding.
void expectRect(const ui::Rect& rect, double x, double y, double w, double h);

}  // namespace test
