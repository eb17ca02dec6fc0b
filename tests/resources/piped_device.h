// piped_device.h: a sound device that a test reads sample by sample. SDL writes its sound into a pipe and
// mixes only as fast as the test reads, so the machine's speed does not matter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "support/temp_dir.h"

namespace support {

using Samples = std::vector<std::int16_t>;  // interleaved stereo

// Frames that the mixer produces at a time.
inline constexpr std::size_t kBuffer = 1024;
// More frames than pipe and driver can hold together. Sound read after skipping that many was mixed after the
// test's last call.
inline constexpr std::size_t kLatency = 8 * kBuffer;

class PipedDevice {
 public:
  // Used by the next device that this process opens.
  PipedDevice();
  PipedDevice(const PipedDevice&) = delete;
  PipedDevice& operator=(const PipedDevice&) = delete;
  // Closes the pipe. A device that is still open then writes to nobody and can be closed.
  ~PipedDevice();

  // The next `frames` frames. If none arrive for half a minute, fails the test and returns fewer.
  Samples listen(std::size_t frames) const;
  // One sample of what plays now, after everything done before has taken effect.
  int level() const;

 private:
  TempDir dir;
  int pipe = -1;
};

// `sound` without leading and trailing silence.
Samples trimmed(const Samples& sound);

// A run of equal samples.
struct Piece {
  int level = 0;
  std::size_t frames = 0;

  bool operator==(const Piece&) const = default;
};
// The pieces of `sound`, whose two channels must be equal.
std::vector<Piece> pieces(const Samples& sound);

// A WAV file that SDL_mixer decodes to exactly these pieces.
std::string wav(const std::vector<Piece>& pieces);

}  // namespace support
