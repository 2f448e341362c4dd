// The second loader, running in the radio: it writes and reads the flash at 9600 baud.
//
//   says maker, device and micro byte by itself when it starts
//   "r" (write) or "t" (read), then "0"        each answered with the same byte
//   for each row:
//       bank, start address high and low,
//       blocks high and low                    each answered with the same byte
//       for each block, when writing           128 bytes, answered with "."
//       for each block, when reading           ".", answered with 128 bytes
//   0xFF in place of a bank                    not answered; the radio starts anew
//
// What it cannot do is answered with one letter: "P" for a byte that is no prompt, "G" for a bank
// that does not exist, "A" for an address outside the flash.
#pragma once

#include <array>
#include <cstdint>

#include "simulator/flash.h"
#include "simulator/voice.h"

namespace zep::simulator {

class FlashLoader {
 public:
  FlashLoader(Micro micro, Flash& flash, Voice& voice, RadioCounts& counts)
      : micro_(micro), flash_(flash), voice_(voice), counts_(counts) {}

  void Start();
  void Receive(std::uint8_t byte);

  // The program has sent the byte that ends the loader.
  bool HasFinished() const { return stage_ == Stage::kFinished; }
  // Neither inside the five bytes of a header nor inside the blocks of a row.
  bool IsBetweenRows() const {
    return stage_ < Stage::kHeader || (stage_ == Stage::kHeader && header_size_ == 0);
  }

 private:
  enum class Stage { kMode, kZero, kHeader, kWrite, kRead, kFinished };

  void ReceiveMode(std::uint8_t byte);
  void ReceiveHeader(std::uint8_t byte);
  void ReceiveBlockByte(std::uint8_t byte);
  void SendBlock();
  // Whether all blocks of the header lie in the flash.
  bool RowIsInFlash();
  void CountBlock();
  void Reply(Step step, std::uint8_t byte);

  Micro micro_;
  Flash& flash_;
  Voice& voice_;
  RadioCounts& counts_;

  Stage stage_ = Stage::kMode;
  bool reading_ = false;
  std::array<std::uint8_t, 5> header_{};
  std::size_t header_size_ = 0;
  std::size_t address_ = 0;  // of the next block, inside the bank
  std::size_t blocks_left_ = 0;
  std::array<std::uint8_t, kPageSize> block_{};
  std::size_t block_size_ = 0;
};

}  // namespace zep::simulator
