#include "simulator/voice.h"

#include <utility>

namespace zep::simulator {

namespace {

// Changes the first checksum digit of the last record: it stands before the record's carriage
// return and the prompt.
void SpoilChecksum(std::string& records) {
  const std::size_t end = records.rfind('\r');
  if (end == std::string::npos || end < 2) return;
  char& digit = records[end - 2];
  digit = digit == '0' ? '1' : '0';
}

}  // namespace

void Voice::Answer(Step step, const std::function<std::string()>& carry_out) {
  const Fault* fault = faults_.Reach(step);
  if (fault == nullptr) return Say(carry_out());
  if (KeepsQuiet(*fault)) return;
  if (fault->kind == FaultKind::kBrace) return Say(ErrorReply(fault->code));

  std::string text = carry_out();
  const auto value = static_cast<std::size_t>(fault->value);
  if (fault->kind == FaultKind::kWrong && !text.empty()) text[0] = static_cast<char>(value);
  if (fault->kind == FaultKind::kDrop && value < text.size()) text.erase(value, 1);
  if (fault->kind == FaultKind::kWrongChecksum) SpoilChecksum(text);
  const bool slow = fault->kind == FaultKind::kSlow;
  Say(text, slow ? std::chrono::milliseconds(fault->value) : platform::Duration::zero());
}

void Voice::Answer(Step step, std::string_view text) {
  Answer(step, [text] { return std::string(text); });
}

std::optional<std::uint8_t> Voice::Hear(Step step, std::uint8_t byte) {
  const Fault* fault = faults_.Reach(step);
  if (fault == nullptr) return byte;
  if (KeepsQuiet(*fault) || fault->kind == FaultKind::kDrop) return std::nullopt;
  if (fault->kind == FaultKind::kBrace) Say(ErrorReply(fault->code));
  if (fault->kind == FaultKind::kWrong) return static_cast<std::uint8_t>(fault->value);
  return byte;
}

bool Voice::KeepsQuiet(const Fault& fault) {
  if (fault.kind == FaultKind::kSilent) silent_ = true;
  if (fault.kind == FaultKind::kCut) cut_ = true;
  return silent_ || cut_;
}

std::string Voice::ErrorReply(std::string_view code) {
  ++counts_.errors_replied;
  return "{" + std::string(code) + "}\r>";
}

void Voice::Say(std::string bytes, platform::Duration delay) {
  if (bytes.empty() || silent_ || cut_) return;
  said_.push_back({std::move(bytes), baud_, delay});
}

}  // namespace zep::simulator
