#include "screens/screens.h"

namespace screens {

std::unique_ptr<ui::Screen> make(const ui::GameState& descriptor) {
  switch (descriptor.kind) {
    case ui::ScreenKind::Splash:
      return makeSplash();
    case ui::ScreenKind::Menu:
      return makeMenu();
    case ui::ScreenKind::LevelSelect:
      return makeLevelSelect();
    case ui::ScreenKind::Playing:
      return makePlaying(descriptor);
    case ui::ScreenKind::Solved:
      return makeSolved(descriptor);
    case ui::ScreenKind::Gallery:
      return makeGallery();
    case ui::ScreenKind::Settings:
      return makeSettings();
    case ui::ScreenKind::About:
      return makeAbout();
    case ui::ScreenKind::Licenses:
      return makeLicenses();
    case ui::ScreenKind::Attract:
      return makeAttract();
  }
  return nullptr;
}

}  // namespace screens
