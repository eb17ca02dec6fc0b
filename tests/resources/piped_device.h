// piped_device.h: a sound card that a test listens to, sample by sample. SDL writes its sound into a pipe,
// and mixes on only as the test takes it out: how fast the machine is makes no difference.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace support {

using Samples = std::vector<std::int16_t>;  // interleaved stereo

// Frames that the mixer makes at a time.
inline constexpr std::size_t kBuffer = 1024;
// More frames than pipe and driver hold together: sound that is this old was mixed after what the test did
// last.
inline constexpr std::size_t kLatency = 8 * kBuffer;

class PipedDevice {
 public:
  // The card for the next opening of a device in this process.
  PipedDevice();
  PipedDevice(const PipedDevice&) = delete;
  PipedDevice& operator=(const PipedDevice&) = delete;
  // Pulls the cable: a device that is still open is then heard by nobody, and can be closed.
  ~PipedDevice();

  // The next so many frames. Fewer, and a failure of the test, when none come for half a minute.
  Samples listen(std::size_t frames) const;
  // What the card plays now, in answer to all that was done before: one sample.
  int level() const;

 private:
  TempDir dir;
  int pipe = -1;
};

// `sound` without the silence before and after it.
Samples trimmed(const Samples& sound);

// A sound of equal samples, one piece after another.
struct Piece {
  int level = 0;
  std::size_t frames = 0;

  bool operator==(const Piece&) const = default;
};
// What `sound`, the same on both sides, is made of.
std::vector<Piece> pieces(const Samples& sound);

// A sound file that SDL_mixer decodes to exactly these pieces.
std::string wav(const std::vector<Piece>& pieces);

}  // namespace support
