// What makes one simulated radio differ from another, and a few believable radios to begin with.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/faults.h"
#include "simulator/firmware_image.h"
#include "simulator/flash.h"

namespace zep::simulator {

struct RadioProfile {
  // Who it is.
  std::string model_code = "51";  // two digits; decides the radio type
  Versions versions{"0335", "0405", "0103"};
  std::string hardware = "0201";                   // four characters
  std::optional<std::uint32_t> serial_number = 1;  // above ten million; none: the item is blank
  std::optional<std::uint8_t> band = 0x48;  // band and compliance nibbles; none: the item is blank
  char bandwidth = '1';
  int networks = 1;        // 1 to 4; more than one on a trunked radio only
  int item_0_format = 66;  // length of the identity item: 48, 58 or 66 hexadecimal characters

  // What it is made of.
  Micro micro = Micro::kE1;
  FlashDevice flash = FlashDevices()[2];
  std::optional<std::uint8_t> config_byte =
      0x0F;                          // sent when the first loader runs; none: not sent
  std::size_t dynamic_bytes = 4096;  // room for channels, scan groups and the like, per network

  // What is wrong with it.
  bool model_error = false;  // "#" is answered with {X31}
  bool corrupt = false;      // "#" is answered with {X32} until the database is programmed
  std::optional<std::uint8_t> worn_item;  // an item that can no longer be written
  std::vector<Fault> faults;

  // How it is used.
  bool paced = true;  // bytes take their time on the line
  // Somebody else is the technician: the radio does not go into bootstrap mode by itself when a
  // program calls for it, nor is it switched on by itself.
  bool manual = false;

  bool IsTrunked() const;
};

// Whether radios with this two-digit model code exist.
bool IsModelCode(std::string_view code);

struct KnownRadio {
  std::string_view name;
  std::string_view description;
  RadioProfile (*profile)();
};
// The radios that can be asked for by name.
std::span<const KnownRadio> KnownRadios();

// Makes the radio an old one: the firmware, data, micro and flash of the first generation.
void MakeOld(RadioProfile& profile);

}  // namespace zep::simulator
