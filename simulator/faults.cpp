#include "simulator/faults.h"

#include <algorithm>

#include "simulator/numbers.h"

namespace zep::simulator {

namespace {

constexpr std::array<StepName, kStepCount> kStepNames = {{
    {Step::kCaret, "caret", true},
    {Step::kPrompt, "prompt", true},
    {Step::kList, "list", true},
    {Step::kRead, "read", true},
    {Step::kNetwork, "network", true},
    {Step::kBegin, "begin", true},
    {Step::kWrite, "write", true},
    {Step::kEnd, "end", true},
    {Step::kBootstrap, "bootstrap", false},
    {Step::kConfig, "config", true},
    {Step::kSpeed, "speed", false},
    {Step::kLoader, "loader", false},
    {Step::kIdentification, "identification", true},
    {Step::kMode, "mode", true},
    {Step::kHeader, "header", true},
    {Step::kBlock, "block", true},
    {Step::kUpload, "upload", true},
    {Step::kFinish, "finish", false},
}};

constexpr std::array<FaultName, 7> kFaultNames = {{
    {FaultKind::kSilent, "silent"},
    {FaultKind::kWrong, "wrong"},
    {FaultKind::kBrace, "brace"},
    {FaultKind::kWrongChecksum, "badsum"},
    {FaultKind::kSlow, "slow"},
    {FaultKind::kDrop, "drop"},
    {FaultKind::kCut, "cut"},
}};

template <typename Rows>
std::string NamesOf(const Rows& rows) {
  std::string names;
  for (const auto& row : rows) names += (names.empty() ? "" : ", ") + std::string(row.name);
  return names;
}

template <typename Rows>
auto FindName(const Rows& rows, std::string_view name) {
  return std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.name == name; });
}

const StepName& NameOf(Step step) { return kStepNames.at(static_cast<std::size_t>(step)); }
const FaultName& NameOf(FaultKind kind) { return kFaultNames.at(static_cast<std::size_t>(kind)); }

// What a fault without "=VALUE" means.
void SetDefaultValue(Fault& fault) {
  if (fault.kind == FaultKind::kWrong) fault.value = '?';
  if (fault.kind == FaultKind::kSlow) fault.value = 1000;
  if (fault.kind == FaultKind::kBrace) fault.code = "C01";
}

// Takes the text after "=". Returns what would have been allowed, or nothing when the text is good.
std::string_view SetValue(Fault& fault, std::string_view text) {
  std::optional<int> number;
  switch (fault.kind) {
    case FaultKind::kWrong:
      number = ByteFromHex(text);
      if (!number) return "a byte as two upper-case hexadecimal digits";
      break;
    case FaultKind::kBrace:
      fault.code = text;
      if (text.empty()) return "the text between the braces, as C04";
      return {};
    case FaultKind::kSlow:
      number = Decimal(text);
      if (!number) return "a number of milliseconds";
      break;
    case FaultKind::kDrop:
      number = Decimal(text);
      if (!number) return "a position in the answer, counted from 0";
      break;
    default:
      return "no value";
  }
  fault.value = *number;
  return {};
}

// Splits text at the first separator: returns what stands before it and leaves the rest in text;
// with no separator returns all and leaves nothing.
std::optional<std::string_view> TakeAfter(std::string_view& text, char separator) {
  const std::size_t at = text.find(separator);
  if (at == std::string_view::npos) return std::nullopt;
  const std::string_view after = text.substr(at + 1);
  text = text.substr(0, at);
  return after;
}

}  // namespace

std::span<const StepName> StepNames() { return kStepNames; }
std::span<const FaultName> FaultNames() { return kFaultNames; }

bool CanHappen(FaultKind kind, Step step) {
  if (kind == FaultKind::kWrongChecksum) return step == Step::kRead;
  if (kind == FaultKind::kSlow) return NameOf(step).answered;
  return true;
}

Parsed<Fault> ParseFault(std::string_view text) {
  const std::string quoted = "\"" + std::string(text) + "\": ";
  const std::optional<std::string_view> value = TakeAfter(text, '=');
  const std::optional<std::string_view> place = TakeAfter(text, '@');
  if (!place) return {{}, quoted + "a fault is KIND@STEP[:N[+]][=VALUE], as silent@block:100."};
  std::string_view step_name = *place;
  std::optional<std::string_view> ordinal = TakeAfter(step_name, ':');

  const auto kind = FindName(kFaultNames, text);
  if (kind == kFaultNames.end()) {
    return {{}, quoted + "there are the faults " + NamesOf(kFaultNames) + "."};
  }
  const auto step = FindName(kStepNames, step_name);
  if (step == kStepNames.end()) {
    return {{}, quoted + "there are the steps " + NamesOf(kStepNames) + "."};
  }
  Fault fault{.kind = kind->kind, .step = step->step};
  if (!CanHappen(fault.kind, fault.step)) {
    return {{}, quoted + "this fault cannot happen at this step."};
  }
  if (ordinal) {
    fault.from_then_on = ordinal->ends_with('+');
    if (fault.from_then_on) ordinal->remove_suffix(1);
    fault.ordinal = Decimal(*ordinal).value_or(0);
    if (fault.ordinal < 1) return {{}, quoted + "steps are counted from 1, as block:100."};
  }
  SetDefaultValue(fault);
  const std::string_view allowed = value ? SetValue(fault, *value) : std::string_view{};
  if (!allowed.empty()) {
    return {{}, quoted + std::string(text) + " takes " + std::string(allowed) + "."};
  }
  return {fault, {}};
}

std::string FaultText(const Fault& fault) {
  std::string text(NameOf(fault.kind).name);
  text += "@" + std::string(NameOf(fault.step).name) + ":" + std::to_string(fault.ordinal);
  if (fault.from_then_on) text += "+";
  if (fault.kind == FaultKind::kBrace) text += "=" + fault.code;
  if (fault.kind == FaultKind::kWrong)
    text += "=" + HexByte(static_cast<std::uint8_t>(fault.value));
  if (fault.kind == FaultKind::kSlow || fault.kind == FaultKind::kDrop) {
    text += "=" + std::to_string(fault.value);
  }
  return text;
}

const Fault* FaultPlan::Reach(Step step) {
  const int count = ++reached_.at(static_cast<std::size_t>(step));
  for (const Fault& fault : faults_) {
    if (fault.step != step) continue;
    if (fault.ordinal == count || (fault.from_then_on && fault.ordinal < count)) return &fault;
  }
  return nullptr;
}

}  // namespace zep::simulator
