#include "app/command_line.h"

#include <string_view>

#include "version.h"

namespace ui {

std::optional<std::string> infoText(std::span<const char* const> arguments) {
  for (const std::string_view argument : arguments) {
    if (argument == "--version") {
      return std::string("Quenlock's Mahjong ") + kVersion + " (Build " + std::to_string(kBuildNumber) +
             ")\n";
    }
    if (argument == "--help") {
      return std::string("Quenlock's Mahjong ") + kVersion +
             "\n"
             "  --version    Version ausgeben\n"
             "  --fullscreen im Vollbild starten\n"
             "  --windowed   im Fenster starten\n";
    }
  }
  return std::nullopt;
}

void applyWindowArguments(std::span<const char* const> arguments, store::Settings& settings) {
  for (const std::string_view argument : arguments) {
    if (argument == "--fullscreen") settings.fullscreen = true;
    if (argument == "--windowed") settings.fullscreen = false;
  }
}

}  // namespace ui
