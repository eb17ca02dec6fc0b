#include "window/child.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace window {
namespace {

constexpr std::chrono::milliseconds kPollInterval{20};
constexpr int kCannotStart = 127;  // as in a shell

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  pointers.reserve(texts.size() + 1);
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

bool redirect(int from, const char* path, int flags) {
  const int file = open(path, flags | O_CLOEXEC, 0600);
  return file >= 0 && dup2(file, from) == from;
}

}  // namespace

bool waitFor(const std::function<bool()>& condition, std::chrono::seconds patience) {
  const auto limit = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > limit) return false;
    std::this_thread::sleep_for(kPollInterval);
  }
  return true;
}

Environment cleanEnvironment(const std::string& home) {
  Environment environment = {{"HOME", home},
                             {"XDG_CACHE_HOME", home + "/cache"},
                             {"XDG_CONFIG_HOME", home + "/config"},
                             {"XDG_DATA_HOME", home + "/data"},
                             {"LANG", "C.UTF-8"}};
  for (const char* name : {"PATH", "ASAN_OPTIONS", "GCOV_ERROR_FILE", "LSAN_OPTIONS", "UBSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) environment[name] = value;
  }
  return environment;
}

Environment changed(Environment environment, const Environment& changes) {
  for (const auto& [name, value] : changes) environment[name] = value;
  return environment;
}

Child::Child(const std::vector<std::string>& command, const Environment& environment) {
  std::vector<std::string> words = command;
  std::vector<std::string> variables;
  for (const auto& [name, value] : environment) variables.push_back(name + "=" + value);
  const std::vector<char*> arguments = pointersTo(words);
  const std::vector<char*> settings = pointersTo(variables);
  const std::string out = files.path("out");
  const std::string err = files.path("err");
  const pid_t parent = getpid();

  process = fork();
  if (process < 0) throw std::runtime_error("no process");
  if (process > 0) return;
  // If the test is killed, its children die with it.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const bool ready = getppid() == parent && redirect(STDIN_FILENO, "/dev/null", O_RDONLY) &&
                     redirect(STDOUT_FILENO, out.c_str(), O_WRONLY | O_CREAT) &&
                     redirect(STDERR_FILENO, err.c_str(), O_WRONLY | O_CREAT);
  if (ready) execvpe(arguments[0], arguments.data(), settings.data());
  _exit(kCannotStart);
}

Child::~Child() {
  if (hasEnded()) return;
  kill(process, SIGKILL);
  waitpid(process, nullptr, 0);
}

void Child::send(int signal) const { kill(process, signal); }

std::string Child::output() const { return support::readAll(files.path("out")); }
std::string Child::errors() const { return support::readAll(files.path("err")); }

bool Child::hasEnded() {
  int how = 0;
  if (!status && waitpid(process, &how, WNOHANG) == process) {
    status = WIFEXITED(how) ? WEXITSTATUS(how) : -WTERMSIG(how);
  }
  return status.has_value();
}

std::optional<int> Child::waitForEnd() {
  waitFor([this] { return hasEnded(); });
  return status;
}

}  // namespace window
