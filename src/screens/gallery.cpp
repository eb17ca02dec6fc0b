#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "app/app.h"
#include "resources/audio.h"
#include "resources/i18n.h"
#include "rules/levels.h"
#include "rules/table_themes.h"
#include "screens/gallery_card.h"
#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "screens/screens.h"
#include "screens/solve_picture.h"
#include "storage/storage.h"
#include "ui/draw.h"
#include "ui/felt.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/pointer_block.h"
#include "ui/tile.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr const char* kCardKey = "gallery|";  // before the keys of the cards' textures
constexpr const char* kNoSize = "|";          // no key ends so
constexpr double kHoverAlpha = 0.06;
constexpr double kFanTileW = 56;
constexpr double kFanGap = 36;  // from the foot of the middle tile to the text; the outer ones reach lower
constexpr double kTextMargin = 12;

// The page that the player chose last, in this visit or an earlier one; -1 before the first choice.
int& lastPage() {
  static int g_lastPage = -1;
  return g_lastPage;
}

bool isEmpty(const ui::Rect& rect) { return rect.w <= 0 || rect.h <= 0; }

ui::Rect common(const ui::Rect& a, const ui::Rect& b) {
  const double x = std::max(a.x, b.x);
  const double y = std::max(a.y, b.y);
  return {x, y, std::min(a.x + a.w, b.x + b.w) - x, std::min(a.y + a.h, b.y + b.h) - y};
}

// A length as long as the texture that is made for it.
double wholePixels(double length) { return ui::gpuPixels(length) / ui::gpuScale(); }

void drawEmptyPage(const ui::Ctx& ctx, const ui::Rect& area) {
  constexpr double kTextH = 24;
  const double fanH = ui::kTileAspect * kFanTileW;
  const double top = area.y + (area.h - fanH - kFanGap - kTextH) / 2;
  ui::drawTileFan(ctx.cr, ctx.w / 2, top + fanH, kFanTileW);
  ui::drawTextCentered(ctx.cr, ctx.w / 2, top + fanH + kFanGap + kTextH / 2, i18n::tr("gallery.empty"),
                       {.size = 17, .color = ui::palette::kMutedText, .maxWidth = ctx.w - 2 * kTextMargin});
}

void drawHint(const ui::Ctx& ctx) {
  ui::drawTextCentered(ctx.cr, ctx.w / 2, galleryHintY(ctx.h), i18n::tr("gallery.deleteHint"),
                       {.size = 13, .color = ui::palette::kMutedText, .maxWidth = ctx.w - 2 * kTextMargin});
}

// The solved boards as cards, ten levels a page. Each card is painted once, and copied from then on.
class Gallery : public ui::Screen {
 public:
  Gallery();
  // The pictures in the files may be others at the next visit.
  ~Gallery() override { ui::gpuDropTextures(kCardKey, kNoSize); }

  void update(ui::Ctx& ctx) override;

 private:
  struct LoadedPicture {
    int side = 0;  // for which it was loaded
    ui::CairoSurface surface;
  };
  struct CardJob {
    Gallery& gallery;
    const store::SolveEntry& entry;
    double w;
    double h;
  };

  void drawBody(ui::Ctx& ctx, double top);
  void choosePage(ui::Ctx& ctx);
  std::vector<const store::SolveEntry*> entriesOfPage() const;
  void drawCards(ui::Ctx& ctx, const std::vector<const store::SolveEntry*>& entries, const GalleryGrid& grid);
  void drawCard(const ui::Ctx& ctx, const store::SolveEntry& entry, const ui::Rect& rect);
  void cardInput(const ui::Ctx& ctx, const store::SolveEntry& entry, const ui::Rect& card,
                 const ui::Rect& seen);
  void confirmDelete(ui::Ctx& ctx);

  CardPicture pictureOf(const store::SolveEntry& entry, int side);
  static void paintCardJob(cairo_t* cr, void* user);

  std::vector<store::SolveEntry> solves;
  int progressLevel;
  int page;
  double scroll = 0;
  std::string pendingDelete;
  bool confirmOpen = false;

  // By the entries' ids, each from its first showing on.
  std::map<std::string, LoadedPicture> pictures;
  std::map<std::string, mj::GameState> boards;  // of those without a picture
};

Gallery::Gallery()
    : solves(store::listSolves()),
      progressLevel(store::loadProgress().currentLevel),
      page(lastPage() >= 0 ? lastPage() : pageOf(progressLevel)) {}

void Gallery::update(ui::Ctx& ctx) {
  ui::drawFelt(ctx, mj::tableThemeForStage(page), false);
  const bool asking = confirmOpen;
  {
    const ui::PointerBlock block(ctx, asking);
    const bool back = listHeader(ctx, i18n::tr("gallery.headline"));
    if (back && !asking) return ui::Game::instance().pop();
    drawBody(ctx, kPagedListTop);
  }
  if (asking) confirmDelete(ctx);
}

void Gallery::drawBody(ui::Ctx& ctx, double top) {
  choosePage(ctx);
  const GalleryGrid grid = galleryGrid(ctx.w, ctx.h, top);
  const std::vector<const store::SolveEntry*> entries = entriesOfPage();
  if (entries.empty()) return drawEmptyPage(ctx, grid.list);
  const double contentHeight = grid.contentHeight(static_cast<int>(entries.size()));
  ui::applyScroll(ctx, grid.list, contentHeight, scroll);
  drawCards(ctx, entries, grid);
  ui::scrollbar(ctx, grid.list, contentHeight, scroll);
  drawHint(ctx);
}

void Gallery::choosePage(ui::Ctx& ctx) {
  const std::optional<int> chosen = pageChips(ctx, page, pageOf(progressLevel));
  if (!chosen) return;
  page = *chosen;
  lastPage() = *chosen;
  scroll = 0;
}

std::vector<const store::SolveEntry*> Gallery::entriesOfPage() const {
  std::vector<const store::SolveEntry*> entries;
  const int before = page * kLevelsPerPage;
  for (const store::SolveEntry& entry : solves)
    if (entry.level > before && entry.level <= before + kLevelsPerPage) entries.push_back(&entry);
  std::sort(entries.begin(), entries.end(), [](const auto* a, const auto* b) { return a->level < b->level; });
  return entries;
}

void Gallery::drawCards(ui::Ctx& ctx, const std::vector<const store::SolveEntry*>& entries,
                        const GalleryGrid& grid) {
  const ui::GpuClip clip(grid.list);
  cairo_save(ctx.cr);
  cairo_rectangle(ctx.cr, grid.list.x, grid.list.y, grid.list.w, grid.list.h);
  cairo_clip(ctx.cr);
  int index = 0;
  for (const store::SolveEntry* entry : entries) {
    const ui::Rect card = grid.card(index++, scroll);
    const ui::Rect seen = common(card, grid.list);
    if (isEmpty(seen)) continue;
    drawCard(ctx, *entry, card);
    cardInput(ctx, *entry, card, seen);
  }
  cairo_restore(ctx.cr);
}

void Gallery::drawCard(const ui::Ctx& ctx, const store::SolveEntry& entry, const ui::Rect& rect) {
  CardJob job{*this, entry, wholePixels(rect.w), wholePixels(rect.h)};
  const int w = ui::gpuPixels(job.w);
  const int h = ui::gpuPixels(job.h);
  const std::string size = std::string("|") + std::to_string(w) + "x" + std::to_string(h);
  // Dragging the window's edge asks for new sizes every frame.
  ui::gpuDropTextures(kCardKey, size);
  const std::string key =
      kCardKey + entry.id + "|" + std::to_string(entry.level) + "|" + i18n::currentLanguage() + size;
  if (SDL_Texture* texture = ui::gpuTexture(key, w, h, paintCardJob, &job))
    return ui::gpuBlit(texture, rect.x, rect.y, job.w, job.h, 1);
  cairo_save(ctx.cr);
  cairo_translate(ctx.cr, rect.x, rect.y);
  paintCardJob(ctx.cr, &job);
  cairo_restore(ctx.cr);
}

void Gallery::paintCardJob(cairo_t* cr, void* user) {
  const auto& job = *static_cast<const CardJob*>(user);
  const int side = cardPictureSide(job.w, job.h);
  paintCard(cr, job.w, job.h, job.entry, job.gallery.pictureOf(job.entry, side));
}

CardPicture Gallery::pictureOf(const store::SolveEntry& entry, int side) {
  LoadedPicture& loaded = pictures[entry.id];
  if (loaded.side != side) loaded = {side, loadSolvePicture(store::shotPath(entry), side)};
  if (loaded.surface) return {.picture = loaded.surface.get()};
  mj::GameState& board = boards[entry.id];
  if (board.slots.empty()) board = mj::createGame(mj::levelToConfig(entry.level).slots, entry.seed);
  return {.board = &board};
}

void Gallery::cardInput(const ui::Ctx& ctx, const store::SolveEntry& entry, const ui::Rect& card,
                        const ui::Rect& seen) {
  if (ctx.hover(seen)) ui::fillRoundedRect(ctx.cr, card, kCardRadius, ui::palette::kGold, kHoverAlpha);
  if (!ctx.takeRightClick(seen)) return;
  audio::play(audio::Sfx::Click);
  pendingDelete = entry.id;
  confirmOpen = true;
}

void Gallery::confirmDelete(ui::Ctx& ctx) {
  const int answer = ui::confirmDialog(ctx, i18n::tr("gallery.deleteOne"), i18n::tr("gallery.confirmDelete"),
                                       i18n::tr("common.ok"), i18n::tr("common.cancel"));
  if (answer == 0) return;
  confirmOpen = false;
  if (answer < 0) return;
  store::deleteSolve(pendingDelete);
  solves = store::listSolves();
}

}  // namespace

std::unique_ptr<ui::Screen> makeGallery() { return std::make_unique<Gallery>(); }

}  // namespace screens
