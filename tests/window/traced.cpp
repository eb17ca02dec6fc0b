#include "window/traced.h"

#include <cstdlib>

namespace window {

bool canTrace() { return std::system("strace -o /dev/null true 2>/dev/null") == 0; }

std::vector<std::string> straceCommand(const std::string& log, const std::vector<std::string>& options) {
  std::vector<std::string> command = {"strace", "-D", "-f", "-qq", "-o", log};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

Environment traceable(const Desktop& desktop) {
  return {{"ASAN_OPTIONS", desktop.environment()["ASAN_OPTIONS"] + ":detect_leaks=0"},
          {"MESA_SHADER_CACHE_DISABLE", "true"}};
}

std::vector<std::string> injection(const std::string& calls, const std::string& disturbance,
                                   const std::vector<std::string>& paths) {
  std::vector<std::string> options = {"-e", "trace=" + calls, "-e", "inject=" + calls + ":" + disturbance};
  // The option makes only these calls stop the program. But with it strace does not inject signals.
  if (!disturbance.starts_with("signal=")) options.emplace_back(kOnlyTheseCalls);
  for (const std::string& path : paths) options.insert(options.end(), {"-P", path});
  return options;
}

}  // namespace window
