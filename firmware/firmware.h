// The firmware work as it outlives its runs: the chosen image and the memory maps.
#pragma once

#include <cstdint>

#include "firmware/firmware_image.h"
#include "firmware/memory_maps.h"

namespace zep::firmware {

struct Firmware {
  ChosenImage image;

  // For an upload: 1 reads 1 Mbit, anything else 2 Mbit.
  std::int32_t UploadFlashSize = 0;

  MemoryMap A1MemoryMap = BuildA1MemoryMap();
  MemoryMap E1MemoryMap = BuildE1MemoryMap();
};

}  // namespace zep::firmware
