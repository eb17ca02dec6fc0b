// traced.h: the game run under strace, which disturbs its system calls or writes them down.
#pragma once

#include <string>
#include <vector>

#include "window/desktop.h"

namespace window {

// Whether the machine lets a process trace another; containers often do not.
bool canTrace();

// Strace with these options, to be put before a command; what it sees goes to `log`. The command's process is
// the one that was started, not strace.
std::vector<std::string> straceCommand(const std::string& log, const std::vector<std::string>& options);

// What has to change in the desktop's environment for a traced program: the leak sanitizer traces too, which
// only one can; and Mesa writes no shaders of its own.
Environment traceable(const Desktop& desktop);

// An option: the program is held up by the calls that are traced, and not by all others.
inline constexpr const char* kOnlyTheseCalls = "--seccomp-bpf";

// Options for calls that meet `disturbance`, and only those on these paths if there are any.
std::vector<std::string> injection(const std::string& calls, const std::string& disturbance,
                                   const std::vector<std::string>& paths = {});

}  // namespace window
