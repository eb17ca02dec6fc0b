// just_started.cpp: what the game keeps until its process ends is for each test of this program as a program
// has it that was just started, by a player without files: so a test sees the same after others as alone.

#include <gtest/gtest.h>

#include "app/app.h"
#include "resources/i18n.h"
#include "screens/list_screen.h"
#include "support/data_home.h"
#include "support/heard.h"

namespace {

class JustStarted : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo& /*test*/) override {
    const support::DataHome empty;
    i18n::setLanguage("en");
    ui::Game::settings() = {};
    screens::chosenPages() = {};
    support::heard().clear();
    support::soundState() = {};
  }
};

[[maybe_unused]] const bool listening = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new JustStarted);  // which they own
  return true;
}();

}  // namespace
