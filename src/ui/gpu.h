// gpu.h: the texture cache. Paints a picture with cairo once, uploads it, and only copies it from then on.
// Also a small profiler that times the sections of a frame. Knows SDL and cairo, not what the pictures show.
// Units: texture sizes in device pixels; places on the window in logical pixels, converted by the scale. Main
// thread only.
//
// Every function may be called at any time. Without a renderer (before gpuInit, after gpuShutdown) there are
// no textures: requests return null and blits do nothing. A caller only needs to check for null.
#pragma once

#include <SDL_blendmode.h>
#include <SDL_rect.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ui/context.h"

struct SDL_Renderer;
struct SDL_Texture;

namespace ui {

// Starts using the renderer, which must outlive the cache or be followed by gpuShutdown. Drops everything
// cached for an earlier renderer. Textures are blended as premultiplied. If the renderer cannot do that, a
// line on standard error says so, and textures are uploaded with straight alpha and blended normally.
void gpuInit(SDL_Renderer* renderer);
// Destroys all textures and forgets the renderer. Call it before the renderer is destroyed.
void gpuShutdown();
SDL_Renderer* gpuRenderer();
// The blend mode that gpuInit chose, for premultiplied textures outside the cache.
SDL_BlendMode gpuBlendMode();
// Whether textures hold premultiplied pixels, as cairo's do. Otherwise unpremultiply converts the pixels
// before the upload: it divides each colour by its opacity, and transparent pixels stay 0.
bool gpuIsPremultiplied();
void unpremultiply(std::span<std::uint32_t> pixels);

// Starts a frame: resets both counts. Textures used from now on count as newer.
void gpuBeginFrame();
// Blits issued since the frame began.
int gpuDrawCalls();
// Pictures painted by gpuTexture since the frame began: 0 in a frame that shows nothing new.
int gpuPaints();

// Sets the device pixels per logical pixel; 1 if `scale` is not positive. Drops nothing: keys contain device
// sizes, so pictures of the old scale are no longer requested and age out.
void gpuSetScale(double scale);
double gpuScale();
// Device pixels needed for a picture of this logical length, rounded up so that nothing is cut off at a scale
// of 1.25 or 1.5. Ignores rounding errors, which could make a window's picture a pixel larger than the
// window.
int gpuPixels(double logicalLength);

// Returns the picture under the key; `paint` paints it the first time. `key` must name everything the pixels
// depend on, including the device size w × h: a kind, then the parameters, joined by '|'. `paint` draws in
// logical pixels on a transparent picture and gets `user` unchanged. The texture stays valid until the next
// request. Returns null and keeps nothing if w or h is below 1 or the picture cannot be made. If the cache
// holds more than 400 pictures, a new one first evicts the least recently used third.
SDL_Texture* gpuTexture(const std::string& key, int w, int h, void (*paint)(cairo_t*, void*), void* user);

// The same for one of many pictures that a frame may need at once, as after a zoom. Painting them all would
// delay the frame. Once it has painted kMostPaints pictures, the most recently used picture whose key begins
// with `family` stands in for a new one, and the frame owes the player the right one.
inline constexpr int kMostPaints = 6;
SDL_Texture* gpuTextureOrStandIn(const std::string& key, std::string_view family, int w, int h,
                                 void (*paint)(cairo_t*, void*), void* user);
// Whether a picture stood in since the frame began. Then another frame should follow.
bool gpuOwesPictures();

// The same for a picture that the renderer itself paints: during `paint`, blits go into the texture, which
// always holds premultiplied pixels. A cached picture is painted again only if `redraw` is true. Requesting
// it does not make it count as newer.
SDL_Texture* gpuRenderTarget(const std::string& key, int w, int h, void (*paint)(void*), void* user,
                             bool redraw);

// Draws a picture into the rectangle. With a renderer it is painted the first time and copied from then on;
// otherwise, or if its texture cannot be made, it is drawn on `cr` and looks the same. It begins on a whole
// device pixel, and its size is rounded up to whole device pixels; `paint` fills (0, 0) to the size it is
// given. `key` as for gpuTexture, but without size and scale: a picture of another size replaces the old one,
// so that resizing the window leaves none behind. A copy lies below everything that cairo draws in the same
// frame, and only GpuClip clips it.
using PaintPicture = std::function<void(cairo_t* cr, double w, double h)>;
void gpuPicture(cairo_t* cr, const std::string& key, const Rect& rect, const PaintPicture& paint);

// Drops the pictures whose key begins with `prefix` and does not end in `keepSuffix`, so that large pictures
// of an old size need not wait to age out.
void gpuDropTextures(std::string_view prefix, std::string_view keepSuffix);
inline constexpr std::string_view kKeepNone = "|";  // no key ends in this

// Draws the whole texture into the logical rectangle; `alpha` is its opacity, 0 to 1. Draws nothing if it is
// null.
void gpuBlit(SDL_Texture* texture, double x, double y, double w, double h, double alpha);
// The same, centred on (cx, cy) and rotated clockwise about that point.
void gpuBlitRotated(SDL_Texture* texture, double cx, double cy, double w, double h, double angleDegrees,
                    double alpha);

// While it lives, blits are clipped to the logical rectangle in whole device pixels: the position rounded
// down, the size rounded up. An inner clip replaces the outer one and restores it when destroyed.
class GpuClip {
 public:
  explicit GpuClip(const Rect& rect);
  GpuClip(const GpuClip&) = delete;
  GpuClip& operator=(const GpuClip&) = delete;
  ~GpuClip();

 private:
  std::optional<SDL_Rect> found;
};

// The profiler runs if the environment variable VESKARA_STATS exists; otherwise these calls only test a flag.
void profBegin(std::string_view name);
void profEnd(std::string_view name);
// Returns " name mean" in milliseconds for each section that ended since the last report, ordered by name,
// and resets the sums. Empty if the profiler is off.
std::string profReport();

}  // namespace ui
