// command_line.h: interprets the program's arguments. Each argument must match exactly; unknown ones are
// ignored.
#pragma once

#include <optional>
#include <span>
#include <string>

#include "storage/storage.h"

namespace ui {

// The text for the first "--version" or "--help". Nothing if neither is given. If there is a text, the
// program prints it and exits.
std::optional<std::string> infoText(std::span<const char* const> arguments);

// Applies "--fullscreen" and "--windowed" to the settings. The last one wins and stays in effect for later
// runs.
void applyWindowArguments(std::span<const char* const> arguments, store::Settings& settings);

}  // namespace ui
