// stats.h: the frame statistics for VESKARA_STATS, reported as one line per interval. Units: seconds in,
// milliseconds out.
#pragma once

#include <string>

namespace ui {

class FrameStats {
 public:
  // An interval begins at `now`.
  explicit FrameStats(double now) : since(now) {}

  // Adds a frame: the seconds spent on updating and drawing (cpu), and on uploading and presenting (gpu).
  void add(double cpu, double gpu);
  // Whether the interval is a second old or older.
  bool due(double now) const { return now - since >= 1.0; }
  // The line for the interval, including a newline. Starts the next interval. At least one frame must have
  // been added.
  std::string report(double now, int copies, int pixelW, int pixelH, const std::string& profile);

 private:
  double since;
  int frames = 0;
  double cpuTime = 0;
  double gpuTime = 0;
};

}  // namespace ui
