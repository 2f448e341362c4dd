#include "simulator/flash_loader.h"

#include <algorithm>
#include <string>

namespace zep::simulator {

namespace {

constexpr std::uint8_t kEndOfLoader = 0xFF;
constexpr std::uint8_t kHighestBank = 5;

}  // namespace

void FlashLoader::Start() {
  stage_ = Stage::kMode;
  header_size_ = block_size_ = 0;
  Reply(Step::kIdentification, flash_.Device().maker);
  Reply(Step::kIdentification, flash_.Device().device);
  Reply(Step::kIdentification, micro_ == Micro::kA1 ? 'a' : 'e');
}

void FlashLoader::Receive(std::uint8_t byte) {
  switch (stage_) {
    case Stage::kMode:
    case Stage::kZero:
      return ReceiveMode(byte);
    case Stage::kHeader:
      return ReceiveHeader(byte);
    case Stage::kWrite:
      return ReceiveBlockByte(byte);
    case Stage::kRead:
      if (byte == '.') SendBlock();
      return;
    case Stage::kFinished:
      return;
  }
}

void FlashLoader::ReceiveMode(std::uint8_t byte) {
  const bool expected = stage_ == Stage::kMode ? byte == 'r' || byte == 't' : byte == '0';
  if (!expected) return Reply(Step::kMode, 'P');
  if (stage_ == Stage::kMode) reading_ = byte == 't';
  stage_ = stage_ == Stage::kMode ? Stage::kZero : Stage::kHeader;
  Reply(Step::kMode, byte);
}

void FlashLoader::ReceiveHeader(std::uint8_t byte) {
  if (header_size_ == 0 && byte == kEndOfLoader) {
    if (voice_.Hear(Step::kFinish, byte) == kEndOfLoader) stage_ = Stage::kFinished;
    return;
  }
  if (header_size_ == 0 && byte > kHighestBank) return Reply(Step::kHeader, 'G');
  header_.at(header_size_++) = byte;
  if (header_size_ < header_.size()) return Reply(Step::kHeader, byte);

  header_size_ = 0;
  address_ = header_[1] * 256U + header_[2];
  blocks_left_ = header_[3] * 256U + header_[4];
  if (!RowIsInFlash()) return Reply(Step::kHeader, 'A');
  if (blocks_left_ > 0) stage_ = reading_ ? Stage::kRead : Stage::kWrite;
  Reply(Step::kHeader, byte);
}

bool FlashLoader::RowIsInFlash() {
  if (blocks_left_ == 0) return true;
  const std::size_t last = address_ + (blocks_left_ - 1) * kPageSize;
  return !flash_.Page(header_[0], address_).empty() && !flash_.Page(header_[0], last).empty();
}

void FlashLoader::ReceiveBlockByte(std::uint8_t byte) {
  block_.at(block_size_++) = byte;
  if (block_size_ < block_.size()) return;
  block_size_ = 0;
  voice_.Answer(Step::kBlock, [this] {
    const std::span<std::uint8_t> page = flash_.Page(header_[0], address_);
    std::copy(block_.begin(), block_.end(), page.begin());
    ++counts_.blocks_written;
    CountBlock();
    return std::string(".");
  });
}

void FlashLoader::SendBlock() {
  voice_.Answer(Step::kUpload, [this] {
    const std::span<std::uint8_t> page = flash_.Page(header_[0], address_);
    ++counts_.blocks_read;
    CountBlock();
    return std::string(page.begin(), page.end());
  });
}

void FlashLoader::CountBlock() {
  address_ += kPageSize;
  if (--blocks_left_ == 0) stage_ = Stage::kHeader;
}

void FlashLoader::Reply(Step step, std::uint8_t byte) {
  voice_.Answer(step, std::string(1, static_cast<char>(byte)));
}

}  // namespace zep::simulator
