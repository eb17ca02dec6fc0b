// The floor of start_bench: shows one frame with one text and one felt in a window like the game's.

#include <SDL.h>

#include "rules/table_themes.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/handles.h"

namespace {

constexpr int kW = 1100;
constexpr int kH = 760;

}  // namespace

int main() {
  if (SDL_Init(SDL_INIT_TIMER | SDL_INIT_VIDEO) != 0) return 1;
  const ui::SdlWindow window(
      SDL_CreateWindow("", SDL_WINDOWPOS_CENTERED, SDL_WINDOWPOS_CENTERED, kW, kH, SDL_WINDOW_RESIZABLE));
  const ui::SdlRenderer renderer(SDL_CreateRenderer(window.get(), -1, SDL_RENDERER_SOFTWARE));
  const ui::CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, kW, kH));
  const ui::CairoContext cr(cairo_create(surface.get()));
  ui::Ctx ctx;
  ctx.cr = cr.get();
  ctx.w = kW;
  ctx.h = kH;
  ui::drawFelt(ctx, mj::tableThemeForLevel(1), true);
  ui::drawText(cr.get(), 100, 100, "Quenlock's Mahjong", {.size = 40, .color = 0xFFFFFF});
  cairo_surface_flush(surface.get());

  const ui::SdlTexture texture(
      SDL_CreateTexture(renderer.get(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, kW, kH));
  SDL_UpdateTexture(texture.get(), nullptr, cairo_image_surface_get_data(surface.get()),
                    cairo_image_surface_get_stride(surface.get()));
  SDL_RenderCopy(renderer.get(), texture.get(), nullptr, nullptr);
  SDL_RenderPresent(renderer.get());
  return 0;
}
