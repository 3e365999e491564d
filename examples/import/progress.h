#pragma once

// A progress bar on standard error: only on a terminal, and only once the work has taken longer than a
// second.

#include <chrono>
#include <cstdint>

class Progress {
 public:
  explicit Progress(std::uint64_t total_bytes);
  ~Progress();  // wipes the bar
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // Whether a bar may ever be drawn; when not, the caller need not work out how far it is.
  bool IsOn() const { return on_; }

  // Draws the bar anew when enough time has passed since the last time.
  void Show(std::uint64_t done_bytes);
  // Wipes the bar off, for text that goes to the same terminal.
  void Hide();

 private:
  std::uint64_t total_;
  bool on_;
  bool drawn_ = false;
  std::chrono::steady_clock::time_point next_;
};
