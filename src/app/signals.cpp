#include "app/signals.h"

#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace ui {

namespace {

constexpr int kEndingSignals[] = {SIGTERM, SIGINT, SIGHUP};
constexpr unsigned kLastWordsSeconds = 2;

volatile std::sig_atomic_t terminationFlag = 0;
volatile std::sig_atomic_t endingSignal = 0;
void (*lastWords)() = nullptr;

void endNow(int) { std::_Exit(128 + endingSignal); }

void onTerminationSignal(int sig) {
  if (terminationFlag == 0) {
    terminationFlag = 1;
    return;
  }
  endingSignal = sig;
  if (lastWords != nullptr) {
    std::signal(SIGALRM, endNow);
    alarm(kLastWordsSeconds);
    lastWords();
  }
  endNow(sig);
}

// The call that failed tells its caller.
void onFailedWrite(int) {}

}  // namespace

void installTerminationHandler(void (*lastWordsFunction)()) {
  lastWords = lastWordsFunction;
  for (const int sig : kEndingSignals) std::signal(sig, onTerminationSignal);
}

void surviveFailedWrites() {
  // Not SIG_IGN, which a browser opened from the game would inherit.
  for (const int sig : {SIGPIPE, SIGXFSZ}) std::signal(sig, onFailedWrite);
}

bool terminationRequested() { return terminationFlag != 0; }

}  // namespace ui
