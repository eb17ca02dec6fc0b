#include "monkey/hand.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>

#include <stdexcept>

namespace test {

struct Hand::Connection {
  explicit Connection(const std::string& name) : display(XOpenDisplay(name.c_str())) {
    if (display == nullptr) throw std::runtime_error("cannot open display " + name);
  }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection() { XCloseDisplay(display); }

  Display* display;
  Window window = 0;
};

Hand::Hand(const std::string& displayName) : connection(std::make_unique<Connection>(displayName)) {}
Hand::~Hand() = default;

void Hand::move(window::Point onScreen) const {
  XTestFakeMotionEvent(connection->display, DefaultScreen(connection->display), onScreen.x, onScreen.y,
                       CurrentTime);
  XSync(connection->display, False);
}

void Hand::button(unsigned number, bool down) const {
  XTestFakeButtonEvent(connection->display, number, down ? True : False, CurrentTime);
  XSync(connection->display, False);
}

void Hand::key(unsigned code, bool down) const {
  XTestFakeKeyEvent(connection->display, code, down ? True : False, CurrentTime);
  XSync(connection->display, False);
}

void Hand::takeWindow() {
  Display* display = connection->display;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), XInternAtom(display, "_NET_ACTIVE_WINDOW", False),
                     0, 1, False, XA_WINDOW, &type, &format, &count, &rest, &data);
  connection->window = count == 1 ? *reinterpret_cast<Window*>(data) : 0;
  if (data != nullptr) XFree(data);
}

void Hand::resize(window::Size size) const {
  XResizeWindow(connection->display, connection->window, static_cast<unsigned>(size.w),
                static_cast<unsigned>(size.h));
  XSync(connection->display, False);
}

void Hand::minimise() const {
  XIconifyWindow(connection->display, connection->window, DefaultScreen(connection->display));
  XSync(connection->display, False);
}

void Hand::raise() const {
  Display* display = connection->display;
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = connection->window;
  event.xclient.message_type = XInternAtom(display, "_NET_ACTIVE_WINDOW", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = 2;  // a request of the user, which the window manager obeys
  XMapRaised(display, connection->window);
  XSendEvent(display, DefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask,
             &event);
  XSync(display, False);
}

bool Hand::isShown() const {
  XWindowAttributes attributes = {};
  return XGetWindowAttributes(connection->display, connection->window, &attributes) != 0 &&
         attributes.map_state == IsViewable;
}

void Hand::dropFocus() const {
  XSetInputFocus(connection->display, None, RevertToNone, CurrentTime);
  XSync(connection->display, False);
}

}  // namespace test
