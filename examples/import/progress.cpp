#include "progress.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
constexpr auto kPatience = std::chrono::seconds(1);
constexpr auto kInterval = std::chrono::milliseconds(100);
constexpr int kCells = 40;

}  // namespace

Progress::Progress(std::uint64_t total_bytes)
    : total_(total_bytes),
      on_(total_bytes > 0 && isatty(fileno(stderr)) != 0),
      next_(Clock::now() + kPatience) {}

Progress::~Progress() {
  Hide();
}

void Progress::Hide() {
  if (drawn_) std::fprintf(stderr, "\r%*s\r", kCells + 7, "");
  drawn_ = false;
}

void Progress::Show(std::uint64_t done_bytes) {
  if (!on_ || Clock::now() < next_) return;
  next_ = Clock::now() + kInterval;
  drawn_ = true;
  const double share = std::min(1.0, static_cast<double>(done_bytes) / static_cast<double>(total_));
  const int filled = static_cast<int>(share * kCells);
  std::fprintf(stderr, "\r[%s%s] %3d%%", std::string(static_cast<std::size_t>(filled), '#').c_str(),
               std::string(static_cast<std::size_t>(kCells - filled), '.').c_str(),
               static_cast<int>(share * 100));
  std::fflush(stderr);
}
