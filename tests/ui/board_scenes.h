// board_scenes.h: paints tiles and boards for tests, by either of the two paths, on the same opaque felt.
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
// Names the variants of a test that runs on both paths.
std::string pathName(const testing::TestParamInfo<Path>& variant);

// One frame of a scene. `scale` is device pixels per logical pixel.
struct Frame {
  int w = 0;
  int h = 0;
  double time = 0;
  double scale = 1;
};
// Paints the frame. On the texture path the picture shows only what the renderer copied; anything drawn with
// cairo fails the test.
ui::CairoSurface paintScene(Path path, const Frame& frame, const std::function<void(ui::Ctx&)>& draw);

// The box of all pixels that are not bare felt, in device pixels. Empty if there are none.
struct Ink {
  int left = 0;
  int top = 0;
  int right = 0;  // exclusive, as is `bottom`
  int bottom = 0;

  int w() const { return right - left; }
  int h() const { return bottom - top; }
  bool empty() const { return w() == 0; }
  double centreX() const { return (left + right) / 2.0; }
  double centreY() const { return (top + bottom) / 2.0; }
};
Ink inkOf(cairo_surface_t* picture);

// Whether the texture cache holds a picture under this key. If not, adds an empty one.
bool isCached(const std::string& key, int w, int h);

// The opacity of the texture's copies, 0 to 255.
int opacityOf(SDL_Texture* texture);

// Expects these values, up to rounding errors.
void expectRect(const ui::Rect& rect, double x, double y, double w, double h);

}  // namespace test
