// stats.h: the frame statistics that VESKARA_STATS asks for: sums over an interval, one line for each.
// Units: seconds in, milliseconds out.
#pragma once

#include <string>

namespace ui {

class FrameStats {
 public:
  // An interval begins at `now`.
  explicit FrameStats(double now) : since(now) {}

  // One more frame: the time spent on updating and drawing, and on uploading and presenting.
  void add(double cpu, double gpu);
  // Whether the interval is a second old or older.
  bool due(double now) const { return now - since >= 1.0; }
  // The line of the interval, newline included; the next interval begins. There must have been a frame.
  std::string report(double now, int copies, int pixelW, int pixelH, const std::string& profile);

 private:
  double since;
  int frames = 0;
  double cpuTime = 0;
  double gpuTime = 0;
};

}  // namespace ui
