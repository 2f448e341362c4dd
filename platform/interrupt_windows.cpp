#include <windows.h>
#include <atomic>

#include "platform/interrupt.h"

namespace zep::platform {
namespace {

// The console calls the handler on a thread of its own and gives it nothing but the event.
std::atomic<int> interrupts_waiting = 0;

BOOL WINAPI Count(DWORD event) {
  ++interrupts_waiting;
  // When the console is closed, the process lives only until this returns: leave it the time to end
  // its job.
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(10000);
  return TRUE;
}

}  // namespace

Interrupts::Interrupts() {
  interrupts_waiting = 0;
  SetConsoleCtrlHandler(Count, TRUE);
}

Interrupts::~Interrupts() { SetConsoleCtrlHandler(Count, FALSE); }

int Interrupts::Take() { return interrupts_waiting.exchange(0); }

}  // namespace zep::platform
