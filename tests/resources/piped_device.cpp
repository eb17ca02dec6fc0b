#include "resources/piped_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace support {

namespace {

constexpr int kPatienceMs = 30'000;
constexpr int kBufferBytes = static_cast<int>(kBuffer * 2 * sizeof(std::int16_t));

bool waitForBytes(int pipe) {
  pollfd waiting = {pipe, POLLIN, 0};
  return poll(&waiting, 1, kPatienceMs) == 1;
}

void appendNumber(std::string& bytes, std::uint32_t number, int count) {
  for (int i = 0; i < count; ++i) bytes += static_cast<char>(number >> (8 * i) & 0xFFU);
}

}  // namespace

PipedDevice::PipedDevice() {
  const std::string file = dir.path("sound");
  if (mkfifo(file.c_str(), 0600) == 0) pipe = open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (pipe < 0 || fcntl(pipe, F_SETPIPE_SZ, kBufferBytes) < 0) throw std::runtime_error("no pipe");
  // Writing to the closed pipe must only fail, not kill the process.
  std::signal(SIGPIPE, SIG_IGN);
  setenv("SDL_AUDIODRIVER", "disk", 1);
  setenv("SDL_DISKAUDIOFILE", file.c_str(), 1);
  setenv("SDL_DISKAUDIODELAY", "0", 1);
}

PipedDevice::~PipedDevice() { close(pipe); }

Samples PipedDevice::listen(std::size_t frames) const {
  Samples sound(frames * 2);
  auto* bytes = reinterpret_cast<char*>(sound.data());
  const std::size_t size = sound.size() * sizeof(std::int16_t);
  std::size_t filled = 0;
  while (filled < size) {
    const ssize_t got = waitForBytes(pipe) ? read(pipe, bytes + filled, size - filled) : 0;
    if (got <= 0) {
      ADD_FAILURE() << "the device sent no sound";
      break;
    }
    filled += static_cast<std::size_t>(got);
  }
  sound.resize(filled / sizeof(std::int16_t));
  return sound;
}

int PipedDevice::level() const {
  const Samples sound = listen(kLatency + 1);
  return sound.empty() ? 0 : sound.back();
}

Samples trimmed(const Samples& sound) {
  const auto heard = [](std::int16_t sample) { return sample != 0; };
  const auto begin = std::find_if(sound.begin(), sound.end(), heard);
  const auto end = std::find_if(sound.rbegin(), std::make_reverse_iterator(begin), heard).base();
  return {begin, end};
}

std::vector<Piece> pieces(const Samples& sound) {
  std::vector<Piece> found;
  for (std::size_t i = 0; i + 1 < sound.size(); i += 2) {
    EXPECT_EQ(sound[i], sound[i + 1]) << "left and right differ";
    if (found.empty() || found.back().level != sound[i]) found.push_back({sound[i], 0});
    ++found.back().frames;
  }
  return found;
}

std::string wav(const std::vector<Piece>& pieces) {
  constexpr std::uint32_t kRate = 44100;
  std::string sound;
  for (const Piece& piece : pieces) {
    for (std::size_t i = 0; i < 2 * piece.frames; ++i) {
      appendNumber(sound, static_cast<std::uint32_t>(piece.level), 2);
    }
  }
  const auto size = static_cast<std::uint32_t>(sound.size());
  std::string file = "RIFF";
  appendNumber(file, 36 + size, 4);
  file += "WAVEfmt ";
  appendNumber(file, 16, 4);
  appendNumber(file, 1, 2);  // format: PCM
  appendNumber(file, 2, 2);  // channels
  appendNumber(file, kRate, 4);
  appendNumber(file, kRate * 4, 4);  // bytes per second
  appendNumber(file, 4, 2);          // bytes per frame
  appendNumber(file, 16, 2);         // bits per sample
  file += "data";
  appendNumber(file, size, 4);
  return file + sound;
}

}  // namespace support
