#include "window/player_files.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <stdexcept>
#include <system_error>

namespace window {
namespace {

namespace fs = std::filesystem;

// One line per scalar; one line for each file that is not a document.
std::set<std::string> linesOf(const PlayerFiles& files) {
  std::set<std::string> lines = files.others;
  for (const auto& [name, members] : files.documents) {
    for (const auto& [path, value] : members) lines.insert(std::string(name).append(path + "=" + value));
  }
  return lines;
}

}  // namespace

Members membersOf(const std::string& file) {
  Child reader({"python3", VESKARA_FLATTEN_JSON, file}, cleanEnvironment("/nonexistent"));
  if (reader.waitForEnd() != 0) return {{"", reader.errors()}};
  Members members;
  std::istringstream text(reader.output());
  for (std::string line; std::getline(text, line);) {
    const std::size_t end = line.find('=');
    members[line.substr(0, end)] = line.substr(end + 1);
  }
  return members;
}

std::string quoted(const std::string& text) { return "\"" + text + "\""; }

std::int64_t takeNumber(Members& members, const std::string& path) {
  const auto node = members.extract(path);
  if (node) return std::stoll(node.mapped());
  ADD_FAILURE() << "no " << path;
  return 0;
}

Members firstSettings(Point place) {
  return {{".fullscreen", "false"},
          {".language", quoted("")},
          {".maximized", "false"},
          {".musicVolume", "0.25"},
          {".sfxVolume", "1"},
          {".soundOn", "true"},
          {".windowH", std::to_string(kFirstWindow.h)},
          {".windowW", std::to_string(kFirstWindow.w)},
          {".windowX", std::to_string(place.x)},
          {".windowY", std::to_string(place.y)}};
}

Members savedMembers(const mj::GameState& game, int level, std::uint32_t deal) {
  Members members;
  const auto add = [&](const std::string& name, const std::string& value) {
    members[".current_mahjong." + name] = value;
  };
  const auto addNumber = [&](const std::string& name, std::int64_t value) {
    add(name, std::to_string(value));
  };
  for (std::size_t i = 0; i < game.faces.size(); ++i) {
    add("faces[" + std::to_string(i) + "]", quoted(game.faces[i]));
  }
  if (game.history.empty()) add("history", "[]");
  for (std::size_t i = 0; i < game.history.size(); ++i) {
    const std::string entry = "history[" + std::to_string(i) + "].";
    addNumber(entry + "a", game.history[i].a);
    addNumber(entry + "b", game.history[i].b);
    add(entry + "fa", quoted(game.history[i].faceA));
    add(entry + "fb", quoted(game.history[i].faceB));
  }
  addNumber("hintsUsed", game.hints);
  addNumber("level", level);
  addNumber("rngState", game.rng);
  addNumber("seed", deal);
  addNumber("selectedId", game.selected);
  addNumber("shufflesUsed", game.shuffles);
  return members;
}

// Files may appear or disappear meanwhile.
PlayerFiles readPlayerFiles(const std::string& dataDir) {
  PlayerFiles files;
  std::error_code gone;
  for (fs::recursive_directory_iterator entry(dataDir, gone), end; !gone && entry != end;
       entry.increment(gone)) {
    std::error_code ignored;
    if (entry->is_directory(ignored)) continue;
    const std::string name = entry->path().lexically_relative(dataDir);
    if (name.ends_with(".json")) {
      files.documents[name] = membersOf(entry->path());
    } else {
      files.others.insert(name);
    }
  }
  return files;
}

std::string differences(const PlayerFiles& seen, const PlayerFiles& expected) {
  const std::set<std::string> here = linesOf(seen);
  const std::set<std::string> there = linesOf(expected);
  std::string text;
  for (const std::string& line : here) text += there.contains(line) ? "" : "\n  too much: " + line;
  for (const std::string& line : there) text += here.contains(line) ? "" : "\n  missing:  " + line;
  return text;
}

FileWatch::FileWatch(const std::string& dataDir) : queue(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  constexpr std::uint32_t kAll = IN_CREATE | IN_MODIFY | IN_MOVED_TO | IN_DELETE;
  for (const std::string& dir : {dataDir, dataDir + "/solves"}) {
    if (inotify_add_watch(queue, dir.c_str(), kAll) < 0) throw std::runtime_error("cannot watch " + dir);
  }
}

FileWatch::~FileWatch() { close(queue); }

std::vector<std::string> FileWatch::touched() {
  return namesOf(IN_CREATE | IN_MODIFY | IN_MOVED_TO | IN_DELETE);
}
std::vector<std::string> FileWatch::replaced() { return namesOf(IN_MOVED_TO); }

std::vector<std::string> FileWatch::namesOf(std::uint32_t events) const {
  std::vector<std::string> names;
  std::array<char, 4096> buffer;
  for (ssize_t got = 0; (got = read(queue, buffer.data(), buffer.size())) > 0;) {
    inotify_event event;
    for (ssize_t at = 0; at < got; at += static_cast<ssize_t>(sizeof event + event.len)) {
      std::memcpy(&event, buffer.data() + at, sizeof event);
      if ((event.mask & events) != 0) names.emplace_back(buffer.data() + at + sizeof event);
    }
  }
  return names;
}

}  // namespace window
