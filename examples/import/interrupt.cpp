#include "interrupt.h"

#include <atomic>
#include <csignal>

namespace {

// Set by the handler, on some hosts in a thread of its own.
std::atomic<bool> g_requested = false;
static_assert(std::atomic<bool>::is_always_lock_free);

void OnInterrupt(int) {
  g_requested = true;
}

}  // namespace

Interrupt::Interrupt() {
  g_requested = false;
  former_ = std::signal(SIGINT, OnInterrupt);
}

Interrupt::~Interrupt() {
  if (former_ != SIG_ERR) std::signal(SIGINT, former_);
}

bool Interrupt::IsRequested() const {
  return g_requested;
}
