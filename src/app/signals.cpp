#include "app/signals.h"

#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace ui {

namespace {

constexpr int kEndingSignals[] = {SIGTERM, SIGINT, SIGHUP};
constexpr unsigned kLastWordsSeconds = 2;

// A signal handler may only touch lock-free variables; it may run on any thread.
std::atomic<bool> terminationFlag = false;
std::atomic<int> endingSignal = 0;
std::atomic<void (*)()> lastWords = nullptr;
static_assert(decltype(terminationFlag)::is_always_lock_free && decltype(endingSignal)::is_always_lock_free &&
              decltype(lastWords)::is_always_lock_free);

void endNow(int) { std::_Exit(128 + endingSignal); }

void onTerminationSignal(int sig) {
  if (!terminationFlag.exchange(true)) return;
  endingSignal = sig;
  if (void (*const speak)() = lastWords) {
    std::signal(SIGALRM, endNow);
    alarm(kLastWordsSeconds);
    speak();
  }
  endNow(sig);
}

// The failed call reports the error to its caller.
void onFailedWrite(int) {}

}  // namespace

void installTerminationHandler(void (*lastWordsFunction)()) {
  lastWords = lastWordsFunction;
  for (const int sig : kEndingSignals) std::signal(sig, onTerminationSignal);
}

void surviveFailedWrites() {
  // Not SIG_IGN: a browser opened from the game would inherit it.
  for (const int sig : {SIGPIPE, SIGXFSZ}) std::signal(sig, onFailedWrite);
}

bool terminationRequested() { return terminationFlag; }

}  // namespace ui
