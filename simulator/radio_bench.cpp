#include "simulator/radio_bench.h"

#include <algorithm>
#include <array>
#include <filesystem>

namespace zep::simulator {

namespace {

// Makes link a symbolic link to target.
platform::SystemError MakeLink(const std::string& target, const std::string& link) {
  std::error_code failure;
  if (std::filesystem::is_symlink(link, failure)) std::filesystem::remove(link, failure);
  std::filesystem::create_symlink(target, link, failure);
  if (!failure) return {};
  platform::SystemError error = platform::MakeSystemError(failure.value(), link);
  error.advice = "Please choose another name for the links.";
  return error;
}

}  // namespace

BenchPlace::~BenchPlace() {
  std::error_code ignored;
  if (!link_.empty()) std::filesystem::remove(link_, ignored);
}

platform::SystemError BenchPlace::Open(const std::string& link) {
  platform::SystemError error = terminal_.Open();
  if (error) return error;
  device_ = terminal_.SlaveName();
  if (link.empty()) return {};
  error = MakeLink(device_, link);
  if (!error) link_ = device_ = link;
  return error;
}

void BenchPlace::Serve(platform::Duration now) {
  if (!IsOpen()) return;
  TakeFromProgram(now);
  line_.Advance(now);
  GiveToProgram(now);
  if (line_.IsCut()) terminal_.Close();
}

// A program waits before it changes the speed, so the speed found behind the bytes is theirs.
void BenchPlace::TakeFromProgram(platform::Duration now) {
  std::array<std::uint8_t, 4096> buffer{};
  bool more = true;
  while (more) {
    const std::size_t count = terminal_.Read(buffer);
    line_.SetProgramBaud(terminal_.BaudSetByProgram());
    line_.Send(std::span(buffer).first(count), now);
    bytes_in_ += count;
    if (count > 0) last_byte_ = now;
    more = count == buffer.size();
  }
}

void BenchPlace::GiveToProgram(platform::Duration now) {
  std::deque<std::uint8_t>& arrived = line_.Input();
  while (!arrived.empty()) {
    std::array<std::uint8_t, 512> buffer{};
    const std::size_t offered = std::min(buffer.size(), arrived.size());
    const auto end = arrived.begin() + static_cast<std::ptrdiff_t>(offered);
    std::copy(arrived.begin(), end, buffer.begin());
    const std::size_t taken = terminal_.Write(std::span(buffer).first(offered));
    if (taken == 0) return;
    arrived.erase(arrived.begin(), arrived.begin() + static_cast<std::ptrdiff_t>(taken));
    bytes_out_ += taken;
    last_byte_ = now;
  }
}

RadioBench::RadioBench(std::vector<RadioProfile> profiles, platform::Clock& clock) : clock_(clock) {
  for (RadioProfile& profile : profiles) {
    places_.push_back(std::make_unique<BenchPlace>(std::move(profile)));
    terminals_.push_back(&places_.back()->Terminal());
  }
}

platform::SystemError RadioBench::Open(const std::string& link) {
  platform::SystemError error;
  for (std::size_t at = 0; at < places_.size() && !error; ++at) {
    error = places_[at]->Open(link.empty() ? link : link + std::to_string(at + 1));
  }
  return error;
}

void RadioBench::Turn(platform::Duration longest) {
  const platform::Duration now = clock_.Now();
  platform::Duration next = now + longest;
  for (const auto& place : places_) {
    place->Serve(now);
    next = std::min(next, place->NextEvent().value_or(next));
  }
  platform::PseudoTerminal::WaitAny(terminals_, next - clock_.Now());
}

bool RadioBench::IsConnected() const {
  return std::any_of(places_.begin(), places_.end(),
                     [](const auto& place) { return place->IsOpen(); });
}

bool RadioBench::WasLeftAlone(platform::Duration how_long) const {
  bool spoken_to = false;
  for (const auto& place : places_) {
    if (place->BytesIn() == 0) continue;
    spoken_to = true;
    if (place->NextEvent() || clock_.Now() - place->LastByte() < how_long) return false;
  }
  return spoken_to;
}

}  // namespace zep::simulator
