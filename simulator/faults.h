// What can go wrong with a simulated radio: rows of "at the n-th time of this step, this happens",
// as text
//
//   KIND@STEP[:N[+]][=VALUE]      silent@block:100   brace@write:3=C04   wrong@config=43
//   slow@read:1+=300
//
// N counts from 1 over the radio's whole life (default 1); with "+" the fault stays from the n-th
// time on.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/parsed.h"

namespace zep::simulator {

// Points of a conversation at which a fault can be put.
enum class Step {
  kCaret,           // "^", answered with "v"
  kPrompt,          // "#", answered with ">"
  kList,            // "l"
  kRead,            // "r" item
  kNetwork,         // "d0" network
  kBegin,           // "b"
  kWrite,           // "w" record
  kEnd,             // "e"
  kBootstrap,       // each byte of the first loader; number 1 is the leading 0xFF
  kConfig,          // the configuration byte that the radio sends by itself
  kSpeed,           // "0" at 1200 baud, the change to 9600
  kLoader,          // each byte from "B" (number 1) to "E"
  kIdentification,  // maker, device and micro byte (numbers 1, 2, 3), sent by the radio by itself
  kMode,            // "r" or "t" (number 1), then "0" (number 2)
  kHeader,          // each of the five bytes before the blocks of a row
  kBlock,           // a block of 128 bytes written to the radio
  kUpload,          // "." that asks the radio for a block
  kFinish,          // 0xFF in place of a bank, which ends the loader
};
inline constexpr std::size_t kStepCount = 18;

enum class FaultKind {
  kSilent,  // the radio hears and says nothing any more
  kWrong,   // VALUE (hex, default 3F) in place of the answer's first byte, or of the byte that the
            // radio hears
  kBrace,   // "{VALUE}" (default C01) and the prompt in place of the answer; the command is not
            // carried out
  kWrongChecksum,  // a record with a wrong checksum
  kSlow,           // the answer comes VALUE (default 1000) milliseconds late
  kDrop,  // byte VALUE (default 0) of the answer is lost, or the byte that the radio should hear
  kCut,   // the line is cut: the port fails
};

struct Fault {
  FaultKind kind{};
  Step step{};
  int ordinal = 1;
  bool from_then_on = false;
  int value = 0;       // byte, milliseconds or position, as the kind says
  std::string code{};  // kBrace: the text between the braces
};

struct StepName {
  Step step;
  std::string_view name;
  bool answered;  // the radio sends something at this step
};
struct FaultName {
  FaultKind kind;
  std::string_view name;
};

// All steps and all kinds by their names, in the order of the enumerations.
std::span<const StepName> StepNames();
std::span<const FaultName> FaultNames();

// Whether the fault means something at the step: only a record can have a wrong checksum, only an
// answer can be slow.
bool CanHappen(FaultKind kind, Step step);

// The fault that text describes.
Parsed<Fault> ParseFault(std::string_view text);
std::string FaultText(const Fault& fault);

// The faults of one radio, and how often each step was reached.
class FaultPlan {
 public:
  explicit FaultPlan(std::vector<Fault> faults) : faults_(std::move(faults)) {}

  // Counts one more arrival at the step and returns the fault that happens there, if any.
  const Fault* Reach(Step step);

 private:
  std::vector<Fault> faults_;
  std::array<int, kStepCount> reached_{};
};

}  // namespace zep::simulator
