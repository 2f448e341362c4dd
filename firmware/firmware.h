// The state of the firmware work: the chosen image, what is known of the radio on each slot, and
// the memory maps.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "firmware/flash_devices.h"
#include "firmware/image_file.h"
#include "firmware/memory_maps.h"
#include "firmware/transfer_view.h"
#include "link/port_set.h"

namespace zep::firmware {

struct Firmware {
  // Builds the maps. The link outlives the state.
  explicit Firmware(link::Link& program_link);

  link::Link& link;
  ImageFile image;

  // By slot; empty at the start of every run.
  std::array<FlashDevice, link::kPortCount> flash_devices;
  std::array<SlotLabels, link::kPortCount> labels;
  // "A1" or "E1" of the radio identified last: chooses the map for the whole run.
  std::string micro_type;

  // For an upload: 1 reads 1 Mbit, anything else 2 Mbit.
  std::int32_t UploadFlashSize = 0;

  MemoryMap A1MemoryMap;
  MemoryMap E1MemoryMap;

  FlashDevice& Flash(int slot) { return flash_devices[link::Link::Index(slot)]; }
  SlotLabels& Labels(int slot) { return labels[link::Link::Index(slot)]; }
};

}  // namespace zep::firmware
