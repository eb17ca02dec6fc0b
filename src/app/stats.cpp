#include "app/stats.h"

#include <array>
#include <cstdio>

namespace ui {

void FrameStats::add(double cpu, double gpu) {
  ++frames;
  cpuTime += cpu;
  gpuTime += gpu;
}

std::string FrameStats::report(double now, int copies, int pixelW, int pixelH, const std::string& profile) {
  std::array<char, 160> line{};
  std::snprintf(line.data(), line.size(), "[stats] %3d fps   CPU %5.1f ms   GPU %5.1f ms   %d Kopien  %dx%d ",
                frames, cpuTime * 1000 / frames, gpuTime * 1000 / frames, copies, pixelW, pixelH);
  *this = FrameStats(now);
  return line.data() + profile + "\n";
}

}  // namespace ui
