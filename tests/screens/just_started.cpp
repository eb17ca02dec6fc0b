// just_started.cpp: resets the program's global state before each test, as if the program had just been
// started by a player without files. So a test gives the same result alone and after others.

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
  testing::UnitTest::GetInstance()->listeners().Append(new JustStarted);  // takes ownership
  return true;
}();

}  // namespace
