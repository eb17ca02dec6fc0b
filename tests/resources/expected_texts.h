// expected_texts.h: a second copy of the texts, so that no change of the catalogues goes unnoticed. Sorted by
// key.
#pragma once

#include <array>

namespace test {

struct ExpectedText {
  const char* key;
  const char* english;
  const char* german;
};

inline constexpr std::array<ExpectedText, 55> kExpectedTexts = {{
    {"about.dev", "Developed by", "Entwickelt von"},
    {"about.headline", "About", "Über"},
    {"about.music", "Music & sound", "Musik & Klang"},
    {"app.tagline", "Tiles. Pairs. Calm.", "Steine. Paare. Ruhe."},
    {"attract.clickToPlay", "Click to play", "Klicken zum Spielen"},
    {"attract.demo", "DEMO", "DEMO"},
    {"common.cancel", "Cancel", "Abbrechen"},
    {"common.ok", "OK", "OK"},
    {"gallery.confirmDelete", "Really delete this entry?", "Diesen Eintrag wirklich löschen?"},
    {"gallery.deleteHint", "Right-click an image to delete the entry.",
     "Rechtsklick auf ein Bild löscht den Eintrag."},
    {"gallery.deleteOne", "Delete entry", "Eintrag löschen"},
    {"gallery.empty", "No solved boards yet.", "Noch keine gelösten Bretter."},
    {"gallery.headline", "Achievements", "Erfolge"},
    {"levels.headline", "Choose level", "Level wählen"},
    {"levels.layers", "{{n}} layers", "{{n}} Ebenen"},
    {"levels.tileCount", "{{n}} tiles", "{{n}} Steine"},
    {"licenses.ossButton", "Show licenses", "Lizenzen anzeigen"},
    {"licenses.title", "Open Source Licenses", "Open-Source-Lizenzen"},
    {"menu.about", "About", "Über"},
    {"menu.continue", "Continue with level {{n}}", "Weiter mit Level {{n}}"},
    {"menu.gallery", "Achievements", "Erfolge"},
    {"menu.levelSelect", "Choose level", "Level wählen"},
    {"menu.newGame", "New game", "Neues Spiel"},
    {"menu.settings", "Settings", "Einstellungen"},
    {"playing.exit", "Exit", "Beenden"},
    {"playing.hint", "Hint", "Tipp"},
    {"playing.levelLabel", "Level {{n}}", "Level {{n}}"},
    {"playing.noMoves", "No moves left", "Keine Züge mehr"},
    {"playing.paused", "Paused", "Pause"},
    {"playing.resume", "Resume", "Weiter"},
    {"playing.shuffle", "Shuffle", "Mischen"},
    {"playing.tilesLeft", "Tiles left", "Steine übrig"},
    {"playing.undo", "Undo", "Zurück"},
    {"settings.fullscreen", "Fullscreen", "Vollbild"},
    {"settings.headline", "Settings", "Einstellungen"},
    {"settings.keyboard", "Keyboard: H hint · M shuffle · U undo · Space pause · +/− zoom · F11 fullscreen",
     "Tastatur: H Tipp · M Mischen · U Rückgängig · Leertaste Pause · +/− Zoom · F11 Vollbild"},
    {"settings.language", "Language", "Sprache"},
    {"settings.languageSystem", "System", "System"},
    {"settings.musicVolume", "Music volume", "Musiklautstärke"},
    {"settings.quit", "Quit", "Beenden"},
    {"settings.resetProgress", "Reset progress", "Fortschritt zurücksetzen"},
    {"settings.resetProgressConfirmBody",
     "All unlocked levels, best scores AND saved achievement images will be permanently lost. This cannot be "
     "undone.",
     "Alle freigeschalteten Level, Bestleistungen UND gespeicherten Achievement-Bilder gehen dauerhaft "
     "verloren. Dies kann nicht rückgängig gemacht werden."},
    {"settings.resetProgressConfirmNo", "Cancel", "Abbrechen"},
    {"settings.resetProgressConfirmTitle", "Reset progress?", "Fortschritt zurücksetzen?"},
    {"settings.resetProgressConfirmYes", "Yes, reset", "Ja, zurücksetzen"},
    {"settings.sfxVolume", "Effects volume", "Effekt-Lautstärke"},
    {"settings.sound", "Sound", "Sound"},
    {"solved.aidsLine", "Hints: {{hints}} · Shuffles: {{shuffles}}",
     "Tipps: {{hints}} · Mischen: {{shuffles}}"},
    {"solved.headline", "Solved!", "Geschafft!"},
    {"solved.levelDone", "Level {{n}} cleared", "Level {{n}} gemeistert"},
    {"solved.nextLevel", "Next: level {{n}}", "Weiter zu Level {{n}}"},
    {"solved.tilesCleared", "{{n}} tiles cleared", "{{n}} Steine geräumt"},
    {"solved.time", "Time", "Zeit"},
    {"solved.toGallery", "Achievements", "Zu den Erfolgen"},
    {"solved.toMenu", "Main menu", "Zum Menü"},
}};

// Starting with Sunday and January.
inline constexpr std::array<const char*, 7> kEnglishWeekdays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                                "Thursday", "Friday", "Saturday"};
inline constexpr std::array<const char*, 12> kEnglishMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};
inline constexpr std::array<const char*, 7> kGermanWeekdays = {
    "Sonntag", "Montag", "Dienstag", "Mittwoch", "Donnerstag", "Freitag", "Samstag"};
inline constexpr std::array<const char*, 12> kGermanMonths = {"Januar",    "Februar", "März",     "April",
                                                              "Mai",       "Juni",    "Juli",     "August",
                                                              "September", "Oktober", "November", "Dezember"};

}  // namespace test
