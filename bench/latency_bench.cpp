// How long it takes until the window shows that the mouse has moved onto a button. Moves the pointer between
// two places on the display and watches one pixel of the button until it changes. Knows nothing about the
// program behind the window. Usage: latency_bench BUTTON_X BUTTON_Y ELSEWHERE_X ELSEWHERE_Y, in pixels of the
// display.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <span>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr int kMoves = 200;
constexpr std::chrono::seconds kPatience{2};

struct Spot {
  int x;
  int y;
};

unsigned long colorAt(Display* display, Spot spot) {
  XImage* image = XGetImage(display, DefaultRootWindow(display), spot.x, spot.y, 1, 1, AllPlanes, ZPixmap);
  const unsigned long color = XGetPixel(image, 0, 0);
  XDestroyImage(image);
  return color;
}

// Returns milliseconds. If the pixel never changes, returns the time limit.
double moveAndSee(Display* display, Spot to, Spot watched) {
  const unsigned long before = colorAt(display, watched);
  const Clock::time_point begun = Clock::now();
  XTestFakeMotionEvent(display, -1, to.x, to.y, 0);
  XFlush(display);
  while (colorAt(display, watched) == before && Clock::now() - begun < kPatience) {
  }
  return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

}  // namespace

int main(int argc, char** argv) {
  const std::span<char*> arguments(argv, static_cast<std::size_t>(argc));
  Display* display = XOpenDisplay(nullptr);
  if (arguments.size() != 5 || display == nullptr) return 1;
  const Spot button{std::atoi(arguments[1]), std::atoi(arguments[2])};
  const Spot elsewhere{std::atoi(arguments[3]), std::atoi(arguments[4])};
  // Beside the pointer, because the pointer itself may be drawn.
  const Spot watched{button.x - 9, button.y};
  std::minstd_rand random(1);
  std::vector<double> times;
  for (int i = 0; i < kMoves; ++i) {
    std::this_thread::sleep_for(milliseconds(150 + random() % 100));
    times.push_back(moveAndSee(display, i % 2 == 0 ? button : elsewhere, watched));
  }
  std::sort(times.begin(), times.end());
  std::printf("median %.1f ms, p90 %.1f ms, worst %.1f ms\n", times[kMoves / 2], times[kMoves * 9 / 10],
              times.back());
  XCloseDisplay(display);
  return 0;
}
