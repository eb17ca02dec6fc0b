// signals.h: ends the program on signals. The first SIGTERM, SIGINT or SIGHUP asks for an orderly end, a
// second one ends it at once. Also keeps failed writes from killing the program.
#pragma once

namespace ui {

// Installs the handler for the three signals. On a second signal it calls `lastWords` (may be null), then
// ends the process with status 128 + signal without saving. If `lastWords` hangs, the process ends after
// about two seconds.
void installTerminationHandler(void (*lastWords)());

// Makes a write to a closed pipe, or beyond the file size limit, fail with an error instead of killing the
// program with the game unsaved.
void surviveFailedWrites();

// Whether a signal has arrived.
bool terminationRequested();

}  // namespace ui
