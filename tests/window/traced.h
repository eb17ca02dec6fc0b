// traced.h: runs the game under strace, which disturbs or logs its system calls.
#pragma once

#include <string>
#include <vector>

#include "window/desktop.h"

namespace window {

// Whether this process may trace another. Containers often forbid it.
bool canTrace();

// The words to put before a command to run it under strace with these options. The log goes to `log`. The
// started process is the command itself, not strace.
std::vector<std::string> straceCommand(const std::string& log, const std::vector<std::string>& options);

// Changes to the desktop's environment for a traced program. Turns off the leak sanitizer, because only one
// tracer is possible, and Mesa's shader cache on disk.
Environment traceable(const Desktop& desktop);

// An strace option: only traced calls stop the program, so the others keep their speed.
inline constexpr const char* kOnlyTheseCalls = "--seccomp-bpf";

// Strace options that apply `disturbance` to these calls, only on these paths if any are given.
std::vector<std::string> injection(const std::string& calls, const std::string& disturbance,
                                   const std::vector<std::string>& paths = {});

}  // namespace window
