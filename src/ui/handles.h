// handles.h: owning pointers for objects of cairo, pango and SDL. Each is a unique_ptr that releases its
// object with the library's own function. Knows nothing of what is drawn.
#pragma once

#include <SDL.h>
#include <cairo.h>
#include <pango/pango.h>

#include <memory>

namespace ui {

// A deleter that calls `release`, the library's destroy function.
template <auto release>
struct ReleaseWith {
  template <class Object>
  void operator()(Object* object) const {
    release(object);
  }
};

// cairo never returns null: a failed object carries its error, which its status function returns.
using CairoSurface = std::unique_ptr<cairo_surface_t, ReleaseWith<cairo_surface_destroy>>;
using CairoContext = std::unique_ptr<cairo_t, ReleaseWith<cairo_destroy>>;
using CairoPattern = std::unique_ptr<cairo_pattern_t, ReleaseWith<cairo_pattern_destroy>>;
using CairoPath = std::unique_ptr<cairo_path_t, ReleaseWith<cairo_path_destroy>>;

using TextLayout = std::unique_ptr<PangoLayout, ReleaseWith<g_object_unref>>;
using TextAttributes = std::unique_ptr<PangoAttrList, ReleaseWith<pango_attr_list_unref>>;
using FontDescription = std::unique_ptr<PangoFontDescription, ReleaseWith<pango_font_description_free>>;

// SDL returns null on failure. Destroy a texture before its renderer, and a renderer before its window.
using SdlTexture = std::unique_ptr<SDL_Texture, ReleaseWith<SDL_DestroyTexture>>;
using SdlRenderer = std::unique_ptr<SDL_Renderer, ReleaseWith<SDL_DestroyRenderer>>;
using SdlWindow = std::unique_ptr<SDL_Window, ReleaseWith<SDL_DestroyWindow>>;
using SdlCursor = std::unique_ptr<SDL_Cursor, ReleaseWith<SDL_FreeCursor>>;
using SdlSurface = std::unique_ptr<SDL_Surface, ReleaseWith<SDL_FreeSurface>>;

}  // namespace ui
