// The about and licences screens, run through the stack. Links go to a fake xdg-open.

#include "screens/about.h"

#include <SDL_keycode.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>

#include "screens/stack.h"
#include "support/heard.h"
#include "support/picture.h"
#include "support/temp_dir.h"

namespace {

using screens::aboutLayout;
using screens::AboutLine;
using test::kBelow;
using test::Shows;
using test::Stack;
using ui::ScreenKind;

constexpr unsigned kCardColor = 0x16523C;

// A screen opened on top of another.
struct OpenedAbout : Stack {
  explicit OpenedAbout(ScreenKind kind, int w = 640, int h = 480) : Stack(kBelow, w, h), width(w), height(h) {
    ui::Game::instance().push({.kind = kind});
    harness.frame();
    harness.frame();
  }

  support::Point middleOf(AboutLine line) const {
    const ui::Rect rect = aboutLayout(width, height).at(line);
    return {rect.x + rect.w / 2, rect.y + rect.h / 2};
  }
  void click(AboutLine line, double up = 0) {
    const support::Point p = middleOf(line);
    harness.click(p.x, p.y - up);
  }

  int width;
  int height;
};

// A fake desktop that records the addresses instead of opening them.
class Desktop {
 public:
  Desktop() {
    const std::string opener = dir.makeFile("xdg-open", script());
    chmod(opener.c_str(), 0755);
    setenv("PATH", (dir.path() + ":" + before).c_str(), 1);
  }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  ~Desktop() { setenv("PATH", before.c_str(), 1); }

  // The game does not wait for the opener, so this waits, for up to ten seconds.
  std::string opened() const {
    for (int tries = 0; tries < 1000; ++tries) {
      if (std::string seen = soFar(); !seen.empty()) return seen;
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return "nothing";
  }
  std::string soFar() const { return support::readAll(dir.path("opened")); }
  // Between the two calls the opener blocks.
  void hang() const { dir.makeFile("hangs", ""); }
  void letGo() const { std::filesystem::remove(dir.path("hangs")); }

 private:
  // Renames the file when it is complete, so that a reader sees the whole address or nothing.
  std::string script() const {
    return "#!/bin/sh\n"
           "cd '" +
           dir.path() +
           "'\n"
           "while [ -e hangs ]; do sleep 0.01; done\n"
           "printf '%s,%s' \"$#\" \"$1\" > part\n"
           "mv part opened\n";
  }

  support::TempDir dir;
  std::string before = std::getenv("PATH");
};

TEST(About, EscapeAndTheBackButtonGoBack) {
  for (const ScreenKind kind : {ScreenKind::About, ScreenKind::Licenses}) {
    OpenedAbout byKey(kind);
    byKey.harness.key(SDLK_ESCAPE);
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
    OpenedAbout byButton(kind);
    byButton.harness.click(30, 30);
    EXPECT_THAT(Stack::top(), Shows(ScreenKind::Playing, 1, 1));
  }
}

TEST(About, ButtonOpensTheLicences) {
  OpenedAbout about(ScreenKind::About);
  const ui::Rect button = aboutLayout(640, 480).button;
  about.harness.click(button.x + 1, button.y + 1);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Licenses, 0, 0));
  EXPECT_EQ(Stack::depth(), 3U);
}

TEST(About, MailAddressOpensALetter) {
  const Desktop desktop;
  OpenedAbout about(ScreenKind::About);
  about.click(AboutLine::Mail);
  EXPECT_EQ(desktop.opened(), "1,mailto:hello@quenlock.example");
}

TEST(About, EnterOnALinkOpensItToo) {
  const Desktop desktop;
  OpenedAbout about(ScreenKind::About);
  for (int i = 0; i < 3; ++i) about.harness.key(SDLK_TAB);
  about.harness.key(SDLK_RETURN);
  EXPECT_EQ(desktop.opened(), "1,https://quenlock.example");
}

TEST(About, WebAddressesOpenTheirPages) {
  for (const auto& [line, address] : {std::pair(AboutLine::Web, "1,https://quenlock.example"),
                                      std::pair(AboutLine::MusicWeb, "1,https://quenlock.example/music")}) {
    const Desktop desktop;
    OpenedAbout about(ScreenKind::About, 1100, 760);
    about.click(line);
    EXPECT_EQ(desktop.opened(), address);
  }
}

TEST(About, DoesNotWaitForTheDesktop) {
  const Desktop desktop;
  desktop.hang();
  OpenedAbout about(ScreenKind::About);
  about.click(AboutLine::Mail);
  EXPECT_EQ(desktop.soFar(), "");
  desktop.letGo();
  EXPECT_EQ(desktop.opened(), "1,mailto:hello@quenlock.example");
}

TEST(About, OtherLinesAreNoLinks) {
  const Desktop desktop;
  OpenedAbout about(ScreenKind::About);
  for (const AboutLine line :
       {AboutLine::Title, AboutLine::Developers, AboutLine::Notice, AboutLine::Musician})
    about.click(line);
  EXPECT_FALSE(about.harness.clickTaken());
  const support::Point mail = about.middleOf(AboutLine::Mail);
  about.harness.click(mail.x + 150, mail.y);
  EXPECT_FALSE(about.harness.clickTaken());
  EXPECT_EQ(desktop.soFar(), "");
}

TEST(About, LinkThatCannotBeOpenedIsToldAndNothingElse) {
  OpenedAbout about(ScreenKind::About);
  // With SIGCHLD ignored nobody can wait for a child, so the shell's exit status is unknown.
  std::signal(SIGCHLD, SIG_IGN);
  testing::internal::CaptureStderr();
  about.click(AboutLine::Mail);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "[about] could not open mailto:hello@quenlock.example\n");
  std::signal(SIGCHLD, SIG_DFL);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::About, 0, 0));
}

TEST(About, LinkIsUnderlinedUnderThePointer) {
  OpenedAbout about(ScreenKind::About);
  const ui::CairoSurface before = about.harness.picture();
  const support::Point p = about.middleOf(AboutLine::Web);
  about.harness.moveTo(p.x, p.y);
  const ui::Rect web = aboutLayout(640, 480).at(AboutLine::Web);
  EXPECT_EQ(about.harness.colorAt(320, static_cast<int>(web.y + web.h) - 1), 0xF1D489U);
  about.harness.moveTo(p.x, web.y - 30);
  EXPECT_TRUE(support::samePicture(before.get(), about.harness.picture().get()));
}

TEST(About, LinkReactsOnlyWhereItIsSeen) {
  const Desktop desktop;
  OpenedAbout about(ScreenKind::About, 640, 300);
  const screens::AboutLayout layout = aboutLayout(640, 300);
  const ui::Rect& view = layout.column.view;
  ASSERT_GT(layout.at(AboutLine::Mail).y, view.y + view.h);
  about.click(AboutLine::Mail);
  EXPECT_FALSE(about.harness.clickTaken());

  about.harness.wheel(320, 100, -2);
  about.click(AboutLine::Mail, 120);
  EXPECT_TRUE(about.harness.clickTaken());
  EXPECT_EQ(desktop.opened(), "1,mailto:hello@quenlock.example");
}

TEST(About, LowWindowScrollsToTheButton) {
  OpenedAbout about(ScreenKind::About, 640, 300);
  about.harness.wheel(320, 100, -100);
  const ui::Rect view = aboutLayout(640, 300).column.view;
  about.harness.click(320, view.y + view.h - 2);
  EXPECT_THAT(Stack::top(), Shows(ScreenKind::Licenses, 0, 0));
}

TEST(About, IsSilentButForItsButtons) {
  OpenedAbout about(ScreenKind::About);
  support::heard().clear();
  about.harness.wheel(320, 100, -1);
  EXPECT_THAT(support::heard(), testing::IsEmpty());
  about.harness.click(30, 30);
  EXPECT_THAT(support::heard(), testing::ElementsAre(audio::Sfx::Click));
}

class AboutLayouts : public testing::TestWithParam<std::pair<int, int>> {
 protected:
  const double w = GetParam().first;
  const double h = GetParam().second;
  const screens::AboutLayout layout = aboutLayout(w, h);
};

TEST_P(AboutLayouts, PutEachPartBelowTheOneBefore) {
  double bottom = layout.fan.y + layout.fan.h;
  for (const ui::Rect& line : layout.lines) {
    EXPECT_GE(line.y, bottom);
    bottom = line.y + line.h;
  }
  EXPECT_GT(layout.button.y, bottom);
}

TEST_P(AboutLayouts, NeedNoScrolling) {
  const ui::Rect& view = layout.column.view;
  EXPECT_GE(layout.fan.y, view.y);
  EXPECT_LE(layout.button.y + layout.button.h, view.y + view.h);
  EXPECT_LE(layout.contentHeight, view.h);
  EXPECT_NEAR(layout.fan.y - view.y, view.y + view.h - layout.button.y - layout.button.h, 1);
}

TEST_P(AboutLayouts, LieInTheMiddleOfTheWindow) {
  const screens::ColumnLayout& column = layout.column;
  EXPECT_EQ(column.w, w < 700 ? w - 40 : 660);
  EXPECT_EQ(column.x + column.w / 2, w / 2);
  EXPECT_EQ(layout.button.x + layout.button.w / 2, w / 2);
  EXPECT_GE(column.view.x, 0);
  EXPECT_EQ(column.view.y, 56);
  EXPECT_EQ(column.view.y + column.view.h, h - 46);
}

TEST_P(AboutLayouts, HaveASmallerFanInALowWindow) { EXPECT_EQ(layout.fanTileW, h < 580 ? 38 : 46); }

INSTANTIATE_TEST_SUITE_P(Window, AboutLayouts,
                         testing::Values(std::pair(640, 480), std::pair(779, 600), std::pair(1100, 760),
                                         std::pair(1920, 1080), std::pair(3840, 2160)),
                         [](const auto& param) { return std::to_string(param.param.first); });

TEST(AboutLayout, NarrowWindowHasASmallerFan) {
  EXPECT_EQ(aboutLayout(619, 900).fanTileW, 38);
  EXPECT_EQ(aboutLayout(620, 900).fanTileW, 46);
}

// Counts the cards that show between these two heights of the window.
int cardsSeen(const OpenedAbout& screen, int from, int to) {
  const ui::CairoSurface picture = screen.harness.picture();
  int cards = 0;
  bool inside = false;
  for (int y = from; y < to; ++y) {
    const bool card = (support::pixelAt(picture.get(), screen.width / 2 + 250, y) & 0xFFFFFF) == kCardColor;
    if (card && !inside) ++cards;
    inside = card;
  }
  return cards;
}

TEST(Licenses, ListAllComponents) {
  OpenedAbout licenses(ScreenKind::Licenses, 1100, 1000);
  EXPECT_EQ(cardsSeen(licenses, 0, 1000), 12);
}

TEST(Licenses, CardsLie68Apart) {
  OpenedAbout licenses(ScreenKind::Licenses);
  for (const int step : {0, 1, 4}) {
    EXPECT_EQ(licenses.harness.colorAt(570, 56 + 68 * step + 3), kCardColor);
    EXPECT_NE(licenses.harness.colorAt(570, 56 + 68 * step + 64), kCardColor);
  }
}

TEST(Licenses, WheelScrollsToTheLastOne) {
  OpenedAbout licenses(ScreenKind::Licenses);
  const ui::CairoSurface top = licenses.harness.picture();
  licenses.harness.wheel(320, 200, -100);
  EXPECT_EQ(licenses.harness.colorAt(570, 480 - 46 - 3), kCardColor);
  EXPECT_EQ(cardsSeen(licenses, 480 - 46, 480), 0);
  licenses.harness.wheel(320, 200, 100);
  EXPECT_TRUE(support::samePicture(top.get(), licenses.harness.picture().get()));
}

TEST(Licenses, LowWindowStillShowsAnAreaThatScrolls) {
  EXPECT_EQ(screens::columnLayout(640, 150).view.h, 80);
  OpenedAbout licenses(ScreenKind::Licenses, 640, 150);
  EXPECT_EQ(licenses.harness.colorAt(570, 56 + 20), kCardColor);
  EXPECT_NE(licenses.harness.colorAt(570, 56 + 84), kCardColor);
  licenses.harness.wheel(320, 130, -1);
  EXPECT_NE(licenses.harness.colorAt(570, 56 + 4), kCardColor);
  EXPECT_EQ(licenses.harness.colorAt(570, 56 + 20), kCardColor);
}

TEST(Licenses, NothingIsWritten) {
  OpenedAbout licenses(ScreenKind::Licenses);
  const bool had = licenses.data.has("save.json");
  licenses.harness.click(320, 200);
  licenses.harness.key(SDLK_SPACE);
  EXPECT_EQ(licenses.data.has("save.json"), had);
  EXPECT_FALSE(licenses.data.has("settings.json"));
  EXPECT_FALSE(licenses.data.has("progress.json"));
}

}  // namespace
