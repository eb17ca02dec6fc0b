#include <algorithm>
#include <cstddef>
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
#include "screens/card.h"
#include "screens/gallery_card.h"
#include "screens/gallery_layout.h"
#include "screens/list_screen.h"
#include "screens/resume.h"
#include "screens/screens.h"
#include "screens/solve_picture.h"
#include "storage/storage.h"
#include "ui/draw.h"
#include "ui/focus.h"
#include "ui/gpu.h"
#include "ui/palette.h"
#include "ui/tile.h"
#include "ui/widgets.h"

namespace screens {
namespace {

constexpr const char* kCardKey = "gallery|";  // prefix of the texture keys of the cards
constexpr double kFanTileW = 56;
constexpr double kFanGap = 36;  // from the foot of the middle tile to the text; the outer tiles reach lower

void drawEmptyPage(const ui::Ctx& ctx, const ui::Rect& area) {
  constexpr double kTextH = 24;
  const double fanH = ui::kTileAspect * kFanTileW;
  const double top = area.y + (area.h - fanH - kFanGap - kTextH) / 2;
  ui::drawTileFan(ctx.cr, ctx.w / 2, top + fanH, kFanTileW);
  ui::drawTextCentered(ctx.cr, ctx.w / 2, top + fanH + kFanGap + kTextH / 2, i18n::tr("gallery.empty"),
                       {.size = 17, .color = ui::palette::kMutedText, .maxWidth = ctx.w - 2 * kListMargin});
}

void drawHint(const ui::Ctx& ctx) {
  ui::drawTextCentered(ctx.cr, ctx.w / 2, galleryHintY(ctx.h), i18n::tr("gallery.deleteHint"),
                       {.size = 13, .color = ui::palette::kMutedText, .maxWidth = ctx.w - 2 * kListMargin});
}

// Shows the solved boards as cards, ten levels a page. Each card is painted once and cached as a texture.
class Gallery : public ui::Screen {
 public:
  Gallery();
  // Drops the textures: the picture files may have changed by the next visit.
  ~Gallery() override { ui::gpuDropTextures(kCardKey, ui::kKeepNone); }

  void update(ui::Ctx& ctx) override;

 private:
  struct LoadedPicture {
    int side = 0;  // the side it was loaded for
    ui::CairoSurface surface;
  };

  void drawBody(ui::Ctx& ctx, double top);
  void turnTo(int newPage);
  // Indices into `solves` of the current page's entries, ordered by level.
  std::vector<std::size_t> placesOfPage() const;
  void drawCard(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect);
  void cardInput(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect);
  bool isDoubleClicked(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect);
  static void playAgain(const store::SolveEntry& entry);
  void confirmDelete(ui::Ctx& ctx);
  void listAnew();

  CardPicture pictureOf(std::size_t place, int side);

  std::vector<store::SolveEntry> solves;
  int progressLevel;
  int page;
  double scroll = 0;
  std::size_t pendingDelete = 0;  // index into `solves`
  bool confirmOpen = false;
  // The cards under the last click and the click before it, as indices into `solves`; empty if a click hit no
  // card.
  std::optional<std::size_t> lastClicked;
  std::optional<std::size_t> clickedBefore;

  // Filled when a card is first shown. Keyed by index, not by id: in a damaged file two entries may share an
  // id.
  std::map<std::size_t, LoadedPicture> pictures;
  std::map<std::size_t, mj::GameState> boards;  // for entries without a picture
};

Gallery::Gallery()
    : solves(store::listSolves()),
      progressLevel(store::loadProgress().currentLevel),
      page(chosenPages().gallery.value_or(pageOf(progressLevel))) {}

void Gallery::update(ui::Ctx& ctx) {
  const bool asking = confirmOpen;
  if (ctx.in.clicked) clickedBefore = std::exchange(lastClicked, std::nullopt);
  std::optional<int> chosen;
  const bool left = listFrame(ctx, mj::tableThemeForStage(page), i18n::tr("gallery.headline"), asking, [&] {
    chosen = pageChips(ctx, page, pageOf(progressLevel));
    drawBody(ctx, kPagedListTop);
  });
  if (asking) confirmDelete(ctx);
  if (left) return ui::Game::instance().pop();
  if (chosen) turnTo(*chosen);
}

void Gallery::drawBody(ui::Ctx& ctx, double top) {
  const CardGrid grid = galleryGrid(ctx.w, ctx.h, top);
  const std::vector<std::size_t> places = placesOfPage();
  if (places.empty()) return drawEmptyPage(ctx, grid.view);
  scrolledList(ctx, grid.view, grid.contentHeight(static_cast<int>(places.size())), scroll, [&] {
    int index = 0;
    for (const std::size_t place : places) {
      const ui::Rect rect = grid.card(index++, scroll);
      if (isInView(rect, grid.view)) drawCard(ctx, place, rect);
      cardInput(ctx, place, rect);
    }
  });
  drawHint(ctx);
}

void Gallery::turnTo(int newPage) {
  page = newPage;
  chosenPages().gallery = newPage;
  scroll = 0;
}

std::vector<std::size_t> Gallery::placesOfPage() const {
  std::vector<std::size_t> places;
  const int before = page * kLevelsPerPage;
  for (std::size_t i = 0; i < solves.size(); ++i)
    if (solves[i].level > before && solves[i].level <= before + kLevelsPerPage) places.push_back(i);
  std::stable_sort(places.begin(), places.end(),
                   [this](std::size_t a, std::size_t b) { return solves[a].level < solves[b].level; });
  return places;
}

void Gallery::drawCard(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect) {
  const std::string key = kCardKey + std::to_string(place) + "|" + i18n::currentLanguage();
  ui::gpuPicture(ctx.cr, key, rect, [&](cairo_t* cr, double w, double h) {
    paintCard(cr, w, h, solves[place], pictureOf(place, cardPictureSide(w, h)));
  });
  lightCard(ctx, rect);
}

void Gallery::cardInput(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect) {
  const bool chosen = ui::isWorkedByKey(ctx, rect) || isDoubleClicked(ctx, place, rect);
  if (ui::isDiscarded(ctx, rect)) {
    audio::play(audio::Sfx::Click);
    pendingDelete = place;
    confirmOpen = true;
  } else if (chosen) {
    playAgain(solves[place]);
  }
}

// True only if both clicks hit this card.
bool Gallery::isDoubleClicked(ui::Ctx& ctx, std::size_t place, const ui::Rect& rect) {
  if (!ctx.takeClick(rect)) return false;
  lastClicked = place;
  return ctx.in.doubleClicked && clickedBefore == place;
}

// Starts the entry's deal again. If another game is saved, only plays the error sound: starting would lose
// that game without asking.
void Gallery::playAgain(const store::SolveEntry& entry) {
  const auto saved = resumableGame();
  if (saved && (saved->level != entry.level || saved->seed != entry.seed))
    return audio::play(audio::Sfx::Error);
  audio::play(audio::Sfx::Click);
  ui::Game::instance().push({.kind = ui::ScreenKind::Playing, .level = entry.level, .deal = entry.seed});
}

CardPicture Gallery::pictureOf(std::size_t place, int side) {
  const store::SolveEntry& entry = solves[place];
  LoadedPicture& loaded = pictures[place];
  if (loaded.side != side) loaded = {side, loadSolvePicture(store::shotPath(entry), side)};
  if (loaded.surface) return {.picture = loaded.surface.get()};
  mj::GameState& board = boards[place];
  if (board.slots.empty()) board = mj::createGame(mj::levelToConfig(entry.level).slots, entry.seed);
  return {.board = &board};
}

void Gallery::confirmDelete(ui::Ctx& ctx) {
  const int answer = ui::confirmDialog(ctx, i18n::tr("gallery.deleteOne"), i18n::tr("gallery.confirmDelete"),
                                       i18n::tr("common.ok"), i18n::tr("common.cancel"));
  if (answer == 0) return;
  confirmOpen = false;
  if (answer < 0) return;
  store::deleteSolve(solves[pendingDelete]);
  listAnew();
}

// Indices may now refer to other entries, so the caches are cleared.
void Gallery::listAnew() {
  solves = store::listSolves();
  pictures.clear();
  boards.clear();
  ui::gpuDropTextures(kCardKey, ui::kKeepNone);
}

}  // namespace

std::unique_ptr<ui::Screen> makeGallery() { return std::make_unique<Gallery>(); }

}  // namespace screens
