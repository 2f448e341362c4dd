#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/advice.h"
#include "platform/processes.h"

namespace zep::platform {
namespace {

// Runs in the child of a fork: only calls that are safe there. Does not return.
[[noreturn]] void BecomeProgram(char* const* words, int report) {
  setsid();
  if (fork() > 0) _exit(0);
  const int nothing = open("/dev/null", O_RDWR);
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) dup2(nothing, stream);
  signal(SIGPIPE, SIG_DFL);  // which it would inherit as ignored
  execvp(words[0], words);
  const int why = errno;
  if (write(report, &why, sizeof why) < 0) _exit(126);
  _exit(127);
}

}  // namespace

SystemError StartProgram(const std::string& program, const std::vector<std::string>& arguments) {
  std::vector<std::string> texts = {program};
  texts.insert(texts.end(), arguments.begin(), arguments.end());
  std::vector<char*> words;
  words.reserve(texts.size() + 1);
  for (std::string& text : texts) words.push_back(text.data());
  words.push_back(nullptr);

  std::array<int, 2> report{};  // closed by a successful exec, else tells why it failed
  if (pipe2(report.data(), O_CLOEXEC) != 0) return LastSystemError(program);
  const pid_t child = fork();
  if (child == 0) BecomeProgram(words.data(), report[1]);
  int why = child < 0 ? errno : 0;
  close(report[1]);
  if (child > 0) {
    waitpid(child, nullptr, 0);
    if (read(report[0], &why, sizeof why) != sizeof why) why = 0;
  }
  close(report[0]);
  if (why == 0) return {};
  return WithAdvice(MakeSystemError(why, program), Advice::kProgramMissing, {program});
}

SystemError OpenWebAddress(const std::string& address) {
  const bool has_scheme = address.find("://") != address.npos;
  SystemError error = StartProgram("xdg-open", {has_scheme ? address : "http://" + address});
  if (!error) return {};
  return WithAdvice(std::move(error), Advice::kOpenAddressByHand, {address});
}

Duration ProcessorTime() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::uint64_t PeakMemory() {
  // The usual getrusage() counts what the parent had when it started us.
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    std::uint64_t kilobytes = 0;
    if (word == "VmHWM:" && status >> kilobytes) return kilobytes * 1024;
  }
  return 0;
}

}  // namespace zep::platform
