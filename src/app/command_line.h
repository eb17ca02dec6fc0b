// command_line.h: what the program's arguments ask for. Each argument counts as a whole and exactly; unknown
// ones are ignored.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "storage/storage.h"

namespace ui {

// The text that the first "--version" or "--help" asks for: it is all the program has to print.
std::optional<std::string> infoText(std::span<const char* const> arguments);

// "--fullscreen" and "--windowed": the last one wins, and stays in the settings for later runs.
void applyWindowArguments(std::span<const char* const> arguments, store::Settings& settings);

}  // namespace ui
