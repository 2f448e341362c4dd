#include <array>
#include <atomic>
#include <csignal>

#include "platform/interrupt.h"

namespace zep::platform {
namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

// A signal handler is given nothing but the signal's number, so this cannot be a member.
std::atomic<int> interrupts_waiting = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void Count(int) { ++interrupts_waiting; }

void SetHandler(void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  for (const int signal : kSignals) {
    // What the parent process has told us to ignore (nohup) stays ignored.
    struct sigaction present {};
    sigaction(signal, nullptr, &present);
    if (present.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr);
  }
}

}  // namespace

Interrupts::Interrupts() {
  interrupts_waiting = 0;
  SetHandler(Count);
  signal(SIGPIPE, SIG_IGN);
}

Interrupts::~Interrupts() {
  SetHandler(SIG_DFL);
  signal(SIGPIPE, SIG_DFL);
}

int Interrupts::Take() { return interrupts_waiting.exchange(0); }

}  // namespace zep::platform
