// signals.h: how the program ends when it is told to: the first SIGTERM, SIGINT or SIGHUP asks for an orderly
// end, a second one ends it at once.
#pragma once

namespace ui {

// Installs the handler for the three signals. `lastWords` (may be null) is called when a second signal
// arrives, just before the process ends with status 128 + signal, unsaved; should it hang, the process ends
// all the same about two seconds later.
void installTerminationHandler(void (*lastWords)());

// Whether a first signal has arrived.
bool terminationRequested();

}  // namespace ui
