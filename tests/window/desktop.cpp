#include "window/desktop.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <array>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace window {
namespace {

constexpr unsigned kLeftButton = 1;
constexpr unsigned kRightButton = 3;
constexpr unsigned kWheelUp = 4;
constexpr unsigned kWheelDown = 5;

// Windows may disappear while tests look for them. Requests to a missing window just get no answer.
int ignoreError(Display* /*display*/, XErrorEvent* /*error*/) { return 0; }

std::vector<std::string> serverCommand(Size screen) {
  const std::string mode = std::to_string(screen.w) + "x" + std::to_string(screen.h) + "x24";
  // Xvfb picks a free display and writes its number to standard output.
  return {"Xvfb", "-displayfd", "1", "-screen", "0", mode, "-nolisten", "tcp", "-noreset"};
}

std::string openboxConfig(const std::string& imposed) {
  std::string config = support::readAll(VESKARA_OPENBOX_CONFIG);
  if (!imposed.empty()) {
    config.insert(config.rfind("</openbox_config>"),
                  "<applications><application name=\"*\">" + imposed + "</application></applications>");
  }
  return config;
}

std::string displayOf(Child& server) {
  waitFor([&] { return server.output().ends_with('\n') || server.hasEnded(); });
  std::string number = server.output();
  if (!number.ends_with('\n')) throw std::runtime_error("Xvfb does not start: " + server.errors());
  number.pop_back();
  return std::string(":").append(number);
}

Environment environmentOn(const std::string& display, const std::string& home) {
  Environment environment = cleanEnvironment(home);
  environment.insert({{"DISPLAY", display},
                      {"SDL_VIDEODRIVER", "x11"},
                      {"SDL_AUDIODRIVER", "dummy"},
                      {"LIBGL_ALWAYS_SOFTWARE", "1"},
                      {"LP_NUM_THREADS", "1"},  // other tests run on the remaining processors
                      // Otherwise Mesa would compile its shaders anew in each new home.
                      {"MESA_SHADER_CACHE_DIR", VESKARA_SHADER_CACHE}});
  return environment;
}

// The values of a window property. `Value` is the type that Xlib stores them in.
template <class Value>
std::vector<Value> property(Display* display, Window window, const char* name) {
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  const Atom atom = XInternAtom(display, name, False);
  XGetWindowProperty(display, window, atom, 0, 4096, False, AnyPropertyType, &type, &format, &count, &rest,
                     &data);
  if (data == nullptr) return {};
  std::vector<Value> values(count);
  if (count > 0) std::memcpy(values.data(), data, count * sizeof(Value));
  XFree(data);
  return values;
}

std::string titleOf(Display* display, Window window) {
  const std::vector<char> title = property<char>(display, window, "_NET_WM_NAME");
  return {title.begin(), title.end()};
}

bool isViewable(Display* display, Window window) {
  XWindowAttributes attributes = {};
  return XGetWindowAttributes(display, window, &attributes) != 0 && attributes.map_state == IsViewable;
}

// Sends a client message to the window manager or to the window itself.
void tell(Display* display, Window receiver, long mask, Window window, const char* message,
          const std::array<long, 4>& data) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display, message, False);
  event.xclient.format = 32;
  for (std::size_t i = 0; i < data.size(); ++i) event.xclient.data.l[i] = data[i];
  XSendEvent(display, receiver, False, mask, &event);
  XSync(display, False);
}

}  // namespace

Size sizeOf(cairo_surface_t* picture) {
  return {cairo_image_surface_get_width(picture), cairo_image_surface_get_height(picture)};
}

struct Desktop::Connection {
  explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
    if (display == nullptr) throw std::runtime_error("cannot open display " + name);
    XSetErrorHandler(ignoreError);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { XCloseDisplay(display); }

  Window root() const { return DefaultRootWindow(display); }
  void button(unsigned number, bool down) const {
    XTestFakeButtonEvent(display, number, down ? True : False, CurrentTime);
    XSync(display, False);
  }
  void key(Key key, bool down) const {
    XTestFakeKeyEvent(display, static_cast<unsigned>(key), down ? True : False, CurrentTime);
    XSync(display, False);
  }

  Display* display;
};

Desktop::Desktop(const std::string& keyboard, Size screen, const std::string& imposed)
    : server(serverCommand(screen), cleanEnvironment(home.path())),
      name(displayOf(server)),
      windowManager(
          {"openbox", "--sm-disable", "--config-file", home.makeFile("openbox.xml", openboxConfig(imposed))},
          environmentOn(name, home.path())),
      connection(std::make_unique<Connection>(name)) {
  waitForWindowManager();
  if (keyboard != kLatinKeyboard) switchKeyboard(keyboard);
}

// A starting window manager may own the display and still miss windows that ask to be shown. So this waits
// until it shows one.
void Desktop::waitForWindowManager() {
  Display* display = connection->display;
  const bool taken = waitFor([this, display] {
    return !property<Window>(display, connection->root(), "_NET_SUPPORTING_WM_CHECK").empty();
  });
  const Window probe = XCreateSimpleWindow(display, connection->root(), 0, 0, 1, 1, 0, 0, 0);
  const bool showing = taken && waitFor([display, probe] {
                         if (isViewable(display, probe)) return true;
                         XUnmapWindow(display, probe);
                         XMapWindow(display, probe);
                         XSync(display, False);
                         return false;
                       });
  XDestroyWindow(display, probe);
  XSync(display, False);
  if (!showing) throw std::runtime_error("openbox does not start: " + windowManager.errors());
}

void Desktop::switchKeyboard(const std::string& layout) const {
  Child tool({"setxkbmap", layout}, environment());
  if (tool.waitForEnd() != 0) throw std::runtime_error("no keyboard " + layout + ": " + tool.errors());
}

Desktop::Stroke Desktop::strokeOf(char character) const {
  // A new connection, because Xlib caches the keyboard layout.
  const Connection fresh(name);
  int least = 0;
  int most = 0;
  XDisplayKeycodes(fresh.display, &least, &most);
  for (const int level : {0, 1}) {
    for (int code = least; code <= most; ++code) {
      // For ASCII characters the keysym equals the character.
      const KeySym carried = XkbKeycodeToKeysym(fresh.display, static_cast<KeyCode>(code), 0, level);
      if (carried == static_cast<KeySym>(character)) return {static_cast<Key>(code), level == 1};
    }
  }
  switch (character) {
    case 'h':
      return {Key::H, false};
    case 'm':
      return {Key::M, false};
    case 'q':
      return {Key::Q, false};
    case 'u':
      return {Key::U, false};
    default:
      throw std::runtime_error(std::string("no key for ") + character);
  }
}

Desktop::~Desktop() = default;

Environment Desktop::environment() const {
  Environment environment = environmentOn(name, home.path());
#ifdef __SANITIZE_ADDRESS__
  environment["LD_PRELOAD"] = VESKARA_KEEP_LIBRARIES;
  // The second option: the leak sanitizer sometimes reads thread-local variables of a thread that has just
  // ended.
  environment["ASAN_OPTIONS"] += ":verify_asan_link_order=0:intercept_tls_get_addr=0";
#endif
  return environment;
}

std::string Desktop::dataPath(const std::string& file) const {
  const std::string dir = environment().at("XDG_DATA_HOME") + "/veskara";
  return file.empty() ? dir : dir + "/" + file;
}

Desktop::Frozen::Frozen(Desktop& desktop) : frozen(desktop) {
  XGrabServer(frozen.connection->display);
  XSync(frozen.connection->display, False);
}

Desktop::Frozen::~Frozen() {
  XUngrabServer(frozen.connection->display);
  XSync(frozen.connection->display, False);
}

Environment preloading(const Desktop& desktop, const std::string& library) {
  const Environment environment = desktop.environment();
  const auto others = environment.find("LD_PRELOAD");
  return {{"LD_PRELOAD", (others == environment.end() ? "" : others->second + ":") + library}};
}

std::vector<std::string> gameCommand(const std::vector<std::string>& arguments) {
  std::vector<std::string> command = {VESKARA_PROGRAM};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return command;
}

Game::Game(Desktop& shownOn, const std::vector<std::string>& arguments, const Environment& changes)
    : Game(gameCommand(arguments), shownOn, changes) {}

Game::Game(const std::vector<std::string>& command, Desktop& shownOn, const Environment& changes,
           std::string windowTitle)
    : desktop(shownOn),
      title(std::move(windowTitle)),
      child(command, changed(shownOn.environment(), changes)) {
  waitFor([this] { return findWindow() || child.hasEnded(); });
  if (window == 0) throw std::runtime_error("no window: " + child.output() + child.errors());
}

// While it creates the renderer, SDL may replace the window by a second one. So the window counts that exists
// when the program has printed its renderer.
bool Game::findWindow() {
  if (!child.output().ends_with('\n')) return false;
  Display* display = desktop.connection->display;
  const Window root = desktop.connection->root();
  const std::vector<Window> active = property<Window>(display, root, "_NET_ACTIVE_WINDOW");
  if (active.empty() || titleOf(display, active[0]) != title || !isViewable(display, active[0])) return false;
  window = active[0];
  return true;
}

Size Game::size() const {
  XWindowAttributes attributes = {};
  XGetWindowAttributes(desktop.connection->display, window, &attributes);
  return {attributes.width, attributes.height};
}

Point Game::position() const {
  Point place;
  Window below = 0;
  XTranslateCoordinates(desktop.connection->display, window, desktop.connection->root(), 0, 0, &place.x,
                        &place.y, &below);
  return place;
}

bool Game::hasState(const char* state) const {
  Display* display = desktop.connection->display;
  const Atom wanted = XInternAtom(display, state, False);
  for (const Atom atom : property<Atom>(display, window, "_NET_WM_STATE")) {
    if (atom == wanted) return true;
  }
  return false;
}

bool Game::isMaximised() const {
  return hasState("_NET_WM_STATE_MAXIMIZED_VERT") && hasState("_NET_WM_STATE_MAXIMIZED_HORZ");
}

bool Game::isFullscreen() const { return hasState("_NET_WM_STATE_FULLSCREEN"); }

bool Game::bypassesCompositor() const {
  const std::vector<long> asked =
      property<long>(desktop.connection->display, window, "_NET_WM_BYPASS_COMPOSITOR");
  return !asked.empty() && asked[0] == 1;
}

ui::CairoSurface Game::picture() const {
  const Size now = size();
  XImage* image = XGetImage(desktop.connection->display, window, 0, 0, static_cast<unsigned>(now.w),
                            static_cast<unsigned>(now.h), AllPlanes, ZPixmap);
  if (image == nullptr) return nullptr;
  ui::CairoSurface picture(cairo_image_surface_create(CAIRO_FORMAT_RGB24, now.w, now.h));
  unsigned char* pixels = cairo_image_surface_get_data(picture.get());
  const int stride = cairo_image_surface_get_stride(picture.get());
  // 32 bits per pixel with red in the high bits, as on a display of depth 24 and in cairo.
  for (int y = 0; y < now.h; ++y) {
    std::memcpy(pixels + y * stride, image->data + y * image->bytes_per_line,
                static_cast<std::size_t>(4 * now.w));
  }
  cairo_surface_mark_dirty(picture.get());
  XDestroyImage(image);
  return picture;
}

Point Game::mouse() const {
  Point place;
  Point onScreen;
  Window root = 0;
  Window below = 0;
  unsigned pressed = 0;
  XQueryPointer(desktop.connection->display, window, &root, &below, &onScreen.x, &onScreen.y, &place.x,
                &place.y, &pressed);
  return place;
}

void Game::moveMouse(Point to) const {
  Display* display = desktop.connection->display;
  int x = 0;
  int y = 0;
  Window below = 0;
  XTranslateCoordinates(display, window, desktop.connection->root(), to.x, to.y, &x, &y, &below);
  XTestFakeMotionEvent(display, DefaultScreen(display), x, y, CurrentTime);
  XSync(display, False);
}

void Game::pressButton() const { desktop.connection->button(kLeftButton, true); }
void Game::releaseButton() const { desktop.connection->button(kLeftButton, false); }

void Game::click(Point at) const {
  moveMouse(at);
  pressButton();
  releaseButton();
}

void Game::doubleClick(Point at, std::chrono::milliseconds gap) const {
  moveMouse(at);
  Display* display = desktop.connection->display;
  for (const auto delay : {0UL, static_cast<unsigned long>(gap.count())}) {
    XTestFakeButtonEvent(display, kLeftButton, True, delay);
    XTestFakeButtonEvent(display, kLeftButton, False, CurrentTime);
  }
  XSync(display, False);
}

void Game::rightClick(Point at) const {
  moveMouse(at);
  desktop.connection->button(kRightButton, true);
  desktop.connection->button(kRightButton, false);
}

void Game::turnWheel(int direction) const {
  const unsigned button = direction > 0 ? kWheelUp : kWheelDown;
  desktop.connection->button(button, true);
  desktop.connection->button(button, false);
}

void Game::type(Key key) const {
  desktop.connection->key(key, true);
  desktop.connection->key(key, false);
}

void Game::type(Key modifier, Key key) const {
  desktop.connection->key(modifier, true);
  type(key);
  desktop.connection->key(modifier, false);
}

void Game::typeCharacter(char character) const {
  const Desktop::Stroke stroke = desktop.strokeOf(character);
  if (stroke.shift) {
    type(Key::LeftShift, stroke.key);
  } else {
    type(stroke.key);
  }
}

void Game::typeCharacter(char character, Key modifier) const {
  desktop.connection->key(modifier, true);
  typeCharacter(character);
  desktop.connection->key(modifier, false);
}

void Game::dragRight(Key held, Point from, Point to) const {
  moveMouse(from);
  desktop.connection->key(held, true);
  desktop.connection->button(kRightButton, true);
  moveMouse(to);
  desktop.connection->button(kRightButton, false);
  desktop.connection->key(held, false);
}

void Game::dragCorner(int dx, int dy) const {
  const Size now = size();
  // Openbox: Alt and the right button drag the nearest corner from anywhere in the window.
  const Point grip = {now.w * 9 / 10, now.h * 9 / 10};
  moveMouse(grip);
  desktop.connection->key(Key::LeftAlt, true);
  desktop.connection->button(kRightButton, true);
  // The first movement starts the drag, the next ones resize the window.
  int nudge = 0;
  waitFor([&] {
    nudge = 1 - nudge;
    moveMouse({grip.x + dx / 2 + nudge, grip.y + dy / 2});
    return size() != now;
  });
  moveMouse({grip.x + dx, grip.y + dy});
  desktop.connection->button(kRightButton, false);
  desktop.connection->key(Key::LeftAlt, false);
}

void Game::moveTo(Point place) const {
  XMoveWindow(desktop.connection->display, window, place.x, place.y);
  XSync(desktop.connection->display, False);
}

void Game::setMaximised(bool maximised) const {
  Display* display = desktop.connection->display;
  tell(display, desktop.connection->root(), SubstructureRedirectMask | SubstructureNotifyMask, window,
       "_NET_WM_STATE",
       {maximised ? 1 : 0, static_cast<long>(XInternAtom(display, "_NET_WM_STATE_MAXIMIZED_VERT", False)),
        static_cast<long>(XInternAtom(display, "_NET_WM_STATE_MAXIMIZED_HORZ", False)), 2});
}

void Game::minimise() const {
  Display* display = desktop.connection->display;
  XIconifyWindow(display, window, DefaultScreen(display));
  waitFor([this, display] { return !isViewable(display, window); });
}

void Game::restore() const {
  Display* display = desktop.connection->display;
  tell(display, desktop.connection->root(), SubstructureRedirectMask | SubstructureNotifyMask, window,
       "_NET_ACTIVE_WINDOW", {2, CurrentTime, 0, 0});
}

void Game::close() const {
  Display* display = desktop.connection->display;
  tell(display, window, NoEventMask, window, "WM_PROTOCOLS",
       {static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False)), CurrentTime, 0, 0});
}

}  // namespace window
