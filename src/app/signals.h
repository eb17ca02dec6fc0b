// signals.h: how the program ends when it is told to: the first SIGTERM, SIGINT or SIGHUP asks for an orderly
// end, a second one ends it at once. And what does not end it: a write that fails.
#pragma once

namespace ui {

// Installs the handler for the three signals. `lastWords` (may be null) is called when a second signal
// arrives, just before the process ends with status 128 + signal, unsaved; should it hang, the process ends
// all the same about two seconds later.
void installTerminationHandler(void (*lastWords)());

// A write to where nobody reads any more, or beyond the size that files may have, is then told to whoever
// writes, and no longer ends the program with the game unsaved.
void surviveFailedWrites();

// Whether a first signal has arrived.
bool terminationRequested();

}  // namespace ui
