#include "ui/gpu.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <utility>
#include <vector>

#include "ui/handles.h"

namespace ui {
namespace {

constexpr std::size_t kMaxEntries = 400;
constexpr std::size_t kEvictedPart = 3;  // a third at once, so that the sort is rare
// Window sizes are divided by the scale and multiplied again. The error of that is far smaller than this.
constexpr double kRoundingError = 1e-6;

struct Entry {
  SdlTexture texture;
  int w = 0;
  int h = 0;
  std::int64_t lastUsed = 0;  // frame number
};

using Entries = std::map<std::string, Entry, std::less<>>;

struct Cache {
  SDL_Renderer* renderer = nullptr;
  double scale = 1;
  int drawCalls = 0;
  int paints = 0;
  bool owesPictures = false;
  std::int64_t frame = 0;
  Entries entries;
  SDL_BlendMode blendMode = SDL_BLENDMODE_BLEND;
};

Cache& cache() {
  // Never destroyed: at exit SDL is already gone, and its textures with it.
  static auto& instance = *new Cache;
  return instance;
}

SDL_BlendMode premultipliedBlendMode() {
  return SDL_ComposeCustomBlendMode(SDL_BLENDFACTOR_ONE, SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA,
                                    SDL_BLENDOPERATION_ADD, SDL_BLENDFACTOR_ONE,
                                    SDL_BLENDFACTOR_ONE_MINUS_SRC_ALPHA, SDL_BLENDOPERATION_ADD);
}

SDL_BlendMode chooseBlendMode(SDL_Renderer* renderer) {
  const SDL_BlendMode premultiplied = premultipliedBlendMode();
  const SdlTexture probe(
      SDL_CreateTexture(renderer, SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STATIC, 1, 1));
  if (!probe || SDL_SetTextureBlendMode(probe.get(), premultiplied) == 0) return premultiplied;
  std::fputs("[gpu] kein vormultipliziertes Mischen — nehme das normale\n", stderr);
  return SDL_BLENDMODE_BLEND;
}

// Returns the entry if it has this size. An entry of another size is stale: evicts it and returns null.
Entry* findOrDrop(Entries& entries, const std::string& key, int w, int h) {
  const auto found = entries.find(key);
  if (found == entries.end()) return nullptr;
  if (found->second.w == w && found->second.h == h) return &found->second;
  entries.erase(found);
  return nullptr;
}

// Returns the most recently used entry of the family, or null.
Entry* youngestOf(Entries& entries, std::string_view family) {
  Entry* youngest = nullptr;
  for (auto it = entries.lower_bound(family); it != entries.end() && it->first.starts_with(family); ++it) {
    if (youngest == nullptr || it->second.lastUsed > youngest->lastUsed) youngest = &it->second;
  }
  return youngest;
}

void evictOldest(Entries& entries) {
  if (entries.size() <= kMaxEntries) return;
  std::vector<std::pair<std::int64_t, Entries::iterator>> byAge;
  byAge.reserve(entries.size());
  for (auto it = entries.begin(); it != entries.end(); ++it) byAge.emplace_back(it->second.lastUsed, it);
  // Stable: entries used in the same frame stay in key order.
  std::stable_sort(byAge.begin(), byAge.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  byAge.resize(byAge.size() / kEvictedPart);
  for (const auto& [lastUsed, entry] : byAge) entries.erase(entry);
}

SDL_Texture* store(Cache& state, const std::string& key, Entry entry) {
  return state.entries.insert_or_assign(key, std::move(entry)).first->second.texture.get();
}

// Returns null if cairo cannot make the surface or the painting fails.
CairoSurface paintSurface(int w, int h, double scale, void (*paint)(cairo_t*, void*), void* user) {
  CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
  if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_surface_set_device_scale(surface.get(), scale, scale);
  const CairoContext context(cairo_create(surface.get()));
  paint(context.get(), user);
  if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  cairo_surface_flush(surface.get());
  return surface;
}

// Returns null on failure.
SdlTexture createTexture(const Cache& state, SDL_TextureAccess access, int w, int h) {
  SdlTexture texture(SDL_CreateTexture(state.renderer, SDL_PIXELFORMAT_ARGB8888, access, w, h));
  if (texture && SDL_SetTextureBlendMode(texture.get(), state.blendMode) != 0) return nullptr;
  return texture;
}

// Returns null on failure. If the renderer needs straight alpha, converts the surface's own pixels.
SdlTexture upload(const Cache& state, cairo_surface_t* surface, int w, int h) {
  SdlTexture texture = createTexture(state, SDL_TEXTUREACCESS_STATIC, w, h);
  if (!texture) return nullptr;
  unsigned char* pixels = cairo_image_surface_get_data(surface);
  const int stride = cairo_image_surface_get_stride(surface);
  if (!gpuIsPremultiplied()) {
    const auto count = static_cast<std::size_t>(stride / 4) * static_cast<std::size_t>(h);
    unpremultiply({reinterpret_cast<std::uint32_t*>(pixels), count});
  }
  if (SDL_UpdateTexture(texture.get(), nullptr, pixels, stride) != 0) return nullptr;
  return texture;
}

// Returns false if the renderer cannot switch to the texture, clear it or switch back.
bool paintTarget(SDL_Renderer* renderer, SDL_Texture* texture, void (*paint)(void*), void* user) {
  SDL_Texture* previous = SDL_GetRenderTarget(renderer);
  if (SDL_SetRenderTarget(renderer, texture) != 0) return false;
  bool done = SDL_SetRenderDrawColor(renderer, 0, 0, 0, 0) == 0 && SDL_RenderClear(renderer) == 0;
  if (done) paint(user);
  // A renderer that does not switch back would paint the rest of the frame into the texture. On `false` the
  // texture is destroyed, and SDL returns to the window.
  done = SDL_SetRenderTarget(renderer, previous) == 0 && done;
  return done;
}

SDL_Texture* repaint(Cache& state, const std::string& key, void (*paint)(void*), void* user) {
  // Keep the entry outside the map: `paint` requests textures, which may evict entries, but not this one.
  auto node = state.entries.extract(key);
  if (!paintTarget(state.renderer, node.mapped().texture.get(), paint, user)) return nullptr;
  return store(state, key, std::move(node.mapped()));
}

// Premultiplied pixels fade only if the colour is modulated as well as the alpha.
bool setOpacity(SDL_Texture* texture, double alpha) {
  const auto a = static_cast<Uint8>(std::floor(std::clamp(alpha, 0.0, 1.0) * 255 + 0.5));
  if (SDL_SetTextureAlphaMod(texture, a) != 0) return false;
  return !gpuIsPremultiplied() || SDL_SetTextureColorMod(texture, a, a, a) == 0;
}

std::uint32_t straightOf(std::uint32_t pixel) {
  const std::uint32_t alpha = pixel >> 24;
  if (alpha == 0 || alpha == 255) return pixel;
  std::uint32_t straight = alpha << 24;
  for (const unsigned shift : {0U, 8U, 16U}) {
    const std::uint32_t channel = pixel >> shift & 0xFFU;
    straight |= std::min((channel * 255 + alpha / 2) / alpha, std::uint32_t{255}) << shift;
  }
  return straight;
}

struct PictureJob {
  const PaintPicture& paint;
  double w;
  double h;
};

void paintPictureJob(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const PictureJob*>(user);
  job.paint(cr, job.w, job.h);
}

void drawPicture(cairo_t* cr, double x, double y, const PictureJob& job) {
  const double scale = cache().scale;
  cairo_save(cr);
  cairo_translate(cr, std::round(x * scale) / scale, std::round(y * scale) / scale);
  job.paint(cr, job.w, job.h);
  cairo_restore(cr);
}

int toDevice(double logical) { return static_cast<int>(std::lround(logical * cache().scale)); }

struct ProfEntry {
  double start = 0;
  double total = 0;
  int count = 0;
};

using ProfEntries = std::map<std::string, ProfEntry, std::less<>>;

ProfEntries& profEntries() {
  static ProfEntries entries;
  return entries;
}

bool profiling() {
  static const bool on = std::getenv("VESKARA_STATS") != nullptr;
  return on;
}

double profNow() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double>(now).count();
}

ProfEntry& profEntry(std::string_view name) {
  const auto found = profEntries().find(name);
  if (found != profEntries().end()) return found->second;
  return profEntries()[std::string(name)];
}

}  // namespace

void gpuInit(SDL_Renderer* renderer) {
  gpuShutdown();
  cache().renderer = renderer;
  if (renderer != nullptr) cache().blendMode = chooseBlendMode(renderer);
}

void gpuShutdown() {
  cache().entries.clear();
  cache().renderer = nullptr;
}

SDL_BlendMode gpuBlendMode() { return cache().blendMode; }

bool gpuIsPremultiplied() { return cache().blendMode != SDL_BLENDMODE_BLEND; }

void unpremultiply(std::span<std::uint32_t> pixels) {
  // Neighbouring pixels are often equal, as in a veil.
  std::uint32_t last = 0;
  std::uint32_t lastStraight = 0;
  for (std::uint32_t& pixel : pixels) {
    if (pixel != last) {
      last = pixel;
      lastStraight = straightOf(pixel);
    }
    pixel = lastStraight;
  }
}

SDL_Renderer* gpuRenderer() { return cache().renderer; }

void gpuBeginFrame() {
  cache().drawCalls = 0;
  cache().paints = 0;
  cache().owesPictures = false;
  ++cache().frame;
}

int gpuDrawCalls() { return cache().drawCalls; }

int gpuPaints() { return cache().paints; }

void gpuSetScale(double scale) { cache().scale = scale > 0 ? scale : 1; }

double gpuScale() { return cache().scale; }

int gpuPixels(double logicalLength) {
  return static_cast<int>(std::ceil(logicalLength * cache().scale - kRoundingError));
}

SDL_Texture* gpuTexture(const std::string& key, int w, int h, void (*paint)(cairo_t*, void*), void* user) {
  Cache& state = cache();
  if (state.renderer == nullptr || w < 1 || h < 1) return nullptr;
  if (Entry* known = findOrDrop(state.entries, key, w, h)) {
    known->lastUsed = state.frame;
    return known->texture.get();
  }
  evictOldest(state.entries);
  ++state.paints;
  const CairoSurface surface = paintSurface(w, h, state.scale, paint, user);
  if (!surface) return nullptr;
  SdlTexture texture = upload(state, surface.get(), w, h);
  if (!texture) return nullptr;
  return store(state, key, {std::move(texture), w, h, state.frame});
}

SDL_Texture* gpuTextureOrStandIn(const std::string& key, std::string_view family, int w, int h,
                                 void (*paint)(cairo_t*, void*), void* user) {
  Cache& state = cache();
  if (state.paints >= kMostPaints && !state.entries.contains(key)) {
    if (Entry* standIn = youngestOf(state.entries, family)) {
      standIn->lastUsed = state.frame;
      state.owesPictures = true;
      return standIn->texture.get();
    }
  }
  return gpuTexture(key, w, h, paint, user);
}

bool gpuOwesPictures() { return cache().owesPictures; }

SDL_Texture* gpuRenderTarget(const std::string& key, int w, int h, void (*paint)(void*), void* user,
                             bool redraw) {
  Cache& state = cache();
  if (state.renderer == nullptr || w < 1 || h < 1) return nullptr;
  if (const Entry* known = findOrDrop(state.entries, key, w, h))
    return redraw ? repaint(state, key, paint, user) : known->texture.get();
  SdlTexture texture = createTexture(state, SDL_TEXTUREACCESS_TARGET, w, h);
  if (!texture || !paintTarget(state.renderer, texture.get(), paint, user)) return nullptr;
  return store(state, key, {std::move(texture), w, h, state.frame});
}

void gpuPicture(cairo_t* cr, const std::string& key, const Rect& rect, const PaintPicture& paint) {
  const double scale = cache().scale;
  const int w = gpuPixels(rect.w);
  const int h = gpuPixels(rect.h);
  if (w < 1 || h < 1) return;
  PictureJob job{paint, w / scale, h / scale};
  if (SDL_Texture* texture = gpuTexture(key + "|x" + std::to_string(scale), w, h, paintPictureJob, &job)) {
    gpuBlit(texture, rect.x, rect.y, job.w, job.h, 1);
  } else {
    drawPicture(cr, rect.x, rect.y, job);
  }
}

void gpuDropTextures(std::string_view prefix, std::string_view keepSuffix) {
  Entries& entries = cache().entries;
  auto it = entries.lower_bound(prefix);
  while (it != entries.end() && it->first.starts_with(prefix))
    it = it->first.ends_with(keepSuffix) ? std::next(it) : entries.erase(it);
}

void gpuBlit(SDL_Texture* texture, double x, double y, double w, double h, double alpha) {
  Cache& state = cache();
  if (texture == nullptr || state.renderer == nullptr || !setOpacity(texture, alpha)) return;
  const SDL_Rect target = {toDevice(x), toDevice(y), toDevice(w), toDevice(h)};
  // If a copy fails, the picture is missing for one frame. Nothing better can be done.
  SDL_RenderCopy(state.renderer, texture, nullptr, &target);
  ++state.drawCalls;
}

void gpuBlitRotated(SDL_Texture* texture, double cx, double cy, double w, double h, double angleDegrees,
                    double alpha) {
  Cache& state = cache();
  if (texture == nullptr || state.renderer == nullptr || !setOpacity(texture, alpha)) return;
  const SDL_Rect target = {toDevice(cx - 0.5 * w), toDevice(cy - 0.5 * h), toDevice(w), toDevice(h)};
  SDL_RenderCopyEx(state.renderer, texture, nullptr, &target, angleDegrees, nullptr, SDL_FLIP_NONE);
  ++state.drawCalls;
}

GpuClip::GpuClip(const Rect& rect) {
  const Cache& state = cache();
  if (state.renderer == nullptr) return;
  const auto down = [&](double length) { return static_cast<int>(std::floor(length * state.scale)); };
  const auto up = [&](double length) { return static_cast<int>(std::ceil(length * state.scale)); };
  if (SDL_RenderIsClipEnabled(state.renderer) != SDL_FALSE)
    SDL_RenderGetClipRect(state.renderer, &found.emplace());
  const SDL_Rect clip = {down(rect.x), down(rect.y), up(rect.w), up(rect.h)};
  // If this fails, pictures reach beyond the rectangle, which is harmless.
  SDL_RenderSetClipRect(state.renderer, &clip);
}

GpuClip::~GpuClip() {
  if (gpuRenderer() != nullptr) SDL_RenderSetClipRect(gpuRenderer(), found ? &*found : nullptr);
}

void profBegin(std::string_view name) {
  if (profiling()) profEntry(name).start = profNow();
}

void profEnd(std::string_view name) {
  if (!profiling()) return;
  ProfEntry& entry = profEntry(name);
  ++entry.count;
  entry.total += profNow() - entry.start;
}

std::string profReport() {
  std::string report;
  if (!profiling()) return report;
  for (auto& [name, entry] : profEntries()) {
    if (entry.count == 0) continue;
    std::array<char, 32> mean{};
    std::snprintf(mean.data(), mean.size(), " %.1f", 1000 * entry.total / entry.count);
    report += ' ' + name + mean.data();
    entry.total = 0;
    entry.count = 0;
  }
  return report;
}

}  // namespace ui
