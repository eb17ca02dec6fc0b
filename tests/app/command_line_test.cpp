#include "app/command_line.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace {

constexpr const char* kVersionText = "Quenlock's Mahjong 1.1.0 (Build 1054)\n";
constexpr const char* kHelpText =
    "Quenlock's Mahjong 1.1.0\n"
    "  --version    Version ausgeben\n"
    "  --fullscreen im Vollbild starten\n"
    "  --windowed   im Fenster starten\n";

std::optional<std::string> textFor(const std::vector<const char*>& arguments) {
  return ui::infoText(arguments);
}

bool fullscreenAfter(const std::vector<const char*>& arguments, bool before) {
  store::Settings settings;
  settings.fullscreen = before;
  ui::applyWindowArguments(arguments, settings);
  return settings.fullscreen;
}

TEST(CommandLine, VersionNamesVersionAndBuild) { EXPECT_EQ(textFor({"--version"}), kVersionText); }

TEST(CommandLine, HelpListsTheArgumentsButItself) { EXPECT_EQ(textFor({"--help"}), kHelpText); }

TEST(CommandLine, FirstOfVersionAndHelpWins) {
  EXPECT_EQ(textFor({"--help", "--version"}), kHelpText);
  EXPECT_EQ(textFor({"--version", "--help"}), kVersionText);
  EXPECT_EQ(textFor({"--windowed", "something", "--version", "--help"}), kVersionText);
}

TEST(CommandLine, NoTextIsAskedForOtherwise) {
  EXPECT_EQ(textFor({}), std::nullopt);
  EXPECT_EQ(textFor({"--fullscreen", "--windowed"}), std::nullopt);
}

TEST(CommandLine, OnlyWholeAndExactArgumentsCount) {
  for (const char* almost :
       {"", "-", "--", "-h", "--HELP", "--help ", "--helpme", "--versio", "--version=1", "help"}) {
    EXPECT_EQ(textFor({almost}), std::nullopt) << almost;
  }
  EXPECT_FALSE(fullscreenAfter({"--fullscree", "--fullscreen=1", "fullscreen"}, false));
}

TEST(CommandLine, LastWindowArgumentWins) {
  for (const bool before : {false, true}) {
    EXPECT_FALSE(fullscreenAfter({"--fullscreen", "--windowed"}, before));
    EXPECT_TRUE(fullscreenAfter({"--windowed", "--fullscreen"}, before));
  }
}

TEST(CommandLine, WindowStaysAsStoredWithoutArgument) {
  EXPECT_TRUE(fullscreenAfter({"--unknown"}, true));
  EXPECT_FALSE(fullscreenAfter({"--unknown"}, false));
}

}  // namespace
