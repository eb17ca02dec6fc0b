// gpu.h: the texture cache. A picture is painted with cairo once, uploaded, and only copied from then on;
// beside it a small profiler that sums the times of a frame's sections. Knows SDL and cairo, not what the
// pictures show. Units: texture sizes in device pixels; places on the window in logical pixels, turned into
// device pixels by the scale. Main thread only.
//
// Every function may be called at any time. Without a renderer (before gpuInit, after gpuShutdown) there are
// no textures: requests answer null and blits do nothing, so that a caller has one question to ask: is it
// null?
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

// Begins to work with the renderer, which must outlive the cache or be followed by gpuShutdown. Whatever was
// cached for an earlier one is dropped. Textures are blended as premultiplied; where the renderer cannot, one
// line on standard error says so, and they are uploaded with straight alpha and blended normally.
void gpuInit(SDL_Renderer* renderer);
// Destroys all textures and forgets the renderer: call it while the renderer still lives.
void gpuShutdown();
SDL_Renderer* gpuRenderer();
// The blend mode that gpuInit chose, for premultiplied textures outside the cache.
SDL_BlendMode gpuBlendMode();
// Whether textures hold premultiplied pixels, as cairo's do. Otherwise they are turned into straight ones on
// their way: a colour is divided by its opacity, the transparent ones stay 0.
bool gpuIsPremultiplied();
void unpremultiply(std::span<std::uint32_t> pixels);

// Starts a frame: both counts are back at 0, and what is used from now on counts as younger.
void gpuBeginFrame();
// Blits issued since the frame began.
int gpuDrawCalls();
// Pictures that gpuTexture has painted since the frame began: none in a frame that shows nothing new.
int gpuPaints();

// Device pixels per logical pixel; 1 when `scale` is not positive. Nothing is dropped: keys hold device
// sizes, so pictures of the old scale are asked for no longer and age out.
void gpuSetScale(double scale);
double gpuScale();
// Device pixels that a picture of this logical length needs: rounded up, so that nothing is cut off at a
// scale of 1.25 or 1.5. An excess of mere rounding error does not count, or a window's picture could come out
// a pixel larger than the window.
int gpuPixels(double logicalLength);

// The picture under the key, painted by `paint` the first time. `key` must name everything the pixels depend
// on, the device size w × h included: a kind, then the parameters, joined by '|'. `paint` draws in logical
// pixels on a transparent picture and gets `user` as it is. The texture stays valid until the next request.
// Null, and nothing kept, when w or h is below 1 or the picture cannot be made. A new picture that finds more
// than 400 in the cache first drops the third that was not used for longest.
SDL_Texture* gpuTexture(const std::string& key, int w, int h, void (*paint)(cairo_t*, void*), void* user);

// The same for one of many pictures that a frame may ask for at once, as a zoom does. Painting them all would
// hold the frame up: once it has painted kMostPaints pictures, one that is there under a key beginning with
// `family` stands in for a new one, the one used last, and the frame owes the player the right one.
inline constexpr int kMostPaints = 6;
SDL_Texture* gpuTextureOrStandIn(const std::string& key, std::string_view family, int w, int h,
                                 void (*paint)(cairo_t*, void*), void* user);
// Whether anything stood in since the frame began: then another frame should follow.
bool gpuOwesPictures();

// The same for a picture that the renderer itself paints: during `paint` blits go into the texture, which
// holds premultiplied pixels whatever the others hold. A picture that is there already is painted again only
// if `redraw` says so, and grows old like any other even when it is used.
SDL_Texture* gpuRenderTarget(const std::string& key, int w, int h, void (*paint)(void*), void* user,
                             bool redraw);

// Draws a picture into the rectangle: with a renderer it is painted the first time and copied from then on,
// without one it is drawn on `cr`, where it looks the same. It begins on a whole device pixel and is as many
// of them large, rounded up; `paint` fills (0, 0) to the size that it is told. `key` as above, but for the
// size and the scale: a picture of another size takes the old one's place, so that dragging the window's edge
// leaves none behind. What is copied lies under all that cairo draws in the same frame, and is cut by GpuClip
// alone.
using PaintPicture = std::function<void(cairo_t* cr, double w, double h)>;
void gpuPicture(cairo_t* cr, const std::string& key, const Rect& rect, const PaintPicture& paint);

// Drops the pictures whose key begins with `prefix` and does not end in `keepSuffix`: large ones of a size
// that is not shown any more need not wait for their turn to age out.
void gpuDropTextures(std::string_view prefix, std::string_view keepSuffix);
inline constexpr std::string_view kKeepNone = "|";  // no key ends so

// Draws the whole texture into the logical rectangle; `alpha` is its opacity, 0 to 1. Null draws nothing.
void gpuBlit(SDL_Texture* texture, double x, double y, double w, double h, double alpha);
// The same centred on (cx, cy) and turned clockwise about that point.
void gpuBlitRotated(SDL_Texture* texture, double cx, double cy, double w, double h, double angleDegrees,
                    double alpha);

// While it lives blits are seen in the logical rectangle only, in whole device pixels: the start rounded
// down, the size up; of two the inner one counts. Afterwards they are cut as they were before.
class GpuClip {
 public:
  explicit GpuClip(const Rect& rect);
  GpuClip(const GpuClip&) = delete;
  GpuClip& operator=(const GpuClip&) = delete;
  ~GpuClip();

 private:
  std::optional<SDL_Rect> found;
};

// The profiler works when the environment variable VESKARA_STATS exists; otherwise these cost a test of a
// flag.
void profBegin(std::string_view name);
void profEnd(std::string_view name);
// " name mean" in milliseconds for each section that ended since the last report, in the order of their
// names; the sums start anew. Empty when the profiler is off.
std::string profReport();

}  // namespace ui
